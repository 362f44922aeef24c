#include "dsp/GainRamp.h"

#include "dsp/AudioMath.h"

#include <cmath>

namespace Lumora {

void GainRamp::process(float* const* planes, int channels, int frames, float target) {
    if (!std::isfinite(target)) {
        target = 1.0f;
    }
    if (frames < 1) {
        return;
    }
    if (target == current_) {
        if (target != 1.0f) {
            for (int c = 0; c < channels; ++c) {
                applyGain(planes[c], frames, target);
            }
        }
        return;
    }
    // Evenly in dB: a constant factor per sample. (Two gains ramped towards
    // each other's inverse, like an input and an output gain moved together,
    // then keep their product, which a straight line in gain would not.)
    const double ratio = std::pow(static_cast<double>(target) / current_, 1.0 / frames);
    for (int c = 0; c < channels; ++c) {
        float* x = planes[c];
        double g = current_;
        for (int i = 0; i < frames; ++i) {
            g *= ratio;
            x[i] *= static_cast<float>(g);
        }
    }
    current_ = target;
}

} // namespace Lumora
