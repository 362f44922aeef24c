#include "dsp/Limiter.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

void Limiter::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Limiter::reset() {
    gain_ = 1.0f;
    releaseCoeff_ = 0.0f;
    cachedReleaseMs_ = 0.0f;
    gainReductionDb_ = 0.0f;
}

void Limiter::updateCoefficients(const LimiterParams& p) {
    if (p.releaseMs != cachedReleaseMs_) {
        releaseCoeff_ = timeCoefficient(p.releaseMs, sampleRate_);
        cachedReleaseMs_ = p.releaseMs;
    }
}

void Limiter::process(float* const* planes, int channels, int frames, const LimiterParams& p) {
    const int used = std::min(channels, 2);
    const float ceiling = dbToGain(p.ceilingDb);
    float peak = 0.0f;
    for (int c = 0; c < used; ++c) {
        for (int i = 0; i < frames; ++i) {
            // A NaN sample is skipped here (the comparison is false for it).
            const float x = std::fabs(planes[c][i]);
            peak = x > peak ? x : peak;
        }
    }
    const float target = (peak > ceiling && peak > 0.0f) ? ceiling / peak : 1.0f;
    if (gain_ > target) {
        gain_ = target;
    } else {
        gain_ = (1.0f - releaseCoeff_) * target + releaseCoeff_ * gain_;
    }
    if (!std::isfinite(gain_)) {
        gain_ = 1.0f;
    }
    for (int c = 0; c < used; ++c) {
        applyGain(planes[c], frames, gain_);
    }
    gainReductionDb_ = gain_ < 1.0f ? -20.0f * std::log10(std::max(gain_, 0.000001f)) : 0.0f;
}

} // namespace Lumora
