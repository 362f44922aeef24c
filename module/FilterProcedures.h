#pragma once

struct obs_source;

namespace Lumora {

class FilterEngine;

// Procedures on the filter's procedure handler, so OBS scripts and other plug-ins
// (and lumora-host) can set and read the voice of one filter:
//   apply_effect_preset(in string json, out bool ok, out string error)
//   apply_sound_fx_preset(in string json, out bool ok, out string error)
//   get_effect_preset(out string result, out bool ok)
//   get_sound_fx_preset(out string result, out bool ok)
// `json` is a preset object as the settings file keeps it, or {"name": "..."} for
// a preset stored under that name; applying a stored effect preset by name makes
// it the one a new filter starts with.
void registerFilterProcedures(obs_source* source, FilterEngine* engine);

} // namespace Lumora
