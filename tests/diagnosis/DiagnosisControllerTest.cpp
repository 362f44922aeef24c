#include "diagnosis/DiagnosisController.h"

#include <gtest/gtest.h>

#include <limits>

namespace Lumora {
namespace {

// 0.25 s is exact in binary, so take lengths come out as whole tick counts.
constexpr double kQuarter = 0.25;

// Runs ticks until the state changes or the limit is reached; returns the ticks.
int tickUntilStateChanges(DiagnosisController& c, double dt, int limit = 1000) {
    const auto start = c.state();
    int ticks = 0;
    while (c.state() == start && ticks < limit) {
        c.tick(dt, AudioMetrics{});
        ++ticks;
    }
    return ticks;
}

void recordTake(DiagnosisController& c) {
    ASSERT_TRUE(c.startTake());
    tickUntilStateChanges(c, kQuarter); // countdown
    ASSERT_EQ(c.state(), DiagnosisController::kRecording);
    tickUntilStateChanges(c, kQuarter); // recording
    ASSERT_EQ(c.state(), DiagnosisController::kTakeDone);
}

TEST(DiagnosisController, CancelStopsOnlyWhatRunsAndAResultAfterItIsDropped) {
    DiagnosisController c;
    EXPECT_FALSE(c.cancel()); // mic choice: leave with finish()
    EXPECT_TRUE(c.finish());
    EXPECT_EQ(c.state(), DiagnosisController::kEnd);
    EXPECT_FALSE(c.finish());

    c.reset();
    c.selectMic(kMicUnknown);
    c.startTake();
    c.tick(kQuarter, AudioMetrics{});
    EXPECT_FALSE(c.finish()); // a countdown is cancelled, not finished
    EXPECT_TRUE(c.cancel());
    EXPECT_EQ(c.state(), DiagnosisController::kEnd);

    // The analysis thread finishes after the user cancelled it.
    c.reset();
    int callbacks = 0;
    c.setResultCallback([&](const DiagnosisResult&) { ++callbacks; });
    c.selectMic(kMicDynamic);
    for (int step = 1; step <= 5; ++step) {
        recordTake(c);
        c.next();
    }
    ASSERT_EQ(c.state(), DiagnosisController::kAnalysing);
    ASSERT_TRUE(c.cancel());
    EXPECT_FALSE(c.deliverResult(DiagnosisResult{}));
    EXPECT_FALSE(c.hasResult());
    EXPECT_FALSE(c.apply());
    EXPECT_EQ(callbacks, 0);
}

TEST(DiagnosisController, NanOrNegativeTimeStepsDoNotAdvance) {
    DiagnosisController c;
    c.selectMic(kMicDynamic);
    c.startTake();
    c.tick(std::numeric_limits<double>::quiet_NaN(), AudioMetrics{});
    c.tick(-1.0, AudioMetrics{});
    EXPECT_DOUBLE_EQ(c.countdownElapsed(), 0.0);
}

} // namespace
} // namespace Lumora
