#include "dsp/fx/Tremolo.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
constexpr double kTwoPi = 6.28318530717958647692;
}

void Tremolo::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Tremolo::process(float* const* channels, int channelCount, int frames, const ModParams& p) {
    const double increment = static_cast<double>(p.rate) * kTwoPi / sampleRate_;
    const float depth = p.depth;
    const float wet = p.wetMix;
    const int used = std::min(channelCount, 2);
    double phase = phase_;
    for (int i = 0; i < frames; ++i) {
        const float g = static_cast<float>((std::sin(phase) + 1.0) * 0.5) * depth + (1.0f - depth);
        for (int c = 0; c < used; ++c) {
            const float x = channels[c][i];
            channels[c][i] = x * g * wet + x * (1.0f - wet);
        }
        phase += increment;
        if (phase >= kTwoPi) {
            phase -= kTwoPi;
        }
    }
    // Only a rate far outside the knob's range could step past a whole turn.
    if (!(phase >= 0.0 && phase < kTwoPi)) {
        phase = std::isfinite(phase) ? std::fmod(phase, kTwoPi) : 0.0;
        if (phase < 0.0) {
            phase += kTwoPi;
        }
    }
    phase_ = phase;
}

} // namespace Lumora
