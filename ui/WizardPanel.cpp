#include "ui/WizardPanel.h"

#include "diagnosis/DiagnosisController.h"
#include "ui/CountdownWidget.h"
#include "ui/LevelMeter.h"
#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"
#include "ui/WizardTips.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <cmath>

namespace Lumora {

namespace {

const char kMicButtonStyle[] =
    "QPushButton { background: {white@215}; color: {ink}; font-size: 11pt;"
    " font-weight: bold; border: 1.5px solid {teal@150}; border-radius: 14px;"
    " padding: 10px 8px; }"
    "QPushButton:hover { background: {white}; border-color: {teal}; }"
    "QPushButton:pressed { background: {teal@40}; }";

QString qs(const std::string& s) {
    return QString::fromUtf8(s.c_str());
}

WizardPanel::Page pageFor(int state) {
    switch (state) {
    case DiagnosisController::kIntro:
        return WizardPanel::kMicPage;
    case DiagnosisController::kPrompt:
        return WizardPanel::kPromptPage;
    case DiagnosisController::kCountdown:
    case DiagnosisController::kRecording:
        return WizardPanel::kTakePage;
    case DiagnosisController::kTakeDone:
        return WizardPanel::kDonePage;
    case DiagnosisController::kAnalysing:
        return WizardPanel::kBusyPage;
    case DiagnosisController::kResult:
        return WizardPanel::kResultPage;
    case DiagnosisController::kOfferSave:
        return WizardPanel::kSavePage;
    default:
        return WizardPanel::kEndPage;
    }
}

} // namespace

WizardPanel::WizardPanel(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    for (int mood = 0; mood < 4; ++mood) {
        QPixmap pix(characterImagePath(mood));
        if (!pix.isNull()) {
            const qreal dpr = devicePixelRatioF();
            pix = pix.scaled(QSize(150, 150) * dpr, Qt::KeepAspectRatio, Qt::SmoothTransformation);
            pix.setDevicePixelRatio(dpr);
        }
        moods_[static_cast<size_t>(mood)] = pix;
    }

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 10, 20, 16);
    layout->setSpacing(8);

    auto* top = new QHBoxLayout();
    titleLabel_ = new QLabel(this);
    titleLabel_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {ink}; font-size: 13pt;"
                              " font-weight: bold; background: transparent; }")));
    stepLabel_ = new QLabel(this);
    stepLabel_->setTextFormat(Qt::RichText);
    stepLabel_->setStyleSheet(
        themed(QStringLiteral("QLabel { font-size: 10pt; background: transparent; }")));
    closeButton_ = new QPushButton(QStringLiteral("✕"), this);
    closeButton_->setFixedSize(36, 36);
    // Hidden while a take runs, but keeping its place so nothing below moves.
    QSizePolicy keepPlace = closeButton_->sizePolicy();
    keepPlace.setRetainSizeWhenHidden(true);
    closeButton_->setSizePolicy(keepPlace);
    closeButton_->setCursor(Qt::PointingHandCursor);
    closeButton_->setStyleSheet(themed(
        QStringLiteral("QPushButton { background: {white@160}; color: {ink}; font-size: 13pt;"
                       " border: none; border-radius: 10px; }"
                       "QPushButton:hover { background: {white@220}; }")));
    top->addWidget(titleLabel_);
    top->addStretch(1);
    top->addWidget(stepLabel_);
    top->addSpacing(10);
    top->addWidget(closeButton_);
    layout->addLayout(top);

    character_ = new QLabel(this);
    character_->setAlignment(Qt::AlignCenter);
    character_->setFixedHeight(150);
    character_->setStyleSheet(themed(QStringLiteral("QLabel { background: transparent; }")));
    layout->addWidget(character_);

    bubble_ = new QLabel(this);
    bubble_->setObjectName(QStringLiteral("wizardBubble"));
    bubble_->setWordWrap(true);
    bubble_->setTextFormat(Qt::PlainText);
    bubble_->setAlignment(Qt::AlignCenter);
    bubble_->setMinimumHeight(96);
    bubble_->setStyleSheet(themed(QStringLiteral(
        "#wizardBubble { background: {white@230}; color: {ink}; font-size: 12pt;"
        " border: 1.5px solid {teal@120}; border-radius: 18px; padding: 12px 16px; }")));
    markPanel(bubble_, 18);
    layout->addWidget(bubble_);

    hint_ = new QLabel(this);
    hint_->setWordWrap(true);
    hint_->setTextFormat(Qt::PlainText);
    hint_->setAlignment(Qt::AlignCenter);
    hint_->setStyleSheet(themed(QStringLiteral("QLabel { color: {lilac}; font-size: 9pt;"
                                               " background: transparent; }")));
    layout->addWidget(hint_);

    actions_ = new QStackedWidget(this);
    actions_->setStyleSheet(themed(QStringLiteral("QStackedWidget { background: transparent; }")));
    startButton_ = makeButton(Styles::accentButton());
    retryButton_ = makeButton(Styles::outlinedButton());
    nextButton_ = makeButton(Styles::accentButton());
    applyButton_ = makeButton(Styles::accentButton());
    offerSaveButton_ = makeButton(Styles::darkButton());
    detailsButton_ = makeButton(Styles::outlinedButton());
    saveButton_ = makeButton(Styles::darkButton());
    notNowButton_ = makeButton(Styles::outlinedButton());
    busy_ = new CountdownWidget(this);

    actions_->addWidget(buildMicPage());
    actions_->addWidget(buildButtonsPage({startButton_}, true));
    actions_->addWidget(buildTakePage());
    actions_->addWidget(buildButtonsPage({retryButton_, nextButton_}, false));
    auto* busyPage = new QWidget(this);
    auto* busyLayout = new QVBoxLayout(busyPage);
    busyLayout->addWidget(busy_, 0, Qt::AlignHCenter | Qt::AlignTop);
    busyLayout->addStretch(1);
    actions_->addWidget(busyPage);
    actions_->addWidget(buildButtonsPage({applyButton_, offerSaveButton_, detailsButton_}, true));
    actions_->addWidget(buildButtonsPage({saveButton_, notNowButton_}, true));
    actions_->addWidget(new QWidget(this));
    layout->addWidget(actions_, 1);

    tip_ = new QLabel(this);
    tip_->setObjectName(QStringLiteral("wizardTip"));
    tip_->setWordWrap(true);
    tip_->setTextFormat(Qt::PlainText);
    tip_->setAlignment(Qt::AlignCenter);
    tip_->setMinimumHeight(44);
    tip_->setStyleSheet(themed(
        QStringLiteral("#wizardTip { background: {white@200}; color: {deepTeal}; font-size: 9pt;"
                       " border-radius: 12px; padding: 6px 12px; }")));
    markPanel(tip_, 12);
    layout->addWidget(tip_);

    cancelButton_ = makeButton(Styles::outlinedButton());
    cancelButton_->setFixedWidth(180);
    QSizePolicy cancelPlace = cancelButton_->sizePolicy();
    cancelPlace.setRetainSizeWhenHidden(true);
    cancelButton_->setSizePolicy(cancelPlace);
    layout->addWidget(cancelButton_, 0, Qt::AlignHCenter);

    for (int mic = 0; mic < 4; ++mic) {
        connect(micButtons_[static_cast<size_t>(mic)], &QPushButton::clicked, this,
                [this, mic] { emit micChosen(mic); });
    }
    connect(startButton_, &QPushButton::clicked, this, &WizardPanel::startRequested);
    connect(retryButton_, &QPushButton::clicked, this, &WizardPanel::retryRequested);
    connect(nextButton_, &QPushButton::clicked, this, &WizardPanel::nextRequested);
    connect(cancelButton_, &QPushButton::clicked, this, &WizardPanel::cancelRequested);
    connect(closeButton_, &QPushButton::clicked, this, &WizardPanel::closeRequested);
    connect(applyButton_, &QPushButton::clicked, this, &WizardPanel::applyRequested);
    connect(offerSaveButton_, &QPushButton::clicked, this, &WizardPanel::offerSaveRequested);
    connect(detailsButton_, &QPushButton::clicked, this, &WizardPanel::detailsRequested);
    connect(saveButton_, &QPushButton::clicked, this, &WizardPanel::saveRequested);
    connect(notNowButton_, &QPushButton::clicked, this, &WizardPanel::closeRequested);
}

QPushButton* WizardPanel::makeButton(const QString& style) {
    auto* button = new QPushButton(this);
    button->setStyleSheet(themed(style));
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(44);
    markPanel(button, 10);
    return button;
}

QWidget* WizardPanel::buildMicPage() {
    auto* page = new QWidget(this);
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(10, 6, 10, 0);
    grid->setSpacing(12);
    for (int mic = 0; mic < 4; ++mic) {
        auto* button = new QPushButton(page);
        button->setStyleSheet(themed(QLatin1String(kMicButtonStyle)));
        button->setCursor(Qt::PointingHandCursor);
        button->setMinimumHeight(64);
        markPanel(button, 14);
        grid->addWidget(button, mic / 2, mic % 2);
        micButtons_[static_cast<size_t>(mic)] = button;
    }
    grid->setRowStretch(2, 1);
    return page;
}

QWidget* WizardPanel::buildTakePage() {
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(40, 0, 40, 0);
    column->setSpacing(8);
    countdown_ = new CountdownWidget(page);
    column->addWidget(countdown_, 0, Qt::AlignHCenter);
    auto* meterRow = new QHBoxLayout();
    liveLabel_ = new QLabel(page);
    liveLabel_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {muted}; font-size: 8pt;"
                              " font-weight: bold; background: transparent; }")));
    liveMeter_ = new LevelMeter(page);
    liveMeter_->setFixedHeight(10);
    meterRow->addWidget(liveLabel_);
    meterRow->addWidget(liveMeter_, 1);
    column->addLayout(meterRow);
    column->addStretch(1);
    return page;
}

QWidget* WizardPanel::buildButtonsPage(std::initializer_list<QPushButton*> buttons, bool vertical) {
    auto* page = new QWidget(this);
    QBoxLayout* box = vertical ? static_cast<QBoxLayout*>(new QVBoxLayout(page))
                               : static_cast<QBoxLayout*>(new QHBoxLayout(page));
    box->setContentsMargins(50, 6, 50, 0);
    box->setSpacing(10);
    for (QPushButton* button : buttons) {
        button->setParent(page);
        box->addWidget(button, 0, vertical ? Qt::AlignTop : Qt::Alignment());
    }
    if (vertical) {
        box->addStretch(1);
    }
    auto* outer = new QWidget(this);
    auto* outerLayout = new QVBoxLayout(outer);
    outerLayout->setContentsMargins(0, 0, 0, 0);
    outerLayout->addWidget(page);
    if (!vertical) {
        outerLayout->addStretch(1);
    }
    return outer;
}

void WizardPanel::setTextIfChanged(QLabel* label, const QString& text) {
    const QString shown = keepPhrases(text);
    if (label->text() != shown) {
        label->setText(shown);
    }
}

void WizardPanel::showMood(int mood) {
    if (mood == shownMood_) {
        return;
    }
    shownMood_ = mood;
    character_->setPixmap(moods_[static_cast<size_t>(std::clamp(mood, 0, 3))]);
}

void WizardPanel::updateStepDots(int completed, int current) {
    QString dots;
    for (int i = 1; i <= DiagnosisController::kLastTake; ++i) {
        const char* colour =
            i <= completed ? "{teal}" : (i == current ? "{lilacPale}" : "{lilacMist}");
        dots += QStringLiteral("<span style='color:%1'>●</span>").arg(QLatin1String(colour));
    }
    if (dots != dotsKey_) {
        dotsKey_ = dots;
        stepLabel_->setText(themed(dots));
    }
}

void WizardPanel::retranslateUi(const DiagnosisController& controller) {
    titleLabel_->setText(QStringLiteral("🔍 ") + tr("Voice check"));
    const QString micNames[4] = {tr("🎙 Dynamic"), tr("🎤 Condenser"), tr("🔌 USB"),
                                 tr("❓ Not sure")};
    for (int mic = 0; mic < 4; ++mic) {
        micButtons_[static_cast<size_t>(mic)]->setText(micNames[mic]);
    }
    startButton_->setText(tr("🎙 Start recording"));
    retryButton_->setText(tr("🔁 Try again"));
    applyButton_->setText(tr("🔧 Apply recommended settings"));
    offerSaveButton_->setText(tr("💾 Save preset"));
    detailsButton_->setText(tr("💬 See the details"));
    saveButton_->setText(tr("💾 Save"));
    notNowButton_->setText(tr("Not now"));
    cancelButton_->setText(tr("Cancel"));
    closeButton_->setToolTip(tr("Close the diagnosis"));
    liveLabel_->setText(tr("MIC"));
    shownState_ = -1; // texts of the state are re-read below
    refresh(controller, 0.0, -96.0f);
}

void WizardPanel::refresh(const DiagnosisController& controller, double dt, float levelDb) {
    const std::string language = currentLanguageCode();
    const int state = controller.state();
    const int step = controller.currentStep();
    if (step != shownStep_) {
        tipClock_ = 0.0;
    }
    if (state != shownState_ || step != shownStep_ || language != shownLanguage_) {
        shownState_ = state;
        shownStep_ = step;
        shownLanguage_ = language;
        setTextIfChanged(bubble_, qs(controller.currentText(language)));
        const QString hint = qs(controller.currentHint(language));
        setTextIfChanged(hint_, hint);
        hint_->setVisible(!hint.isEmpty());
        actions_->setCurrentIndex(pageFor(state));
        const bool running = state == DiagnosisController::kCountdown ||
                             state == DiagnosisController::kRecording ||
                             state == DiagnosisController::kAnalysing;
        cancelButton_->setVisible(running);
        closeButton_->setVisible(!running && state != DiagnosisController::kEnd);
        const bool lastTake = step >= DiagnosisController::kLastTake;
        nextButton_->setText(lastTake ? tr("✨ Analyse") : tr("Next ▶"));
        if (state == DiagnosisController::kResult || state == DiagnosisController::kOfferSave) {
            showMood(controller.hasResult() ? std::clamp(controller.result().overall, 0, 2) : 0);
        } else if (state >= DiagnosisController::kCountdown &&
                   state <= DiagnosisController::kAnalysing &&
                   state != DiagnosisController::kTakeDone) {
            showMood(3);
        } else {
            showMood(0);
        }
        const bool offerActions = controller.hasResult();
        applyButton_->setVisible(offerActions);
        offerSaveButton_->setVisible(offerActions);
        if (state == DiagnosisController::kCountdown) {
            liveMeter_->clear();
        }
    }
    updateStepDots(controller.takesCompleted(), state == DiagnosisController::kIntro ? 0 : step);

    const bool tipsShown =
        state >= DiagnosisController::kPrompt && state <= DiagnosisController::kTakeDone;
    if (tipsShown) {
        tipClock_ += dt;
        setTextIfChanged(
            tip_, qs(WizardTips::tipAt(step, controller.session().micType, tipClock_, language)));
    }
    if (tip_->isHidden() == tipsShown) {
        tip_->setVisible(tipsShown);
    }

    switch (state) {
    case DiagnosisController::kCountdown:
        countdown_->showCountdown(controller.countdownSecondsLeft(), controller.progress());
        liveMeter_->setLevel(levelDb);
        break;
    case DiagnosisController::kRecording: {
        const double left = controller.recordingDuration() - controller.recordingElapsed();
        countdown_->showRecording(controller.progress(),
                                  std::max(0, static_cast<int>(std::ceil(left))));
        liveMeter_->setLevel(levelDb);
        break;
    }
    case DiagnosisController::kAnalysing:
        busy_->showBusy(dt);
        break;
    default:
        break;
    }
}

QString WizardPanel::bubbleText() const {
    return withoutJoiners(bubble_->text());
}
QString WizardPanel::hintText() const {
    return hint_->isHidden() ? QString() : withoutJoiners(hint_->text());
}
QString WizardPanel::tipText() const {
    return tip_->isHidden() ? QString() : withoutJoiners(tip_->text());
}
int WizardPanel::actionPage() const {
    return actions_->currentIndex();
}

} // namespace Lumora
