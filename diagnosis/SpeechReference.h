#pragma once

#include <cstdint>

namespace Lumora {

// What an average voice looks like to the analyser, for judging the mic's
// distance: the international long-term average speech spectrum (Byrne et al.
// 1994, J. Acoust. Soc. Am. 96(4), third-octave levels of speech at 70 dB)
// passed through the analyser's own low band (below 500 Hz) and mid band
// (500 Hz to 4 kHz), with a cardioid mic's proximity effect at a distance.
//
// A pressure-gradient (cardioid) capsule at distance r on axis lifts the low
// frequencies by |H(f, r)| = sqrt(1 + (1 / (2kr))^2), k = 2 pi f / c: +8 dB at
// 150 Hz from 8 cm, +2.6 dB from 20 cm, nothing to speak of beyond 50 cm.
// The LTASS was measured with a pressure (omni) microphone, so it is the voice
// without any proximity effect.

// The low-to-mid balance in dB of the average voice heard by a cardioid at
// `distanceM` metres (0: without any proximity effect).
double speechReferenceBalanceDb(double distanceM);

// The distance, in metres, that the diagnosis's advice recommends for a mic
// type: dynamic 8 cm ("5-15 cm"), condenser 15 cm ("10-20 cm"), USB 20 cm
// ("15-25 cm"); an unknown mic 15 cm, the middle of them.
double recommendedMicDistanceM(int32_t micType);

} // namespace Lumora
