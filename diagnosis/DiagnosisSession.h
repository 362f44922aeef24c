#pragma once

#include "diagnosis/AudioMetrics.h"

#include <array>
#include <cstdint>
#include <vector>

namespace Lumora {

// The recording state of one diagnosis: which take is current, the mic type the
// user chose and the analyser snapshots recorded per take. Index 0 of `steps`
// belongs to the mic choice and records nothing; 1 to 5 are normal, loud, soft,
// plosive and silence. The analysis reads a copy of it on its own thread.
constexpr int kSessionStepCount = 6;
constexpr size_t kMaxSnapshotsPerStep = 512;

struct DiagnosisSession {
    int32_t currentStep = 0;
    int32_t micType = 3;
    std::array<std::vector<AudioMetrics>, 6> steps;

    // Back to no take: the current step is 0 and every list is empty. The mic type
    // stays, since the user chose it for this microphone.
    void clear();
    // Records one snapshot into a take; a snapshot beyond the 512th is dropped, as
    // is one for a step outside 0..5.
    void append(int step, const AudioMetrics& metrics);
};

inline void DiagnosisSession::clear() {
    currentStep = 0;
    for (auto& list : steps) {
        list.clear();
    }
}

inline void DiagnosisSession::append(int step, const AudioMetrics& metrics) {
    if (step < 0 || step >= kSessionStepCount) {
        return;
    }
    auto& list = steps[static_cast<size_t>(step)];
    if (list.size() >= kMaxSnapshotsPerStep) {
        return;
    }
    list.push_back(metrics);
}

} // namespace Lumora
