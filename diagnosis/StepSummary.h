#pragma once

#include "diagnosis/AudioMetrics.h"

#include <vector>

namespace Lumora {

// Median: the middle element; for an even count the mean of the two middle
// ones. -96 for an empty vector. Takes its argument by value: it reorders it.
float medianOf(std::vector<float> values);

// 95th percentile with linear interpolation between the two nearest ranks
// ({0, 10} gives 9.5). -96 for an empty vector.
float percentile95(std::vector<float> values);

// Reduces one take's snapshots to its summary; an empty take gives -96 in all
// seven numbers, count 0 and valid false.
StepStats summarise(const std::vector<AudioMetrics>& snapshots);

} // namespace Lumora
