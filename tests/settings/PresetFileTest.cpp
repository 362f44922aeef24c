// Presets outside the settings folder: the export format and the single-preset
// text used by the filter's procedures and the tools.

#include "settings/PresetFile.h"
#include "settings/JsonText.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lumora;

TEST(PresetFile, BundleRoundTripsBothKinds) {
    PresetBundle bundle;
    SavedEffectPreset e;
    e.name = "配信";
    e.preset.spectral.profileDb[10] = -40.5f;
    e.preset.eq.highCutEnabled = true;
    bundle.effectPresets.push_back(e);
    SavedSoundFxPreset f;
    f.name = "ロボ";
    f.preset.radio.enabled = true;
    bundle.soundFxPresets.push_back(f);
    const std::string text = renderPresetBundle(bundle);
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(text.find("#LMSUM"), std::string::npos);

    PresetBundle back;
    std::string error;
    ASSERT_TRUE(parsePresetBundle(text, back, error)) << error;
    ASSERT_EQ(back.effectPresets.size(), 1u);
    ASSERT_EQ(back.soundFxPresets.size(), 1u);
    EXPECT_EQ(back.effectPresets[0].preset.spectral.profileDb[10], -40.5f);
    EXPECT_TRUE(back.effectPresets[0].preset.eq.highCutEnabled);
    EXPECT_TRUE(back.soundFxPresets[0].preset.radio.enabled);
}

TEST(PresetFile, ReadsSettingsFilesAndSinglePresetsAndRefusesTheRest) {
    AppSettings s;
    s.presets.resize(2);
    s.soundFxPresets.resize(1);
    PresetBundle b;
    std::string error;
    ASSERT_TRUE(parsePresetBundle(SettingsStore::addChecksum(renderJson(toJson(s))), b, error));
    EXPECT_EQ(b.effectPresets.size(), 2u);
    EXPECT_EQ(b.soundFxPresets.size(), 1u);

    EXPECT_FALSE(parsePresetBundle("#LMSUM:00000000\n{}", b, error));
    EXPECT_EQ(error, "checksum mismatch");
    EXPECT_FALSE(parsePresetBundle("{\"version\": 3, \"soundFxPresets\": []}", b, error));
    EXPECT_EQ(error, "written by a newer version");
    EXPECT_FALSE(parsePresetBundle("", b, error));
    EXPECT_EQ(error, "not valid JSON");

    ASSERT_TRUE(
        parsePresetBundle("{\"name\": \"e\", \"eq\": {}, \"comp\": {\"ratio\": 99}}", b, error));
    ASSERT_EQ(b.effectPresets.size(), 1u);
    EXPECT_EQ(b.effectPresets[0].preset.comp.ratio, 6.0f);
    EXPECT_TRUE(b.soundFxPresets.empty());
}

TEST(PresetFile, SinglePresetText) {
    SavedEffectPreset e;
    e.name = "配信";
    e.preset.comp.kneeDb = 3.0f;
    SavedEffectPreset back;
    ASSERT_TRUE(parseEffectPresetText(effectPresetText(e), back));
    EXPECT_EQ(back.name, "配信");
    EXPECT_EQ(back.preset.comp.kneeDb, 3.0f);
    EXPECT_EQ(effectPresetText(e).rfind("{\n  \"comp\": {", 0), 0u);

    SavedSoundFxPreset f;
    f.preset.mod.type = 1;
    SavedSoundFxPreset fxBack;
    ASSERT_TRUE(parseSoundFxPresetText(soundFxPresetText(f), fxBack));
    EXPECT_EQ(fxBack.preset.mod.type, 1);

    back.name = "untouched";
    EXPECT_FALSE(parseEffectPresetText("[]", back));
    EXPECT_FALSE(parseEffectPresetText("{", back));
    EXPECT_EQ(back.name, "untouched");
}
