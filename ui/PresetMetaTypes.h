#pragma once

#include "settings/AppSettings.h"

#include <QMetaType>

// The records the presets panels hand over in their signals.
Q_DECLARE_METATYPE(Lumora::SavedEffectPreset)
Q_DECLARE_METATYPE(Lumora::SavedSoundFxPreset)
Q_DECLARE_METATYPE(Lumora::KeyAssignPreset)
Q_DECLARE_METATYPE(Lumora::KeyAssignmentSet)

namespace Lumora {
// Registers them with the meta-object system (for queued connections and
// signal spies); cheap to call more than once.
void registerPresetMetaTypes();
} // namespace Lumora
