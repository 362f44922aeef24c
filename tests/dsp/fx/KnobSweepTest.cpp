// Every knob of the voice effects swept across its whole range (the
// parameter table's) while the voice plays; the limits are expectSmoothSweep's.
#include "FxTestSupport.h"
#include "dsp/DspTestSignals.h"
#include "dsp/Parameters.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Lumora;
using namespace FxTest;

namespace {

using Knob = TestSignals::SweptKnob<SoundFxPreset>;
using TestSignals::field;

std::vector<Knob> knobs() {
    using namespace Params;
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

class KnobSweep : public ::testing::TestWithParam<Knob> {};

} // namespace

TEST_P(KnobSweep, TurningItWhileTheVoicePlaysMakesNoClickAndNoSpike) {
    const Knob& knob = GetParam();
    const Parameter& range = *knob.parameter;
    SoundFxPreset p;
    knob.set(p, range.initial);
    auto make = [&p] {
        auto chain = std::make_unique<VoiceFxChain>();
        setUp(*chain, p);
        chain->setAligned(true); // as the filter runs voices
        return chain;
    };
    TestSignals::expectSmoothSweep(make, p, knob.set, range, speech(3.0), !knob.timed);
}

INSTANTIATE_TEST_SUITE_P(EveryFxKnob, KnobSweep, ::testing::ValuesIn(knobs()),
                         TestSignals::sweptKnobName<SoundFxPreset>);
