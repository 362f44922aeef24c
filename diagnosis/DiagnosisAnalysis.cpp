#include "diagnosis/DiagnosisAnalysis.h"

#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/StepSummary.h"
#include "dsp/NoiseProfileLearner.h"

#include <algorithm>
#include <memory>

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

} // namespace Lumora
