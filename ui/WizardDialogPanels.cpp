// WizardDialog: putting the sound, FX, presets and key-assignment panels on
// their pages, connecting them to the working copies and the filter, and what
// an arrow key's voice does to the same working copies; and the settings store
// behind it all.
#include "ui/WizardDialog.h"

#include "engine/FilterEngine.h"
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
        if (!engine_ || !engine_->store()) {
            return std::nullopt;
        }
        return engine_->store()->load();
    });
    savePreset_ = [this](const QString& name, const EffectPreset& preset) {
        if (!engine_ || !engine_->store()) {
            return false;
        }
        SavedEffectPreset saved;
        saved.name = name.toStdString();
        saved.description = preset.description;
        saved.recording = preset.recording;
        saved.preset = preset;
        saved.preset.name = saved.name;
        const bool ok = engine_->store()->saveEffectPreset(saved);
        if (effectPresets_) {
            effectPresets_->refreshAll();
        }
        return ok;
    };
    presetApplied_ = [this](const EffectPreset&) {
        if (engine_) {
            (void)engine_->saveAppFields();
        }
    };
    recordHistory_ = [this](const DiagnosisResult& result) {
        if (engine_ && engine_->store()) {
            DiagnosisHistoryEntry entry;
            entry.timestamp = nowTimestamp();
            entry.presetApplied = false;
            entry.result = result;
            (void)engine_->store()->addDiagnosisHistory(entry);
            if (effectPresets_) {
                effectPresets_->refreshAll();
            }
        }
    };
}

void WizardDialog::installPanels() {
    SettingsStore* store = engine_ ? engine_->store() : nullptr;

    effectPanel_ = new EffectPanel(soundPage_);
    effectPanel_->setEngine(engine_);
    effectPanel_->setStore(store);
    if (engine_) {
        effectPanel_->setNoiseSuppressionStatus(engine_->chain().noiseSuppressionStatus());
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
        writeCleaning(edited, true);
    });
    connect(effectPanel_, &EffectPanel::resetDone, this, [this] {
        EffectPreset reset = working_;
        reset.inputGainDb = 0.0f;
        reset.outputGainDb = 0.0f;
        soundPage_->strip()->setGains(0.0f, 0.0f);
        writeCleaning(reset, true);
    });
    connect(fxPanel_, &SoundFxPanel::presetEdited, this, [this] {
        SoundFxPreset edited = fxPanel_->currentPreset();
        edited.inputGainDb = workingFx_.inputGainDb;
        edited.outputGainDb = workingFx_.outputGainDb;
        writeSoundFx(edited, fxActive_, true);
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
                if (engine_) {
                    engine_->setLastPresetName(saved.name);
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

void WizardDialog::showKeyState() {
    const KeyBadge& badge = keyRules_.badge();
    badgeLabel_->setText(QString::fromStdString(badge.text));
    badgeLabel_->setStyleSheet(QString::fromStdString(badge.styleSheet));
    keyAssign_->setLamps(keyRules_.activeSlot());
}

// What an arrow key's voice changes: the engine's presets, and with them every
// page and both fader strips.
EffectPreset WizardDialog::currentEffectPreset() const {
    return working_;
}
SoundFxPreset WizardDialog::currentSoundFxPreset() const {
    return workingFx_;
}

void WizardDialog::applyEffectPreset(const EffectPreset& preset) {
    EffectPreset applied = preset;
    applied.active = true;
    writeCleaning(applied, false);
}

void WizardDialog::applySoundFxPreset(const SoundFxPreset& preset) {
    writeSoundFx(preset, fxActive_, false);
}

bool WizardDialog::keyAssignPageShown() const {
    return !diagnosisShown() && currentTab() == kPresetsTab &&
           presetsPage_->currentSubTab() == kKeyAssignPage;
}

} // namespace Lumora
