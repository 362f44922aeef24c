#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "dsp/EffectPreset.h"
#include "dsp/SoundFxPreset.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace Lumora {

// Everything that outlives the host process: the records of the settings file.

// The user's snapshot of the cleaning chain.
struct SavedEffectPreset {
    std::string name;
    std::string description;
    std::string savedAt; // local time, "%Y-%m-%d %H:%M:%S"
    bool recording = false;
    EffectPreset preset;
};

// The user's snapshot of the voice-effects chain.
struct SavedSoundFxPreset {
    std::string name;
    std::string description;
    std::string savedAt;
    SoundFxPreset preset;
};

// Toggle: a press applies the slot until the next press. Momentary: the slot
// applies while its key is held.
enum class KeyMode : int32_t { Toggle = 0, Momentary = 1 };

// One key slot: what it applies and how it triggers.
struct KeyAssignment {
    KeyMode mode = KeyMode::Toggle;
    bool hasEffectPreset = false;
    bool hasSoundFxPreset = false;
    std::string effectPresetName;
    std::string soundFxPresetName;
    std::string keyName; // the slot's own label; empty means none
};

constexpr int kKeySlotCount = 4;

// The four arrow-key slots (up, down, left, right) and the default slot that is in
// force when no key is active.
struct KeyAssignmentSet {
    std::array<KeyAssignment, kKeySlotCount> keys{};
    KeyAssignment defaultKey;
};

struct KeyAssignPreset {
    std::string name;
    std::string savedAt;
    KeyAssignmentSet assignments;
    // The assignment Lumora installed, whatever the user has since renamed it:
    // while it exists the built-ins are not seeded again.
    bool builtIn = false;
};

struct DiagnosisHistoryEntry {
    std::string timestamp; // local time, "%Y-%m-%d %H:%M:%S"
    bool presetApplied = false;
    DiagnosisResult result;
};

constexpr int kSettingsVersion = 2;
constexpr size_t kMaxDiagnosisHistory = 20;

struct AppSettings {
    int32_t version = kSettingsVersion;
    bool isRecordingMode = false;
    std::string lastPresetName;
    float uiScale = 1.0f;
    bool showNumericValues = true;
    std::vector<SavedEffectPreset> presets;
    std::vector<SavedSoundFxPreset> soundFxPresets;
    KeyAssignmentSet keyAssignments;
    std::vector<KeyAssignPreset> keyAssignPresets;
    std::vector<DiagnosisHistoryEntry> diagnosisHistory; // newest first
};

// The four application settings, saved together.
struct AppFields {
    bool isRecordingMode = false;
    std::string lastPresetName;
    float uiScale = 1.0f;
    bool showNumericValues = true;
};

} // namespace Lumora
