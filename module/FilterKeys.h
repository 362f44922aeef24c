#pragma once

namespace Lumora {

// The filter's id and the names of its host settings and properties.
constexpr const char* kFilterId = "lumora_filter";
constexpr const char* kFilterDisplayName = "Tindra";
constexpr const char* kSettingRecordingMode = "is_recording_mode";
constexpr const char* kPropertyOpenWizard = "open_wizard";

// Locale keys (data/locale/*.ini).
constexpr const char* kTextOpen = "Lumora.Open";

} // namespace Lumora
