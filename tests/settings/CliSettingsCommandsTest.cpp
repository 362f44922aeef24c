// lumora-cli settings verify and presets list/export/import, run as the built
// binary on temporary folders: what they print, their exit codes, and that they
// write nothing unless they succeed.

#include "settings/BuiltInPresets.h"
#include "settings/PresetFile.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"
#include "support/CommandRun.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Lumora;
using Lumora::Testing::CommandRun;
using Lumora::Testing::TempFolder;

namespace {

CommandRun cli(const std::vector<std::string>& args) {
    std::string line;
    for (const std::string& a : args) {
        line += " '" + a + "'";
    }
    return Testing::runCommand(Testing::lumoraCli(line));
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// One line on stderr, beginning with the program's name.
void expectOneErrorLine(const CommandRun& r) {
    EXPECT_NE(r.code, 0);
    EXPECT_EQ(r.err.rfind("lumora-cli: ", 0), 0u) << r.err;
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
}

AppSettings sample() {
    AppSettings s;
    SavedEffectPreset talk;
    talk.name = "配信";
    talk.description = "talk";
    talk.savedAt = "2024-01-01 00:00:00";
    talk.preset.comp.enabled = true;
    talk.preset.comp.thresholdDb = -30.0f;
    talk.preset.noise.enabled = true;
    s.presets.push_back(talk);
    SavedEffectPreset clash;
    clash.name = "デスゲーム"; // also a built-in sound-effect name
    s.presets.push_back(clash);
    seedBuiltIns(s, "2024-01-01 00:00:00");
    return s;
}

// Every file of the folder, for "nothing was written".
std::string snapshot(const TempFolder& dir) {
    std::string all;
    for (const char* name : {"settings.json", "settings.json.bak", "settings.json.tmp"}) {
        all += std::string(name) + ":" +
               (TempFolder::exists(dir.file(name)) ? TempFolder::read(dir.file(name)) : "-") + "\n";
    }
    return all;
}

} // namespace

TEST(CliSettingsCommands, VerifyReportsWithoutWriting) {
    TempFolder dir;
    CommandRun r = cli({"settings", "verify", "--dir", dir.path()});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "loaded: defaults"));
    EXPECT_TRUE(contains(r.out, "no settings saved yet"));
    EXPECT_FALSE(TempFolder::exists(dir.file("settings.json")));

    SettingsStore store(dir.path());
    ASSERT_TRUE(store.save(sample()));
    ASSERT_TRUE(store.save(sample()));
    r = cli({"settings", "verify", "--dir", dir.path()});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "settings.json: ok"));
    EXPECT_TRUE(contains(r.out, "loaded: live"));
    EXPECT_TRUE(contains(r.out, "effect presets: 2, sound-effect presets: 4"));

    // A damaged live file: the backup loads, and the exit code says so.
    std::string live = TempFolder::read(store.settingsPath());
    live[live.size() / 2] ^= 1;
    TempFolder::write(store.settingsPath(), live);
    const std::string before = snapshot(dir);
    r = cli({"settings", "verify", "--dir", dir.path()});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(contains(r.out, "settings.json: checksum mismatch"));
    EXPECT_TRUE(contains(r.out, "loaded: backup"));
    expectOneErrorLine(r);
    EXPECT_EQ(snapshot(dir), before);

    // Both damaged: defaults.
    TempFolder::write(store.backupPath(), "{}");
    r = cli({"settings", "verify", "--dir", dir.path()});
    EXPECT_TRUE(contains(r.out, "settings.json.bak: no checksum line"));
    EXPECT_TRUE(contains(r.out, "loaded: defaults"));
    expectOneErrorLine(r);
}

TEST(CliSettingsCommands, UsageErrors) {
    TempFolder dir;
    CommandRun r = cli({"settings", "verify", "--dir", dir.file("missing")});
    expectOneErrorLine(r);
    EXPECT_TRUE(contains(r.err, "folder not found"));
    EXPECT_FALSE(TempFolder::exists(dir.file("missing")));
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{"settings"},
                                               {"settings", "check"},
                                               {"presets"},
                                               {"presets", "rename"},
                                               {"presets", "list", "--bogus"},
                                               {"presets", "list", "--dir"},
                                               {"presets", "export", "only-a-name"},
                                               {"presets", "import"},
                                               {"presets", "list", "--effect", "--fx"}}) {
        r = cli(args);
        EXPECT_EQ(r.code, 2) << args.back();
        expectOneErrorLine(r);
    }
}

TEST(CliSettingsCommands, ListShowsWhatThePluginWouldSee) {
    TempFolder dir;
    CommandRun r = cli({"presets", "list", "--dir", dir.path()});
    EXPECT_EQ(r.code, 0) << r.err;
    EXPECT_TRUE(contains(r.out, "sound-effect presets (4):"));
    EXPECT_TRUE(contains(r.out, "デフォルト十字キー  (not saved yet)"));
    EXPECT_FALSE(TempFolder::exists(dir.file("settings.json")));

    ASSERT_TRUE(SettingsStore(dir.path()).save(sample()));
    r = cli({"presets", "list", "--dir", dir.path()});
    EXPECT_TRUE(
        contains(r.out, "effect presets (2):\n  配信  (saved 2024-01-01 00:00:00)  talk\n"));
    r = cli({"presets", "list", "--effect", "--dir", dir.path()});
    EXPECT_FALSE(contains(r.out, "sound-effect"));
}

TEST(CliSettingsCommands, ExportAndImportCarryAPresetBetweenFolders) {
    TempFolder from, to, files;
    ASSERT_TRUE(SettingsStore(from.path()).save(sample()));
    const std::string exported = files.file("talk.json");
    CommandRun r = cli({"presets", "export", "配信", exported, "--dir", from.path()});
    ASSERT_EQ(r.code, 0) << r.err;

    r = cli({"presets", "import", exported, "--dir", to.path()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "added effect preset '配信'\n");
    const AppSettings s = SettingsStore(to.path()).inspect().settings;
    ASSERT_EQ(s.presets.size(), 1u);
    EXPECT_EQ(s.presets[0].description, "talk");
    EXPECT_EQ(s.presets[0].preset.comp.thresholdDb, -30.0f);
    EXPECT_TRUE(s.presets[0].preset.noise.enabled);
    EXPECT_EQ(s.presets[0].savedAt.size(), 19u);
    EXPECT_EQ(s.soundFxPresets.size(), 4u); // the built-ins came along, as a first load would
    r = cli({"presets", "import", exported, "--dir", to.path()});
    EXPECT_EQ(r.out, "replaced effect preset '配信'\n");

    // A name in both lists needs a choice; --fx makes it.
    r = cli({"presets", "export", "デスゲーム", files.file("x.json"), "--dir", from.path()});
    expectOneErrorLine(r);
    EXPECT_TRUE(contains(r.err, "add --effect or --fx"));
    EXPECT_FALSE(TempFolder::exists(files.file("x.json")));
    r = cli(
        {"presets", "export", "デスゲーム", files.file("x.json"), "--fx", "--dir", from.path()});
    EXPECT_EQ(r.code, 0) << r.err;
    PresetBundle bundle;
    std::string error;
    ASSERT_TRUE(parsePresetBundle(TempFolder::read(files.file("x.json")), bundle, error));
    EXPECT_EQ(bundle.soundFxPresets.size(), 1u);

    r = cli({"presets", "export", "nothing", files.file("y.json"), "--dir", from.path()});
    expectOneErrorLine(r);
    EXPECT_FALSE(TempFolder::exists(files.file("y.json")));

    // To stdout.
    r = cli({"presets", "export", "配信", "-", "--dir", from.path()});
    EXPECT_EQ(r.out, TempFolder::read(exported));
}

TEST(CliSettingsCommands, ImportRefusesBadInputAndWritesNothing) {
    TempFolder dir, files;
    const auto refuses = [&](const std::string& content, const std::string& reason) {
        TempFolder::write(files.file("in.json"), content);
        const std::string before = snapshot(dir);
        const CommandRun r = cli({"presets", "import", files.file("in.json"), "--dir", dir.path()});
        expectOneErrorLine(r);
        EXPECT_TRUE(contains(r.err, reason)) << r.err;
        EXPECT_EQ(snapshot(dir), before);
    };
    refuses("not json", "not valid JSON");
    refuses("[1]", "not an object");
    refuses("{\"version\": 3, \"presets\": [{\"name\": \"x\"}]}", "newer version");
    refuses("{\"presets\": [{\"name\": \"v1\"}]}", "no presets to import"); // version 1: dropped
    refuses("{\"other\": 1}", "no presets found");
    refuses("#LMSUM:00000000\n{}", "checksum mismatch");
    CommandRun r = cli({"presets", "import", files.file("absent.json"), "--dir", dir.path()});
    expectOneErrorLine(r);
    EXPECT_TRUE(contains(r.err, "cannot read"));

    // Damaged settings are not pushed aside by an import.
    TempFolder::write(dir.file("settings.json"), "#LMSUM:00000000\n{}");
    TempFolder::write(dir.file("settings.json.bak"), "garbage");
    refuses("{\"version\": 2, \"presets\": [{\"name\": \"x\"}]}", "move them away first");
    // Nor is a newer program's file.
    TempFolder::write(dir.file("settings.json"), SettingsStore::addChecksum("{\"version\": 3}"));
    refuses("{\"version\": 2, \"presets\": [{\"name\": \"x\"}]}", "newer version");
}

TEST(CliSettingsCommands, ImportReadsASettingsFileOrASinglePreset) {
    TempFolder from, to;
    SettingsStore source(from.path());
    ASSERT_TRUE(source.save(sample()));
    CommandRun r =
        cli({"presets", "import", source.settingsPath(), "--effect", "--dir", to.path()});
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.out, "added effect preset '配信'\nadded effect preset 'デスゲーム'\n");

    TempFolder::write(to.file("one.json"),
                      "{\"name\": \"single\", \"pitch\": {\"enabled\": true}}");
    r = cli({"presets", "import", to.file("one.json"), "--dir", to.path()});
    EXPECT_EQ(r.out, "added sound-effect preset 'single'\n");
    EXPECT_TRUE(SettingsStore(to.path()).findSoundFxPreset("single")->preset.pitch.enabled);
}
