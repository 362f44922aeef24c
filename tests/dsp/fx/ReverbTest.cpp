// Reverb: the tail and its length, damping, the high-pass, ducking and the
// mono rule.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <utility>

using namespace Lumora;
using namespace FxTest;

namespace {

SoundFxPreset onlyReverb(float room, float damping, float wet) {
    SoundFxPreset p;
    p.reverb.enabled = true;
    p.reverb.roomSize = room;
    p.reverb.damping = damping;
    p.reverb.wetMix = wet;
    p.reverb.lowCutHz = 20.0f;
    p.reverb.duckingAmount = 0.0f;
    return p;
}

// From an impulse after the room's first 50 ms (a room just switched on
// takes the voice in over its crossfade).
Signal impulseResponse(const SoundFxPreset& p, int frames) {
    const int at = 2400;
    VoiceFxChain chain;
    setUp(chain, p);
    Audio audio({impulse(at + frames, at)});
    runInPackets(chain, audio, 480);
    return Signal(audio.planes[0].begin() + at, audio.planes[0].end());
}

// Time in seconds until the tail's level (10 ms windows) has dropped 40 dB
// below its loudest window.
double decayTime(const Signal& y) {
    const int window = 480;
    double loudest = -200.0;
    for (int i = 0; i + window <= static_cast<int>(y.size()); i += window) {
        loudest = std::max(loudest, rmsDb(y, i, i + window));
    }
    double last = 0.0;
    for (int i = 0; i + window <= static_cast<int>(y.size()); i += window) {
        if (rmsDb(y, i, i + window) > loudest - 40.0) {
            last = (i + window) / kRate;
        }
    }
    return last;
}

} // namespace

TEST(Reverb, ImpulseGivesADecayingTailThatGrowsWithTheRoom) {
    const int frames = static_cast<int>(6 * kRate);
    double previous = 0.0;
    for (float room : {0.2f, 0.5f, 0.8f}) {
        const Signal y = impulseResponse(onlyReverb(room, 0.5f, 1.0f), frames);
        ASSERT_TRUE(allFinite(y));
        const double t = decayTime(y);
        RecordProperty("decay40dB_room" + std::to_string(static_cast<int>(room * 10)),
                       std::to_string(t));
        EXPECT_GT(t, previous * 1.3) << "room " << room;
        EXPECT_LT(rmsDb(y, frames - 4800, frames), rmsDb(y, 0, 24000) - 40.0) << "room " << room;
        previous = t;
    }
    EXPECT_GT(previous, 0.5);
}

TEST(Reverb, LargestRoomStillDecays) {
    const int frames = static_cast<int>(20 * kRate);
    const Signal y = impulseResponse(onlyReverb(1.0f, 0.0f, 1.0f), frames);
    ASSERT_TRUE(allFinite(y));
    EXPECT_LT(rmsDb(y, frames - 48000, frames), rmsDb(y, 0, 48000) - 30.0);
}

TEST(Reverb, DampingDarkensTheTail) {
    const int frames = static_cast<int>(2 * kRate);
    const Signal bright = impulseResponse(onlyReverb(0.7f, 0.0f, 1.0f), frames);
    const Signal dark = impulseResponse(onlyReverb(0.7f, 1.0f, 1.0f), frames);
    const int from = static_cast<int>(0.3 * kRate);
    // Zero crossings per second follow the tail's spectral centre.
    EXPECT_LT(zeroCrossingHz(dark, from, frames), 0.5 * zeroCrossingHz(bright, from, frames));
}

TEST(Reverb, HighPassRemovesTheLowsFromTheTailOnly) {
    const int frames = 48000;
    SoundFxPreset p = onlyReverb(0.6f, 0.3f, 0.5f);
    const Signal x = sine(90.0, frames, 0.3f);
    Audio full({x});
    Audio cut({x});
    VoiceFxChain a;
    setUp(a, p);
    runInPackets(a, full, 480);
    p.reverb.lowCutHz = 1000.0f;
    VoiceFxChain b;
    setUp(b, p);
    runInPackets(b, cut, 480);
    Signal wetFull(frames), wetCut(frames);
    for (int i = 0; i < frames; ++i) {
        wetFull[i] = full.planes[0][i] - 0.5f * x[i];
        wetCut[i] = cut.planes[0][i] - 0.5f * x[i];
    }
    EXPECT_LT(rmsDb(wetCut, 24000), rmsDb(wetFull, 24000) - 20.0);
}

TEST(Reverb, DuckingHoldsTheTailBackWhileTheVoiceIsLoud) {
    // One second of loud voice-like noise, then one second of silence.
    const int frames = 96000;
    std::mt19937 random(5);
    std::uniform_real_distribution<float> u(-0.5f, 0.5f);
    Signal x(frames, 0.0f);
    for (int i = 0; i < 48000; ++i) {
        x[i] = u(random);
    }
    auto run = [&](float ducking) {
        SoundFxPreset p = onlyReverb(0.8f, 0.3f, 0.5f);
        p.reverb.duckingAmount = ducking;
        VoiceFxChain chain;
        setUp(chain, p);
        Audio audio({x});
        runInPackets(chain, audio, 480);
        Signal change(frames);
        for (int i = 0; i < frames; ++i) {
            change[i] = audio.planes[0][i] - x[i];
        }
        return change;
    };
    const Signal plain = run(0.0f);
    const Signal ducked = run(1.0f);
    // While loud: the reverb (and the dry cut that makes room for it) shrinks.
    EXPECT_LT(rmsDb(ducked, 9600, 48000), rmsDb(plain, 9600, 48000) - 10.0);
    // Once the voice has stopped and the envelope let go, the tail is back.
    const int late = 48000 + static_cast<int>(0.5 * kRate);
    EXPECT_GT(rmsDb(ducked, late, late + 4800), -60.0);
    EXPECT_NEAR(rmsDb(ducked, late, late + 4800), rmsDb(plain, late, late + 4800), 6.0);
}

TEST(Reverb, MonoPacketGetsTheSideWrittenLast) {
    // Mono: channel 0 is both sides, and the side written second wins: with
    // the high-pass on (150 Hz) that is the filtered left output, without it
    // (20 Hz) the right output.
    const Signal x = sine(500.0, 9600, 0.3f);
    for (const auto& [lowCutHz, side] : {std::pair{150.0f, 0}, std::pair{20.0f, 1}}) {
        SoundFxPreset p = onlyReverb(0.6f, 0.4f, 0.7f);
        p.reverb.lowCutHz = lowCutHz;
        VoiceFxChain mono;
        VoiceFxChain stereo;
        setUp(mono, p);
        setUp(stereo, p);
        Audio one({x});
        Audio two({x, x});
        runInPackets(mono, one, 480);
        runInPackets(stereo, two, 480);
        EXPECT_NE(two.planes[0], two.planes[1]) << "the sides differ in stereo";
        for (int i = 0; i < 9600; ++i) {
            ASSERT_FLOAT_EQ(one.planes[0][i], two.planes[side][i]) << lowCutHz << " Hz, " << i;
        }
    }
}
