#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Low cut, five peaking bands, high shelf and high cut, per channel.
class Equaliser {
public:
    void prepare(double sampleRate);
    void reset();
    // True when the stage would change anything: enabled and some filter on.
    static bool isActive(const EqParams& p);
    void updateCoefficients(const EqParams& p);
    void process(float* const* planes, int channels, int frames, const EqParams& p);

private:
    double sampleRate_ = 48000.0;
};

} // namespace Lumora
