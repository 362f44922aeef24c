#include "dsp/Fft.h"

#include <climits>
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

#ifdef LUMORA_FFT_SSE
// a := a + w·b, b := a − w·b on four complex values in registers.
inline void butterfly4(__m128& ar, __m128& ai, __m128& br, __m128& bi, __m128 wr, __m128 wi) {
    const __m128 tr = _mm_sub_ps(_mm_mul_ps(br, wr), _mm_mul_ps(bi, wi));
    const __m128 ti = _mm_add_ps(_mm_mul_ps(br, wi), _mm_mul_ps(bi, wr));
    br = _mm_sub_ps(ar, tr);
    bi = _mm_sub_ps(ai, ti);
    ar = _mm_add_ps(ar, tr);
    ai = _mm_add_ps(ai, ti);
}

// Two consecutive stages, of lengths len and 2·len, in one pass over a block of
// 2·len values: each value is loaded and stored once instead of twice. The
// arithmetic is exactly that of the two stages one after the other.
// w1 holds the first stage's len/2 twiddles, w2 the second's len.
inline void twoStages(float* re, float* im, int len, const float* w1r, const float* w1i,
                      const float* w2r, const float* w2i) {
    const int q = len / 2;
    for (int j = 0; j < q; j += 4) {
        __m128 r0 = _mm_loadu_ps(re + j), i0 = _mm_loadu_ps(im + j);
        __m128 r1 = _mm_loadu_ps(re + j + q), i1 = _mm_loadu_ps(im + j + q);
        __m128 r2 = _mm_loadu_ps(re + j + 2 * q), i2 = _mm_loadu_ps(im + j + 2 * q);
        __m128 r3 = _mm_loadu_ps(re + j + 3 * q), i3 = _mm_loadu_ps(im + j + 3 * q);
        const __m128 ar = _mm_loadu_ps(w1r + j), ai = _mm_loadu_ps(w1i + j);
        butterfly4(r0, i0, r1, i1, ar, ai);
        butterfly4(r2, i2, r3, i3, ar, ai);
        butterfly4(r0, i0, r2, i2, _mm_loadu_ps(w2r + j), _mm_loadu_ps(w2i + j));
        butterfly4(r1, i1, r3, i3, _mm_loadu_ps(w2r + j + q), _mm_loadu_ps(w2i + j + q));
        _mm_storeu_ps(re + j, r0);
        _mm_storeu_ps(im + j, i0);
        _mm_storeu_ps(re + j + q, r1);
        _mm_storeu_ps(im + j + q, i1);
        _mm_storeu_ps(re + j + 2 * q, r2);
        _mm_storeu_ps(im + j + 2 * q, i2);
        _mm_storeu_ps(re + j + 3 * q, r3);
        _mm_storeu_ps(im + j + 3 * q, i3);
    }
}
#endif

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
    int g = 0;
#ifdef LUMORA_FFT_SSE
    // Four values per register: [x0 x1 x2 x3] -> A = x0 + x1, B = x0 - x1,
    // C = x2 + x3, D = x2 - x3 -> [A + C, B - iD, A - C, B + iD].
    const __m128 oddNeg = _mm_castsi128_ps(_mm_setr_epi32(0, INT32_MIN, 0, INT32_MIN));
    const __m128 highNeg = _mm_castsi128_ps(_mm_setr_epi32(0, 0, INT32_MIN, INT32_MIN));
    const __m128 middleNeg = _mm_castsi128_ps(_mm_setr_epi32(0, INT32_MIN, INT32_MIN, 0));
    for (; g + 4 <= n; g += 4) {
        const __m128 vr = _mm_loadu_ps(re + g), vi = _mm_loadu_ps(im + g);
        const __m128 pr =
            _mm_add_ps(_mm_shuffle_ps(vr, vr, _MM_SHUFFLE(2, 2, 0, 0)),
                       _mm_xor_ps(_mm_shuffle_ps(vr, vr, _MM_SHUFFLE(3, 3, 1, 1)), oddNeg));
        const __m128 pi =
            _mm_add_ps(_mm_shuffle_ps(vi, vi, _MM_SHUFFLE(2, 2, 0, 0)),
                       _mm_xor_ps(_mm_shuffle_ps(vi, vi, _MM_SHUFFLE(3, 3, 1, 1)), oddNeg));
        // pr = [Ar Br Cr Dr], pi = [Ai Bi Ci Di]
        const __m128 cdr = _mm_shuffle_ps(pr, pi, _MM_SHUFFLE(3, 3, 2, 2)); // [Cr Cr Di Di]
        const __m128 cdi = _mm_shuffle_ps(pi, pr, _MM_SHUFFLE(3, 3, 2, 2)); // [Ci Ci Dr Dr]
        const __m128 outr =
            _mm_add_ps(_mm_shuffle_ps(pr, pr, _MM_SHUFFLE(1, 0, 1, 0)),
                       _mm_xor_ps(_mm_shuffle_ps(cdr, cdr, _MM_SHUFFLE(2, 0, 2, 0)), highNeg));
        const __m128 outi =
            _mm_add_ps(_mm_shuffle_ps(pi, pi, _MM_SHUFFLE(1, 0, 1, 0)),
                       _mm_xor_ps(_mm_shuffle_ps(cdi, cdi, _MM_SHUFFLE(2, 0, 2, 0)), middleNeg));
        _mm_storeu_ps(re + g, outr);
        _mm_storeu_ps(im + g, outi);
    }
#endif
    for (; g < n; g += 4) {
        const float r0 = re[g] + re[g + 1], i0 = im[g] + im[g + 1];
        const float r1 = re[g] - re[g + 1], i1 = im[g] - im[g + 1];
        const float r2 = re[g + 2] + re[g + 3], i2 = im[g + 2] + im[g + 3];
        const float r3 = re[g + 2] - re[g + 3], i3 = im[g + 2] - im[g + 3];
        re[g] = r0 + r2;
        im[g] = i0 + i2;
        re[g + 2] = r0 - r2;
        im[g + 2] = i0 - i2;
        // (r3 + i·i3)·(-i) = i3 - i·r3
        re[g + 1] = r1 + i3;
        im[g + 1] = i1 - r3;
        re[g + 3] = r1 - i3;
        im[g + 3] = i1 + r3;
    }

    const float* wr = twiddleRe_.data();
    const float* wi = twiddleIm_.data();
    int len = 8;
#ifdef LUMORA_FFT_SSE
    for (; 2 * len <= n; len *= 4) {
        const int half = len / 2;
        for (int s = 0; s < n; s += 2 * len) {
            twoStages(re + s, im + s, len, wr, wi, wr + half, wi + half);
        }
        wr += half + len;
        wi += half + len;
    }
#endif
    for (; len <= n; len *= 2) {
        const int half = len / 2;
        for (int s = 0; s < n; s += len) {
            butterflies(re + s, im + s, half, wr, wi);
        }
        wr += half;
        wi += half;
    }
}

} // namespace Lumora
