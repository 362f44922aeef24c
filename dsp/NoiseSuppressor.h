#pragma once

#include "dsp/DeepFilterLibrary.h"

#include <array>
#include <atomic>
#include <string>

namespace Lumora {

// Neural noise suppression of one channel through the DeepFilterNet library.
//
// The model takes fixed frames of 480 samples (10 ms at 48 kHz) whatever the
// host's packet length, so the suppressor collects input into frames and hands
// out the last processed frame while the next one fills: a fixed delay of one
// frame. The model's own output lags its input by one frame too; the dry
// signal blended in (mix below 1) is therefore the previous frame's input,
// which lines the two up.
//
// Without a model instance the suppressor passes audio through, undelayed.
class NoiseSuppressor {
public:
    static constexpr int kFrameLength = 480;

    NoiseSuppressor() = default;
    ~NoiseSuppressor();
    NoiseSuppressor(const NoiseSuppressor&) = delete;
    NoiseSuppressor& operator=(const NoiseSuppressor&) = delete;

    // Not on the audio thread. Frees any instance it had, then creates one from
    // modelPath (none when the library is not loaded, the path is empty or the
    // model's frames are not 480 samples; the caller checks that the file is
    // readable) and clears every buffer. True when an instance exists afterwards.
    bool prepare(const DeepFilterLibrary* library, const std::string& modelPath);
    // Frees the instance (before the library is unloaded).
    void release();
    bool isActive() const { return handle_ != nullptr; }

    // The chain stores these once per packet; the limit is handed to the model
    // before the next frame.
    void setAttenLimitDb(float db) {
        attenLimitDb_.store(db, std::memory_order_relaxed);
        limitDirty_.store(true, std::memory_order_release);
    }
    void setMix(float mix) { mix_.store(mix, std::memory_order_relaxed); }
    float attenLimitDb() const { return attenLimitDb_.load(std::memory_order_relaxed); }
    float mix() const { return mix_.load(std::memory_order_relaxed); }

    // Audio thread, one channel in place.
    void process(float* plane, int frames);

private:
    void processFrame(float mix);

    const DeepFilterLibrary* library_ = nullptr;
    void* handle_ = nullptr;
    std::atomic<bool> limitDirty_{false};
    std::array<float, kFrameLength> inputFrame_{};
    int inputCount_ = 0;
    std::array<float, kFrameLength> dryFrame_{};
    std::array<float, kFrameLength> outputFrame_{};
    int outputIndex_ = 0;
    int outputCount_ = 0;
    std::atomic<float> attenLimitDb_{40.0f};
    std::atomic<float> mix_{0.8f};
};

} // namespace Lumora
