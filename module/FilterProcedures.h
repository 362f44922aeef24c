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
//
// Any thread may call them, several at once: each call's work runs on OBS's
// interface thread (obs_queue_task with OBS_TASK_UI), one call after another,
// while its caller waits. The audio thread never waits on them. A host without
// an interface thread drops the work: the call then answers ok = false, error
// "no interface thread to run on".
void registerFilterProcedures(obs_source* source, FilterEngine* engine);

} // namespace Lumora
