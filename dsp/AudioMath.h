#pragma once

#include <cmath>

namespace Lumora {

constexpr float kMinLevelDb = -96.0f;

inline float dbToGain(float db) {
    return std::pow(10.0f, db / 20.0f);
}

// 20·log10(x), or -96 when x is not above 0 (silence or "unknown").
inline float gainToDb(double x) {
    return x > 0.0 ? static_cast<float>(20.0 * std::log10(x)) : kMinLevelDb;
}

// The one-pole coefficient of a time constant: exp(−1 / (ms·0.001·sampleRate)); a
// smoothed value then moves as v := c·v + (1 − c)·target. A time that is not a
// positive number (0, negative, NaN) gives 0, an instant move, rather than a
// coefficient above 1 that would make the value run away.
inline float timeCoefficient(float ms, double sampleRate) {
    if (!(ms > 0.0f) || !(sampleRate > 0.0)) {
        return 0.0f;
    }
    return static_cast<float>(std::exp(-1.0 / (static_cast<double>(ms) * 0.001 * sampleRate)));
}

// Multiplies n samples by g, four at a time so the compiler emits packed SIMD.
void applyGain(float* samples, int n, float g);

// The level of a packet: the mean over the first two channels of each plane's
// RMS (squares summed in double precision), in dB; -96 for silence.
float packetLevelDb(const float* const* planes, int channels, int frames);

} // namespace Lumora
