#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Feed-forward compressor with a soft knee, linked over the first two channels.
class Compressor {
public:
    void prepare(double sampleRate);
    void reset();
    void updateCoefficients(const CompParams& p);
    void process(float* const* planes, int channels, int frames, const CompParams& p);

    float detectorDb() const { return detectorDb_; }
    float gainReductionDb() const { return gainReductionDb_; }

private:
    double sampleRate_ = 48000.0;
    float detectorDb_ = -96.0f;
    float gainReductionDb_ = 0.0f;
};

} // namespace Lumora
