// The settings document as a whole: its root, key assignments, diagnosis history
// and the enumeration strings. The preset objects are in PresetJson.cpp.

#include "settings/SettingsJson.h"

#include "platform/Platform.h"

#include <ctime>

namespace Lumora {

namespace {

void readKeySlots(const JsonValue& keys, KeyAssignmentSet& set) {
    const auto& elements = keys.elements();
    for (size_t i = 0; i < elements.size() && i < set.keys.size(); ++i) {
        set.keys[i] = keyAssignmentFromJson(elements[i]);
    }
}

JsonValue keyAssignPresetToJson(const KeyAssignPreset& preset) {
    JsonValue o = JsonValue::object();
    o.set("name", preset.name);
    o.set("savedAt", preset.savedAt);
    o.set("assignments", keyAssignmentSetToJson(preset.assignments));
    if (preset.builtIn) {
        o.set("builtIn", true);
    }
    return o;
}

KeyAssignPreset keyAssignPresetFromJson(const JsonValue& o) {
    KeyAssignPreset preset;
    preset.name = asString(member(o, "name"), "");
    preset.savedAt = asString(member(o, "savedAt"), "");
    readKeyAssignmentSet(member(o, "assignments"), preset.assignments);
    preset.builtIn = asBool(member(o, "builtIn"), false);
    return preset;
}

JsonValue historyEntryToJson(const DiagnosisHistoryEntry& entry) {
    JsonValue o = JsonValue::object();
    o.set("timestamp", entry.timestamp);
    o.set("presetApplied", entry.presetApplied);
    o.set("result", diagnosisResultToJson(entry.result));
    return o;
}

DiagnosisHistoryEntry historyEntryFromJson(const JsonValue& o) {
    DiagnosisHistoryEntry entry;
    entry.timestamp = asString(member(o, "timestamp"), "");
    entry.presetApplied = asBool(member(o, "presetApplied"), false);
    entry.result = diagnosisResultFromJson(member(o, "result"));
    return entry;
}

} // namespace

const char* keyModeName(KeyMode mode) {
    return mode == KeyMode::Momentary ? "Momentary" : "Toggle";
}

KeyMode keyModeFromName(const std::string& name) {
    return name == "Momentary" ? KeyMode::Momentary : KeyMode::Toggle;
}

const char* micTypeName(int32_t micType) {
    switch (micType) {
    case kMicDynamic:
        return "Dynamic";
    case kMicCondenser:
        return "Condenser";
    case kMicUsb:
        return "USB";
    default:
        return "Unknown";
    }
}

int32_t micTypeFromName(const std::string& name) {
    if (name == "Dynamic") {
        return kMicDynamic;
    }
    if (name == "Condenser") {
        return kMicCondenser;
    }
    if (name == "USB") {
        return kMicUsb;
    }
    return kMicUnknown;
}

const char* severityName(int32_t level) {
    switch (level) {
    case kLevelCaution:
        return "Caution";
    case kLevelWarning:
        return "Warning";
    default:
        return "OK";
    }
}

int32_t severityFromName(const std::string& name) {
    if (name == "Warning") {
        return kLevelWarning;
    }
    if (name == "Caution") {
        return kLevelCaution;
    }
    return kLevelGood;
}

JsonValue keyAssignmentToJson(const KeyAssignment& key) {
    JsonValue o = JsonValue::object();
    o.set("mode", keyModeName(key.mode));
    o.set("hasEffectPreset", key.hasEffectPreset);
    o.set("hasSoundFxPreset", key.hasSoundFxPreset);
    o.set("effectPresetName", key.effectPresetName);
    o.set("soundFxPresetName", key.soundFxPresetName);
    o.set("keyName", key.keyName);
    return o;
}

KeyAssignment keyAssignmentFromJson(const JsonValue& o) {
    KeyAssignment key;
    key.mode = keyModeFromName(asString(member(o, "mode"), "Toggle"));
    key.hasEffectPreset = asBool(member(o, "hasEffectPreset"), false);
    key.hasSoundFxPreset = asBool(member(o, "hasSoundFxPreset"), false);
    key.effectPresetName = asString(member(o, "effectPresetName"), "");
    key.soundFxPresetName = asString(member(o, "soundFxPresetName"), "");
    key.keyName = asString(member(o, "keyName"), "");
    return key;
}

JsonValue keyAssignmentSetToJson(const KeyAssignmentSet& set) {
    JsonValue keys = JsonValue::array();
    for (const KeyAssignment& key : set.keys) {
        keys.push(keyAssignmentToJson(key));
    }
    JsonValue o = JsonValue::object();
    o.set("keys", std::move(keys));
    o.set("defaultKey", keyAssignmentToJson(set.defaultKey));
    return o;
}

void readKeyAssignmentSet(const JsonValue& o, KeyAssignmentSet& set) {
    readKeySlots(member(o, "keys"), set);
    const JsonValue& defaultKey = member(o, "defaultKey");
    if (!defaultKey.isNull()) {
        set.defaultKey = keyAssignmentFromJson(defaultKey);
    }
}

JsonValue diagnosisItemToJson(const DiagnosisItem& item) {
    JsonValue o = JsonValue::object();
    o.set("key", item.key);
    o.set("status", severityName(item.level));
    o.set("message", item.titleJa);
    o.set("hint", item.adviceJa);
    o.set("valueDb", item.value);
    return o;
}

DiagnosisItem diagnosisItemFromJson(const JsonValue& o) {
    DiagnosisItem item;
    item.key = asString(member(o, "key"), "");
    item.level = severityFromName(asString(member(o, "status"), ""));
    item.titleJa = asString(member(o, "message"), "");
    item.adviceJa = asString(member(o, "hint"), "");
    // One language is kept; a missing English text falls back to the Japanese one.
    item.titleEn = item.titleJa;
    item.adviceEn = item.adviceJa;
    item.value = asFloat(member(o, "valueDb"), -96.0f);
    return item;
}

JsonValue diagnosisResultToJson(const DiagnosisResult& result) {
    JsonValue items = JsonValue::array();
    for (const DiagnosisItem& item : result.items) {
        items.push(diagnosisItemToJson(item));
    }
    JsonValue o = JsonValue::object();
    o.set("overall", severityName(result.overall));
    o.set("micType", micTypeName(result.micType));
    o.set("summary", result.summaryJa);
    o.set("items", std::move(items));
    return o;
}

DiagnosisResult diagnosisResultFromJson(const JsonValue& o) {
    DiagnosisResult result;
    result.overall = severityFromName(asString(member(o, "overall"), ""));
    result.micType = micTypeFromName(asString(member(o, "micType"), ""));
    result.summaryJa = asString(member(o, "summary"), "");
    result.summaryEn = result.summaryJa;
    for (const JsonValue& item : member(o, "items").elements()) {
        result.items.push_back(diagnosisItemFromJson(item));
    }
    result.valid = 1;
    return result;
}

int32_t documentVersion(const JsonValue& root) {
    return asInt(member(root, "version"), 1);
}

JsonValue toJson(const AppSettings& s) {
    JsonValue root = JsonValue::object();
    root.set("version", kSettingsVersion);

    JsonValue app = JsonValue::object();
    app.set("isRecordingMode", s.isRecordingMode);
    app.set("lastPresetName", s.lastPresetName);
    app.set("uiScale", s.uiScale);
    app.set("showNumericValues", s.showNumericValues);
    root.set("settings", std::move(app));

    JsonValue presets = JsonValue::array();
    for (const SavedEffectPreset& p : s.presets) {
        presets.push(effectPresetToJson(p));
    }
    root.set("presets", std::move(presets));

    JsonValue fx = JsonValue::array();
    for (const SavedSoundFxPreset& p : s.soundFxPresets) {
        fx.push(soundFxPresetToJson(p));
    }
    root.set("soundFxPresets", std::move(fx));

    root.set("keyAssignments", keyAssignmentSetToJson(s.keyAssignments));

    JsonValue keyPresets = JsonValue::array();
    for (const KeyAssignPreset& p : s.keyAssignPresets) {
        keyPresets.push(keyAssignPresetToJson(p));
    }
    root.set("keyAssignPresets", std::move(keyPresets));

    JsonValue history = JsonValue::array();
    for (const DiagnosisHistoryEntry& e : s.diagnosisHistory) {
        history.push(historyEntryToJson(e));
    }
    root.set("diagnosisHistory", std::move(history));
    return root;
}

std::optional<AppSettings> fromJson(const JsonValue& root) {
    if (!root.isObject()) {
        return std::nullopt;
    }
    AppSettings s;
    const int32_t version = documentVersion(root);
    if (version > kSettingsVersion) {
        // Written by a newer program: its meaning is unknown, so start afresh
        // rather than misread it.
        return s;
    }

    const JsonValue& app = member(root, "settings");
    s.isRecordingMode = asBool(member(app, "isRecordingMode"), false);
    s.lastPresetName = asString(member(app, "lastPresetName"), "");
    s.uiScale = asFloat(member(app, "uiScale"), 1.0f);
    s.showNumericValues = asBool(member(app, "showNumericValues"), true);

    for (const JsonValue& p : member(root, "presets").elements()) {
        s.presets.push_back(effectPresetFromJson(p));
    }
    for (const JsonValue& p : member(root, "soundFxPresets").elements()) {
        s.soundFxPresets.push_back(soundFxPresetFromJson(p));
    }
    const JsonValue& keys = member(root, "keyAssignments");
    if (!keys.isNull()) {
        readKeyAssignmentSet(keys, s.keyAssignments);
    }
    for (const JsonValue& p : member(root, "keyAssignPresets").elements()) {
        s.keyAssignPresets.push_back(keyAssignPresetFromJson(p));
    }
    const auto& history = member(root, "diagnosisHistory").elements();
    for (size_t i = 0; i < history.size() && i < kMaxDiagnosisHistory; ++i) {
        s.diagnosisHistory.push_back(historyEntryFromJson(history[i]));
    }

    if (version < kSettingsVersion) {
        // Effect presets of the first version meant other parameters; keeping them
        // would make old voices sound wrong.
        s.presets.clear();
    }
    s.version = kSettingsVersion;
    return s;
}

std::string nowTimestamp() {
    std::tm local{};
    if (!Platform::localTime(std::time(nullptr), local)) {
        return {};
    }
    char buf[32];
    const size_t n = std::strftime(buf, sizeof buf, "%Y-%m-%d %H:%M:%S", &local);
    return std::string(buf, n);
}

} // namespace Lumora
