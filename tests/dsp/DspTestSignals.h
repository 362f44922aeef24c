#pragma once
// Signals and measurements shared by the stage tests.

#include <algorithm>
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

// The largest step between neighbouring samples of x within [from, to): a
// click stands out as a step the steady sound never makes.
inline float largestStep(const std::vector<float>& x, size_t from, size_t to) {
    float step = 0.0f;
    for (size_t i = from + 1; i < to && i < x.size(); ++i) {
        step = std::max(step, std::fabs(x[i] - x[i - 1]));
    }
    return step;
}

// A knob swept while a 233 Hz tone plays through `chain` (prepared, with `p`
// set up): half a second at `from`, two seconds moving to `to` a packet at a
// time (as a mouse drag gives), half a second at `to`. Returns the largest
// step during the sweep (and 30 ms after) over the largest of the steady
// sound at either end.
template <typename Chain, typename Preset, typename Set>
float sweepStepRatio(Chain& chain, Preset p, const Set& set, float from, float to, int packet) {
    const int second = 48000 / packet;
    const int before = second / 2, sweep = 2 * second, after = second / 2;
    std::vector<float> x = sine(233.0, 48000.0, packet * (before + sweep + after), 0.1f);
    for (int k = 0; k < before + sweep + after; ++k) {
        const float t = static_cast<float>(std::clamp(k - before, 0, sweep)) / sweep;
        set(p, from + (to - from) * t);
        chain.setParameters(p);
        float* planes[1] = {x.data() + k * packet};
        chain.process(planes, 1, packet);
    }
    const size_t start = static_cast<size_t>(packet * before);
    const size_t end = static_cast<size_t>(packet * (before + sweep));
    const float steady =
        std::max(largestStep(x, start / 2, start), largestStep(x, end + start / 2, x.size()));
    return largestStep(x, start, end + 1440) / steady;
}

} // namespace Lumora::TestSignals
