// Spectral noise reduction: exact reconstruction, suppression of a profiled hum
// under a louder tone, the noise table's mapping and the E1 approximation.
#include "dsp/SpectralDenoiser.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

#include <memory>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr double kRate = 48000.0;

std::array<float, kProfileBandCount> flatProfile(float db) {
    std::array<float, kProfileBandCount> p{};
    p.fill(db);
    return p;
}

// Runs x through the denoiser in packets of `packet` samples.
void runPackets(SpectralDenoiser& d, std::vector<float>& x, int packet) {
    for (size_t start = 0; start < x.size(); start += static_cast<size_t>(packet)) {
        const int n = std::min<int>(packet, static_cast<int>(x.size() - start));
        d.process(x.data() + start, n);
    }
}

} // namespace

TEST(SpectralDenoiser, AmountZeroOnlyDelaysByTheFrameLength) {
    auto d = std::make_unique<SpectralDenoiser>();
    d->prepare(kRate);
    d->setNoiseProfile(flatProfile(-10.0f)); // loud enough to suppress everything
    d->setAmount(0.0f);
    const std::vector<float> input = noise(48000, 0.5f);
    std::vector<float> x = input;
    runPackets(*d, x, 333); // a packet length that never lines up with the hop
    for (int i = 0; i < SpectralDenoiser::kDelay; ++i) {
        ASSERT_NEAR(x[i], 0.0f, 2e-6f);
    }
    for (size_t i = SpectralDenoiser::kDelay; i < x.size(); ++i) {
        ASSERT_NEAR(x[i], input[i - SpectralDenoiser::kDelay], 2e-6f) << i;
    }
}

TEST(SpectralDenoiser, DefaultSilentProfileLeavesTheSignalNearlyUnchanged) {
    auto d = std::make_unique<SpectralDenoiser>();
    d->prepare(kRate);
    d->setNoiseProfile(silentProfile());
    d->setAmount(0.75f);
    const std::vector<float> input = sine(440.0, kRate, 24000, 0.3f);
    std::vector<float> x = input;
    runPackets(*d, x, 480);
    for (size_t i = 4096; i < x.size(); ++i) {
        ASSERT_NEAR(x[i], input[i - SpectralDenoiser::kDelay], 1e-4f) << i;
    }
}

TEST(SpectralDenoiser, ProfiledHumIsSuppressedWhileALouderToneKeepsItsLevel) {
    auto d = std::make_unique<SpectralDenoiser>();
    d->prepare(kRate);
    // A 120 Hz hum at -40 dBFS; a sine of amplitude a puts a·(2/π)·512 into its
    // bin, i.e. a profile level of 20·log10(a) − 3.9 dB.
    const float hum = 0.01f;
    d->setNoiseProfile(flatProfile(static_cast<float>(toDb(hum)) - 3.9f));
    d->setAmount(1.0f);
    const int n = 96000;
    std::vector<float> x = sine(120.0, kRate, n, hum);
    const std::vector<float> tone = sine(1500.0, kRate, n, 0.3f, 0.5);
    for (int i = 0; i < n; ++i) {
        x[i] += tone[i];
    }
    runPackets(*d, x, 1024);
    const int start = n / 2;
    const double humOut = amplitudeAt(x, start, n / 2, 120.0, kRate);
    const double toneOut = amplitudeAt(x, start, n / 2, 1500.0, kRate);
    EXPECT_LT(toDb(humOut / hum), -12.0) << "hum not suppressed";
    EXPECT_NEAR(toDb(toneOut / 0.3), 0.0, 0.5) << "tone changed";
    EXPECT_GT(d->previousGain(32), 0.95f); // 1500 Hz bin
    EXPECT_LT(d->previousGain(3), 0.3f);   // 120 Hz bin (≈ 2.56 bins)
}

TEST(SpectralDenoiserProfile, LowestBinsFollowTheFirstBand) {
    // At 16 kHz a bin is 15.6 Hz wide and the first band starts at bin 1:
    // bin 0 (below 20 Hz) takes band 0's level, so hum at 5 Hz is suppressed.
    auto d = std::make_unique<SpectralDenoiser>();
    d->prepare(16000.0);
    auto profile = flatProfile(-96.0f);
    profile[0] = -20.0f;
    d->setNoiseProfile(profile);
    d->setAmount(1.0f);
    std::vector<float> x = sine(5.0, 16000.0, 64000, 0.05f);
    runPackets(*d, x, 512);
    EXPECT_LT(d->previousGain(0), 0.2f);
}

TEST(SpectralDenoiserGain, ExpIntegralApproximationAndItsCap) {
    EXPECT_EQ(SpectralDenoiser::expIntegral(0.0f), 4.0f);
    EXPECT_EQ(SpectralDenoiser::expIntegral(-3.0f), 4.0f);
    // Reference values of E1.
    EXPECT_NEAR(SpectralDenoiser::expIntegral(0.1f), 1.8229240f, 1e-5f);
    EXPECT_NEAR(SpectralDenoiser::expIntegral(0.5f), 0.5597736f, 1e-5f);
    EXPECT_NEAR(SpectralDenoiser::expIntegral(1.0f), 0.2193839f, 1e-5f);
    EXPECT_NEAR(SpectralDenoiser::expIntegral(2.0f), 0.0489005f, 1e-6f);
    EXPECT_NEAR(SpectralDenoiser::expIntegral(10.0f), 4.156969e-6f, 1e-9f);
}

TEST(SpectralDenoiser, NonFiniteInputNeverReachesTheOutput) {
    auto d = std::make_unique<SpectralDenoiser>();
    d->prepare(kRate);
    d->setNoiseProfile(flatProfile(-50.0f));
    d->setAmount(1.0f);
    std::vector<float> x = noise(4096, 0.1f);
    x[100] = std::numeric_limits<float>::quiet_NaN();
    x[2000] = std::numeric_limits<float>::infinity();
    x[3000] = 3e38f; // finite, but its power overflows
    runPackets(*d, x, 480);
    EXPECT_TRUE(allFinite(x));
    std::vector<float> after = noise(4096, 0.1f, 5);
    runPackets(*d, after, 480);
    EXPECT_TRUE(allFinite(after));
}

TEST(SpectralDenoiserGain, BlockRuleAgreesWithTheReferenceEverywhere) {
    // SNRs from silence to far above the cap, priors from none to strong, on
    // both sides of v = 1 where E1 changes form.
    std::vector<float> power, noise, prevGain, prevMag;
    for (float postDb :
         {-300.0f, -60.0f, -20.0f, -6.0f, -1.0f, 0.0f, 0.5f, 3.0f, 10.0f, 17.7f, 30.0f}) {
        for (float prior : {0.0f, 0.01f, 0.3f, 1.0f, 5.0f}) {
            noise.push_back(100.0f);
            power.push_back(postDb == -300.0f ? 0.0f : 100.0f * std::pow(10.0f, postDb / 10.0f));
            prevGain.push_back(prior > 1.0f ? 1.0f : prior);
            prevMag.push_back(prior * 10.0f);
        }
    }
    const int n = static_cast<int>(power.size());
    for (float amount : {0.0f, 0.6f, 1.0f}) {
        std::vector<float> block(power.size());
        SpectralDenoiser::gains(power.data(), noise.data(), prevGain.data(), prevMag.data(), amount,
                                block.data(), n);
        for (int k = 0; k < n; ++k) {
            const float reference =
                SpectralDenoiser::gain(power[k], noise[k], prevGain[k], prevMag[k], amount);
            ASSERT_NEAR(block[k], reference, 2e-6f + 2e-6f * reference)
                << "bin " << k << " amount " << amount;
        }
    }
}
