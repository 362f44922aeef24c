#pragma once

#include "dsp/Biquad.h"

namespace Lumora {

// The equaliser's filter formulas (a0 normalised to 1). Each keeps the precision
// the equaliser has always used, so responses stay identical across versions:
// low cut, high shelf and high cut in double, the peaking bands in single.
//
// Parameters outside what a filter can mean are made safe first: a frequency is
// kept between 1 Hz and just below half the sample rate, a q at or below 0 is
// raised to kMinQ, a gain is kept within ±kMaxGainDb, and a value that is not a
// number at all gives the identity. So no record can make a section unstable
// or non-finite.
namespace FilterDesign {

constexpr double kMinQ = 0.025;
constexpr double kMaxGainDb = 48.0;

// Second-order high-pass with Q fixed at 0.707.
BiquadCoefficients lowCut(double hz, double sampleRate);
// Peaking band: gainDb at centerHz, bandwidth from q.
BiquadCoefficients peaking(float centerHz, float gainDb, float q, double sampleRate);
// High shelf with slope 1: gainDb towards half the sample rate.
BiquadCoefficients highShelf(double hz, double gainDb, double sampleRate);
// Second-order low-pass with the given Q.
BiquadCoefficients highCut(double hz, double q, double sampleRate);

} // namespace FilterDesign
} // namespace Lumora
