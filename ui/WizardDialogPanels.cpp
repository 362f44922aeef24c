// WizardDialog: putting the sound, FX, presets and key-assignment panels on
// their pages and connecting them to the working copies and the filter.
#include "ui/WizardDialog.h"

#include "module/ObsFilterState.h"
#include "ui/CompressorDisplay.h"
#include "ui/EffectPanel.h"
#include "ui/EqCurveDisplay.h"
#include "ui/FxPage.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/MeterFaderWidget.h"
#include "ui/PresetsPage.h"
#include "ui/PresetsPanel.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/SoundPage.h"

namespace Lumora {

namespace {
// The presets page's sub-pages, in tab order.
constexpr int kEffectPresetsPage = 0;
constexpr int kSoundFxPresetsPage = 1;
constexpr int kKeyPresetsPage = 2;
constexpr int kKeyAssignPage = 3;
} // namespace

void WizardDialog::installPanels() {
    SettingsStore* store = state_ ? state_->store : nullptr;

    effectPanel_ = new EffectPanel(soundPage_);
    effectPanel_->setFilterState(state_);
    effectPanel_->setStore(store);
    if (state_) {
        effectPanel_->setNoiseSuppressionStatus(state_->chain.noiseSuppressionStatus());
    }
    soundPage_->setPanel(effectPanel_);

    fxPanel_ = new SoundFxPanel(fxPage_);
    fxPanel_->setStore(store);
    fxPage_->setPanel(fxPanel_);

    effectPresets_ = new PresetsPanel(presetsPage_, store);
    fxPresets_ = new SoundFxPresetsPanel(presetsPage_, store);
    keyPresets_ = new KeyAssignPresetsPanel(presetsPage_, store);
    keyAssign_ = new KeyAssignPanel(presetsPage_, store);
    presetsPage_->setPanel(kEffectPresetsPage, effectPresets_);
    presetsPage_->setPanel(kSoundFxPresetsPage, fxPresets_);
    presetsPage_->setPanel(kKeyPresetsPage, keyPresets_);
    presetsPage_->setPanel(kKeyAssignPage, keyAssign_);

    // Edits on the panels reach the filter at once. The faders own the gains.
    connect(effectPanel_, &EffectPanel::presetEdited, this, [this] {
        EffectPreset edited = effectPanel_->currentPreset();
        edited.inputGainDb = working_.inputGainDb;
        edited.outputGainDb = working_.outputGainDb;
        edited.bypass = working_.bypass;
        edited.active = true;
        working_ = edited;
        if (state_ && effectsActive_) {
            state_->chain.setParameters(working_);
        }
    });
    connect(effectPanel_, &EffectPanel::resetDone, this, [this] {
        working_.inputGainDb = 0.0f;
        working_.outputGainDb = 0.0f;
        soundPage_->strip()->setGains(0.0f, 0.0f);
        if (state_ && effectsActive_) {
            state_->chain.setParameters(working_);
        }
    });
    connect(fxPanel_, &SoundFxPanel::presetEdited, this, [this] {
        SoundFxPreset edited = fxPanel_->currentPreset();
        edited.inputGainDb = workingFx_.inputGainDb;
        edited.outputGainDb = workingFx_.outputGainDb;
        workingFx_ = edited;
        if (state_) {
            state_->effects.setParameters(workingFx_);
        }
    });
    connect(this, &WizardDialog::workingPresetChanged, effectPanel_,
            [this] { effectPanel_->loadPreset(working_); });
    connect(this, &WizardDialog::workingFxPresetChanged, fxPanel_,
            [this] { fxPanel_->loadPreset(workingFx_); });
    connect(this, &WizardDialog::easyModeChanged, this, [this](bool easy) {
        fxPanel_->setEasyMode(easy);
        effectPanel_->setEasyMode(easy);
        keyAssign_->setEasyMode(easy);
    });
    connect(this, &WizardDialog::levelsUpdated, this, [this](const Levels& levels) {
        effectPanel_->compressorDisplay()->push(levels.compressorInput, levels.compressorReduction,
                                                levels.compressorOutput);
    });

    // Presets applied with one click.
    connect(effectPresets_, &PresetsPanel::presetApplied, this,
            [this](const SavedEffectPreset& saved) {
                EffectPreset preset = saved.preset;
                preset.name = saved.name;
                preset.description = saved.description;
                preset.recording = saved.recording;
                applyEffectPreset(preset);
                if (state_) {
                    state_->lastPresetName = saved.name;
                }
            });
    connect(fxPresets_, &SoundFxPresetsPanel::presetApplied, this,
            [this](const SavedSoundFxPreset& saved) { applySoundFxPreset(saved.preset); });
    connect(keyPresets_, &KeyAssignPresetsPanel::presetApplied, this,
            [this](const KeyAssignPreset&) { keyAssign_->reload(); });
    // Saving on one page shows on the others.
    connect(effectPanel_, &EffectPanel::presetSaved, effectPresets_, &PresetsPanel::refreshAll);
    connect(fxPanel_, &SoundFxPanel::presetSaved, fxPresets_, &SoundFxPresetsPanel::refresh);
    connect(keyAssign_, &KeyAssignPanel::presetSaved, keyPresets_, &KeyAssignPresetsPanel::refresh);
}

void WizardDialog::retranslatePanels() {
    effectPanel_->retranslateUi();
    fxPanel_->retranslateUi();
    effectPresets_->retranslateUi();
    fxPresets_->retranslateUi();
    keyPresets_->retranslateUi();
    keyAssign_->retranslateUi();
}

bool WizardDialog::keyAssignPageShown() const {
    return !diagnosisShown() && currentTab() == kPresetsTab &&
           presetsPage_->currentSubTab() == kKeyAssignPage;
}

} // namespace Lumora
