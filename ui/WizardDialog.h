#pragma once

#include "diagnosis/DiagnosisController.h"
#include "diagnosis/DiagnosisResult.h"
#include "dsp/EffectPreset.h"
#include "dsp/SoundFxPreset.h"
#include "ui/DiagnosisRunner.h"
#include "ui/PanelTracker.h"
#include "ui/SkyBackground.h"

#include "settings/KeyAssignmentRules.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QUrl>

#include <array>
#include <functional>

class QLabel;
class QPushButton;
class QStackedWidget;
class QTimer;

namespace Lumora {

class EffectPanel;
class KeyAssignPanel;
class KeyAssignPresetsPanel;
class PresetsPanel;
class SoundFxPanel;
class SoundFxPresetsPanel;

class FilterEngine;
class DiagnosisFlow;
class FxPage;
class HomePanel;
class KeyBadgeBoard;
class MainMenu;
class MainTabBar;
class PresetsPage;
class ResultsPage;
class SoundPage;
class WizardPanel;

// The plug-in's one window: diagnosis, results, sound, FX, presets and keys.
//
// With a filter engine it is a view of the engine (see the constructor). The
// hooks below default to the real analysis, recommendation and settings store;
// tests replace some of them to observe what the dialog does.
class WizardDialog : public QDialog, private KeyAssignmentTarget {
    Q_OBJECT
public:
    enum Tab { kDiagnoseTab, kResultsTab, kSoundTab, kFxTab, kPresetsTab, kKeysTab };

    // Turns a finished session into verdicts (runs on its own thread).
    using AnalyseFunction = DiagnosisRunner::AnalyseFunction;
    // Turns a result into recommended settings for the chain.
    using RecommendFunction = std::function<EffectPreset(const DiagnosisResult&, bool recording)>;
    // Stores an effect preset under a name; false when saving failed.
    using SavePresetFunction = std::function<bool(const QString& name, const EffectPreset&)>;
    // Told after a preset became the filter's current one (to persist
    // lastPresetName and the application fields).
    using PresetAppliedFunction = std::function<void(const EffectPreset&)>;
    // Told about every finished diagnosis (for the history).
    using HistoryFunction = std::function<void(const DiagnosisResult&)>;
    // An assigned arrow key went down (pressed) or up; slot 0 Up, 1 Down, 2 Left, 3 Right.
    using SlotKeyFunction = std::function<void(int slot, bool pressed)>;
    // Asks for a name; false when the user cancelled.
    using NamePromptFunction =
        std::function<bool(const QString& title, const QString& label, QString& name)>;

    // `engine` may be null: the dialog then shows its pages but drives no filter.
    // With an engine the dialog is a view of it: it shows what the engine has on
    // air, follows every change the engine reports, and makes every edit through
    // it.
    WizardDialog(QWidget* parent, FilterEngine* engine);
    ~WizardDialog() override;

    // Stops the timers and lets go of the engine, which is about to be freed.
    void detach();
    FilterEngine* engine() const { return engine_; }

    // Hooks; each has a harmless default.
    // The dialog analyses, recommends and keeps presets and history with the real
    // diagnosis and the filter's settings store; tests put their own in.
    void setAnalyseFunction(AnalyseFunction analyse);
    void setRecommendFunction(RecommendFunction recommend);
    void setPresetSaver(SavePresetFunction save);
    void setPresetAppliedHook(PresetAppliedFunction applied);
    void setHistoryRecorder(HistoryFunction record);
    void setSlotKeyHandler(SlotKeyFunction onSlotKey);
    void setNamePrompt(NamePromptFunction prompt);
    void setFeedbackUrl(const QUrl& url) { feedbackUrl_ = url; }

    void retranslateUi();
    void selectTab(int index);
    // Applies a language from the menu; the texts follow on the next turn of the
    // event loop.
    void setLanguage(const QString& code);

    bool eventFilter(QObject* watched, QEvent* event) override;

    // One tick of the 16 ms timer with the given time step (capped at 0.1 s).
    void advance(double dt);
    QTimer* tickTimer() const { return timer_; }

    // Actions, also for the panels that arrive later.
    void startDiagnosis();
    // Records the silence take alone and learns the room's noise profile from it.
    void startNoiseLearning();
    void applyRecommendedSettings();
    void saveRecommendedPreset();
    void revertToDiagnosisSettings();
    MainMenu* buildMainMenu();

    // State for tests and tools.
    int currentTab() const;
    bool diagnosisShown() const;
    bool easyMode() const { return easyMode_; }
    float animationTime() const { return t_; }
    quint64 tickCount() const { return tickCount_; }
    const DiagnosisController& controller() const;
    const DiagnosisRunner& runner() const;
    SkyBackground& sky() { return sky_; }
    const EffectPreset& workingPreset() const { return working_; }
    const SoundFxPreset& workingFxPreset() const { return workingFx_; }
    bool hasResult(int slot) const { return hasResult_[static_cast<size_t>(slot)]; }
    const DiagnosisResult& result(int slot) const { return results_[static_cast<size_t>(slot)]; }
    bool hasDiagnosisPreset() const { return hasDiagnosisPreset_; }
    MainTabBar* tabBar() const { return tabBar_; }
    HomePanel* homePanel() const { return homePanel_; }
    ResultsPage* resultsPage() const { return resultsPage_; }
    SoundPage* soundPage() const { return soundPage_; }
    EffectPanel* effectPanel() const { return effectPanel_; }
    SoundFxPanel* soundFxPanel() const { return fxPanel_; }
    KeyAssignPanel* keyAssignPanel() const { return keyAssign_; }
    FxPage* fxPage() const { return fxPage_; }
    PresetsPage* presetsPage() const { return presetsPage_; }
    KeyBadgeBoard* keyBoard() const { return keyBoard_; }
    WizardPanel* wizardPanel() const { return wizardPanel_; }
    QPushButton* menuButton() const { return menuButton_; }

    // The levels one tick hands to the meters and displays, in dB.
    struct Levels {
        float chainInput = -96.0f;
        float chainOutput = -96.0f;
        float compressorInput = -60.0f;   // clamped below at -60
        float compressorReduction = 0.0f; // clamped below at 0
        float compressorOutput = 0.0f;    // clamped below at 0
        float fxInput = -96.0f;           // floor -96
        float fxOutput = -96.0f;
    };

signals:
    // Every tick on the main page with a filter: for the equaliser and
    // compressor displays of the sound panel and the key-badge board.
    void levelsUpdated(const Levels& levels);
    // The cleaning preset changed other than by an edit on the sound page (a
    // preset applied, the diagnosis, noise learned, a procedure): the sound
    // panel reloads from workingPreset().
    void workingPresetChanged();
    // The same for the sound-effect preset and the FX panel.
    void workingFxPresetChanged();
    // The Easy/Advanced switch moved: the effect panels follow.
    void easyModeChanged(bool easy);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildUi();
    QWidget* buildHeader(QWidget* parent);
    QWidget* buildKeysPage(QWidget* parent);
    void connectWizard();
    void loadFromEngine();
    // Every write of a preset goes through these. `fromView`: an edit made on a
    // page, which already shows it (its knobs and faders are not reloaded).
    void writeCleaning(const EffectPreset& preset, bool fromView);
    void writeSoundFx(const SoundFxPreset& preset, bool active, bool fromView);
    void onEngineChanged(unsigned changes);
    void showCleaning();
    void showSoundFx();
    // A momentary key still down when the dialog loses the keyboard will never
    // be seen going up: it is released here and the voice restored.
    void releaseHeldKey();
    void onTick();
    void updateMeters();
    void keepResult(const DiagnosisResult& result);
    void leaveDiagnosis();
    void applyPreset(const EffectPreset& preset);
    void savePresetFor(const DiagnosisResult& result);
    void useSettingsStore();
    // The badge and the key page's lamps, from the key rules.
    void showKeyState();
    // WizardDialogPanels.cpp
    void installPanels();
    void retranslatePanels();
    bool keyAssignPageShown() const;
    // KeyAssignmentTarget: what an arrow key's voice reads and changes.
    EffectPreset currentEffectPreset() const override;
    SoundFxPreset currentSoundFxPreset() const override;
    void applyEffectPreset(const EffectPreset& preset) override;
    void applySoundFxPreset(const SoundFxPreset& preset) override;
    void refreshHomeStatus();
    void showMainMenu();
    void showCredits();
    void collectPanels();
    // The area under the visible panels, where the sky draws no sprites.
    QRegion panelRegion() const;

    FilterEngine* engine_ = nullptr;
    int engineListener_ = 0;
    int viewEdits_ = 0; // inside a write made by one of the pages
    // What the engine has (mirrored on every change), or the dialog's own
    // copies when there is no engine.
    EffectPreset working_;
    SoundFxPreset workingFx_;
    std::array<DiagnosisResult, 2> results_{};
    std::array<bool, 2> hasResult_{{false, false}};
    EffectPreset diagnosisPreset_;
    bool hasDiagnosisPreset_ = false;
    bool easyMode_ = true;
    bool fxActive_ = true;
    int currentKeySlot_ = -1;

    DiagnosisFlow* flow_ = nullptr;

    float t_ = 0.0f;
    double skyClock_ = 0.0;
    quint64 tickCount_ = 0;
    QTimer* timer_ = nullptr;
    QElapsedTimer elapsed_;
    SkyBackground sky_;
    QPixmap background_;
    PanelTracker panels_;

    RecommendFunction recommend_;
    SavePresetFunction savePreset_;
    PresetAppliedFunction presetApplied_;
    HistoryFunction recordHistory_;
    SlotKeyFunction onSlotKey_;
    NamePromptFunction namePrompt_;
    QUrl feedbackUrl_;

    QStackedWidget* root_ = nullptr;
    QStackedWidget* content_ = nullptr;
    QLabel* titleLabel_ = nullptr;
    QLabel* badgeLabel_ = nullptr;
    EffectPanel* effectPanel_ = nullptr;
    SoundFxPanel* fxPanel_ = nullptr;
    PresetsPanel* effectPresets_ = nullptr;
    SoundFxPresetsPanel* fxPresets_ = nullptr;
    KeyAssignPresetsPanel* keyPresets_ = nullptr;
    KeyAssignPanel* keyAssign_ = nullptr;
    KeyAssignmentRules keyRules_;
    QPushButton* menuButton_ = nullptr;
    MainTabBar* tabBar_ = nullptr;
    HomePanel* homePanel_ = nullptr;
    ResultsPage* resultsPage_ = nullptr;
    SoundPage* soundPage_ = nullptr;
    FxPage* fxPage_ = nullptr;
    PresetsPage* presetsPage_ = nullptr;
    QLabel* keysHint_ = nullptr;
    KeyBadgeBoard* keyBoard_ = nullptr;
    WizardPanel* wizardPanel_ = nullptr;
};

} // namespace Lumora
