#include "dsp/SpectralDenoiser.h"

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

void SpectralDenoiser::process(float* samples, int n) {
    int i = 0;
    while (i < n) {
        const int take = std::min(n - i, kHop - position_);
        for (int k = 0; k < take; ++k) {
            // A sample that is not a number never enters the transform, where
            // it would spoil every bin and the history behind them.
            const float x = samples[i + k];
            frame_[kHop + position_ + k] = std::isfinite(x) ? x : 0.0f;
            samples[i + k] = outputBlock_[position_ + k];
        }
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

void SpectralDenoiser::processFrame() {
    for (int n = 0; n < kFrameSize; ++n) {
        re_[n] = frame_[n] * window_[n];
        im_[n] = 0.0f;
    }
    fft_.forward(re_.data(), im_.data());

    const float amount = amount_;
    float guard = 0.0f; // stays finite while every power and gain is
    for (int k = 0; k < kBins; ++k) {
        const float power = re_[k] * re_[k] + im_[k] * im_[k];
        const float magnitude = std::sqrt(power);
        const float lambda = noisePower_[k] + 1e-10f;
        const float post = std::min(60.0f, power / lambda);
        const float prior = prevGain_[k] * prevMagnitude_[k];
        const float xi =
            std::max(0.0001f, 0.04f * std::max(0.0f, post - 1.0f) + 0.96f * prior * prior / lambda);
        const float ratio = xi / (1.0f + xi);
        const float v = ratio * post;
        float gain = ratio * std::exp(0.5f * expIntegral(v));
        gain = std::clamp(gain, 0.01f, 1.0f);
        gain = 1.0f - (1.0f - gain) * amount;
        guard += power + gain;
        prevGain_[k] = gain;
        prevMagnitude_[k] = magnitude;
        re_[k] *= gain;
        im_[k] *= gain;
    }
    if (!std::isfinite(guard)) {
        // Samples so loud that their powers overflow: drop this frame and start
        // the history afresh rather than carry non-finite values along.
        prevGain_.fill(1.0f);
        prevMagnitude_.fill(0.0f);
        return;
    }
    // The upper half mirrors the lower one (the frame is real).
    for (int k = kBins; k < kFrameSize; ++k) {
        re_[k] = re_[kFrameSize - k];
        im_[k] = -im_[kFrameSize - k];
    }
    fft_.inverse(re_.data(), im_.data());

    constexpr float scale = 1.0f / kFrameSize;
    for (int n = 0; n < kFrameSize; ++n) {
        overlap_[n] += re_[n] * window_[n] * scale;
    }
}

} // namespace Lumora
