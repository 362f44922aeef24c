// Bad input for the whole chain: runaway feedback, extreme times and rates,
// numbers that are not numbers, odd sample rates, and no allocation while
// audio runs.
#include "FxTestSupport.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

using namespace Lumora;
using namespace FxTest;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// Every effect on, at settings a user might choose.
SoundFxPreset everything() {
    SoundFxPreset p;
    p.pitch.enabled = true;
    p.pitch.semitonesA = 4.0f;
    p.pitch.formantShiftA = 0.3f;
    p.pitch.layerBEnabled = true;
    p.pitch.semitonesB = -5.0f;
    p.pitch.wetMix = 0.8f;
    p.pitch.formantEqEnabled = true;
    p.pitch.formantBands[1].gainDb = 5.0f;
    p.mod.enabled = true;
    p.radio.enabled = true;
    p.delay.enabled = true;
    p.reverb.enabled = true;
    p.reverb.lowCutHz = 120.0f;
    p.reverb.duckingAmount = 0.4f;
    return p;
}

Signal voice(int frames, unsigned seed = 1) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> u(-0.05f, 0.05f);
    Signal x = sine(180.0, frames, 0.3f);
    const Signal y = sine(700.0, frames, 0.1f);
    for (int i = 0; i < frames; ++i) {
        x[i] += y[i] + u(random);
    }
    return x;
}

// Runs `bad` for one second, then `good` for one more, and checks that the
// output is finite throughout and alive in the last half second.
void expectRecovers(const SoundFxPreset& bad, const SoundFxPreset& good, const char* what) {
    VoiceFxChain chain;
    setUp(chain, bad);
    Audio first({voice(48000, 1), voice(48000, 2)});
    runInPackets(chain, first, 480);
    chain.setParameters(good);
    Audio second({voice(48000, 3), voice(48000, 4)});
    runInPackets(chain, second, 480);
    for (int c = 0; c < 2; ++c) {
        EXPECT_TRUE(allFinite(first.planes[c])) << what;
        EXPECT_TRUE(allFinite(second.planes[c])) << what;
        EXPECT_LT(peak(first.planes[c]), 100.0f) << what;
        EXPECT_GT(rmsDb(second.planes[c], 24000), -30.0) << what << ": silent afterwards";
    }
}

} // namespace

// Settings no knob gives but a damaged file or another program can send, each
// on top of every effect: a second of them, then a second of sane ones.
TEST(FxRobustness, BadSettingsLeaveTheChainFiniteAndItRecovers) {
    struct Mutation {
        std::string name;
        std::function<void(SoundFxPreset&)> apply;
    };
    std::vector<Mutation> mutations;
    for (float feedback : {1.0f, 1.5f, 100.0f, -3.0f}) {
        mutations.push_back({"runaway feedback " + std::to_string(feedback), [=](SoundFxPreset& p) {
                                 p.delay.feedback = feedback;
                                 p.delay.wetMix = 1.0f;
                                 p.mod.feedback = feedback;
                                 p.mod.type = kModFlanger;
                             }});
    }
    // Delay times beyond the knob: DelayEffect.TimesBeyondTheKnobAreClampedNotRefused.
    for (int32_t type : {kModChorus, kModFlanger, kModTremolo}) {
        const std::string kind = "modulation " + std::to_string(type);
        for (float rate : {0.0f, -4.0f, 1e9f}) {
            mutations.push_back({kind + ", rate " + std::to_string(rate), [=](SoundFxPreset& p) {
                                     p.mod.type = type;
                                     p.mod.rate = rate;
                                     p.mod.depth = 1.0f;
                                 }});
        }
        // Not a number falls back to the default, whatever the knob.
        mutations.push_back({kind + ", every knob NaN", [=](SoundFxPreset& p) {
                                 for (const auto& knob : knobs()) {
                                     knob.set(p, kNaN);
                                 }
                                 p.inputGainDb = kNaN;
                                 p.outputGainDb = kInf;
                                 p.mod.type = type;
                             }});
    }
    mutations.push_back({"out of range", [](SoundFxPreset& p) {
                             // A negative drive would divide by its root.
                             p.radio.overdrive = -0.5f;
                             p.radio.lowCutHz = 40000.0f;
                             p.radio.highCutHz = -10.0f;
                             p.reverb.roomSize = 3.0f;
                             p.reverb.damping = -2.0f;
                             p.reverb.lowCutHz = 1e6f;
                             p.reverb.duckingAmount = 9.0f;
                             p.pitch.semitonesA = 80.0f;
                             p.pitch.semitonesB = -80.0f;
                             p.pitch.formantShiftA = 40.0f;
                             p.pitch.formantBands[0].hz = 1e7f;
                             p.pitch.formantBands[1].width = 0.0f;
                             p.pitch.formantBands[2].gainDb = 500.0f;
                             p.pitch.mixAB = -1.0f;
                             p.inputGainDb = 1000.0f;
                             p.outputGainDb = -1000.0f;
                         }});
    for (const Mutation& m : mutations) {
        SoundFxPreset bad = everything();
        m.apply(bad);
        expectRecovers(bad, everything(), m.name.c_str());
    }
}

TEST(FxRobustness, NaNAndInfiniteSamplesCostNoMoreThanTheirPacket) {
    for (float poison : {kNaN, kInf, -kInf, 1e30f}) {
        VoiceFxChain chain;
        setUp(chain, everything());
        Audio warm({voice(48000, 1), voice(48000, 2)});
        runInPackets(chain, warm, 480);

        Audio bad({voice(480, 5), voice(480, 6)});
        bad.planes[0][100] = poison;
        bad.planes[1][7] = poison;
        for (int i = 200; i < 260; ++i) {
            bad.planes[0][i] = poison;
        }
        chain.process(bad.data(), 2, 480);
        EXPECT_TRUE(allFinite(bad.planes[0])) << poison;
        EXPECT_TRUE(std::isfinite(chain.inputLevelDb()));
        EXPECT_TRUE(std::isfinite(chain.outputLevelDb()));

        Audio after({voice(48000, 7), voice(48000, 8)});
        runInPackets(chain, after, 480);
        for (int c = 0; c < 2; ++c) {
            EXPECT_TRUE(allFinite(after.planes[c])) << poison;
            EXPECT_LT(peak(after.planes[c]), 10.0f) << poison;
            EXPECT_GT(rmsDb(after.planes[c], 24000), -30.0) << poison;
        }
    }
}

TEST(FxRobustness, OddSampleRatesWork) {
    for (double rate : {22050.0, 44100.0, 96000.0, 8000.0, 192000.0}) {
        VoiceFxChain chain;
        SoundFxPreset p = everything();
        setUp(chain, p, rate);
        ASSERT_TRUE(chain.isPrepared()) << rate;
        const int frames = static_cast<int>(2 * rate);
        Audio audio({sine(300.0, frames, 0.3f, rate), sine(300.0, frames, 0.3f, rate)});
        runInPackets(chain, audio, static_cast<int>(rate / 100));
        EXPECT_TRUE(allFinite(audio.planes[0])) << rate;
        EXPECT_GT(rmsDb(audio.planes[0], frames / 2), -30.0) << rate;
        EXPECT_LT(peak(audio.planes[0]), 10.0f) << rate;
    }
}

TEST(FxRobustness, UnusableSampleRatesPassThrough) {
    for (double rate : {0.0, -48000.0, 100.0, 1e9, static_cast<double>(kNaN)}) {
        VoiceFxChain chain;
        chain.prepare(rate, 4800);
        chain.setParameters(everything());
        chain.setActive(true);
        EXPECT_FALSE(chain.isPrepared()) << rate;
        Audio audio({voice(480)});
        const Signal original = audio.planes[0];
        chain.process(audio.data(), 1, 480);
        EXPECT_EQ(audio.planes[0], original) << rate;
        EXPECT_EQ(chain.inputLevelDb(), chain.outputLevelDb());
        EXPECT_GT(chain.inputLevelDb(), -30.0f);
    }
}

TEST(FxRobustness, ProcessingNeverAllocates) {
    if (!Testing::allocationCountingSupported()) {
        GTEST_SKIP() << "allocation counting needs glibc's allocator without sanitizers";
    }
    ASSERT_EQ(Testing::probeAllocations(), 2) << "the counter misses this program's allocations";
    VoiceFxChain chain;
    SoundFxPreset p = everything();
    setUp(chain, p);
    const Signal x = voice(4 * 48000, 9);
    std::vector<Signal> planes = {x, x};
    std::vector<float*> pointers(2);
    // Packet sizes the host uses, a tiny one, one longer than a block, and
    // every knob moving while audio runs.
    const int sizes[] = {480, 1024, 441, 1, 4096, 5000, 2048};
    long allocations = 0;
    int position = 0;
    for (int k = 0; k < 400; ++k) {
        const int n = sizes[k % 7];
        if (position + n > static_cast<int>(x.size())) {
            position = 0;
        }
        p.pitch.semitonesA = 12.0f * std::sin(k * 0.05f + 1.0f);
        p.pitch.semitonesB = -24.0f + (k % 49);
        p.pitch.formantShiftA = std::sin(k * 0.1f);
        p.pitch.formantShiftB = -p.pitch.formantShiftA;
        p.pitch.layerBEnabled = (k / 20) % 2 == 0;
        p.pitch.enabled = (k / 50) % 4 != 3;
        p.pitch.wetMix = (k % 3) * 0.5f;
        p.pitch.formantBands[k % 5].hz = 200.0f + 50.0f * k;
        p.mod.type = (k / 10) % 3;
        p.mod.rate = 0.1f + (k % 10);
        p.radio.lowCutHz = 100.0f + 10.0f * (k % 100);
        p.radio.highCutHz = 1000.0f + 50.0f * (k % 100);
        p.reverb.lowCutHz = static_cast<float>(k % 300);
        p.reverb.damping = (k % 11) / 10.0f;
        p.delay.timeMs = static_cast<float>(k * 13 % 1200);
        p.effectOrder = {k % 5, 4 - k % 5, 3, k % 7, 0};
        chain.setParameters(p);
        for (int c = 0; c < 2; ++c) {
            pointers[c] = planes[c].data() + position;
        }
        allocations += Testing::allocationsIn([&] { chain.process(pointers.data(), 2, n); });
        position += n;
    }
    EXPECT_EQ(allocations, 0);
}
