#pragma once

#include "dsp/Biquad.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

// The filter formulas of every second-order section in the project (the
// equaliser, the voice effects, the analyser's bands, the equaliser display),
// computed in double with a0 normalised to 1.
//
// Parameters outside what a filter can mean are made safe first: a frequency is
// kept between 1 Hz and just below half the sample rate, a q at or below 0 is
// raised to kMinQ, a gain is kept within ±kMaxGainDb, and a value that is not a
// number at all gives the identity. So no record can make a section unstable
// or non-finite.
namespace FilterDesign {

constexpr double kMinQ = 0.025;
constexpr double kMaxGainDb = 48.0;
// The Q of the plain high- and low-passes: Butterworth (1/√2, as 0.707 here
// always), no bump at the corner.
constexpr double kButterworthQ = 0.707;

// Second-order high-pass with Q fixed at kButterworthQ.
BiquadCoeffs<double> lowCut(double hz, double sampleRate);
// Second-order low-pass with the given Q.
BiquadCoeffs<double> highCut(double hz, double q, double sampleRate);
// Peaking band: gainDb at centerHz, bandwidth from q (constant-Q design).
BiquadCoeffs<double> peaking(double centerHz, double gainDb, double q, double sampleRate);
// Shelves of slope 1 whose far gain is gainDb: towards 0 Hz, towards half the rate.
BiquadCoeffs<double> lowShelf(double hz, double gainDb, double sampleRate);
BiquadCoeffs<double> highShelf(double hz, double gainDb, double sampleRate);

// |H(e^jω)|² of a section at hz: what it does to a steady tone's power.
template <typename T>
double powerResponse(const BiquadCoeffs<T>& c, double hz, double sampleRate) {
    const double w = 6.283185307179586 * hz / sampleRate;
    const double c1 = std::cos(w), s1 = std::sin(w), c2 = std::cos(2.0 * w), s2 = std::sin(2.0 * w);
    const double b0 = c.b0, b1 = c.b1, b2 = c.b2, a1 = c.a1, a2 = c.a2;
    const double nr = b0 + b1 * c1 + b2 * c2, ni = -(b1 * s1 + b2 * s2);
    const double dr = 1.0 + a1 * c1 + a2 * c2, di = -(a1 * s1 + a2 * s2);
    return (nr * nr + ni * ni) / std::max(dr * dr + di * di, 1e-300);
}

// The same in dB, at least -240 dB (a zero of the section reads as that).
template <typename T>
double responseDb(const BiquadCoeffs<T>& c, double hz, double sampleRate) {
    return 10.0 * std::log10(std::max(powerResponse(c, hz, sampleRate), 1e-24));
}

} // namespace FilterDesign
} // namespace Lumora
