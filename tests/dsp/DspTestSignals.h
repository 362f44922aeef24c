#pragma once
// Signals and measurements shared by the stage tests.

#include <cmath>
#include <vector>

namespace Lumora::TestSignals {

constexpr double kPi = 3.14159265358979323846;

inline std::vector<float> sine(double hz, double sampleRate, int n, float amplitude,
                               double phase = 0.0) {
    std::vector<float> x(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        x[i] = amplitude * static_cast<float>(std::sin(2.0 * kPi * hz * i / sampleRate + phase));
    }
    return x;
}

// Amplitude of the component at hz in x[start, start + count), by correlation
// with a sine and a cosine (a single-bin DFT); exact for whole cycles, close
// for long spans.
inline double amplitudeAt(const std::vector<float>& x, int start, int count, double hz,
                          double sampleRate) {
    double s = 0.0, c = 0.0;
    for (int i = start; i < start + count; ++i) {
        const double w = 2.0 * kPi * hz * i / sampleRate;
        s += x[i] * std::sin(w);
        c += x[i] * std::cos(w);
    }
    return 2.0 * std::sqrt(s * s + c * c) / count;
}

inline double toDb(double ratio) {
    return 20.0 * std::log10(ratio);
}

// Deterministic white noise in [-amplitude, amplitude].
inline std::vector<float> noise(int n, float amplitude, unsigned seed = 1) {
    std::vector<float> x(static_cast<size_t>(n));
    unsigned state = seed;
    for (float& v : x) {
        state = state * 1664525u + 1013904223u;
        v = amplitude * (static_cast<float>(state >> 8) / 8388608.0f - 1.0f);
    }
    return x;
}

inline bool allFinite(const std::vector<float>& x) {
    for (float v : x) {
        if (!std::isfinite(v)) {
            return false;
        }
    }
    return true;
}

} // namespace Lumora::TestSignals
