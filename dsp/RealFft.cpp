#include "dsp/RealFft.h"

#include <cmath>

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMORA_REAL_FFT_SSE 1
#endif

namespace Lumora {

namespace {

#ifdef LUMORA_REAL_FFT_SSE
inline __m128 reversed(__m128 v) {
    return _mm_shuffle_ps(v, v, _MM_SHUFFLE(0, 1, 2, 3));
}
#endif

} // namespace

RealFft::RealFft(int size) : size_(size), half_(size / 2) {
    const int m = size_ / 2;
    const double twoPi = 6.283185307179586476925286766559;
    for (int k = 0; k <= m; ++k) {
        cos_.push_back(static_cast<float>(std::cos(twoPi * k / size_)));
        sin_.push_back(static_cast<float>(std::sin(twoPi * k / size_)));
    }
    // One more than the half transform's length: Z[m] repeats Z[0], so the
    // mirrored index m − k needs no special case at k = 0.
    zr_.assign(static_cast<size_t>(m + 1), 0.0f);
    zi_.assign(static_cast<size_t>(m + 1), 0.0f);
}

void RealFft::forward(const float* input, float* re, float* im) {
    const int m = size_ / 2;
    float* zr = zr_.data();
    float* zi = zi_.data();
    int n = 0;
#ifdef LUMORA_REAL_FFT_SSE
    for (; n + 4 <= m; n += 4) {
        const __m128 lo = _mm_loadu_ps(input + 2 * n);
        const __m128 hi = _mm_loadu_ps(input + 2 * n + 4);
        _mm_storeu_ps(zr + n, _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(2, 0, 2, 0)));
        _mm_storeu_ps(zi + n, _mm_shuffle_ps(lo, hi, _MM_SHUFFLE(3, 1, 3, 1)));
    }
#endif
    for (; n < m; ++n) {
        zr[n] = input[2 * n];
        zi[n] = input[2 * n + 1];
    }
    half_.forward(zr, zi);
    zr[m] = zr[0];
    zi[m] = zi[0];

    // Z = E + i·O, where E and O are the spectra of the even and odd samples:
    // E[k] = (Z[k] + conj Z[m−k]) / 2, O[k] = (Z[k] − conj Z[m−k]) / 2i, and
    // X[k] = E[k] + e^(−2πik/N)·O[k].
    int k = 0;
#ifdef LUMORA_REAL_FFT_SSE
    const __m128 half = _mm_set1_ps(0.5f);
    for (; k + 4 <= m; k += 4) {
        const __m128 ar = _mm_loadu_ps(zr + k), ai = _mm_loadu_ps(zi + k);
        const __m128 br = reversed(_mm_loadu_ps(zr + m - k - 3));
        const __m128 bi = reversed(_mm_loadu_ps(zi + m - k - 3));
        const __m128 er = _mm_mul_ps(half, _mm_add_ps(ar, br));
        const __m128 ei = _mm_mul_ps(half, _mm_sub_ps(ai, bi));
        const __m128 orr = _mm_mul_ps(half, _mm_add_ps(ai, bi));
        const __m128 oi = _mm_mul_ps(half, _mm_sub_ps(br, ar));
        const __m128 wr = _mm_loadu_ps(cos_.data() + k);
        const __m128 ws = _mm_loadu_ps(sin_.data() + k); // the twiddle's imaginary part is −sin
        _mm_storeu_ps(re + k, _mm_add_ps(er, _mm_add_ps(_mm_mul_ps(wr, orr), _mm_mul_ps(ws, oi))));
        _mm_storeu_ps(im + k, _mm_add_ps(ei, _mm_sub_ps(_mm_mul_ps(wr, oi), _mm_mul_ps(ws, orr))));
    }
#endif
    for (; k <= m; ++k) {
        const int a = k == m ? 0 : k;
        const int b = m - k;
        const float er = 0.5f * (zr[a] + zr[b]);
        const float ei = 0.5f * (zi[a] - zi[b]);
        const float orr = 0.5f * (zi[a] + zi[b]);
        const float oi = 0.5f * (zr[b] - zr[a]);
        re[k] = er + (cos_[k] * orr + sin_[k] * oi);
        im[k] = ei + (cos_[k] * oi - sin_[k] * orr);
    }
}

void RealFft::inverse(const float* re, const float* im, float* output) {
    const int m = size_ / 2;
    float* zr = zr_.data();
    float* zi = zi_.data();
    // 2E[k] = X[k] + conj X[m−k], 2O[k] = (X[k] − conj X[m−k])·e^(2πik/N), and
    // 2Z = 2E + i·2O; the unscaled half-size inverse of 2Z is N times z.
    int k = 0;
#ifdef LUMORA_REAL_FFT_SSE
    for (; k + 4 <= m; k += 4) {
        const __m128 xr = _mm_loadu_ps(re + k), xi = _mm_loadu_ps(im + k);
        const __m128 cr = reversed(_mm_loadu_ps(re + m - k - 3));
        const __m128 ci = reversed(_mm_loadu_ps(im + m - k - 3)); // conjugated below
        const __m128 sr = _mm_add_ps(xr, cr), si = _mm_sub_ps(xi, ci);
        const __m128 dr = _mm_sub_ps(xr, cr), di = _mm_add_ps(xi, ci);
        const __m128 wr = _mm_loadu_ps(cos_.data() + k), wi = _mm_loadu_ps(sin_.data() + k);
        const __m128 tr = _mm_sub_ps(_mm_mul_ps(dr, wr), _mm_mul_ps(di, wi));
        const __m128 ti = _mm_add_ps(_mm_mul_ps(dr, wi), _mm_mul_ps(di, wr));
        _mm_storeu_ps(zr + k, _mm_sub_ps(sr, ti));
        _mm_storeu_ps(zi + k, _mm_add_ps(si, tr));
    }
#endif
    for (; k < m; ++k) {
        const float cr = re[m - k];
        const float ci = -im[m - k];
        const float sr = re[k] + cr;
        const float si = im[k] + ci;
        const float dr = re[k] - cr;
        const float di = im[k] - ci;
        const float tr = dr * cos_[k] - di * sin_[k];
        const float ti = dr * sin_[k] + di * cos_[k];
        zr[k] = sr - ti;
        zi[k] = si + tr;
    }
    half_.inverse(zr, zi);
    int n = 0;
#ifdef LUMORA_REAL_FFT_SSE
    for (; n + 4 <= m; n += 4) {
        const __m128 r = _mm_loadu_ps(zr + n), i = _mm_loadu_ps(zi + n);
        _mm_storeu_ps(output + 2 * n, _mm_unpacklo_ps(r, i));
        _mm_storeu_ps(output + 2 * n + 4, _mm_unpackhi_ps(r, i));
    }
#endif
    for (; n < m; ++n) {
        output[2 * n] = zr[n];
        output[2 * n + 1] = zi[n];
    }
}

} // namespace Lumora
