#pragma once

#include <cmath>

namespace Lumora {

constexpr float kMinLevelDb = -96.0f;

inline float dbToGain(float db) { return std::pow(10.0f, db / 20.0f); }

// 20·log10(x), or -96 when x is not above 0 (silence or "unknown").
inline float gainToDb(double x) {
    return x > 0.0 ? static_cast<float>(20.0 * std::log10(x)) : kMinLevelDb;
}

// Multiplies n samples by g, four at a time so the compiler emits packed SIMD.
void applyGain(float* samples, int n, float g);

// The level of a packet: the mean over the first two channels of each plane's
// RMS (squares summed in double precision), in dB; -96 for silence.
float packetLevelDb(const float* const* planes, int channels, int frames);

} // namespace Lumora
