#include "settings/PresetLists.h"

#include "settings/BuiltInPresets.h"

#include <algorithm>
#include <vector>

namespace Lumora {

namespace {

template <typename T>
auto findByName(std::vector<T>& list, const std::string& name) {
    return std::find_if(list.begin(), list.end(), [&](const T& p) { return p.name == name; });
}

template <typename T>
const T* findIn(const std::vector<T>& list, const std::string& name) {
    const auto it =
        std::find_if(list.begin(), list.end(), [&](const T& p) { return p.name == name; });
    return it == list.end() ? nullptr : &*it;
}

template <typename T>
void put(std::vector<T>& list, T preset) {
    const auto it = findByName(list, preset.name);
    if (it != list.end()) {
        *it = std::move(preset); // a replaced preset keeps its place
    } else {
        list.push_back(std::move(preset));
    }
}

template <typename T>
bool erase(std::vector<T>& list, const std::string& name) {
    const auto it = findByName(list, name);
    if (it == list.end()) {
        return false;
    }
    list.erase(it);
    return true;
}

template <typename T>
T* renameIn(std::vector<T>& list, const std::string& from, const std::string& to) {
    if (from == to || to.empty() || findByName(list, from) == list.end()) {
        return nullptr;
    }
    erase(list, to); // the user agreed to replace it
    T& preset = *findByName(list, from);
    preset.name = to;
    return &preset;
}

// Every key slot that can name a preset: the current assignment's and those of
// each key-assignment preset, default slots included.
template <typename F>
void forEachSlot(AppSettings& s, F f) {
    auto inSet = [&f](KeyAssignmentSet& set) {
        for (KeyAssignment& key : set.keys) {
            f(key);
        }
        f(set.defaultKey);
    };
    inSet(s.keyAssignments);
    for (KeyAssignPreset& p : s.keyAssignPresets) {
        inSet(p.assignments);
    }
}

} // namespace

bool renameEffectPreset(AppSettings& s, const std::string& from, const std::string& to) {
    SavedEffectPreset* p = renameIn(s.presets, from, to);
    if (!p) {
        return false;
    }
    p->preset.name = to;
    forEachSlot(s, [&](KeyAssignment& key) {
        if (key.hasEffectPreset && key.effectPresetName == from) {
            key.effectPresetName = to;
        }
    });
    if (s.lastPresetName == from) {
        s.lastPresetName = to;
    }
    return true;
}

bool renameSoundFxPreset(AppSettings& s, const std::string& from, const std::string& to) {
    if (!renameIn(s.soundFxPresets, from, to)) {
        return false;
    }
    forEachSlot(s, [&](KeyAssignment& key) {
        if (key.hasSoundFxPreset && key.soundFxPresetName == from) {
            key.soundFxPresetName = to;
        }
    });
    return true;
}

bool renameKeyAssignPreset(AppSettings& s, const std::string& from, const std::string& to) {
    KeyAssignPreset* p = renameIn(s.keyAssignPresets, from, to);
    if (!p) {
        return false;
    }
    // A settings file from before the flag knows the built-in by its name only.
    p->builtIn = p->builtIn || from == kDefaultKeyAssignPresetName;
    return true;
}

void putEffectPreset(AppSettings& s, SavedEffectPreset preset) {
    put(s.presets, std::move(preset));
}

void putSoundFxPreset(AppSettings& s, SavedSoundFxPreset preset) {
    put(s.soundFxPresets, std::move(preset));
}

void putKeyAssignPreset(AppSettings& s, KeyAssignPreset preset) {
    put(s.keyAssignPresets, std::move(preset));
}

bool eraseEffectPreset(AppSettings& s, const std::string& name) {
    return erase(s.presets, name);
}

bool eraseSoundFxPreset(AppSettings& s, const std::string& name) {
    return erase(s.soundFxPresets, name);
}

bool eraseKeyAssignPreset(AppSettings& s, const std::string& name) {
    return erase(s.keyAssignPresets, name);
}

const SavedEffectPreset* findEffectPreset(const AppSettings& s, const std::string& name) {
    return findIn(s.presets, name);
}

const SavedSoundFxPreset* findSoundFxPreset(const AppSettings& s, const std::string& name) {
    return findIn(s.soundFxPresets, name);
}

const KeyAssignPreset* findKeyAssignPreset(const AppSettings& s, const std::string& name) {
    return findIn(s.keyAssignPresets, name);
}

void pushDiagnosisHistory(AppSettings& s, DiagnosisHistoryEntry entry) {
    s.diagnosisHistory.insert(s.diagnosisHistory.begin(), std::move(entry));
    if (s.diagnosisHistory.size() > kMaxDiagnosisHistory) {
        s.diagnosisHistory.resize(kMaxDiagnosisHistory);
    }
}

void setAppFields(AppSettings& s, const AppFields& fields) {
    s.isRecordingMode = fields.isRecordingMode;
    s.lastPresetName = fields.lastPresetName;
    s.uiScale = fields.uiScale;
    s.showNumericValues = fields.showNumericValues;
}

AppFields appFieldsOf(const AppSettings& s) {
    return {s.isRecordingMode, s.lastPresetName, s.uiScale, s.showNumericValues};
}

} // namespace Lumora
