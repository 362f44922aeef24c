// lumora-cli settings verify / presets list|export|import: the settings folder
// seen from outside the plug-in. Reading commands never write; import writes the
// settings file once, through the store's safe save, and only when everything
// it needs has been checked.

#include "Commands.h"

#include "settings/BuiltInPresets.h"
#include "settings/FileSystem.h"
#include "settings/PresetFile.h"
#include "settings/PresetLists.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace Lumora::Cli {

namespace {

struct Options {
    std::vector<std::string> positional;
    std::string dir;
    bool dirGiven = false;
    bool effectOnly = false;
    bool fxOnly = false;
};

// Returns an error text, empty when the words parsed.
std::string parseOptions(const Args& args, Options& o) {
    for (size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--dir") {
            if (i + 1 >= args.size() || args[i + 1].empty()) {
                return "--dir needs a folder";
            }
            o.dir = args[++i];
            o.dirGiven = true;
        } else if (a == "--effect") {
            o.effectOnly = true;
        } else if (a == "--fx") {
            o.fxOnly = true;
        } else if (a.size() > 1 && a[0] == '-' && a != "-") {
            return "unknown option '" + a + "'";
        } else {
            o.positional.push_back(a);
        }
    }
    if (o.effectOnly && o.fxOnly) {
        return "--effect and --fx exclude each other";
    }
    return {};
}

// The store for the options' folder; fails when an explicit folder is missing
// (a mistyped --dir must not quietly create a new settings folder).
std::optional<SettingsStore> openStore(const Options& o, const std::string& command, int& code) {
    if (o.dirGiven && !FileSystem::real().exists(o.dir)) {
        code = fail(command + ": folder not found: " + o.dir);
        return std::nullopt;
    }
    return SettingsStore(o.dirGiven ? o.dir : std::string());
}

// What the plug-in would see: the loaded document with the built-ins it would
// seed, without writing anything.
AppSettings effectiveSettings(const LoadReport& report) {
    AppSettings s = report.settings;
    seedBuiltIns(s, std::string());
    return s;
}

std::optional<std::string> readStdin() {
    std::string text;
    char buf[4096];
    size_t n = 0;
    while ((n = std::fread(buf, 1, sizeof buf, stdin)) > 0) {
        text.append(buf, n);
        if (text.size() > FileSystem::kMaxFileBytes) {
            return std::nullopt;
        }
    }
    return std::ferror(stdin) ? std::nullopt : std::optional<std::string>(text);
}

std::string savedAtText(const std::string& savedAt) {
    return savedAt.empty() ? std::string("not saved yet") : "saved " + savedAt;
}

int verify(const Options& o) {
    if (!o.positional.empty()) {
        return fail("settings verify: unexpected argument '" + o.positional.front() + "'", 2);
    }
    int code = 0;
    std::optional<SettingsStore> store = openStore(o, "settings verify", code);
    if (!store) {
        return code;
    }
    const LoadReport r = store->inspect();
    const AppSettings& s = r.settings;
    std::printf("folder: %s\n", store->folder().c_str());
    std::printf("settings.json: %s\n", describe(r.live));
    std::printf("settings.json.bak: %s\n", describe(r.backup));
    if (FileSystem::real().exists(store->tempPath())) {
        std::printf("settings.json.tmp: present (left by an unfinished save; harmless)\n");
    }
    if (FileSystem::real().exists(store->damagedPath())) {
        std::printf("settings.json.damaged: present (a damaged live file, kept aside so that "
                    "it never replaced the good backup)\n");
    }
    std::printf("loaded: %s\n", describe(r.source));
    std::printf("effect presets: %zu, sound-effect presets: %zu, key-assignment presets: %zu, "
                "diagnoses: %zu\n",
                s.presets.size(), s.soundFxPresets.size(), s.keyAssignPresets.size(),
                s.diagnosisHistory.size());
    std::fflush(stdout);

    if (r.source == LoadSource::Live) {
        return 0;
    }
    if (r.live == FileVerdict::Missing && r.backup == FileVerdict::Missing) {
        std::printf("no settings saved yet: the plug-in starts from defaults\n");
        return 0;
    }
    if (r.source == LoadSource::Backup) {
        return fail(std::string("settings verify: settings.json is unusable (") + describe(r.live) +
                    "); the backup is what loads");
    }
    return fail(std::string("settings verify: settings.json (") + describe(r.live) +
                ") and the backup (" + describe(r.backup) + ") are unusable; defaults load");
}

void listSection(const char* title, size_t count) {
    std::printf("%s (%zu):\n", title, count);
}

int list(const Options& o) {
    if (!o.positional.empty()) {
        return fail("presets list: unexpected argument '" + o.positional.front() + "'", 2);
    }
    int code = 0;
    std::optional<SettingsStore> store = openStore(o, "presets list", code);
    if (!store) {
        return code;
    }
    const LoadReport r = store->inspect();
    const AppSettings s = effectiveSettings(r);
    if (!o.fxOnly) {
        listSection("effect presets", s.presets.size());
        for (const SavedEffectPreset& p : s.presets) {
            std::printf("  %s  (%s%s)%s%s\n", p.name.c_str(), savedAtText(p.savedAt).c_str(),
                        p.recording ? ", recording" : "", p.description.empty() ? "" : "  ",
                        p.description.c_str());
        }
    }
    if (!o.effectOnly) {
        listSection("sound-effect presets", s.soundFxPresets.size());
        for (const SavedSoundFxPreset& p : s.soundFxPresets) {
            std::printf("  %s  (%s)%s%s\n", p.name.c_str(), savedAtText(p.savedAt).c_str(),
                        p.description.empty() ? "" : "  ", p.description.c_str());
        }
    }
    if (!o.effectOnly && !o.fxOnly) {
        listSection("key-assignment presets", s.keyAssignPresets.size());
        for (const KeyAssignPreset& p : s.keyAssignPresets) {
            std::printf("  %s  (%s)\n", p.name.c_str(), savedAtText(p.savedAt).c_str());
        }
    }
    std::fflush(stdout);
    if (r.source != LoadSource::Live && r.live != FileVerdict::Missing) {
        std::fprintf(stderr, "lumora-cli: note: settings.json is unusable (%s); listed the %s\n",
                     describe(r.live), describe(r.source));
    }
    return 0;
}

int exportPreset(const Options& o) {
    if (o.positional.size() != 2) {
        return fail("presets export: expected NAME FILE", 2);
    }
    const std::string& name = o.positional[0];
    const std::string& file = o.positional[1];
    int code = 0;
    std::optional<SettingsStore> store = openStore(o, "presets export", code);
    if (!store) {
        return code;
    }
    const AppSettings s = effectiveSettings(store->inspect());
    const SavedEffectPreset* effect = o.fxOnly ? nullptr : findEffectPreset(s, name);
    const SavedSoundFxPreset* fx = o.effectOnly ? nullptr : findSoundFxPreset(s, name);
    if (!effect && !fx) {
        return fail("presets export: no preset named '" + name + "'");
    }
    if (effect && fx) {
        return fail("presets export: '" + name +
                    "' is both an effect and a sound-effect preset; add --effect or --fx");
    }
    PresetBundle bundle;
    if (effect) {
        bundle.effectPresets.push_back(*effect);
    } else {
        bundle.soundFxPresets.push_back(*fx);
    }
    const std::string text = renderPresetBundle(bundle);
    if (file == "-") {
        std::fwrite(text.data(), 1, text.size(), stdout);
        return std::fflush(stdout) == 0 ? 0 : fail("presets export: cannot write to stdout");
    }
    if (!FileSystem::real().writeFile(file, text)) {
        return fail("presets export: cannot write " + file);
    }
    std::printf("exported %s preset '%s' to %s\n", effect ? "effect" : "sound-effect", name.c_str(),
                file.c_str());
    return 0;
}

int importPresets(const Options& o) {
    if (o.positional.size() != 1) {
        return fail("presets import: expected FILE", 2);
    }
    const std::string& file = o.positional[0];
    std::optional<std::string> text;
    if (file == "-") {
        text = readStdin();
    } else {
        text = FileSystem::real().readFile(file);
    }
    if (!text) {
        return fail("presets import: cannot read " + file);
    }
    PresetBundle bundle;
    std::string error;
    if (!parsePresetBundle(*text, bundle, error)) {
        return fail("presets import: " + file + ": " + error);
    }
    if (o.fxOnly) {
        bundle.effectPresets.clear();
    }
    if (o.effectOnly) {
        bundle.soundFxPresets.clear();
    }
    if (bundle.effectPresets.empty() && bundle.soundFxPresets.empty()) {
        return fail("presets import: " + file + ": no presets to import");
    }

    int code = 0;
    std::optional<SettingsStore> store = openStore(o, "presets import", code);
    if (!store) {
        return code;
    }
    const LoadReport r = store->inspect();
    if (r.live == FileVerdict::NewerVersion) {
        return fail("presets import: settings.json was written by a newer version; "
                    "not changing it");
    }
    if (r.source == LoadSource::Defaults &&
        (r.live != FileVerdict::Missing || r.backup != FileVerdict::Missing)) {
        // Saving now would push the damaged files out of the way for good.
        return fail(std::string("presets import: settings.json (") + describe(r.live) +
                    ") and its backup (" + describe(r.backup) +
                    ") are unusable; move them away first");
    }
    AppSettings s = r.settings;
    const std::string now = nowTimestamp();
    seedBuiltIns(s, now);
    std::vector<std::string> done;
    for (SavedEffectPreset& p : bundle.effectPresets) {
        done.push_back(std::string(findEffectPreset(s, p.name) ? "replaced" : "added") +
                       " effect preset '" + p.name + "'");
        p.savedAt = now;
        putEffectPreset(s, std::move(p));
    }
    for (SavedSoundFxPreset& p : bundle.soundFxPresets) {
        done.push_back(std::string(findSoundFxPreset(s, p.name) ? "replaced" : "added") +
                       " sound-effect preset '" + p.name + "'");
        p.savedAt = now;
        putSoundFxPreset(s, std::move(p));
    }
    if (!store->save(s)) {
        return fail("presets import: cannot save the settings in " + store->folder());
    }
    for (const std::string& line : done) {
        std::printf("%s\n", line.c_str());
    }
    return 0;
}

} // namespace

int runSettings(const Args& args) {
    if (args.empty() || args[0] != "verify") {
        return fail("settings: expected 'verify' (try --help)", 2);
    }
    Options o;
    if (const std::string e = parseOptions(Args(args.begin() + 1, args.end()), o); !e.empty()) {
        return fail("settings verify: " + e, 2);
    }
    return verify(o);
}

int runPresets(const Args& args) {
    if (args.empty()) {
        return fail("presets: expected list, export or import (try --help)", 2);
    }
    const std::string& sub = args[0];
    Options o;
    if (const std::string e = parseOptions(Args(args.begin() + 1, args.end()), o); !e.empty()) {
        return fail("presets " + sub + ": " + e, 2);
    }
    if (sub == "list") {
        return list(o);
    }
    if (sub == "export") {
        return exportPreset(o);
    }
    if (sub == "import") {
        return importPresets(o);
    }
    return fail("presets: unknown subcommand '" + sub + "' (try --help)", 2);
}

} // namespace Lumora::Cli
