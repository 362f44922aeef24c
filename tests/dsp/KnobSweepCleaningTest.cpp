// Every knob of the cleaning chain turned across its range in two seconds
// while the voice plays, a new value each packet: no step between samples
// during the sweep larger than 1.5 times the largest step of the steady
// sound at either end.
#include "DspTestSignals.h"
#include "dsp/VoiceChain.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <ostream>
#include <string>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

struct CleaningKnob {
    const char* name;
    std::function<void(EffectPreset&, float)> set; // switches its stage on too
    float from;
    float to;
};

std::vector<CleaningKnob> cleaningKnobs() {
    auto eq = [](EffectPreset& p) -> EqParams& {
        p.eq.enabled = true;
        return p.eq;
    };
    return {
        {"inputGainDb", [](EffectPreset& p, float v) { p.inputGainDb = v; }, -12.0f, 12.0f},
        {"outputGainDb", [](EffectPreset& p, float v) { p.outputGainDb = v; }, 6.0f, -18.0f},
        {"eq.lowCutHz",
         [eq](EffectPreset& p, float v) {
             eq(p).lowCutEnabled = true;
             p.eq.lowCutHz = v;
         },
         20.0f, 300.0f},
        {"eq.band.gainDb",
         [eq](EffectPreset& p, float v) {
             eq(p).notchBands[0] = NotchBand{true, 250.0f, v, 1.0f};
         },
         -12.0f, 12.0f},
        {"eq.band.centerHz",
         [eq](EffectPreset& p, float v) {
             eq(p).notchBands[0] = NotchBand{true, v, 9.0f, 2.0f};
         },
         233.0f, 2000.0f}, // from on the tone (its loudest) away from it
        {"eq.highShelfGainDb",
         [eq](EffectPreset& p, float v) {
             eq(p).highShelfEnabled = true;
             p.eq.highShelfHz = 200.0f;
             p.eq.highShelfGainDb = v;
         },
         -12.0f, 12.0f},
        {"eq.highCutHz",
         [eq](EffectPreset& p, float v) {
             eq(p).highCutEnabled = true;
             p.eq.highCutHz = v;
         },
         16000.0f, 300.0f},
        {"comp.thresholdDb",
         [](EffectPreset& p, float v) {
             p.comp.enabled = true;
             p.comp.ratio = 6.0f;
             p.comp.thresholdDb = v;
         },
         0.0f, -40.0f},
        {"comp.makeupGainDb",
         [](EffectPreset& p, float v) {
             p.comp.enabled = true;
             p.comp.makeupGainDb = v;
         },
         0.0f, 12.0f},
        {"limiter.ceilingDb",
         [](EffectPreset& p, float v) {
             p.limiter.enabled = true;
             p.limiter.ceilingDb = v;
         },
         0.0f, -24.0f},
        {"gate.thresholdDb",
         [](EffectPreset& p, float v) {
             p.gate.enabled = true;
             p.gate.thresholdDb = v;
         },
         -80.0f, -30.0f},
    };
}

// Test names and failures show the knob's name, not its bytes.
void PrintTo(const CleaningKnob& knob, std::ostream* out) {
    *out << knob.name;
}

class CleaningKnobSweep : public ::testing::TestWithParam<CleaningKnob> {};

} // namespace

TEST_P(CleaningKnobSweep, TurningItWhileTheVoicePlaysMakesNoClick) {
    const CleaningKnob& knob = GetParam();
    for (const int packet : {480, 1024}) {
        EffectPreset p;
        p.active = true;
        knob.set(p, knob.from);
        VoiceChain chain;
        chain.prepare(48000.0, 4800);
        EXPECT_LE(sweepStepRatio(chain, p, knob.set, knob.from, knob.to, packet), 1.5f)
            << knob.name << ", packets of " << packet;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCleaningKnob, CleaningKnobSweep, ::testing::ValuesIn(cleaningKnobs()),
                         [](const ::testing::TestParamInfo<CleaningKnob>& knob) {
                             std::string name = knob.param.name;
                             std::replace(name.begin(), name.end(), '.', '_');
                             return name;
                         });
