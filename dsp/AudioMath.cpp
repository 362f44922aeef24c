#include "dsp/AudioMath.h"

#include <algorithm>

namespace Lumora {

void applyGain(float* samples, int n, float g) {
    int i = 0;
    for (; i + 4 <= n; i += 4) {
        samples[i] *= g;
        samples[i + 1] *= g;
        samples[i + 2] *= g;
        samples[i + 3] *= g;
    }
    for (; i < n; ++i) {
        samples[i] *= g;
    }
}

float packetLevelDb(const float* const* planes, int channels, int frames) {
    const int used = std::min(channels, 2);
    if (used < 1) {
        return kMinLevelDb;
    }
    double meanRms = 0.0;
    for (int c = 0; c < used; ++c) {
        double sum = 0.0;
        if (frames >= 1) {
            const float* x = planes[c];
            for (int i = 0; i < frames; ++i) {
                sum += static_cast<double>(x[i]) * static_cast<double>(x[i]);
            }
            meanRms += std::sqrt(sum / frames);
        }
    }
    meanRms /= used;
    return gainToDb(meanRms);
}

} // namespace Lumora
