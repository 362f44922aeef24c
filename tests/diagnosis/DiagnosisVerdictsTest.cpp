#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/DiagnosisAnalysis.h"

#include <gtest/gtest.h>

#include <string>

namespace Lumora {
namespace {

StepStats take(float level, float peakMax = -10.0f, float low = -30.0f, float mid = -30.0f) {
    StepStats s;
    s.level = level;
    s.peak95 = peakMax - 2.0f;
    s.peakMax = peakMax;
    s.noiseFloorMin = -70.0f;
    s.low = low;
    s.mid = mid;
    s.high = -40.0f;
    s.count = 180;
    s.valid = true;
    return s;
}

// A healthy diagnosis: every item Good.
TakeSummaries healthy() {
    TakeSummaries t;
    t.normal = take(-22.0f, -8.0f);
    t.loud = take(-14.0f, -4.0f);
    t.soft = take(-34.0f, -20.0f);
    t.plosive = take(-20.0f, -5.0f);
    t.silence = take(-70.0f, -60.0f);
    return t;
}

const DiagnosisItem& item(const DiagnosisResult& r, const std::string& key) {
    for (const DiagnosisItem& i : r.items) {
        if (i.key == key) {
            return i;
        }
    }
    static DiagnosisItem missing;
    ADD_FAILURE() << "no item " << key;
    return missing;
}

int levelOf(const TakeSummaries& t, const std::string& key, int32_t mic = kMicUnknown) {
    return item(judge(t, mic), key).level;
}

TEST(DiagnosisVerdicts, HealthyTakesAreAllGoodInOrder) {
    const DiagnosisResult r = judge(healthy(), kMicDynamic);
    ASSERT_EQ(r.items.size(), 6u);
    const char* order[] = {"clipping", "volume", "noise", "distance", "dynamics", "pop"};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(r.items[i].key, order[i]);
        EXPECT_EQ(r.items[i].level, kLevelGood) << order[i];
    }
    EXPECT_EQ(r.overall, 0);
    EXPECT_EQ(r.valid, 1);
    EXPECT_EQ(r.micType, kMicDynamic);
    EXPECT_EQ(r.summaryJa, "いい感じ！このまま使えるよ！");
    EXPECT_EQ(r.summaryEn, "Sounds great! You're all set!");
    EXPECT_EQ(r.speech.level, -22.0f);
    EXPECT_EQ(r.silence.level, -70.0f);
}

TEST(DiagnosisVerdicts, AllStepsEmpty) {
    const DiagnosisResult r = analyse(DiagnosisSession{});
    ASSERT_EQ(r.items.size(), 6u);
    EXPECT_EQ(r.items[0].level, kLevelGood);
    EXPECT_EQ(r.items[0].value, -96.0f);
    for (size_t i = 1; i < 6; ++i) {
        EXPECT_EQ(r.items[i].level, kLevelCaution) << r.items[i].key;
    }
    EXPECT_EQ(r.items[1].titleEn, "Couldn't capture audio");
    EXPECT_EQ(r.items[1].value, -96.0f);
    EXPECT_EQ(r.items[2].titleJa, "無音が取れなかったかも");
    EXPECT_EQ(r.items[3].value, 0.0f);
    EXPECT_EQ(r.items[4].titleEn, "Couldn't measure dynamics");
    EXPECT_EQ(r.items[5].titleEn, "Couldn't detect pop noise");
    EXPECT_EQ(r.overall, 1);
    EXPECT_EQ(r.micType, kMicUnknown);
    EXPECT_EQ(r.summaryJa, "ちょっと気になるところがあるかも！");
    EXPECT_EQ(r.summaryEn, "A few small things to look at!");
}

TEST(DiagnosisVerdicts, VolumeThresholds) {
    struct Case {
        float level;
        int expected;
    } cases[] = {{-38.0f, 0}, {-38.1f, 1}, {-45.0f, 1}, {-45.01f, 2}, {-12.0f, 0},
                 {-11.9f, 1}, {-6.0f, 1},  {-5.9f, 2},  {-24.0f, 0}};
    for (const Case& c : cases) {
        TakeSummaries t = healthy();
        t.normal.level = c.level;
        EXPECT_EQ(levelOf(t, "volume"), c.expected) << c.level;
        EXPECT_EQ(item(judge(t, 0), "volume").value, c.level);
    }
    TakeSummaries t = healthy();
    t.normal.level = -50.0f;
    const DiagnosisItem quiet = item(judge(t, 0), "volume");
    EXPECT_EQ(quiet.adviceEn, "Target: -24 to -12 dBFS when speaking. If using a condenser mic, "
                              "check if the PAD switch is on.");
}

TEST(DiagnosisVerdicts, ClippingUsesTheLouderTake) {
    TakeSummaries t = healthy();
    t.loud.peak95 = -2.0f;
    DiagnosisItem c = item(judge(t, 0), "clipping");
    EXPECT_EQ(c.level, 1);
    EXPECT_EQ(c.value, -2.0f);
    t.loud.peak95 = -0.5f;
    EXPECT_EQ(levelOf(t, "clipping"), 2);
    t.loud.peak95 = -3.0f;
    EXPECT_EQ(levelOf(t, "clipping"), 0) << "-3 is not above -3";
    t.normal.clipped = true;
    c = item(judge(t, 0), "clipping");
    EXPECT_EQ(c.level, 2);
    EXPECT_EQ(c.titleJa, "音が割れてるかも");
    t.normal.valid = false; // judged whatever the takes' validity
    EXPECT_EQ(levelOf(t, "clipping"), 2);
}

TEST(DiagnosisVerdicts, NoiseNeedsBothFloorAndLevel) {
    TakeSummaries t = healthy();
    t.silence.noiseFloorMin = -50.0f;
    t.silence.level = -60.0f;
    EXPECT_EQ(levelOf(t, "noise"), 1) << "only one of the two at or below -55";
    t.silence.noiseFloorMin = -55.0f;
    t.silence.level = -55.0f;
    EXPECT_EQ(levelOf(t, "noise"), 0);
    t.silence.noiseFloorMin = -41.0f;
    t.silence.level = -42.0f;
    EXPECT_EQ(levelOf(t, "noise"), 1) << "-42 is not above -42";
    t.silence.level = -30.0f;
    const DiagnosisItem n = item(judge(t, 0), "noise");
    EXPECT_EQ(n.level, 2);
    EXPECT_EQ(n.value, -30.0f);
    EXPECT_EQ(n.titleJa, "バックグラウンドノイズが多いです。エアコン・PC・換気扇など近くにある？"
                         "\xE3\x80\x80静かな環境で録音しましょう。");
}

TEST(DiagnosisVerdicts, DistanceDependsOnTheMicType) {
    TakeSummaries t = healthy();
    t.normal.low = -23.5f;
    t.normal.mid = -30.0f; // low - mid = 6.5
    DiagnosisItem d = item(judge(t, kMicDynamic), "distance");
    EXPECT_FLOAT_EQ(d.value, 10.5f);
    EXPECT_EQ(d.level, 2);
    EXPECT_EQ(d.adviceEn, "For dynamic mics, aim for 5–15 cm from your mouth");
    EXPECT_EQ(levelOf(t, "distance", kMicCondenser), 1); // 6.5 - 2 = 4.5
    d = item(judge(t, kMicUsb), "distance");
    EXPECT_FLOAT_EQ(d.value, 7.5f);
    EXPECT_EQ(d.level, 1);
    EXPECT_EQ(d.adviceJa, "USBマイクの目安は15〜25cm（手を伸ばした先くらい）");

    t.normal.low = -42.0f; // -12 + 0
    d = item(judge(t, kMicUnknown), "distance");
    EXPECT_EQ(d.level, 2);
    EXPECT_EQ(d.adviceEn, "Try moving the mic a bit closer!");
    t.normal.low = -34.5f; // -4.5
    d = item(judge(t, kMicUnknown), "distance");
    EXPECT_EQ(d.level, 1);
    EXPECT_EQ(d.titleEn, "Maybe a bit too far?");
    t.normal.low = -30.0f;
    d = item(judge(t, kMicUnknown), "distance");
    EXPECT_EQ(d.level, 0);
    EXPECT_EQ(d.adviceJa, "");
}

TEST(DiagnosisVerdicts, DynamicsRangeAndAdviceText) {
    TakeSummaries t = healthy();
    t.soft.level = -30.0f;
    struct Case {
        float loud;
        int expected;
    } cases[] = {{-28.5f, 2}, {-28.0f, 1}, {-25.0f, 0}, {0.0f, 0}, {0.5f, 1}};
    for (const Case& c : cases) {
        t.loud.level = c.loud;
        EXPECT_EQ(levelOf(t, "dynamics"), c.expected) << c.loud;
    }
    t.loud.level = -14.4f;
    t.soft.level = -31.6f;
    const DiagnosisItem d = item(judge(t, 0), "dynamics");
    EXPECT_FLOAT_EQ(d.value, 17.2f);
    EXPECT_EQ(d.adviceJa, "大きい声: -14 dBFS / 小さい声: -32 dBFS / 差: 17 dB");
    EXPECT_EQ(d.adviceEn, "Loud: -14 dBFS / Soft: -32 dBFS / Range: 17 dB");

    t.soft.valid = false;
    EXPECT_EQ(item(judge(t, 0), "dynamics").titleJa, "強弱が判定できなかったかも");
}

TEST(DiagnosisVerdicts, PopThresholds) {
    TakeSummaries t = healthy();
    t.normal.peakMax = -20.0f;
    for (auto [plosive, expected] : {std::pair{-8.0f, 0}, {-7.9f, 1}, {0.0f, 1}, {0.1f, 2}}) {
        t.plosive.peakMax = plosive;
        EXPECT_EQ(levelOf(t, "pop"), expected) << plosive;
    }
    t.plosive.count = 4;
    t.plosive.valid = false;
    EXPECT_EQ(levelOf(t, "pop"), 1);
}

TEST(DiagnosisVerdicts, OverallAndSummaries) {
    TakeSummaries t = healthy();
    t.normal.level = -40.0f;  // volume Caution
    t.silence.level = -50.0f; // noise Caution
    t.loud.peak95 = -0.5f;    // clipping Warning
    DiagnosisResult r = judge(t, 0);
    EXPECT_EQ(r.overall, 2);
    EXPECT_EQ(r.summaryJa, "1 つ気になるところがあるかも！");
    EXPECT_EQ(r.summaryEn, "One thing to keep an eye on!");

    t.plosive.peakMax = 30.0f; // pop Warning too
    r = judge(t, 0);
    EXPECT_EQ(r.summaryJa, "いくつか調整してみると良くなるかも！");
    EXPECT_EQ(r.summaryEn, "A few adjustments could really help!");

    EXPECT_EQ(overallLevel({}), 0);
}

TEST(DiagnosisVerdicts, LabelsAndSummaryLineUseDifferentLanguageTests) {
    EXPECT_EQ(statusLabel(0, "ja"), "✅ 良好");
    EXPECT_EQ(statusLabel(1, "ja"), "⚠️ 注意");
    EXPECT_EQ(statusLabel(2, "ja"), "❌ 警告");
    EXPECT_EQ(statusLabel(0, "en"), "✅ Good");
    EXPECT_EQ(statusLabel(1, "en"), "⚠️ Caution");
    EXPECT_EQ(statusLabel(2, "en"), "❌ Warning");
    EXPECT_EQ(statusLabel(3, "ja"), "—");
    EXPECT_EQ(statusLabel(-1, "en"), "—");

    const DiagnosisResult r = judge(healthy(), 0);
    EXPECT_EQ(summaryText(r, "en"), r.summaryEn);
    EXPECT_EQ(summaryText(r, "ja"), r.summaryJa);
    // Neither "ja" nor "en": Japanese summary, English labels.
    EXPECT_EQ(summaryText(r, "fr"), r.summaryJa);
    EXPECT_EQ(statusLabel(0, "fr"), "✅ Good");
}

} // namespace
} // namespace Lumora
