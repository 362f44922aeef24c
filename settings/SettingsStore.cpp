#include "settings/SettingsStore.h"

#include "platform/Platform.h"
#include "settings/BuiltInPresets.h"
#include "settings/JsonText.h"
#include "settings/PresetLists.h"
#include "settings/SettingsJson.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>

namespace Lumora {

namespace {

constexpr std::string_view kChecksumTag = "#LMSUM:";
constexpr size_t kChecksumDigits = 8;

bool usable(FileVerdict v) {
    return v == FileVerdict::Ok || v == FileVerdict::NewerVersion;
}

std::string defaultFolder() {
    if (std::optional<std::string> over = Platform::environment("LUMORA_SETTINGS_DIR")) {
        return *over;
    }
    const std::string base = Platform::userConfigFolder();
    return base.empty() ? std::string(".") : base + Platform::pathSeparator() + "Lumora";
}

} // namespace

const char* describe(FileVerdict verdict) {
    switch (verdict) {
    case FileVerdict::Ok:
        return "ok";
    case FileVerdict::NewerVersion:
        return "written by a newer version (left untouched; nothing is saved over it)";
    case FileVerdict::NotTried:
        return "not needed";
    case FileVerdict::Missing:
        return "missing";
    case FileVerdict::Unreadable:
        return "cannot be read";
    case FileVerdict::NoChecksumLine:
        return "no checksum line";
    case FileVerdict::BadChecksumLine:
        return "checksum line is not hexadecimal";
    case FileVerdict::ChecksumMismatch:
        return "checksum mismatch";
    case FileVerdict::NotParseable:
        return "not valid JSON";
    case FileVerdict::NotAnObject:
        return "JSON root is not an object";
    }
    return "unknown";
}

const char* describe(LoadSource source) {
    switch (source) {
    case LoadSource::Live:
        return "live";
    case LoadSource::Backup:
        return "backup";
    case LoadSource::Defaults:
        return "defaults";
    }
    return "unknown";
}

SettingsStore::SettingsStore(std::string folder, FileSystem& fs)
    : folder_(folder.empty() ? defaultFolder() : std::move(folder)), fs_(&fs) {}

std::string SettingsStore::settingsPath() const {
    return folder_ + Platform::pathSeparator() + "settings.json";
}

std::string SettingsStore::tempPath() const {
    return settingsPath() + ".tmp";
}

std::string SettingsStore::backupPath() const {
    return settingsPath() + ".bak";
}

uint32_t SettingsStore::checksum(std::string_view body) {
    uint32_t h = 5381;
    for (const char c : body) {
        h = h * 33u + static_cast<unsigned char>(c);
    }
    return h;
}

std::string SettingsStore::addChecksum(std::string_view body) {
    char line[32];
    const int n = std::snprintf(line, sizeof line, "#LMSUM:%08X\n",
                                static_cast<unsigned int>(checksum(body)));
    std::string text(line, static_cast<size_t>(n));
    text.append(body);
    return text;
}

FileVerdict SettingsStore::checkAndStrip(std::string& text) {
    const size_t newline = text.find('\n');
    if (newline == std::string::npos || newline < kChecksumTag.size() ||
        text.compare(0, kChecksumTag.size(), kChecksumTag) != 0 ||
        newline - kChecksumTag.size() != kChecksumDigits) {
        return FileVerdict::NoChecksumLine;
    }
    // The standard unsigned conversion in base 16: leading white space, a sign
    // and "0x" are tolerated, a conversion that reads nothing or overflows is not.
    const std::string digits = text.substr(kChecksumTag.size(), kChecksumDigits);
    char* end = nullptr;
    errno = 0;
    const unsigned long stored = std::strtoul(digits.c_str(), &end, 16);
    if (end == digits.c_str() || errno == ERANGE) {
        return FileVerdict::BadChecksumLine;
    }
    const std::string_view body = std::string_view(text).substr(newline + 1);
    if (stored != checksum(body)) {
        return FileVerdict::ChecksumMismatch;
    }
    text.erase(0, newline + 1);
    return FileVerdict::Ok;
}

bool SettingsStore::verifyAndStrip(std::string& text) {
    return checkAndStrip(text) == FileVerdict::Ok;
}

FileVerdict SettingsStore::readDocument(const std::optional<std::string>& text, bool exists,
                                        AppSettings& out) {
    if (!text) {
        return exists ? FileVerdict::Unreadable : FileVerdict::Missing;
    }
    std::string body = *text;
    if (const FileVerdict v = checkAndStrip(body); v != FileVerdict::Ok) {
        return v;
    }
    const JsonParseResult parsed = parseJson(body);
    if (!parsed.ok) {
        return FileVerdict::NotParseable;
    }
    std::optional<AppSettings> settings = fromJson(parsed.value);
    if (!settings) {
        return FileVerdict::NotAnObject;
    }
    out = std::move(*settings);
    return documentVersion(parsed.value) > kSettingsVersion ? FileVerdict::NewerVersion
                                                            : FileVerdict::Ok;
}

FileVerdict SettingsStore::readOne(const std::string& path, AppSettings& out) const {
    const std::optional<std::string> text = fs_->readFile(path);
    return readDocument(text, text.has_value() || fs_->exists(path), out);
}

LoadReport SettingsStore::inspect() const {
    LoadReport report;
    report.live = readOne(settingsPath(), report.settings);
    if (usable(report.live)) {
        report.source = LoadSource::Live;
        return report;
    }
    report.backup = readOne(backupPath(), report.settings);
    if (usable(report.backup)) {
        report.source = LoadSource::Backup;
        return report;
    }
    report.settings = AppSettings{};
    report.source = LoadSource::Defaults;
    return report;
}

AppSettings SettingsStore::load() {
    AppSettings settings = inspect().settings;
    if (seedBuiltIns(settings, nowTimestamp())) {
        save(settings); // a failed seeding save changes nothing; the next load retries
    }
    return settings;
}

std::string SettingsStore::damagedPath() const {
    return settingsPath() + ".damaged";
}

bool SettingsStore::heldByNewerVersion() const {
    AppSettings ignored;
    return readOne(settingsPath(), ignored) == FileVerdict::NewerVersion;
}

bool SettingsStore::save(const AppSettings& settings) {
    // A document from a newer Lumora stays exactly as it is: writing ours over it
    // would throw away whatever that version keeps that we cannot read. The user
    // is told (heldByNewerVersion) and nothing is saved until they decide.
    AppSettings current;
    const FileVerdict live = readOne(settingsPath(), current);
    if (live == FileVerdict::NewerVersion || !fs_->makeFolders(folder_)) {
        return false;
    }
    const std::string text = addChecksum(renderJson(toJson(settings)));
    const std::string temp = tempPath();
    // The new text must be on the disk, and read back intact, before the live file
    // is touched: a crash or power loss at any later point leaves either the
    // previous document or the new one. The temporary file is always created
    // afresh, so a link or a FIFO left at its name is neither followed nor waited on.
    if (!fs_->writeNewFile(temp, text) || !fs_->syncFile(temp)) {
        return false;
    }
    std::optional<std::string> back = fs_->readFile(temp);
    if (!back || !verifyAndStrip(*back) || parseJson(*back).value.isNull()) {
        return false;
    }
    fs_->syncFolder(folder_); // the temporary file's entry; best effort
    // The live file becomes the backup only when it was good. A damaged one (the
    // document then came from the backup) would otherwise destroy the last good
    // copy; it is kept aside under its own name for whoever wants to look at it.
    if (live == FileVerdict::Ok) {
        fs_->renameFile(settingsPath(), backupPath());
    } else if (live != FileVerdict::Missing) {
        fs_->renameFile(settingsPath(), damagedPath());
    }
    if (!fs_->renameFile(temp, settingsPath())) {
        return false;
    }
    // Only once the renames are durable is the new document safe from a power
    // loss; a failure here leaves it in place but says it may not last.
    return fs_->syncFolder(folder_);
}

std::optional<std::string> SettingsStore::readFile(const std::string& path) const {
    return fs_->readFile(path);
}

bool SettingsStore::writeFile(const std::string& path, std::string_view text) {
    return fs_->writeFile(path, text);
}

bool SettingsStore::renameFile(const std::string& from, const std::string& to) {
    return fs_->renameFile(from, to);
}

bool SettingsStore::saveEffectPreset(SavedEffectPreset preset) {
    AppSettings s = load();
    preset.savedAt = nowTimestamp();
    putEffectPreset(s, std::move(preset));
    return save(s);
}

bool SettingsStore::saveSoundFxPreset(SavedSoundFxPreset preset) {
    AppSettings s = load();
    preset.savedAt = nowTimestamp();
    putSoundFxPreset(s, std::move(preset));
    return save(s);
}

bool SettingsStore::saveKeyAssignPreset(const std::string& name,
                                        const KeyAssignmentSet& assignments) {
    AppSettings s = load();
    putKeyAssignPreset(s, KeyAssignPreset{name, nowTimestamp(), assignments});
    return save(s);
}

bool SettingsStore::deleteEffectPreset(const std::string& name) {
    AppSettings s = load();
    return eraseEffectPreset(s, name) && save(s);
}

bool SettingsStore::deleteSoundFxPreset(const std::string& name) {
    AppSettings s = load();
    return eraseSoundFxPreset(s, name) && save(s);
}

bool SettingsStore::deleteKeyAssignPreset(const std::string& name) {
    AppSettings s = load();
    return eraseKeyAssignPreset(s, name) && save(s);
}

bool SettingsStore::saveKeyAssignments(const KeyAssignmentSet& assignments) {
    AppSettings s = load();
    s.keyAssignments = assignments;
    return save(s);
}

bool SettingsStore::saveAppFields(const AppFields& fields) {
    AppSettings s = load();
    setAppFields(s, fields);
    return save(s);
}

bool SettingsStore::addDiagnosisHistory(DiagnosisHistoryEntry entry) {
    AppSettings s = load();
    pushDiagnosisHistory(s, std::move(entry));
    return save(s);
}

bool SettingsStore::renameEffectPreset(const std::string& from, const std::string& to) {
    AppSettings s = load();
    return Lumora::renameEffectPreset(s, from, to) && save(s);
}

bool SettingsStore::renameSoundFxPreset(const std::string& from, const std::string& to) {
    AppSettings s = load();
    return Lumora::renameSoundFxPreset(s, from, to) && save(s);
}

bool SettingsStore::renameKeyAssignPreset(const std::string& from, const std::string& to) {
    AppSettings s = load();
    return Lumora::renameKeyAssignPreset(s, from, to) && save(s);
}

bool SettingsStore::markDiagnosisApplied(const std::string& timestamp) {
    AppSettings s = load();
    for (DiagnosisHistoryEntry& entry : s.diagnosisHistory) {
        if (entry.timestamp == timestamp) {
            if (entry.presetApplied) {
                return true;
            }
            entry.presetApplied = true;
            return save(s);
        }
    }
    return false;
}

std::optional<SavedEffectPreset> SettingsStore::findEffectPreset(const std::string& name) {
    const AppSettings s = load();
    const SavedEffectPreset* p = Lumora::findEffectPreset(s, name);
    return p ? std::optional<SavedEffectPreset>(*p) : std::nullopt;
}

std::optional<SavedSoundFxPreset> SettingsStore::findSoundFxPreset(const std::string& name) {
    const AppSettings s = load();
    const SavedSoundFxPreset* p = Lumora::findSoundFxPreset(s, name);
    return p ? std::optional<SavedSoundFxPreset>(*p) : std::nullopt;
}

} // namespace Lumora
