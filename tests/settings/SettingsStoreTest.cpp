// The settings file on a real disk: checksum line, save with backup, and the
// fall-back from a damaged live file to the backup and then to defaults.

#include "settings/SettingsStore.h"
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

// Sets (or, given null, clears) an environment variable for one scope.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        const char* old = std::getenv(name);
        old_ = old ? std::optional<std::string>(old) : std::nullopt;
        set(value);
    }
    ~ScopedEnv() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) { value ? setenv(name_, value, 1) : unsetenv(name_); }
    const char* name_;
    std::optional<std::string> old_;
};

} // namespace

// Known values: files written by earlier builds must keep reading.
TEST(SettingsChecksum, OnlyAnExactChecksumLineIsAcceptedAndStripped) {
    EXPECT_EQ(SettingsStore::addChecksum("{}"), "#LMSUM:00597A9D\n{}");
    const struct {
        const char* text;
        const char* body;
    } accepted[] = {
        {"#LMSUM:00597A9D\n{}", "{}"},
        {"#LMSUM:00597a9d\n{}", "{}"},
        {"#LMSUM:00001505\n", ""},
        // Bytes count as unsigned: 0xFF adds 255, not -1. Japanese text depends
        // on it in every file already written.
        {"#LMSUM:0002B6A4\n\xff", "\xff"},
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

TEST(SettingsStoreFiles, ADamagedMissingOrUnreadableLiveFileFallsBackToTheBackup) {
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

    // A valid checksum over a body that is not a document.
    TempFolder::write(store.settingsPath(), SettingsStore::addChecksum("{\"a\": "));
    EXPECT_EQ(store.inspect().live, FileVerdict::NotParseable);
    TempFolder::write(store.settingsPath(), SettingsStore::addChecksum("[1, 2]"));
    EXPECT_EQ(store.inspect().live, FileVerdict::NotAnObject);
    EXPECT_EQ(store.inspect().settings.lastPresetName, "old");

    // Missing live file.
    std::remove(store.settingsPath().c_str());
    r = store.inspect();
    EXPECT_EQ(r.live, FileVerdict::Missing);
    EXPECT_EQ(r.source, LoadSource::Backup);
    // A folder in place of the live file: there, but not readable as a file.
    ASSERT_EQ(mkdir(store.settingsPath().c_str(), 0755), 0);
    r = store.inspect();
    EXPECT_EQ(r.live, FileVerdict::Unreadable);
    EXPECT_EQ(r.settings.lastPresetName, "old");
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
