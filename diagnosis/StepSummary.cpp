#include "diagnosis/StepSummary.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr float kEmpty = -96.0f;
constexpr int kMinValidCount = 5;

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
    if (values.empty()) {
        return kEmpty;
    }
    std::sort(values.begin(), values.end());
    const double x = static_cast<double>(values.size() - 1) * 0.95;
    const size_t lo = static_cast<size_t>(std::floor(x));
    const size_t hi = static_cast<size_t>(std::ceil(x));
    if (lo == hi) {
        return values[lo];
    }
    const double f = x - static_cast<double>(lo);
    return static_cast<float>(f * values[hi] + (1.0 - f) * values[lo]);
}

StepStats summarise(const std::vector<AudioMetrics>& snapshots) {
    StepStats s;
    s.count = static_cast<int32_t>(snapshots.size());
    s.valid = s.count >= kMinValidCount;
    if (snapshots.empty()) {
        return s;
    }
    std::vector<float> level, peak, floor, low, mid, high;
    for (auto* v : {&level, &peak, &floor, &low, &mid, &high}) {
        v->reserve(snapshots.size());
    }
    for (const AudioMetrics& m : snapshots) {
        level.push_back(m.smoothedLevelDb);
        peak.push_back(m.peakDb);
        floor.push_back(m.noiseFloorDb);
        low.push_back(m.lowBandDb);
        mid.push_back(m.midBandDb);
        high.push_back(m.highBandDb);
        s.clipped = s.clipped || m.clipped;
    }
    s.level = medianOf(level);
    s.peak95 = percentile95(peak);
    s.peakMax = *std::max_element(peak.begin(), peak.end());
    s.noiseFloorMin = *std::min_element(floor.begin(), floor.end());
    s.low = medianOf(std::move(low));
    s.mid = medianOf(std::move(mid));
    s.high = medianOf(std::move(high));
    return s;
}

} // namespace Lumora
