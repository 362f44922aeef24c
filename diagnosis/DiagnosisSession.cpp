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

void DiagnosisSession::appendSilenceAudio(const float* samples, size_t n) {
    const size_t limit = static_cast<size_t>(sampleRate * 10.0);
    if (samples == nullptr || silenceAudio.size() >= limit) {
        return;
    }
    n = std::min(n, limit - silenceAudio.size());
    silenceAudio.insert(silenceAudio.end(), samples, samples + n);
}

void DiagnosisSession::clear() {
    currentStep = kStepNone;
    silenceAudio.clear();
    for (auto& list : steps) {
        list.clear();
    }
}

} // namespace Lumora
