#include "dsp/fx/Flanger.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
constexpr double kTwoPi = 6.28318530717958647692;
constexpr double kPi = 3.14159265358979323846;
} // namespace

void Flanger::prepare(double sampleRate, int channelIndex) {
    sampleRate_ = sampleRate;
    channelIndex_ = channelIndex;
    const int needed = static_cast<int>((kMinDelayMs + kMaxSweepMs) * 0.001 * sampleRate) + 4;
    int size = 64;
    while (size < needed) {
        size *= 2;
    }
    ring_.assign(static_cast<size_t>(size), 0.0f);
    mask_ = size - 1;
    reset();
}

void Flanger::reset() {
    std::fill(ring_.begin(), ring_.end(), 0.0f);
    write_ = 0;
    phase_ = 0.25 * kTwoPi * channelIndex_;
    halfSweep_ = -1.0;
}

void Flanger::process(float* x, int n, float rate, float depth, float feedback, float wet) {
    if (ring_.empty()) {
        return;
    }
    // d(t) = min + sweep·(1 − cos)/2 moves at most sweep·π·rate ms per ms.
    const double sweepMs = rate > 0.0f
                               ? std::min(kMaxSweepMs, 1000.0 * kMaxPitchDeviation / (kPi * rate))
                               : kMaxSweepMs;
    const double msToSamples = 0.001 * sampleRate_;
    const double minDelay = kMinDelayMs * msToSamples;
    const double halfSweep = depth * sweepMs * 0.5 * msToSamples;
    double width = halfSweep_ < 0.0 ? halfSweep : halfSweep_;
    const double widthStep = (halfSweep - width) / std::max(n, 1);
    const double increment = kTwoPi * rate / sampleRate_;
    const float fb = std::clamp(feedback, -kMaxFeedback, kMaxFeedback);
    const float inputGain = std::sqrt(1.0f - fb * fb);
    const float dry = 1.0f - wet;

    // (1 − cos) from a rotating phasor: exact at the block start.
    double sinPhase = std::sin(phase_);
    double cosPhase = std::cos(phase_);
    const double rotCos = std::cos(increment);
    const double rotSin = std::sin(increment);

    for (int s = 0; s < n; ++s) {
        width += widthStep;
        const double delay = minDelay + width * (1.0 - cosPhase);
        const int i = static_cast<int>(delay);
        const float frac = static_cast<float>(delay - i);
        // Delay of i + frac samples: ring[write − k] was written k samples ago.
        const float a = ring_[(write_ - i) & mask_];
        const float b = ring_[(write_ - i - 1) & mask_];
        const float delayed = a + (b - a) * frac;

        const float in = x[s];
        ring_[write_] = in * inputGain + delayed * fb;
        write_ = (write_ + 1) & mask_;
        x[s] = dry * in + wet * delayed;

        const double nextSin = sinPhase * rotCos + cosPhase * rotSin;
        cosPhase = cosPhase * rotCos - sinPhase * rotSin;
        sinPhase = nextSin;
    }
    phase_ = std::fmod(phase_ + increment * n, kTwoPi);
    halfSweep_ = halfSweep;
}

} // namespace Lumora
