// Every knob of the voice effects swept across its whole range (the
// parameter table's) while the voice plays; the limits are expectSmoothSweep's.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Lumora;
using namespace FxTest;

namespace {

using Knob = TestSignals::SweptKnob<SoundFxPreset>;

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
