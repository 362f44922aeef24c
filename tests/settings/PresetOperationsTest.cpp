// Preset operations as transactions on the file, the diagnosis history and the
// seeding of the built-ins.

#include "settings/BuiltInPresets.h"
#include "settings/SettingsStore.h"
#include "settings/support/FaultyFileSystem.h"
#include "settings/support/MemoryFileSystem.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lumora;
using Lumora::Testing::FaultyFileSystem;
using Lumora::Testing::MemoryFileSystem;
using Lumora::Testing::TempFolder;

namespace {

SavedEffectPreset effectPreset(const std::string& name, float threshold) {
    SavedEffectPreset p;
    p.name = name;
    p.savedAt = "stale";
    p.preset.comp.enabled = true;
    p.preset.comp.thresholdDb = threshold;
    return p;
}

DiagnosisHistoryEntry entry(int i) {
    DiagnosisHistoryEntry e;
    e.timestamp = std::to_string(i);
    return e;
}

} // namespace

TEST(BuiltInPresets, FirstLoadOfAnEmptyFolderSeedsAndWrites) {
    TempFolder dir;
    SettingsStore store(dir.path());
    const AppSettings s = store.load();
    ASSERT_EQ(s.soundFxPresets.size(), 4u);
    ASSERT_EQ(s.keyAssignPresets.size(), 1u);
    // Every arrow key plays one of the seeded voices, and the seeded set says so too.
    for (size_t i = 0; i < 4; ++i) {
        const KeyAssignment& k = s.keyAssignments.keys[i];
        EXPECT_TRUE(k.hasSoundFxPreset);
        EXPECT_EQ(k.soundFxPresetName, s.soundFxPresets[i].name);
        EXPECT_EQ(s.keyAssignPresets[0].assignments.keys[i].soundFxPresetName, k.soundFxPresetName);
    }
    EXPECT_FALSE(s.keyAssignments.defaultKey.hasSoundFxPreset);
    EXPECT_TRUE(TempFolder::exists(store.settingsPath()));
    // Seeded documents load without writing again.
    const std::string file = TempFolder::read(store.settingsPath());
    store.load();
    EXPECT_EQ(TempFolder::read(store.settingsPath()), file);
    EXPECT_FALSE(TempFolder::exists(store.backupPath()));
}

TEST(PresetOperations, SavingTwiceUnderOneNameReplacesInPlace) {
    MemoryFileSystem fs;
    SettingsStore store("/s", fs);
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("配信", -20)));
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("歌", -25)));
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("配信", -30)));
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("Talk", -10)));
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("talk", -11)));  // case matters
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("配信 ", -12))); // no trimming
    const AppSettings s = store.load();
    ASSERT_EQ(s.presets.size(), 5u);
    EXPECT_EQ(s.presets[0].name, "配信");
    EXPECT_EQ(s.presets[0].preset.comp.thresholdDb, -30.0f);
    EXPECT_EQ(s.presets[1].name, "歌");
    EXPECT_EQ(s.presets[3].name, "talk");
    EXPECT_EQ(s.presets[4].name, "配信 ");
    EXPECT_EQ(s.presets[0].savedAt.size(), 19u); // stamped now, not "stale"
    EXPECT_EQ(store.findEffectPreset("配信")->preset.comp.thresholdDb, -30.0f);
    EXPECT_FALSE(store.findEffectPreset("nothing").has_value());
}

// Every field the filter keeps beside the presets reaches the file.
TEST(PresetOperations, AppFieldsAreSavedWhole) {
    MemoryFileSystem fs;
    SettingsStore store("/s", fs);
    ASSERT_TRUE(store.saveAppFields({true, "配信", 1.5f, false}));
    const AppSettings s = store.load();
    EXPECT_TRUE(s.isRecordingMode);
    EXPECT_EQ(s.lastPresetName, "配信");
    EXPECT_EQ(s.uiScale, 1.5f);
    EXPECT_FALSE(s.showNumericValues);
}

TEST(PresetOperations, DeletingANameThatIsNotThereWritesNothing) {
    MemoryFileSystem memory;
    FaultyFileSystem fs(memory);
    SettingsStore store("/s", fs);
    ASSERT_TRUE(store.saveSoundFxPreset(SavedSoundFxPreset{"fx", "", "", {}}));
    fs.arm(FaultyFileSystem::Mode::None, -1);
    EXPECT_FALSE(store.deleteEffectPreset("fx"));
    EXPECT_FALSE(store.deleteSoundFxPreset("FX"));
    EXPECT_FALSE(store.deleteKeyAssignPreset("none"));
    EXPECT_TRUE(fs.steps.empty());
    EXPECT_TRUE(store.deleteSoundFxPreset("fx"));
    EXPECT_FALSE(store.findSoundFxPreset("fx").has_value());
}

// The user is told a save failed, and the store does not then show the
// preset as kept: what the list shows is what the file holds.
TEST(PresetOperations, AFailedSaveLosesTheChangeAndKeepsTheFile) {
    MemoryFileSystem memory;
    FaultyFileSystem fs(memory);
    SettingsStore store("/s", fs);
    ASSERT_TRUE(store.saveEffectPreset(effectPreset("kept", -20)));
    const std::optional<std::string> before = memory.readFile("/s/settings.json");
    fs.arm(FaultyFileSystem::Mode::Fail, 1); // the temporary file cannot be written
    EXPECT_FALSE(store.saveEffectPreset(effectPreset("lost", -20)));
    fs.arm(FaultyFileSystem::Mode::None, -1);
    EXPECT_EQ(memory.readFile("/s/settings.json"), before);
    EXPECT_FALSE(store.findEffectPreset("lost").has_value());
}

TEST(PresetOperations, HistoryIsNewestFirstAndHoldsTwenty) {
    MemoryFileSystem fs;
    SettingsStore store("/s", fs);
    for (int i = 1; i <= 21; ++i) {
        ASSERT_TRUE(store.addDiagnosisHistory(entry(i)));
    }
    const AppSettings s = store.load();
    ASSERT_EQ(s.diagnosisHistory.size(), 20u);
    EXPECT_EQ(s.diagnosisHistory.front().timestamp, "21");
    EXPECT_EQ(s.diagnosisHistory.back().timestamp, "2"); // the oldest was pushed out

    // Applying the diagnosed preset is recorded on its own entry only.
    ASSERT_TRUE(store.markDiagnosisApplied("20"));
    const AppSettings marked = store.load();
    EXPECT_TRUE(marked.diagnosisHistory[1].presetApplied);
    EXPECT_FALSE(marked.diagnosisHistory[0].presetApplied);
    EXPECT_FALSE(store.markDiagnosisApplied("1")); // pushed out: not kept
}

TEST(PresetOperations, TwoStoresOnOneFolderSeeEachOthersSaves) {
    MemoryFileSystem fs;
    SettingsStore a("/s", fs);
    SettingsStore b("/s", fs);
    ASSERT_TRUE(a.saveEffectPreset(effectPreset("from a", -20)));
    ASSERT_TRUE(b.saveEffectPreset(effectPreset("from b", -20)));
    EXPECT_EQ(a.load().presets.size(), 2u);
}
