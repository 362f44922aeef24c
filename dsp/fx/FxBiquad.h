#pragma once

namespace Lumora {

// A second-order section in transposed direct form II, as the voice effects use
// it: coefficients and state in double precision, so low corners at high sample
// rates (a 100 Hz high-pass at 96 kHz has poles very close to 1) stay accurate.
// The design helpers take the corner in Hz and clamp it below Nyquist, so no
// setting of a knob can produce an unstable filter.
class FxBiquad {
public:
    // y = b0·x + s1; s1 = b1·x − a1·y + s2; s2 = b2·x − a2·y.
    float process(float x) {
        const double in = x;
        const double y = b0_ * in + s1_;
        s1_ = b1_ * in - a1_ * y + s2_;
        s2_ = b2_ * in - a2_ * y;
        return static_cast<float>(y);
    }
    void process(float* samples, int n) {
        for (int i = 0; i < n; ++i) {
            samples[i] = process(samples[i]);
        }
    }

    void reset() { s1_ = s2_ = 0.0; }
    // The radio and the reverb restart only the first state value when their
    // corner moves, keeping the second.
    void resetFirstState() { s1_ = 0.0; }

    // Second-order high-pass and low-pass with α = sin ω / 1.414 (Q ≈ 0.707).
    void setHighPass(double sampleRate, double hz);
    void setLowPass(double sampleRate, double hz);
    // Shelves of slope 1 (α = sin ω / √2) whose far gain is gainDb.
    void setLowShelf(double sampleRate, double hz, double gainDb);
    void setHighShelf(double sampleRate, double hz, double gainDb);
    // Peaking band of the given gain and Q (constant-Q design).
    void setPeaking(double sampleRate, double hz, double gainDb, double q);

    double b0() const { return b0_; }
    double b1() const { return b1_; }
    double b2() const { return b2_; }
    double a1() const { return a1_; }
    double a2() const { return a2_; }

private:
    void set(double b0, double b1, double b2, double a0, double a1, double a2);

    double b0_ = 1.0, b1_ = 0.0, b2_ = 0.0, a1_ = 0.0, a2_ = 0.0;
    double s1_ = 0.0, s2_ = 0.0;
};

} // namespace Lumora
