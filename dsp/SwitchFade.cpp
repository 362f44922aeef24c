#include "dsp/SwitchFade.h"

#include <algorithm>

namespace Lumora {

void SwitchFade::prepare(double sampleRate) {
    step_ = static_cast<float>(1000.0 / (kFadeMs * sampleRate));
    reset();
}

void SwitchFade::mix(const float* const* dry, float* const* wet, int channels, int frames,
                     bool on) {
    const float step = on ? step_ : -step_;
    float level = level_;
    for (int i = 0; i < frames; ++i) {
        level = std::clamp(level + step, 0.0f, 1.0f);
        for (int c = 0; c < channels; ++c) {
            wet[c][i] = dry[c][i] + (wet[c][i] - dry[c][i]) * level;
        }
    }
    level_ = level;
}

} // namespace Lumora
