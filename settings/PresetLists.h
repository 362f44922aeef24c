#pragma once

#include "settings/AppSettings.h"

#include <string>

namespace Lumora {

// The list rules of the presets, on a document in memory. Names are compared as
// exact byte strings (case-sensitive, no trimming); within one list a name
// identifies one preset. SettingsStore wraps each in a load-change-save
// transaction; the seeding of the built-ins and the CLI's import use them directly.

// Replace the first preset of that name in place, else append. The caller sets
// savedAt.
void putEffectPreset(AppSettings& s, SavedEffectPreset preset);
void putSoundFxPreset(AppSettings& s, SavedSoundFxPreset preset);
void putKeyAssignPreset(AppSettings& s, KeyAssignPreset preset);

// Erase the first preset of that name; false when there is none.
bool eraseEffectPreset(AppSettings& s, const std::string& name);
bool eraseSoundFxPreset(AppSettings& s, const std::string& name);
bool eraseKeyAssignPreset(AppSettings& s, const std::string& name);

// Renames in place: the preset keeps its place and savedAt, and a different
// preset already under `to` is replaced. The references follow it: the slots of
// the current key assignment and of every key-assignment preset, and
// lastPresetName. False when there is no `from`, or `to` is empty or the same.
bool renameEffectPreset(AppSettings& s, const std::string& from, const std::string& to);
bool renameSoundFxPreset(AppSettings& s, const std::string& from, const std::string& to);
bool renameKeyAssignPreset(AppSettings& s, const std::string& from, const std::string& to);

// The first preset of that name, or null.
const SavedEffectPreset* findEffectPreset(const AppSettings& s, const std::string& name);
const SavedSoundFxPreset* findSoundFxPreset(const AppSettings& s, const std::string& name);
const KeyAssignPreset* findKeyAssignPreset(const AppSettings& s, const std::string& name);

// Newest first; the oldest entries beyond kMaxDiagnosisHistory are dropped.
void pushDiagnosisHistory(AppSettings& s, DiagnosisHistoryEntry entry);

void setAppFields(AppSettings& s, const AppFields& fields);
AppFields appFieldsOf(const AppSettings& s);

} // namespace Lumora
