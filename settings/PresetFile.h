#pragma once

#include "settings/AppSettings.h"

#include <string>
#include <string_view>
#include <vector>

namespace Lumora {

// Presets outside the settings folder: the files that "lumora-cli presets export"
// writes and "presets import" (and the processing tool's --preset) read.
struct PresetBundle {
    std::vector<SavedEffectPreset> effectPresets;
    std::vector<SavedSoundFxPreset> soundFxPresets;
};

// A plain JSON document shaped like the settings file's preset lists:
// {"presets": [...], "soundFxPresets": [...], "version": 2}, in the settings
// file's own text format, ending with a line feed. No checksum line: it is meant
// to be read and edited by people.
std::string renderPresetBundle(const PresetBundle& bundle);

// Reads such a document, a whole settings file or backup (checksum line
// included, then verified), or a single preset object as the settings file
// stores one (recognised by its "eq" or "pitch" group). The version rules of the
// settings document apply: a version-1 document's effect presets are dropped, a
// newer version is refused. On false `error` says why in one short phrase.
bool parsePresetBundle(std::string_view text, PresetBundle& out, std::string& error);

// One preset as text: the object the settings file stores for it, in the file's
// own format. For the filter's procedures and the tools that print a preset.
std::string effectPresetText(const SavedEffectPreset& preset);
std::string soundFxPresetText(const SavedSoundFxPreset& preset);
// Read such an object (defaults and clamps as in the settings file); false, with
// `out` untouched, when the text is not a JSON object.
bool parseEffectPresetText(std::string_view text, SavedEffectPreset& out);
bool parseSoundFxPresetText(std::string_view text, SavedSoundFxPreset& out);

} // namespace Lumora
