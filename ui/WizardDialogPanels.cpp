// WizardDialog: putting the sound, FX, presets and key-assignment panels on
// their pages, connecting them to the working copies and the filter, and what
// an arrow key's voice does to the same working copies; and the settings store
// behind it all.
#include "ui/WizardDialog.h"

#include "module/ObsFilterState.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
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

#include <QLabel>

namespace Lumora {

namespace {
// The presets page's sub-pages, in tab order.
constexpr int kEffectPresetsPage = 0;
constexpr int kSoundFxPresetsPage = 1;
constexpr int kKeyPresetsPage = 2;
constexpr int kKeyAssignPage = 3;
} // namespace

// By default everything the dialog keeps goes through the filter's settings
// store, each as one load-change-save of the file.
void WizardDialog::useSettingsStore() {
    keyRules_.setTarget(this);
    keyRules_.setReader([this]() -> std::optional<AppSettings> {
        if (!state_ || !state_->store) {
            return std::nullopt;
        }
        return state_->store->load();
    });
    savePreset_ = [this](const QString& name, const EffectPreset& preset) {
        if (!state_ || !state_->store) {
            return false;
        }
        SavedEffectPreset saved;
        saved.name = name.toStdString();
        saved.description = preset.description;
        saved.recording = preset.recording;
        saved.preset = preset;
        saved.preset.name = saved.name;
        const bool ok = state_->store->saveEffectPreset(saved);
        if (effectPresets_) {
            effectPresets_->refreshAll();
        }
        return ok;
    };
    presetApplied_ = [this](const EffectPreset&) {
        if (state_ && state_->store) {
            (void)state_->store->saveAppFields({state_->isRecordingMode, state_->lastPresetName,
                                                state_->uiScale, state_->showNumericValues});
        }
    };
    recordHistory_ = [this](const DiagnosisResult& result) {
        if (state_ && state_->store) {
            DiagnosisHistoryEntry entry;
            entry.timestamp = nowTimestamp();
            entry.presetApplied = false;
            entry.result = result;
            (void)state_->store->addDiagnosisHistory(entry);
            if (effectPresets_) {
                effectPresets_->refreshAll();
            }
        }
    };
}

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
    // A new default voice is heard at once when no arrow key is active.
    connect(keyAssign_, &KeyAssignPanel::assignmentsChanged, this, [this](bool) {
        if (!onSlotKey_) {
            keyRules_.refreshIdle();
        }
    });
}

void WizardDialog::retranslatePanels() {
    effectPanel_->retranslateUi();
    fxPanel_->retranslateUi();
    effectPresets_->retranslateUi();
    fxPresets_->retranslateUi();
    keyPresets_->retranslateUi();
    keyAssign_->retranslateUi();
}

void WizardDialog::showKeyBadge() {
    const KeyBadge& badge = keyRules_.badge();
    badgeLabel_->setText(QString::fromStdString(badge.text));
    badgeLabel_->setStyleSheet(QString::fromStdString(badge.styleSheet));
}

// What an arrow key's voice changes: the working copies and, through them, the
// filter, exactly as an edit on the sound and FX pages would.
EffectPreset WizardDialog::currentEffectPreset() const {
    return working_;
}
SoundFxPreset WizardDialog::currentSoundFxPreset() const {
    return workingFx_;
}

void WizardDialog::applyEffectPreset(const EffectPreset& preset) {
    working_ = preset;
    working_.active = true;
    if (state_) {
        state_->chain.setParameters(working_);
    }
    emit workingPresetChanged();
}

void WizardDialog::applySoundFxPreset(const SoundFxPreset& preset) {
    workingFx_ = preset;
    if (state_) {
        state_->effects.setParameters(workingFx_);
        state_->effects.setActive(fxActive_);
    }
    emit workingFxPresetChanged();
}

bool WizardDialog::keyAssignPageShown() const {
    return !diagnosisShown() && currentTab() == kPresetsTab &&
           presetsPage_->currentSubTab() == kKeyAssignPage;
}

} // namespace Lumora
