#include "dsp/fx/VoiceAlignment.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

int VoiceAlignment::delayFramesAt(double sampleRate) {
    return static_cast<int>(std::lround(kDelayMs * 0.001 * sampleRate));
}

void VoiceAlignment::prepare(double sampleRate) {
    delay_ = std::max(1, delayFramesAt(sampleRate));
    for (int c = 0; c < 2; ++c) {
        lines_[c].prepare(delay_);
        undelayed_[c].assign(kMaxBlock, 0.0f);
    }
    fade_.prepare(sampleRate);
    reset(true);
}

void VoiceAlignment::reset(bool aligned) {
    for (DelayLine& line : lines_) {
        line.reset();
    }
    fade_.settle(aligned);
}

void VoiceAlignment::process(const float* const* in, float* const* out, int channels, int frames,
                             bool aligned) {
    if (delay_ == 0) {
        return;
    }
    const int used = std::min(channels, 2);
    const int n = std::min(frames, kMaxBlock);
    // Unaligned, the line still takes the voice, so that aligning crossfades
    // into the voice of a moment ago, not into silence.
    const bool delayedOnly = aligned && fade_.full();
    const bool undelayedOnly = !aligned && fade_.silent();
    for (int c = 0; c < used; ++c) {
        if (undelayedOnly) {
            lines_[c].push(in[c], n);
            if (out[c] != in[c]) {
                std::copy(in[c], in[c] + n, out[c]);
            }
            continue;
        }
        if (!delayedOnly) {
            std::copy(in[c], in[c] + n, undelayed_[c].data());
        }
        lines_[c].process(in[c], out[c], n, delay_);
    }
    if (delayedOnly || undelayedOnly) {
        return;
    }
    const float* undelayed[2] = {undelayed_[0].data(), undelayed_[1].data()};
    fade_.mix(undelayed, out, used, n, aligned);
}

} // namespace Lumora
