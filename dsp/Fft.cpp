#include "dsp/Fft.h"

#include <cmath>
#include <utility>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMORA_FFT_SSE 1
#endif

namespace Lumora {

namespace {

// One stage's butterflies over a block of 2·half values: a := a + w·b, b := a - w·b.
// half is a multiple of 4 here (stages from length 8 on).
inline void butterflies(float* ar, float* ai, int half, const float* wr, const float* wi) {
    float* br = ar + half;
    float* bi = ai + half;
#ifdef LUMORA_FFT_SSE
    for (int j = 0; j < half; j += 4) {
        const __m128 xr = _mm_loadu_ps(br + j), xi = _mm_loadu_ps(bi + j);
        const __m128 cr = _mm_loadu_ps(wr + j), ci = _mm_loadu_ps(wi + j);
        const __m128 tr = _mm_sub_ps(_mm_mul_ps(xr, cr), _mm_mul_ps(xi, ci));
        const __m128 ti = _mm_add_ps(_mm_mul_ps(xr, ci), _mm_mul_ps(xi, cr));
        const __m128 yr = _mm_loadu_ps(ar + j), yi = _mm_loadu_ps(ai + j);
        _mm_storeu_ps(br + j, _mm_sub_ps(yr, tr));
        _mm_storeu_ps(bi + j, _mm_sub_ps(yi, ti));
        _mm_storeu_ps(ar + j, _mm_add_ps(yr, tr));
        _mm_storeu_ps(ai + j, _mm_add_ps(yi, ti));
    }
#else
    for (int j = 0; j < half; ++j) {
        const float tr = br[j] * wr[j] - bi[j] * wi[j];
        const float ti = br[j] * wi[j] + bi[j] * wr[j];
        br[j] = ar[j] - tr;
        bi[j] = ai[j] - ti;
        ar[j] += tr;
        ai[j] += ti;
    }
#endif
}

} // namespace

Fft::Fft(int size) : size_(size) {
    int bits = 0;
    while ((1 << bits) < size_) {
        ++bits;
    }
    for (int i = 0; i < size_; ++i) {
        int r = 0;
        for (int b = 0; b < bits; ++b) {
            r |= ((i >> b) & 1) << (bits - 1 - b);
        }
        if (i < r) {
            swaps_.push_back(i);
            swaps_.push_back(r);
        }
    }
    // Twiddles in double, then rounded once, so no error accumulates along a stage.
    const double twoPi = 6.283185307179586476925286766559;
    for (int len = 8; len <= size_; len *= 2) {
        for (int j = 0; j < len / 2; ++j) {
            const double angle = twoPi * j / len;
            twiddleRe_.push_back(static_cast<float>(std::cos(angle)));
            twiddleIm_.push_back(static_cast<float>(-std::sin(angle)));
        }
    }
    scratchRe_.assign(static_cast<size_t>(size_), 0.0f);
    scratchIm_.assign(static_cast<size_t>(size_), 0.0f);
}

void Fft::forward(float* re, float* im) const {
    transform(re, im);
}

// The inverse transform is the forward one with real and imaginary parts swapped
// on the way in and on the way out.
void Fft::inverse(float* re, float* im) const {
    transform(im, re);
}

void Fft::forward(Complex* data) {
    for (int i = 0; i < size_; ++i) {
        scratchRe_[i] = data[i].real();
        scratchIm_[i] = data[i].imag();
    }
    transform(scratchRe_.data(), scratchIm_.data());
    for (int i = 0; i < size_; ++i) {
        data[i] = Complex(scratchRe_[i], scratchIm_[i]);
    }
}

void Fft::inverse(Complex* data) {
    for (int i = 0; i < size_; ++i) {
        scratchRe_[i] = data[i].real();
        scratchIm_[i] = data[i].imag();
    }
    transform(scratchIm_.data(), scratchRe_.data());
    for (int i = 0; i < size_; ++i) {
        data[i] = Complex(scratchRe_[i], scratchIm_[i]);
    }
}

void Fft::transform(float* re, float* im) const {
    const int n = size_;
    for (size_t s = 0; s < swaps_.size(); s += 2) {
        std::swap(re[swaps_[s]], re[swaps_[s + 1]]);
        std::swap(im[swaps_[s]], im[swaps_[s + 1]]);
    }

    // Lengths 2 and 4 together: their twiddles are 1 and -i, no multiplication.
    for (int s = 0; s < n; s += 4) {
        const float r0 = re[s] + re[s + 1], i0 = im[s] + im[s + 1];
        const float r1 = re[s] - re[s + 1], i1 = im[s] - im[s + 1];
        const float r2 = re[s + 2] + re[s + 3], i2 = im[s + 2] + im[s + 3];
        const float r3 = re[s + 2] - re[s + 3], i3 = im[s + 2] - im[s + 3];
        re[s] = r0 + r2;
        im[s] = i0 + i2;
        re[s + 2] = r0 - r2;
        im[s + 2] = i0 - i2;
        // (r3 + i·i3)·(-i) = i3 - i·r3
        re[s + 1] = r1 + i3;
        im[s + 1] = i1 - r3;
        re[s + 3] = r1 - i3;
        im[s + 3] = i1 + r3;
    }

    const float* wr = twiddleRe_.data();
    const float* wi = twiddleIm_.data();
    for (int len = 8; len <= n; len *= 2) {
        const int half = len / 2;
        for (int s = 0; s < n; s += len) {
            butterflies(re + s, im + s, half, wr, wi);
        }
        wr += half;
        wi += half;
    }
}

} // namespace Lumora
