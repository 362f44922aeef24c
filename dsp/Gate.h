#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Noise gate linked over the first two channels.
class Gate {
public:
    void prepare(double sampleRate);
    void reset();
    void process(float* const* planes, int channels, int frames, const GateParams& p);

    float gain() const { return gain_; }
    int state() const { return state_; }

private:
    double sampleRate_ = 48000.0;
    int state_ = 0;
    float gain_ = 0.0f;
};

} // namespace Lumora
