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
    // Held like the peak: the loudest 10 ms of the voice below 100 Hz, where a
    // plosive's breath hitting the capsule puts its energy.
    float lowBurstDb = -96.0f;
    // Counts the analyser's take restarts: a snapshot older than the take's
    // restart still carries the previous take's held values.
    uint32_t heldEpoch = 0;
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
    // Measures over active speech: the snapshots whose block level lies within
    // 20 dB of the take's 90th percentile (a pause or the room is not speech).
    float lowBurstMax = -96.0f;    // maximum of the held low-frequency burst
    float activeLevelDb = -96.0f;  // energy mean of the block levels over active speech
    float activeLowDb = -96.0f;    // energy mean of the low band over active speech
    float activeMidDb = -96.0f;    // energy mean of the mid band over active speech
    float activeLevelP10 = -96.0f; // 10th percentile of active block levels
};

} // namespace Lumora
