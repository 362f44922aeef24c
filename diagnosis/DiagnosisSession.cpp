#include "diagnosis/DiagnosisSession.h"

#include <algorithm>

namespace Lumora {

bool DiagnosisSession::record(int step, const AudioMetrics& metrics) {
    if (step < 0 || step >= kDiagnosisListCount) {
        return false;
    }
    auto& list = steps[static_cast<size_t>(step)];
    if (list.size() >= kMaxSnapshotsPerStep) {
        return false;
    }
    list.push_back(metrics);
    return true;
}

void DiagnosisSession::appendAudio(int step, const float* samples, size_t n) {
    if (step < 0 || step >= kDiagnosisListCount || samples == nullptr) {
        return;
    }
    auto& take = audio[static_cast<size_t>(step)];
    const size_t limit = static_cast<size_t>(sampleRate * 10.0);
    if (take.size() >= limit) {
        return;
    }
    n = std::min(n, limit - take.size());
    take.insert(take.end(), samples, samples + n);
}

void DiagnosisSession::clear() {
    currentStep = kStepNone;
    for (auto& list : steps) {
        list.clear();
    }
    for (auto& take : audio) {
        take.clear();
    }
}

} // namespace Lumora
