#pragma once

#include "dsp/Parameters.h"
#include "dsp/SoundFxPreset.h"

namespace Lumora {

// Brings a SoundFxPreset into the knobs' ranges (the parameter table) before
// the audio thread uses it. Records come from the dialog, from presets in the
// settings file (read without clamping, so a file keeps what it holds) and
// from key assignments; none of them is trusted. Within the ranges every
// effect is stable: the feedbacks stay below one, overdrive never goes
// negative (it divides), and a corner frequency also stays under 0.45 × the
// sample rate. A value that is not finite takes the parameter's default.
SoundFxPreset guardFxParameters(const SoundFxPreset& in, double sampleRate);

} // namespace Lumora
