#include "dsp/SpectralDenoiser.h"

#include "dsp/SimdMath.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Lumora {

namespace {

// 512²: the power of a full-scale bin in the unnormalised transform of a
// windowed frame, so the profile's dB levels map onto bin powers.
constexpr float kPowerScale = 262144.0f;
constexpr float kPi = 3.14159265358979f;

} // namespace

SpectralDenoiser::SpectralDenoiser() : fft_(kFrameSize) {
    for (int n = 0; n < kFrameSize; ++n) {
        window_[n] = std::sin(kPi * (static_cast<float>(n) + 0.5f) / kFrameSize);
    }
    noisePower_.fill(0.0f);
    prepare(sampleRate_);
}

void SpectralDenoiser::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    frame_.fill(0.0f);
    overlap_.fill(0.0f);
    outputBlock_.fill(0.0f);
    prevGain_.fill(1.0f);
    prevMagnitude_.fill(0.0f);
    position_ = 0;
}

void SpectralDenoiser::setAmount(float amount) {
    amount_ = amount > 0.0f ? std::min(amount, 1.0f) : 0.0f;
}

void SpectralDenoiser::setNoiseProfile(const std::array<float, kProfileBandCount>& profileDb) {
    const double nyquist = sampleRate_ / 2.0;
    const double binWidth = sampleRate_ / kFrameSize;
    const double span = nyquist / 20.0;
    int lowestBin = 0;
    int highestBin = kBins - 1;
    float lowestPower = 0.0f;
    float highestPower = 0.0f;
    for (int b = 0; b < kProfileBandCount; ++b) {
        const double lo = 20.0 * std::pow(span, static_cast<double>(b) / kProfileBandCount);
        const double hi = 20.0 * std::pow(span, static_cast<double>(b + 1) / kProfileBandCount);
        const int first = std::max(0, static_cast<int>(std::floor(lo / binWidth)));
        const int last = std::min(static_cast<int>(std::floor(hi / binWidth)), kBins - 1);
        // A level that is not a number counts as silence.
        const float db = std::isfinite(profileDb[b]) ? profileDb[b] : kSilenceDb;
        const float power = std::pow(10.0f, db / 10.0f) * kPowerScale;
        for (int k = first; k <= last; ++k) {
            noisePower_[k] = power;
        }
        if (b == 0) {
            lowestBin = first;
            lowestPower = power;
        }
        if (b == kProfileBandCount - 1) {
            highestBin = last;
            highestPower = power;
        }
    }
    // Bins below 20 Hz follow the lowest band, bins above the last band the highest.
    for (int k = 0; k < lowestBin && k < kBins; ++k) {
        noisePower_[k] = lowestPower;
    }
    for (int k = highestBin + 1; k < kBins; ++k) {
        noisePower_[k] = highestPower;
    }
}

float SpectralDenoiser::expIntegral(float x) {
    if (x <= 0.0f) {
        return 4.0f;
    }
    if (x < 1.0f) {
        return -std::log(x) - 0.5772157f + 0.99999195f * x - 0.24991055f * x * x +
               0.05519968f * x * x * x - 0.00976004f * x * x * x * x +
               0.00107857f * x * x * x * x * x;
    }
    const float num =
        x * x * x * x + 8.573329f * x * x * x + 18.059017f * x * x + 8.634761f * x + 0.26777375f;
    const float den =
        x * x * x * x + 9.573322f * x * x * x + 25.632956f * x * x + 21.099653f * x + 3.9584968f;
    return std::exp(-x) / x * num / den;
}

float SpectralDenoiser::gain(float power, float noisePower, float prevGain, float prevMagnitude,
                             float amount) {
    const float lambda = noisePower + 1e-10f;
    const float post = std::min(60.0f, power / lambda); // a-posteriori SNR
    const float prior = prevGain * prevMagnitude;
    // A-priori SNR, decision-directed with weight 0.96.
    const float xi =
        std::max(0.0001f, 0.04f * std::max(0.0f, post - 1.0f) + 0.96f * prior * prior / lambda);
    const float ratio = xi / (1.0f + xi);
    const float g = std::clamp(ratio * std::exp(0.5f * expIntegral(ratio * post)), 0.01f, 1.0f);
    return 1.0f - (1.0f - g) * amount;
}

void SpectralDenoiser::gains(const float* power, const float* noisePower, const float* prevGain,
                             const float* prevMagnitude, float amount, float* out, int n) {
    int k = 0;
#ifdef LUMORA_SIMD_MATH
    // The same rule four bins at a time. exp(E1(v)/2) is taken in the form that
    // needs no logarithm: below 1, E1(v) = −ln v − γ + P(v), so
    // exp(E1(v)/2) = exp((P(v) − γ)/2) / √v; from 1 on, exp(e^−v/v · R(v) / 2).
    using namespace SimdMath;
    const __m128 one = _mm_set1_ps(1.0f);
    const __m128 zero = _mm_setzero_ps();
    const __m128 amt = _mm_set1_ps(amount);
    for (; k + 4 <= n; k += 4) {
        const __m128 lambda = _mm_add_ps(_mm_loadu_ps(noisePower + k), _mm_set1_ps(1e-10f));
        const __m128 post =
            _mm_min_ps(_mm_set1_ps(60.0f), _mm_div_ps(_mm_loadu_ps(power + k), lambda));
        const __m128 prior =
            _mm_mul_ps(_mm_loadu_ps(prevGain + k), _mm_loadu_ps(prevMagnitude + k));
        const __m128 fresh =
            _mm_mul_ps(_mm_set1_ps(0.04f), _mm_max_ps(zero, _mm_sub_ps(post, one)));
        const __m128 kept =
            _mm_div_ps(_mm_mul_ps(_mm_set1_ps(0.96f), _mm_mul_ps(prior, prior)), lambda);
        const __m128 xi = _mm_max_ps(_mm_set1_ps(0.0001f), _mm_add_ps(fresh, kept));
        const __m128 ratio = _mm_div_ps(xi, _mm_add_ps(one, xi));
        const __m128 v = _mm_mul_ps(ratio, post);

        const __m128 below = _mm_cmplt_ps(v, one);
        const int belowLanes = _mm_movemask_ps(below);
        // Below 1: (P(v) − γ)/2. Each form is computed only when some lane needs it.
        __m128 lowArg = zero;
        if (belowLanes != 0) {
            __m128 poly = _mm_set1_ps(0.00107857f);
            poly = _mm_add_ps(_mm_mul_ps(poly, v), _mm_set1_ps(-0.00976004f));
            poly = _mm_add_ps(_mm_mul_ps(poly, v), _mm_set1_ps(0.05519968f));
            poly = _mm_add_ps(_mm_mul_ps(poly, v), _mm_set1_ps(-0.24991055f));
            poly = _mm_add_ps(_mm_mul_ps(poly, v), _mm_set1_ps(0.99999195f));
            poly = _mm_mul_ps(poly, v);
            lowArg = _mm_mul_ps(_mm_set1_ps(0.5f), _mm_sub_ps(poly, _mm_set1_ps(0.5772157f)));
        }
        // From 1 on: E1(v)/2 by the rational form.
        __m128 highArg = zero;
        if (belowLanes != 0xf) {
            const __m128 v2 = _mm_mul_ps(v, v);
            const __m128 v3 = _mm_mul_ps(v2, v);
            const __m128 v4 = _mm_mul_ps(v2, v2);
            const __m128 num = _mm_add_ps(
                _mm_add_ps(_mm_add_ps(v4, _mm_mul_ps(_mm_set1_ps(8.573329f), v3)),
                           _mm_mul_ps(_mm_set1_ps(18.059017f), v2)),
                _mm_add_ps(_mm_mul_ps(_mm_set1_ps(8.634761f), v), _mm_set1_ps(0.26777375f)));
            const __m128 den = _mm_add_ps(
                _mm_add_ps(_mm_add_ps(v4, _mm_mul_ps(_mm_set1_ps(9.573322f), v3)),
                           _mm_mul_ps(_mm_set1_ps(25.632956f), v2)),
                _mm_add_ps(_mm_mul_ps(_mm_set1_ps(21.099653f), v), _mm_set1_ps(3.9584968f)));
            highArg = _mm_div_ps(_mm_mul_ps(exp4(_mm_sub_ps(zero, v)), num),
                                 _mm_mul_ps(_mm_add_ps(v, v), den));
        }
        const __m128 factor = exp4(select4(below, lowArg, highArg));
        __m128 e = select4(below, _mm_div_ps(factor, _mm_sqrt_ps(v)), factor);
        // E1 is capped at 4 where v ≤ 0 (a silent bin): exp(2).
        e = select4(_mm_cmple_ps(v, zero), _mm_set1_ps(7.3890561f), e);
        __m128 g = _mm_mul_ps(ratio, e);
        g = _mm_min_ps(one, _mm_max_ps(_mm_set1_ps(0.01f), g));
        g = _mm_sub_ps(one, _mm_mul_ps(_mm_sub_ps(one, g), amt));
        _mm_storeu_ps(out + k, g);
    }
#endif
    for (; k < n; ++k) {
        out[k] = gain(power[k], noisePower[k], prevGain[k], prevMagnitude[k], amount);
    }
}

void SpectralDenoiser::process(float* samples, int n) {
    int i = 0;
    while (i < n) {
        const int take = std::min(n - i, kHop - position_);
        float* in = frame_.data() + kHop + position_;
        const float* x = samples + i;
        int k = 0;
        // A sample that is not finite never enters the transform, where it would
        // spoil every bin and the history behind them: it enters as silence.
#ifdef LUMORA_SIMD_MATH
        for (; k + 4 <= take; k += 4) {
            const __m128 v = _mm_loadu_ps(x + k);
            const __m128 d = _mm_sub_ps(v, v); // 0 when finite, NaN otherwise
            _mm_storeu_ps(in + k, _mm_and_ps(v, _mm_cmpord_ps(d, d)));
        }
#endif
        for (; k < take; ++k) {
            in[k] = std::isfinite(x[k]) ? x[k] : 0.0f;
        }
        std::memcpy(samples + i, outputBlock_.data() + position_, take * sizeof(float));
        position_ += take;
        i += take;
        if (position_ == kHop) {
            position_ = 0;
            processFrame();
            std::memcpy(outputBlock_.data(), overlap_.data(), kHop * sizeof(float));
            std::memmove(overlap_.data(), overlap_.data() + kHop, kHop * sizeof(float));
            std::fill(overlap_.begin() + kHop, overlap_.end(), 0.0f);
            std::memcpy(frame_.data(), frame_.data() + kHop, kHop * sizeof(float));
        }
    }
}

bool SpectralDenoiser::applyGains() {
    int k = 0;
    bool finite = true;
#ifdef LUMORA_SIMD_MATH
    __m128 bad = _mm_setzero_ps();
    for (; k + 4 <= kBins; k += 4) {
        const __m128 power = _mm_loadu_ps(power_.data() + k);
        const __m128 g = _mm_loadu_ps(gain_.data() + k);
        const __m128 sum = _mm_add_ps(power, g);
        const __m128 diff = _mm_sub_ps(sum, sum); // NaN where the sum is not finite
        bad = _mm_or_ps(bad, _mm_cmpunord_ps(diff, diff));
        _mm_storeu_ps(prevGain_.data() + k, g);
        _mm_storeu_ps(prevMagnitude_.data() + k, _mm_sqrt_ps(power));
        _mm_storeu_ps(re_.data() + k, _mm_mul_ps(_mm_loadu_ps(re_.data() + k), g));
        _mm_storeu_ps(im_.data() + k, _mm_mul_ps(_mm_loadu_ps(im_.data() + k), g));
    }
    finite = _mm_movemask_ps(bad) == 0;
#endif
    for (; k < kBins; ++k) {
        const float g = gain_[k];
        finite = finite && std::isfinite(power_[k] + g);
        prevGain_[k] = g;
        prevMagnitude_[k] = std::sqrt(power_[k]);
        re_[k] *= g;
        im_[k] *= g;
    }
    return finite;
}

void SpectralDenoiser::processFrame() {
    for (int n = 0; n < kFrameSize; ++n) {
        time_[n] = frame_[n] * window_[n];
    }
    fft_.forward(time_.data(), re_.data(), im_.data());

    for (int k = 0; k < kBins; ++k) {
        power_[k] = re_[k] * re_[k] + im_[k] * im_[k];
    }
    gains(power_.data(), noisePower_.data(), prevGain_.data(), prevMagnitude_.data(), amount_,
          gain_.data(), kBins);
    if (!applyGains()) {
        // Samples so loud that their powers overflow: drop this frame and start
        // the history afresh rather than carry non-finite values along.
        prevGain_.fill(1.0f);
        prevMagnitude_.fill(0.0f);
        return;
    }
    // The upper half of the spectrum mirrors the lower one (the frame is real);
    // the real inverse transform takes that as given.
    fft_.inverse(re_.data(), im_.data(), time_.data());

    constexpr float scale = 1.0f / kFrameSize;
    for (int n = 0; n < kFrameSize; ++n) {
        overlap_[n] += time_[n] * window_[n] * scale;
    }
}

} // namespace Lumora
