#pragma once

#include "diagnosis/AudioMetrics.h"
#include "diagnosis/DiagnosisResult.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Lumora {

// The takes of a diagnosis, in wizard order. Index 0 belongs to no take.
enum DiagnosisStep : int32_t {
    kStepNone = 0,
    kStepNormal = 1,
    kStepLoud = 2,
    kStepSoft = 3,
    kStepPlosive = 4,
    kStepSilence = 5,
};

constexpr int kDiagnosisListCount = 6;
constexpr int kSessionStepCount = kDiagnosisListCount;
constexpr size_t kMaxSnapshotsPerStep = 512;

// What the wizard records: one list of analyser snapshots per take. Touched on
// the interface thread while recording; the analysis works on a copy.
struct DiagnosisSession {
    int32_t currentStep = kStepNone;
    int32_t micType = kMicUnknown;
    std::array<std::vector<AudioMetrics>, kDiagnosisListCount> steps;
    // Each take's raw audio (mono, at `sampleRate`), up to 10 s of it. The
    // room's noise profile is learned from the silence take's by the same
    // estimator as noise learning; the speech takes tell how live the room is.
    std::array<std::vector<float>, kDiagnosisListCount> audio;
    double sampleRate = 48000.0;

    // Appends a snapshot to a step's list; false (and nothing stored) when the
    // step is out of range or its list already holds 512 snapshots.
    bool record(int step, const AudioMetrics& metrics);
    void append(int step, const AudioMetrics& metrics) { (void)record(step, metrics); }
    // Appends to a take's audio, up to 10 s of it; nothing for a step out of range.
    void appendAudio(int step, const float* samples, size_t n);
    // Back to step 0 with all six lists and the audio empty; the mic type stays.
    void clear();
};

} // namespace Lumora
