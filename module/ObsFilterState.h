#pragma once

#include "diagnosis/DiagnosisAnalyser.h"
#include "diagnosis/DiagnosisTaskState.h"
#include "dsp/VoiceChain.h"
#include "dsp/fx/VoiceFxChain.h"
#include "settings/AppSettings.h"
#include "settings/SettingsStore.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <string>

struct obs_source;

namespace Lumora {

// Frees memory that was allocated with 64-byte alignment (the analyser's atomics
// are written by the audio thread and read by the interface; keep them on lines
// of their own).
struct AlignedDelete {
    void operator()(DiagnosisAnalyser* p) const {
        p->~DiagnosisAnalyser();
        ::operator delete(p, std::align_val_t(64));
    }
};
using AnalyserPtr = std::unique_ptr<DiagnosisAnalyser, AlignedDelete>;
AnalyserPtr makeAnalyser();

// One per instance of the filter: the meeting point of the host's audio thread,
// the dialog and the settings store. Holds no OBS types beyond the opaque source
// pointer, so the interface library can include it without libobs.
struct ObsFilterState {
    obs_source* source = nullptr;
    AnalyserPtr analyser;
    VoiceChain chain;
    VoiceFxChain effects;
    std::unique_ptr<DiagnosisTaskState> diagnosisTask = std::make_unique<DiagnosisTaskState>();
    bool isRecordingMode = false;
    std::string lastPresetName;
    float uiScale = 1.0f;
    bool showNumericValues = true;
    std::unique_ptr<SettingsStore> ownedStore;
    SettingsStore* store = nullptr;
    uint32_t sampleRate = 48000;
    uint32_t channels = 1;

    // Set by the module glue: writes "is_recording_mode" into the source's settings.
    std::function<void(bool)> writeRecordingMode;

    // Scratch for mixing stereo to mono for the analyser; never reallocated.
    float analyserMix[512] = {};

    // Hands a preset to the processing chain, marked as applied (an inactive
    // record would pass audio through).
    void applyEffectPreset(EffectPreset preset);
    // The same for a stored preset: the record keeps its name and description.
    void applyEffectPreset(const SavedEffectPreset& saved);
    // Hands a sound-effect preset to the effects chain and lets it run.
    void applySoundFxPreset(const SoundFxPreset& preset);

    // Reads the settings file once and brings back the voice the user last had:
    // the effect preset named lastPresetName, then the default key's presets.
    void restoreFromSettings();

    // The audio callback's work, minus the OBS packet: both chains in place, then
    // the analyser. `planes` holds `channels` non-null planes of `frames` samples.
    void processAudio(float* const* planes, int channels, int frames);
};

} // namespace Lumora
