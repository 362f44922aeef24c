// Learning the spectral reducer's noise profile from a take of the room alone.
#include "dsp/NoiseProfileLearner.h"

#include "DspTestSignals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora;
using TestSignals::noise;

TEST(NoiseProfileLearner, WhiteNoiseReadsItsPowerInEveryBand) {
    NoiseProfileLearner learner;
    learner.prepare(48000.0);
    // Uniform in [-a, a]: variance a²/3.
    const float a = 0.01f;
    const auto white = noise(48000 * 4, a, 3);
    learner.process(white.data(), static_cast<int>(white.size()));
    EXPECT_EQ(learner.framesSeen(), 48000 * 4 / 512 - 1);
    // Sine window: the sum of w² over a frame is 512, so a bin holds σ²·512 on
    // average, which the reducer's scale (512²) turns into σ²/512.
    const float expected = 10.0f * std::log10(a * a / 3.0f / 512.0f);
    const auto profile = learner.profileDb(0.0f);
    for (int b = 0; b < kProfileBandCount; ++b) {
        EXPECT_NEAR(profile[b], expected, 1.0f) << "band " << b;
    }
    const auto withMargin = learner.profileDb(3.0f);
    EXPECT_NEAR(withMargin[40] - profile[40], 3.0f, 1e-4f);
}

TEST(NoiseProfileLearner, NothingLearnedReadsSilenceAndNanCountsAsSilence) {
    NoiseProfileLearner learner;
    learner.prepare(48000.0);
    for (float v : learner.profileDb()) {
        EXPECT_EQ(v, -96.0f);
    }
    std::vector<float> bad(4096, std::nanf(""));
    learner.process(bad.data(), 4096);
    for (float v : learner.profileDb()) {
        EXPECT_EQ(v, -96.0f);
    }
}

TEST(NoiseProfileLearner, ADoorSlamDuringTheTakeDoesNotRaiseTheProfile) {
    const auto room = noise(48000 * 3, 0.0017f, 5);
    NoiseProfileLearner quiet;
    quiet.prepare(48000.0);
    quiet.process(room.data(), static_cast<int>(room.size()));

    // 100 ms some 50 dB above the room, a second into the take.
    auto slammed = room;
    const auto slam = noise(4800, 0.5f, 6);
    for (size_t i = 0; i < slam.size(); ++i) {
        slammed[48000 + i] += slam[i];
    }
    NoiseProfileLearner learner;
    learner.prepare(48000.0);
    learner.process(slammed.data(), static_cast<int>(slammed.size()));

    const auto expected = quiet.profileDb();
    const auto profile = learner.profileDb();
    for (int b = 8; b < kProfileBandCount; ++b) {
        EXPECT_NEAR(profile[b], expected[b], 1.5f) << "band " << b;
    }
    // Too short a take for groups: the plain mean, slam and all.
    NoiseProfileLearner brief;
    brief.prepare(48000.0);
    brief.process(slammed.data() + 40000, 24000);
    EXPECT_GT(brief.profileDb()[40], expected[40] + 20.0f);
}
