#include "ui/WizardDialog.h"

#include "engine/FilterEngine.h"
#include "ui/CompressorDisplay.h"
#include "ui/CreditsDialog.h"
#include "ui/DiagnosisPresenter.h"
#include "ui/EffectPanel.h"
#include "ui/EngineBinding.h"
#include "ui/FxPage.h"
#include "ui/HomePanel.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/KeyBadgeBoard.h"
#include "ui/KeyBadgeLabel.h"
#include "ui/KeyRouter.h"
#include "ui/KeysPage.h"
#include "ui/Localisation.h"
#include "ui/MainMenu.h"
#include "ui/MainTabBar.h"
#include "ui/MeterFaderWidget.h"
#include "ui/PageWiring.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetsPage.h"
#include "ui/PresetsPanel.h"
#include "ui/ResultsPage.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/SoundPage.h"
#include "ui/Theme.h"
#include "ui/WizardPanel.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

// The sky's sprites are repainted 8 times a second: a star drifting at 16 px/s
// moves two pixels a frame, which reads as a slow drift, and the sky's repaints
// are most of what the open dialog costs (lumora-screens --idle-cpu, on the test
// machine: 1.2 % of one core at 12.5 frames a second, 0.98 % at 8).
constexpr double kSkyFrameSeconds = 0.125;

} // namespace

WizardDialog::WizardDialog(QWidget* parent, FilterEngine* engine)
    : QDialog(parent), feedbackUrl_(QString::fromLatin1(LUMORA_FEEDBACK_URL)) {
    setWindowTitle(QStringLiteral("Tindra"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_StyledBackground);
    // The sky covers every pixel, so nothing needs clearing first.
    setAttribute(Qt::WA_OpaquePaintEvent);
    applyLanguage(currentLanguage());
    // The hand-written face for everything in the dialog. Font inheritance alone
    // does not reach widgets under a style sheet, so the family goes into one.
    const QFont face = appFont(10);
    setFont(face);
    // OBS's theme gives every button a margin, and tool buttons padding, which
    // inside the host shrank our fixed-size buttons and their glyphs; the
    // dialog's own rule wins over the host's.
    QString sheet = QStringLiteral("QPushButton, QToolButton { margin: 0px; }"
                                   "QToolButton { padding: 0px; }") +
                    Styles::scrollBar();
    if (face.family() != QFont().family()) {
        sheet.prepend(QStringLiteral("QWidget { font-family: \"%1\"; }").arg(face.family()));
    }
    setStyleSheet(sheet);

    binding_ = new EngineBinding(this, engine);
    tick_ = new MeterTick(this);
    keys_ = new KeyRouter(this, binding_);
    buildUi();
    installPanels();
    fitToHeight(kHeight);
    retranslateUi();

    sky_.setPixmaps(QPixmap(imagePath(QStringLiteral("starshape.png"))),
                    QPixmap(imagePath(QStringLiteral("starframe.png"))),
                    QPixmap(imagePath(QStringLiteral("view_cloud01_01.png"))));
    sky_.setSize(size(), devicePixelRatioF());
    sky_.layoutStars();
    sky_.layoutClouds();

    emit easyModeChanged(true);
    homePanel_->setLevelsAvailable(engine != nullptr);
    // Opening the dialog switches both chains on with what the filter has.
    binding_->switchOn();

    connect(tick_, &MeterTick::ticked, this, &WizardDialog::onTick);
    connect(tick_, &MeterTick::levelsUpdated, this, &WizardDialog::showLevels);
    tick_->start();
}

WizardDialog::~WizardDialog() {
    // The diagnosis's measurement hold ends while the engine is still ours.
    delete diagnosis_;
    diagnosis_ = nullptr;
}

void WizardDialog::detach() {
    tick_->stop();
    diagnosis_->forgetEngine();
    // A noise learning run in progress ends its hold and stops reading the
    // analyser of the engine that is about to be freed.
    effectPanel_->setEngine(nullptr);
    binding_->detach();
    homePanel_->setLevelsAvailable(false);
}

KeyBadgeBoard* WizardDialog::keyBoard() const {
    return keysPage_->board();
}

FilterEngine* WizardDialog::engine() const {
    return binding_->engine();
}

const EffectPreset& WizardDialog::workingPreset() const {
    return binding_->cleaning();
}

const SoundFxPreset& WizardDialog::workingFxPreset() const {
    return binding_->soundFx();
}

const DiagnosisController& WizardDialog::controller() const {
    return diagnosis_->controller();
}

const DiagnosisRunner& WizardDialog::runner() const {
    return diagnosis_->runner();
}

// ---- Building ----------------------------------------------------------------

void WizardDialog::buildUi() {
    auto* dialogLayout = new QVBoxLayout(this);
    dialogLayout->setContentsMargins(0, 0, 0, 0);
    dialogLayout->setSpacing(0);
    root_ = new QStackedWidget(this);
    dialogLayout->addWidget(root_);

    auto* main = new QWidget(root_);
    auto* mainLayout = new QVBoxLayout(main);
    mainLayout->setContentsMargins(0, 0, 0, 2);
    mainLayout->setSpacing(0);
    mainLayout->addWidget(buildHeader(main));

    content_ = new QStackedWidget(main);
    content_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    homePanel_ = new HomePanel(content_);
    resultsPage_ = new ResultsPage(content_);
    soundPage_ = new SoundPage(content_);
    fxPage_ = new FxPage(content_);
    presetsPage_ = new PresetsPage(content_);
    content_->addWidget(homePanel_);
    content_->addWidget(resultsPage_);
    content_->addWidget(soundPage_);
    content_->addWidget(fxPage_);
    content_->addWidget(presetsPage_);
    keysPage_ = new KeysPage(content_);
    content_->addWidget(keysPage_);
    // The pages keep their designed height; on a screen too short for the
    // window they scroll between the header and the tab bar (see fitToHeight).
    frame_ = scrollFrame(main, content_, kHeight - kHeaderHeight - MainTabBar::kHeight - 2);
    mainLayout->addWidget(frame_, 1);

    tabBar_ = new MainTabBar(main);
    mainLayout->addWidget(tabBar_);
    tabBar_->raise();
    for (int i = 0; i < MainTabBar::kTabCount; ++i) {
        tabBar_->tab(i)->installEventFilter(this);
    }

    wizardPanel_ = new WizardPanel(root_);
    wizardFrame_ = scrollFrame(root_, wizardPanel_, kHeight);
    root_->addWidget(main);
    root_->addWidget(wizardFrame_);
    root_->setCurrentIndex(0);
    selectTab(kDiagnoseTab);

    DiagnosisPresenter::Pages pages;
    pages.wizard = wizardPanel_;
    pages.results = resultsPage_;
    pages.home = homePanel_;
    pages.revert = soundPage_->revertButton();
    diagnosis_ = new DiagnosisPresenter(this, binding_, pages);
    connect(diagnosis_, &DiagnosisPresenter::started, this, [this] { showWizard(true); });
    connect(diagnosis_, &DiagnosisPresenter::finished, this, [this] { showWizard(false); });

    connect(menuButton_, &QPushButton::clicked, this, &WizardDialog::showMainMenu);
    connect(homePanel_, &HomePanel::startRequested, diagnosis_, &DiagnosisPresenter::start);
    connect(resultsPage_, &ResultsPage::applyRequested, diagnosis_,
            &DiagnosisPresenter::applyRecommended);
    connect(resultsPage_, &ResultsPage::saveRequested, diagnosis_,
            &DiagnosisPresenter::saveRecommended);
    connect(resultsPage_, &ResultsPage::rerunRequested, diagnosis_, &DiagnosisPresenter::start);
    connect(soundPage_, &SoundPage::revertRequested, diagnosis_,
            &DiagnosisPresenter::revertToDiagnosisSettings);
    connect(resultsPage_, &ResultsPage::contentChanged, this, &WizardDialog::collectPanels);
    collectPanels();
}

QWidget* WizardDialog::buildHeader(QWidget* parent) {
    auto* header = new QWidget(parent);
    header->setFixedHeight(kHeaderHeight);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(16, 10, 16, 10);
    auto* title = new QLabel(QStringLiteral("Tindra"), header);
    title->setStyleSheet(themed(QStringLiteral("QLabel { color: {ink}; font-size: 17pt;"
                                               " font-weight: bold; background: transparent; }")));
    badge_ = new KeyBadgeLabel(header);
    menuButton_ = new QPushButton(header);
    menuButton_->setIcon(MainMenu::buttonIcon());
    menuButton_->setIconSize(QSize(20, 20));
    menuButton_->setFixedSize(40, 40);
    menuButton_->setCursor(Qt::PointingHandCursor);
    menuButton_->setStyleSheet(themed(
        QStringLiteral("QPushButton { background: {white@160}; border: none; border-radius: 10px;"
                       " padding: 0px; min-height: 0px; }"
                       "QPushButton:hover { background: {white@220}; }")));
    row->addWidget(title);
    row->addWidget(badge_, 1);
    row->addWidget(menuButton_);
    return header;
}

// The sound, FX and presets panels on their pages, bound to the engine.
void WizardDialog::installPanels() {
    FilterEngine* engine = binding_->engine();
    SettingsStore* store = binding_->store();
    effectPanel_ = new EffectPanel(soundPage_);
    effectPanel_->setEngine(engine);
    effectPanel_->setStore(store);
    if (engine) {
        effectPanel_->setNoiseSuppressionStatus(engine->chain().noiseSuppressionStatus());
    }
    soundPage_->setPanel(effectPanel_);
    fxPanel_ = new SoundFxPanel(fxPage_);
    fxPanel_->setStore(store);
    fxPage_->setPanel(fxPanel_);

    VoicePages pages;
    pages.sound = soundPage_;
    pages.effect = effectPanel_;
    pages.fx = fxPage_;
    pages.soundFx = fxPanel_;
    pages.effectPresets = effectPresets_ = new PresetsPanel(presetsPage_, store);
    pages.soundFxPresets = fxPresets_ = new SoundFxPresetsPanel(presetsPage_, store);
    pages.keyPresets = keyPresets_ = new KeyAssignPresetsPanel(presetsPage_, store);
    pages.keyAssign = keyAssign_ = new KeyAssignPanel(presetsPage_, store);
    presetsPage_->setPanel(PresetsPage::kSoundPresets, pages.effectPresets);
    presetsPage_->setPanel(PresetsPage::kFxPresets, pages.soundFxPresets);
    presetsPage_->setPanel(PresetsPage::kKeyPresets, pages.keyPresets);
    presetsPage_->setPanel(PresetsPage::kKeyAssignment, pages.keyAssign);
    wirePagesToEngine(binding_, keys_, pages);
    keys_->setViews(badge_, keysPage_->board(), keyAssign_);

    connect(diagnosis_, &DiagnosisPresenter::storeChanged, effectPresets_,
            &PresetsPanel::refreshAll);
    connect(this, &WizardDialog::easyModeChanged, this, [this](bool easy) {
        fxPanel_->setEasyMode(easy);
        effectPanel_->setEasyMode(easy);
        keyAssign_->setEasyMode(easy);
    });
}

void WizardDialog::collectPanels() {
    panels_.collect(this);
}

void WizardDialog::retranslateUi() {
    tabBar_->retranslateUi();
    effectPanel_->retranslateUi();
    fxPanel_->retranslateUi();
    effectPresets_->retranslateUi();
    fxPresets_->retranslateUi();
    keyPresets_->retranslateUi();
    keyAssign_->retranslateUi();
    menuButton_->setToolTip(tr("Menu"));
    menuButton_->setAccessibleName(tr("Menu"));
    homePanel_->retranslateUi();
    resultsPage_->retranslateUi();
    soundPage_->retranslateUi();
    fxPage_->retranslateUi();
    presetsPage_->retranslateUi();
    keysPage_->retranslateUi();
    diagnosis_->retranslate();
}

void WizardDialog::selectTab(int index) {
    if (index < 0 || index >= MainTabBar::kTabCount) {
        return;
    }
    content_->setCurrentIndex(index);
    tabBar_->setSelected(index);
}

int WizardDialog::currentTab() const {
    return content_->currentIndex();
}

bool WizardDialog::diagnosisShown() const {
    return root_->currentIndex() == 1;
}

bool WizardDialog::keyAssignPageShown() const {
    return !diagnosisShown() && currentTab() == kPresetsTab &&
           presetsPage_->currentSubTab() == PresetsPage::kKeyAssignment;
}

bool WizardDialog::keysTabShown() const {
    return !diagnosisShown() && currentTab() == kKeysTab;
}

void WizardDialog::showWizard(bool shown) {
    if (shown == diagnosisShown()) {
        return;
    }
    root_->setCurrentIndex(shown ? 1 : 0);
    if (!shown) {
        selectTab(diagnosis_->hasResult(0) ? kResultsTab : kDiagnoseTab);
    }
    update();
}

void WizardDialog::setLanguage(const QString& code) {
    applyLanguage(code);
    QTimer::singleShot(0, this, &WizardDialog::retranslateUi);
}

// ---- Menu ----------------------------------------------------------------------
MainMenu* WizardDialog::buildMainMenu() {
    auto* menu = new MainMenu(this, easyMode_, !feedbackUrl_.isEmpty());
    connect(menu, &MainMenu::languageChosen, this, &WizardDialog::setLanguage);
    connect(menu, &MainMenu::easyModeChanged, this, [this](bool easy) {
        easyMode_ = easy;
        emit easyModeChanged(easy);
    });
    connect(menu, &MainMenu::feedbackRequested, this,
            [this] { QDesktopServices::openUrl(feedbackUrl_); });
    connect(menu, &MainMenu::creditsRequested, this, &WizardDialog::showCredits);
    return menu;
}

void WizardDialog::showMainMenu() {
    MainMenu* menu = buildMainMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(menuButton_->mapToGlobal(QPoint(0, menuButton_->height())));
}

void WizardDialog::showCredits() {
    auto* credits = new CreditsDialog(this);
    credits->setAttribute(Qt::WA_DeleteOnClose);
    credits->open();
}

// ---- Events ----------------------------------------------------------------------
// A press anywhere on a tab (its label included) selects it.
bool WizardDialog::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        const int tab = tabBar_->indexOf(watched);
        if (tab >= 0 && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
            tabBar_->tab(tab)->isVisible()) {
            selectTab(tab);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void WizardDialog::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    sky_.paint(painter, event->region(), t_, panels_.region(this));
}

QScrollArea* WizardDialog::scrollFrame(QWidget* parent, QWidget* page, int designedHeight) {
    auto* frame = new QScrollArea(parent);
    frame->setFrameShape(QFrame::NoFrame);
    frame->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frame->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    frame->setWidgetResizable(true);
    frame->setStyleSheet(Styles::scrollArea());
    frame->viewport()->setAutoFillBackground(false);
    page->setMinimumHeight(designedHeight);
    frame->setWidget(page);
    return frame;
}

void WizardDialog::fitToHeight(int available) {
    const int height = std::clamp(available, kMinHeight, kHeight);
    const bool scrolls = height < kHeight;
    int bar = 0;
    for (QScrollArea* frame : {frame_, wizardFrame_}) {
        frame->setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
        bar = scrolls ? frame->verticalScrollBar()->sizeHint().width() : 0;
    }
    setFixedSize(kWidth + bar, height);
    sky_.setSize(size(), devicePixelRatioF());
}

void WizardDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // A 1366 x 768 laptop, or 1080p at 150 %, has less room than the window
    // wants once the taskbar and the title bar are counted.
    if (!event->spontaneous()) {
        if (const QScreen* s = screen()) {
            fitToHeight(s->availableGeometry().height() - kWindowFrameAllowance);
        }
    }
    if (!event->spontaneous()) {
        keys_->reset();
    }
    sky_.setSize(size(), devicePixelRatioF());
    tick_->start();
}

void WizardDialog::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    // A closed dialog keeps nothing running: a diagnosis in progress ends and the
    // effects come back. (Minimising only pauses the clock.)
    if (!event->spontaneous() && diagnosisShown()) {
        diagnosis_->abort();
    }
    keys_->releaseHeldKey();
    tick_->stop();
}

void WizardDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange) {
        // Behind OBS or a game nobody watches the sky: it stops, and the
        // meters slow down.
        tick_->setForeground(isActiveWindow());
        if (!isActiveWindow()) {
            keys_->releaseHeldKey();
        }
    }
}

// ---- Tick ------------------------------------------------------------------------
void WizardDialog::onTick(double dt) {
    t_ += static_cast<float>(dt);
    if (isActiveWindow()) {
        advanceSky(dt);
    }
    if (diagnosisShown()) {
        diagnosis_->tick(dt);
    } else if (FilterEngine* engine = binding_->engine()) {
        tick_->readLevels(*engine);
    }
}

// The slow drift of the sky is repainted at a lower rate than the tick: each
// repaint pass of the window costs far more than the tick itself.
void WizardDialog::advanceSky(double dt) {
    sky_.advance(static_cast<float>(dt));
    skyClock_ += dt;
    if (skyClock_ < kSkyFrameSeconds) {
        return;
    }
    skyClock_ = std::fmod(skyClock_, kSkyFrameSeconds);
    const QRegion changed = sky_.takeChangedRegion(t_);
    if (!changed.isEmpty()) {
        const QRegion open = changed.subtracted(panels_.region(this));
        if (!open.isEmpty()) {
            update(open);
        }
    }
}

// Meters repaint only when they move by a pixel, and hidden ones not at all.
void WizardDialog::showLevels(const MeterTick::Levels& levels) {
    homePanel_->setLevels(levels.chainInput, levels.fxOutput);
    soundPage_->strip()->setLevels(levels.chainInput, levels.chainOutput);
    fxPage_->strip()->setLevels(levels.fxInput, levels.fxOutput);
    fxPage_->strip()->setDelayMs(levels.outputDelayMs);
    effectPanel_->compressorDisplay()->push(levels.compressorInput, levels.compressorReduction,
                                            levels.compressorOutput);
}

} // namespace Lumora
