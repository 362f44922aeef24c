#include "diagnosis/RecommendedSettings.h"
#include "diagnosis/DiagnosisVerdicts.h"

#include <gtest/gtest.h>

#include <string>

namespace Lumora {
namespace {

StepStats stats(float level, bool valid = true) {
    StepStats s;
    s.level = level;
    s.peak95 = level + 10.0f;
    s.peakMax = level + 12.0f;
    s.noiseFloorMin = -70.0f;
    s.low = level - 2.0f;
    s.mid = level;
    s.high = level - 10.0f;
    s.count = valid ? 180 : 2;
    s.valid = valid;
    return s;
}

DiagnosisResult diagnosed(float speechLevel, float silenceLevel = -70.0f) {
    DiagnosisResult r;
    r.valid = 1;
    r.speech = stats(speechLevel);
    r.silence = stats(silenceLevel);
    return r;
}

bool startsWith(const std::string& s, const std::string& prefix) {
    return s.compare(0, prefix.size(), prefix) == 0;
}

TEST(RecommendedSettings, RecordingModeAndUndiagnosedLeaveEverythingOff) {
    for (bool recording : {true, false}) {
        const EffectPreset p = recommend(DiagnosisResult{}, recording);
        EXPECT_EQ(p.recording, recording);
        EXPECT_FALSE(p.eq.enabled || p.comp.enabled || p.limiter.enabled || p.gate.enabled ||
                     p.spectral.enabled || p.noise.enabled);
        EXPECT_EQ(p.inputGainDb, 0.0f);
    }
    // Recording mode wins even over a finished diagnosis.
    EXPECT_FALSE(recommend(diagnosed(-20.0f), true).gate.enabled);
}

TEST(RecommendedSettings, InputGainFromTheSpeechLevel) {
    EffectPreset p = recommend(diagnosed(-18.0f), false);
    EXPECT_FLOAT_EQ(p.inputGainDb, -7.0f);
    EXPECT_TRUE(startsWith(p.description, "入力ゲインを下げたよ、")) << p.description;

    p = recommend(diagnosed(-30.0f), false);
    EXPECT_EQ(p.inputGainDb, 0.0f) << "a quiet voice is not raised";
    EXPECT_EQ(p.description.find("入力ゲイン"), std::string::npos);

    EXPECT_FLOAT_EQ(recommend(diagnosed(-5.0f), false).inputGainDb, -12.0f);
    EXPECT_EQ(recommend(diagnosed(-25.5f), false).inputGainDb, 0.0f) << "within 1 dB: unchanged";

    DiagnosisResult r = diagnosed(-18.0f);
    r.speech.valid = false;
    EXPECT_EQ(recommend(r, false).inputGainDb, 0.0f);
}

TEST(RecommendedSettings, GateClearsTheRoomsPeaks) {
    DiagnosisResult r = diagnosed(-20.0f);
    r.silence.peak95 = -48.0f;
    EffectPreset p = recommend(r, false);
    EXPECT_TRUE(p.gate.enabled);
    EXPECT_FLOAT_EQ(p.gate.thresholdDb, -45.0f);

    // A few snapshots still holding the "pa" take's peak would have set the
    // gate at -20 and muted a soft voice: the loudest 5 % decide, not the
    // single loudest.
    r.silence.peakMax = -10.0f;
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -45.0f);
    r.silence.peak95 = -10.0f; // a loud room: the threshold stays at -20 at most
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -20.0f);

    r.silence.valid = false; // from the speech take's noise floor (-70)
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -58.0f);

    r.speech.valid = false; // nothing measured
    p = recommend(r, false);
    EXPECT_TRUE(p.gate.enabled);
    EXPECT_FLOAT_EQ(p.gate.thresholdDb, -50.0f);
    EXPECT_FALSE(p.comp.enabled);
}

// A gate over the quiet syllables of the user's own voice cuts words off: it
// never sits less than 6 dB under the soft (or normal) take's quiet end.
TEST(RecommendedSettings, GateNeverSitsAboveTheQuietSyllables) {
    DiagnosisResult r = diagnosed(-20.0f);
    r.silence.peak95 = -40.0f; // the room alone would put it at -37
    r.soft = stats(-40.0f);
    r.soft.activeLevelP10 = -50.0f;
    r.speech.activeLevelP10 = -30.0f;
    EffectPreset p = recommend(r, false);
    EXPECT_FLOAT_EQ(p.gate.thresholdDb, -56.0f);
    EXPECT_FLOAT_EQ(p.gate.holdMs, 135.0f) << "hold and release still follow the room";

    r.speech.activeLevelP10 = -55.0f; // the normal take counts too
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -61.0f);
    r.speech.activeLevelP10 = -30.0f;

    // A voice far too quiet: the cap goes under the room's -70 floor, down to
    // the gate's own -80.
    r.soft.activeLevelP10 = -72.0f;
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -78.0f);
    r.soft.activeLevelP10 = -90.0f;
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -80.0f);

    // A take without active speech, or not taken at all, caps nothing.
    r.soft.activeLevelP10 = -96.0f;
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -37.0f);
    r.soft.activeLevelP10 = -50.0f;
    r.soft.valid = false;
    EXPECT_FLOAT_EQ(recommend(r, false).gate.thresholdDb, -37.0f);
}

// The limiter's ceiling follows the clipping verdict the user reads: a
// Warning lowers it by a decibel.
TEST(RecommendedSettings, LimiterCeilingFollowsTheClippingVerdict) {
    EffectPreset p = recommend(diagnosed(-30.0f), false);
    EXPECT_TRUE(p.comp.enabled);
    EXPECT_TRUE(p.limiter.enabled);
    EXPECT_FLOAT_EQ(p.limiter.ceilingDb, -2.0f);

    DiagnosisResult r = diagnosed(-20.0f);
    r.items.push_back(DiagnosisItem{"clipping", kLevelCaution, "", "", "", "", 0.0f});
    EXPECT_FLOAT_EQ(recommend(r, false).limiter.ceilingDb, -2.0f);
    r.items[0].level = kLevelWarning;
    EXPECT_FLOAT_EQ(recommend(r, false).limiter.ceilingDb, -3.0f);
}

// Noise reduction follows the noise verdict the user reads, judged from the
// takes as the wizard would.
DiagnosisResult judged(float voice, float room, float roomFloor = -70.0f) {
    TakeSummaries t;
    t.normal = stats(voice);
    t.normal.activeLevelDb = voice;
    t.silence = stats(room);
    t.silence.noiseFloorMin = roomFloor;
    DiagnosisResult r = judge(t, kMicDynamic);
    r.noiseSpectrum.fill(room - 10.0f);
    return r;
}

int32_t noiseVerdict(const DiagnosisResult& r) {
    for (const DiagnosisItem& i : r.items) {
        if (i.key == "noise") {
            return i.level;
        }
    }
    return -1;
}

TEST(RecommendedSettings, NoiseReductionFollowsTheNoiseVerdict) {
    // A quiet room under a soft talker is Good: nothing to reduce, though the
    // room's profile is kept for a user who switches the reducer on.
    DiagnosisResult r = judged(-40.0f, -76.0f);
    ASSERT_EQ(noiseVerdict(r), kLevelGood);
    EffectPreset p = recommend(r, false);
    EXPECT_FALSE(p.spectral.enabled);
    EXPECT_FALSE(p.noise.enabled);
    EXPECT_EQ(p.spectral.profileDb[30], -86.0f);

    // 25 dB under the voice: audible in pauses, the spectral reducer alone.
    r = judged(-20.0f, -45.0f);
    ASSERT_EQ(noiseVerdict(r), kLevelCaution);
    p = recommend(r, false);
    EXPECT_TRUE(p.spectral.enabled);
    EXPECT_FLOAT_EQ(p.spectral.amount, 0.9f);
    EXPECT_FALSE(p.noise.enabled) << "a Caution never brings in the neural filter";

    // 12 dB under the voice, both under -42 dBFS: a Warning, and the neural
    // filter with an attenuation limit that grows as the room comes closer.
    r = judged(-44.0f, -56.0f);
    ASSERT_EQ(noiseVerdict(r), kLevelWarning);
    p = recommend(r, false);
    EXPECT_TRUE(p.spectral.enabled);
    EXPECT_FLOAT_EQ(p.spectral.amount, 0.9f);
    EXPECT_TRUE(p.noise.enabled);
    EXPECT_FLOAT_EQ(p.noise.mix, 1.0f);
    EXPECT_FLOAT_EQ(p.noise.attenLimitDb, 56.0f);
    EXPECT_NE(p.description.find("ノイズリダクションで環境ノイズを除去"), std::string::npos);

    EXPECT_FLOAT_EQ(recommend(judged(-20.0f, -30.0f), false).noise.attenLimitDb, 60.0f);
    // A loud room under a louder voice is a Warning all the same; the limit
    // stays at its 20 dB minimum.
    r = judged(-5.0f, -41.0f, -41.0f);
    ASSERT_EQ(noiseVerdict(r), kLevelWarning);
    EXPECT_FLOAT_EQ(recommend(r, false).noise.attenLimitDb, 20.0f);

    // Without both takes there is no ratio to set the neural filter from.
    r = judged(-44.0f, -56.0f);
    r.speech.valid = false;
    EXPECT_FALSE(recommend(r, false).noise.enabled);
    r = judged(-44.0f, -56.0f);
    r.silence.valid = false;
    EXPECT_FALSE(recommend(r, false).noise.enabled);
}

TEST(RecommendedSettings, SpectralReductionNeedsAHeardNoiseSpectrum) {
    DiagnosisResult r = diagnosed(-20.0f);
    r.items.push_back(DiagnosisItem{"noise", kLevelWarning, "", "", "", "", -30.0f});
    EffectPreset p = recommend(r, false); // spectrum all -96
    EXPECT_FALSE(p.spectral.enabled);
    for (float v : p.spectral.profileDb) {
        EXPECT_EQ(v, -96.0f);
    }
    EXPECT_EQ(p.description.find("ノイズリダクション"), std::string::npos);
    EXPECT_NE(p.description.find("環境ノイズをゲートでカット"), std::string::npos);

    // One band heard is enough, and the profile is the spectrum as heard. (What
    // each verdict then does is NoiseReductionFollowsTheNoiseVerdict's.)
    r.noiseSpectrum.fill(-96.0f);
    r.noiseSpectrum[20] = -70.0f;
    p = recommend(r, false);
    EXPECT_TRUE(p.spectral.enabled);
    EXPECT_EQ(p.spectral.profileDb[20], -70.0f);
    EXPECT_EQ(p.spectral.profileDb[19], -96.0f);
}

} // namespace
} // namespace Lumora
