#pragma once

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
    float centerHz = 1000.0f;
    float gainDb = 0.0f;
    float q = 4.0f;
};

struct EqParams {
    bool enabled = false;
    bool lowCutEnabled = false;
    float lowCutHz = 80.0f;
    bool highShelfEnabled = false;
    float highShelfHz = 5000.0f;
    float highShelfGainDb = 0.0f;
    std::array<NotchBand, kNotchBandCount> notchBands{};
    bool highCutEnabled = false;
    float highCutHz = 16000.0f;
    float highCutQ = 0.707f;
};

struct CompParams {
    bool enabled = false;
    float thresholdDb = -20.0f;
    float ratio = 2.0f;
    float kneeDb = 0.0f;
    float attackMs = 10.0f;
    float releaseMs = 150.0f;
    float makeupGainDb = 0.0f;
};

struct LimiterParams {
    bool enabled = false;
    float ceilingDb = -3.0f;
    float releaseMs = 50.0f;
};

struct GateParams {
    bool enabled = false;
    float thresholdDb = -55.0f;
    float attackMs = 5.0f;
    float holdMs = 100.0f;
    float releaseMs = 150.0f;
    float rangeDb = -60.0f;
};

inline std::array<float, kProfileBandCount> silentProfile() {
    std::array<float, kProfileBandCount> p{};
    p.fill(kSilenceDb);
    return p;
}

struct SpectralParams {
    bool enabled = false;
    float amount = 0.75f;
    std::array<float, kProfileBandCount> profileDb = silentProfile();
};

struct NoiseParams {
    bool enabled = false;
    float attenLimitDb = 40.0f;
    float mix = 0.8f;
};

struct EffectPreset {
    EqParams eq;
    CompParams comp;
    LimiterParams limiter;
    GateParams gate;
    SpectralParams spectral;
    NoiseParams noise;
    float inputGainDb = 0.0f;
    float outputGainDb = 0.0f;
    bool bypass = false;
    // False means the record was never applied: the chain passes audio through.
    bool active = false;
    std::string name;
    std::string description;
    // Made for recording rather than streaming (every effect left off on purpose).
    bool recording = false;
};

} // namespace Lumora
