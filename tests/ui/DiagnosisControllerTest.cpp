#include "diagnosis/DiagnosisController.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace Lumora {
namespace {

// 0.25 s is exact in binary, so take lengths come out as whole tick counts.
constexpr double kQuarter = 0.25;

AudioMetrics snapshotWithLevel(float db) {
    AudioMetrics m;
    m.smoothedLevelDb = db;
    return m;
}

// Runs ticks until the state changes or the limit is reached; returns the ticks.
int tickUntilStateChanges(DiagnosisController& c, double dt, int limit = 1000) {
    const auto start = c.state();
    int ticks = 0;
    while (c.state() == start && ticks < limit) {
        c.tick(dt, snapshotWithLevel(-20.0f));
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

bool hasJapanese(const std::string& s) {
    // Any UTF-8 sequence from the CJK ranges (lead bytes E3..E9 cover kana and kanji).
    for (unsigned char ch : s) {
        if (ch >= 0xE3 && ch <= 0xE9) {
            return true;
        }
    }
    return false;
}

TEST(DiagnosisController, WalksThroughFiveTakesToTheAnalysis) {
    DiagnosisController c;
    EXPECT_EQ(c.state(), DiagnosisController::kIntro);
    EXPECT_FALSE(c.startTake());
    ASSERT_TRUE(c.selectMic(kMicCondenser));
    EXPECT_EQ(c.session().micType, kMicCondenser);
    EXPECT_EQ(c.currentStep(), 1);
    EXPECT_EQ(c.state(), DiagnosisController::kPrompt);

    for (int step = 1; step <= 5; ++step) {
        ASSERT_TRUE(c.startTake());
        EXPECT_EQ(tickUntilStateChanges(c, kQuarter), 12) << "3 s countdown, step " << step;
        const int recordTicks = tickUntilStateChanges(c, kQuarter);
        EXPECT_EQ(recordTicks, step == 4 ? 8 : 12) << "step " << step;
        EXPECT_EQ(c.session().steps[static_cast<size_t>(step)].size(),
                  static_cast<size_t>(recordTicks));
        ASSERT_TRUE(c.next());
    }
    EXPECT_EQ(c.state(), DiagnosisController::kAnalysing);
    EXPECT_TRUE(c.session().steps[0].empty());
    EXPECT_EQ(c.takesCompleted(), 5);
}

TEST(DiagnosisController, TakeLengthsFollowTheStepTable) {
    for (int step = 1; step <= 5; ++step) {
        EXPECT_TRUE(DiagnosisController::step(step).records);
        EXPECT_FLOAT_EQ(DiagnosisController::step(step).durationS, step == 4 ? 2.0f : 3.0f);
        EXPECT_EQ(DiagnosisController::step(step).ordinal, step + 1);
    }
    EXPECT_FALSE(DiagnosisController::step(0).records);
    EXPECT_FALSE(DiagnosisController::step(6).records);
}

TEST(DiagnosisController, RecordsOneSnapshotPerTickAtTheDialogsRate) {
    DiagnosisController c;
    c.selectMic(kMicDynamic);
    c.startTake();
    tickUntilStateChanges(c, 0.016);
    tickUntilStateChanges(c, 0.016);
    // 3 s in 16 ms ticks: 188 snapshots (the last tick crosses the end).
    EXPECT_NEAR(static_cast<double>(c.session().steps[1].size()), 188.0, 1.0);
    EXPECT_FLOAT_EQ(c.session().steps[1].front().smoothedLevelDb, -20.0f);
}

TEST(DiagnosisController, ProgressFollowsCountdownThenTake) {
    DiagnosisController c;
    c.selectMic(kMicUsb);
    c.startTake();
    EXPECT_EQ(c.countdownSecondsLeft(), 3);
    for (int i = 0; i < 6; ++i) {
        c.tick(kQuarter, AudioMetrics{});
    }
    EXPECT_DOUBLE_EQ(c.progress(), 0.5);
    EXPECT_EQ(c.countdownSecondsLeft(), 2);
    for (int i = 0; i < 6; ++i) {
        c.tick(kQuarter, AudioMetrics{});
    }
    ASSERT_EQ(c.state(), DiagnosisController::kRecording);
    EXPECT_DOUBLE_EQ(c.progress(), 0.0);
    for (int i = 0; i < 6; ++i) {
        c.tick(kQuarter, AudioMetrics{});
    }
    EXPECT_DOUBLE_EQ(c.progress(), 0.5);
}

TEST(DiagnosisController, RetryEmptiesTheTakeJustRecorded) {
    DiagnosisController c;
    c.selectMic(kMicDynamic);
    recordTake(c);
    ASSERT_TRUE(c.next());
    recordTake(c);
    ASSERT_TRUE(c.retry());
    EXPECT_EQ(c.state(), DiagnosisController::kPrompt);
    EXPECT_EQ(c.currentStep(), 2);
    EXPECT_TRUE(c.session().steps[2].empty());
    EXPECT_EQ(c.session().steps[1].size(), 12u);
    EXPECT_FALSE(c.retry()); // only after a take
}

TEST(DiagnosisController, CancelDuringRecordingEndsWithoutAnalysis) {
    DiagnosisController c;
    int callbacks = 0;
    c.setResultCallback([&](const DiagnosisResult&) { ++callbacks; });
    c.selectMic(kMicDynamic);
    recordTake(c);
    c.next();
    c.startTake();
    tickUntilStateChanges(c, kQuarter);
    c.tick(kQuarter, AudioMetrics{});
    ASSERT_EQ(c.state(), DiagnosisController::kRecording);
    ASSERT_FALSE(c.session().steps[2].empty());
    ASSERT_TRUE(c.cancel());
    EXPECT_EQ(c.state(), DiagnosisController::kEnd);
    EXPECT_TRUE(c.session().steps[2].empty());
    EXPECT_EQ(c.session().steps[1].size(), 12u);
    EXPECT_DOUBLE_EQ(c.recordingElapsed(), 0.0);
    EXPECT_FALSE(c.deliverResult(DiagnosisResult{}));
    EXPECT_FALSE(c.hasResult());
    EXPECT_EQ(callbacks, 0);
}

TEST(DiagnosisController, CancelOnlyStopsSomethingRunning) {
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
}

TEST(DiagnosisController, ResultIsDeliveredAppliedAndSaved) {
    DiagnosisController c;
    std::vector<std::string> received;
    c.setResultCallback([&](const DiagnosisResult& r) { received.push_back(r.summaryEn); });
    c.selectMic(kMicDynamic);
    for (int step = 1; step <= 5; ++step) {
        recordTake(c);
        c.next();
    }
    ASSERT_EQ(c.state(), DiagnosisController::kAnalysing);
    EXPECT_FALSE(c.apply());
    DiagnosisResult r;
    r.valid = 1;
    r.summaryJa = "いい感じ！このまま使えるよ！";
    r.summaryEn = "Sounds great! You're all set!";
    ASSERT_TRUE(c.deliverResult(r));
    EXPECT_EQ(c.state(), DiagnosisController::kResult);
    EXPECT_EQ(c.currentText("en"), "Sounds great! You're all set!");
    EXPECT_EQ(c.currentText("ja"), "いい感じ！このまま使えるよ！");
    EXPECT_EQ(c.currentText("fr"), "いい感じ！このまま使えるよ！");

    DiagnosisController saving = c;
    ASSERT_TRUE(c.apply());
    EXPECT_EQ(c.state(), DiagnosisController::kEnd);
    ASSERT_EQ(received.size(), 1u);

    EXPECT_FALSE(saving.save());
    ASSERT_TRUE(saving.offerSave());
    EXPECT_EQ(saving.currentText("en"), "Want to save it?");
    ASSERT_TRUE(saving.save());
    EXPECT_EQ(saving.state(), DiagnosisController::kEnd);
    EXPECT_EQ(received.size(), 2u);
}

TEST(DiagnosisController, ResetRestoresTheInitialSnapshotAndDropsTheResult) {
    DiagnosisController c;
    c.tick(0.016, snapshotWithLevel(-12.0f));
    EXPECT_FLOAT_EQ(c.latestSnapshot().smoothedLevelDb, -12.0f); // kept even in state 0
    c.selectMic(kMicDynamic);
    c.reset();
    EXPECT_EQ(c.state(), DiagnosisController::kIntro);
    EXPECT_FLOAT_EQ(c.latestSnapshot().smoothedLevelDb, -96.0f);
    EXPECT_FLOAT_EQ(c.latestSnapshot().momentaryLufs, -70.0f);
    EXPECT_FLOAT_EQ(c.latestSnapshot().spectrumDb[10], -96.0f);
    EXPECT_DOUBLE_EQ(c.recordingDuration(), 3.0);
    EXPECT_FALSE(c.hasResult());
}

TEST(DiagnosisController, NanOrNegativeTimeStepsDoNotAdvance) {
    DiagnosisController c;
    c.selectMic(kMicDynamic);
    c.startTake();
    c.tick(std::numeric_limits<double>::quiet_NaN(), AudioMetrics{});
    c.tick(-1.0, AudioMetrics{});
    EXPECT_DOUBLE_EQ(c.countdownElapsed(), 0.0);
}

// Every state and step has its text in both languages: English only for "en".
TEST(DiagnosisController, EveryTextIsEnglishForEnAndJapaneseOtherwise) {
    DiagnosisController c;
    std::vector<std::pair<std::string, std::string>> seen; // (en, ja)
    auto collect = [&] {
        const std::string en = c.currentText("en");
        const std::string ja = c.currentText("ja");
        EXPECT_FALSE(en.empty()) << "state " << c.state() << " step " << c.currentStep();
        EXPECT_FALSE(hasJapanese(en)) << en;
        EXPECT_TRUE(hasJapanese(ja)) << ja;
        EXPECT_EQ(c.currentText("de"), ja);
        EXPECT_EQ(c.currentText(""), ja);
        const std::string hintEn = c.currentHint("en");
        EXPECT_FALSE(hasJapanese(hintEn)) << hintEn;
        EXPECT_EQ(c.currentHint("ko"), c.currentHint("ja"));
        seen.emplace_back(en, ja);
    };
    collect();
    EXPECT_EQ(c.currentText("en"),
              "Effects were disabled for the diagnosis.\nThis ensures an accurate reading of your "
              "raw voice!\nFirst, tell me your mic type 🎤");
    c.selectMic(kMicDynamic);
    for (int step = 1; step <= 5; ++step) {
        collect(); // prompt
        c.startTake();
        collect(); // countdown
        tickUntilStateChanges(c, kQuarter);
        collect(); // recording
        tickUntilStateChanges(c, kQuarter);
        collect(); // done
        if (step == 4) {
            EXPECT_EQ(c.currentText("en"), "Perfect!");
        }
        c.next();
    }
    collect(); // analysing
    EXPECT_EQ(c.currentText("en"), "Just a moment~ Analyzing...");
    DiagnosisController noSummary = c;
    c.deliverResult(DiagnosisResult{});
    EXPECT_EQ(c.currentText("en"), ""); // an empty summary stays empty
    noSummary.deliverResult([] {
        DiagnosisResult r;
        r.summaryJa = "診断が終わったよ！";
        r.summaryEn = "Diagnosis complete!";
        return r;
    }());
    c = noSummary;
    collect(); // result
    c.offerSave();
    collect();
    c.save();
    collect();
    EXPECT_EQ(c.currentText("en"), "Thanks for everything!");
    EXPECT_EQ(c.currentText("ja"), "ここまでありがとう！");
    EXPECT_EQ(DiagnosisController::step(4).prompt.pick("en"), std::string("Say \"pa pa pa\"!"));
    EXPECT_EQ(DiagnosisController::step(1).prompt.pick("ja"),
              std::string("診断するため、声を聞かせてね🙏\n普通の声の音量でしゃべってね☺"
                          "️"));
}

} // namespace
} // namespace Lumora
