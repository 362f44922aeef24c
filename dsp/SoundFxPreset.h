#pragma once

#include "dsp/Parameters.h"

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
    float hz = Params::kFormantHz.initial;
    float gainDb = Params::kFormantGain.initial;
    float width = Params::kFormantWidth.initial; // not persisted
};

struct PitchParams {
    bool enabled = false;
    float semitonesA = Params::kPitch.initial;
    float formantShiftA = Params::kFormantShift.initial;
    float wetMix = Params::kPitchWet.initial;
    bool layerBEnabled = false;
    float semitonesB = Params::kPitch.initial;
    float formantShiftB = Params::kFormantShift.initial;
    float mixAB = Params::kPitchMixAB.initial;
    bool formantEqEnabled = false;
    // Five centres across the voice; each band starts flat.
    std::array<FormantBand, kFormantBandCount> formantBands{
        {{400.0f}, {1000.0f}, {2000.0f}, {3500.0f}, {7000.0f}}};
};

struct ReverbParams {
    bool enabled = false;
    float roomSize = Params::kReverbRoom.initial;
    float damping = Params::kReverbDamping.initial;
    float wetMix = Params::kReverbWet.initial;
    float lowCutHz = Params::kReverbLowCut.initial;
    float duckingAmount = Params::kReverbDucking.initial;
};

struct DelayParams {
    bool enabled = false;
    float timeMs = Params::kDelayTime.initial;
    float feedback = Params::kDelayFeedback.initial;
    float wetMix = Params::kDelayWet.initial;
};

struct RadioParams {
    bool enabled = false;
    float lowCutHz = Params::kRadioLowCut.initial;
    float highCutHz = Params::kRadioHighCut.initial;
    float overdrive = Params::kRadioDrive.initial;
};

struct ModParams {
    bool enabled = false;
    int32_t type = kModChorus;
    float rate = Params::kModRate.initial;
    float depth = Params::kModDepth.initial;
    float feedback = Params::kModFeedback.initial;
    float wetMix = Params::kModWet.initial;
};

struct SoundFxPreset {
    float inputGainDb = 0.0f;                           // not persisted
    float outputGainDb = Params::kFxOutputGain.initial; // stored only when not 0 dB
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
