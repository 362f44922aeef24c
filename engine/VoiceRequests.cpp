#include "engine/VoiceRequests.h"

#include "engine/FilterEngine.h"
#include "settings/BuiltInPresets.h"
#include "settings/PresetLists.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"

#include <optional>

namespace Lumora {

namespace {

constexpr const char* kSlotNames[kKeySlotCount] = {"up", "down", "left", "right"};

int slotNamed(const std::string& name) {
    for (int i = 0; i < kKeySlotCount; ++i) {
        if (name == kSlotNames[i]) {
            return i;
        }
    }
    return kNoSlot;
}

// A member that must be a string when present: false (with `error`) when it is
// something else, or missing while `required`.
bool readString(const JsonValue& data, const char* key, bool required, std::string& out,
                std::string& error) {
    const JsonValue& v = member(data, key);
    if (v.isString()) {
        out = v.stringValue();
        return true;
    }
    if (v.isNull() && !required) {
        return true;
    }
    error = std::string("\"") + key + "\" must be a string";
    return false;
}

std::optional<SavedSoundFxPreset> builtInVoice(const std::string& name) {
    for (SavedSoundFxPreset& p : builtInSoundFxPresets()) {
        if (p.name == name) {
            return p;
        }
    }
    return std::nullopt;
}

JsonValue slotJson(const KeyAssignment& key) {
    JsonValue o = JsonValue::object();
    o.set("name", slotDisplayName(key));
    o.set("trigger", effectiveMode(key) == KeyMode::Toggle ? "toggle" : "momentary");
    if (key.hasEffectPreset) {
        o.set("effectPreset", key.effectPresetName);
    }
    if (key.hasSoundFxPreset) {
        o.set("soundFxPreset", key.soundFxPresetName);
    }
    return o;
}

} // namespace

VoiceRequests::VoiceRequests(Finder finder, SettingsStore& store)
    : finder_(std::move(finder)), store_(store) {}

JsonValue VoiceRequests::error(const std::string& message) {
    JsonValue o = JsonValue::object();
    o.set("error", message);
    return o;
}

JsonValue VoiceRequests::handle(const std::string& request, const JsonValue& data) {
    if (!data.isNull() && !data.isObject()) {
        return error("request data must be an object");
    }
    if (request == "GetVoices") {
        return getVoices();
    }
    const bool known = request == "GetState" || request == "SetVoice" ||
                       request == "ApplyEffectPreset" || request == "PressKey";
    if (!known) {
        return error("unknown request \"" + request + "\"");
    }
    std::string sourceName, filterName, why;
    if (!readString(data, "sourceName", true, sourceName, why) ||
        !readString(data, "filterName", false, filterName, why)) {
        return error(why);
    }
    const Filter filter = finder_ ? finder_(sourceName, filterName, why) : Filter{};
    if (!filter.engine) {
        return error(why.empty() ? "no Tindra filter on \"" + sourceName + "\"" : why);
    }
    if (request == "GetState") {
        return state(*filter.engine);
    }
    if (request == "SetVoice") {
        return setVoice(filter, data);
    }
    if (request == "ApplyEffectPreset") {
        return applyEffectPreset(filter, data);
    }
    return pressKey(filter, data);
}

JsonValue VoiceRequests::getVoices() {
    const AppSettings s = store_.load();
    JsonValue voices = JsonValue::array();
    auto addVoice = [&voices](const SavedSoundFxPreset& p, bool builtIn) {
        JsonValue v = JsonValue::object();
        v.set("name", p.name);
        v.set("description", p.description);
        v.set("builtIn", builtIn);
        voices.push(std::move(v));
    };
    for (const SavedSoundFxPreset& p : s.soundFxPresets) {
        addVoice(p, builtInVoice(p.name).has_value());
    }
    // A built-in the user deleted can still be asked for by name.
    for (const SavedSoundFxPreset& p : builtInSoundFxPresets()) {
        if (!findSoundFxPreset(s, p.name)) {
            addVoice(p, true);
        }
    }
    JsonValue effects = JsonValue::array();
    for (const SavedEffectPreset& p : s.presets) {
        JsonValue e = JsonValue::object();
        e.set("name", p.name);
        e.set("description", p.description);
        effects.push(std::move(e));
    }
    JsonValue slots = JsonValue::object();
    for (int i = 0; i < kKeySlotCount; ++i) {
        slots.set(kSlotNames[i], slotJson(s.keyAssignments.keys[static_cast<size_t>(i)]));
    }
    JsonValue o = JsonValue::object();
    o.set("voices", std::move(voices));
    o.set("effectPresets", std::move(effects));
    o.set("slots", std::move(slots));
    return o;
}

JsonValue VoiceRequests::state(const FilterEngine& engine) {
    JsonValue o = JsonValue::object();
    if (!engine.soundFxPresetName().empty()) {
        o.set("soundFxPreset", engine.soundFxPresetName());
    }
    if (!engine.effectPreset().name.empty()) {
        o.set("effectPreset", engine.effectPreset().name);
    }
    const int slot = engine.keys().activeSlot();
    if (slot >= 0 && slot < kKeySlotCount) {
        o.set("activeSlot", kSlotNames[slot]);
    }
    o.set("effectsOn", engine.soundFxActive());
    o.set("latencyMs", engine.latencyMs());
    return o;
}

JsonValue VoiceRequests::voiceChanged(const Filter& filter) {
    JsonValue o = JsonValue::object();
    o.set("sourceName", filter.sourceName);
    o.set("filterName", filter.filterName);
    if (filter.engine) {
        const JsonValue now = state(*filter.engine);
        for (const char* key : {"soundFxPreset", "activeSlot"}) {
            if (!member(now, key).isNull()) {
                o.set(key, member(now, key));
            }
        }
    }
    return o;
}

JsonValue VoiceRequests::setVoice(const Filter& filter, const JsonValue& data) {
    std::string name, why;
    if (!readString(data, "voice", true, name, why)) {
        return error(why);
    }
    std::optional<SavedSoundFxPreset> voice = store_.findSoundFxPreset(name);
    if (!voice) {
        voice = builtInVoice(name);
    }
    if (!voice) {
        return error("no voice named \"" + name + "\"");
    }
    // Asking for a voice means hearing it.
    filter.engine->applyNamedSoundFxPreset(voice->preset, voice->name);
    filter.engine->setSoundFxActive(true);
    return state(*filter.engine);
}

JsonValue VoiceRequests::applyEffectPreset(const Filter& filter, const JsonValue& data) {
    const JsonValue& preset = member(data, "preset");
    if (preset.isString()) {
        const std::optional<SavedEffectPreset> saved =
            store_.findEffectPreset(preset.stringValue());
        if (!saved) {
            return error("no effect preset named \"" + preset.stringValue() + "\"");
        }
        filter.engine->applyEffectPreset(*saved);
    } else if (preset.isObject()) {
        filter.engine->applyEffectPreset(effectPresetFromJson(preset));
    } else {
        return error("\"preset\" must be a preset name or a preset object");
    }
    return state(*filter.engine);
}

JsonValue VoiceRequests::pressKey(const Filter& filter, const JsonValue& data) {
    std::string key, why;
    if (!readString(data, "key", true, key, why)) {
        return error(why);
    }
    const int slot = slotNamed(key);
    if (slot == kNoSlot) {
        return error("\"key\" must be \"up\", \"down\", \"left\" or \"right\"");
    }
    const JsonValue& down = member(data, "down");
    if (!down.isBool()) {
        return error("\"down\" must be true or false");
    }
    filter.engine->pressKey(slot, down.boolValue());
    return state(*filter.engine);
}

} // namespace Lumora
