#include "dsp/fx/ModulationEffect.h"

#include <algorithm>

namespace Lumora {

void ModulationEffect::prepare(double sampleRate) {
    for (int c = 0; c < 2; ++c) {
        chorus_[c].prepare(sampleRate, c);
        flanger_[c].prepare(sampleRate, c);
    }
    tremolo_.prepare(sampleRate);
}

void ModulationEffect::reset() {
    for (int c = 0; c < 2; ++c) {
        chorus_[c].reset();
        flanger_[c].reset();
    }
    tremolo_.reset();
}

void ModulationEffect::process(float* const* channels, int channelCount, int frames,
                               const ModParams& p) {
    const int used = std::min(channelCount, 2);
    switch (p.type) {
    case kModChorus:
        for (int c = 0; c < used; ++c) {
            chorus_[c].process(channels[c], frames, p.rate, p.depth, p.feedback, p.wetMix);
        }
        break;
    case kModFlanger:
        for (int c = 0; c < used; ++c) {
            flanger_[c].process(channels[c], frames, p.rate, p.depth, p.feedback, p.wetMix);
        }
        break;
    case kModTremolo:
        tremolo_.process(channels, used, frames, p);
        break;
    default:
        break;
    }
}

} // namespace Lumora
