#include "module/FilterProcedures.h"

#include "module/ObsFilterState.h"
#include "settings/JsonText.h"
#include "settings/PresetFile.h"

#include <obs-module.h>

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

void applyEffect(void* data, calldata_t* cd) {
    auto* state = static_cast<ObsFilterState*>(data);
    const std::string json = jsonArgument(cd);
    std::string name;
    if (storedName(json, name)) {
        std::optional<SavedEffectPreset> saved;
        if (state->store) {
            saved = state->store->findEffectPreset(name);
        }
        if (!saved) {
            reply(cd, false, "no effect preset named \"" + name + "\"");
            return;
        }
        state->applyEffectPreset(*saved);
        state->lastPresetName = name;
        const bool kept = state->store->saveAppFields(
            {state->isRecordingMode, name, state->uiScale, state->showNumericValues});
        reply(cd, kept, kept ? "" : "applied, but the settings file could not be written");
        return;
    }
    SavedEffectPreset preset;
    if (!parseEffectPresetText(json, preset)) {
        reply(cd, false, "not an effect preset object");
        return;
    }
    state->applyEffectPreset(preset);
    reply(cd, true, "");
}

void applySoundFx(void* data, calldata_t* cd) {
    auto* state = static_cast<ObsFilterState*>(data);
    const std::string json = jsonArgument(cd);
    std::string name;
    if (storedName(json, name)) {
        std::optional<SavedSoundFxPreset> saved;
        if (state->store) {
            saved = state->store->findSoundFxPreset(name);
        }
        if (!saved) {
            reply(cd, false, "no sound-effect preset named \"" + name + "\"");
            return;
        }
        state->applySoundFxPreset(saved->preset);
        reply(cd, true, "");
        return;
    }
    SavedSoundFxPreset preset;
    if (!parseSoundFxPresetText(json, preset)) {
        reply(cd, false, "not a sound-effect preset object");
        return;
    }
    state->applySoundFxPreset(preset.preset);
    reply(cd, true, "");
}

void getEffect(void* data, calldata_t* cd) {
    auto* state = static_cast<ObsFilterState*>(data);
    SavedEffectPreset current;
    current.preset = state->chain.getParameters();
    current.name = current.preset.name.empty() ? state->lastPresetName : current.preset.name;
    current.description = current.preset.description;
    current.recording = current.preset.recording;
    calldata_set_string(cd, "result", effectPresetText(current).c_str());
    calldata_set_bool(cd, "ok", true);
}

void getSoundFx(void* data, calldata_t* cd) {
    auto* state = static_cast<ObsFilterState*>(data);
    SavedSoundFxPreset current;
    current.preset = state->effects.getParameters();
    calldata_set_string(cd, "result", soundFxPresetText(current).c_str());
    calldata_set_bool(cd, "ok", state->effects.isActive());
}

} // namespace

void registerFilterProcedures(obs_source_t* source, ObsFilterState* state) {
    proc_handler_t* ph = obs_source_get_proc_handler(source);
    if (!ph) {
        return;
    }
    proc_handler_add(ph, "void apply_effect_preset(in string json, out bool ok, out string error)",
                     applyEffect, state);
    proc_handler_add(ph,
                     "void apply_sound_fx_preset(in string json, out bool ok, out string error)",
                     applySoundFx, state);
    proc_handler_add(ph, "void get_effect_preset(out string result, out bool ok)", getEffect,
                     state);
    proc_handler_add(ph, "void get_sound_fx_preset(out string result, out bool ok)", getSoundFx,
                     state);
}

} // namespace Lumora
