#include "diagnosis/DiagnosisVerdicts.h"
#include "diagnosis/DiagnosisAnalysis.h"
#include "diagnosis/SpeechReference.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace Lumora {
namespace {

StepStats take(float level, float peakMax = -10.0f) {
    StepStats s;
    s.level = level;
    s.peak95 = peakMax - 2.0f;
    s.peakMax = peakMax;
    s.noiseFloorMin = level - 5.0f;
    s.low = -30.0f;
    s.mid = -30.0f;
    s.high = -40.0f;
    s.count = 180;
    s.valid = true;
    s.lowBurstMax = level - 15.0f;
    s.activeLevelDb = level + 5.0f;
    s.activeLowDb = level - 8.0f;
    s.activeMidDb = level - 8.0f;
    s.activeLevelP10 = level - 10.0f;
    return s;
}

// The low band `overDb` over the mid band, as the average voice reads through
// `mic` at the distance its advice recommends.
void setBalance(StepStats& s, int32_t mic, float overDb = 0.0f) {
    s.activeLowDb = s.activeMidDb +
                    static_cast<float>(speechReferenceBalanceDb(recommendedMicDistanceM(mic))) +
                    overDb;
}

// A healthy diagnosis through `mic`: every item Good.
TakeSummaries healthy(int32_t mic = kMicDynamic) {
    TakeSummaries t;
    t.normal = take(-22.0f, -8.0f);
    t.loud = take(-14.0f, -4.0f);
    t.soft = take(-34.0f, -20.0f);
    t.plosive = take(-20.0f, -5.0f);
    t.silence = take(-70.0f, -60.0f);
    setBalance(t.normal, mic);
    t.plosive.lowBurstMax = t.normal.lowBurstMax + 5.0f;
    // An ordinary room: its tail is clear, so a thin balance counts in full.
    t.wordEndFallMs = 80.0f;
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

int levelOf(const TakeSummaries& t, const std::string& key, int32_t mic = kMicDynamic) {
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
    EXPECT_EQ(r.soft.level, -34.0f) << "the gate reads the soft take";
}

TEST(DiagnosisVerdicts, AllStepsEmpty) {
    const DiagnosisResult r = analyse(DiagnosisSession{});
    ASSERT_EQ(r.items.size(), 6u);
    EXPECT_EQ(r.items[0].level, kLevelGood);
    EXPECT_EQ(r.items[0].value, -96.0f);
    for (size_t i = 1; i < 6; ++i) {
        EXPECT_EQ(r.items[i].level, kLevelCaution) << r.items[i].key;
    }
    EXPECT_EQ(r.items[1].value, -96.0f);
    EXPECT_EQ(r.items[3].value, 0.0f);
    EXPECT_EQ(r.overall, 1);
    EXPECT_EQ(r.micType, kMicUnknown);
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
}

TEST(DiagnosisVerdicts, ClippingReadsTheLoudestOfNormalLoudAndPlosive) {
    TakeSummaries t = healthy();
    t.loud.peak95 = -2.0f;
    DiagnosisItem c = item(judge(t, 0), "clipping");
    EXPECT_EQ(c.level, 1);
    EXPECT_EQ(c.value, -2.0f);
    t.loud.peak95 = -0.5f;
    EXPECT_EQ(levelOf(t, "clipping"), 2);
    t.loud.peak95 = -3.0f;
    EXPECT_EQ(levelOf(t, "clipping"), 0) << "-3 is not above -3";

    // A "pa" is the loudest thing a streamer says: when it alone reaches the
    // top, the voice clips on air all the same.
    t.plosive.peak95 = -0.5f;
    c = item(judge(t, 0), "clipping");
    EXPECT_EQ(c.level, 2);
    EXPECT_EQ(c.value, -0.5f);
    t.plosive.peak95 = -5.0f;
    t.plosive.clipped = true;
    EXPECT_EQ(levelOf(t, "clipping"), 2);
    t.plosive.clipped = false;

    t.normal.clipped = true;
    EXPECT_EQ(levelOf(t, "clipping"), 2);
    t.normal.valid = false; // judged whatever the takes' validity
    EXPECT_EQ(levelOf(t, "clipping"), 2);
}

// The room is judged by how far it sits under the voice while it speaks: the
// chain lifts the voice to about -25 dBFS and the room with it.
TEST(DiagnosisVerdicts, NoiseIsJudgedAgainstTheVoice) {
    struct Case {
        float voice, room, floor;
        int expected;
        const char* why;
    } cases[] = {
        // A fan 12 dB under the voice competes with the words, even when both
        // levels are far under the absolute limit of -42 dBFS.
        {-44.0f, -56.0f, -60.0f, 2, "12 dB under the voice"},
        {-30.0f, -49.9f, -55.0f, 2, "19.9 dB under the voice"},
        {-30.0f, -50.0f, -55.0f, 1, "exactly 20 dB under the voice"},
        {-30.0f, -64.9f, -70.0f, 1, "34.9 dB under the voice"},
        {-30.0f, -65.0f, -70.0f, 0, "exactly 35 dB under the voice"},
        // A quiet room under a soft talker: 36 dB down it is inaudible after the
        // chain, though the soft voice itself reads only -40 dBFS.
        {-40.0f, -76.0f, -80.0f, 0, "quiet room, soft talker"},
        // 25 dB under a soft voice: both levels under -55 dBFS, yet the room
        // is plain in every pause once the voice is lifted.
        {-45.0f, -70.0f, -75.0f, 1, "25 dB under a soft voice"},
        // A room over -42 dBFS is a Warning however loud the voice.
        {-3.0f, -41.0f, -41.0f, 2, "loud room under a louder voice"},
        {-3.0f, -41.0f, -42.0f, 0, "floor at -42 is not above -42, and 38 dB under"},
    };
    for (const Case& c : cases) {
        TakeSummaries t = healthy();
        // A slow talker: the take's median is mostly pauses, 15 dB under the
        // words, and must not be taken for the voice.
        t.normal.level = c.voice - 15.0f;
        t.normal.activeLevelDb = c.voice;
        t.silence.level = c.room;
        t.silence.noiseFloorMin = c.floor;
        const DiagnosisItem n = item(judge(t, kMicDynamic), "noise");
        EXPECT_EQ(n.level, c.expected) << c.why;
        EXPECT_EQ(n.value, c.room) << c.why;
    }
}

// Without a usable speech take only the room's absolute level can be judged.
TEST(DiagnosisVerdicts, NoiseWithoutAVoiceFallsBackOnAbsoluteLevels) {
    TakeSummaries t = healthy();
    t.normal.valid = false;
    t.normal.level = -96.0f;
    struct Case {
        float level, floor;
        int expected;
    } cases[] = {{-55.0f, -55.0f, 0},
                 {-60.0f, -50.0f, 1},
                 {-50.0f, -60.0f, 1},
                 {-42.0f, -41.0f, 1},
                 {-41.0f, -41.0f, 2}};
    for (const Case& c : cases) {
        t.silence.level = c.level;
        t.silence.noiseFloorMin = c.floor;
        EXPECT_EQ(levelOf(t, "noise"), c.expected) << c.level << " " << c.floor;
    }
    t.silence.valid = false;
    const DiagnosisItem n = item(judge(t, 0), "noise");
    EXPECT_EQ(n.level, 1);
    EXPECT_EQ(n.value, -96.0f);
}

// The distance value is the voice's low-to-mid balance against the average
// voice through this mic type at its recommended distance: 0 on every mic
// when the voice is just that, and 4 and 10 dB either side of it the limits.
TEST(DiagnosisVerdicts, DistanceThresholds) {
    // The title says which way the mic is off; the level says how far.
    const std::string great = "Distance looks great!", close = "Maybe a touch too close?",
                      far = "Maybe a bit too far?";
    struct Case {
        int32_t mic;
        float over;
        int expected;
        std::string titleEn;
    } cases[] = {
        {kMicDynamic, 10.5f, 2,
         "Mic seems too close! Breath from P and B sounds might be hitting it."},
        {kMicUsb, 9.9f, 1, close},
        {kMicCondenser, 4.1f, 1, close},
        {kMicCondenser, 3.9f, 0, great},
        {kMicUnknown, -3.9f, 0, great},
        {kMicUnknown, -4.1f, 1, far},
        {kMicUsb, -10.5f, 2, "Mic seems too far! Your voice isn't coming through clearly."},
    };
    for (const Case& c : cases) {
        TakeSummaries t = healthy(c.mic);
        setBalance(t.normal, c.mic, c.over);
        const DiagnosisItem d = item(judge(t, c.mic), "distance");
        EXPECT_NEAR(d.value, c.over, 0.01f) << c.mic << " " << c.over;
        EXPECT_EQ(d.level, c.expected) << c.mic << " " << c.over;
        EXPECT_EQ(d.titleEn, c.titleEn) << c.mic << " " << c.over;
    }
}

TEST(DiagnosisVerdicts, DistanceTakesTheRoomOutOfTheBands) {
    auto power = [](float db) { return std::pow(10.0, db / 10.0); };
    auto dbOf = [](double p) { return static_cast<float>(10.0 * std::log10(p)); };
    // A voice at the recommended balance in a room with a rumble as strong as
    // the voice's own lows: the measured low band is 3 dB up, and only the
    // room's share taken back out leaves the voice at 0.
    TakeSummaries t = healthy();
    t.silence.activeLowDb = t.normal.activeLowDb;
    t.silence.activeMidDb = t.normal.activeMidDb - 30.0f;
    const double voiceMid = power(t.normal.activeMidDb);
    t.normal.activeLowDb = dbOf(2.0 * power(t.normal.activeLowDb));
    t.normal.activeMidDb = dbOf(voiceMid + power(t.silence.activeMidDb));
    DiagnosisItem d = item(judge(t, kMicDynamic), "distance");
    EXPECT_NEAR(d.value, 0.0f, 0.01f);
    EXPECT_EQ(d.level, 0);

    // Without a silence take nothing is taken out: the rumble reads as lows.
    t.silence.valid = false;
    EXPECT_NEAR(item(judge(t, kMicDynamic), "distance").value, 3.01f, 0.01f);

    // A room louder than a band leaves at most 10 % of it, never a negative
    // power: the reading stays finite.
    t = healthy();
    t.silence.activeLowDb = t.normal.activeLowDb + 6.0f;
    d = item(judge(t, kMicDynamic), "distance");
    EXPECT_TRUE(std::isfinite(d.value));
    EXPECT_NEAR(d.value, -10.0f, 0.01f);
}

// A thin balance says "far" only as far as the room's tail confirms it; a
// rich one says "close" without it.
TEST(DiagnosisVerdicts, DistanceFarSideNeedsTheRoomsTail) {
    const struct {
        float over;
        float fallMs;
        float value;
    } cases[] = {
        {-8.0f, 30.0f, 0.0f},  // dry: a thin voice, not a far mic
        {-8.0f, 45.0f, 0.0f},  // still dry
        {-8.0f, 55.0f, -4.0f}, // half way to an ordinary room
        {-8.0f, 65.0f, -8.0f}, // an ordinary room at arm's length
        {-12.0f, 200.0f, -12.0f},
        {-8.0f, -1.0f, 0.0f}, // endings hidden by the room's noise: no proof
        {6.0f, 30.0f, 6.0f},  // close needs no room
        {6.0f, -1.0f, 6.0f},
    };
    for (const auto& c : cases) {
        TakeSummaries t = healthy(kMicUsb);
        setBalance(t.normal, kMicUsb, c.over);
        t.wordEndFallMs = c.fallMs;
        EXPECT_NEAR(item(judge(t, kMicUsb), "distance").value, c.value, 0.01f)
            << c.over << " dB, " << c.fallMs << " ms";
    }
}

// A take with no block loud enough to count, or too short to trust though
// its bands read speech.
TEST(DiagnosisVerdicts, DistanceCannotBeJudgedWithoutActiveSpeech) {
    for (bool tooShort : {false, true}) {
        TakeSummaries t = healthy();
        t.normal.valid = !tooShort;
        if (!tooShort) {
            t.normal.activeMidDb = t.normal.activeLowDb = -96.0f;
        }
        const DiagnosisItem d = item(judge(t, kMicDynamic), "distance");
        EXPECT_EQ(d.level, 1) << tooShort;
        EXPECT_EQ(d.value, 0.0f) << tooShort;
    }
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
    EXPECT_EQ(d.adviceEn, "Loud: -14 dBFS / Soft: -32 dBFS / Range: 17 dB");

    t.soft.valid = false;
    EXPECT_EQ(levelOf(t, "dynamics"), 1);
}

// A pop is a burst of low-frequency pressure, measured against the same
// burst measure of normal speech, not a louder peak.
TEST(DiagnosisVerdicts, PopReadsTheLowBurstOverNormalSpeech) {
    TakeSummaries t = healthy();
    t.normal.lowBurstMax = -40.0f;
    for (auto [burst, expected] : {std::pair{-28.0f, 0}, {-27.9f, 1}, {-20.0f, 1}, {-19.9f, 2}}) {
        t.plosive.lowBurstMax = burst;
        const DiagnosisItem p = item(judge(t, 0), "pop");
        EXPECT_EQ(p.level, expected) << burst;
        EXPECT_NEAR(p.value, burst + 40.0f, 1e-4f) << burst;
    }
    // Speech already peaks near the top: a "pa" 14 dB over normal speech's
    // peaks without any low burst is no pop.
    t.plosive.lowBurstMax = -40.0f;
    t.normal.peakMax = -20.0f;
    t.plosive.peakMax = -6.0f;
    EXPECT_EQ(levelOf(t, "pop"), 0);

    t.plosive.count = 4;
    t.plosive.valid = false;
    EXPECT_EQ(levelOf(t, "pop"), 1);
}

TEST(DiagnosisVerdicts, OverallAndSummaries) {
    TakeSummaries t = healthy();
    t.normal.level = -40.0f;  // volume Caution
    t.silence.level = -70.0f; // noise Caution: 30 dB under the voice
    t.loud.peak95 = -0.5f;    // clipping Warning
    DiagnosisResult r = judge(t, 0);
    EXPECT_EQ(r.overall, 2);
    EXPECT_EQ(r.summaryEn, "One thing to keep an eye on!");

    t.plosive.lowBurstMax = t.normal.lowBurstMax + 25.0f; // pop Warning too
    EXPECT_EQ(judge(t, 0).summaryEn, "A few adjustments could really help!");
}

} // namespace
} // namespace Lumora
