// The settings file on a real disk: checksum line, save with backup, and the
// fall-back from a damaged live file to the backup and then to defaults.

#include "settings/SettingsStore.h"
#include "settings/JsonText.h"
#include "settings/SettingsJson.h"
#include "settings/support/TaggedDocument.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <sys/stat.h>

using namespace Lumora;
using Lumora::Testing::taggedDocument;
using Lumora::Testing::TempFolder;

namespace {

// Sets or clears an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) {
            old_ = old;
        }
        if (value) {
            setenv(name, value, 1);
        } else {
            unsetenv(name);
        }
    }
    ~ScopedEnv() {
        if (old_) {
            setenv(name_, old_->c_str(), 1);
        } else {
            unsetenv(name_);
        }
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

std::string fileFor(const AppSettings& s) {
    return SettingsStore::addChecksum(renderJson(toJson(s)));
}

} // namespace

TEST(SettingsChecksum, KnownValues) {
    EXPECT_EQ(SettingsStore::checksum(""), 0x00001505u);
    EXPECT_EQ(SettingsStore::checksum("{}"), 0x00597A9Du);
    EXPECT_EQ(SettingsStore::addChecksum("{}"), "#LMSUM:00597A9D\n{}");
    EXPECT_EQ(SettingsStore::addChecksum(""), "#LMSUM:00001505\n");
    // Bytes count as unsigned: 0xFF adds 255, not -1.
    EXPECT_EQ(SettingsStore::checksum("\xff"), 5381u * 33u + 255u);
}

TEST(SettingsChecksum, OnlyAnExactChecksumLineIsAcceptedAndStripped) {
    const struct {
        const char* text;
        const char* body;
    } accepted[] = {
        {"#LMSUM:00597A9D\n{}", "{}"},
        {"#LMSUM:00597a9d\n{}", "{}"},
        // The standard conversion tolerates leading white space and "0x".
        {"#LMSUM:0x597a9d\n{}", "{}"},
        {"#LMSUM:  597A9D\n{}", "{}"},
        {"#LMSUM:00001505\n", ""},
    };
    for (const auto& a : accepted) {
        std::string t = a.text;
        EXPECT_EQ(SettingsStore::checkAndStrip(t), FileVerdict::Ok) << a.text;
        EXPECT_EQ(t, a.body);
    }
    const struct {
        const char* text;
        FileVerdict verdict;
    } refused[] = {
        {"#LMSUM:0597A9D\n{}", FileVerdict::NoChecksumLine},    // seven digits
        {"#LMSUM:000597A9D\n{}", FileVerdict::NoChecksumLine},  // nine digits
        {"#LMSUM:00597A9D\r\n{}", FileVerdict::NoChecksumLine}, // a carriage return first
        {"#LMSUM:00597A9D{}", FileVerdict::NoChecksumLine},     // no line feed
        {"#lmsum:00597A9D\n{}", FileVerdict::NoChecksumLine},
        {"\xEF\xBB\xBF#LMSUM:00597A9D\n{}", FileVerdict::NoChecksumLine}, // a byte-order mark
        {"{}", FileVerdict::NoChecksumLine},
        {"", FileVerdict::NoChecksumLine},
        {"#LMSUM:", FileVerdict::NoChecksumLine},
        {"#LMSUM:zzzzzzzz\n{}", FileVerdict::BadChecksumLine},
        {"#LMSUM:00597A9E\n{}", FileVerdict::ChecksumMismatch},
    };
    for (const auto& r : refused) {
        std::string t = r.text;
        EXPECT_EQ(SettingsStore::checkAndStrip(t), r.verdict) << r.text;
        EXPECT_EQ(t, r.text) << "a refused text is left unchanged";
    }
}

TEST(SettingsStoreFiles, PathsAndTheDefaultFolder) {
    SettingsStore store("/some/where");
    EXPECT_EQ(store.settingsPath(), "/some/where/settings.json");
    EXPECT_EQ(store.tempPath(), "/some/where/settings.json.tmp");
    EXPECT_EQ(store.backupPath(), "/some/where/settings.json.bak");

    {
        ScopedEnv dir("LUMORA_SETTINGS_DIR", "/portable/settings");
        EXPECT_EQ(SettingsStore("").folder(), "/portable/settings");
        EXPECT_EQ(SettingsStore("/given").folder(), "/given");
    }
    ScopedEnv noDir("LUMORA_SETTINGS_DIR", nullptr);
    {
        ScopedEnv xdg("XDG_CONFIG_HOME", "/xdg");
        EXPECT_EQ(SettingsStore("").folder(), "/xdg/Lumora");
    }
    ScopedEnv noXdg("XDG_CONFIG_HOME", nullptr);
    ScopedEnv home("HOME", "/home/streamer");
    EXPECT_EQ(SettingsStore("").folder(), "/home/streamer/.config/Lumora");
}

TEST(SettingsStoreFiles, SaveWritesTheExactFileAndKeepsThePreviousAsBackup) {
    TempFolder dir;
    SettingsStore store(dir.path() + "/nested/Lumora"); // parents are created
    const AppSettings first = taggedDocument("first");
    const AppSettings second = taggedDocument("second");
    ASSERT_TRUE(store.save(first));
    EXPECT_EQ(TempFolder::read(store.settingsPath()), fileFor(first));
    EXPECT_FALSE(TempFolder::exists(store.backupPath()));
    ASSERT_TRUE(store.save(second));
    EXPECT_EQ(TempFolder::read(store.settingsPath()), fileFor(second));
    EXPECT_EQ(TempFolder::read(store.backupPath()), fileFor(first));
    EXPECT_FALSE(TempFolder::exists(store.tempPath()));
    const std::string text = TempFolder::read(store.settingsPath());
    EXPECT_EQ(text.rfind("#LMSUM:", 0), 0u);
    EXPECT_NE(text.back(), '\n'); // no line feed after the closing brace
}

TEST(SettingsStoreFiles, DamagedLiveFileFallsBackToTheBackup) {
    TempFolder dir;
    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(taggedDocument("old")));
    ASSERT_TRUE(store.save(taggedDocument("new")));
    const std::string live = TempFolder::read(store.settingsPath());

    // One changed byte in the body.
    std::string changed = live;
    changed[changed.size() - 5] ^= 0x01;
    TempFolder::write(store.settingsPath(), changed);
    LoadReport r = store.inspect();
    EXPECT_EQ(r.source, LoadSource::Backup);
    EXPECT_EQ(r.live, FileVerdict::ChecksumMismatch);
    EXPECT_EQ(r.settings.lastPresetName, "old");
    EXPECT_EQ(store.load().lastPresetName, "old");
    // Loading does not repair or remove the damaged file; the next save replaces it.
    EXPECT_EQ(TempFolder::read(store.settingsPath()), changed);

    // Line endings converted to CRLF, as an editor might do.
    std::string crlf;
    for (char c : live) {
        crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    }
    TempFolder::write(store.settingsPath(), crlf);
    EXPECT_EQ(store.inspect().source, LoadSource::Backup);

    // A valid checksum over a body that is not a document.
    TempFolder::write(store.settingsPath(), SettingsStore::addChecksum("{\"a\": "));
    EXPECT_EQ(store.inspect().live, FileVerdict::NotParseable);
    TempFolder::write(store.settingsPath(), SettingsStore::addChecksum("[1, 2]"));
    EXPECT_EQ(store.inspect().live, FileVerdict::NotAnObject);
    EXPECT_EQ(store.inspect().settings.lastPresetName, "old");

    // Plain JSON without a checksum line is never accepted.
    TempFolder::write(store.settingsPath(), renderJson(toJson(taggedDocument("plain"))));
    EXPECT_EQ(store.inspect().live, FileVerdict::NoChecksumLine);

    // Missing live file.
    std::remove(store.settingsPath().c_str());
    r = store.inspect();
    EXPECT_EQ(r.live, FileVerdict::Missing);
    EXPECT_EQ(r.source, LoadSource::Backup);
}

TEST(SettingsStoreFiles, BothFilesDamagedGiveDefaults) {
    TempFolder dir;
    SettingsStore store(dir.path());
    TempFolder::write(store.settingsPath(), "#LMSUM:00000000\n{}");
    TempFolder::write(store.backupPath(), std::string("\0\0\0", 3));
    const LoadReport r = store.inspect();
    EXPECT_EQ(r.source, LoadSource::Defaults);
    EXPECT_EQ(r.live, FileVerdict::ChecksumMismatch);
    EXPECT_EQ(r.backup, FileVerdict::NoChecksumLine);
    EXPECT_EQ(renderJson(toJson(r.settings)), renderJson(toJson(AppSettings{})));
}

TEST(SettingsStoreFiles, TheSmallestValidFileReadsAsDefaultsPlusBuiltIns) {
    TempFolder dir;
    SettingsStore store(dir.path());
    TempFolder::write(store.settingsPath(), "#LMSUM:00597A9D\n{}");
    EXPECT_EQ(store.inspect().live, FileVerdict::Ok);
    const AppSettings s = store.load();
    EXPECT_EQ(s.soundFxPresets.size(), 4u);
    EXPECT_EQ(s.keyAssignPresets.size(), 1u);
    // The seeding saved once; "{}" is now the backup.
    EXPECT_EQ(TempFolder::read(store.backupPath()), "#LMSUM:00597A9D\n{}");
}

TEST(SettingsStoreFiles, AFolderThatCannotBeCreatedFailsTheSaveAndWritesNothing) {
    TempFolder dir;
    TempFolder::write(dir.file("blocker"), "a file where the folder should be");
    SettingsStore store(dir.file("blocker") + "/Lumora");
    EXPECT_FALSE(store.save(AppSettings{}));
    EXPECT_EQ(TempFolder::read(dir.file("blocker")), "a file where the folder should be");
    // And loading there never fails.
    EXPECT_EQ(store.load().soundFxPresets.size(), 4u);
}

TEST(SettingsStoreFiles, AnUnreadableOrOddLiveFileIsSkipped) {
    TempFolder dir;
    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(taggedDocument("backup")));
    ASSERT_TRUE(store.save(taggedDocument("live")));
    std::remove(store.settingsPath().c_str());
    // A folder in place of the live file: not readable as a file.
    ASSERT_EQ(mkdir(store.settingsPath().c_str(), 0755), 0);
    const LoadReport r = store.inspect();
    EXPECT_EQ(r.live, FileVerdict::Unreadable);
    EXPECT_EQ(r.settings.lastPresetName, "backup");
}
