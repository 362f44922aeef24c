#include "dsp/Compressor.h"

#include "dsp/AudioMath.h"
#include "dsp/SimdMath.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Lumora {

namespace {

// The curve's inputs made safe: a ratio below 1 (or not a number) compresses
// nothing, a knee below 0 is a hard knee, a threshold or make-up that is not a
// number is 0 dB. Finite, sensible values pass unchanged.
using Curve = CompressorCurve;

float finiteOr(float v, float fallback) {
    return std::isfinite(v) ? v : fallback;
}

Curve curveOf(const CompParams& p) {
    const float ratio = p.ratio >= 1.0f ? p.ratio : 1.0f;
    const float slope = 1.0f - 1.0f / ratio;
    const float knee = p.kneeDb > 0.0f && std::isfinite(p.kneeDb) ? p.kneeDb : 0.0f;
    return {finiteOr(p.thresholdDb, 0.0f), slope, knee, finiteOr(p.makeupGainDb, 0.0f),
            knee > 0.0f ? slope / (2.0f * knee) : 0.0f};
}

// 0 below the knee, (1 − 1/ratio)·(over + knee/2)² / (2·knee) inside it, and
// (1 − 1/ratio)·over above it. Written as selects: the level wanders across the
// knee often, where branches would be mispredicted.
float reduction(float envelopeDb, const Curve& c) {
    const float over = envelopeDb - c.threshold;
    const float x = over + 0.5f * c.knee;
    const float inside = c.softScale * x * x;
    const float above = c.slope * over;
    const float curve = (c.knee > 0.0f && 2.0f * over <= c.knee) ? inside : above;
    return 2.0f * over < -c.knee ? 0.0f : curve;
}

// Samples per block: the detector levels and the gains of a block are computed
// four at a time around the envelope's sample-by-sample recursion.
constexpr int kBlock = 64;

// The detector: per sample, the larger magnitude of the channels in dB, or -96
// when it is not above 0. A non-finite sample counts as silence here rather
// than drive the envelope to infinity.
void detectorLevels(const float* left, const float* right, int n, float* levelDb) {
    int i = 0;
#ifdef LUMORA_SIMD_MATH
    const __m128 magnitude = _mm_castsi128_ps(_mm_set1_epi32(0x7fffffff));
    const __m128 largest = _mm_set1_ps(std::numeric_limits<float>::max());
    const __m128 dbPerNeper = _mm_set1_ps(8.68588963806503655f); // 20 / ln 10
    for (; i + 4 <= n; i += 4) {
        __m128 x = _mm_and_ps(_mm_loadu_ps(left + i), magnitude);
        if (right) {
            x = _mm_max_ps(x, _mm_and_ps(_mm_loadu_ps(right + i), magnitude));
        }
        const __m128 usable =
            _mm_and_ps(_mm_cmpgt_ps(x, _mm_setzero_ps()), _mm_cmple_ps(x, largest));
        const __m128 db = _mm_mul_ps(dbPerNeper, SimdMath::log4(x));
        _mm_storeu_ps(levelDb + i, SimdMath::select4(usable, db, _mm_set1_ps(-96.0f)));
    }
#endif
    for (; i < n; ++i) {
        float x = std::fabs(left[i]);
        if (right) {
            x = std::max(x, std::fabs(right[i]));
        }
        levelDb[i] = x > 0.0f && std::isfinite(x) ? 20.0f * std::log10(x) : -96.0f;
    }
}

// 10^(db/20) for each of n values, in place.
void dbToGains(float* values, int n) {
    int i = 0;
#ifdef LUMORA_SIMD_MATH
    const __m128 nepersPerDb = _mm_set1_ps(0.115129254649702284f); // ln 10 / 20
    for (; i + 4 <= n; i += 4) {
        _mm_storeu_ps(values + i,
                      SimdMath::exp4(_mm_mul_ps(nepersPerDb, _mm_loadu_ps(values + i))));
    }
#endif
    for (; i < n; ++i) {
        values[i] = std::pow(10.0f, values[i] / 20.0f);
    }
}

} // namespace

void Compressor::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Compressor::reset() {
    envelopeDb_ = -96.0f;
    attackCoeff_ = 0.0f;
    releaseCoeff_ = 0.0f;
    cachedAttackMs_ = 0.0f;
    cachedReleaseMs_ = 0.0f;
    detectorDb_ = -96.0f;
    gainReductionDb_ = 0.0f;
    hasCurve_ = false;
}

void Compressor::updateCoefficients(const CompParams& p) {
    if (p.attackMs != cachedAttackMs_ || p.releaseMs != cachedReleaseMs_) {
        attackCoeff_ = timeCoefficient(p.attackMs, sampleRate_);
        releaseCoeff_ = timeCoefficient(p.releaseMs, sampleRate_);
        cachedAttackMs_ = p.attackMs;
        cachedReleaseMs_ = p.releaseMs;
    }
}

float Compressor::gainReductionDb(float envelopeDb, const CompParams& p) {
    return reduction(envelopeDb, curveOf(p));
}

void Compressor::process(float* const* planes, int channels, int frames, const CompParams& p) {
    const int used = std::min(channels, 2);
    const Curve curve = curveOf(p);
    Curve now = hasCurve_ ? curve_ : curve;
    const float steps = static_cast<float>(std::max(frames, 1));
    const Curve step{(curve.threshold - now.threshold) / steps, (curve.slope - now.slope) / steps,
                     (curve.knee - now.knee) / steps, (curve.makeup - now.makeup) / steps,
                     (curve.softScale - now.softScale) / steps};
    const float a = attackCoeff_;
    const float r = releaseCoeff_;
    float e = envelopeDb_;
    if (used >= 1) {
        float* left = planes[0];
        float* right = used > 1 ? planes[1] : nullptr;
        float level[kBlock];
        float gain[kBlock];
        for (int start = 0; start < frames; start += kBlock) {
            const int n = std::min(kBlock, frames - start);
            detectorLevels(left + start, right ? right + start : nullptr, n, level);
            for (int i = 0; i < n; ++i) {
                const float c = level[i] > e ? a : r;
                e = c * e + (1.0f - c) * level[i];
                now.threshold += step.threshold;
                now.slope += step.slope;
                now.knee += step.knee;
                now.makeup += step.makeup;
                now.softScale += step.softScale;
                gain[i] = now.makeup - reduction(e, now);
            }
            dbToGains(gain, n);
            for (int i = 0; i < n; ++i) {
                left[start + i] *= gain[i];
            }
            if (right) {
                for (int i = 0; i < n; ++i) {
                    right[start + i] *= gain[i];
                }
            }
        }
    }
    // An infinite input sample drives the envelope to infinity, where it would
    // stay; start the next packet from silence instead.
    if (!std::isfinite(e)) {
        e = -96.0f;
    }
    envelopeDb_ = e;
    detectorDb_ = e;
    curve_ = curve;
    hasCurve_ = true;
    gainReductionDb_ = reduction(e, curve);
}

} // namespace Lumora
