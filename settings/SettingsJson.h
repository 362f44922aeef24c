#pragma once

#include "settings/AppSettings.h"
#include "settings/JsonValue.h"

#include <optional>
#include <string>

namespace Lumora {

// The mapping between the settings records and their JSON trees. Writing never
// clamps; reading never fails on content: a missing key, a key of the wrong type,
// a short array or an unknown enumeration string takes the record's default, and
// out-of-range values of the effect-preset groups are pulled into range.

// The whole document. fromJson is empty only when the root is not an object. A
// document without "version" is version 1, whose effect presets are dropped
// (their parameters meant something else then); a version above 2 gives the
// defaults, on purpose, as a successful result.
JsonValue toJson(const AppSettings& settings);
std::optional<AppSettings> fromJson(const JsonValue& root);

// The version a document declares: its "version" as an integer, 1 when missing.
int32_t documentVersion(const JsonValue& root);

// One element of "presets". Besides the groups "eq", "comp", "limiter" and "gate"
// the object carries the rest of the chain ("noise", "spectral", the two gains,
// the high cut and the knee) so that a voice survives a restart whole; files
// without those keys read them as the record's defaults.
JsonValue effectPresetToJson(const SavedEffectPreset& preset);
SavedEffectPreset effectPresetFromJson(const JsonValue& object);

// One element of "soundFxPresets".
JsonValue soundFxPresetToJson(const SavedSoundFxPreset& preset);
SavedSoundFxPreset soundFxPresetFromJson(const JsonValue& object);

// One key slot, and a whole set shaped like "keyAssignments".
JsonValue keyAssignmentToJson(const KeyAssignment& key);
KeyAssignment keyAssignmentFromJson(const JsonValue& object);
JsonValue keyAssignmentSetToJson(const KeyAssignmentSet& set);
// Reads "keys" (at most four, in order) and "defaultKey" into `set`; slots the
// object does not mention keep what `set` held.
void readKeyAssignmentSet(const JsonValue& object, KeyAssignmentSet& set);

// A diagnosis result as the history stores it. The file keeps one language: the
// Japanese texts (title as "message", advice as "hint", summary as "summary");
// reading fills the English fields with the same texts and marks the result valid.
JsonValue diagnosisResultToJson(const DiagnosisResult& result);
DiagnosisResult diagnosisResultFromJson(const JsonValue& object);
JsonValue diagnosisItemToJson(const DiagnosisItem& item);
DiagnosisItem diagnosisItemFromJson(const JsonValue& object);

// Enumerations and their exact (case-sensitive) strings.
const char* keyModeName(KeyMode mode);
KeyMode keyModeFromName(const std::string& name);  // Momentary only for "Momentary"
const char* micTypeName(int32_t micType);          // "Dynamic", "Condenser", "USB", "Unknown"
int32_t micTypeFromName(const std::string& name);  // 3 for anything unknown
const char* severityName(int32_t level);           // "OK", "Caution", "Warning"
int32_t severityFromName(const std::string& name); // 0 for anything unknown

// The current local time as "%Y-%m-%d %H:%M:%S".
std::string nowTimestamp();

} // namespace Lumora
