#include "dsp/fx/Chorus.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
constexpr double kTwoPi = 6.28318530717958647692;
}

void Chorus::prepare(double sampleRate, int channelIndex) {
    sampleRate_ = sampleRate;
    channelIndex_ = channelIndex;
    reset();
}

void Chorus::reset() {
    for (Voice& voice : voices_) {
        voice.ring.fill(0.0f);
        voice.write = 0;
    }
    phase_ = kTwoPi * 0.5 * channelIndex_;
    sweep_ = -1.0;
}

void Chorus::process(float* x, int n, float rate, float depth, float feedback, float wet) {
    const double increment = kTwoPi * rate / sampleRate_;
    const double sweepMs = rate > 0.0f
                               ? std::min(kMaxSweepMs, 1000.0 * kMaxPitchDeviation /
                                                           (kTwoPi * static_cast<double>(rate)))
                               : kMaxSweepMs;
    const double msToSamples = sampleRate_ * 0.001;
    const double sweep = depth * sweepMs * msToSamples;
    double width = sweep_ < 0.0 ? sweep : sweep_;
    const double widthStep = (sweep - width) / std::max(n, 1);
    const double base[2] = {kBaseDelayMs[0] * msToSamples, kBaseDelayMs[1] * msToSamples};
    const float voiceFeedback = feedback * kFeedbackShare;
    const float dry = 1.0f - wet;

    // The LFO as a rotating phasor: exact phase at the block start, a
    // rotation per sample (error far below audibility over one block).
    double sinPhase = std::sin(phase_);
    double cosPhase = std::cos(phase_);
    const double rotCos = std::cos(increment);
    const double rotSin = std::sin(increment);

    for (int s = 0; s < n; ++s) {
        const float in = x[s];
        const double lfo[2] = {sinPhase, cosPhase};
        width += widthStep;
        float sum = 0.0f;
        for (int v = 0; v < 2; ++v) {
            Voice& voice = voices_[v];
            const double offset = base[v] + width * lfo[v];
            // Delay of i + frac samples: ring[write − k] was written k samples ago.
            const int i = std::clamp(static_cast<int>(offset), 1, kRingLength - 2);
            const float frac = static_cast<float>(std::clamp(offset - i, 0.0, 1.0));
            int a = voice.write - i;
            if (a < 0) {
                a += kRingLength;
            }
            const int b = a == 0 ? kRingLength - 1 : a - 1;
            const float read = voice.ring[a] + (voice.ring[b] - voice.ring[a]) * frac;

            voice.ring[voice.write] = read * voiceFeedback + in;
            if (++voice.write == kRingLength) {
                voice.write = 0;
            }
            sum += (read + in) * 0.5f;
        }
        x[s] = dry * in + wet * (sum * 0.5f);
        const double nextSin = sinPhase * rotCos + cosPhase * rotSin;
        cosPhase = cosPhase * rotCos - sinPhase * rotSin;
        sinPhase = nextSin;
    }
    phase_ = std::fmod(phase_ + increment * n, kTwoPi);
    sweep_ = sweep;
}

} // namespace Lumora
