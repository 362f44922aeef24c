// The ways a user's settings could be lost outside a single interrupted save:
// a damaged file rotated over the good backup, a newer program's file written
// over, a link or a FIFO at the temporary name, a rename that re-seeds the
// built-ins over the user's own keys and voices.

#include "settings/BuiltInPresets.h"
#include "settings/PresetLists.h"
#include "settings/SettingsStore.h"
#include "settings/support/TaggedDocument.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>

#ifndef _WIN32
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace Lumora;
using Lumora::Testing::taggedDocument;
using Lumora::Testing::TempFolder;

namespace {

std::string liveTag(const SettingsStore& store) {
    return store.inspect().settings.lastPresetName;
}

} // namespace

TEST(SettingsDataLoss, ADamagedLiveFileNeverReplacesTheGoodBackup) {
    TempFolder dir;
    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(taggedDocument("older")));
    ASSERT_TRUE(store.save(taggedDocument("good")));
    // The live file is damaged: the document now comes from the backup.
    std::string damaged = TempFolder::read(store.settingsPath());
    damaged[damaged.size() / 2] ^= 0x20;
    TempFolder::write(store.settingsPath(), damaged);
    EXPECT_EQ(store.inspect().source, LoadSource::Backup);

    ASSERT_TRUE(store.save(taggedDocument("after")));
    EXPECT_EQ(liveTag(store), "after");
    // The backup still holds the last good copy, the damaged file is kept aside.
    AppSettings backup;
    EXPECT_EQ(SettingsStore::readDocument(TempFolder::read(store.backupPath()), true, backup),
              FileVerdict::Ok);
    EXPECT_EQ(backup.lastPresetName, "older");
    EXPECT_EQ(TempFolder::read(store.damagedPath()), damaged);

    // The next save rotates normally again.
    ASSERT_TRUE(store.save(taggedDocument("next")));
    SettingsStore::readDocument(TempFolder::read(store.backupPath()), true, backup);
    EXPECT_EQ(backup.lastPresetName, "after");
}

TEST(SettingsDataLoss, AFileFromANewerVersionIsNeverWrittenOver) {
    TempFolder dir;
    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(taggedDocument("backup")));
    const std::string newer =
        SettingsStore::addChecksum(R"({"version": 3, "futureField": {"kept": true}})");
    TempFolder::write(store.settingsPath(), newer);
    const std::string backupBefore = TempFolder::read(store.backupPath());

    // It reads as defaults, without falling back to our older backup.
    const LoadReport r = store.inspect();
    EXPECT_EQ(r.source, LoadSource::Live);
    EXPECT_EQ(r.live, FileVerdict::NewerVersion);
    EXPECT_EQ(r.backup, FileVerdict::NotTried);
    EXPECT_EQ(r.settings.lastPresetName, "");
    EXPECT_TRUE(store.heldByNewerVersion());
    (void)store.load(); // would seed and save the built-ins into an older file
    EXPECT_FALSE(store.save(taggedDocument("ours")));
    EXPECT_FALSE(store.saveAppFields(AppFields{}));
    EXPECT_EQ(TempFolder::read(store.settingsPath()), newer);
    EXPECT_EQ(TempFolder::read(store.backupPath()), backupBefore);
    EXPECT_FALSE(TempFolder::exists(store.tempPath()));
}

#ifndef _WIN32
TEST(SettingsDataLoss, ALinkOrAFifoAtTheTemporaryNameIsReplacedNotUsed) {
    TempFolder dir;
    TempFolder elsewhere;
    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(taggedDocument("first")));

    // A link: the save must not write through it.
    const std::string victim = elsewhere.file("precious.txt");
    TempFolder::write(victim, "keep me");
    ASSERT_EQ(symlink(victim.c_str(), store.tempPath().c_str()), 0);
    ASSERT_TRUE(store.save(taggedDocument("through-link")));
    EXPECT_EQ(TempFolder::read(victim), "keep me");
    EXPECT_EQ(liveTag(store), "through-link");

    // A FIFO: opening it for writing would wait for a reader for ever.
    ASSERT_EQ(mkfifo(store.tempPath().c_str(), 0644), 0);
    auto done = std::make_shared<std::promise<bool>>();
    std::future<bool> saved = done->get_future();
    std::thread([done, folder = dir.path()] {
        done->set_value(SettingsStore(folder).save(taggedDocument("past-fifo")));
    }).detach();
    ASSERT_EQ(saved.wait_for(std::chrono::seconds(10)), std::future_status::ready)
        << "the save hung on a FIFO";
    EXPECT_TRUE(saved.get());
    EXPECT_EQ(liveTag(store), "past-fifo");
    struct stat st {};
    ASSERT_EQ(lstat(store.settingsPath().c_str(), &st), 0);
    EXPECT_TRUE(S_ISREG(st.st_mode));
}
#endif

TEST(SettingsDataLoss, RenamingTheBuiltInKeysKeepsTheUsersChoices) {
    TempFolder dir;
    SettingsStore store(dir.path());
    AppSettings s = store.load(); // seeds the built-ins
    const std::string voice = s.soundFxPresets[0].name;
    const float seededGain = s.soundFxPresets[0].preset.outputGainDb;
    // The user's own changes: a slot's trigger and an edited built-in voice.
    KeyAssignmentSet mine = s.keyAssignments;
    mine.keys[2].mode = KeyMode::Momentary;
    ASSERT_TRUE(store.saveKeyAssignments(mine));
    SavedSoundFxPreset edited = s.soundFxPresets[0];
    edited.preset.outputGainDb = -7.0f;
    ASSERT_TRUE(store.saveSoundFxPreset(edited));

    ASSERT_TRUE(store.renameKeyAssignPreset(kDefaultKeyAssignPresetName, "配信用の十字キー"));
    s = store.load();
    EXPECT_EQ(s.keyAssignments.keys[2].mode, KeyMode::Momentary);
    EXPECT_FLOAT_EQ(findSoundFxPreset(s, voice)->preset.outputGainDb, -7.0f);
    ASSERT_EQ(s.keyAssignPresets.size(), 1u);
    EXPECT_EQ(s.keyAssignPresets[0].name, "配信用の十字キー");

    // Deleting it brings the built-ins back whole, the voices in place.
    ASSERT_TRUE(store.deleteKeyAssignPreset("配信用の十字キー"));
    s = store.load();
    EXPECT_NE(findKeyAssignPreset(s, kDefaultKeyAssignPresetName), nullptr);
    EXPECT_EQ(s.keyAssignPresets.size(), 1u);
    EXPECT_EQ(s.keyAssignments.keys[2].mode, KeyMode::Toggle);
    ASSERT_EQ(s.soundFxPresets.size(), 4u);
    EXPECT_EQ(s.soundFxPresets[0].name, voice);
    EXPECT_EQ(s.soundFxPresets[0].preset.outputGainDb, seededGain);
}

TEST(SettingsDataLoss, RenamesFollowIntoKeySlotsAndTheLastPreset) {
    TempFolder dir;
    SettingsStore store(dir.path());
    AppSettings s = store.load();
    SavedEffectPreset talk;
    talk.name = talk.preset.name = "雑談";
    ASSERT_TRUE(store.saveEffectPreset(talk));
    KeyAssignmentSet keys = s.keyAssignments;
    keys.keys[1].hasEffectPreset = true;
    keys.keys[1].effectPresetName = "雑談";
    ASSERT_TRUE(store.saveKeyAssignments(keys));
    AppFields fields = appFieldsOf(store.load());
    fields.lastPresetName = "雑談";
    ASSERT_TRUE(store.saveAppFields(fields));
    const std::string voice = s.soundFxPresets[0].name;

    ASSERT_TRUE(store.renameSoundFxPreset(voice, "ロボ声"));
    ASSERT_TRUE(store.renameEffectPreset("雑談", "雑談 (夜)"));
    s = store.load();
    EXPECT_EQ(s.soundFxPresets[0].name, "ロボ声"); // in place
    EXPECT_EQ(s.keyAssignments.keys[0].soundFxPresetName, "ロボ声");
    EXPECT_EQ(s.keyAssignPresets[0].assignments.keys[0].soundFxPresetName, "ロボ声");
    EXPECT_EQ(s.keyAssignments.keys[1].effectPresetName, "雑談 (夜)");
    EXPECT_EQ(s.lastPresetName, "雑談 (夜)");
    EXPECT_FALSE(store.renameEffectPreset("no such preset", "x"));
}
