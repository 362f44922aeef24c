#include "settings/PresetFile.h"

#include "settings/JsonText.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"

namespace Lumora {

std::string renderPresetBundle(const PresetBundle& bundle) {
    JsonValue root = JsonValue::object();
    JsonValue effects = JsonValue::array();
    for (const SavedEffectPreset& p : bundle.effectPresets) {
        effects.push(effectPresetToJson(p));
    }
    JsonValue fx = JsonValue::array();
    for (const SavedSoundFxPreset& p : bundle.soundFxPresets) {
        fx.push(soundFxPresetToJson(p));
    }
    root.set("version", kSettingsVersion);
    root.set("presets", std::move(effects));
    root.set("soundFxPresets", std::move(fx));
    return renderJson(root) + "\n";
}

bool parsePresetBundle(std::string_view text, PresetBundle& out, std::string& error) {
    std::string body(text);
    if (body.rfind("#LMSUM:", 0) == 0) {
        const FileVerdict v = SettingsStore::checkAndStrip(body);
        if (v != FileVerdict::Ok) {
            error = describe(v);
            return false;
        }
    }
    const JsonParseResult parsed = parseJson(body);
    if (!parsed.ok) {
        error = "not valid JSON";
        return false;
    }
    const JsonValue& root = parsed.value;
    if (!root.isObject()) {
        error = "JSON root is not an object";
        return false;
    }
    out = PresetBundle{};
    if (member(root, "presets").isNull() && member(root, "soundFxPresets").isNull()) {
        // A single preset object, as the settings file stores one.
        if (member(root, "eq").isObject()) {
            out.effectPresets.push_back(effectPresetFromJson(root));
            return true;
        }
        if (member(root, "pitch").isObject()) {
            out.soundFxPresets.push_back(soundFxPresetFromJson(root));
            return true;
        }
        error = "no presets found";
        return false;
    }
    if (documentVersion(root) > kSettingsVersion) {
        error = "written by a newer version";
        return false;
    }
    std::optional<AppSettings> settings = fromJson(root);
    out.effectPresets = std::move(settings->presets);
    out.soundFxPresets = std::move(settings->soundFxPresets);
    return true;
}

std::string effectPresetText(const SavedEffectPreset& preset) {
    return renderJson(effectPresetToJson(preset));
}

std::string soundFxPresetText(const SavedSoundFxPreset& preset) {
    return renderJson(soundFxPresetToJson(preset));
}

bool parseEffectPresetText(std::string_view text, SavedEffectPreset& out) {
    const JsonParseResult parsed = parseJson(text);
    if (!parsed.ok || !parsed.value.isObject()) {
        return false;
    }
    out = effectPresetFromJson(parsed.value);
    return true;
}

bool parseSoundFxPresetText(std::string_view text, SavedSoundFxPreset& out) {
    const JsonParseResult parsed = parseJson(text);
    if (!parsed.ok || !parsed.value.isObject()) {
        return false;
    }
    out = soundFxPresetFromJson(parsed.value);
    return true;
}

} // namespace Lumora
