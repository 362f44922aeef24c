#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Packet-level peak limiter with instant attack, linked over the first two channels.
class Limiter {
public:
    void prepare(double sampleRate);
    void reset();
    void updateCoefficients(const LimiterParams& p);
    void process(float* const* planes, int channels, int frames, const LimiterParams& p);

    float gainReductionDb() const { return gainReductionDb_; }

private:
    double sampleRate_ = 48000.0;
    float gainReductionDb_ = 0.0f;
};

} // namespace Lumora
