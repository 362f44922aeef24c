// The voice-effects chain's frame: switch, hand-over, order, gains, meters,
// channel limits and long packets.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

namespace {

// The level the chain reports: one RMS over every sample of the first two channels.
float expectedLevelDb(const Audio& audio) {
    double sum = 0.0;
    long count = 0;
    for (int c = 0; c < std::min(audio.channels(), 2); ++c) {
        for (float v : audio.planes[c]) {
            sum += static_cast<double>(v) * v;
            ++count;
        }
    }
    const double r = std::sqrt(sum / count);
    return r > 1e-9 ? static_cast<float>(20.0 * std::log10(r)) : -96.0f;
}

Audio stereoVoice(int frames) {
    return Audio({sine(220.0, frames, 0.3f), sine(330.0, frames, 0.1f)});
}

} // namespace

// Every way the chain promises to leave the voice alone: the samples come out
// bit for bit, and both meters read the input's level.
TEST(VoiceFxChain, PassThroughCasesAreBitExactWithEqualLevels) {
    struct Case {
        const char* what;
        SoundFxPreset preset;
        bool active;
    };
    Case cases[] = {{"every effect off, gains set", {}, true},
                    {"effects on, switched off (as the diagnosis does), then edited",
                     onlyDelay(10.0f, 0.5f, 1.0f), false},
                    {"no known code in the order, 0 dB gains", onlyDelay(10.0f, 0.0f, 0.0f), true},
                    {"a modulation type the chain does not know", {}, true}};
    cases[0].preset.inputGainDb = 12.0f; // gains do not act while no effect is on
    cases[0].preset.outputGainDb = -6.0f;
    cases[1].preset.radio.enabled = true;
    cases[2].preset.effectOrder = {7, 7, 7, 7, 7};
    cases[3].preset.mod = {true, 7, 1.0f, 1.0f, 0.5f, 1.0f}; // on, type 7, full depth and wet
    for (const Case& c : cases) {
        VoiceFxChain chain;
        setUp(chain, c.preset);
        chain.setActive(c.active);
        chain.setParameters(c.preset); // an edit must not switch the effects back on
        Audio audio = stereoVoice(1024);
        const Audio original = audio;
        chain.process(audio.data(), 2, 1024);
        EXPECT_TRUE(bitEqual(audio.planes[0], original.planes[0])) << c.what;
        EXPECT_TRUE(bitEqual(audio.planes[1], original.planes[1])) << c.what;
        EXPECT_EQ(chain.inputLevelDb(), chain.outputLevelDb()) << c.what;
        EXPECT_NEAR(chain.inputLevelDb(), expectedLevelDb(original), 1e-4) << c.what;
    }
}

// A stored order with a code twice (a damaged file) runs that effect once,
// where it first appears, as the FX page shows it: one instance run twice over
// the same block would feed it its own output.
TEST(VoiceFxChain, ACodeStoredTwiceRunsOnce) {
    // With a long delay and no feedback, a pass turns the block into dry·(1 − wet).
    const int n = 480;
    VoiceFxChain chain;
    SoundFxPreset p = onlyDelay(500.0f, 0.0f, 0.5f);
    p.effectOrder = {kEffectDelay, kEffectDelay, kEffectDelay, 9, 9};
    setUp(chain, p);
    Audio audio = stereoVoice(n);
    const Audio original = audio;
    chain.process(audio.data(), 2, n);
    for (int i = 0; i < n; ++i) {
        ASSERT_NEAR(audio.planes[0][i], original.planes[0][i] * 0.5f, 1e-6f);
    }
}

TEST(VoiceFxChain, UnknownCodesRunNothingButGainsAndMetersStillAct) {
    VoiceFxChain chain;
    SoundFxPreset p = onlyDelay(10.0f, 0.9f, 1.0f);
    p.radio.enabled = true;
    p.effectOrder = {9, 9, 9, 9, 9};
    p.inputGainDb = 6.0f;
    p.outputGainDb = -12.0f;
    setUp(chain, p);
    Audio ramp = stereoVoice(1024); // the gains ramp in over the first packet
    chain.process(ramp.data(), 2, 1024);
    Audio audio = stereoVoice(1024);
    const Audio original = audio;
    chain.process(audio.data(), 2, 1024);
    const float gIn = std::pow(10.0f, 6.0f / 20.0f);
    const float gOut = std::pow(10.0f, -12.0f / 20.0f);
    for (int c = 0; c < 2; ++c) {
        for (int i = 0; i < 1024; ++i) {
            ASSERT_NEAR(audio.planes[c][i], original.planes[c][i] * gIn * gOut, 1e-6f);
        }
    }
    EXPECT_NEAR(chain.inputLevelDb(), expectedLevelDb(original) + 6.0f, 1e-3);
    EXPECT_NEAR(chain.outputLevelDb(), expectedLevelDb(audio), 1e-4);
    EXPECT_NEAR(chain.outputLevelDb(), chain.inputLevelDb() - 12.0f, 1e-3);
}

TEST(VoiceFxChain, ChannelsBeyondTheSecondPassUnchangedAndDoNotCount) {
    VoiceFxChain chain;
    setUp(chain, onlyDelay(1.0f, 0.5f, 1.0f));
    Audio audio({sine(200.0, 480, 0.2f), sine(300.0, 480, 0.2f), sine(400.0, 480, 0.9f)});
    const Audio original = audio;
    chain.process(audio.data(), 3, 480);
    EXPECT_TRUE(bitEqual(audio.planes[2], original.planes[2]));
    EXPECT_FALSE(bitEqual(audio.planes[0], original.planes[0]));
    Audio firstTwo({original.planes[0], original.planes[1]});
    EXPECT_NEAR(chain.inputLevelDb(), expectedLevelDb(firstTwo), 1e-4);
}

TEST(VoiceFxChain, EmptyAndSilentPacketsMeterSilence) {
    VoiceFxChain chain;
    setUp(chain, onlyDelay(100.0f, 0.3f, 0.3f));
    Audio audio(2, 480);
    chain.process(audio.data(), 2, 0);
    EXPECT_EQ(chain.inputLevelDb(), -96.0f);
    chain.process(audio.data(), 2, 480);
    EXPECT_EQ(chain.inputLevelDb(), -96.0f);
    EXPECT_EQ(chain.outputLevelDb(), -96.0f);
}

TEST(VoiceFxChain, LongPacketsEqualTheSameAudioInShortPackets) {
    // A packet longer than the chain's buffers is worked through in blocks;
    // the result must not depend on how the host cut the stream.
    SoundFxPreset p = onlyDelay(30.0f, 0.6f, 0.5f);
    p.pitch.enabled = false;
    p.radio.enabled = true;
    p.mod.enabled = true;
    p.reverb.enabled = true;
    const int frames = 20000;
    Audio a({sine(250.0, frames, 0.3f), sine(375.0, frames, 0.3f)});
    Audio b = a;
    VoiceFxChain whole;
    VoiceFxChain pieces;
    setUp(whole, p);
    setUp(pieces, p);
    whole.process(a.data(), 2, frames);
    runInPackets(pieces, b, 480);
    for (int c = 0; c < 2; ++c) {
        for (int i = 0; i < frames; ++i) {
            ASSERT_FLOAT_EQ(a.planes[c][i], b.planes[c][i]) << c << " " << i;
        }
    }
}
