#pragma once

#include <array>
#include <cstdint>

namespace Lumora {

constexpr int kSpectrumBandCount = 64;

// One snapshot of the analyser, copied by value from its published atomics.
struct AudioMetrics {
    float smoothedLevelDb = -96.0f;
    float blockLevelDb = -96.0f;
    float peakDb = -96.0f;
    float noiseFloorDb = -96.0f;
    float lowBandDb = -96.0f;
    float midBandDb = -96.0f;
    float highBandDb = -96.0f;
    bool clipped = false;
    uint64_t blockCount = 0;
    float momentaryLufs = -70.0f;
    float shortTermLufs = -70.0f;
    std::array<float, kSpectrumBandCount> spectrumDb = [] {
        std::array<float, kSpectrumBandCount> a{};
        a.fill(-96.0f);
        return a;
    }();
};

// The summary of one recorded take.
struct StepStats {
    float level = -96.0f;
    float peak95 = -96.0f;
    float peakMax = -96.0f;
    float noiseFloorMin = -96.0f;
    float low = -96.0f;
    float mid = -96.0f;
    float high = -96.0f;
    bool clipped = false;
    int32_t count = 0;
    bool valid = false;
};

} // namespace Lumora
