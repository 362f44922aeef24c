// The room cue: how fast the quickest word endings fall 20 dB.

#include "diagnosis/WordEndFall.h"
#include "dsp/DspTestSignals.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Lumora;

namespace {

constexpr double kRate = 48000.0;
using TestSignals::kPi;

// One syllable per entry of `tailsMs`: a 1 kHz tone swelling by 6 dB over
// 150 ms, so its energy has a single peak at its end, then decaying
// exponentially (the entry is the time to fall 20 dB), then silence up to
// 400 ms. Each syllable is exactly one ending.
std::vector<float> syllables(const std::vector<double>& tailsMs, double rate = kRate) {
    const auto on = static_cast<size_t>(0.15 * rate);
    const auto each = static_cast<size_t>(0.4 * rate);
    std::vector<float> x;
    for (double tailMs : tailsMs) {
        const double fallPerSample = 20.0 / (tailMs / 1000.0 * rate);
        for (size_t i = 0; i < each; ++i) {
            const double db = i < on ? -6.0 + 6.0 * static_cast<double>(i) / static_cast<double>(on)
                                     : -fallPerSample * static_cast<double>(i - on);
            const double tone = std::sin(2.0 * kPi * 1000.0 * static_cast<double>(x.size()) / rate);
            x.push_back(static_cast<float>(0.1 * tone * std::pow(10.0, db / 20.0)));
        }
    }
    return x;
}

std::vector<double> repeat(double tailMs, int n) {
    return std::vector<double>(static_cast<size_t>(n), tailMs);
}

// The 10 ms window smears a fall by up to a window's length.
TEST(WordEndFall, ReadsTheTailOfTheEndings) {
    const std::vector<float> dry = syllables(repeat(15.0, 12)), live = syllables(repeat(120.0, 12));
    const float dryMs = WordEndFall::measureMs({&dry}, kRate, -120.0);
    const float liveMs = WordEndFall::measureMs({&live}, kRate, -120.0);
    EXPECT_GT(dryMs, 10.0f);
    EXPECT_LT(dryMs, 30.0f);
    EXPECT_NEAR(liveMs, 120.0f, 12.0f);
    const std::vector<float> live44 = syllables(repeat(120.0, 12), 44100.0);
    EXPECT_NEAR(WordEndFall::measureMs({&live44}, 44100.0, -120.0), liveMs, 5.0f);
}

// The quickest 5 %: two stray quick endings in forty do not make a live room
// dry, four do; and every take given counts.
TEST(WordEndFall, TheQuickestTwentiethDecides) {
    std::vector<double> tails = repeat(120.0, 38);
    tails.insert(tails.begin() + 5, {15.0, 15.0});
    const std::vector<float> twoQuick = syllables(tails);
    EXPECT_GT(WordEndFall::measureMs({&twoQuick}, kRate, -120.0), 100.0f);
    tails = repeat(120.0, 36);
    tails.insert(tails.begin() + 5, {15.0, 15.0, 15.0, 15.0});
    const std::vector<float> fourQuick = syllables(tails);
    EXPECT_LT(WordEndFall::measureMs({&fourQuick}, kRate, -120.0), 30.0f);
    const std::vector<float> quick = syllables(repeat(15.0, 4)),
                             slow = syllables(repeat(120.0, 36));
    EXPECT_LT(WordEndFall::measureMs({&slow, &quick}, kRate, -120.0), 30.0f);
}

// Endings that cannot fall 20 dB clear of the room, too few endings, bad
// input: unknown, never a guess.
TEST(WordEndFall, UnknownWhenTheEndingsCannotBeTimed) {
    const std::vector<float> live = syllables(repeat(120.0, 12));
    // The syllables' energy peaks near -23 dBFS: a room at -40 leaves less
    // than a fall and its margin.
    EXPECT_EQ(WordEndFall::measureMs({&live}, kRate, -40.0), -1.0f);
    const int enough = WordEndFall::kMinEndings;
    const std::vector<float> few = syllables(repeat(15.0, enough - 1));
    const std::vector<float> justEnough = syllables(repeat(15.0, enough));
    EXPECT_EQ(WordEndFall::measureMs({&few}, kRate, -120.0), -1.0f);
    EXPECT_GT(WordEndFall::measureMs({&justEnough}, kRate, -120.0), 0.0f);
    const std::vector<float> empty, silence(48000, 0.0f);
    std::vector<float> broken = syllables(repeat(15.0, 12));
    for (size_t i = 0; i < broken.size(); i += 97) {
        broken[i] = std::nanf("");
    }
    EXPECT_EQ(WordEndFall::measureMs({&empty, &silence, nullptr}, kRate, -120.0), -1.0f);
    EXPECT_GT(WordEndFall::measureMs({&broken}, kRate, -120.0), 0.0f);
    EXPECT_EQ(WordEndFall::measureMs({&live}, 0.0, -120.0), -1.0f);
    EXPECT_EQ(WordEndFall::measureMs({&live}, std::nan(""), -120.0), -1.0f);
}

} // namespace
