#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Packet-level peak limiter with instant attack, linked over the first two
// channels: one gain from the packet's own peak, applied to the whole packet.
// There is no look-ahead, and none is needed: the gain that catches a peak is
// computed from the same packet it is applied to.
class Limiter {
public:
    void prepare(double sampleRate);
    void reset();
    void updateCoefficients(const LimiterParams& p);
    void process(float* const* planes, int channels, int frames, const LimiterParams& p);

    float gain() const { return gain_; }
    float gainReductionDb() const { return gainReductionDb_; }

private:
    double sampleRate_ = 48000.0;
    float gain_ = 1.0f;
    float releaseCoeff_ = 0.0f;
    float cachedReleaseMs_ = 0.0f;
    float gainReductionDb_ = 0.0f;
};

} // namespace Lumora
