#pragma once

#include "diagnosis/AudioMetrics.h"

#include <atomic>
#include <cstdint>

namespace Lumora {

// Listens to the processed voice on the audio thread and publishes level, peak,
// noise floor, bands, loudness and spectrum as atomics for the interface.
class DiagnosisAnalyser {
public:
    DiagnosisAnalyser();
    ~DiagnosisAnalyser();
    DiagnosisAnalyser(const DiagnosisAnalyser&) = delete;
    DiagnosisAnalyser& operator=(const DiagnosisAnalyser&) = delete;

    void prepare(double sampleRate);
    void process(const float* samples, int n);
    AudioMetrics snapshot() const;

private:
    double sampleRate_ = 48000.0;
    std::atomic<uint64_t> blockCount_{0};
};

} // namespace Lumora
