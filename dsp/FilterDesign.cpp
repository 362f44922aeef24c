#include "dsp/FilterDesign.h"

#include <algorithm>
#include <cmath>

namespace Lumora::FilterDesign {

namespace {

constexpr double kTwoPi = 6.283185307179586476925286766559;

bool usable(double v) {
    return std::isfinite(v);
}

bool usableRate(double sampleRate) {
    return usable(sampleRate) && sampleRate > 0.0;
}

// ω of a corner kept between 1 Hz and just below half the rate: at half the
// rate and beyond, the designs fold over and can put a pole on or outside the
// unit circle.
double omega(double hz, double sampleRate) {
    return kTwoPi * std::clamp(hz, 1.0, 0.49 * sampleRate) / sampleRate;
}

double safeQ(double q) {
    return std::max(q, kMinQ);
}

double safeGainDb(double db) {
    return std::clamp(db, -kMaxGainDb, kMaxGainDb);
}

BiquadCoeffs<double> normalised(double b0, double b1, double b2, double a0, double a1, double a2) {
    return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

} // namespace

BiquadCoeffs<double> lowCut(double hz, double sampleRate) {
    if (!usable(hz) || !usableRate(sampleRate)) {
        return {};
    }
    const double w = omega(hz, sampleRate);
    const double cosw = std::cos(w);
    const double alpha = std::sin(w) / (2.0 * kButterworthQ);
    const double norm = 1.0 + alpha;
    const double b0 = (1.0 + cosw) / 2.0 / norm;
    return {b0, -(1.0 + cosw) / norm, b0, -2.0 * cosw / norm, (1.0 - alpha) / norm};
}

BiquadCoeffs<double> highCut(double hz, double q, double sampleRate) {
    if (!usable(hz) || !usable(q) || !usableRate(sampleRate)) {
        return {};
    }
    const double w = omega(hz, sampleRate);
    const double cosw = std::cos(w);
    const double alpha = std::sin(w) / (2.0 * safeQ(q));
    const double norm = 1.0 + alpha;
    const double b0 = (1.0 - cosw) / 2.0 / norm;
    return {b0, (1.0 - cosw) / norm, b0, -2.0 * cosw / norm, (1.0 - alpha) / norm};
}

BiquadCoeffs<double> peaking(double centerHz, double gainDb, double q, double sampleRate) {
    if (!usable(centerHz) || !usable(gainDb) || !usable(q) || !usableRate(sampleRate)) {
        return {};
    }
    const double a = std::pow(10.0, safeGainDb(gainDb) / 40.0);
    const double w = omega(centerHz, sampleRate);
    const double cosw = std::cos(w);
    const double alpha = std::sin(w) / (2.0 * safeQ(q));
    return normalised(1.0 + alpha * a, -2.0 * cosw, 1.0 - alpha * a, 1.0 + alpha / a, -2.0 * cosw,
                      1.0 - alpha / a);
}

namespace {

// The two shelves are one design mirrored about a quarter of the sample rate:
// the high shelf is the low shelf with the cosine's sign, and so the sign of
// the first-order terms, turned over (`side` +1 low, -1 high).
BiquadCoeffs<double> shelf(double hz, double gainDb, double sampleRate, double side) {
    if (!usable(hz) || !usable(gainDb) || !usableRate(sampleRate)) {
        return {};
    }
    const double a = std::pow(10.0, safeGainDb(gainDb) / 40.0);
    const double w = omega(hz, sampleRate);
    const double cosw = side * std::cos(w);
    const double k = std::sqrt(2.0) * std::sin(w) * std::sqrt(a);
    const double p = a + 1.0;
    const double m = a - 1.0;
    return normalised(a * (p - m * cosw + k), side * 2.0 * a * (m - p * cosw),
                      a * (p - m * cosw - k), p + m * cosw + k, side * -2.0 * (m + p * cosw),
                      p + m * cosw - k);
}

} // namespace

BiquadCoeffs<double> lowShelf(double hz, double gainDb, double sampleRate) {
    return shelf(hz, gainDb, sampleRate, 1.0);
}

BiquadCoeffs<double> highShelf(double hz, double gainDb, double sampleRate) {
    return shelf(hz, gainDb, sampleRate, -1.0);
}

} // namespace Lumora::FilterDesign
