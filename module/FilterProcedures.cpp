#include "module/FilterProcedures.h"

#include "engine/FilterEngine.h"
#include "settings/JsonText.h"
#include "settings/PresetFile.h"

#include <obs-module.h>

#include <functional>
#include <optional>
#include <string>

namespace Lumora {

namespace {

std::string jsonArgument(calldata_t* cd) {
    const char* json = nullptr;
    return calldata_get_string(cd, "json", &json) && json ? json : "";
}

// {"name": "..."} alone names a stored preset; anything else is a preset itself.
bool storedName(const std::string& json, std::string& name) {
    const JsonParseResult parsed = parseJson(json);
    if (!parsed.ok || !parsed.value.isObject() || size(parsed.value) != 1) {
        return false;
    }
    const JsonValue& value = member(parsed.value, "name");
    if (!value.isString()) {
        return false;
    }
    name = asString(value, "");
    return true;
}

void reply(calldata_t* cd, bool ok, const std::string& error) {
    calldata_set_bool(cd, "ok", ok);
    calldata_set_string(cd, "error", error.c_str());
}

// OBS calls a procedure on its caller's thread (a script, a plug-in, and later
// hotkeys and obs-websocket requests), several at once. The engine's writers
// and the open dialog live on the interface thread, so the work goes there:
// obs_queue_task(OBS_TASK_UI, ..., wait) runs it at once when already on that
// thread and otherwise blocks the caller until it ran. The dialog hears of the
// change at once and its next edit starts from it.
//
// A host without an interface thread (no UI task handler) drops the task after
// logging an error; the reply set beforehand tells the caller so.
void onInterfaceThread(calldata_t* cd, std::function<void()> work) {
    calldata_set_bool(cd, "ok", false);
    calldata_set_string(cd, "error", "no interface thread to run on");
    obs_queue_task(
        OBS_TASK_UI, [](void* param) { (*static_cast<const std::function<void()>*>(param))(); },
        &work, true);
}

// A procedure's preset argument: {"name": "..."} for the preset stored under
// that name (`storedAs` gets the name), anything else the preset object itself.
// Nothing, with the error replied, when it is neither.
template <typename Saved>
std::optional<Saved> readPreset(calldata_t* cd, const std::string& json, SettingsStore* store,
                                std::optional<Saved> (SettingsStore::*find)(const std::string&),
                                bool (*parse)(std::string_view, Saved&), const std::string& kind,
                                std::string& storedAs) {
    std::string name;
    if (storedName(json, name)) {
        std::optional<Saved> saved = store ? (store->*find)(name) : std::nullopt;
        if (!saved) {
            reply(cd, false, "no " + kind + " named \"" + name + "\"");
        }
        storedAs = name;
        return saved;
    }
    Saved preset;
    if (!parse(json, preset)) {
        reply(cd, false, "not a valid " + kind + " object");
        return std::nullopt;
    }
    return preset;
}

void applyEffect(void* data, calldata_t* cd) {
    auto* engine = static_cast<FilterEngine*>(data);
    const std::string json = jsonArgument(cd);
    onInterfaceThread(cd, [&] {
        std::string storedAs;
        const std::optional<SavedEffectPreset> preset =
            readPreset(cd, json, engine->store(), &SettingsStore::findEffectPreset,
                       &parseEffectPresetText, "effect preset", storedAs);
        if (!preset) {
            return;
        }
        engine->applyEffectPreset(*preset);
        if (storedAs.empty()) {
            reply(cd, true, "");
            return;
        }
        // Applied by name, it is the preset a new filter starts with.
        engine->setLastPresetName(storedAs);
        const bool kept = engine->saveAppFields();
        reply(cd, kept, kept ? "" : "applied, but the settings file could not be written");
    });
}

void applySoundFx(void* data, calldata_t* cd) {
    auto* engine = static_cast<FilterEngine*>(data);
    const std::string json = jsonArgument(cd);
    onInterfaceThread(cd, [&] {
        std::string storedAs;
        const std::optional<SavedSoundFxPreset> preset =
            readPreset(cd, json, engine->store(), &SettingsStore::findSoundFxPreset,
                       &parseSoundFxPresetText, "sound-effect preset", storedAs);
        if (preset) {
            engine->applySoundFxPreset(preset->preset);
            reply(cd, true, "");
        }
    });
}

void getEffect(void* data, calldata_t* cd) {
    auto* engine = static_cast<FilterEngine*>(data);
    onInterfaceThread(cd, [&] {
        SavedEffectPreset current;
        current.preset = engine->effectPreset();
        current.name = current.preset.name.empty() ? engine->lastPresetName() : current.preset.name;
        current.description = current.preset.description;
        current.recording = current.preset.recording;
        calldata_set_string(cd, "result", effectPresetText(current).c_str());
        calldata_set_bool(cd, "ok", true);
    });
}

void getSoundFx(void* data, calldata_t* cd) {
    auto* engine = static_cast<FilterEngine*>(data);
    onInterfaceThread(cd, [&] {
        SavedSoundFxPreset current;
        current.preset = engine->soundFxPreset();
        calldata_set_string(cd, "result", soundFxPresetText(current).c_str());
        calldata_set_bool(cd, "ok", engine->soundFxActive());
    });
}

} // namespace

void registerFilterProcedures(obs_source_t* source, FilterEngine* engine) {
    proc_handler_t* ph = obs_source_get_proc_handler(source);
    if (!ph) {
        return;
    }
    proc_handler_add(ph, "void apply_effect_preset(in string json, out bool ok, out string error)",
                     applyEffect, engine);
    proc_handler_add(ph,
                     "void apply_sound_fx_preset(in string json, out bool ok, out string error)",
                     applySoundFx, engine);
    proc_handler_add(ph, "void get_effect_preset(out string result, out bool ok)", getEffect,
                     engine);
    proc_handler_add(ph, "void get_sound_fx_preset(out string result, out bool ok)", getSoundFx,
                     engine);
}

} // namespace Lumora
