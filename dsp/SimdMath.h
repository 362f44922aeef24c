#pragma once

// Four-lane natural exponential and logarithm for the per-sample and per-bin
// loops where std::exp and std::log would dominate the cost. Both use the
// classic range reduction to a power of two and a minimax polynomial on the
// remainder; the relative error is within a few units in the last place of a
// float over the ranges used here, far below anything audible or measurable
// in dB. Lanes that are not finite or out of range are the callers' to mask.

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define LUMORA_SIMD_MATH 1

namespace Lumora::SimdMath {

// e^x for x in about [-87, 88]; inputs outside are clamped to that range.
inline __m128 exp4(__m128 x) {
    x = _mm_min_ps(x, _mm_set1_ps(88.3762626647949f));
    x = _mm_max_ps(x, _mm_set1_ps(-87.3365478515625f));
    // n = round(x / ln 2); r = x − n·ln 2 with ln 2 split in two for accuracy.
    const __m128 fx =
        _mm_add_ps(_mm_mul_ps(x, _mm_set1_ps(1.44269504088896341f)), _mm_set1_ps(0.5f));
    __m128i n = _mm_cvttps_epi32(fx);
    __m128 nf = _mm_cvtepi32_ps(n);
    // Truncation rounds towards zero: step down where that overshot (negative x).
    const __m128 over = _mm_cmpgt_ps(nf, fx);
    nf = _mm_sub_ps(nf, _mm_and_ps(over, _mm_set1_ps(1.0f)));
    n = _mm_cvtps_epi32(nf);
    __m128 r = _mm_sub_ps(x, _mm_mul_ps(nf, _mm_set1_ps(0.693359375f)));
    r = _mm_sub_ps(r, _mm_mul_ps(nf, _mm_set1_ps(-2.12194440e-4f)));
    __m128 p = _mm_set1_ps(1.9875691500e-4f);
    p = _mm_add_ps(_mm_mul_ps(p, r), _mm_set1_ps(1.3981999507e-3f));
    p = _mm_add_ps(_mm_mul_ps(p, r), _mm_set1_ps(8.3334519073e-3f));
    p = _mm_add_ps(_mm_mul_ps(p, r), _mm_set1_ps(4.1665795894e-2f));
    p = _mm_add_ps(_mm_mul_ps(p, r), _mm_set1_ps(1.6666665459e-1f));
    p = _mm_add_ps(_mm_mul_ps(p, r), _mm_set1_ps(5.0000001201e-1f));
    p = _mm_add_ps(_mm_mul_ps(_mm_mul_ps(p, r), r), _mm_add_ps(r, _mm_set1_ps(1.0f)));
    // Multiply by 2^n through the exponent bits.
    const __m128i bits = _mm_slli_epi32(_mm_add_epi32(n, _mm_set1_epi32(127)), 23);
    return _mm_mul_ps(p, _mm_castsi128_ps(bits));
}

// ln x for finite x > 0 (normal numbers).
inline __m128 log4(__m128 x) {
    const __m128i bits = _mm_castps_si128(x);
    __m128 e = _mm_cvtepi32_ps(_mm_sub_epi32(_mm_srli_epi32(bits, 23), _mm_set1_epi32(126)));
    // Mantissa in [0.5, 1).
    __m128 m = _mm_castsi128_ps(
        _mm_or_si128(_mm_and_si128(bits, _mm_set1_epi32(0x007fffff)), _mm_set1_epi32(0x3f000000)));
    // Into [sqrt(1/2), sqrt(2)) around 1: below sqrt(1/2), double it and take
    // one from the exponent.
    const __m128 small = _mm_cmplt_ps(m, _mm_set1_ps(0.707106781186547524f));
    e = _mm_sub_ps(e, _mm_and_ps(small, _mm_set1_ps(1.0f)));
    m = _mm_sub_ps(_mm_add_ps(m, _mm_and_ps(small, m)), _mm_set1_ps(1.0f));
    const __m128 z = _mm_mul_ps(m, m);
    __m128 y = _mm_set1_ps(7.0376836292e-2f);
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(-1.1514610310e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(1.1676998740e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(-1.2420140846e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(1.4249322787e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(-1.6668057665e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(2.0000714765e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(-2.4999993993e-1f));
    y = _mm_add_ps(_mm_mul_ps(y, m), _mm_set1_ps(3.3333331174e-1f));
    y = _mm_mul_ps(_mm_mul_ps(y, m), z);
    y = _mm_add_ps(y, _mm_mul_ps(e, _mm_set1_ps(-2.12194440e-4f)));
    y = _mm_sub_ps(y, _mm_mul_ps(z, _mm_set1_ps(0.5f)));
    return _mm_add_ps(_mm_add_ps(m, y), _mm_mul_ps(e, _mm_set1_ps(0.693359375f)));
}

// mask ? a : b, lane by lane.
inline __m128 select4(__m128 mask, __m128 a, __m128 b) {
    return _mm_or_ps(_mm_and_ps(mask, a), _mm_andnot_ps(mask, b));
}

} // namespace Lumora::SimdMath

#endif
