#pragma once

#include "ui/MeterTick.h"
#include "ui/PanelTracker.h"
#include "ui/SkyBackground.h"

#include <QDialog>
#include <QUrl>

class QLabel;
class QPushButton;
class QScrollArea;
class QStackedWidget;

namespace Lumora {

class DiagnosisController;
class DiagnosisPresenter;
class DiagnosisRunner;
class EffectPanel;
class EngineBinding;
class FilterEngine;
class FxPage;
class HomePanel;
class KeyAssignPanel;
class KeyAssignPresetsPanel;
class KeyBadgeBoard;
class KeysPage;
class KeyBadgeLabel;
class KeyRouter;
class MainMenu;
class MainTabBar;
class PresetsPage;
class PresetsPanel;
class ResultsPage;
class SoundFxPanel;
class SoundFxPresetsPanel;
class SoundPage;
class WizardPanel;
struct EffectPreset;
struct SoundFxPreset;

// The plug-in's one window: the header, the tab pages (diagnose, results,
// sound, FX, presets, keys) and the wizard page over them, the menu and the
// animated sky. What the pages show comes from the filter engine through the
// binding; the diagnosis, the arrow keys and the meters each have a class of
// their own (DiagnosisPresenter, KeyRouter, MeterTick).
class WizardDialog : public QDialog {
    Q_OBJECT
public:
    enum Tab { kDiagnoseTab, kResultsTab, kSoundTab, kFxTab, kPresetsTab, kKeysTab };

    // The window's designed size, in logical pixels.
    static constexpr int kWidth = 500;
    static constexpr int kHeight = 776;
    // The shortest it gets, and what the title bar and borders are taken to need.
    static constexpr int kMinHeight = 360;
    static constexpr int kWindowFrameAllowance = 48;
    static constexpr int kHeaderHeight = 56;

    // `engine` may be null: the dialog then shows its pages but drives no filter.
    // With an engine, opening the dialog switches both chains on with what the
    // filter has.
    WizardDialog(QWidget* parent, FilterEngine* engine);
    ~WizardDialog() override;

    // Sizes the window for `available` pixels of height: its designed size
    // when that fits, else shorter, with the pages scrolling inside it (the
    // window is made when it opens, for the screen it opens on).
    void fitToHeight(int available);
    // The scrolling frame of the pages (between the header and the tab bar).
    QScrollArea* frame() const { return frame_; }

    // Stops the clock and lets go of the engine, which is about to be freed.
    void detach();
    FilterEngine* engine() const;

    void retranslateUi();
    void selectTab(int index);
    // Applies a language from the menu; the texts follow on the next turn of the
    // event loop.
    void setLanguage(const QString& code);
    MainMenu* buildMainMenu();

    // One tick of the clock with the given time step.
    void advance(double dt) { tick_->advance(dt); }
    QTimer* tickTimer() const { return tick_->timer(); }

    // Where an arrow key goes (see KeyRouter).
    bool keyAssignPageShown() const;
    bool keysTabShown() const;

    // State for tests and tools.
    int currentTab() const;
    bool diagnosisShown() const;
    bool easyMode() const { return easyMode_; }
    float animationTime() const { return t_; }
    quint64 tickCount() const { return tick_->count(); }
    SkyBackground& sky() { return sky_; }
    EngineBinding* binding() const { return binding_; }
    DiagnosisPresenter* diagnosis() const { return diagnosis_; }
    KeyRouter* keys() const { return keys_; }
    MeterTick* meterTick() const { return tick_; }
    const DiagnosisController& controller() const;
    const DiagnosisRunner& runner() const;
    const EffectPreset& workingPreset() const;
    const SoundFxPreset& workingFxPreset() const;
    MainTabBar* tabBar() const { return tabBar_; }
    HomePanel* homePanel() const { return homePanel_; }
    ResultsPage* resultsPage() const { return resultsPage_; }
    SoundPage* soundPage() const { return soundPage_; }
    EffectPanel* effectPanel() const { return effectPanel_; }
    SoundFxPanel* soundFxPanel() const { return fxPanel_; }
    KeyAssignPanel* keyAssignPanel() const { return keyAssign_; }
    FxPage* fxPage() const { return fxPage_; }
    PresetsPage* presetsPage() const { return presetsPage_; }
    KeyBadgeBoard* keyBoard() const;
    KeyBadgeLabel* keyBadge() const { return badge_; }
    WizardPanel* wizardPanel() const { return wizardPanel_; }
    QPushButton* menuButton() const { return menuButton_; }

signals:
    // The Easy/Advanced switch moved: the effect panels follow.
    void easyModeChanged(bool easy);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildUi();
    QWidget* buildHeader(QWidget* parent);
    void installPanels();
    void onTick(double dt);
    void advanceSky(double dt);
    static QScrollArea* scrollFrame(QWidget* parent, QWidget* page, int designedHeight);
    void showLevels(const MeterTick::Levels& levels);
    void showWizard(bool shown);
    void showMainMenu();
    void showCredits();
    void collectPanels();

    EngineBinding* binding_ = nullptr;
    MeterTick* tick_ = nullptr;
    DiagnosisPresenter* diagnosis_ = nullptr;
    KeyRouter* keys_ = nullptr;
    bool easyMode_ = true;
    // The feedback form, named at build time (LUMORA_FEEDBACK_URL); empty: the
    // menu offers no feedback.
    QUrl feedbackUrl_;

    float t_ = 0.0f;
    double skyClock_ = 0.0;
    SkyBackground sky_;
    PanelTracker panels_;

    QScrollArea* frame_ = nullptr;
    QScrollArea* wizardFrame_ = nullptr;
    QStackedWidget* root_ = nullptr;
    QStackedWidget* content_ = nullptr;
    KeyBadgeLabel* badge_ = nullptr;
    QPushButton* menuButton_ = nullptr;
    MainTabBar* tabBar_ = nullptr;
    HomePanel* homePanel_ = nullptr;
    ResultsPage* resultsPage_ = nullptr;
    SoundPage* soundPage_ = nullptr;
    FxPage* fxPage_ = nullptr;
    PresetsPage* presetsPage_ = nullptr;
    EffectPanel* effectPanel_ = nullptr;
    SoundFxPanel* fxPanel_ = nullptr;
    PresetsPanel* effectPresets_ = nullptr;
    SoundFxPresetsPanel* fxPresets_ = nullptr;
    KeyAssignPresetsPanel* keyPresets_ = nullptr;
    KeyAssignPanel* keyAssign_ = nullptr;
    KeysPage* keysPage_ = nullptr;
    WizardPanel* wizardPanel_ = nullptr;
};

} // namespace Lumora
