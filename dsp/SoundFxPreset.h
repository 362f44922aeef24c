#pragma once

#include <array>
#include <cstdint>

namespace Lumora {

// The voice-effects chain's parameter record, handed over exactly like EffectPreset.

enum EffectCode : int32_t {
    kEffectPitch = 0,
    kEffectModulation = 1,
    kEffectRadio = 2,
    kEffectDelay = 3,
    kEffectReverb = 4,
};
constexpr int kEffectCount = 5;
constexpr int kFormantBandCount = 5;

enum ModType : int32_t { kModChorus = 0, kModFlanger = 1, kModTremolo = 2 };

struct FormantBand {
    float hz = 1000.0f;
    float gainDb = 0.0f;
    float width = 1.5f; // not persisted
};

struct PitchParams {
    bool enabled = false;
    float semitonesA = 0.0f;
    float formantShiftA = 0.0f;
    float wetMix = 1.0f;
    bool layerBEnabled = false;
    float semitonesB = 0.0f;
    float formantShiftB = 0.0f;
    float mixAB = 0.5f;
    bool formantEqEnabled = false;
    std::array<FormantBand, kFormantBandCount> formantBands{{{400.0f, 0.0f, 1.5f},
                                                             {1000.0f, 0.0f, 1.5f},
                                                             {2000.0f, 0.0f, 1.5f},
                                                             {3500.0f, 0.0f, 1.5f},
                                                             {7000.0f, 0.0f, 1.5f}}};
};

struct ReverbParams {
    bool enabled = false;
    float roomSize = 0.5f;
    float damping = 0.5f;
    float wetMix = 0.3f;
    float lowCutHz = 20.0f;
    float duckingAmount = 0.0f;
};

struct DelayParams {
    bool enabled = false;
    float timeMs = 250.0f;
    float feedback = 0.3f;
    float wetMix = 0.3f;
};

struct RadioParams {
    bool enabled = false;
    float lowCutHz = 300.0f;
    float highCutHz = 3400.0f;
    float overdrive = 0.2f;
};

struct ModParams {
    bool enabled = false;
    int32_t type = kModChorus;
    float rate = 1.0f;
    float depth = 0.5f;
    float feedback = 0.3f;
    float wetMix = 0.5f;
};

struct SoundFxPreset {
    float inputGainDb = 0.0f;  // not persisted
    float outputGainDb = 0.0f; // stored only when not 0 dB
    PitchParams pitch;
    ReverbParams reverb;
    DelayParams delay;
    RadioParams radio;
    ModParams mod;
    std::array<int32_t, kEffectCount> effectOrder{
        {kEffectPitch, kEffectModulation, kEffectRadio, kEffectDelay, kEffectReverb}};

    bool anyEnabled() const {
        return pitch.enabled || reverb.enabled || delay.enabled || radio.enabled || mod.enabled;
    }
};

} // namespace Lumora
