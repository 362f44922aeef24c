#pragma once

#include "settings/AppSettings.h"
#include "settings/FileSystem.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Lumora {

// What a settings file turned out to be when it was read.
enum class FileVerdict {
    Ok,               // read and used
    NewerVersion,     // a document from a newer program: used as the defaults
    NotTried,         // not needed (the live file was usable)
    Missing,          // no such file
    Unreadable,       // exists but cannot be read (or is absurdly large)
    NoChecksumLine,   // first line is not "#LMSUM:" with eight digits
    BadChecksumLine,  // the eight characters are not a hexadecimal number
    ChecksumMismatch, // the body does not match its checksum
    NotParseable,     // the body is not JSON the parser accepts
    NotAnObject,      // the JSON root is not an object
};

// A short English phrase for the verdict ("checksum mismatch").
const char* describe(FileVerdict verdict);

enum class LoadSource { Live, Backup, Defaults };
const char* describe(LoadSource source);

// The outcome of reading the folder: the document and where it came from.
struct LoadReport {
    AppSettings settings;
    LoadSource source = LoadSource::Defaults;
    FileVerdict live = FileVerdict::Missing;
    FileVerdict backup = FileVerdict::NotTried;
};

// Load-change-save access to the settings file "settings.json" in one folder.
// The file starts with a djb2 checksum line; a save goes through
// "settings.json.tmp", which is flushed to the disk and read back before it
// replaces the live file, and the replaced file is kept as "settings.json.bak"
// when it was good, else as "settings.json.damaged" (the backup it was loaded
// from survives). Loading falls back to the backup and then to the defaults. A
// live file from a newer version is never written over. Nothing is cached: every
// operation reads the file afresh.
class SettingsStore {
public:
    // An empty folder means $LUMORA_SETTINGS_DIR when set, else the "Lumora"
    // folder in the user's application-data folder (XDG configuration folder on
    // POSIX), else ".". Tests pass their own file system.
    explicit SettingsStore(std::string folder, FileSystem& fs = FileSystem::real());

    const std::string& folder() const { return folder_; }
    std::string settingsPath() const;
    std::string tempPath() const;
    std::string backupPath() const;
    std::string damagedPath() const;

    // True when the live file comes from a newer version of Lumora: it is left
    // untouched and every save returns false, so the caller can say why.
    bool heldByNewerVersion() const;

    // The document, with the built-ins seeded (and then saved once, whatever the
    // save's outcome). Never fails: defaults when nothing usable is on disk.
    AppSettings load();
    // Reads the live file, else the backup, without seeding and without writing:
    // for inspection (the CLI) only.
    LoadReport inspect() const;
    // True when the new file is in place and flushed to the disk. On false the
    // live file and the backup hold what they held before, except when one of the
    // last steps failed: after a failed final rename the backup holds the previous
    // document and the next load takes it; after a failed final flush the new file
    // is in place but may not survive a power loss.
    bool save(const AppSettings& settings);

    // Preset operations: each is one load-change-save transaction and returns the
    // save's result. A saved preset takes the current time as savedAt and replaces
    // the first preset of its name in place, else goes to the end. Deleting a name
    // that does not exist writes nothing and returns false.
    bool saveEffectPreset(SavedEffectPreset preset);
    bool saveSoundFxPreset(SavedSoundFxPreset preset);
    bool saveKeyAssignPreset(const std::string& name, const KeyAssignmentSet& assignments);
    bool deleteEffectPreset(const std::string& name);
    bool deleteSoundFxPreset(const std::string& name);
    bool deleteKeyAssignPreset(const std::string& name);
    bool saveKeyAssignments(const KeyAssignmentSet& assignments);
    // Renames in one transaction, references following (PresetLists.h).
    bool renameEffectPreset(const std::string& from, const std::string& to);
    bool renameSoundFxPreset(const std::string& from, const std::string& to);
    bool renameKeyAssignPreset(const std::string& from, const std::string& to);
    bool saveAppFields(const AppFields& fields);
    // Newest first; at most 20 entries are kept.
    bool addDiagnosisHistory(DiagnosisHistoryEntry entry);
    // Records that the preset recommended by the diagnosis of that timestamp was
    // applied; false when no such entry is kept.
    bool markDiagnosisApplied(const std::string& timestamp);

    // Look-ups on a fresh load (e.g. the filter restoring lastPresetName).
    std::optional<SavedEffectPreset> findEffectPreset(const std::string& name);
    std::optional<SavedSoundFxPreset> findSoundFxPreset(const std::string& name);

    // The file primitives, through the store's file system.
    std::optional<std::string> readFile(const std::string& path) const;
    bool writeFile(const std::string& path, std::string_view text);
    bool renameFile(const std::string& from, const std::string& to);

    // The file layout: "#LMSUM:" + eight upper-case hex digits + "\n" + body.
    static uint32_t checksum(std::string_view body); // djb2: h = h * 33 + byte, from 5381
    static std::string addChecksum(std::string_view body);
    // True, and `text` replaced by its body, when the checksum line is present and
    // matches; otherwise false with `text` unchanged.
    static bool verifyAndStrip(std::string& text);
    // The same with the reason: Ok, NoChecksumLine, BadChecksumLine or
    // ChecksumMismatch.
    static FileVerdict checkAndStrip(std::string& text);

    // Reads one file's text into a document (checksum, parse, records).
    static FileVerdict readDocument(const std::optional<std::string>& text, bool exists,
                                    AppSettings& out);

private:
    FileVerdict readOne(const std::string& path, AppSettings& out) const;

    std::string folder_;
    FileSystem* fs_;
};

} // namespace Lumora
