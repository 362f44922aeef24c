#include "diagnosis/StepSummary.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr float kEmpty = -96.0f;
constexpr int kMinValidCount = 5;
// Active speech: the snapshots whose block level is within this many dB of the
// take's 90th percentile. Wide enough to keep a soft talker's quiet syllables
// (the gate must not be set above them), narrow enough to leave out pauses
// in a quiet room.
constexpr float kActiveRangeDb = 20.0f;

float percentile(std::vector<float> values, double fraction) {
    if (values.empty()) {
        return kEmpty;
    }
    std::sort(values.begin(), values.end());
    const double x = static_cast<double>(values.size() - 1) * fraction;
    const size_t lo = static_cast<size_t>(std::floor(x));
    const size_t hi = static_cast<size_t>(std::ceil(x));
    const double f = x - static_cast<double>(lo);
    return static_cast<float>(f * values[hi] + (1.0 - f) * values[lo]);
}

double power(float db) {
    return std::pow(10.0, static_cast<double>(db) / 10.0);
}

float powerDb(double p) {
    return p > 0.0 ? std::max(kEmpty, static_cast<float>(10.0 * std::log10(p))) : kEmpty;
}

// The energy means of the level and of the low and mid bands, and the quiet end
// of the levels, over the take's active speech. Energy-weighted: the loud
// vowels, where the voice's balance is clearest, count most; the room between
// words not at all.
void summariseActive(const std::vector<AudioMetrics>& snapshots, StepStats& s) {
    std::vector<float> blocks;
    blocks.reserve(snapshots.size());
    for (const AudioMetrics& m : snapshots) {
        blocks.push_back(m.blockLevelDb);
    }
    const float threshold = percentile(blocks, 0.9) - kActiveRangeDb;
    double level = 0.0;
    double low = 0.0;
    double mid = 0.0;
    std::vector<float> active;
    for (const AudioMetrics& m : snapshots) {
        if (m.blockLevelDb > kEmpty && m.blockLevelDb >= threshold) {
            level += power(m.blockLevelDb);
            low += power(m.lowBandDb);
            mid += power(m.midBandDb);
            active.push_back(m.blockLevelDb);
        }
    }
    if (active.empty()) {
        return;
    }
    const double n = static_cast<double>(active.size());
    s.activeLevelDb = powerDb(level / n);
    s.activeLowDb = powerDb(low / n);
    s.activeMidDb = powerDb(mid / n);
    s.activeLevelP10 = percentile(std::move(active), 0.1);
}

} // namespace

float medianOf(std::vector<float> values) {
    if (values.empty()) {
        return kEmpty;
    }
    const size_t mid = values.size() / 2;
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(mid),
                     values.end());
    const float upper = values[mid];
    if (values.size() % 2 != 0) {
        return upper;
    }
    // After nth_element the lower half holds everything not above the upper
    // middle; its largest element is the lower middle.
    const float lower =
        *std::max_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(mid));
    return (upper + lower) * 0.5f;
}

float percentile95(std::vector<float> values) {
    return percentile(std::move(values), 0.95);
}

StepStats summarise(const std::vector<AudioMetrics>& snapshots) {
    StepStats s;
    s.count = static_cast<int32_t>(snapshots.size());
    s.valid = s.count >= kMinValidCount;
    if (snapshots.empty()) {
        return s;
    }
    std::vector<float> level, peak, floor, low, mid, high, burst;
    for (auto* v : {&level, &peak, &floor, &low, &mid, &high, &burst}) {
        v->reserve(snapshots.size());
    }
    for (const AudioMetrics& m : snapshots) {
        level.push_back(m.smoothedLevelDb);
        peak.push_back(m.peakDb);
        floor.push_back(m.noiseFloorDb);
        low.push_back(m.lowBandDb);
        mid.push_back(m.midBandDb);
        high.push_back(m.highBandDb);
        burst.push_back(m.lowBurstDb);
        s.clipped = s.clipped || m.clipped;
    }
    s.level = medianOf(level);
    s.peak95 = percentile95(peak);
    s.peakMax = *std::max_element(peak.begin(), peak.end());
    s.noiseFloorMin = *std::min_element(floor.begin(), floor.end());
    s.low = medianOf(std::move(low));
    s.mid = medianOf(std::move(mid));
    s.high = medianOf(std::move(high));
    s.lowBurstMax = *std::max_element(burst.begin(), burst.end());
    summariseActive(snapshots, s);
    return s;
}

} // namespace Lumora
