#include "diagnosis/StepSummary.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisSession.h"
#include "dsp/DspTestSignals.h"
#include "dsp/NoiseProfileLearner.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

namespace Lumora {
namespace {

AudioMetrics metrics(float level, float peak, float floor, float low, float mid, float high,
                     bool clipped = false) {
    AudioMetrics m;
    m.smoothedLevelDb = level;
    m.peakDb = peak;
    m.noiseFloorDb = floor;
    m.lowBandDb = low;
    m.midBandDb = mid;
    m.highBandDb = high;
    m.clipped = clipped;
    return m;
}

TEST(StepSummary, EachFieldFromItsOwnStatistic) {
    std::vector<AudioMetrics> list = {
        metrics(-30, -10, -60, -35, -33, -45),
        metrics(-20, -5, -70, -25, -23, -44),
        metrics(-25, -20, -50, -30, -28, -43, true),
        metrics(-40, 0, -65, -45, -43, -42),
    };
    for (size_t i = 0; i < list.size(); ++i) {
        list[i].lowBurstDb = i == 2 ? -12.0f : -30.0f;
    }
    StepStats s = summarise(list);
    EXPECT_EQ(s.count, 4);
    EXPECT_FALSE(s.valid);
    EXPECT_FLOAT_EQ(s.level, -27.5f);         // median
    EXPECT_FLOAT_EQ(s.peak95, -0.75f);        // x = 2.85 over {-20,-10,-5,0}
    EXPECT_FLOAT_EQ(s.peakMax, 0.0f);         // maximum
    EXPECT_FLOAT_EQ(s.noiseFloorMin, -70.0f); // minimum
    EXPECT_FLOAT_EQ(s.low, -32.5f);           // median
    EXPECT_FLOAT_EQ(s.mid, -30.5f);           // median
    EXPECT_FLOAT_EQ(s.high, -43.5f);          // median
    EXPECT_FLOAT_EQ(s.lowBurstMax, -12.0f);   // maximum
    EXPECT_TRUE(s.clipped);

    list.push_back(metrics(-22, -6, -55, -27, -25, -41));
    s = summarise(list);
    EXPECT_EQ(s.count, 5);
    EXPECT_TRUE(s.valid);
    EXPECT_FLOAT_EQ(s.level, -25.0f);
}

AudioMetrics block(float blockLevel, float low, float mid) {
    AudioMetrics m = metrics(blockLevel, blockLevel + 10.0f, -60.0f, low, mid, mid - 10.0f);
    m.blockLevelDb = blockLevel;
    return m;
}

// Active speech: the blocks within 20 dB of the take's 90th percentile. The
// pauses (here with their own low rumble) must not count, a quiet syllable
// must, and the bands are averaged by energy so the loud vowels weigh most.
TEST(StepSummary, ActiveSpeechLeavesOutPausesAndWeighsByEnergy) {
    std::vector<AudioMetrics> list = {
        block(-20, -20, -25), block(-22, -30, -25), block(-60, -62, -65), block(-24, -30, -25),
        block(-60, -62, -65), block(-26, -30, -25), block(-60, -62, -65), block(-30, -30, -25),
        block(-38, -30, -25), block(-60, -62, -65),
    };
    const StepStats s = summarise(list);
    // 90th percentile -21.8, so active means -41.8 and up: the -38 syllable
    // is in, the -60 pauses are out. Low: (10^-2 + 5 * 10^-3) / 6 in power.
    EXPECT_NEAR(s.activeLowDb, 10.0 * std::log10(0.015 / 6.0), 1e-3);
    EXPECT_NEAR(s.activeMidDb, -25.0, 1e-3);
    double level = 0.0;
    for (double db : {-38.0, -30.0, -26.0, -24.0, -22.0, -20.0}) {
        level += std::pow(10.0, db / 10.0);
    }
    EXPECT_NEAR(s.activeLevelDb, 10.0 * std::log10(level / 6.0), 1e-3);
    // The 10th percentile of {-38, -30, -26, -24, -22, -20}.
    EXPECT_NEAR(s.activeLevelP10, -34.0, 1e-3);

    // Digital silence has no active speech; nothing turns into NaN.
    std::vector<AudioMetrics> silent(8, block(-96, -96, -96));
    const StepStats q = summarise(silent);
    EXPECT_TRUE(q.valid);
    EXPECT_EQ(q.activeLevelDb, -96.0f);
    EXPECT_EQ(q.activeLowDb, -96.0f);
    EXPECT_EQ(q.activeMidDb, -96.0f);
    EXPECT_EQ(q.activeLevelP10, -96.0f);
}

TEST(DiagnosisSession, HoldsAtMost512SnapshotsPerStep) {
    DiagnosisSession session;
    AudioMetrics m;
    for (int i = 0; i < 512; ++i) {
        m.blockCount = static_cast<uint64_t>(i);
        EXPECT_TRUE(session.record(kStepNormal, m));
    }
    m.blockCount = 512;
    EXPECT_FALSE(session.record(kStepNormal, m));
    ASSERT_EQ(session.steps[kStepNormal].size(), 512u);
    EXPECT_EQ(session.steps[kStepNormal].back().blockCount, 511u);
    EXPECT_TRUE(session.record(kStepLoud, m)) << "each step has its own limit";
    EXPECT_FALSE(session.record(6, m));
    EXPECT_FALSE(session.record(-1, m));

    // The silence take's audio is kept for the noise profile, 10 s at most.
    session.sampleRate = 1000.0;
    std::vector<float> audio(6000, 0.25f);
    session.appendAudio(kStepSilence, audio.data(), audio.size());
    session.appendAudio(kStepSilence, nullptr, 100);
    EXPECT_EQ(session.audio[kStepSilence].size(), 6000u);
    session.appendAudio(kStepSilence, audio.data(), audio.size());
    EXPECT_EQ(session.audio[kStepSilence].size(), 10000u);
    session.appendAudio(kStepSilence, audio.data(), 1);
    EXPECT_EQ(session.audio[kStepSilence].size(), 10000u);

    session.currentStep = kStepSilence;
    session.micType = kMicUsb;
    session.clear();
    EXPECT_EQ(session.currentStep, 0);
    EXPECT_EQ(session.micType, kMicUsb);
    for (const auto& list : session.steps) {
        EXPECT_TRUE(list.empty());
    }
    EXPECT_TRUE(session.audio[kStepSilence].empty());
}

// The diagnosis hands the spectral reducer the same profile that noise
// learning would learn from the same room, at the take's own rate (44.1 kHz
// here, not the default); the meter's spectrum snapshots, a different
// estimate, do not enter it, and without the take's audio teach nothing.
TEST(DiagnosisAnalysis, NoiseSpectrumIsLearnedFromTheSilenceAudio) {
    DiagnosisSession session;
    session.micType = kMicCondenser;
    session.sampleRate = 44100.0;
    AudioMetrics meter;
    meter.spectrumDb.fill(-10.0f);
    for (int i = 0; i < 10; ++i) {
        session.record(kStepSilence, meter);
    }
    for (float v : analyse(session).noiseSpectrum) {
        EXPECT_EQ(v, -96.0f);
    }

    const std::vector<float> room = TestSignals::noise(44100 * 3, 0.01f, 12345u);
    session.appendAudio(kStepSilence, room.data(), room.size());
    const DiagnosisResult r = analyse(session);
    EXPECT_EQ(r.valid, 1);
    EXPECT_EQ(r.micType, kMicCondenser);
    EXPECT_EQ(r.silence.count, 10);
    auto learner = std::make_unique<NoiseProfileLearner>();
    learner->prepare(44100.0);
    learner->process(room.data(), static_cast<int>(room.size()));
    const auto expected = learner->profileDb();
    for (size_t b = 0; b < expected.size(); ++b) {
        EXPECT_EQ(r.noiseSpectrum[b], expected[b]) << "band " << b;
    }
    EXPECT_LT(r.noiseSpectrum[50], -40.0f) << "not the meter's -10";
}

} // namespace
} // namespace Lumora
