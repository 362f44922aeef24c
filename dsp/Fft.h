#pragma once

#include <complex>
#include <vector>

namespace Lumora {

// Complex fast Fourier transform of one fixed power-of-two size (1024 in the
// chain), iterative radix-2 with per-stage twiddle tables.
//
// The work runs on split real and imaginary arrays so that the butterflies of
// every stage are plain loops the compiler turns into packed SIMD; the
// interleaved std::complex entry points copy through the object's own scratch.
// The constructor is the only place that allocates; every transform is
// allocation-free, so one object may live on the audio thread. An object is not
// meant to be shared between threads (the scratch is its own).
//
// forward:  X[k] = sum_n x[n] e^(-2 pi i k n / N)
// inverse:  x[n] = sum_k X[k] e^(+2 pi i k n / N)   (unscaled: divide by N)
class Fft {
public:
    using Complex = std::complex<float>;

    // size must be a power of two, at least 4.
    explicit Fft(int size = 1024);

    int size() const { return size_; }

    // In place on split arrays of size() values each.
    void forward(float* re, float* im) const;
    void inverse(float* re, float* im) const;

    // In place on interleaved values.
    void forward(Complex* data);
    void inverse(Complex* data);

private:
    void transform(float* re, float* im) const;

    int size_;
    std::vector<int> swaps_;       // pairs (i, j), i < j, exchanged by the bit reversal
    std::vector<float> twiddleRe_; // stage by stage from length 8: cos(2 pi j / len)
    std::vector<float> twiddleIm_; // -sin(2 pi j / len)
    std::vector<float> scratchRe_;
    std::vector<float> scratchIm_;
};

} // namespace Lumora
