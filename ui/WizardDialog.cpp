#include "ui/WizardDialog.h"

#include "diagnosis/RecommendedSettings.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"

#include "engine/FilterEngine.h"
#include "ui/CreditsDialog.h"
#include "ui/DiagnosisFlow.h"
#include "ui/EffectPanel.h"
#include "ui/FxPage.h"
#include "ui/HomePanel.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyBadgeBoard.h"
#include "ui/Localisation.h"
#include "ui/MainMenu.h"
#include "ui/MainTabBar.h"
#include "ui/MeterFaderWidget.h"
#include "ui/PanelTracker.h"
#include "ui/PresetsPage.h"
#include "ui/PresetsPanel.h"
#include "ui/ResultSummaryCard.h"
#include "ui/ResultsPage.h"
#include "ui/SoundPage.h"
#include "ui/Theme.h"
#include "ui/WizardPanel.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr int kTickMs = 16;
constexpr double kMaxDt = 0.1;
// The sky's sprites are repainted about 20 times a second (every third tick):
// they drift by about a pixel per frame, which still looks smooth.
constexpr double kSkyFrameSeconds = 0.045;

// The feedback form; a deployment setting, replaced through setFeedbackUrl.
const char kDefaultFeedbackUrl[] = "https://forms.gle/lumora-tindra-feedback";

int slotForKey(int key) {
    switch (key) {
    case Qt::Key_Up:
        return 0;
    case Qt::Key_Down:
        return 1;
    case Qt::Key_Left:
        return 2;
    case Qt::Key_Right:
        return 3;
    default:
        return -1;
    }
}

bool askName(QWidget* parent, const QString& title, const QString& label, QString& name) {
    bool ok = false;
    const QString entered =
        QInputDialog::getText(parent, title, label, QLineEdit::Normal, name, &ok);
    if (!ok || entered.trimmed().isEmpty()) {
        return false;
    }
    name = entered.trimmed();
    return true;
}

} // namespace

WizardDialog::WizardDialog(QWidget* parent, FilterEngine* engine)
    : QDialog(parent), engine_(engine), recommend_(&Lumora::recommend),
      feedbackUrl_(QString::fromLatin1(kDefaultFeedbackUrl)) {
    useSettingsStore();
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
    if (face.family() != QFont().family()) {
        setStyleSheet(QStringLiteral("QWidget { font-family: \"%1\"; }").arg(face.family()) +
                      Styles::scrollBar());
    }
    namePrompt_ = [this](const QString& title, const QString& label, QString& name) {
        return askName(this, title, label, name);
    };

    buildUi();
    installPanels();
    setFixedSize(500, 776);
    retranslateUi();

    background_ = QPixmap(imagePath(QStringLiteral("BG.png")));
    if (background_.isNull()) {
        background_ = QPixmap(QStringLiteral(":/images/BG.png"));
    }
    sky_.setPixmaps(QPixmap(imagePath(QStringLiteral("starshape.png"))),
                    QPixmap(imagePath(QStringLiteral("starframe.png"))),
                    QPixmap(imagePath(QStringLiteral("view_cloud01_01.png"))));
    sky_.setSize(size(), devicePixelRatioF());
    sky_.layoutStars();
    sky_.layoutClouds();

    emit easyModeChanged(true);
    if (engine_) {
        engineListener_ =
            engine_->addListener([this](unsigned changes) { onEngineChanged(changes); });
    }
    loadFromEngine();

    timer_ = new QTimer(this);
    timer_->setInterval(kTickMs);
    connect(timer_, &QTimer::timeout, this, &WizardDialog::onTick);
    timer_->start();
    elapsed_.start();
    qApp->installEventFilter(this);
}

WizardDialog::~WizardDialog() {
    if (qApp) {
        qApp->removeEventFilter(this);
    }
    // The flow's measurement hold ends before the engine stops being ours.
    delete flow_;
    flow_ = nullptr;
    if (engine_) {
        engine_->removeListener(engineListener_);
    }
}

void WizardDialog::detach() {
    if (timer_) {
        timer_->stop();
    }
    flow_->forgetEngine();
    // A noise learning run in progress ends its hold and stops reading the
    // analyser of the engine that is about to be freed.
    if (effectPanel_) {
        effectPanel_->setEngine(nullptr);
    }
    if (engine_) {
        engine_->removeListener(engineListener_);
    }
    engine_ = nullptr;
    homePanel_->setLevelsAvailable(false);
}

void WizardDialog::loadFromEngine() {
    homePanel_->setLevelsAvailable(engine_ != nullptr);
    soundPage_->revertButton()->setEnabled(hasDiagnosisPreset_);
    if (!engine_) {
        return;
    }
    // Opening the dialog switches both chains on with what the filter has; the
    // engine's report of that change loads every page.
    EffectPreset current = engine_->effectPreset();
    current.active = true;
    engine_->setEffectPreset(current);
    engine_->setSoundFxActive(true);
}

void WizardDialog::writeCleaning(const EffectPreset& preset, bool fromView) {
    if (!engine_) {
        working_ = preset;
        if (!fromView) {
            showCleaning();
        }
        return;
    }
    viewEdits_ += fromView ? 1 : 0;
    engine_->setEffectPreset(preset);
    viewEdits_ -= fromView ? 1 : 0;
}

void WizardDialog::writeSoundFx(const SoundFxPreset& preset, bool active, bool fromView) {
    if (!engine_) {
        workingFx_ = preset;
        fxActive_ = active;
        if (!fromView) {
            showSoundFx();
        }
        return;
    }
    viewEdits_ += fromView ? 1 : 0;
    engine_->setSoundFxPreset(preset, active);
    viewEdits_ -= fromView ? 1 : 0;
}

void WizardDialog::onEngineChanged(unsigned changes) {
    working_ = engine_->effectPreset();
    workingFx_ = engine_->soundFxPreset();
    fxActive_ = engine_->soundFxActive();
    if (viewEdits_ > 0) {
        return;
    }
    if (changes & FilterEngine::kCleaningChanged) {
        showCleaning();
    }
    if (changes & FilterEngine::kSoundFxChanged) {
        showSoundFx();
    }
}

void WizardDialog::showCleaning() {
    // The faders' own signals would write the same gains back: not needed.
    const QSignalBlocker blocker(soundPage_->strip());
    soundPage_->strip()->setGains(working_.inputGainDb, working_.outputGainDb);
    soundPage_->strip()->setBypass(working_.bypass);
    emit workingPresetChanged();
}

void WizardDialog::showSoundFx() {
    const QSignalBlocker blocker(fxPage_->strip());
    fxPage_->strip()->setGains(workingFx_.inputGainDb, workingFx_.outputGainDb);
    fxPage_->strip()->setBypass(!fxActive_);
    emit workingFxPresetChanged();
}

// ---- Hooks -----------------------------------------------------------------

void WizardDialog::setAnalyseFunction(AnalyseFunction analyse) {
    flow_->setAnalyseFunction(std::move(analyse));
}

void WizardDialog::setRecommendFunction(RecommendFunction recommend) {
    recommend_ = recommend ? std::move(recommend) : RecommendFunction(&Lumora::recommend);
}

void WizardDialog::setPresetSaver(SavePresetFunction save) {
    savePreset_ = std::move(save);
}
void WizardDialog::setPresetAppliedHook(PresetAppliedFunction applied) {
    presetApplied_ = std::move(applied);
}
void WizardDialog::setHistoryRecorder(HistoryFunction record) {
    recordHistory_ = std::move(record);
}
void WizardDialog::setSlotKeyHandler(SlotKeyFunction onSlotKey) {
    onSlotKey_ = std::move(onSlotKey);
}
void WizardDialog::setNamePrompt(NamePromptFunction prompt) {
    if (prompt) {
        namePrompt_ = std::move(prompt);
    }
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
    content_->addWidget(buildKeysPage(content_));
    mainLayout->addWidget(content_, 1);

    tabBar_ = new MainTabBar(main);
    mainLayout->addWidget(tabBar_);
    tabBar_->raise();
    for (int i = 0; i < MainTabBar::kTabCount; ++i) {
        tabBar_->tab(i)->installEventFilter(this);
    }

    wizardPanel_ = new WizardPanel(root_);
    flow_ = new DiagnosisFlow(this, wizardPanel_);
    root_->addWidget(main);
    root_->addWidget(wizardPanel_);
    root_->setCurrentIndex(0);
    selectTab(kDiagnoseTab);

    connect(menuButton_, &QPushButton::clicked, this, &WizardDialog::showMainMenu);
    connect(homePanel_, &HomePanel::startRequested, this, &WizardDialog::startDiagnosis);
    connect(resultsPage_, &ResultsPage::applyRequested, this,
            &WizardDialog::applyRecommendedSettings);
    connect(resultsPage_, &ResultsPage::saveRequested, this, &WizardDialog::saveRecommendedPreset);
    connect(resultsPage_, &ResultsPage::rerunRequested, this, &WizardDialog::startDiagnosis);
    connect(soundPage_, &SoundPage::revertRequested, this,
            &WizardDialog::revertToDiagnosisSettings);
    connect(soundPage_->strip(), &MeterFaderWidget::gainsChanged, this,
            [this](float in, float out) {
                EffectPreset edited = working_;
                edited.inputGainDb = in;
                edited.outputGainDb = out;
                writeCleaning(edited, true);
            });
    connect(soundPage_->strip(), &MeterFaderWidget::bypassChanged, this, [this](bool on) {
        EffectPreset edited = working_;
        edited.bypass = on;
        writeCleaning(edited, true);
    });
    connect(fxPage_->strip(), &MeterFaderWidget::gainsChanged, this, [this](float in, float out) {
        SoundFxPreset edited = workingFx_;
        edited.inputGainDb = in;
        edited.outputGainDb = out;
        writeSoundFx(edited, fxActive_, true);
    });
    connect(fxPage_->strip(), &MeterFaderWidget::bypassChanged, this,
            [this](bool on) { writeSoundFx(workingFx_, !on, true); });
    connect(resultsPage_, &ResultsPage::contentChanged, this, &WizardDialog::collectPanels);
    connectWizard();
    collectPanels();
}

void WizardDialog::collectPanels() {
    panels_.collect(this);
}

QRegion WizardDialog::panelRegion() const {
    return panels_.region(this);
}

QWidget* WizardDialog::buildHeader(QWidget* parent) {
    auto* header = new QWidget(parent);
    header->setFixedHeight(56);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(16, 10, 16, 10);
    titleLabel_ = new QLabel(QStringLiteral("Tindra"), header);
    titleLabel_->setStyleSheet(QStringLiteral("QLabel { color: #2D1B69; font-size: 17pt;"
                                              " font-weight: bold; background: transparent; }"));
    // The key badge: empty and transparent until an arrow key's voice is active.
    auto* stretch = new QLabel(header);
    stretch->setFixedHeight(32);
    stretch->setAlignment(Qt::AlignCenter);
    badgeLabel_ = stretch;
    badgeLabel_->setObjectName(QStringLiteral("keyBadge"));
    menuButton_ = new QPushButton(QStringLiteral("≡"), header);
    menuButton_->setFixedSize(40, 40);
    menuButton_->setCursor(Qt::PointingHandCursor);
    menuButton_->setStyleSheet(QStringLiteral(
        "QPushButton { background: rgba(255,255,255,160); color: #2D1B69; font-size: 17pt;"
        " border: none; border-radius: 10px; }"
        "QPushButton:hover { background: rgba(255,255,255,220); }"));
    row->addWidget(titleLabel_);
    row->addWidget(stretch, 1);
    row->addWidget(menuButton_);
    return header;
}

QWidget* WizardDialog::buildKeysPage(QWidget* parent) {
    auto* page = new QWidget(parent);
    page->setAttribute(Qt::WA_TranslucentBackground);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(16);
    keysHint_ = new QLabel(page);
    keysHint_->setObjectName(QStringLiteral("keysHint"));
    keysHint_->setWordWrap(true);
    keysHint_->setAlignment(Qt::AlignCenter);
    keysHint_->setStyleSheet(QStringLiteral(
        "#keysHint { background: rgba(255,255,255,210); color: #6B4EA0; font-size: 10pt;"
        " border-radius: 14px; padding: 14px 20px; }"));
    markPanel(keysHint_, 14);
    keyBoard_ = new KeyBadgeBoard(page);
    column->addWidget(keysHint_);
    column->addWidget(keyBoard_, 0, Qt::AlignHCenter);
    column->addStretch(1);
    return page;
}

void WizardDialog::retranslateUi() {
    tabBar_->retranslateUi();
    if (effectPanel_) {
        retranslatePanels();
    }
    menuButton_->setToolTip(tr("Menu"));
    homePanel_->retranslateUi();
    resultsPage_->retranslateUi();
    soundPage_->retranslateUi();
    fxPage_->retranslateUi();
    presetsPage_->retranslateUi();
    keysHint_->setText(tr("Press an arrow key: it lights up here. Assign voices to the keys "
                          "under Presets."));
    wizardPanel_->retranslateUi(flow_->controller());
    resultsPage_->showResult(hasResult_[0] ? &results_[0] : nullptr);
    refreshHomeStatus();
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

const DiagnosisController& WizardDialog::controller() const {
    return flow_->controller();
}

const DiagnosisRunner& WizardDialog::runner() const {
    return flow_->runner();
}

bool WizardDialog::diagnosisShown() const {
    return root_->currentIndex() == 1;
}

void WizardDialog::setLanguage(const QString& code) {
    applyLanguage(code);
    QTimer::singleShot(0, this, &WizardDialog::retranslateUi);
}

// ---- Menu ----------------------------------------------------------------------

MainMenu* WizardDialog::buildMainMenu() {
    auto* menu = new MainMenu(this, easyMode_);
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

bool WizardDialog::eventFilter(QObject* watched, QEvent* event) {
    if (!isVisible()) {
        return QDialog::eventFilter(watched, event);
    }
    const QEvent::Type type = event->type();
    if (type == QEvent::MouseButtonPress) {
        const int tab = tabBar_->indexOf(watched);
        if (tab >= 0 && static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton &&
            tabBar_->tab(tab)->isVisible()) {
            selectTab(tab);
            return true;
        }
        return QDialog::eventFilter(watched, event);
    }
    if (type != QEvent::KeyPress && type != QEvent::KeyRelease) {
        return QDialog::eventFilter(watched, event);
    }
    auto* key = static_cast<QKeyEvent*>(event);
    const int slot = slotForKey(key->key());
    if (slot < 0 || !isActiveWindow()) {
        return QDialog::eventFilter(watched, event);
    }
    if (key->isAutoRepeat()) {
        return true;
    }
    // Arrow keys keep their editing meaning in text fields, open lists and views.
    QWidget* focus = QApplication::focusWidget();
    if (qobject_cast<QLineEdit*>(focus) || qobject_cast<QAbstractItemView*>(focus)) {
        return false;
    }
    if (auto* combo = qobject_cast<QComboBox*>(focus);
        combo && combo->view() && combo->view()->isVisible()) {
        return false;
    }
    const bool pressed = type == QEvent::KeyPress;
    if (keyAssignPageShown()) {
        if (pressed) {
            keyAssign_->highlightSlot(slot);
        }
        return true;
    }
    if (!diagnosisShown() && currentTab() == kKeysTab) {
        keyBoard_->setPressed(slot, pressed);
        currentKeySlot_ = pressed ? slot : -1;
        return true;
    }
    if (onSlotKey_) {
        onSlotKey_(slot, pressed);
    } else {
        pressed ? keyRules_.press(slot) : keyRules_.release(slot);
        showKeyState();
    }
    return true;
}

void WizardDialog::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    sky_.paint(painter, event->region(), t_, panelRegion());
}

void WizardDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous()) {
        // Opening again: no key is down or toggled, whatever happened before.
        keyRules_.reset();
        showKeyState();
    }
    sky_.setSize(size(), devicePixelRatioF());
    if (timer_) {
        elapsed_.restart();
        timer_->start();
    }
}

void WizardDialog::hideEvent(QHideEvent* event) {
    QDialog::hideEvent(event);
    // A closed dialog keeps nothing running: a diagnosis in progress ends and the
    // effects come back. (Minimising only pauses the timer.)
    if (!event->spontaneous() && diagnosisShown()) {
        flow_->abort();
        leaveDiagnosis();
    }
    releaseHeldKey();
    if (timer_) {
        timer_->stop();
    }
}

void WizardDialog::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) {
        releaseHeldKey();
    }
}

void WizardDialog::releaseHeldKey() {
    // With a slot-key hook the rules never hold a key: the hook owns them.
    const int held = keyRules_.heldSlot();
    if (held < 0) {
        return;
    }
    keyRules_.release(held);
    showKeyState();
}

// ---- Tick ------------------------------------------------------------------------

void WizardDialog::onTick() {
    const double dt = static_cast<double>(elapsed_.restart()) / 1000.0;
    advance(dt);
}

void WizardDialog::advance(double rawDt) {
    const double dt = rawDt > 0.0 ? std::min(rawDt, kMaxDt) : 0.0;
    t_ += static_cast<float>(dt);
    ++tickCount_;
    sky_.advance(static_cast<float>(dt));
    // The slow drift of the sky is repainted at a lower rate than the tick:
    // each repaint pass of the window costs far more than the tick itself.
    skyClock_ += dt;
    if (skyClock_ >= kSkyFrameSeconds) {
        skyClock_ = std::fmod(skyClock_, kSkyFrameSeconds);
        const QRegion changed = sky_.takeChangedRegion(t_);
        if (!changed.isEmpty()) {
            const QRegion open = changed.subtracted(panelRegion());
            if (!open.isEmpty()) {
                update(open);
            }
        }
    }

    if (diagnosisShown()) {
        flow_->tick(dt);
        return;
    }
    updateMeters();
}

void WizardDialog::updateMeters() {
    if (!engine_) {
        return;
    }
    const VoiceChain& chain = engine_->chain();
    const VoiceFxChain& effects = engine_->effects();
    Levels levels;
    levels.chainInput = chain.inputLevelDb();
    levels.chainOutput = chain.outputLevelDb();
    levels.compressorInput = std::max(levels.chainInput, -60.0f);
    levels.compressorReduction = std::max(chain.compressorGainReductionDb(), 0.0f);
    levels.compressorOutput = std::max(levels.chainOutput, 0.0f);
    levels.fxInput = std::max(effects.inputLevelDb(), -96.0f);
    levels.fxOutput = effects.outputLevelDb();
    // Meters repaint only when they move by a pixel, and hidden ones not at all.
    homePanel_->setLevels(levels.chainInput, levels.fxOutput);
    soundPage_->strip()->setLevels(levels.chainInput, levels.chainOutput);
    fxPage_->strip()->setLevels(levels.fxInput, levels.fxOutput);
    emit levelsUpdated(levels);
}

// ---- Diagnosis -------------------------------------------------------------------

void WizardDialog::connectWizard() {
    connect(flow_, &DiagnosisFlow::finished, this, &WizardDialog::leaveDiagnosis);
    connect(flow_, &DiagnosisFlow::resultDelivered, this, &WizardDialog::keepResult);
    connect(flow_, &DiagnosisFlow::noiseLearned, this,
            [this](const std::array<float, kSpectrumBandCount>& spectrum) {
                EffectPreset learned = working_;
                std::copy(spectrum.begin(), spectrum.end(), learned.spectral.profileDb.begin());
                writeCleaning(learned, false);
            });
    connect(flow_, &DiagnosisFlow::applyRequested, this, [this](const DiagnosisResult& result) {
        applyPreset(recommend_(result, engine_ && engine_->recordingMode()));
    });
    connect(flow_, &DiagnosisFlow::saveRequested, this, &WizardDialog::savePresetFor);
}

void WizardDialog::startDiagnosis() {
    if (!engine_) {
        return;
    }
    flow_->start(*engine_);
    root_->setCurrentIndex(1);
}

void WizardDialog::startNoiseLearning() {
    if (!engine_) {
        return;
    }
    flow_->startNoiseLearning(*engine_);
    root_->setCurrentIndex(1);
}

void WizardDialog::keepResult(const DiagnosisResult& result) {
    results_[1] = results_[0];
    hasResult_[1] = hasResult_[0];
    results_[0] = result;
    hasResult_[0] = true;
    resultsPage_->showResult(&results_[0]);
    refreshHomeStatus();
    if (recordHistory_) {
        recordHistory_(result);
    }
}

void WizardDialog::leaveDiagnosis() {
    root_->setCurrentIndex(0);
    if (flow_->controller().singleStep()) {
        selectTab(kSoundTab);
    } else {
        selectTab(hasResult_[0] ? kResultsTab : kDiagnoseTab);
    }
    update();
}

// ---- Presets -----------------------------------------------------------------------

void WizardDialog::applyPreset(const EffectPreset& preset) {
    EffectPreset applied = preset;
    applied.active = true;
    diagnosisPreset_ = applied;
    hasDiagnosisPreset_ = true;
    writeCleaning(applied, false);
    if (engine_) {
        engine_->setLastPresetName(applied.name);
    }
    soundPage_->revertButton()->setEnabled(true);
    if (presetApplied_) {
        presetApplied_(working_);
    }
}

void WizardDialog::applyRecommendedSettings() {
    if (!hasResult_[0]) {
        return;
    }
    applyPreset(recommend_(results_[0], engine_ && engine_->recordingMode()));
}

void WizardDialog::saveRecommendedPreset() {
    if (hasResult_[0]) {
        savePresetFor(results_[0]);
    }
}

void WizardDialog::savePresetFor(const DiagnosisResult& result) {
    EffectPreset preset = recommend_(result, engine_ && engine_->recordingMode());
    preset.active = true;
    QString name = QString::fromStdString(preset.name);
    if (!namePrompt_(tr("Save Preset"), tr("Enter a preset name:"), name)) {
        return;
    }
    preset.name = name.toStdString();
    if (savePreset_ && !savePreset_(name, preset)) {
        QMessageBox::warning(this, tr("Save Preset"),
                             tr("The preset could not be saved. Please try again."));
    }
}

void WizardDialog::revertToDiagnosisSettings() {
    if (hasDiagnosisPreset_) {
        applyPreset(diagnosisPreset_);
    }
}

void WizardDialog::refreshHomeStatus() {
    if (!hasResult_[0]) {
        homePanel_->setStatus(QString());
        return;
    }
    homePanel_->setStatus(tr("Last diagnosis:") + QStringLiteral(" ") +
                          verdictLabel(results_[0].overall) + QStringLiteral("  ") +
                          ResultSummaryCard::summaryFor(results_[0]));
}

} // namespace Lumora
