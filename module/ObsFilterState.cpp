#include "module/ObsFilterState.h"

#include <algorithm>

namespace Lumora {

AnalyserPtr makeAnalyser() {
    void* memory = ::operator new(sizeof(DiagnosisAnalyser), std::align_val_t(64));
    return AnalyserPtr(new (memory) DiagnosisAnalyser());
}

void ObsFilterState::processAudio(float* const* planes, int planeCount, int frames) {
    chain.process(planes, planeCount, frames);
    effects.process(planes, planeCount, frames);
    if (!analyser || frames < 1) {
        return;
    }
    if (planeCount == 1) {
        analyser->process(planes[0], frames);
        return;
    }
    const float* left = planes[0];
    const float* right = planes[1];
    for (int start = 0; start < frames; start += 512) {
        const int n = std::min(512, frames - start);
        for (int i = 0; i < n; ++i) {
            analyserMix[i] = (left[start + i] + right[start + i]) * 0.5f;
        }
        analyser->process(analyserMix, n);
    }
}

} // namespace Lumora
