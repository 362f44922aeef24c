#include "dsp/fx/DelayEffect.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

void DelayEffect::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    intake_.prepare(sampleRate);
    for (auto& line : lines_) {
        line.assign(kLineLength, 0.0f);
    }
    reset();
}

void DelayEffect::reset() {
    for (auto& line : lines_) {
        std::fill(line.begin(), line.end(), 0.0f);
    }
    write_ = 0;
    delay_ = 0.0;
    intake_.reset();
}

int DelayEffect::delaySamples(float timeMs, double sampleRate) {
    // Computed in double and clamped before the conversion, so an absurd time
    // cannot overflow the integer.
    const double d = std::floor(static_cast<double>(timeMs) * 0.001 * sampleRate);
    if (!(d >= 1.0)) {
        return 1;
    }
    return d >= kLineLength - 1 ? kLineLength - 1 : static_cast<int>(d);
}

void DelayEffect::process(float* const* channels, int channelCount, int frames,
                          const DelayParams& p) {
    if (lines_[0].empty()) {
        return;
    }
    const int d = delaySamples(p.timeMs, sampleRate_);
    if (delay_ < 1.0) {
        delay_ = d; // just started (or reset): no glide from nowhere
    }
    const float feedback = p.feedback;
    const float wet = p.wetMix;
    const float dry = 1.0f - wet;
    const int used = std::min(channelCount, 2);
    int w = write_;
    for (int i = 0; i < frames; ++i) {
        delay_ = delay_ < d ? std::min(delay_ + kGlide, static_cast<double>(d))
                            : std::max(delay_ - kGlide, static_cast<double>(d));
        double position = w - delay_;
        if (position < 0.0) {
            position += kLineLength;
        }
        const int r = static_cast<int>(position);
        const int next = r + 1 == kLineLength ? 0 : r + 1;
        const float frac = static_cast<float>(position - r);
        const float feed = intake_.advance(true);
        for (int c = 0; c < used; ++c) {
            float* line = lines_[c].data();
            const float delayed = line[r] + (line[next] - line[r]) * frac;
            const float x = channels[c][i];
            line[w] = delayed * feedback + x * feed;
            channels[c][i] = x * dry + delayed * wet;
        }
        if (++w == kLineLength) {
            w = 0;
        }
    }
    write_ = w;
}

} // namespace Lumora
