#include "diagnosis/DiagnosisSession.h"

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

void DiagnosisSession::clear() {
    currentStep = kStepNone;
    for (auto& list : steps) {
        list.clear();
    }
}

} // namespace Lumora
