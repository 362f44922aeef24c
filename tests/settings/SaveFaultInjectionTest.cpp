// A save interrupted at any step, on a real disk and on a disk that loses power,
// never costs the user the settings they had: every load afterwards yields the
// previous document or the new one, never the defaults while a good file existed.

#include "settings/BuiltInPresets.h"
#include "settings/SettingsStore.h"
#include "settings/support/FaultyFileSystem.h"
#include "settings/support/MemoryFileSystem.h"
#include "settings/support/TaggedDocument.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

using namespace Lumora;
using Lumora::Testing::FaultyFileSystem;
using Lumora::Testing::MemoryFileSystem;
using Lumora::Testing::taggedDocument;
using Lumora::Testing::TempFolder;

namespace {

using Mode = FaultyFileSystem::Mode;

// The in-memory folder's file names, joined as this system joins them.
const SettingsStore kAt("/s");

// The tag of the document that loads, or "" for the defaults.
std::string loadedTag(FileSystem& fs, const std::string& folder) {
    return SettingsStore(folder, fs).inspect().settings.lastPresetName;
}

// Steps of one undisturbed save over an existing live file: 0 mkdir, 1 write the
// temporary file, 2 flush it, 3 flush the folder, 4 rename live -> backup,
// 5 rename temporary -> live, 6 flush the folder.
int stepsOfASave() {
    MemoryFileSystem memory;
    SettingsStore("/s", memory).save(taggedDocument("before"));
    FaultyFileSystem counter(memory);
    counter.arm(Mode::None, -1);
    SettingsStore("/s", counter).save(taggedDocument("x"));
    return counter.stepCount();
}

enum class Start { Empty, LiveOnly, LiveAndBackup };

const char* name(Start s) {
    return s == Start::Empty      ? "empty folder"
           : s == Start::LiveOnly ? "live file only"
                                  : "live and backup";
}

} // namespace

TEST(SaveFaultInjection, EveryStepFailingOrCrashingOnARealDisk) {
    const int steps = stepsOfASave();
    ASSERT_EQ(steps, 7);
    for (const Start start : {Start::Empty, Start::LiveOnly, Start::LiveAndBackup}) {
        for (const Mode mode : {Mode::Fail, Mode::Crash}) {
            for (int step = 0; step < steps; ++step) {
                SCOPED_TRACE(std::string(name(start)) +
                             (mode == Mode::Fail ? ", fail" : ", crash") + " at step " +
                             std::to_string(step));
                TempFolder dir;
                SettingsStore plain(dir.path());
                if (start != Start::Empty) {
                    ASSERT_TRUE(
                        plain.save(taggedDocument(start == Start::LiveOnly ? "old" : "older")));
                }
                if (start == Start::LiveAndBackup) {
                    ASSERT_TRUE(plain.save(taggedDocument("old")));
                }
                const std::string liveBefore = TempFolder::read(plain.settingsPath());
                const std::string backupBefore = TempFolder::read(plain.backupPath());

                FaultyFileSystem fs(FileSystem::real());
                fs.arm(mode, step);
                const bool saved = SettingsStore(dir.path(), fs).save(taggedDocument("new"));

                const std::string tag = loadedTag(FileSystem::real(), dir.path());
                if (saved) {
                    EXPECT_EQ(tag, "new");
                } else if (start == Start::Empty) {
                    EXPECT_TRUE(tag == "" || tag == "new") << tag;
                } else {
                    EXPECT_TRUE(tag == "old" || tag == "new") << tag;
                }
                // Until the first rename, the live file and the backup are untouched.
                if (!saved && step < 4) {
                    EXPECT_EQ(TempFolder::read(plain.settingsPath()), liveBefore);
                    EXPECT_EQ(TempFolder::read(plain.backupPath()), backupBefore);
                }
                // Whatever happened, the next save succeeds and loads.
                ASSERT_TRUE(plain.save(taggedDocument("retry")));
                EXPECT_EQ(loadedTag(FileSystem::real(), dir.path()), "retry");
            }
        }
    }
}

TEST(SaveFaultInjection, OnlyTheEarlyFolderFlushAndTheBackupRenameMayFail) {
    const int steps = stepsOfASave();
    for (int step = 0; step < steps; ++step) {
        MemoryFileSystem memory;
        FaultyFileSystem fs(memory);
        SettingsStore(("/s"), memory).save(taggedDocument("old"));
        fs.arm(Mode::Fail, step);
        const bool saved = SettingsStore("/s", fs).save(taggedDocument("new"));
        const std::string& what = fs.steps[static_cast<size_t>(step)];
        // The flush of the folder before the renames is best effort (the final one
        // makes them durable), and the backup rename only keeps the old document;
        // every other step is essential.
        const bool essential =
            step != 3 && what != "rename " + kAt.settingsPath() + " -> " + kAt.backupPath();
        EXPECT_EQ(saved, !essential) << what;
    }
}

// The last round, with no step stopped, is the classic loss: saves in a row whose
// new files were never flushed leave a live file and a backup that are both
// empty after a power cut.
TEST(SaveFaultInjection, PowerLossAfterAnyStepKeepsTheOldOrTheNewDocument) {
    const int steps = stepsOfASave();
    for (int step = 0; step <= steps; ++step) {
        SCOPED_TRACE("power lost before step " + std::to_string(step));
        MemoryFileSystem memory;
        ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("older")));
        ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("old")));

        FaultyFileSystem fs(memory);
        fs.arm(Mode::Crash, step);
        const bool saved = SettingsStore("/s", fs).save(taggedDocument("new"));
        memory.powerLoss();

        const std::string tag = loadedTag(memory, "/s");
        EXPECT_TRUE(tag == "old" || tag == "new") << tag;
        if (saved) {
            EXPECT_EQ(tag, "new") << "a save that reported success is on the disk";
        }
    }
}

namespace {

// The same disk with a store that never flushes: what the power-loss model would
// catch if the store skipped its flushes.
class NoFlushFileSystem : public MemoryFileSystem {
public:
    bool syncFile(const std::string&) override { return true; }
    bool syncFolder(const std::string&) override { return true; }
    void flushAll(const std::string& path) {
        MemoryFileSystem::syncFile(path);
        MemoryFileSystem::syncFolder(path);
    }
};

} // namespace

TEST(SaveFaultInjection, TheModelCatchesASaveWithoutFlushes) {
    NoFlushFileSystem memory;
    ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("first")));
    memory.flushAll(kAt.settingsPath());
    ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("second")));
    ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("third")));
    memory.flushAll("/s"); // the folder's entries reach the disk, the new bytes do not
    memory.powerLoss();
    EXPECT_EQ(loadedTag(memory, "/s"), "") << "both files empty: the defaults load";
}

TEST(SaveFaultInjection, ATemporaryFileThatReadsBackWrongIsNeverInstalled) {
    // A disk that hands back different bytes than it was given.
    class Corrupting : public MemoryFileSystem {
    public:
        std::optional<std::string> readFile(const std::string& path) override {
            std::optional<std::string> bytes = MemoryFileSystem::readFile(path);
            if (corrupt && bytes && !bytes->empty() && path.size() > 4 &&
                path.compare(path.size() - 4, 4, ".tmp") == 0) {
                (*bytes)[bytes->size() / 2] ^= 0x20;
            }
            return bytes;
        }
        bool corrupt = false;
    } memory;
    ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("older")));
    ASSERT_TRUE(SettingsStore("/s", memory).save(taggedDocument("old")));
    const std::optional<std::string> live = memory.readFile(kAt.settingsPath());
    const std::optional<std::string> backup = memory.readFile(kAt.backupPath());
    memory.corrupt = true;
    EXPECT_FALSE(SettingsStore("/s", memory).save(taggedDocument("new")));
    EXPECT_EQ(memory.readFile(kAt.settingsPath()), live);
    EXPECT_EQ(memory.readFile(kAt.backupPath()), backup);
    EXPECT_TRUE(memory.exists(kAt.tempPath())) << "left behind, overwritten next time";
}
