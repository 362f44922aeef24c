#include "dsp/FilterDesign.h"

#include <algorithm>
#include <cmath>

namespace Lumora::FilterDesign {

namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;

bool usable(double v) {
    return std::isfinite(v);
}

double safeHz(double hz, double sampleRate) {
    return std::clamp(hz, 1.0, 0.49 * sampleRate);
}

double safeQ(double q) {
    return std::max(q, kMinQ);
}

double safeGainDb(double db) {
    return std::clamp(db, -kMaxGainDb, kMaxGainDb);
}

BiquadCoefficients fromDouble(double b0, double b1, double b2, double a1, double a2) {
    return {static_cast<float>(b0), static_cast<float>(b1), static_cast<float>(b2),
            static_cast<float>(a1), static_cast<float>(a2)};
}

} // namespace

BiquadCoefficients lowCut(double hz, double sampleRate) {
    if (!usable(hz) || !usable(sampleRate) || sampleRate <= 0.0) {
        return {};
    }
    const double w = kTwoPi * safeHz(hz, sampleRate) / sampleRate;
    const double cosw = std::cos(w);
    const double alpha = std::sin(w) / 1.414;
    const double norm = 1.0 + alpha;
    const double b0 = (1.0 + cosw) / 2.0 / norm;
    return fromDouble(b0, -(1.0 + cosw) / norm, b0, -2.0 * cosw / norm, (1.0 - alpha) / norm);
}

BiquadCoefficients peaking(float centerHz, float gainDb, float q, double sampleRate) {
    if (!usable(centerHz) || !usable(gainDb) || !usable(q) || !usable(sampleRate) ||
        sampleRate <= 0.0) {
        return {};
    }
    const float f = static_cast<float>(safeHz(centerHz, sampleRate));
    const float g = static_cast<float>(safeGainDb(gainDb));
    const float qq = static_cast<float>(safeQ(q));
    const float a = std::pow(10.0f, g / 40.0f);
    const float w = static_cast<float>(kTwoPi) * f / static_cast<float>(sampleRate);
    const float cosw = std::cos(w);
    const float alpha = std::sin(w) / (2.0f * qq);
    const float norm = 1.0f + alpha / a;
    BiquadCoefficients c;
    c.b0 = (1.0f + alpha * a) / norm;
    c.b1 = -2.0f * cosw / norm;
    c.b2 = (1.0f - alpha * a) / norm;
    c.a1 = c.b1;
    c.a2 = (1.0f - alpha / a) / norm;
    return c;
}

BiquadCoefficients highShelf(double hz, double gainDb, double sampleRate) {
    if (!usable(hz) || !usable(gainDb) || !usable(sampleRate) || sampleRate <= 0.0) {
        return {};
    }
    const double a = std::pow(10.0, safeGainDb(gainDb) / 40.0);
    const double w = kTwoPi * safeHz(hz, sampleRate) / sampleRate;
    const double cosw = std::cos(w);
    const double beta = std::sqrt(2.0) * (std::sin(w) / 2.0) * 2.0 * std::sqrt(a);
    const double p = a + 1.0;
    const double m = a - 1.0;
    const double a0 = p - m * cosw + beta;
    return fromDouble(a * (p + m * cosw + beta) / a0, -2.0 * a * (m + p * cosw) / a0,
                      a * (p + m * cosw - beta) / a0, 2.0 * (m - p * cosw) / a0,
                      (p - m * cosw - beta) / a0);
}

BiquadCoefficients highCut(double hz, double q, double sampleRate) {
    if (!usable(hz) || !usable(q) || !usable(sampleRate) || sampleRate <= 0.0) {
        return {};
    }
    const double w = kTwoPi * safeHz(hz, sampleRate) / sampleRate;
    const double cosw = std::cos(w);
    const double alpha = std::sin(w) / (2.0 * safeQ(q));
    const double norm = 1.0 + alpha;
    const double b0 = (1.0 - cosw) / 2.0 / norm;
    return fromDouble(b0, (1.0 - cosw) / norm, b0, -2.0 * cosw / norm, (1.0 - alpha) / norm);
}

} // namespace Lumora::FilterDesign
