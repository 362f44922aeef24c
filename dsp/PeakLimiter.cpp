#include "dsp/PeakLimiter.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

void PeakLimiter::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    release_ = timeCoefficient(releaseMs_, sampleRate_);
    reset();
}

void PeakLimiter::reset() {
    gain_ = 1.0f;
}

void PeakLimiter::setCeilingDb(float ceilingDb) {
    if (!std::isfinite(ceilingDb) || ceilingDb == ceilingDb_) {
        return;
    }
    ceilingDb_ = ceilingDb;
    // Never above full scale, and a hair under the ceiling, so that a sample
    // times its gain cannot round up past it.
    ceiling_ = dbToGain(std::min(ceilingDb, 0.0f)) * (1.0f - 1e-6f);
}

void PeakLimiter::setReleaseMs(float releaseMs) {
    if (releaseMs == releaseMs_) {
        return;
    }
    releaseMs_ = releaseMs;
    release_ = timeCoefficient(releaseMs_, sampleRate_);
}

void PeakLimiter::process(float* const* planes, int channels, int frames) {
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
        // Within 0.001 dB of 1 the release is over and the limiter lets go.
        gain_ = gain > 0.9999f ? 1.0f : gain;
        if (gain_ != 1.0f) {
            for (int c = 0; c < channels; ++c) {
                planes[c][i] *= gain_;
            }
        }
    }
}

float PeakLimiter::gainReductionDb() const {
    return gain_ < 1.0f ? -gainToDb(gain_) : 0.0f;
}

} // namespace Lumora
