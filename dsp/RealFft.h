#pragma once

#include "dsp/Fft.h"

#include <vector>

namespace Lumora {

// Transform of a real signal of a power-of-two size N through one complex
// transform of N/2 points: even samples as the real part, odd samples as the
// imaginary part, then one pass that separates the two. About half the work
// of a complex transform of N points, with the same result.
//
// forward: bins 0..N/2 of X[k] = sum_n x[n] e^(-2 pi i k n / N)
// inverse: from bins 0..N/2 of a conjugate-symmetric spectrum, the real
//          signal times N (unscaled, like Fft::inverse)
//
// Allocates only in the constructor; one object per thread (it has scratch).
class RealFft {
public:
    // size must be a power of two, at least 8.
    explicit RealFft(int size = 1024);

    int size() const { return size_; }
    int bins() const { return size_ / 2 + 1; }

    void forward(const float* input, float* re, float* im);
    void inverse(const float* re, const float* im, float* output);

private:
    int size_;
    Fft half_;
    std::vector<float> cos_; // cos(2 pi k / N), k = 0..N/2
    std::vector<float> sin_; // sin(2 pi k / N)
    std::vector<float> zr_;
    std::vector<float> zi_;
};

} // namespace Lumora
