#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// The static curve's inputs, made safe (see Compressor.cpp).
struct CompressorCurve {
    float threshold = 0.0f;
    float slope = 0.0f; // 1 − 1/ratio
    float knee = 0.0f;
    float makeup = 0.0f;
    float softScale = 0.0f; // slope / (2·knee), 0 without a knee
};

// Feed-forward compressor with a soft knee, linked over the first two channels.
// The detector follows the peak level in dB with separate attack and release.
class Compressor {
public:
    void prepare(double sampleRate);
    void reset();
    void updateCoefficients(const CompParams& p);
    void process(float* const* planes, int channels, int frames, const CompParams& p);

    // The static curve: gain reduction in dB for a detector level E.
    static float gainReductionDb(float envelopeDb, const CompParams& p);

    float detectorDb() const { return detectorDb_; }
    float gainReductionDb() const { return gainReductionDb_; }

private:
    double sampleRate_ = 48000.0;
    float envelopeDb_ = -96.0f;
    float attackCoeff_ = 0.0f;
    float releaseCoeff_ = 0.0f;
    float cachedAttackMs_ = 0.0f;
    float cachedReleaseMs_ = 0.0f;
    float detectorDb_ = -96.0f;
    float gainReductionDb_ = 0.0f;
    // The curve at the end of the last packet: a new threshold, ratio, knee or
    // make-up is reached across the packet, not at its first sample (a turned
    // knob would otherwise step the gain once per packet).
    CompressorCurve curve_;
    bool hasCurve_ = false;
};

} // namespace Lumora
