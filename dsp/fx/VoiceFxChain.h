#pragma once

#include "dsp/SoundFxPreset.h"

#include <atomic>

namespace Lumora {

// The voice-effects chain: pitch and formant, modulation, radio, delay and reverb
// in the user's order, after the cleaning chain. Same two-slot hand-over as
// VoiceChain.
class VoiceFxChain {
public:
    VoiceFxChain();
    ~VoiceFxChain();
    VoiceFxChain(const VoiceFxChain&) = delete;
    VoiceFxChain& operator=(const VoiceFxChain&) = delete;

    void prepare(double sampleRate, int blockLength);

    void setParameters(const SoundFxPreset& preset);
    SoundFxPreset getParameters() const;
    void setActive(bool active) { active_.store(active, std::memory_order_release); }
    bool isActive() const { return active_.load(std::memory_order_acquire); }

    void process(float* const* planes, int channels, int frames);

    float inputLevelDb() const { return inputLevelDb_.load(std::memory_order_relaxed); }
    float outputLevelDb() const { return outputLevelDb_.load(std::memory_order_relaxed); }

private:
    double sampleRate_ = 48000.0;
    SoundFxPreset slots_[2];
    std::atomic<int> liveIndex_{0};
    std::atomic<bool> active_{false};
    std::atomic<float> inputLevelDb_{-96.0f};
    std::atomic<float> outputLevelDb_{-96.0f};
};

} // namespace Lumora
