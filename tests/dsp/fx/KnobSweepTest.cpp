// Every knob of the voice effects turned across its range in two seconds
// while the voice plays (a new value each packet, as a mouse drag gives):
// the sound glides with it. No step between samples during the sweep is
// larger than 1.5 times the largest step of the steady sound at either end.
#include "FxTestSupport.h"
#include "dsp/DspTestSignals.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>

using namespace Lumora;
using namespace FxTest;

namespace {

struct Knob {
    const char* name;
    std::function<void(SoundFxPreset&, float)> set; // enables the effect too
    float from;
    float to;
};

// Sets one field of one effect's settings, switching that effect on.
template <typename Group>
std::function<void(SoundFxPreset&, float)> field(Group SoundFxPreset::*group, float Group::*knob) {
    return [group, knob](SoundFxPreset& p, float v) {
        (p.*group).enabled = true;
        (p.*group).*knob = v;
    };
}

std::vector<Knob> knobs() {
    auto pitch = [](float PitchParams::*knob) { return field(&SoundFxPreset::pitch, knob); };
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
        {"pitch.semitonesA", pitch(&PitchParams::semitonesA), 0.0f, 12.0f},
        {"pitch.formantShiftA", pitch(&PitchParams::formantShiftA), 0.0f, 0.6f},
        {"pitch.wetMix", pitch(&PitchParams::wetMix), 0.0f, 1.0f},
        {"mod.rate", mod(&ModParams::rate), 0.1f, 10.0f},
        {"mod.depth", mod(&ModParams::depth), 0.0f, 1.0f},
        {"mod.feedback", mod(&ModParams::feedback), 0.0f, 0.9f},
        {"mod.wetMix", mod(&ModParams::wetMix), 0.0f, 1.0f},
        {"flanger.rate", flanger(&ModParams::rate), 0.1f, 10.0f},
        {"flanger.depth", flanger(&ModParams::depth), 0.0f, 1.0f},
        {"radio.lowCutHz", radio(&RadioParams::lowCutHz), 100.0f, 2000.0f},
        {"radio.highCutHz", radio(&RadioParams::highCutHz), 8000.0f, 1000.0f},
        {"radio.overdrive", radio(&RadioParams::overdrive), 0.0f, 1.0f},
        {"delay.timeMs", delay(&DelayParams::timeMs), 100.0f, 400.0f},
        {"delay.feedback", delay(&DelayParams::feedback), 0.0f, 0.9f},
        {"delay.wetMix", delay(&DelayParams::wetMix), 0.0f, 1.0f},
        {"reverb.roomSize", reverb(&ReverbParams::roomSize), 0.0f, 1.0f},
        {"reverb.damping", reverb(&ReverbParams::damping), 0.0f, 1.0f},
        {"reverb.wetMix", reverb(&ReverbParams::wetMix), 0.0f, 1.0f},
        {"reverb.lowCutHz", reverb(&ReverbParams::lowCutHz), 40.0f, 740.0f},
        {"reverb.duckingAmount", reverb(&ReverbParams::duckingAmount), 0.0f, 1.0f},
    };
}

// Test names and failures show the knob's name, not its bytes.
void PrintTo(const Knob& knob, std::ostream* out) {
    *out << knob.name;
}

class KnobSweep : public ::testing::TestWithParam<Knob> {};

} // namespace

TEST_P(KnobSweep, TurningItWhileTheVoicePlaysMakesNoClick) {
    const Knob& knob = GetParam();
    for (const int packet : {480, 1024}) {
        SoundFxPreset p;
        knob.set(p, knob.from);
        VoiceFxChain chain;
        setUp(chain, p);
        EXPECT_LE(TestSignals::sweepStepRatio(chain, p, knob.set, knob.from, knob.to, packet), 1.5f)
            << knob.name << ", packets of " << packet;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFxKnob, KnobSweep, ::testing::ValuesIn(knobs()),
                         [](const ::testing::TestParamInfo<Knob>& knob) {
                             std::string name = knob.param.name;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });
