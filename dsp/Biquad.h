#pragma once

#include <cmath>

namespace Lumora {

// Coefficients of a second-order section, a0 normalised to 1. The default is the
// identity (b0 = 1, everything else 0).
template <typename T>
struct BiquadCoeffs {
    T b0 = 1;
    T b1 = 0;
    T b2 = 0;
    T a1 = 0;
    T a2 = 0;

    template <typename U>
    BiquadCoeffs<U> to() const {
        return {static_cast<U>(b0), static_cast<U>(b1), static_cast<U>(b2), static_cast<U>(a1),
                static_cast<U>(a2)};
    }
};

// The one second-order section of the project, in transposed direct form II:
//   y = b0·x + s1;  s1 := b1·x − a1·y + s2;  s2 := b2·x − a2·y.
// T is the type of coefficients and state: float where speed counts (the
// cleaning chain's equaliser, whose vector path reads them), double where low
// corners at high rates need it (a 100 Hz high-pass at 96 kHz has poles very
// close to 1): the voice effects and the analyser.
template <typename T>
class BiquadSection {
public:
    // New coefficients keep the state: a corner or gain that moves while audio
    // flows (a knob being turned) carries on from where the filter is instead
    // of restarting it, which would be heard as a click.
    void setCoefficients(const BiquadCoeffs<T>& c) { c_ = c; }
    const BiquadCoeffs<T>& coefficients() const { return c_; }

    // Silence: the state is cleared, the coefficients stay.
    void reset() {
        s1_ = 0;
        s2_ = 0;
    }

    // One sample in and out in the caller's type (float audio; the analyser
    // keeps its sums in double).
    template <typename S>
    S processSample(S x) {
        const T in = static_cast<T>(x);
        const T y = c_.b0 * in + s1_;
        s1_ = c_.b1 * in - c_.a1 * y + s2_;
        s2_ = c_.b2 * in - c_.a2 * y;
        return static_cast<S>(y);
    }

    void process(float* samples, int n) {
        for (int i = 0; i < n; ++i) {
            samples[i] = processSample(samples[i]);
        }
    }

    // A non-finite input leaves non-finite state that would otherwise ring for
    // ever; clearing it lets the next packet come out clean.
    void clearIfNonFinite() {
        if (!std::isfinite(s1_) || !std::isfinite(s2_)) {
            reset();
        }
    }

    T s1() const { return s1_; }
    T s2() const { return s2_; }
    // For code that runs several sections side by side and hands the state back.
    void setState(T s1, T s2) {
        s1_ = s1;
        s2_ = s2;
    }

private:
    BiquadCoeffs<T> c_;
    T s1_ = 0;
    T s2_ = 0;
};

using BiquadCoefficients = BiquadCoeffs<float>;
using Biquad = BiquadSection<float>;
using PreciseBiquad = BiquadSection<double>;

} // namespace Lumora
