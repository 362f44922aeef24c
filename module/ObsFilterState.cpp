#include "module/ObsFilterState.h"

#include "settings/PresetLists.h"

#include <algorithm>

namespace Lumora {

AnalyserPtr makeAnalyser() {
    void* memory = ::operator new(sizeof(DiagnosisAnalyser), std::align_val_t(64));
    return AnalyserPtr(new (memory) DiagnosisAnalyser());
}

void ObsFilterState::applyEffectPreset(EffectPreset preset) {
    preset.active = true;
    chain.setParameters(preset);
}

void ObsFilterState::applyEffectPreset(const SavedEffectPreset& saved) {
    EffectPreset preset = saved.preset;
    preset.name = saved.name;
    preset.description = saved.description;
    preset.recording = saved.recording;
    applyEffectPreset(std::move(preset));
}

void ObsFilterState::applySoundFxPreset(const SoundFxPreset& preset) {
    effects.setParameters(preset);
    effects.setActive(true);
}

void ObsFilterState::restoreFromSettings() {
    if (!store) {
        return;
    }
    const AppSettings settings = store->load();
    lastPresetName = settings.lastPresetName;
    uiScale = settings.uiScale;
    showNumericValues = settings.showNumericValues;
    if (!settings.lastPresetName.empty()) {
        if (const SavedEffectPreset* p = findEffectPreset(settings, settings.lastPresetName)) {
            applyEffectPreset(*p);
        }
    }
    // What is in force when no arrow key is held or toggled.
    const KeyAssignment& idle = settings.keyAssignments.defaultKey;
    if (idle.hasEffectPreset) {
        if (const SavedEffectPreset* p = findEffectPreset(settings, idle.effectPresetName)) {
            applyEffectPreset(*p);
        }
    }
    if (idle.hasSoundFxPreset) {
        if (const SavedSoundFxPreset* p = findSoundFxPreset(settings, idle.soundFxPresetName)) {
            applySoundFxPreset(p->preset);
        }
    }
}

void ObsFilterState::processAudio(float* const* planes, int planeCount, int frames) {
    chain.process(planes, planeCount, frames);
    effects.process(planes, planeCount, frames);
    if (!analyser || frames < 1) {
        return;
    }
    if (planeCount == 1) {
        analyser->process(planes[0], frames);
        return;
    }
    const float* left = planes[0];
    const float* right = planes[1];
    for (int start = 0; start < frames; start += 512) {
        const int n = std::min(512, frames - start);
        for (int i = 0; i < n; ++i) {
            analyserMix[i] = (left[start + i] + right[start + i]) * 0.5f;
        }
        analyser->process(analyserMix, n);
    }
}

} // namespace Lumora
