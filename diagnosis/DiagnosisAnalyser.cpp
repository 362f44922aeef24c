#include "diagnosis/DiagnosisAnalyser.h"

namespace Lumora {

DiagnosisAnalyser::DiagnosisAnalyser() = default;
DiagnosisAnalyser::~DiagnosisAnalyser() = default;

void DiagnosisAnalyser::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    blockCount_.store(0);
}

void DiagnosisAnalyser::process(const float*, int n) {
    if (n < 1) {
        return;
    }
    blockCount_.fetch_add(1, std::memory_order_relaxed);
}

AudioMetrics DiagnosisAnalyser::snapshot() const {
    AudioMetrics m;
    m.blockCount = blockCount_.load(std::memory_order_relaxed);
    return m;
}

} // namespace Lumora
