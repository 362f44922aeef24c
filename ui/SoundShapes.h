#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// The one-click settings of the sound panel and its starting values. Each
// writes only the fields of its own stage; the voice is shaped by ear around
// the same points the recommended settings work on (low cut 60-180 Hz, body
// 200-430 Hz, presence 2.2-4 kHz, sibilance 4.5-10 kHz; compressor 3.5:1 with
// a -2 dB ceiling), so a mode or shape never fights a diagnosed preset.
namespace SoundShapes {

// The panel's starting point, also what "Reset to defaults" gives: every knob
// at its construction value, the default equaliser bands, every stage off,
// gains at 0 dB. The learned noise profile is not a setting and is kept by
// the caller.
EffectPreset panelDefaults();

// The equaliser as "Default" leaves it (the on/off switch is the caller's).
void defaultEq(EqParams& eq);

// Equaliser shapes; each switches the equaliser on.
void deEssing(EqParams& eq);
void maleVoice(EqParams& eq);
void femaleVoice(EqParams& eq);

// Compressor modes; each switches compressor and limiter on.
void talkMode(EffectPreset& p);
void singingMode(EffectPreset& p);

// Noise modes: all three noise stages at once.
void strictNoiseMode(EffectPreset& p);
void detailMode(EffectPreset& p);

} // namespace SoundShapes
} // namespace Lumora
