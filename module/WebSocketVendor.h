#pragma once

struct obs_source;

namespace Lumora {

class FilterEngine;

// The "Tindra" vendor of obs-websocket (bundled with OBS since 28): its
// requests (engine/VoiceRequests.h) from Stream Deck, Touch Portal,
// Streamer.bot or any client, and the VoiceChanged event. Registered once
// obs-websocket has loaded (obs_module_post_load); without it nothing happens.
void registerWebSocketVendor();

// Each filter tells the vendor when its voice changed, whoever changed it:
// the event carries the source and filter names, the voice and the active key.
void watchVoiceChanges(obs_source* filter, FilterEngine* engine);

} // namespace Lumora
