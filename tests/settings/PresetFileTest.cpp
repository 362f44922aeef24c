// The single-preset text used by the filter's procedures and the tools. (The
// export format is tested where it is met: lumora-cli presets export/import and
// the presets pages.)

#include "settings/PresetFile.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lumora;

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
