// Japanese user and file names, as our streamers have them: the settings folder,
// the settings file's whole save-and-recover cycle and a preset's export and
// import, in folders named in Japanese. On Windows (run under Wine) this is where
// a narrow call would turn the name into question marks.

#include "platform/Platform.h"
#include "settings/BuiltInPresets.h"
#include "settings/PresetFile.h"
#include "settings/PresetLists.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using namespace Lumora;
using Lumora::Testing::TempFolder;

namespace {

const char kSep = Platform::pathSeparator();

std::string join(const std::string& a, const std::string& b) {
    return a + kSep + b;
}

// The folder a Japanese user's settings live in. On Windows it is the real path
// "C:\users\配信者\AppData\Roaming\Lumora"; elsewhere the same names under a
// temporary folder.
std::string japaneseUserFolder(const TempFolder& temp) {
#ifdef _WIN32
    (void)temp;
    return "C:\\users\\配信者\\AppData\\Roaming\\Lumora";
#else
    return join(join(join(join(temp.path(), "users"), "配信者"), "AppData/Roaming"), "Lumora");
#endif
}

} // namespace

TEST(UnicodePaths, SettingsSaveRecoverAndReplaceInAJapaneseFolder) {
    TempFolder temp;
    const std::string folder = japaneseUserFolder(temp);
    SettingsStore store(folder);
    AppSettings first = store.load(); // seeds the built-ins and saves
    ASSERT_TRUE(Platform::fileExists(store.settingsPath())) << store.settingsPath();
    ASSERT_EQ(first.soundFxPresets.size(), 4u);

    // Replace on save: the second save keeps the first as the backup.
    first.lastPresetName = "ゲーム実況";
    ASSERT_TRUE(store.save(first));
    AppSettings second = first;
    second.lastPresetName = "歌枠";
    ASSERT_TRUE(store.save(second));
    EXPECT_EQ(store.load().lastPresetName, "歌枠");

    // A damaged live file: the backup loads, and the next save keeps it.
    std::optional<std::string> live = Platform::readFile(store.settingsPath(), 1 << 20);
    ASSERT_TRUE(live.has_value());
    (*live)[live->size() / 2] ^= 0x01;
    ASSERT_TRUE(Platform::writeFile(store.settingsPath(), *live));
    EXPECT_EQ(store.inspect().source, LoadSource::Backup);
    EXPECT_EQ(store.load().lastPresetName, "ゲーム実況");
    ASSERT_TRUE(store.saveAppFields(appFieldsOf(store.load())));
    EXPECT_EQ(store.inspect().source, LoadSource::Live);
    EXPECT_TRUE(Platform::fileExists(store.damagedPath()));
    EXPECT_FALSE(Platform::fileExists(store.tempPath()));

    // The folder reads back under its own name.
    EXPECT_TRUE(Platform::fileReadable(join(folder, "settings.json")));
    EXPECT_TRUE(Platform::removeFile(store.damagedPath()));
    EXPECT_FALSE(Platform::fileExists(store.damagedPath()));
}

TEST(UnicodePaths, AJapanesePresetExportedAndImportedThroughAJapaneseFileName) {
    TempFolder temp;
    const std::string folder = join(temp.path(), "プリセット");
    ASSERT_TRUE(Platform::makeFolders(folder));
    SettingsStore store(join(temp.path(), "設定"));
    SavedSoundFxPreset voice;
    voice.name = "ロボット声＋ラジオ";
    voice.description = "配信の締めに";
    voice.preset.pitch.enabled = true;
    voice.preset.pitch.semitonesA = 3.5f;
    ASSERT_TRUE(store.saveSoundFxPreset(voice));

    PresetBundle out;
    out.soundFxPresets.push_back(*store.findSoundFxPreset(voice.name));
    const std::string file = join(folder, "ロボット声.json");
    ASSERT_TRUE(store.writeFile(file, renderPresetBundle(out)));

    std::optional<std::string> text = store.readFile(file);
    ASSERT_TRUE(text.has_value()) << file;
    PresetBundle in;
    std::string error;
    ASSERT_TRUE(parsePresetBundle(*text, in, error)) << error;
    ASSERT_EQ(in.soundFxPresets.size(), 1u);
    EXPECT_EQ(in.soundFxPresets[0].name, "ロボット声＋ラジオ");
    EXPECT_EQ(in.soundFxPresets[0].description, "配信の締めに");
    EXPECT_FLOAT_EQ(in.soundFxPresets[0].preset.pitch.semitonesA, 3.5f);
}

TEST(UnicodePaths, TheDefaultFolderIsTheUsersApplicationDataFolder) {
    const std::string base = Platform::userConfigFolder();
    ASSERT_FALSE(base.empty());
    // The Wine run points the user's application-data folder at a Japanese name
    // in its own throw-away prefix and tells the test which one; only there is it
    // safe to write into the default folder.
    const std::optional<std::string> expected = Platform::environment("LUMORA_EXPECT_APPDATA");
    if (!expected) {
        GTEST_SKIP() << "no throw-away application-data folder given";
    }
    EXPECT_EQ(base, *expected);
    SettingsStore store("");
    EXPECT_EQ(store.folder(), join(base, "Lumora"));
    const AppSettings s = store.load();
    EXPECT_EQ(s.keyAssignPresets.size(), 1u);
    EXPECT_TRUE(Platform::fileExists(store.settingsPath())) << store.settingsPath();
}

TEST(UnicodePaths, NamesThatAreNotUtf8AreRefusedNotMangled) {
    TempFolder temp;
    // "\x82\xa0" is "あ" in Shift-JIS: not UTF-8, and never a file of some other name.
    const std::string bad = join(temp.path(), std::string("\x82\xa0.json"));
#ifdef _WIN32
    EXPECT_FALSE(Platform::writeFile(bad, "x"));
#else
    // POSIX names are bytes: the file is written under exactly those bytes.
    EXPECT_TRUE(Platform::writeFile(bad, "x"));
    EXPECT_EQ(Platform::readFile(bad, 16).value_or(""), "x");
#endif
}
