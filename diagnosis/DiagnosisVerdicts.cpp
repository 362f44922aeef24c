#include "diagnosis/DiagnosisVerdicts.h"

#include "diagnosis/SpeechReference.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace Lumora {

namespace {

DiagnosisItem makeItem(const char* key, int32_t level, float value, const char* titleJa,
                       const char* adviceJa, const char* titleEn, const char* adviceEn) {
    DiagnosisItem item;
    item.key = key;
    item.level = level;
    item.value = value;
    item.titleJa = titleJa ? titleJa : "";
    item.adviceJa = adviceJa ? adviceJa : "";
    item.titleEn = titleEn ? titleEn : item.titleJa;
    item.adviceEn = adviceEn ? adviceEn : item.adviceJa;
    return item;
}

// The plosive take counts too: a "pa" that drives the input into clipping is
// the loudest thing a streamer says, and it clips on air just the same.
DiagnosisItem judgeClipping(const StepStats& normal, const StepStats& loud,
                            const StepStats& plosive) {
    const float peak = std::max({normal.peak95, loud.peak95, plosive.peak95});
    if (normal.clipped || loud.clipped || plosive.clipped) {
        return makeItem("clipping", kLevelWarning, peak, "音が割れてるかも",
                        "ゲインを少し下げてみて！", "Sounds like it's clipping!",
                        "Try lowering the gain a bit.");
    }
    if (peak > -1.0f) {
        return makeItem("clipping", kLevelWarning, peak, "音が割れそうかも",
                        "ゲインを少し下げると安心！", "Getting very close to clipping!",
                        "A little less gain would help.");
    }
    if (peak > -3.0f) {
        return makeItem("clipping", kLevelCaution, peak, "ピークが高めかも",
                        "余裕を持たせると安心！", "Peak level is a bit high",
                        "Leave some headroom to be safe!");
    }
    return makeItem("clipping", kLevelGood, peak, "クリップはないよ！", "", "No clipping — nice!",
                    "");
}

DiagnosisItem judgeVolume(const StepStats& normal) {
    const float level = normal.level;
    if (!normal.valid) {
        return makeItem("volume", kLevelCaution, -96.0f, "音が取れなかったかも",
                        "もう一度試してみて！", "Couldn't capture audio", "Please try again!");
    }
    if (level > -6.0f) {
        return makeItem(
            "volume", kLevelWarning, level,
            "入力レベルが大きすぎます。OBSのマイク音量を下げるかマイクを少し遠ざけてください。",
            "割れ（クリップ）が起きると音が歪んで聴けなくなります",
            "Input is too loud. Lower the mic volume in OBS or move the mic back a bit.",
            "Clipping causes audio distortion and makes you sound bad.");
    }
    if (level > -12.0f) {
        return makeItem("volume", kLevelCaution, level, "ちょっと大きいかも？",
                        "音量を少し下げると安心！", "A bit loud?",
                        "Try turning it down just a touch!");
    }
    if (level >= -38.0f) {
        return makeItem("volume", kLevelGood, level, "いい感じ！音量バッチリ", "",
                        "Sounds great! Volume is spot on.", "");
    }
    if (level >= -45.0f) {
        return makeItem("volume", kLevelCaution, level, "ちょっと小さいかも？",
                        "マイクに少し近づいてみて！", "A bit quiet?",
                        "Try moving a little closer to the mic!");
    }
    return makeItem(
        "volume", kLevelWarning, level,
        "入力レベルが小さすぎます。OBSのマイク音量を上げるか、マイクのゲインを上げてください。",
        "目標は話しているとき -24〜-12 "
        "dBFS。コンデンサーマイクをお使いの場合、マイク本体の「PAD」スイッチがONになっていませんか"
        "？",
        "Input is too quiet. Raise the mic volume in OBS or increase the mic gain.",
        "Target: -24 to -12 dBFS when speaking. If using a condenser mic, check if the PAD switch "
        "is on.");
}

// How far the room sits under the voice decides what a listener hears: once
// the chain brings speech to about -25 dBFS, a room 35 dB under the voice is
// at -60 dBFS, inaudible; 20 dB under, it is plain in every pause; closer than
// that it competes with the words. The absolute levels alone cannot say this:
// a fan 12 dB under a loud voice can sit under -42 dBFS, and the minimum
// block level of fluctuating noise reads about 10 dB under its RMS.
constexpr float kQuietRoomDb = 35.0f; // voice over the room at or above: Good
constexpr float kNoisyRoomDb = 20.0f; // voice over the room below: Warning

DiagnosisItem judgeNoise(const StepStats& silence, const StepStats& normal) {
    if (!silence.valid) {
        return makeItem("noise", kLevelCaution, -96.0f, "無音が取れなかったかも",
                        "もう一度静かに試してみて！", "Couldn't capture silence",
                        "Try again in a quiet moment!");
    }
    const float level = silence.level;
    const float floor = silence.noiseFloorMin;
    const bool loudRoom = floor > -42.0f && level > -42.0f;
    // The voice is its level while it speaks: a take's median also counts the
    // pauses, and a slow talker's median sits 10 to 15 dB under the words,
    // which would read a fan 30 dB under the voice as one 20 dB under. Without
    // a speech take only the room's own level can speak.
    const bool voiced = normal.valid && normal.activeLevelDb > -96.0f;
    const float under = normal.activeLevelDb - level;
    const bool quiet = voiced ? under >= kQuietRoomDb : floor <= -55.0f && level <= -55.0f;
    const bool noisy = loudRoom || (voiced && under < kNoisyRoomDb);
    if (noisy) {
        // The gap after "？" is an ideographic space (U+3000).
        return makeItem("noise", kLevelWarning, level,
                        "バックグラウンドノイズが多いです。エアコン・PC・換気扇など近くにある？"
                        "\u3000静かな環境で録音しましょう。",
                        "ノイズゲートで自動的に無音時をカットできます",
                        "Lots of background noise. AC, PC fan, or ventilation nearby? Try a "
                        "quieter space.",
                        "A noise gate can automatically cut silence between sentences.");
    }
    if (quiet) {
        return makeItem("noise", kLevelGood, level, "ノイズは少ないよ！", "", "Nice and quiet!",
                        "");
    }
    return makeItem("noise", kLevelCaution, level, "少しノイズがあるかも",
                    "エアコンや PC ファンが近いかも！", "A little background noise detected",
                    "Could be an AC or PC fan nearby!");
}

struct DistanceAdvice {
    const char* closeJa;
    const char* closeEn;
    const char* farJa;
    const char* farEn;
    const char* goodJa;
    const char* goodEn;
};

DistanceAdvice distanceAdvice(int32_t micType) {
    switch (micType) {
    case kMicDynamic:
        return {"ダイナミックマイクの配信向け目安は口から5〜15cm",
                "For dynamic mics, aim for 5–15 cm from your mouth",
                "ダイナミックマイクは近めが基本！拳1個分（約10cm）を目安に",
                "Dynamic mics work best up close — aim for about 10 cm (a fist away)",
                "ダイナミックマイクとして理想的な距離感！",
                "Great positioning for a dynamic mic!"};
    case kMicCondenser:
        return {"コンデンサーマイクは感度が高いので10〜20cmが配信向けの目安",
                "Condenser mics are sensitive — aim for 10–20 cm for streaming",
                "コンデンサーマイクでも配信なら20cm以内が目安！",
                "Even for streaming, keep it within 20 cm!",
                "コンデンサーマイクとして良い距離感！",
                "Great positioning for a condenser mic!"};
    case kMicUsb:
        return {"USBマイクの目安は15〜25cm（手を伸ばした先くらい）",
                "For USB mics, try 15–25 cm (about arm's reach)",
                "USBマイクは机に置く場合でも20〜30cm以内が理想！",
                "Even on a desk, try to keep it within 20–30 cm!",
                "USBマイクとして良い距離感！",
                "Great positioning for a USB mic!"};
    default:
        return {"マイクを少し離してみて！",
                "Try moving the mic back a bit!",
                "マイクをもう少し近づけてみて！",
                "Try moving the mic a bit closer!",
                "",
                ""};
    }
}

// The voice's own low-to-mid balance over active speech, with the room's share
// of each band taken out (power subtraction, never more than 90 % of a band:
// a band the room fills entirely says nothing about the voice).
float speechBalanceDb(const StepStats& normal, const StepStats& silence) {
    auto power = [](float db) { return std::pow(10.0, static_cast<double>(db) / 10.0); };
    double low = power(normal.activeLowDb);
    double mid = power(normal.activeMidDb);
    if (silence.valid) {
        low = std::max(low - power(silence.activeLowDb), 0.1 * low);
        mid = std::max(mid - power(silence.activeMidDb), 0.1 * mid);
    }
    return static_cast<float>(10.0 * std::log10(low / mid));
}

// A thin voice alone is no proof of a far mic: real voices and their mics
// spread about 12 dB in low-to-mid balance (from -9 to +3.5 dB around the
// average voice at the recommended distance, on the recordings we measured),
// more than a well-placed mic and one at arm's length differ by. What a far mic
// cannot hide is the room: its word endings fall slowly. So the far side of the
// balance counts only as far as the room confirms it: none of it while the
// quickest endings fall within 45 ms (20 to 42 ms for every voice with no room
// tail, at any distance, on most stretches of speech; 40 to 60 ms at a
// dynamic's 8 cm in an ordinary room),
// all of it from 65 ms (70 to 145 ms for every voice at 80 cm in a room of RT60
// 0.45 s). A thin voice well placed in a live room still reads a touch far:
// there the room is heard, and nothing tells its thinness from distance. When
// the room's noise hides the endings, the far side counts for nothing: telling
// a well-placed streamer to move is worse than saying nothing. The close side
// needs no such proof.
float farConfirmed(float wordEndFallMs) {
    constexpr float kDryMs = 45.0f;
    constexpr float kLiveMs = 65.0f;
    return std::clamp((wordEndFallMs - kDryMs) / (kLiveMs - kDryMs), 0.0f, 1.0f);
}

DiagnosisItem judgeDistance(const StepStats& normal, const StepStats& silence, int32_t micType,
                            float wordEndFallMs) {
    if (!normal.valid || !(normal.activeMidDb > -96.0f)) {
        return makeItem("distance", kLevelCaution, 0.0f, "距離が判定できなかったかも", "",
                        "Couldn't determine mic distance", "");
    }
    // A close cardioid lifts the voice's lows (the proximity effect). The value
    // is how much more (or less) low end the voice has than the average voice
    // would through this mic type at the distance its advice recommends, so 0
    // is "as recommended" on every mic; the far side counts as far as the room
    // confirms it (farConfirmed).
    const DistanceAdvice a = distanceAdvice(micType);
    const float balance =
        speechBalanceDb(normal, silence) -
        static_cast<float>(speechReferenceBalanceDb(recommendedMicDistanceM(micType)));
    const float confirmed = farConfirmed(wordEndFallMs);
    const float d = balance >= 0.0f ? balance : confirmed > 0.0f ? balance * confirmed : 0.0f;
    if (d > 10.0f) {
        return makeItem(
            "distance", kLevelWarning, d,
            "マイクが近すぎるかも！「パ行」の息がマイクに当たっているかもしれません。", a.closeJa,
            "Mic seems too close! Breath from P and B sounds might be hitting it.", a.closeEn);
    }
    if (d > 4.0f) {
        return makeItem("distance", kLevelCaution, d, "ちょっと近いかも？", a.closeJa,
                        "Maybe a touch too close?", a.closeEn);
    }
    if (d < -10.0f) {
        return makeItem("distance", kLevelWarning, d,
                        "マイクが遠すぎるかも！声が届きにくくなっています。", a.farJa,
                        "Mic seems too far! Your voice isn't coming through clearly.", a.farEn);
    }
    if (d < -4.0f) {
        return makeItem("distance", kLevelCaution, d, "ちょっと遠いかも？", a.farJa,
                        "Maybe a bit too far?", a.farEn);
    }
    return makeItem("distance", kLevelGood, d, "距離はいい感じ！", a.goodJa,
                    "Distance looks great!", a.goodEn);
}

DiagnosisItem judgeDynamics(const StepStats& loud, const StepStats& soft) {
    if (!loud.valid || !soft.valid) {
        return makeItem("dynamics", kLevelCaution, 0.0f, "強弱が判定できなかったかも", "",
                        "Couldn't measure dynamics", "");
    }
    const float range = loud.level - soft.level;
    char adviceJa[128];
    char adviceEn[128];
    std::snprintf(adviceJa, sizeof adviceJa,
                  "大きい声: %.0f dBFS / 小さい声: %.0f dBFS / 差: %.0f dB",
                  static_cast<double>(loud.level), static_cast<double>(soft.level),
                  static_cast<double>(range));
    std::snprintf(adviceEn, sizeof adviceEn, "Loud: %.0f dBFS / Soft: %.0f dBFS / Range: %.0f dB",
                  static_cast<double>(loud.level), static_cast<double>(soft.level),
                  static_cast<double>(range));
    if (range < 2.0f) {
        return makeItem("dynamics", kLevelWarning, range,
                        "声の強弱がほとんどありません。コンプレッサーで小さい声も聴き取りやすくで"
                        "きますよ。",
                        adviceJa,
                        "Almost no volume variation. A compressor can make your quieter moments "
                        "easier to hear.",
                        adviceEn);
    }
    if (range < 5.0f) {
        return makeItem("dynamics", kLevelCaution, range, "少し強弱が少ないかも", adviceJa,
                        "Volume variation is a bit flat", adviceEn);
    }
    if (range > 30.0f) {
        return makeItem("dynamics", kLevelCaution, range, "強弱が大きめかも", adviceJa,
                        "Volume variation is quite wide", adviceEn);
    }
    return makeItem("dynamics", kLevelGood, range, "声の強弱がいい感じ！", adviceJa,
                    "Volume dynamics sound great!", adviceEn);
}

DiagnosisItem judgePop(const StepStats& plosive, const StepStats& normal) {
    if (!plosive.valid || !normal.valid) {
        return makeItem("pop", kLevelCaution, 0.0f, "ポップノイズが判定できなかったかも", "",
                        "Couldn't detect pop noise", "");
    }
    // A pop is a burst of low-frequency pressure, not a louder peak: speech
    // already peaks near its clipping point, so peaks cannot differ by 12 dB.
    // The loudest 10 ms below 100 Hz of the "pa" take against that of normal
    // speech does.
    const float p = plosive.lowBurstMax - normal.lowBurstMax;
    if (p > 20.0f) {
        return makeItem("pop", kLevelWarning, p,
                        "ポップノイズ（吹かれ）が強いです！マイクの正面ではなく少し横から話すか、"
                        "ポップガードを使いましょう。",
                        "「ぱ・ば・ぴ・び・ぷ・ぶ」などが原因になりやすい",
                        "Strong plosive wind noise! Try speaking slightly off-axis or use a pop "
                        "filter.",
                        "P, B, and other plosive sounds are common culprits.");
    }
    if (p > 12.0f) {
        return makeItem("pop", kLevelCaution, p, "ポップノイズがあるかも",
                        "マイクを少し横に向けてみて！", "Some pop noise detected",
                        "Try angling the mic slightly to the side!");
    }
    return makeItem("pop", kLevelGood, p, "ポップノイズは大丈夫！", "", "No pop noise issues!", "");
}

} // namespace

std::vector<DiagnosisItem> judgeItems(const TakeSummaries& takes, int32_t micType) {
    std::vector<DiagnosisItem> items;
    items.reserve(6);
    items.push_back(judgeClipping(takes.normal, takes.loud, takes.plosive));
    items.push_back(judgeVolume(takes.normal));
    items.push_back(judgeNoise(takes.silence, takes.normal));
    items.push_back(judgeDistance(takes.normal, takes.silence, micType, takes.wordEndFallMs));
    items.push_back(judgeDynamics(takes.loud, takes.soft));
    items.push_back(judgePop(takes.plosive, takes.normal));
    return items;
}

int32_t overallLevel(const std::vector<DiagnosisItem>& items) {
    int32_t overall = kLevelGood;
    for (const DiagnosisItem& item : items) {
        overall = std::max(overall, item.level);
    }
    return overall;
}

DiagnosisResult judge(const TakeSummaries& takes, int32_t micType) {
    DiagnosisResult result;
    result.micType = micType;
    result.items = judgeItems(takes, micType);
    result.overall = overallLevel(result.items);
    const auto warnings = std::count_if(result.items.begin(), result.items.end(),
                                        [](const DiagnosisItem& i) { return i.level == 2; });
    switch (result.overall) {
    case kLevelGood:
        result.summaryJa = "いい感じ！このまま使えるよ！";
        result.summaryEn = "Sounds great! You're all set!";
        break;
    case kLevelCaution:
        result.summaryJa = "ちょっと気になるところがあるかも！";
        result.summaryEn = "A few small things to look at!";
        break;
    case kLevelWarning:
        if (warnings < 2) {
            result.summaryJa = "1 つ気になるところがあるかも！";
            result.summaryEn = "One thing to keep an eye on!";
        } else {
            result.summaryJa = "いくつか調整してみると良くなるかも！";
            result.summaryEn = "A few adjustments could really help!";
        }
        break;
    default:
        result.summaryJa = "診断が終わったよ！";
        result.summaryEn = "Diagnosis complete!";
        break;
    }
    result.valid = 1;
    result.speech = takes.normal;
    result.silence = takes.silence;
    result.soft = takes.soft;
    return result;
}

std::string statusLabel(int32_t level, const std::string& language) {
    const bool ja = language == "ja";
    switch (level) {
    case kLevelGood:
        return ja ? "✅ 良好" : "✅ Good";
    case kLevelCaution:
        return ja ? "⚠️ 注意" : "⚠️ Caution";
    case kLevelWarning:
        return ja ? "❌ 警告" : "❌ Warning";
    default:
        return "—";
    }
}

const std::string& summaryText(const DiagnosisResult& result, const std::string& language) {
    return language == "ja" ? result.summaryJa : result.summaryEn;
}

} // namespace Lumora
