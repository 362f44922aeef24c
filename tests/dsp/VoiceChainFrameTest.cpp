// The processing chain's frame: hand-over, bypass, gains, meters, channel limits.
#include "dsp/VoiceChain.h"

#include "DspTestSignals.h"
#include "fx/FxTestSupport.h"
#include <gtest/gtest.h>

#include <algorithm>

#include <cmath>
#include <vector>

using namespace Lumora;
using Lumora::TestSignals::bitEqual;

namespace {

using Packet = FxTest::Audio;

// A sine of 382 Hz on each channel, each at its own phase.
Packet sines(int channels, int frames, float amplitude = 0.25f) {
    std::vector<FxTest::Signal> planes;
    for (int c = 0; c < channels; ++c) {
        planes.push_back(TestSignals::sine(382.0, 48000.0, frames, amplitude, c));
    }
    return Packet(planes);
}

EffectPreset activePreset() {
    EffectPreset p;
    p.active = true;
    return p;
}

} // namespace

// Every record that leaves the samples alone must leave them bit for bit: the
// default (inactive) record, an active one with every stage off (an enabled
// equaliser without filters, gains of exactly 0 dB) and a bypassed one however
// loud its stages and gains.
TEST(VoiceChainFrame, RecordsThatChangeNothingAreBitExactWithEqualMeters) {
    EffectPreset allOff = activePreset();
    allOff.eq.enabled = true;
    EffectPreset bypassed = activePreset();
    bypassed.bypass = true;
    bypassed.inputGainDb = 12.0f;
    bypassed.outputGainDb = -6.0f;
    bypassed.gate.enabled = true;
    bypassed.limiter.enabled = true;
    const struct {
        const char* what;
        EffectPreset preset;
        bool active;
    } cases[] = {{"default", EffectPreset{}, false},
                 {"every stage off", allOff, true},
                 {"bypassed", bypassed, false}};
    for (const auto& c : cases) {
        VoiceChain chain;
        chain.prepare(48000.0, 4800);
        chain.setParameters(c.preset);
        EXPECT_EQ(chain.isActive(), c.active) << c.what;
        Packet packet = sines(2, 1024);
        const Packet original = packet;
        chain.process(packet.data(), 2, 1024);
        EXPECT_TRUE(bitEqual(packet.planes[0], original.planes[0])) << c.what;
        EXPECT_TRUE(bitEqual(packet.planes[1], original.planes[1])) << c.what;
        EXPECT_EQ(chain.inputLevelDb(), chain.outputLevelDb()) << c.what;
        EXPECT_GT(chain.inputLevelDb(), -20.0f) << c.what;
    }
}

TEST(VoiceChainFrame, InputGainRaisesTheInputMeterArithmetically) {
    VoiceChain chain;
    chain.prepare(48000.0, 4800);
    EffectPreset p = activePreset();
    p.inputGainDb = 6.0f;
    p.outputGainDb = -3.0f;
    chain.setParameters(p);
    Packet ramp = sines(2, 480); // the gains ramp in
    chain.process(ramp.data(), 2, 480);
    Packet packet = sines(2, 480);
    chain.process(packet.data(), 2, 480);
    const float measuredIn = chain.inputLevelDb();
    // The output has both gains applied: +6 then -3 dB.
    EXPECT_NEAR(chain.outputLevelDb(), measuredIn - 3.0f, 0.01f);
    Packet reference = sines(2, 480);
    VoiceChain plain;
    plain.prepare(48000.0, 4800);
    plain.process(reference.data(), 2, 480);
    EXPECT_FLOAT_EQ(measuredIn, plain.inputLevelDb() + 6.0f);
}

TEST(VoiceChainFrame, SilentAndEmptyPacketsReadMinus96) {
    VoiceChain chain;
    chain.prepare(48000.0, 4800);
    chain.setParameters(activePreset());
    Packet empty = sines(2, 0);
    chain.process(empty.data(), 2, 0);
    EXPECT_EQ(chain.inputLevelDb(), -96.0f);
    Packet packet = sines(2, 480, 0.0f);
    chain.process(packet.data(), 2, 480);
    EXPECT_EQ(chain.inputLevelDb(), -96.0f);
    EXPECT_EQ(chain.outputLevelDb(), -96.0f);
}

TEST(VoiceChainFrame, PlanesBeyondTheSecondAreUntouchedAndUncounted) {
    VoiceChain chain;
    chain.prepare(48000.0, 4800);
    EffectPreset p = activePreset();
    p.inputGainDb = 6.0f;
    chain.setParameters(p);

    Packet six = sines(6, 480);
    for (int c = 2; c < 6; ++c) {
        for (float& x : six.planes[c]) {
            x = 0.9f; // loud: would change the level if it were counted
        }
    }
    const Packet original = six;
    chain.process(six.data(), 6, 480);
    for (int c = 2; c < 6; ++c) {
        EXPECT_TRUE(bitEqual(six.planes[c], original.planes[c])) << "plane " << c;
    }
    EXPECT_FALSE(bitEqual(six.planes[0], original.planes[0]));

    Packet two = sines(2, 480);
    VoiceChain reference;
    reference.prepare(48000.0, 4800);
    reference.setParameters(p);
    reference.process(two.data(), 2, 480);
    EXPECT_FLOAT_EQ(chain.inputLevelDb(), reference.inputLevelDb());
    EXPECT_FLOAT_EQ(chain.outputLevelDb(), reference.outputLevelDb());
}
