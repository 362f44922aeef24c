#include "ui/PageWiring.h"

#include "ui/EffectPanel.h"
#include "ui/EngineBinding.h"
#include "ui/FxPage.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/KeyRouter.h"
#include "ui/MeterFaderWidget.h"
#include "ui/PresetsPanel.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/SoundPage.h"

namespace Lumora {

namespace {

void showCleaning(EngineBinding* binding, const VoicePages& pages) {
    const EffectPreset& preset = binding->cleaning();
    MeterFaderWidget* strip = pages.sound->strip();
    // The faders' own signals would write the same gains back.
    const QSignalBlocker blocker(strip);
    strip->setGains(preset.inputGainDb, preset.outputGainDb);
    strip->setBypass(preset.bypass);
    pages.effect->loadPreset(preset);
}

void showSoundFx(EngineBinding* binding, const VoicePages& pages) {
    const SoundFxPreset& preset = binding->soundFx();
    MeterFaderWidget* strip = pages.fx->strip();
    const QSignalBlocker blocker(strip);
    strip->setGains(preset.inputGainDb, preset.outputGainDb);
    strip->setBypass(!binding->soundFxActive());
    pages.soundFx->loadPreset(preset);
}

} // namespace

void wirePagesToEngine(EngineBinding* binding, KeyRouter* keys, const VoicePages& pages) {
    QObject::connect(binding, &EngineBinding::cleaningChanged, pages.effect,
                     [binding, pages] { showCleaning(binding, pages); });
    QObject::connect(binding, &EngineBinding::soundFxChanged, pages.soundFx,
                     [binding, pages] { showSoundFx(binding, pages); });
    showCleaning(binding, pages);
    showSoundFx(binding, pages);

    // The cleaning chain: the panel's controls, the faders for the gains.
    QObject::connect(pages.effect, &EffectPanel::presetEdited, binding, [binding, pages] {
        EffectPreset edited = pages.effect->currentPreset();
        const EffectPreset& now = binding->cleaning();
        edited.inputGainDb = now.inputGainDb;
        edited.outputGainDb = now.outputGainDb;
        edited.bypass = now.bypass;
        edited.active = true;
        binding->editCleaning(edited);
    });
    QObject::connect(pages.effect, &EffectPanel::resetDone, binding, [binding, pages] {
        EffectPreset reset = binding->cleaning();
        reset.inputGainDb = 0.0f;
        reset.outputGainDb = 0.0f;
        pages.sound->strip()->setGains(0.0f, 0.0f);
        binding->editCleaning(reset);
    });
    QObject::connect(pages.sound->strip(), &MeterFaderWidget::gainsChanged, binding,
                     [binding](float in, float out) {
                         EffectPreset edited = binding->cleaning();
                         edited.inputGainDb = in;
                         edited.outputGainDb = out;
                         binding->editCleaning(edited);
                     });
    QObject::connect(pages.sound->strip(), &MeterFaderWidget::bypassChanged, binding,
                     [binding](bool on) {
                         EffectPreset edited = binding->cleaning();
                         edited.bypass = on;
                         binding->editCleaning(edited);
                     });

    // The voice effects, the same way; the strip's bypass switches the chain.
    QObject::connect(pages.soundFx, &SoundFxPanel::presetEdited, binding, [binding, pages] {
        SoundFxPreset edited = pages.soundFx->currentPreset();
        edited.inputGainDb = binding->soundFx().inputGainDb;
        edited.outputGainDb = binding->soundFx().outputGainDb;
        binding->editSoundFx(edited, binding->soundFxActive());
    });
    QObject::connect(pages.fx->strip(), &MeterFaderWidget::gainsChanged, binding,
                     [binding](float in, float out) {
                         SoundFxPreset edited = binding->soundFx();
                         edited.inputGainDb = in;
                         edited.outputGainDb = out;
                         binding->editSoundFx(edited, binding->soundFxActive());
                     });
    QObject::connect(pages.fx->strip(), &MeterFaderWidget::bypassChanged, binding,
                     [binding](bool on) { binding->editSoundFx(binding->soundFx(), !on); });

    // Presets applied with one click.
    QObject::connect(pages.effectPresets, &PresetsPanel::presetApplied, binding,
                     [binding](const SavedEffectPreset& saved) {
                         EffectPreset preset = saved.preset;
                         preset.name = saved.name;
                         preset.description = saved.description;
                         preset.recording = saved.recording;
                         binding->useCleaning(preset, saved.name);
                     });
    QObject::connect(pages.soundFxPresets, &SoundFxPresetsPanel::presetApplied, binding,
                     [binding](const SavedSoundFxPreset& saved) {
                         binding->applySoundFxPreset(saved.preset, saved.name);
                     });
    QObject::connect(pages.keyPresets, &KeyAssignPresetsPanel::presetApplied, pages.keyAssign,
                     [pages](const KeyAssignPreset&) { pages.keyAssign->reload(); });

    // Saving on one page shows on the others.
    QObject::connect(pages.effect, &EffectPanel::presetSaved, pages.effectPresets,
                     &PresetsPanel::refreshAll);
    QObject::connect(pages.soundFx, &SoundFxPanel::presetSaved, pages.soundFxPresets,
                     &SoundFxPresetsPanel::refresh);
    QObject::connect(pages.keyAssign, &KeyAssignPanel::presetSaved, pages.keyPresets,
                     &KeyAssignPresetsPanel::refresh);
    QObject::connect(pages.keyAssign, &KeyAssignPanel::assignmentsChanged, keys,
                     [keys](bool) { keys->assignmentsChanged(); });
}

} // namespace Lumora
