#pragma once

struct obs_source;

namespace Lumora {

class FilterEngine;

// OBS hotkeys for one Tindra filter: one per voice key ("Tindra: Up voice" and
// so on), following that slot's trigger (OBS delivers both the press and the
// release), and "Tindra: voice effects on/off". OBS lists them under the
// filter's source in Settings > Hotkeys, unbound until the user binds them,
// saves the bindings with the scene collection and fires them whichever window
// has the focus. They press the engine's keys, the same state the dialog's
// arrow keys use.
//
// Registered once the filter is on its source; unregistered when it leaves
// the source or is destroyed, so no callback runs on a filter that is gone.
void registerVoiceHotkeys(obs_source* filter, FilterEngine* engine);
void unregisterVoiceHotkeys(FilterEngine* engine);

} // namespace Lumora
