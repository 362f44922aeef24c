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
        lines_[c].assign(static_cast<size_t>(delay_), 0.0f);
        undelayed_[c].assign(kMaxBlock, 0.0f);
    }
    fade_.prepare(sampleRate);
    reset(true);
}

void VoiceAlignment::reset(bool aligned) {
    for (std::vector<float>& line : lines_) {
        std::fill(line.begin(), line.end(), 0.0f);
    }
    write_ = 0;
    fade_.settle(aligned);
}

void VoiceAlignment::process(const float* const* in, float* const* out, int channels, int frames,
                             bool aligned) {
    if (lines_[0].empty()) {
        return;
    }
    const int used = std::min(channels, 2);
    const int n = std::min(frames, kMaxBlock);
    // Unaligned, the line still takes the voice, so that aligning crossfades
    // into the voice of a moment ago, not into silence.
    const bool delayedOnly = aligned && fade_.full();
    const bool undelayedOnly = !aligned && fade_.silent();
    const bool keepUndelayed = !delayedOnly;
    const int start = write_;
    for (int c = 0; c < used; ++c) {
        if (keepUndelayed) {
            std::copy(in[c], in[c] + n, undelayed_[c].data());
        }
        float* line = lines_[c].data();
        const float* x = in[c];
        float* y = out[c];
        int write = start;
        for (int i = 0; i < n; ++i) {
            const float v = x[i];
            y[i] = line[write];
            line[write] = v;
            write = write + 1 == delay_ ? 0 : write + 1;
        }
        write_ = write;
    }
    if (delayedOnly) {
        return;
    }
    const float* undelayed[2] = {undelayed_[0].data(), undelayed_[1].data()};
    if (undelayedOnly) {
        for (int c = 0; c < used; ++c) {
            std::copy(undelayed[c], undelayed[c] + n, out[c]);
        }
        return;
    }
    fade_.mix(undelayed, out, used, n, aligned);
}

} // namespace Lumora
