#include "dsp/fx/VoiceFxChain.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

VoiceFxChain::VoiceFxChain() = default;
VoiceFxChain::~VoiceFxChain() = default;

void VoiceFxChain::prepare(double sampleRate, int /*blockLength*/) { sampleRate_ = sampleRate; }

void VoiceFxChain::setParameters(const SoundFxPreset& preset) {
    const int live = liveIndex_.load(std::memory_order_acquire);
    slots_[1 - live] = preset;
    liveIndex_.store(1 - live, std::memory_order_release);
}

SoundFxPreset VoiceFxChain::getParameters() const {
    return slots_[liveIndex_.load(std::memory_order_acquire)];
}

void VoiceFxChain::process(float* const* planes, int channels, int frames) {
    const int used = std::min(channels, 2);
    double sum = 0.0;
    for (int c = 0; c < used; ++c) {
        for (int i = 0; i < frames; ++i) {
            sum += static_cast<double>(planes[c][i]) * static_cast<double>(planes[c][i]);
        }
    }
    const int count = used * frames;
    const double rms = count > 0 ? std::sqrt(sum / count) : 0.0;
    const float db = rms > 1e-9 ? static_cast<float>(20.0 * std::log10(rms)) : -96.0f;
    inputLevelDb_.store(db, std::memory_order_relaxed);
    outputLevelDb_.store(db, std::memory_order_relaxed);
}

} // namespace Lumora
