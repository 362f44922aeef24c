#pragma once

namespace Lumora {

// The filter's id and the names of its host settings and properties.
constexpr const char* kFilterId = "lumora_filter";
constexpr const char* kFilterDisplayName = "Tindra";
constexpr const char* kSettingRecordingMode = "is_recording_mode";
constexpr const char* kPropertyOpenWizard = "open_wizard";

// The filter's OBS hotkeys, as saved in the scene collection.
constexpr const char* kHotkeyUp = "lumora.voice.up";
constexpr const char* kHotkeyDown = "lumora.voice.down";
constexpr const char* kHotkeyLeft = "lumora.voice.left";
constexpr const char* kHotkeyRight = "lumora.voice.right";
constexpr const char* kHotkeyEffects = "lumora.voice.effects";

// The obs-websocket vendor.
constexpr const char* kVendorName = "Tindra";

// Locale keys (data/locale/*.ini).
constexpr const char* kTextOpen = "Lumora.Open";
constexpr const char* kTextHotkeyUp = "Lumora.Hotkey.Up";
constexpr const char* kTextHotkeyDown = "Lumora.Hotkey.Down";
constexpr const char* kTextHotkeyLeft = "Lumora.Hotkey.Left";
constexpr const char* kTextHotkeyRight = "Lumora.Hotkey.Right";
constexpr const char* kTextHotkeyEffects = "Lumora.Hotkey.Effects";

} // namespace Lumora
