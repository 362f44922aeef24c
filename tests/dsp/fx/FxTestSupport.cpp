#include "FxTestSupport.h"

#include "dsp/Parameters.h"
#include "support/RecordedSpeech.h"

#include <algorithm>

using namespace Lumora;

namespace FxTest {

Signal impulse(int frames, int at, float height) {
    Signal x(static_cast<size_t>(frames), 0.0f);
    x[static_cast<size_t>(at)] = height;
    return x;
}

double rms(const Signal& x, int from, int to) {
    if (to < 0) {
        to = static_cast<int>(x.size());
    }
    double sum = 0.0;
    for (int i = from; i < to; ++i) {
        sum += static_cast<double>(x[i]) * x[i];
    }
    return to > from ? std::sqrt(sum / (to - from)) : 0.0;
}

double rmsDb(const Signal& x, int from, int to) {
    return 20.0 * std::log10(std::max(rms(x, from, to), 1e-12));
}

double zeroCrossingHz(const Signal& x, int from, int to, double rate) {
    double first = -1.0;
    double last = -1.0;
    int crossings = 0;
    for (int i = std::max(from, 1); i < to; ++i) {
        if (x[i - 1] < 0.0f && x[i] >= 0.0f) {
            const double t = (i - 1) + x[i - 1] / static_cast<double>(x[i - 1] - x[i]);
            if (first < 0.0) {
                first = t;
            } else {
                ++crossings;
            }
            last = t;
        }
    }
    return crossings > 0 ? crossings * rate / (last - first) : 0.0;
}

void setUp(VoiceFxChain& chain, const SoundFxPreset& preset, double rate) {
    chain.prepare(rate, static_cast<int>(rate / 10));
    chain.setParameters(preset);
    chain.setActive(true);
}

SoundFxPreset onlyDelay(float timeMs, float feedback, float wet) {
    SoundFxPreset p;
    p.delay.enabled = true;
    p.delay.timeMs = timeMs;
    p.delay.feedback = feedback;
    p.delay.wetMix = wet;
    return p;
}

std::vector<TestSignals::SweptKnob<SoundFxPreset>> knobs() {
    using namespace Params;
    using TestSignals::field;
    auto pitch = [](float PitchParams::*knob) { return field(&SoundFxPreset::pitch, knob); };
    auto layerB = [](float PitchParams::*knob) {
        return [set = field(&SoundFxPreset::pitch, knob)](SoundFxPreset& p, float v) {
            p.pitch.layerBEnabled = true;
            p.pitch.semitonesB = 5.0f;
            set(p, v);
        };
    };
    // The formant EQ's second band, raised so its centre and width are heard.
    auto band = [](float FormantBand::*knob) {
        return [knob](SoundFxPreset& p, float v) {
            p.pitch.enabled = p.pitch.formantEqEnabled = true;
            p.pitch.formantBands[1].gainDb = 12.0f;
            p.pitch.formantBands[1].*knob = v;
        };
    };
    auto mod = [](float ModParams::*knob) { return field(&SoundFxPreset::mod, knob); };
    auto flanger = [](float ModParams::*knob) {
        return [set = field(&SoundFxPreset::mod, knob)](SoundFxPreset& p, float v) {
            p.mod.type = kModFlanger;
            set(p, v);
        };
    };
    auto radio = [](float RadioParams::*knob) { return field(&SoundFxPreset::radio, knob); };
    auto delay = [](float DelayParams::*knob) { return field(&SoundFxPreset::delay, knob); };
    auto reverb = [](float ReverbParams::*knob) { return field(&SoundFxPreset::reverb, knob); };
    return {
        {"pitch.semitonesA", &kPitch, pitch(&PitchParams::semitonesA), true},
        {"pitch.formantShiftA", &kFormantShift, pitch(&PitchParams::formantShiftA)},
        {"pitch.wetMix", &kPitchWet, pitch(&PitchParams::wetMix)},
        {"pitch.mixAB", &kPitchMixAB, layerB(&PitchParams::mixAB)},
        {"formantEq.hz", &kFormantHz, band(&FormantBand::hz)},
        {"formantEq.gainDb", &kFormantGain, band(&FormantBand::gainDb)},
        {"formantEq.width", &kFormantWidth, band(&FormantBand::width)},
        {"mod.rate", &kModRate, mod(&ModParams::rate), true},
        {"mod.depth", &kModDepth, mod(&ModParams::depth)},
        {"mod.feedback", &kModFeedback, mod(&ModParams::feedback)},
        {"mod.wetMix", &kModWet, mod(&ModParams::wetMix)},
        {"flanger.rate", &kModRate, flanger(&ModParams::rate), true},
        {"flanger.depth", &kModDepth, flanger(&ModParams::depth)},
        {"radio.lowCutHz", &kRadioLowCut, radio(&RadioParams::lowCutHz)},
        {"radio.highCutHz", &kRadioHighCut, radio(&RadioParams::highCutHz)},
        {"radio.overdrive", &kRadioDrive, radio(&RadioParams::overdrive)},
        {"delay.timeMs", &kDelayTime, delay(&DelayParams::timeMs), true},
        {"delay.feedback", &kDelayFeedback, delay(&DelayParams::feedback)},
        {"delay.wetMix", &kDelayWet, delay(&DelayParams::wetMix)},
        {"reverb.roomSize", &kReverbRoom, reverb(&ReverbParams::roomSize)},
        {"reverb.damping", &kReverbDamping, reverb(&ReverbParams::damping)},
        {"reverb.wetMix", &kReverbWet, reverb(&ReverbParams::wetMix)},
        {"reverb.lowCutHz", &kReverbLowCut, reverb(&ReverbParams::lowCutHz)},
        {"reverb.duckingAmount", &kReverbDucking, reverb(&ReverbParams::duckingAmount)},
    };
}

Signal speech(double seconds) {
    Signal all;
    for (const std::string& name : Testing::alsaSoundNames()) {
        const Signal sound = Testing::alsaSound(name);
        all.insert(all.end(), sound.begin(), sound.end());
    }
    if (all.empty()) {
        return all;
    }
    const auto wanted = static_cast<size_t>(seconds * kRate);
    Signal looped;
    looped.reserve(wanted + all.size());
    while (looped.size() < wanted) {
        looped.insert(looped.end(), all.begin(), all.end());
    }
    looped.resize(wanted);
    return looped;
}

} // namespace FxTest
