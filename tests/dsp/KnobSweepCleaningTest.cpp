// Every knob of the cleaning chain swept across its whole range (the
// parameter table's) while the voice plays; the limits are expectSmoothSweep's.
#include "DspTestSignals.h"
#include "dsp/Parameters.h"
#include "dsp/VoiceChain.h"
#include "fx/FxTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

using CleaningKnob = SweptKnob<EffectPreset>;

std::vector<CleaningKnob> cleaningKnobs() {
    using namespace Params;
    auto eq = [](bool EqParams::*part, float EqParams::*knob) {
        return [part, knob](EffectPreset& p, float v) {
            p.eq.enabled = p.eq.*part = true;
            p.eq.*knob = v;
        };
    };
    // The first band, raised on the tone and the voice's low body.
    auto band = [](float NotchBand::*knob) {
        return [knob](EffectPreset& p, float v) {
            p.eq.enabled = true;
            p.eq.notchBands[0] = NotchBand{true, 250.0f, 9.0f, 2.0f};
            p.eq.notchBands[0].*knob = v;
        };
    };
    // Ratio 6 and a low threshold, so that the compressor works on the voice.
    auto comp = [](float CompParams::*knob) {
        return [knob](EffectPreset& p, float v) {
            p.comp.enabled = true;
            p.comp.ratio = 6.0f;
            p.comp.thresholdDb = -36.0f;
            p.comp.*knob = v;
        };
    };
    auto gate = [](float GateParams::*knob) { return field(&EffectPreset::gate, knob); };
    auto limiter = [](float LimiterParams::*knob) { return field(&EffectPreset::limiter, knob); };
    return {
        {"inputGainDb", &kInputGain, [](EffectPreset& p, float v) { p.inputGainDb = v; }},
        {"outputGainDb", &kOutputGain, [](EffectPreset& p, float v) { p.outputGainDb = v; }},
        {"eq.lowCutHz", &kLowCut, eq(&EqParams::lowCutEnabled, &EqParams::lowCutHz)},
        {"eq.highShelfHz", &kHighShelfHz, eq(&EqParams::highShelfEnabled, &EqParams::highShelfHz)},
        {"eq.highShelfGainDb", &kHighShelfGain,
         eq(&EqParams::highShelfEnabled, &EqParams::highShelfGainDb)},
        {"eq.highCutHz", &kHighCut, eq(&EqParams::highCutEnabled, &EqParams::highCutHz)},
        {"eq.highCutQ", &kHighCutQ, eq(&EqParams::highCutEnabled, &EqParams::highCutQ)},
        {"eq.band.centerHz", &kBandHz, band(&NotchBand::centerHz)},
        {"eq.band.gainDb", &kBandGain, band(&NotchBand::gainDb)},
        {"eq.band.q", &kBandQ, band(&NotchBand::q)},
        {"comp.thresholdDb", &kCompThreshold, comp(&CompParams::thresholdDb)},
        {"comp.ratio", &kCompRatio, comp(&CompParams::ratio)},
        {"comp.kneeDb", &kCompKnee, comp(&CompParams::kneeDb)},
        {"comp.attackMs", &kCompAttack, comp(&CompParams::attackMs)},
        {"comp.releaseMs", &kCompRelease, comp(&CompParams::releaseMs)},
        {"comp.makeupGainDb", &kCompMakeup, comp(&CompParams::makeupGainDb)},
        {"limiter.ceilingDb", &kLimiterCeiling, limiter(&LimiterParams::ceilingDb)},
        {"limiter.releaseMs", &kLimiterRelease, limiter(&LimiterParams::releaseMs)},
        {"gate.thresholdDb", &kGateThreshold, gate(&GateParams::thresholdDb)},
        {"gate.attackMs", &kGateAttack, gate(&GateParams::attackMs)},
        {"gate.holdMs", &kGateHold, gate(&GateParams::holdMs)},
        {"gate.releaseMs", &kGateRelease, gate(&GateParams::releaseMs)},
        {"gate.rangeDb", &kGateRange, gate(&GateParams::rangeDb)},
        // The neural stage's blend, with the stand-in model (6 dB down, a frame
        // late); its attenuation limit is the model's own business.
        {"noise.mix", &kNoiseMix,
         [](EffectPreset& p, float v) {
             p.noise.enabled = true;
             p.noise.attenLimitDb = 6.0f;
             p.noise.mix = v;
         }},
        {"spectral.amount", &kSpectralAmount,
         [](EffectPreset& p, float v) {
             p.spectral.enabled = true;
             p.spectral.profileDb.fill(-60.0f);
             p.spectral.amount = v;
         }},
    };
}

class CleaningKnobSweep : public ::testing::TestWithParam<CleaningKnob> {};

} // namespace

TEST_P(CleaningKnobSweep, TurningItWhileTheVoicePlaysMakesNoClickAndNoSpike) {
    const CleaningKnob& knob = GetParam();
    const Parameter& range = *knob.parameter;
    EffectPreset p;
    p.active = true;
    knob.set(p, range.initial);
    const std::string model = ::testing::TempDir() + "lumora-sweep-model";
    std::ofstream(model) << "delay=1";
    auto make = [&model] {
        auto chain = std::make_unique<VoiceChain>();
        chain->setNoiseModelLocation({{LUMORA_DEEPFILTER_STANDIN}, model});
        chain->prepare(48000.0, 4800);
        return chain;
    };
    ASSERT_TRUE(make()->noiseSuppressionAvailable()) << "the stand-in model did not load";
    expectSmoothSweep(make, p, knob.set, range, FxTest::speech(3.0));
}

INSTANTIATE_TEST_SUITE_P(EveryCleaningKnob, CleaningKnobSweep, ::testing::ValuesIn(cleaningKnobs()),
                         sweptKnobName<EffectPreset>);
