#include "diagnosis/DiagnosisAnalysis.h"

#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/StepSummary.h"
#include "dsp/NoiseProfileLearner.h"

#include <algorithm>
#include <memory>

#include <chrono>
#include <exception>
#include <utility>
#include <vector>

namespace Lumora {

DiagnosisResult analyse(const DiagnosisSession& session) {
    const auto& lists = session.steps;
    TakeSummaries takes;
    takes.normal = summarise(lists[kStepNormal]);
    takes.loud = summarise(lists[kStepLoud]);
    takes.soft = summarise(lists[kStepSoft]);
    takes.silence = summarise(lists[kStepSilence]);
    takes.plosive = summarise(lists[kStepPlosive]);

    DiagnosisResult result = judge(takes, session.micType);

    // One noise estimator for the whole product: the reducer's profile comes
    // from the silence take's own audio, measured exactly as noise learning
    // and `lumora-cli learn-noise` measure it. (A median of the meter's
    // spectrum snapshots reads 2-4 dB low where a band holds one FFT bin.)
    if (!session.silenceAudio.empty()) {
        auto learner = std::make_unique<NoiseProfileLearner>();
        learner->prepare(session.sampleRate);
        learner->process(session.silenceAudio.data(),
                         static_cast<int>(session.silenceAudio.size()));
        if (learner->framesSeen() > 0) {
            const auto profile = learner->profileDb();
            std::copy(profile.begin(), profile.end(), result.noiseSpectrum.begin());
        }
    }
    return result;
}

std::future<DiagnosisResult> startAnalysis(DiagnosisSession session) {
    try {
        return std::async(std::launch::async, [s = std::move(session)]() { return analyse(s); });
    } catch (...) {
        // No thread (or no memory for one): hand the failure over the same way
        // an exception inside the analysis would arrive.
        std::promise<DiagnosisResult> failed;
        failed.set_exception(std::current_exception());
        return failed.get_future();
    }
}

std::optional<DiagnosisResult> pollAnalysis(std::future<DiagnosisResult>& future, bool* failed) {
    if (failed) {
        *failed = false;
    }
    if (!future.valid()) {
        return std::nullopt;
    }
    try {
        if (future.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
            return std::nullopt;
        }
        return future.get();
    } catch (...) {
        if (failed) {
            *failed = true;
        }
        return std::nullopt;
    }
}

} // namespace Lumora
