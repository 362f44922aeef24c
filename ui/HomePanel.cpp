#include "ui/HomePanel.h"

#include "ui/LevelMeter.h"
#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/Theme.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace Lumora {

namespace {
const char kRowLabelStyle[] = "QLabel { color: {muted}; font-size: 8pt; font-weight: bold;"
                              " background: transparent; }";
} // namespace

HomePanel::HomePanel(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 8, 16, 12);
    layout->setSpacing(12);

    auto* hero = new QWidget(this);
    hero->setObjectName(QStringLiteral("homeHero"));
    hero->setAttribute(Qt::WA_StyledBackground);
    hero->setStyleSheet(Styles::card("homeHero"));
    markPanel(hero, 14);
    auto* heroLayout = new QVBoxLayout(hero);
    heroLayout->setContentsMargins(20, 14, 20, 18);
    heroLayout->setSpacing(8);
    character_ = new QLabel(hero);
    character_->setAlignment(Qt::AlignCenter);
    QPixmap tindra(characterImagePath(0));
    if (!tindra.isNull()) {
        const qreal dpr = devicePixelRatioF();
        tindra =
            tindra.scaled(QSize(132, 132) * dpr, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        tindra.setDevicePixelRatio(dpr);
        character_->setPixmap(tindra);
    }
    character_->setStyleSheet(
        themed(QStringLiteral("QLabel { background: transparent; border: none; }")));
    title_ = new QLabel(hero);
    title_->setAlignment(Qt::AlignCenter);
    title_->setWordWrap(true);
    title_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {ink}; font-size: 14pt;"
                              " font-weight: bold; background: transparent; border: none; }")));
    description_ = new QLabel(hero);
    description_->setAlignment(Qt::AlignCenter);
    description_->setWordWrap(true);
    description_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {lilac}; font-size: 10pt;"
                              " background: transparent; border: none; }")));
    startButton_ = new QPushButton(hero);
    startButton_->setCursor(Qt::PointingHandCursor);
    startButton_->setMinimumHeight(48);
    startButton_->setStyleSheet(
        Styles::accentButton() +
        QStringLiteral("QPushButton { font-size: 12pt; border-radius: 14px; }"));
    heroLayout->addWidget(character_);
    heroLayout->addWidget(title_);
    heroLayout->addWidget(description_);
    heroLayout->addSpacing(4);
    heroLayout->addWidget(startButton_);
    layout->addWidget(hero);

    auto* levels = new QWidget(this);
    levels->setObjectName(QStringLiteral("homeLevels"));
    levels->setAttribute(Qt::WA_StyledBackground);
    levels->setStyleSheet(Styles::card("homeLevels"));
    markPanel(levels, 14);
    auto* grid = new QGridLayout(levels);
    grid->setContentsMargins(16, 10, 16, 12);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(6);
    levelsTitle_ = new QLabel(levels);
    levelsTitle_->setStyleSheet(
        themed(QStringLiteral("QLabel { color: {ink}; font-size: 10pt;"
                              " font-weight: bold; background: transparent; border: none; }")));
    micLabel_ = new QLabel(levels);
    micLabel_->setStyleSheet(themed(QLatin1String(kRowLabelStyle)));
    outputLabel_ = new QLabel(levels);
    outputLabel_->setStyleSheet(themed(QLatin1String(kRowLabelStyle)));
    micMeter_ = new LevelMeter(levels);
    micMeter_->setFixedHeight(12);
    outputMeter_ = new LevelMeter(levels);
    outputMeter_->setFixedHeight(12);
    noLevels_ = new QLabel(levels);
    noLevels_->setWordWrap(true);
    noLevels_->setStyleSheet(themed(QStringLiteral("QLabel { color: {muted}; font-size: 8pt;"
                                                   " background: transparent; border: none; }")));
    noLevels_->hide();
    grid->addWidget(levelsTitle_, 0, 0, 1, 2);
    grid->addWidget(micLabel_, 1, 0);
    grid->addWidget(micMeter_, 1, 1);
    grid->addWidget(outputLabel_, 2, 0);
    grid->addWidget(outputMeter_, 2, 1);
    grid->addWidget(noLevels_, 3, 0, 1, 2);
    grid->setColumnStretch(1, 1);
    layout->addWidget(levels);

    status_ = new QLabel(this);
    status_->setObjectName(QStringLiteral("homeStatus"));
    status_->setWordWrap(true);
    status_->setTextFormat(Qt::PlainText);
    status_->setAlignment(Qt::AlignCenter);
    status_->setStyleSheet(themed(
        QStringLiteral("#homeStatus { background: {white@200}; color: {deepTeal}; font-size: 10pt;"
                       " border: 1px solid {teal@80}; border-radius: 12px; padding: 8px 12px; }")));
    status_->hide();
    markPanel(status_, 12);
    layout->addWidget(status_);
    layout->addStretch(1);

    connect(startButton_, &QPushButton::clicked, this, &HomePanel::startRequested);
    retranslateUi();
}

void HomePanel::retranslateUi() {
    title_->setText(keepPhrases(tr("Let's check your voice!")));
    description_->setText(
        keepPhrases(tr("Tell Tindra your mic, then speak, say \"pa pa pa\" and keep quiet "
                       "for a few seconds each. You get six verdicts and settings that "
                       "suit your voice.")));
    startButton_->setText(tr("🎤 Start diagnosis"));
    levelsTitle_->setText(QStringLiteral("🎚 ") + tr("Live levels"));
    micLabel_->setText(tr("MIC"));
    outputLabel_->setText(tr("OUT"));
    noLevels_->setText(
        keepPhrases(tr("Open this window from the Tindra filter to see your levels.")));
}

void HomePanel::setLevels(float micDb, float outputDb) {
    micMeter_->setLevel(micDb);
    outputMeter_->setLevel(outputDb);
}

void HomePanel::clearLevels() {
    micMeter_->clear();
    outputMeter_->clear();
}

void HomePanel::setLevelsAvailable(bool available) {
    noLevels_->setVisible(!available);
    startButton_->setEnabled(available);
    if (!available) {
        clearLevels();
    }
}

void HomePanel::setStatus(const QString& text) {
    if (status_->text() != text) {
        status_->setText(keepPhrases(text));
    }
    status_->setVisible(!text.isEmpty());
}

QString HomePanel::status() const {
    return status_->text();
}

} // namespace Lumora
