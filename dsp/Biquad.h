#pragma once

#include <cmath>

namespace Lumora {

// Coefficients of a second-order section, a0 normalised to 1. The default is the
// identity (b0 = 1, everything else 0).
struct BiquadCoefficients {
    float b0 = 1.0f;
    float b1 = 0.0f;
    float b2 = 0.0f;
    float a1 = 0.0f;
    float a2 = 0.0f;
};

// A second-order section in transposed direct form II:
//   y = b0·x + s1;  s1 := b1·x − a1·y + s2;  s2 := b2·x − a2·y.
class Biquad {
public:
    // New coefficients clear s1 and keep s2, so a change of frequency or gain
    // while audio flows neither restarts the filter nor leaves a stale sum in s1.
    void setCoefficients(const BiquadCoefficients& c) {
        c_ = c;
        s1_ = 0.0f;
    }
    const BiquadCoefficients& coefficients() const { return c_; }

    // Back to the identity with zero state.
    void reset() {
        c_ = BiquadCoefficients{};
        s1_ = 0.0f;
        s2_ = 0.0f;
    }

    float processSample(float x) {
        const float y = c_.b0 * x + s1_;
        s1_ = c_.b1 * x - c_.a1 * y + s2_;
        s2_ = c_.b2 * x - c_.a2 * y;
        return y;
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
            s1_ = 0.0f;
            s2_ = 0.0f;
        }
    }

    float s1() const { return s1_; }
    float s2() const { return s2_; }
    // For code that runs several sections side by side and hands the state back.
    void setState(float s1, float s2) {
        s1_ = s1;
        s2_ = s2;
    }

private:
    BiquadCoefficients c_;
    float s1_ = 0.0f;
    float s2_ = 0.0f;
};

} // namespace Lumora
