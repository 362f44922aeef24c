#include "ui/PresetMetaTypes.h"

namespace Lumora {

void registerPresetMetaTypes() {
    qRegisterMetaType<SavedEffectPreset>("Lumora::SavedEffectPreset");
    qRegisterMetaType<SavedSoundFxPreset>("Lumora::SavedSoundFxPreset");
    qRegisterMetaType<KeyAssignPreset>("Lumora::KeyAssignPreset");
    qRegisterMetaType<KeyAssignmentSet>("Lumora::KeyAssignmentSet");
}

} // namespace Lumora
