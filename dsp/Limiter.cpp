#include "dsp/Limiter.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMORA_LIMITER_SSE 1
#endif

namespace Lumora {

namespace {

// The largest magnitude over the planes. A NaN sample is skipped (every
// comparison with it is false).
float packetPeak(const float* const* planes, int used, int frames) {
    float peak = 0.0f;
    for (int c = 0; c < used; ++c) {
        const float* x = planes[c];
        int i = 0;
#ifdef LUMORA_LIMITER_SSE
        const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
        __m128 m = _mm_setzero_ps();
        for (; i + 4 <= frames; i += 4) {
            // max(a, b) gives b when a is NaN: the running peak survives.
            m = _mm_max_ps(_mm_and_ps(_mm_loadu_ps(x + i), magnitude), m);
        }
        alignas(16) float lanes[4];
        _mm_store_ps(lanes, m);
        for (float v : lanes) {
            peak = v > peak ? v : peak;
        }
#endif
        for (; i < frames; ++i) {
            const float v = std::fabs(x[i]);
            peak = v > peak ? v : peak;
        }
    }
    return peak;
}

} // namespace

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
    const float peak = packetPeak(planes, used, frames);
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
