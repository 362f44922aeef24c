// The room cue: how fast the quickest word endings fall 20 dB.

#include "diagnosis/WordEndFall.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

using namespace Lumora;

namespace {

constexpr double kRate = 48000.0;

// Syllables of noise, 150 ms each with 250 ms gaps, that end by decaying
// exponentially: `tailMs` is the time to fall 20 dB (a dry mouth closing is
// about 15 ms; a room's tail adds its own decay).
std::vector<float> syllables(double tailMs, double rate = kRate, int count = 12) {
    std::mt19937 rng(7);
    std::normal_distribution<float> noise(0.0f, 0.1f);
    const auto on = static_cast<size_t>(0.15 * rate);
    const auto gap = static_cast<size_t>(0.25 * rate);
    const double perSample = 20.0 / (tailMs / 1000.0 * rate); // dB per sample
    std::vector<float> x;
    for (int s = 0; s < count; ++s) {
        for (size_t i = 0; i < on + gap; ++i) {
            const double db = i < on ? 0.0 : -perSample * static_cast<double>(i - on);
            x.push_back(noise(rng) * static_cast<float>(std::pow(10.0, db / 20.0)));
        }
    }
    return x;
}

TEST(WordEndFall, ReadsTheTailOfTheEndings) {
    const std::vector<float> dry = syllables(15.0), live = syllables(120.0);
    const float dryMs = WordEndFall::measureMs({&dry}, kRate, -120.0);
    const float liveMs = WordEndFall::measureMs({&live}, kRate, -120.0);
    // The 10 ms window smears a fall by up to a window's length.
    EXPECT_GT(dryMs, 10.0f);
    EXPECT_LT(dryMs, 30.0f);
    EXPECT_NEAR(liveMs, 120.0f, 15.0f);
    // Rate-independent.
    const std::vector<float> live44 = syllables(120.0, 44100.0);
    EXPECT_NEAR(WordEndFall::measureMs({&live44}, 44100.0, -120.0), liveMs, 5.0f);
}

// Endings that cannot fall 20 dB clear of the room, too few endings, bad
// input: unknown, never a guess.
TEST(WordEndFall, UnknownWhenTheEndingsCannotBeTimed) {
    const std::vector<float> live = syllables(120.0);
    // The syllables' 10 ms energy sits near -20 dBFS: a room at -40 leaves
    // only 20 dB, less than a fall and its margin.
    EXPECT_EQ(WordEndFall::measureMs({&live}, kRate, -40.0), -1.0f);
    const std::vector<float> few = syllables(15.0, kRate, 1);
    EXPECT_EQ(WordEndFall::measureMs({&few}, kRate, -120.0), -1.0f);
    const std::vector<float> empty, silence(48000, 0.0f);
    std::vector<float> broken = syllables(15.0);
    for (size_t i = 0; i < broken.size(); i += 97) {
        broken[i] = std::nanf("");
    }
    EXPECT_EQ(WordEndFall::measureMs({&empty, &silence, nullptr}, kRate, -120.0), -1.0f);
    EXPECT_GT(WordEndFall::measureMs({&broken}, kRate, -120.0), 0.0f);
    EXPECT_EQ(WordEndFall::measureMs({&live}, 0.0, -120.0), -1.0f);
    EXPECT_EQ(WordEndFall::measureMs({&live}, std::nan(""), -120.0), -1.0f);
}

} // namespace
