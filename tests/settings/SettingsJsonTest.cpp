// The settings document: every record survives the trip through the file's text,
// and damaged or foreign documents read as the rules say.

#include "settings/SettingsJson.h"
#include "settings/JsonText.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lumora;

namespace {

JsonValue parse(const std::string& text) {
    const JsonParseResult r = parseJson(text);
    EXPECT_TRUE(r.ok) << text;
    return r.value;
}

AppSettings read(const std::string& text) {
    std::optional<AppSettings> s = fromJson(parse(text));
    EXPECT_TRUE(s.has_value());
    return s ? *s : AppSettings{};
}

// Through text and back, as the store does it.
AppSettings throughFile(const AppSettings& s) {
    return *fromJson(parse(renderJson(toJson(s))));
}

SavedEffectPreset effectFromText(const std::string& objectText) {
    return effectPresetFromJson(parse(objectText));
}

// A record with every persisted field away from its default. Values are exact in
// six digits so the round trip can compare floats exactly.
SavedEffectPreset sampleEffectPreset() {
    SavedEffectPreset s;
    s.name = "配信用 \"声\"";
    s.description = "tab\there, line\nthere";
    s.savedAt = "2024-05-06 07:08:09";
    s.recording = true;
    EffectPreset& p = s.preset;
    p.eq = {true, true, 120.5f, true, 6500.0f, -2.5f, {}, true, 12000.0f, 1.25f};
    for (int i = 0; i < kNotchBandCount; ++i) {
        p.eq.notchBands[static_cast<size_t>(i)] = {i % 2 == 0, 250.0f * static_cast<float>(i + 1),
                                                   -1.5f * static_cast<float>(i),
                                                   0.5f + static_cast<float>(i)};
    }
    p.comp = {true, -30.0f, 4.5f, 6.0f, 20.0f, 300.0f, 12.0f};
    p.limiter = {true, -1.5f, 150.0f};
    p.gate = {true, -60.0f, 2.0f, 250.0f, 400.0f, -40.0f};
    p.noise = {true, 35.0f, 0.625f};
    p.spectral.enabled = true;
    p.spectral.amount = 0.5f;
    for (int i = 0; i < kProfileBandCount; ++i) {
        p.spectral.profileDb[static_cast<size_t>(i)] = -90.0f + 0.5f * static_cast<float>(i);
    }
    p.inputGainDb = 6.5f;
    p.outputGainDb = -3.0f;
    return s;
}

SavedSoundFxPreset sampleSoundFxPreset() {
    SavedSoundFxPreset s;
    s.name = "ロボ";
    s.description = "d";
    s.savedAt = "2024-05-06 07:08:10";
    SoundFxPreset& p = s.preset;
    p.pitch = {true, 4.5f, 0.25f, 0.75f, true, -3.5f, -0.125f, 0.375f, true, {}};
    for (int i = 0; i < kFormantBandCount; ++i) {
        p.pitch.formantBands[static_cast<size_t>(i)] = {300.0f * static_cast<float>(i + 1),
                                                        static_cast<float>(i) - 2.0f, 1.5f};
    }
    p.reverb = {true, 0.75f, 0.25f, 0.125f, 325.0f, 0.5f};
    p.delay = {true, 180.0f, 0.5f, 0.25f};
    p.radio = {true, 233.0f, 8000.0f, 0.0625f};
    p.mod = {true, 2, 3.5f, 0.75f, 0.25f, 0.875f};
    p.effectOrder = {4, 3, 2, 1, 0};
    return s;
}

KeyAssignmentSet sampleKeys() {
    KeyAssignmentSet set;
    set.keys[0] = {KeyMode::Momentary, true, false, "配信用", "", "歌枠"};
    set.keys[1] = {KeyMode::Toggle, false, true, "", "ロボ", ""};
    set.keys[3] = {KeyMode::Momentary, true, true, "a", "b", "c"};
    set.defaultKey = {KeyMode::Toggle, true, false, "base", "", ""};
    return set;
}

// Each entry with another microphone, so that every name the file uses for one
// is written and read back.
DiagnosisHistoryEntry sampleHistory(int i) {
    DiagnosisHistoryEntry e;
    e.timestamp = "2024-05-06 07:08:" + std::to_string(10 + i);
    e.presetApplied = i % 2 == 0;
    e.result.overall = kLevelWarning;
    e.result.micType = i == 0 ? kMicDynamic : i == 1 ? kMicCondenser : kMicUsb;
    e.result.summaryJa = "いくつか調整してみると良くなるかも！";
    e.result.items.push_back({"volume", kLevelCaution, "ちょっと大きいかも？",
                              "音量を少し下げると安心！", "", "", -9.5f});
    e.result.items.push_back({"noise", kLevelGood, "ノイズは少ないよ！", "", "", "", -60.0f});
    return e;
}

} // namespace

// The comparison of the written texts proves every field the writer writes is
// read back; the field checks below catch a field that is never written at all.
TEST(SettingsRecords, WholeDocumentRoundTrips) {
    AppSettings s;
    s.isRecordingMode = true;
    s.lastPresetName = "配信用 \"声\"";
    s.uiScale = 1.25f;
    s.showNumericValues = false;
    s.presets = {sampleEffectPreset(), SavedEffectPreset{}};
    s.soundFxPresets = {sampleSoundFxPreset()};
    s.keyAssignments = sampleKeys();
    s.keyAssignPresets = {{"set", "2024-01-01 00:00:00", sampleKeys()}};
    s.diagnosisHistory = {sampleHistory(0), sampleHistory(1), sampleHistory(2)};
    const AppSettings back = throughFile(s);
    EXPECT_EQ(renderJson(toJson(back)), renderJson(toJson(s)));
    EXPECT_EQ(back.version, 2);
    EXPECT_EQ(back.lastPresetName, s.lastPresetName);
    EXPECT_EQ(back.uiScale, 1.25f);
    EXPECT_EQ(back.keyAssignments.keys[0].mode, KeyMode::Momentary);
    EXPECT_EQ(back.keyAssignments.keys[0].keyName, "歌枠");
    EXPECT_EQ(back.keyAssignPresets[0].assignments.defaultKey.effectPresetName, "base");

    // The whole cleaning chain: what no knob sets (a knob's value surviving the
    // file is each knob's own check in EffectPanelTest) too.
    const SavedEffectPreset& effect = back.presets[0];
    EXPECT_EQ(effect.name, s.presets[0].name);
    EXPECT_EQ(effect.description, s.presets[0].description);
    EXPECT_TRUE(effect.recording);
    EXPECT_EQ(effect.preset.spectral.profileDb[63], -58.5f);
    EXPECT_EQ(effect.preset.inputGainDb, 6.5f);
    EXPECT_EQ(effect.preset.outputGainDb, -3.0f);
    EXPECT_FALSE(effect.preset.active); // never persisted: the record's own flags
    EXPECT_FALSE(effect.preset.bypass);
    const SoundFxPreset& fx = back.soundFxPresets[0].preset;
    EXPECT_EQ(fx.pitch.formantBands[4].hz, 1500.0f);
    EXPECT_EQ(fx.mod.type, 2);
    EXPECT_EQ(fx.effectOrder, (std::array<int32_t, 5>{4, 3, 2, 1, 0}));

    ASSERT_EQ(back.diagnosisHistory.size(), 3u);
    EXPECT_EQ(back.diagnosisHistory[0].result.micType, kMicDynamic);
    EXPECT_EQ(back.diagnosisHistory[2].result.micType, kMicUsb);
    const DiagnosisResult& r = back.diagnosisHistory[1].result;
    EXPECT_EQ(back.diagnosisHistory[1].timestamp, s.diagnosisHistory[1].timestamp);
    EXPECT_FALSE(back.diagnosisHistory[1].presetApplied);
    EXPECT_EQ(r.overall, kLevelWarning);
    EXPECT_EQ(r.micType, kMicCondenser);
    EXPECT_EQ(r.valid, 1); // a stored result is a finished one
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[0].key, "volume");
    EXPECT_EQ(r.items[0].level, kLevelCaution);
    EXPECT_EQ(r.items[0].titleJa, "ちょっと大きいかも？");
    EXPECT_EQ(r.items[0].adviceJa, "音量を少し下げると安心！");
    EXPECT_EQ(r.items[0].value, -9.5f);
    // One language is stored; the English fields fall back to it.
    EXPECT_EQ(r.items[0].titleEn, r.items[0].titleJa);
    EXPECT_EQ(r.summaryEn, r.summaryJa);
}

TEST(SettingsDocument, VersionOneDropsEffectPresetsOnly) {
    const AppSettings s = read(R"({"presets": [{"name": "old"}],
        "soundFxPresets": [{"name": "fx1"}, {"name": "fx2"}],
        "keyAssignments": {"keys": [{"keyName": "k"}]},
        "diagnosisHistory": [{"timestamp": "t"}]})");
    EXPECT_TRUE(s.presets.empty());
    ASSERT_EQ(s.soundFxPresets.size(), 2u);
    EXPECT_EQ(s.soundFxPresets[1].name, "fx2");
    EXPECT_EQ(s.keyAssignments.keys[0].keyName, "k");
    EXPECT_EQ(s.diagnosisHistory.size(), 1u);
    EXPECT_TRUE(read(R"({"version": 1, "presets": [{"name": "old"}]})").presets.empty());
}

TEST(SettingsDocument, NewerVersionGivesDefaults) {
    const AppSettings s = read(R"({"version": 3, "presets": [{"name": "x"}],
        "soundFxPresets": [{"name": "y"}], "settings": {"uiScale": 2}})");
    EXPECT_EQ(renderJson(toJson(s)), renderJson(toJson(AppSettings{})));
    EXPECT_TRUE(read(R"({"version": 1e300, "presets": [{"name": "x"}]})").presets.empty());
    EXPECT_EQ(read(R"({"version": 2.9, "presets": [{}]})").presets.size(), 1u); // truncated to 2
}

TEST(SettingsDocument, KeySlotsTakeAtMostFourAndKeepMissingOnesEmpty) {
    const AppSettings six = read(R"({"version": 2, "keyAssignments": {"keys": [
        {"keyName": "0"}, {"keyName": "1"}, {"keyName": "2"}, {"keyName": "3"},
        {"keyName": "4"}, {"keyName": "5"}]}})");
    EXPECT_EQ(six.keyAssignments.keys[3].keyName, "3");
    const AppSettings two = read(R"({"keyAssignments": {"keys": [
        {"keyName": "0", "mode": "Momentary", "hasEffectPreset": true},
        {"keyName": "1", "mode": "momentary"}], "defaultKey": {"keyName": "d"}}})");
    EXPECT_EQ(two.keyAssignments.keys[0].mode, KeyMode::Momentary);
    EXPECT_TRUE(two.keyAssignments.keys[0].hasEffectPreset);
    EXPECT_EQ(two.keyAssignments.keys[1].mode, KeyMode::Toggle); // exact, case-sensitive
    EXPECT_EQ(two.keyAssignments.keys[2].keyName, "");
    EXPECT_EQ(two.keyAssignments.keys[3].keyName, "");
    EXPECT_EQ(two.keyAssignments.defaultKey.keyName, "d");
    const AppSettings presets = read(R"({"keyAssignPresets": [{"name": "p", "savedAt": "s",
        "assignments": {"keys": [{}, {"keyName": "x"}, {}, {}, {"keyName": "y"}]}}, 5]})");
    ASSERT_EQ(presets.keyAssignPresets.size(), 2u);
    EXPECT_EQ(presets.keyAssignPresets[0].assignments.keys[1].keyName, "x");
    EXPECT_EQ(presets.keyAssignPresets[1].name, "");
}

TEST(SettingsDocument, EffectOrderNeedsExactlyFiveElements) {
    const auto order = [](const std::string& list) {
        return soundFxPresetFromJson(parse("{\"effectOrder\": " + list + "}")).preset.effectOrder;
    };
    const std::array<int32_t, 5> defaults = SoundFxPreset{}.effectOrder;
    EXPECT_EQ(order("[4, 3, 2, 1]"), defaults);
    EXPECT_EQ(order("[4, 3, 2, 1, 0, 0]"), defaults);
    EXPECT_EQ(order("{}"), defaults);
    EXPECT_EQ(order("[4, 3, \"two\", 1, 0]"), (std::array<int32_t, 5>{4, 3, 2, 1, 0}));
    EXPECT_EQ(order("[3, 3, 9, -1.7, null]"), (std::array<int32_t, 5>{3, 3, 9, -1, 4}));
    EXPECT_EQ(order("[1e300, -1e300, 0, 0, 0]"),
              (std::array<int32_t, 5>{INT32_MAX, INT32_MIN, 0, 0, 0}));
}

TEST(SettingsDocument, EffectPresetGroupsAreClampedOnReading) {
    const SavedEffectPreset p = effectFromText(R"({
        "eq": {"lowCutHz": 10, "highShelfHz": 9000, "highShelfGainDb": -7,
               "highCutHz": 50000, "highCutQ": 0.01},
        "comp": {"thresholdDb": 0, "ratio": 20, "attackMs": 0, "releaseMs": 9999,
                 "makeupGainDb": -3, "kneeDb": 40},
        "limiter": {"ceilingDb": -12, "releaseMs": 1},
        "gate": {"thresholdDb": -200, "attackMs": 51, "holdMs": 1, "releaseMs": 2000, "rangeDb": 0},
        "noise": {"attenLimitDb": 500, "mix": 2},
        "spectral": {"amount": -1, "profileDb": [12, -200]},
        "inputGainDb": 100, "outputGainDb": -1e999})");
    const EffectPreset& e = p.preset;
    EXPECT_EQ(e.eq.lowCutHz, 60.0f);
    EXPECT_EQ(e.eq.highShelfHz, 8000.0f);
    EXPECT_EQ(e.eq.highShelfGainDb, -3.0f);
    EXPECT_EQ(e.eq.highCutHz, 20000.0f);
    EXPECT_EQ(e.eq.highCutQ, 0.3f);
    EXPECT_EQ(e.comp.thresholdDb, -6.0f);
    EXPECT_EQ(e.comp.ratio, 6.0f);
    EXPECT_EQ(e.comp.attackMs, 1.0f);
    EXPECT_EQ(e.comp.releaseMs, 500.0f);
    EXPECT_EQ(e.comp.makeupGainDb, 0.0f);
    EXPECT_EQ(e.comp.kneeDb, 12.0f);
    EXPECT_EQ(e.limiter.ceilingDb, -6.0f);
    EXPECT_EQ(e.limiter.releaseMs, 20.0f);
    EXPECT_EQ(e.gate.thresholdDb, -80.0f);
    EXPECT_EQ(e.gate.attackMs, 50.0f);
    EXPECT_EQ(e.gate.holdMs, 10.0f);
    EXPECT_EQ(e.gate.releaseMs, 1000.0f);
    EXPECT_EQ(e.gate.rangeDb, -10.0f);
    EXPECT_EQ(e.noise.attenLimitDb, 100.0f);
    EXPECT_EQ(e.noise.mix, 1.0f);
    EXPECT_EQ(e.spectral.amount, 0.0f);
    EXPECT_EQ(e.spectral.profileDb[0], 0.0f);
    EXPECT_EQ(e.spectral.profileDb[1], -96.0f);
    EXPECT_EQ(e.inputGainDb, 30.0f);
    EXPECT_EQ(e.outputGainDb, -30.0f);
}

TEST(SettingsDocument, WrongTypesMissingKeysAndUnknownNamesTakeDefaults) {
    const SavedEffectPreset p = effectFromText(R"({"name": 5, "recording": 1,
        "eq": {"enabled": 1, "lowCutEnabled": "true", "lowCutHz": "100",
               "notchBands": [{"enabled": true, "centerHz": 50000, "q": 0}, 3]},
        "comp": [], "gate": {"enabled": true}})");
    const EffectPreset d;
    EXPECT_EQ(p.name, "");
    EXPECT_FALSE(p.recording);
    EXPECT_FALSE(p.preset.eq.enabled); // a number 1 is not a bool
    EXPECT_FALSE(p.preset.eq.lowCutEnabled);
    EXPECT_EQ(p.preset.eq.lowCutHz, 80.0f);
    EXPECT_TRUE(p.preset.eq.notchBands[0].enabled);
    EXPECT_EQ(p.preset.eq.notchBands[0].centerHz, 50000.0f); // bands are not clamped
    EXPECT_EQ(p.preset.eq.notchBands[0].q, 0.0f);
    EXPECT_EQ(p.preset.eq.notchBands[0].gainDb, 0.0f);
    EXPECT_EQ(p.preset.eq.notchBands[1].centerHz, 1000.0f);
    EXPECT_EQ(p.preset.comp.thresholdDb, d.comp.thresholdDb);
    EXPECT_TRUE(p.preset.gate.enabled);
    EXPECT_EQ(p.preset.gate.holdMs, d.gate.holdMs);

    // Enumerations are exact, case-sensitive strings.
    const DiagnosisResult r = diagnosisResultFromJson(parse(R"({"overall": "warning",
        "micType": "usb", "items": [{"status": 2}, {}]})"));
    EXPECT_EQ(r.overall, kLevelGood);
    EXPECT_EQ(r.micType, kMicUnknown);
    ASSERT_EQ(r.items.size(), 2u);
    EXPECT_EQ(r.items[0].level, kLevelGood);
    EXPECT_EQ(r.items[1].value, -96.0f);

    // A number a float cannot hold is no number.
    const AppSettings s = read(R"({"settings": {"uiScale": 1e999, "showNumericValues": null}})");
    EXPECT_EQ(s.uiScale, 1.0f);
    EXPECT_TRUE(s.showNumericValues);
    EXPECT_EQ(read(R"({"settings": {"uiScale": -1e39}})").uiScale, 1.0f);
    EXPECT_EQ(read(R"({"settings": {"uiScale": 3e38}})").uiScale, 3e38f);
}

TEST(SettingsDocument, OlderPitchKeysAreReadAndRewrittenUnderTheNewNames) {
    const SavedSoundFxPreset old =
        soundFxPresetFromJson(parse(R"({"pitch": {"semitones": 5, "formantShift": 0.25}})"));
    EXPECT_EQ(old.preset.pitch.semitonesA, 5.0f);
    EXPECT_EQ(old.preset.pitch.formantShiftA, 0.25f);
    const std::string written = renderJson(soundFxPresetToJson(old));
    EXPECT_NE(written.find("\"semitonesA\": 5"), std::string::npos);
    EXPECT_EQ(written.find("\"semitones\""), std::string::npos);
    // The new key wins when both are there.
    EXPECT_EQ(soundFxPresetFromJson(parse(R"({"pitch": {"semitones": 5, "semitonesA": -2}})"))
                  .preset.pitch.semitonesA,
              -2.0f);
    // Sound-effect values are not clamped; only a number a float cannot hold is dropped.
    const SavedSoundFxPreset wild = soundFxPresetFromJson(
        parse(R"({"delay": {"timeMs": 100000, "wetMix": 1e39}, "mod": {"type": 7.9}})"));
    EXPECT_EQ(wild.preset.delay.timeMs, 100000.0f);
    EXPECT_EQ(wild.preset.delay.wetMix, 0.3f);
    EXPECT_EQ(wild.preset.mod.type, 7);
}

TEST(SettingsDocument, HistoryKeepsTheFirstTwenty) {
    std::string list;
    for (int i = 0; i < 25; ++i) {
        list += (i ? "," : "") + std::string("{\"timestamp\": \"") + std::to_string(i) + "\"}";
    }
    const AppSettings s = read("{\"diagnosisHistory\": [" + list + "]}");
    ASSERT_EQ(s.diagnosisHistory.size(), 20u);
    EXPECT_EQ(s.diagnosisHistory.front().timestamp, "0");
    EXPECT_EQ(s.diagnosisHistory.back().timestamp, "19");
}
