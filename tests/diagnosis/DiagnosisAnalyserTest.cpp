#include "diagnosis/DiagnosisAnalyser.h"
#include "dsp/DspTestSignals.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <thread>
#include <vector>

namespace Lumora {
namespace {

using TestSignals::kPi;
using TestSignals::toDb;
constexpr double kLevelTolDb = 0.05;

std::unique_ptr<DiagnosisAnalyser> prepared(double rate) {
    auto a = std::make_unique<DiagnosisAnalyser>();
    a->prepare(rate);
    return a;
}

// Feeds `seconds` of a sine in blocks of `block`, keeping the phase across blocks.
void feedSine(DiagnosisAnalyser& a, double rate, double hz, double amp, double seconds, int block,
              double& phase) {
    const long total = std::lround(seconds * rate);
    for (long done = 0; done < total; done += block) {
        const int n = static_cast<int>(std::min<long>(block, total - done));
        std::vector<float> buf = TestSignals::sine(hz, rate, n, static_cast<float>(amp), phase);
        phase += 2.0 * kPi * hz * n / rate;
        a.process(buf.data(), n);
    }
}

void feedConstant(DiagnosisAnalyser& a, float value, int blocks, int block) {
    std::vector<float> buf(static_cast<size_t>(block), value);
    for (int b = 0; b < blocks; ++b) {
        a.process(buf.data(), block);
    }
}

// Magnitude of a second-order Butterworth-like section (Q = 1/1.414) after the
// bilinear transform, from the analogue prototype at the pre-warped frequency.
// (Corners are kept just below half the rate, where the filters stay stable.)
double bandGainDb(double rate, double cornerHz, double hz, bool highPass) {
    const double corner = std::min(cornerHz, 0.49 * rate);
    const double w = std::tan(kPi * hz / rate) / std::tan(kPi * corner / rate);
    const double den = std::sqrt((1.0 - w * w) * (1.0 - w * w) + (w * 1.414) * (w * 1.414));
    const double mag = highPass ? w * w / den : 1.0 / den;
    return std::max(toDb(mag), -400.0);
}

TEST(DiagnosisAnalyser, ClipsAtExactly0999) {
    auto a = prepared(48000.0);
    std::vector<float> block(480, 0.0f);
    block[100] = 0.999f;
    a->process(block.data(), 480);
    EXPECT_TRUE(a->snapshot().clipped);

    block[100] = -0.998f;
    a->process(block.data(), 480);
    EXPECT_FALSE(a->snapshot().clipped) << "clipping is judged per block";

    block[100] = -0.999f;
    a->process(block.data(), 480);
    EXPECT_TRUE(a->snapshot().clipped) << "negative samples clip too";
}

TEST(DiagnosisAnalyser, NoiseFloorRefreshesEveryThirtiethBlockOverThreeHundred) {
    auto a = prepared(48000.0);
    // Constant blocks have an exact RMS: 0.01 is -40 dB, 0.001 is -60 dB.
    feedConstant(*a, 0.01f, 299, 480);
    EXPECT_EQ(a->snapshot().noiseFloorDb, -96.0f) << "unfilled ring entries hold -96";
    feedConstant(*a, 0.01f, 1, 480);
    EXPECT_NEAR(a->snapshot().noiseFloorDb, -40.0, 1e-3) << "block 300 refreshes";

    feedConstant(*a, 0.001f, 29, 480);
    EXPECT_NEAR(a->snapshot().noiseFloorDb, -40.0, 1e-3) << "held between refreshes";
    EXPECT_NEAR(a->snapshot().blockLevelDb, -60.0, 1e-3);
    feedConstant(*a, 0.001f, 1, 480);
    EXPECT_NEAR(a->snapshot().noiseFloorDb, -60.0, 1e-3);

    // Louder again: the quiet blocks stay the minimum until they leave the ring.
    feedConstant(*a, 0.01f, 299, 480);
    EXPECT_NEAR(a->snapshot().noiseFloorDb, -60.0, 1e-3);
    feedConstant(*a, 0.01f, 1, 480);
    EXPECT_NEAR(a->snapshot().noiseFloorDb, -40.0, 1e-3);
}

// A 1 kHz sine of amplitude 0.5 at several rates, in 10 ms blocks (whole
// periods, so each block's RMS is exact).
class AnalyserSineAtRate : public ::testing::TestWithParam<double> {};

TEST_P(AnalyserSineAtRate, LevelPeakAndBandsMatchTheAnalyticValues) {
    const double rate = GetParam();
    auto a = prepared(rate);
    double phase = 0.0;
    feedSine(*a, rate, 1000.0, 0.5, 4.0, static_cast<int>(rate / 100), phase);
    const AudioMetrics m = a->snapshot();

    const double rms = toDb(0.5 / std::sqrt(2.0));
    EXPECT_NEAR(m.blockLevelDb, rms, 0.01);
    EXPECT_NEAR(m.smoothedLevelDb, rms, kLevelTolDb);
    EXPECT_NEAR(m.peakDb, toDb(0.5), 0.01);
    EXPECT_FALSE(m.clipped);

    const double low = rms + bandGainDb(rate, 500.0, 1000.0, false);
    const double high = rms + bandGainDb(rate, 4000.0, 1000.0, true);
    EXPECT_NEAR(m.lowBandDb, low, kLevelTolDb);
    EXPECT_NEAR(m.highBandDb, std::max(high, -96.0), kLevelTolDb);
    const double midMs = std::pow(10.0, rms / 10) - std::pow(10.0, low / 10) -
                         std::pow(10.0, std::max(high, -400.0) / 10);
    EXPECT_NEAR(m.midBandDb, 10.0 * std::log10(midMs), kLevelTolDb);
}

INSTANTIATE_TEST_SUITE_P(Rates, AnalyserSineAtRate, ::testing::Values(8000.0, 48000.0, 192000.0));

// The pop measure: the loudest 10 ms of the band under the voice, held.
TEST(DiagnosisAnalyser, LowBurstReadsTheLoudestTenMillisecondsUnderTheVoiceAndBothHeldDecay) {
    // 50 Hz has exactly half a period per 10 ms window, so each window of the
    // steady tone holds its mean square, and the reading is the tone's RMS
    // less the band filter's small loss this deep inside the band.
    constexpr double kInBandTolDb = 1.0;
    float first = 0.0f;
    for (int block : {64, 480, 1000}) {
        auto a = prepared(48000.0);
        double phase = 0.0;
        feedSine(*a, 48000.0, 50.0, 0.5, 0.5, block, phase);
        const float burst = a->snapshot().lowBurstDb;
        EXPECT_NEAR(burst, toDb(0.5 / std::sqrt(2.0)), kInBandTolDb) << "block " << block;
        if (block == 64) {
            first = burst;
        }
        EXPECT_EQ(burst, first) << "the windows do not follow the blocks: block " << block;
    }

    // A 40 Hz tone and a 1 kHz tone with the same peak, past their onsets (a
    // tone switched on reaches into the low band for a moment): the peak
    // cannot tell a pop from a vowel, the low burst reads them far apart.
    auto pop = prepared(48000.0);
    auto vowel = prepared(48000.0);
    double popPhase = 0.0;
    double vowelPhase = 0.0;
    feedSine(*pop, 48000.0, 40.0, 0.5, 0.2, 480, popPhase);
    feedSine(*vowel, 48000.0, 1000.0, 0.5, 0.2, 480, vowelPhase);
    pop->restartHeld();
    vowel->restartHeld();
    feedSine(*pop, 48000.0, 40.0, 0.5, 0.1, 480, popPhase);
    feedSine(*vowel, 48000.0, 1000.0, 0.5, 0.1, 480, vowelPhase);
    const AudioMetrics burst = pop->snapshot();
    EXPECT_NEAR(burst.peakDb, vowel->snapshot().peakDb, 0.01);
    EXPECT_GT(burst.lowBurstDb, -10.0f);
    EXPECT_GT(burst.lowBurstDb, vowel->snapshot().lowBurstDb + 50.0f);

    // Both held: after 1.5 s of silence, one time constant (e^-1, 8.686 dB)
    // down. The peak is held to the sample, the burst to its 10 ms window.
    feedConstant(*pop, 0.0f, 150, 480);
    EXPECT_NEAR(pop->snapshot().peakDb, burst.peakDb - 8.6859, 0.01);
    EXPECT_NEAR(pop->snapshot().lowBurstDb, burst.lowBurstDb - 8.6859, 0.05);
}

// The wizard restarts from the interface thread while the audio thread keeps
// processing: once a snapshot carries the new epoch it must never show the
// peak or burst of a block from before the restart.
TEST(DiagnosisAnalyser, SnapshotWithTheNewEpochNeverHoldsTheOldPeak) {
    auto a = prepared(48000.0);
    std::atomic<bool> loud{false};
    std::atomic<bool> stop{false};
    std::thread audio([&] {
        std::vector<float> quiet(480, 0.01f);
        std::vector<float> hot(480, 0.9f);
        while (!stop.load()) {
            a->process(loud.load() ? hot.data() : quiet.data(), 480);
        }
    });
    struct Join {
        std::atomic<bool>& stop;
        std::thread& thread;
        ~Join() {
            stop = true;
            thread.join();
        }
    } join{stop, audio};

    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    auto waitBlocks = [&](uint64_t count) {
        const uint64_t from = a->snapshot().blockCount;
        while (a->snapshot().blockCount < from + count &&
               std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
        }
    };
    for (int round = 0; round < 100; ++round) {
        loud = true;
        waitBlocks(2);
        // The block in flight may still be loud; the two after are quiet, and
        // let the band filter settle from the loud one.
        loud = false;
        waitBlocks(3);
        const uint32_t epoch = a->restartHeld();
        AudioMetrics m = a->snapshot();
        while (m.heldEpoch != epoch && std::chrono::steady_clock::now() < deadline) {
            std::this_thread::yield();
            m = a->snapshot();
        }
        ASSERT_EQ(m.heldEpoch, epoch) << "round " << round;
        ASSERT_NEAR(m.peakDb, -40.0, 0.01) << "round " << round;
        ASSERT_LT(m.lowBurstDb, -20.0f) << "round " << round; // the loud block read -1
    }
}

TEST(DiagnosisAnalyser, SmoothedLevelFollowsThreeHundredMillisecondsForAnyBlockSize) {
    // A step from silence to a constant -20 dB: after t seconds the smoothed mean
    // square is ms * (1 - e^(-t / 0.3)), whatever the block size.
    const double t = 15360.0 / 48000.0; // 32 blocks of 480, 30 of 512
    const double expected = -20.0 + 10.0 * std::log10(1.0 - std::exp(-t / 0.3));
    for (int block : {480, 512}) {
        auto a = prepared(48000.0);
        feedConstant(*a, 0.1f, 15360 / block, block);
        EXPECT_NEAR(a->snapshot().smoothedLevelDb, expected, 0.01) << "block " << block;
        feedConstant(*a, 0.1f, 48000 * 3 / block, block);
        EXPECT_NEAR(a->snapshot().smoothedLevelDb, -20.0, 0.01) << "block " << block;
    }
}

TEST(DiagnosisAnalyser, SpectrumBandHoldsTheTone) {
    auto a = prepared(48000.0);
    // 1500 Hz sits exactly on bin 32 (bin width 46.875 Hz).
    double phase = 0.0;
    feedSine(*a, 48000.0, 1500.0, 0.5, 0.5, 480, phase);
    const AudioMetrics m = a->snapshot();
    auto bandOf = [&](int bin) {
        int band = -1;
        for (int b = 0; b < kSpectrumBandCount; ++b) {
            band = a->bandFirstBin(b) <= bin && bin <= a->bandLastBin(b) ? b : band;
        }
        return band;
    };
    const int toneBand = bandOf(32);
    ASSERT_GE(toneBand, 0);
    // Hann window: coherent gain 1/2, so |X| = A * 1024 / 4 and |X| / 512 = A / 2.
    EXPECT_NEAR(m.spectrumDb[static_cast<size_t>(toneBand)], toDb(0.25), 0.1);
    // Neighbouring bands share their edge bins; bands clear of the window's main
    // lobe (bins 31..33) hold far less.
    for (int b = 0; b < kSpectrumBandCount; ++b) {
        if (a->bandLastBin(b) < 31 || a->bandFirstBin(b) > 33) {
            EXPECT_LT(m.spectrumDb[static_cast<size_t>(b)], m.spectrumDb[toneBand] - 30.0f)
                << "band " << b;
        }
    }
    // Far from the tone the window's leakage is gone.
    const int farBand = bandOf(213); // ~10 kHz
    ASSERT_GE(farBand, 0);
    EXPECT_LT(m.spectrumDb[static_cast<size_t>(farBand)], -80.0f);
}

// Zeros, and samples that are not numbers, read as silence in every measure,
// from the first snapshot on; and a sine after them reads as it would alone.
TEST(DiagnosisAnalyser, ZerosAndNonFiniteSamplesReadAsSilence) {
    auto a = prepared(48000.0);
    EXPECT_EQ(a->snapshot().blockCount, 0u);
    EXPECT_EQ(a->snapshot().momentaryLufs, -70.0f);
    auto expectSilent = [&](const char* after) {
        const AudioMetrics m = a->snapshot();
        for (float v : {m.smoothedLevelDb, m.blockLevelDb, m.peakDb, m.noiseFloorDb, m.lowBandDb,
                        m.midBandDb, m.highBandDb, m.lowBurstDb}) {
            EXPECT_EQ(v, -96.0f) << after;
        }
        EXPECT_FALSE(m.clipped) << after;
        EXPECT_EQ(m.momentaryLufs, -70.0f) << after;
        EXPECT_EQ(m.shortTermLufs, -70.0f) << after;
        for (float v : m.spectrumDb) {
            EXPECT_EQ(v, -96.0f) << after;
        }
    };
    feedConstant(*a, 0.0f, 400, 480);
    EXPECT_EQ(a->snapshot().blockCount, 400u);
    expectSilent("zeros");
    std::vector<float> bad(480, std::numeric_limits<float>::quiet_NaN());
    bad[3] = std::numeric_limits<float>::infinity();
    bad[4] = -std::numeric_limits<float>::infinity();
    for (int i = 0; i < 400; ++i) {
        a->process(bad.data(), 480);
    }
    expectSilent("non-finite samples");
    // The filters, the smoothing and the loudness meter are not poisoned.
    double phase = 0.0;
    feedSine(*a, 48000.0, 1000.0, 0.1, 3.5, 480, phase);
    const AudioMetrics m = a->snapshot();
    EXPECT_NEAR(m.smoothedLevelDb, toDb(0.1 / std::sqrt(2.0)), kLevelTolDb);
    EXPECT_TRUE(std::isfinite(m.lowBandDb) && m.lowBandDb > -96.0f);
    EXPECT_TRUE(std::isfinite(m.highBandDb) && m.highBandDb > -96.0f);
    // K-weighting is +0.69 dB at 1 kHz and cancels the -0.691 offset, so a mono
    // sine of peak -20 dBFS (mean square -23.01 dB) reads -23.01 LUFS.
    EXPECT_NEAR(m.momentaryLufs, -23.01, 0.1);
    EXPECT_NEAR(m.shortTermLufs, -23.01, 0.1);
    for (float v : m.spectrumDb) {
        EXPECT_TRUE(std::isfinite(v));
    }
}

TEST(DiagnosisAnalyser, IgnoresEmptyBlocksAndOddRates) {
    auto a = prepared(48000.0);
    float x = 0.5f;
    a->process(&x, 0);
    a->process(&x, -5);
    a->process(nullptr, 10);
    EXPECT_EQ(a->snapshot().blockCount, 0u);

    for (double rate : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        a->prepare(rate);
        EXPECT_EQ(a->sampleRate(), 48000.0);
    }
    a->prepare(8.0); // too slow for the loudness meter: it is simply absent
    feedConstant(*a, 0.1f, 10, 480);
    EXPECT_NEAR(a->snapshot().blockLevelDb, -20.0, 1e-3);
    EXPECT_EQ(a->snapshot().momentaryLufs, -70.0f);
}

TEST(DiagnosisAnalyser, BlocksLargerThanEveryRingAreMeasuredWhole) {
    auto a = prepared(48000.0);
    a->setRecording(true);
    const size_t n = DiagnosisAnalyser::kCaptureSize + 1000;
    std::vector<float> big = TestSignals::sine(1000.0, 48000.0, static_cast<int>(n), 0.5f);
    big[n - 1] = 0.999f;
    a->process(big.data(), static_cast<int>(n));
    const AudioMetrics m = a->snapshot();
    EXPECT_EQ(m.blockCount, 1u);
    EXPECT_NEAR(m.blockLevelDb, toDb(0.5 / std::sqrt(2.0)), 0.01);
    EXPECT_TRUE(m.clipped);
    EXPECT_GT(m.spectrumDb[40], -96.0f);
    std::vector<float> out(16);
    EXPECT_EQ(a->readCapture(out.data(), out.size()), 0u) << "a block that cannot fit is dropped";
}

TEST(DiagnosisAnalyser, CaptureRingKeepsOrderAndDropsWholeBlocksWhenFull) {
    auto a = prepared(48000.0);
    std::vector<float> block(512);
    a->process(block.data(), 512);
    std::vector<float> out(DiagnosisAnalyser::kCaptureSize);
    EXPECT_EQ(a->readCapture(out.data(), out.size()), 0u) << "not recording";

    a->setRecording(true);
    float next = 0.0f;
    auto feed = [&](int count) {
        for (int b = 0; b < count; ++b) {
            for (float& v : block) {
                v = next;
                next += 1.0f / 1024.0f;
            }
            a->process(block.data(), 512);
        }
    };
    feed(3);
    ASSERT_EQ(a->readCapture(out.data(), 1000), 1000u);
    for (size_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(out[i], static_cast<float>(i) / 1024.0f) << i;
    }
    // 536 samples unread: 510 more blocks fit, the 511th does not and is dropped whole.
    feed(510);
    const float dropped = next;
    feed(1);
    EXPECT_EQ(a->readCapture(out.data(), out.size()), 536u + 510u * 512u);
    EXPECT_EQ(out[0], 1000.0f / 1024.0f);
    EXPECT_EQ(out[536 + 510 * 512 - 1], dropped - 1.0f / 1024.0f);
    feed(1);
    ASSERT_EQ(a->readCapture(out.data(), out.size()), 512u) << "room again after reading";
    EXPECT_EQ(out[0], dropped + 512.0f / 1024.0f);
}

TEST(DiagnosisAnalyser, PrepareResetsEverything) {
    auto a = prepared(48000.0);
    a->setRecording(true);
    double phase = 0.0;
    feedSine(*a, 48000.0, 1000.0, 0.5, 4.0, 480, phase);
    a->prepare(44100.0);
    std::vector<float> out(16);
    EXPECT_EQ(a->readCapture(out.data(), out.size()), 0u);
    // Before and after the same input, it reads as a fresh analyser does.
    auto fresh = prepared(44100.0);
    double phases[2] = {0.0, 0.0};
    for (int pass = 0; pass < 2; ++pass) {
        const AudioMetrics x = a->snapshot();
        const AudioMetrics y = fresh->snapshot();
        EXPECT_EQ(x.blockCount, y.blockCount) << "pass " << pass;
        for (auto field : {&AudioMetrics::smoothedLevelDb, &AudioMetrics::peakDb,
                           &AudioMetrics::lowBurstDb, &AudioMetrics::noiseFloorDb,
                           &AudioMetrics::lowBandDb, &AudioMetrics::momentaryLufs}) {
            EXPECT_EQ(x.*field, y.*field) << "pass " << pass;
        }
        EXPECT_EQ(x.spectrumDb, y.spectrumDb) << "pass " << pass;
        feedSine(*a, 44100.0, 700.0, 0.3, 1.0, 441, phases[0]);
        feedSine(*fresh, 44100.0, 700.0, 0.3, 1.0, 441, phases[1]);
    }
}

} // namespace
} // namespace Lumora
