#include "diagnosis/DiagnosisAnalysis.h"

#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/StepSummary.h"
#include "diagnosis/WordEndFall.h"
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

    // How live the room is, from the speech takes' word endings; only endings
    // that stand clear of the room's noise count. The room is the silence
    // take's median level, or without it the quietest the normal take's floor
    // tracker saw between words.
    const auto& audio = session.audio;
    const float roomDb = takes.silence.valid  ? takes.silence.level
                         : takes.normal.valid ? takes.normal.noiseFloorMin
                                              : -96.0f;
    takes.wordEndFallMs = WordEndFall::measureMs(
        {&audio[kStepNormal], &audio[kStepLoud], &audio[kStepSoft]}, session.sampleRate, roomDb);

    DiagnosisResult result = judge(takes, session.micType);

    // One noise estimator for the whole product: the reducer's profile comes
    // from the silence take's own audio, measured exactly as noise learning
    // and `lumora-cli learn-noise` measure it. (A median of the meter's
    // spectrum snapshots reads 2-4 dB low where a band holds one FFT bin.)
    const std::vector<float>& silence = audio[kStepSilence];
    if (!silence.empty()) {
        auto learner = std::make_unique<NoiseProfileLearner>();
        learner->prepare(session.sampleRate);
        learner->process(silence.data(), static_cast<int>(silence.size()));
        if (learner->framesSeen() > 0) {
            const auto profile = learner->profileDb();
            std::copy(profile.begin(), profile.end(), result.noiseSpectrum.begin());
        }
    }
    return result;
}

} // namespace Lumora
