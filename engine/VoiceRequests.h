#pragma once

#include "settings/JsonValue.h"

#include <functional>
#include <string>

namespace Lumora {

class FilterEngine;
class SettingsStore;

// The requests of the "Tindra" vendor of obs-websocket, on JSON values and
// without OBS, so stream-deck buttons and bots switch voices through the same
// engine calls as the dialog. The module hands each request here on the
// engine's own (interface) thread.
//
//   GetVoices                              the voices, effect presets and key slots
//   GetState {sourceName[, filterName]}    what one filter has on air
//   SetVoice {..., "voice": name}          a stored or built-in voice, effects on
//   ApplyEffectPreset {..., "preset": name or preset object}
//   PressKey {..., "key": "up"|"down"|"left"|"right", "down": bool}
//
// Every answer is an object. A request that cannot be done answers
// {"error": "..."} and changes nothing: obs-websocket 5.1 lets a vendor set no
// request status. Keys whose value would be null are left out, as OBS's data
// objects carry no null.
class VoiceRequests {
public:
    // The Tindra filter a request names.
    struct Filter {
        FilterEngine* engine = nullptr;
        std::string sourceName;
        std::string filterName;
    };
    // Finds the filter named `filterName` on the source named `sourceName`, or
    // with an empty `filterName` the source's first Tindra filter; a null
    // engine and `error` set when there is none.
    using Finder = std::function<Filter(const std::string& sourceName,
                                        const std::string& filterName, std::string& error)>;

    // Larger request data is refused unread.
    static constexpr size_t kMaxRequestBytes = 64 * 1024;

    // `store`: where GetVoices reads the lists (the user's settings file).
    VoiceRequests(Finder finder, SettingsStore& store);

    JsonValue handle(const std::string& request, const JsonValue& data);

    // The state GetState answers, and the VoiceChanged event's data.
    static JsonValue state(const FilterEngine& engine);
    static JsonValue voiceChanged(const Filter& filter);

    static JsonValue error(const std::string& message);

private:
    JsonValue getVoices();
    JsonValue setVoice(const Filter& filter, const JsonValue& data);
    JsonValue applyEffectPreset(const Filter& filter, const JsonValue& data);
    JsonValue pressKey(const Filter& filter, const JsonValue& data);

    Finder finder_;
    SettingsStore& store_;
};

} // namespace Lumora
