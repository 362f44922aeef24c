#pragma once

#include "dsp/SoundFxPreset.h"

#include <QString>

#include <functional>
#include <vector>

namespace Lumora {

// One built-in preset of a voice effect, as its preset popup lists it: a name
// and a description in both languages and the action that writes the preset's
// values into the fields of a SoundFxPreset that its effect owns.
struct FxPresetDef {
    const char* nameJa;
    const char* nameEn;
    const char* descriptionJa;
    const char* descriptionEn;
    std::function<void(SoundFxPreset&)> apply;

    // In the current interface language.
    QString name() const;
    QString description() const;
};

// The built-in tables, built on first use and kept for the life of the
// process. Each begins with "デフォルト", which puts that effect's parameters
// back to their starting values and leaves its on/off switch alone; every
// other entry also switches its effect on, since choosing one means wanting
// to hear it.
const std::vector<FxPresetDef>& pitchPresets();
const std::vector<FxPresetDef>& modPresets();
const std::vector<FxPresetDef>& radioPresets();
const std::vector<FxPresetDef>& delayPresets();
const std::vector<FxPresetDef>& reverbPresets();
// The table of an effect code (kEffectPitch ... kEffectReverb); empty otherwise.
const std::vector<FxPresetDef>& fxPresetsFor(int effectCode);

} // namespace Lumora
