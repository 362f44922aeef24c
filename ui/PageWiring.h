#pragma once

namespace Lumora {

class EffectPanel;
class EngineBinding;
class FxPage;
class KeyAssignPanel;
class KeyAssignPresetsPanel;
class KeyRouter;
class PresetsPanel;
class SoundFxPanel;
class SoundFxPresetsPanel;
class SoundPage;

// The pages that show and edit the voice.
struct VoicePages {
    SoundPage* sound = nullptr;
    EffectPanel* effect = nullptr;
    FxPage* fx = nullptr;
    SoundFxPanel* soundFx = nullptr;
    PresetsPanel* effectPresets = nullptr;
    SoundFxPresetsPanel* soundFxPresets = nullptr;
    KeyAssignPresetsPanel* keyPresets = nullptr;
    KeyAssignPanel* keyAssign = nullptr;
};

// Connects the pages to the engine: every edit on them goes in through the
// binding, every change it reports loads them again, and a preset saved on one
// page shows on the others. The pages are loaded with what is on air now.
void wirePagesToEngine(EngineBinding* binding, KeyRouter* keys, const VoicePages& pages);

} // namespace Lumora
