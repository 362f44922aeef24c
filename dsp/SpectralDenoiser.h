#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/RealFft.h"

#include <array>

namespace Lumora {

// Stationary-noise reduction for one channel: a short-time Fourier transform
// with 1024-point frames at 50 % overlap and a sine window at analysis and
// synthesis, and per bin a minimum mean-square-error log-spectral-amplitude gain
// with a decision-directed a-priori SNR, against a noise power taken from a
// 64-band profile.
//
// The squared sine window sums to one at 50 % overlap, so with every gain at 1
// the output is the input delayed by exactly kDelay samples.
class SpectralDenoiser {
public:
    static constexpr int kFrameSize = 1024;
    static constexpr int kHop = kFrameSize / 2;
    static constexpr int kBins = kFrameSize / 2 + 1;
    static constexpr int kDelay = kFrameSize;

    SpectralDenoiser();

    // Clears every buffer and the per-bin history; keeps the noise table.
    void prepare(double sampleRate);

    // Strength 0..1 (clamped; not a number counts as 0).
    void setAmount(float amount);
    // Rebuilds the per-bin noise power from the profile. Frame buffers and the
    // per-bin history are kept, so a profile change does not click.
    void setNoiseProfile(const std::array<float, kProfileBandCount>& profileDb);

    // In place.
    void process(float* samples, int n);

    float noisePower(int bin) const { return noisePower_[bin]; }
    float previousGain(int bin) const { return prevGain_[bin]; }
    float amount() const { return amount_; }

    // The exponential integral E1 as the gain rule uses it, single precision,
    // with E1(x ≤ 0) capped at 4.
    static float expIntegral(float x);

    // The per-bin rule: from a bin's power |X|², its noise power λ and the
    // previous frame's gain and magnitude, the gain G' to apply with strength
    // `amount`. gain() is the plain reference; gains() computes n bins at once
    // (four lanes where the processor has them) and agrees with it to within
    // float rounding.
    static float gain(float power, float noisePower, float prevGain, float prevMagnitude,
                      float amount);
    static void gains(const float* power, const float* noisePower, const float* prevGain,
                      const float* prevMagnitude, float amount, float* out, int n);

private:
    void processFrame();
    // Applies this frame's gains and keeps them with the magnitudes for the
    // next frame; false when a power or gain is not finite.
    bool applyGains();

    RealFft fft_;
    std::array<float, kFrameSize> frame_{};
    std::array<float, kFrameSize> time_{}; // windowed frame, then its resynthesis
    std::array<float, kBins> re_{};
    std::array<float, kBins> im_{};
    std::array<float, kFrameSize> overlap_{};
    std::array<float, kHop> outputBlock_{};
    std::array<float, kFrameSize> window_{};
    std::array<float, kBins> noisePower_{};
    std::array<float, kBins> prevGain_{};
    std::array<float, kBins> prevMagnitude_{};
    std::array<float, kBins> power_{}; // this frame's |X|², per bin
    std::array<float, kBins> gain_{};  // this frame's G', per bin
    float amount_ = 0.75f;
    double sampleRate_ = 48000.0;
    int position_ = 0;
};

} // namespace Lumora
