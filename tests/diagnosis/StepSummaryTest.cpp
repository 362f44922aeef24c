#include "diagnosis/StepSummary.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/DiagnosisSession.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace Lumora {
namespace {

TEST(StepSummary, MedianAndNinetyFifthPercentile) {
    EXPECT_FLOAT_EQ(medianOf({1, 2, 3, 4}), 2.5f);
    EXPECT_FLOAT_EQ(medianOf({4, 1, 3, 2}), 2.5f);
    EXPECT_FLOAT_EQ(medianOf({9, -3, 5}), 5.0f);
    EXPECT_FLOAT_EQ(medianOf({7}), 7.0f);
    EXPECT_FLOAT_EQ(medianOf({}), -96.0f);

    EXPECT_FLOAT_EQ(percentile95({0, 10}), 9.5f);
    EXPECT_FLOAT_EQ(percentile95({10, 0}), 9.5f);
    EXPECT_FLOAT_EQ(percentile95({3}), 3.0f);
    // 21 values 0..20: (21 - 1) * 0.95 = 19 exactly, no interpolation.
    std::vector<float> v;
    for (int i = 20; i >= 0; --i) {
        v.push_back(static_cast<float>(i));
    }
    EXPECT_FLOAT_EQ(percentile95(v), 19.0f);
    EXPECT_FLOAT_EQ(percentile95({}), -96.0f);
}

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
    EXPECT_TRUE(s.clipped);

    list.push_back(metrics(-22, -6, -55, -27, -25, -41));
    s = summarise(list);
    EXPECT_EQ(s.count, 5);
    EXPECT_TRUE(s.valid);
    EXPECT_FLOAT_EQ(s.level, -25.0f);
}

TEST(StepSummary, EmptyTakeIsAllSilence) {
    const StepStats s = summarise({});
    for (float v : {s.level, s.peak95, s.peakMax, s.noiseFloorMin, s.low, s.mid, s.high}) {
        EXPECT_EQ(v, -96.0f);
    }
    EXPECT_EQ(s.count, 0);
    EXPECT_FALSE(s.valid);
    EXPECT_FALSE(s.clipped);
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

    session.currentStep = kStepSilence;
    session.micType = kMicUsb;
    session.clear();
    EXPECT_EQ(session.currentStep, 0);
    EXPECT_EQ(session.micType, kMicUsb);
    for (const auto& list : session.steps) {
        EXPECT_TRUE(list.empty());
    }
}

TEST(DiagnosisAnalysis, NoiseSpectrumIsTheMedianOverTheSilenceTake) {
    DiagnosisSession session;
    session.micType = kMicCondenser;
    for (float v : {-80.0f, -60.0f, -70.0f}) {
        AudioMetrics m;
        m.spectrumDb.fill(v);
        m.spectrumDb[5] = v + 1.0f;
        session.record(kStepSilence, m);
    }
    AudioMetrics loud;
    loud.spectrumDb.fill(-10.0f);
    session.record(kStepNormal, loud); // other takes never reach the noise spectrum
    const DiagnosisResult r = analyse(session);
    EXPECT_EQ(r.valid, 1);
    EXPECT_EQ(r.micType, kMicCondenser);
    EXPECT_EQ(r.noiseSpectrum[0], -70.0f);
    EXPECT_EQ(r.noiseSpectrum[5], -69.0f);
    EXPECT_EQ(r.silence.count, 3);
    EXPECT_EQ(r.speech.count, 1);

    const DiagnosisResult empty = analyse(DiagnosisSession{});
    for (float v : empty.noiseSpectrum) {
        EXPECT_EQ(v, -96.0f);
    }
}

TEST(DiagnosisAnalysis, RunsOffTheCallingThreadAndIsPolledWithoutWaiting) {
    DiagnosisSession session;
    session.micType = kMicDynamic;
    AudioMetrics m;
    m.smoothedLevelDb = -20.0f;
    for (int i = 0; i < 10; ++i) {
        session.record(kStepNormal, m);
    }
    std::future<DiagnosisResult> future = startAnalysis(session);
    session.clear(); // the analysis works on its own copy

    std::optional<DiagnosisResult> result;
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!result && std::chrono::steady_clock::now() < until) {
        result = pollAnalysis(future);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(result->valid, 1);
    EXPECT_EQ(result->micType, kMicDynamic);
    EXPECT_EQ(result->speech.level, -20.0f);
    EXPECT_FALSE(pollAnalysis(future).has_value()) << "the result is taken once";
}

TEST(DiagnosisAnalysis, PollNeverThrows) {
    std::future<DiagnosisResult> none;
    bool failed = true;
    EXPECT_FALSE(pollAnalysis(none, &failed).has_value());
    EXPECT_FALSE(failed);

    std::promise<DiagnosisResult> pending;
    std::future<DiagnosisResult> waiting = pending.get_future();
    EXPECT_FALSE(pollAnalysis(waiting, &failed).has_value());
    EXPECT_FALSE(failed);

    std::promise<DiagnosisResult> broken;
    std::future<DiagnosisResult> throwing = broken.get_future();
    broken.set_exception(std::make_exception_ptr(std::runtime_error("analysis failed")));
    EXPECT_FALSE(pollAnalysis(throwing, &failed).has_value());
    EXPECT_TRUE(failed);
    EXPECT_FALSE(pollAnalysis(throwing, &failed).has_value());
    EXPECT_FALSE(failed) << "a spent future is simply empty";
    pending.set_value(DiagnosisResult{});
}

} // namespace
} // namespace Lumora
