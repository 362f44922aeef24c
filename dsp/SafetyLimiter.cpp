#include "dsp/SafetyLimiter.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

void SafetyLimiter::prepare(double sampleRate) {
    // A hair under the ceiling, so that a sample times its gain cannot round
    // up past it.
    ceiling_ = dbToGain(kCeilingDb) * (1.0f - 1e-6f);
    release_ = timeCoefficient(kReleaseMs, sampleRate);
    reset();
}

void SafetyLimiter::reset() {
    gain_ = 1.0f;
}

void SafetyLimiter::process(float* const* planes, int channels, int frames) {
    if (channels < 1 || frames < 1) {
        return;
    }
    for (int i = 0; i < frames; ++i) {
        float peak = 0.0f;
        for (int c = 0; c < channels; ++c) {
            peak = std::max(peak, std::fabs(planes[c][i]));
        }
        if (gain_ == 1.0f && peak <= ceiling_) {
            continue; // the common case: nothing to do, nothing touched
        }
        // Back towards 1, but never above what keeps this sample under the ceiling.
        float gain = 1.0f - (1.0f - gain_) * release_;
        if (peak * gain > ceiling_) {
            gain = ceiling_ / peak;
        }
        // Within 0.001 dB of 1 the release is over and the stage lets go.
        gain_ = gain > 0.9999f ? 1.0f : gain;
        if (gain_ != 1.0f) {
            for (int c = 0; c < channels; ++c) {
                planes[c][i] *= gain_;
            }
        }
    }
}

float SafetyLimiter::gainReductionDb() const {
    return -gainToDb(gain_);
}

} // namespace Lumora
