#include "diagnosis/TakeReplay.h"

#include "diagnosis/DiagnosisController.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr double kTickSeconds = 0.016;
constexpr int kMixBlock = 512;

void feedPacket(DiagnosisAnalyser& analyser, bool stereo, const float* mono, int n) {
    if (!stereo) {
        analyser.process(mono, n);
        return;
    }
    for (int offset = 0; offset < n; offset += kMixBlock) {
        analyser.process(mono + offset, std::min(kMixBlock, n - offset));
    }
}

} // namespace

void replayTake(DiagnosisAnalyser& analyser, DiagnosisSession& session, DiagnosisStep step,
                const std::vector<float>& mono, bool stereo, int block) {
    const double rate = analyser.sampleRate();
    block = std::max(1, block);
    session.currentStep = step;
    session.sampleRate = rate;
    const double recordSeconds = DiagnosisController::step(step).durationS;
    const auto recordFrom = static_cast<size_t>(
        std::max(0.0, std::round(static_cast<double>(mono.size()) - recordSeconds * rate)));
    const double tick = kTickSeconds * rate;
    double nextTick = tick;
    size_t done = 0;
    bool recording = false;
    while (done < mono.size()) {
        if (!recording && done >= recordFrom) {
            analyser.restartHeld();
            recording = true;
        }
        // Packets never straddle the start of the recorded part.
        const size_t end = recording ? mono.size() : recordFrom;
        const int n = static_cast<int>(std::min<size_t>(static_cast<size_t>(block), end - done));
        feedPacket(analyser, stereo, mono.data() + done, n);
        if (recording) {
            session.appendAudio(step, mono.data() + done, static_cast<size_t>(n));
        }
        done += static_cast<size_t>(n);
        while (nextTick <= static_cast<double>(done)) {
            if (recording) {
                session.record(step, analyser.snapshot());
            }
            nextTick += tick;
        }
    }
}

} // namespace Lumora
