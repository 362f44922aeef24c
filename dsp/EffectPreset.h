#pragma once

#include "dsp/Parameters.h"

#include <array>
#include <string>

namespace Lumora {

// The processing chain's whole parameter record. It crosses from the interface
// thread to the audio thread as one plain copy (see VoiceChain::setParameters),
// so it holds values only: no pointers, no shared state.

constexpr int kNotchBandCount = 5;
constexpr int kProfileBandCount = 64;
constexpr float kSilenceDb = -96.0f;

struct NotchBand {
    bool enabled = false;
    float centerHz = Params::kBandHz.initial;
    float gainDb = Params::kBandGain.initial;
    float q = Params::kBandQ.initial;
};

struct EqParams {
    bool enabled = false;
    bool lowCutEnabled = false;
    float lowCutHz = Params::kLowCut.initial;
    bool highShelfEnabled = false;
    float highShelfHz = Params::kHighShelfHz.initial;
    float highShelfGainDb = Params::kHighShelfGain.initial;
    std::array<NotchBand, kNotchBandCount> notchBands{};
    bool highCutEnabled = false;
    float highCutHz = Params::kHighCut.initial;
    float highCutQ = Params::kHighCutQ.initial;
};

struct CompParams {
    bool enabled = false;
    float thresholdDb = Params::kCompThreshold.initial;
    float ratio = Params::kCompRatio.initial;
    float kneeDb = Params::kCompKnee.initial;
    float attackMs = Params::kCompAttack.initial;
    float releaseMs = Params::kCompRelease.initial;
    float makeupGainDb = Params::kCompMakeup.initial;
};

struct LimiterParams {
    bool enabled = false;
    float ceilingDb = Params::kLimiterCeiling.initial;
    float releaseMs = Params::kLimiterRelease.initial;
};

struct GateParams {
    bool enabled = false;
    float thresholdDb = Params::kGateThreshold.initial;
    float attackMs = Params::kGateAttack.initial;
    float holdMs = Params::kGateHold.initial;
    float releaseMs = Params::kGateRelease.initial;
    float rangeDb = Params::kGateRange.initial;
};

inline std::array<float, kProfileBandCount> silentProfile() {
    std::array<float, kProfileBandCount> p{};
    p.fill(kSilenceDb);
    return p;
}

struct SpectralParams {
    bool enabled = false;
    float amount = Params::kSpectralAmount.initial;
    std::array<float, kProfileBandCount> profileDb = silentProfile();
};

struct NoiseParams {
    bool enabled = false;
    float attenLimitDb = Params::kNoiseAttenuation.initial;
    float mix = Params::kNoiseMix.initial;
};

struct EffectPreset {
    EqParams eq;
    CompParams comp;
    LimiterParams limiter;
    GateParams gate;
    SpectralParams spectral;
    NoiseParams noise;
    float inputGainDb = Params::kInputGain.initial;
    float outputGainDb = Params::kOutputGain.initial;
    bool bypass = false;
    // False means the record was never applied: the chain passes audio through.
    bool active = false;
    std::string name;
    std::string description;
    // Made for recording rather than streaming (every effect left off on purpose).
    bool recording = false;
};

} // namespace Lumora
