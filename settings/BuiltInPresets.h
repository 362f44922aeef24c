#pragma once

#include "settings/AppSettings.h"

#include <string>
#include <vector>

namespace Lumora {

// The key-assignment preset that marks a settings document as seeded.
extern const char* const kDefaultKeyAssignPresetName; // "デフォルト十字キー"

// The four sound-effect combinations installed on first use, in slot order
// (savedAt left empty).
std::vector<SavedSoundFxPreset> builtInSoundFxPresets();

// The effects the four combinations are made of, each switched on. The FX
// panel offers each on its own under the same name, so a part picked there
// sounds exactly like it does on an arrow key.
namespace BuiltInParts {
PitchParams computerPitch();     // "コンピューターシステム"
RadioParams fmRadio();           // "FM ラジオ"
PitchParams deathGamePitch();    // "デスゲームマスター"
DelayParams singingDelay();      // "歌枠"
ReverbParams singingReverb();    // "歌枠リバーブ"
DelayParams heroDelay();         // "特撮ヒーロー"
ReverbParams innerVoiceReverb(); // "心の中のセリフ"
} // namespace BuiltInParts

// Slot i applies combination i: Momentary, Momentary, Toggle, Momentary; no key
// names, no effect presets, an empty default slot.
KeyAssignmentSet builtInKeyAssignments();

// Installs the built-ins unless a key-assignment preset named
// kDefaultKeyAssignPresetName exists: the four combinations (replacing presets of
// the same names), the built-in assignment as the current one, and the preset
// itself. `savedAt` stamps what it adds. True when it changed the document.
bool seedBuiltIns(AppSettings& s, const std::string& savedAt);

} // namespace Lumora
