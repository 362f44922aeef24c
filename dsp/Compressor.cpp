#include "dsp/Compressor.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

// The curve's inputs made safe: a ratio below 1 (or not a number) compresses
// nothing, a knee below 0 is a hard knee, a threshold or make-up that is not a
// number is 0 dB. Finite, sensible values pass unchanged.
struct Curve {
    float threshold;
    float slope; // 1 − 1/ratio
    float knee;
    float makeup;
};

float finiteOr(float v, float fallback) {
    return std::isfinite(v) ? v : fallback;
}

Curve curveOf(const CompParams& p) {
    const float ratio = p.ratio >= 1.0f ? p.ratio : 1.0f;
    return {finiteOr(p.thresholdDb, 0.0f), 1.0f - 1.0f / ratio,
            p.kneeDb > 0.0f && std::isfinite(p.kneeDb) ? p.kneeDb : 0.0f,
            finiteOr(p.makeupGainDb, 0.0f)};
}

float reduction(float envelopeDb, const Curve& c) {
    const float over = envelopeDb - c.threshold;
    if (2.0f * over < -c.knee) {
        return 0.0f;
    }
    if (c.knee > 0.0f && 2.0f * over <= c.knee) {
        const float x = over + c.knee / 2.0f;
        return c.slope * x * x / (2.0f * c.knee);
    }
    return c.slope * over;
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
    const float a = attackCoeff_;
    const float r = releaseCoeff_;
    float e = envelopeDb_;
    if (used >= 1) {
        float* left = planes[0];
        float* right = used > 1 ? planes[1] : nullptr;
        for (int i = 0; i < frames; ++i) {
            float x = std::fabs(left[i]);
            if (right) {
                x = std::max(x, std::fabs(right[i]));
            }
            const float level = x > 0.0f ? 20.0f * std::log10(x) : -96.0f;
            const float c = level > e ? a : r;
            e = c * e + (1.0f - c) * level;
            const float gain = std::pow(10.0f, (curve.makeup - reduction(e, curve)) / 20.0f);
            left[i] *= gain;
            if (right) {
                right[i] *= gain;
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
    gainReductionDb_ = reduction(e, curve);
}

} // namespace Lumora
