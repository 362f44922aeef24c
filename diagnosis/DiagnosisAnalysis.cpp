#include "diagnosis/DiagnosisAnalysis.h"

#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/StepSummary.h"

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

    const auto& silence = lists[kStepSilence];
    if (!silence.empty()) {
        std::vector<float> band(silence.size());
        for (size_t b = 0; b < result.noiseSpectrum.size(); ++b) {
            for (size_t i = 0; i < silence.size(); ++i) {
                band[i] = silence[i].spectrumDb[b];
            }
            result.noiseSpectrum[b] = medianOf(band);
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
