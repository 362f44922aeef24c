#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

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
};

} // namespace Lumora
