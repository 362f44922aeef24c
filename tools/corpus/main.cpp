// lumora-corpus: take sets with known truth, made from real recorded speech by
// the physics of a mic in a room, run through the diagnosis exactly as the
// wizard records them; prints each case's six verdicts against the truth and
// what the recommended preset does to the user's own takes.
//
//   lumora-corpus [--check] [--voices alsa,libri,...] [--shift SECONDS] [--write DIR]
//
// --check exits 1 when an asserted verdict is wrong or a recommendation is
// unsafe (it mutes the voice, leaves a noisy room as loud, clips, or disagrees
// with the noise verdict). --shift draws every take from SECONDS further into
// each voice's recording, to see how much a verdict owes to the words that
// happened to fall in a take. --write leaves every case's five take WAVs in DIR.

#include "Cases.h"
#include "WavFile.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisController.h"
#include "diagnosis/RecommendedSettings.h"
#include "diagnosis/TakeReplay.h"
#include "dsp/Biquad.h"
#include "dsp/FilterDesign.h"
#include "dsp/SpectralDenoiser.h"
#include "dsp/VoiceChain.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace Lumora;
using namespace Lumora::Corpus;

namespace {

// ---- what the recommended preset does to the user's own takes ----

struct Safety {
    double mutedSoft = 0.0, mutedNormal = 0.0; // fraction of active speech blocks
    double vnrGainDb = 0.0;                    // voice over noise, after minus before
    double peakOut = 0.0;                      // largest output sample
};

std::vector<float> runChain(const EffectPreset& preset, const std::vector<float>& in) {
    auto chain = std::make_unique<VoiceChain>();
    chain->prepare(kRate, 480);
    EffectPreset p = preset;
    p.active = true;
    chain->setParameters(p);
    // Block gains compare the same speech in and out: take the spectral
    // reducer's fixed delay out (the neural stage has no library here and
    // passes audio through undelayed). The input runs on by that delay in
    // silence, so the take's last blocks come out too rather than reading
    // as muted.
    const size_t delay = p.spectral.enabled ? SpectralDenoiser::kDelay : 0;
    std::vector<float> out = in;
    out.resize(in.size() + delay, 0.0f);
    for (size_t at = 0; at < out.size(); at += 480) {
        float* planes[1] = {out.data() + at};
        chain->process(planes, 1, static_cast<int>(std::min<size_t>(480, out.size() - at)));
    }
    out.erase(out.begin(), out.begin() + static_cast<long>(delay));
    return out;
}

// The speech band: above 100 Hz, where a voice's words are. A recording's
// breath thump or rumble below it (some blocks of the CMU speaker hold nothing
// above 250 Hz) is not speech, and the chain's low cut is meant to remove it.
std::vector<float> speechBand(const std::vector<float>& x) {
    PreciseBiquad highPass;
    highPass.setCoefficients(FilterDesign::lowCut(100.0, kRate));
    std::vector<float> y = x;
    highPass.process(y.data(), static_cast<int>(y.size()));
    return y;
}

// Muted: a speech block whose speech-band gain is more than 15 dB under the
// median gain of the take's speech blocks.
double mutedFraction(const std::vector<float>& cleanFull, const std::vector<float>& inFull,
                     const std::vector<float>& outFull, size_t from) {
    const std::vector<float> clean = speechBand(cleanFull), in = speechBand(inFull),
                             out = speechBand(outFull);
    const std::vector<bool> active = activeBlocks(clean, from, clean.size());
    std::vector<double> gains;
    for (size_t b = 0; b < active.size(); ++b) {
        if (active[b]) {
            const size_t at = from + b * (kRate / 100);
            gains.push_back(levelDb(out, at, at + kRate / 100) - levelDb(in, at, at + kRate / 100));
        }
    }
    if (gains.empty()) {
        return 0.0;
    }
    std::vector<double> sorted = gains;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<long>(sorted.size() / 2),
                     sorted.end());
    const double median = sorted[sorted.size() / 2];
    const auto muted =
        std::count_if(gains.begin(), gains.end(), [&](double g) { return g < median - 15.0; });
    return static_cast<double>(muted) / static_cast<double>(gains.size());
}

double activeEnergyDb(const std::vector<float>& clean, const std::vector<float>& x, size_t from) {
    const std::vector<bool> active = activeBlocks(clean, from, clean.size());
    double sum = 0.0;
    int n = 0;
    for (size_t b = 0; b < active.size(); ++b) {
        if (active[b]) {
            const size_t at = from + b * (kRate / 100);
            sum += std::pow(10.0, levelDb(x, at, at + kRate / 100) / 10.0);
            ++n;
        }
    }
    return n > 0 ? 10.0 * std::log10(sum / n) : -120.0;
}

Safety checkSafety(const TakeSet& set, const EffectPreset& preset) {
    Safety s;
    std::vector<float> out[6];
    for (int step = kStepNormal; step <= kStepSilence; ++step) {
        out[step] = runChain(preset, set.takes[step]);
        for (size_t i = recordedFrom(out[step], static_cast<DiagnosisStep>(step));
             i < out[step].size(); ++i) {
            s.peakOut = std::max(s.peakOut, static_cast<double>(std::fabs(out[step][i])));
        }
    }
    const size_t nFrom = recordedFrom(set.takes[kStepNormal], kStepNormal);
    const size_t sFrom = recordedFrom(set.takes[kStepSoft], kStepSoft);
    const size_t qFrom = recordedFrom(set.takes[kStepSilence], kStepSilence);
    s.mutedNormal =
        mutedFraction(set.clean[kStepNormal], set.takes[kStepNormal], out[kStepNormal], nFrom);
    s.mutedSoft = mutedFraction(set.clean[kStepSoft], set.takes[kStepSoft], out[kStepSoft], sFrom);
    const double before = activeEnergyDb(set.clean[kStepNormal], set.takes[kStepNormal], nFrom) -
                          levelDb(set.takes[kStepSilence], qFrom, set.takes[kStepSilence].size());
    const double after = activeEnergyDb(set.clean[kStepNormal], out[kStepNormal], nFrom) -
                         levelDb(out[kStepSilence], qFrom, out[kStepSilence].size());
    s.vnrGainDb = after - before;
    return s;
}

// ---- judging the verdicts ----

const char* letter(int32_t level) {
    return level == 0 ? "G" : level == 1 ? "C" : "W";
}

void writeTakes(const std::string& dir, const std::string& stem, const TakeSet& set) {
    const char* names[] = {"", "normal", "loud", "soft", "plosive", "silence"};
    for (int step = kStepNormal; step <= kStepSilence; ++step) {
        WavData wav;
        wav.sampleRate = kRate;
        wav.planes.push_back(set.takes[step]);
        std::string error;
        writeWav(dir + "/" + stem + "-" + names[step] + ".wav", wav, error);
    }
}

} // namespace

int main(int argc, char** argv) {
    bool check = false;
    std::string only, writeDir;
    double shift = 0.0;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--check") {
            check = true;
        } else if (arg == "--voices" && i + 1 < argc) {
            only = argv[++i];
        } else if (arg == "--shift" && i + 1 < argc) {
            shift = std::atof(argv[++i]);
        } else if (arg == "--write" && i + 1 < argc) {
            writeDir = argv[++i];
        } else {
            std::fprintf(stderr, "usage: lumora-corpus [--check] [--voices a,b] [--shift SECONDS] "
                                 "[--write DIR]\n");
            return 2;
        }
    }
    Voices voices = loadVoices(only);
    for (Voice& voice : voices.list) {
        const double at =
            std::fmod(std::fabs(shift) * kRate, static_cast<double>(voice.speech.size()));
        std::rotate(voice.speech.begin(), voice.speech.begin() + static_cast<long>(at),
                    voice.speech.end());
    }
    if (!voices.missing.empty()) {
        std::printf("voices missing: %s\n", voices.missing.c_str());
    }
    if (voices.list.empty() || (check && !voices.missing.empty())) {
        return 1;
    }

    int asserted = 0, wrong = 0, unsafe = 0, limit = 0;
    std::printf("%-24s %-11s", "case", "voice");
    for (const char* item : kItems) {
        std::printf(" %-11s", item);
    }
    std::printf("  mute soft/normal  VNR+  peak\n");
    for (const Case& c : cases()) {
        for (const Voice& voice : voices.list) {
            const TakeSet set = makeTakes(voice, c);
            if (!writeDir.empty()) {
                writeTakes(writeDir, std::string(c.name) + "-" + voice.name, set);
            }
            auto analyser = std::make_unique<DiagnosisAnalyser>();
            analyser->prepare(kRate);
            DiagnosisSession session;
            session.micType = c.mic;
            for (DiagnosisStep step :
                 {kStepNormal, kStepLoud, kStepSoft, kStepPlosive, kStepSilence}) {
                replayTake(*analyser, session, step, set.takes[step], false, 480);
            }
            const DiagnosisResult result = analyse(session);
            const EffectPreset preset = recommend(result, false);
            const Want peaks = clippingTruth(set);
            std::printf("%-24s %-11s", c.name, voice.name.c_str());
            for (size_t i = 0; i < result.items.size() && i < 6; ++i) {
                const DiagnosisItem& item = result.items[i];
                // A synthetic voice has no chest: its low end says nothing of a mic.
                const Want want = voice.synthetic && std::string(kItems[i]) == "distance"
                                      ? Want::Any
                                  : c.want[i] == Want::Peaks ? peaks
                                                             : c.want[i];
                const bool ok = meets(want, item);
                const bool atLimit = c.atResolutionLimit && std::string(kItems[i]) == "distance";
                if (want != Want::Any) {
                    ++asserted;
                    (atLimit ? limit : wrong) += ok ? 0 : 1;
                }
                std::printf(" %s%6.1f %s ", letter(item.level), static_cast<double>(item.value),
                            want == Want::Any ? "  "
                            : ok              ? "ok"
                            : atLimit         ? "~~"
                                              : "XX");
            }
            const Safety s = checkSafety(set, preset);
            const bool noiseGood = result.items[2].level == kLevelGood;
            const bool reducing = preset.spectral.enabled || preset.noise.enabled;
            const bool safe = s.mutedSoft < 0.02 && s.mutedNormal < 0.01 && s.peakOut < 0.999 &&
                              (!c.noisy || s.vnrGainDb >= 8.0) && reducing == !noiseGood;
            unsafe += safe ? 0 : 1;
            std::printf("  %4.1f%% / %4.1f%%  %5.1f  %5.2f%s\n", 100.0 * s.mutedSoft,
                        100.0 * s.mutedNormal, s.vnrGainDb, s.peakOut, safe ? "" : "  UNSAFE");
        }
    }
    std::printf("corpus: %d asserted verdicts, %d wrong, %d beyond the distance measure's "
                "resolution (~~); %d unsafe recommendations\n",
                asserted, wrong, limit, unsafe);
    return check && (wrong > 0 || unsafe > 0) ? 1 : 0;
}
