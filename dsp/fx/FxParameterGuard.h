#pragma once

#include "dsp/SoundFxPreset.h"

namespace Lumora {

// Brings a SoundFxPreset into the range where every effect is stable and
// audible before the audio thread uses it. Records come from the dialog, from
// presets in the settings file (read without clamping) and from key
// assignments; none of them is trusted. Values inside the knobs' ranges pass
// unchanged; a value that is not finite takes the field's default, others are
// clamped:
// - feedbacks below one (delay ±0.95, modulation ±0.9), so no loop can grow;
// - mixes, depth, room size, damping, ducking and mix A:B to 0..1;
// - corners to 10 Hz .. 0.45 × sample rate, overdrive to 0..2 (never negative,
//   which would divide by zero), rates to 0..20 Hz;
// - semitones to ±24, formant shifts to ±1, band gains to ±24 dB, band widths
//   (Q) to 0.1..20, gains to -96..+48 dB.
// The delay's time is clamped later, by the delay itself (1..95999 samples).
SoundFxPreset guardFxParameters(const SoundFxPreset& in, double sampleRate);

} // namespace Lumora
