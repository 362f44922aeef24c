#include "dsp/fx/FxBiquad.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Corners are kept between 10 Hz and 0.45 of the sample rate: beyond Nyquist the
// designs below fold over and can put a pole outside the unit circle.
double omega(double sampleRate, double hz) {
    const double top = 0.45 * sampleRate;
    const double f = std::isfinite(hz) ? std::clamp(hz, 10.0, top) : 1000.0;
    return 2.0 * kPi * f / sampleRate;
}

} // namespace

void FxBiquad::set(double b0, double b1, double b2, double a0, double a1, double a2) {
    b0_ = b0 / a0;
    b1_ = b1 / a0;
    b2_ = b2 / a0;
    a1_ = a1 / a0;
    a2_ = a2 / a0;
}

void FxBiquad::setHighPass(double sampleRate, double hz) {
    const double w = omega(sampleRate, hz);
    const double alpha = std::sin(w) / 1.414;
    const double cw = std::cos(w);
    set((1.0 + cw) / 2.0, -(1.0 + cw), (1.0 + cw) / 2.0, 1.0 + alpha, -2.0 * cw, 1.0 - alpha);
}

void FxBiquad::setLowPass(double sampleRate, double hz) {
    const double w = omega(sampleRate, hz);
    const double alpha = std::sin(w) / 1.414;
    const double cw = std::cos(w);
    set((1.0 - cw) / 2.0, 1.0 - cw, (1.0 - cw) / 2.0, 1.0 + alpha, -2.0 * cw, 1.0 - alpha);
}

void FxBiquad::setLowShelf(double sampleRate, double hz, double gainDb) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const double w = omega(sampleRate, hz);
    const double cw = std::cos(w);
    const double alpha = std::sin(w) / std::sqrt(2.0);
    const double k = 2.0 * std::sqrt(a) * alpha;
    set(a * ((a + 1.0) - (a - 1.0) * cw + k), 2.0 * a * ((a - 1.0) - (a + 1.0) * cw),
        a * ((a + 1.0) - (a - 1.0) * cw - k), (a + 1.0) + (a - 1.0) * cw + k,
        -2.0 * ((a - 1.0) + (a + 1.0) * cw), (a + 1.0) + (a - 1.0) * cw - k);
}

void FxBiquad::setHighShelf(double sampleRate, double hz, double gainDb) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const double w = omega(sampleRate, hz);
    const double cw = std::cos(w);
    const double alpha = std::sin(w) / std::sqrt(2.0);
    const double k = 2.0 * std::sqrt(a) * alpha;
    set(a * ((a + 1.0) + (a - 1.0) * cw + k), -2.0 * a * ((a - 1.0) + (a + 1.0) * cw),
        a * ((a + 1.0) + (a - 1.0) * cw - k), (a + 1.0) - (a - 1.0) * cw + k,
        2.0 * ((a - 1.0) - (a + 1.0) * cw), (a + 1.0) - (a - 1.0) * cw - k);
}

void FxBiquad::setPeaking(double sampleRate, double hz, double gainDb, double q) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const double w = omega(sampleRate, hz);
    const double alpha = std::sin(w) / (2.0 * std::max(q, 0.05));
    const double cw = std::cos(w);
    set(1.0 + alpha * a, -2.0 * cw, 1.0 - alpha * a, 1.0 + alpha / a, -2.0 * cw, 1.0 - alpha / a);
}

} // namespace Lumora
