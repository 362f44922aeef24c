#pragma once

#include "dsp/Compressor.h"
#include "dsp/DeepFilterLibrary.h"
#include "dsp/EffectPreset.h"
#include "dsp/Equaliser.h"
#include "dsp/GainRamp.h"
#include "dsp/Gate.h"
#include "dsp/NoiseModelLocation.h"
#include "dsp/NoiseSuppressor.h"
#include "dsp/ParameterHandOver.h"
#include "dsp/PeakLimiter.h"
#include "dsp/SpectralDenoiser.h"
#include "dsp/SwitchFade.h"

#include <array>
#include <atomic>
#include <vector>

namespace Lumora {

// The voice-cleaning chain of one filter: input gain, spectral noise reduction,
// neural noise suppression, gate, equaliser, compressor, limiter, output gain.
// Runs in place on the host's audio thread over at most two channels.
//
// Parameters arrive as one whole EffectPreset through a ParameterHandOver: the
// interface thread hands records over, the audio thread takes the newest once
// per packet and works with it to the packet's end. No lock on either side.
class VoiceChain {
public:
    VoiceChain();
    VoiceChain(const VoiceChain&) = delete;
    VoiceChain& operator=(const VoiceChain&) = delete;

    // Where the neural noise suppressor looks for its library and model; read
    // by the next `prepare`. Without it the stage has no library to load.
    void setNoiseModelLocation(const NoiseModelLocation& location);

    // Resets every stage and (re)creates the noise suppressors: opens the
    // library and the model, which allocates and reads files, so never on the
    // audio thread.
    void prepare(double sampleRate, int blockLength);

    // Interface thread: whether neural noise suppression runs, and if not why.
    NoiseSuppressionStatus noiseSuppressionStatus() const {
        return static_cast<NoiseSuppressionStatus>(noiseStatus_.load(std::memory_order_acquire));
    }
    bool noiseSuppressionAvailable() const {
        return noiseSuppressionStatus() == NoiseSuppressionStatus::Available;
    }

    // Interface thread; getParameters() returns what was handed over last.
    void setParameters(const EffectPreset& preset);
    EffectPreset getParameters() const;
    bool isActive() const { return chainActive_.load(std::memory_order_acquire); }

    // Audio thread, in place. Planes beyond the second are never touched.
    void process(float* const* planes, int channels, int frames);

    // How late the chain makes the voice when it runs `p`: its block-based
    // stages (spectral reduction, neural suppression when it is there)
    // delay the whole voice by their blocks.
    int delayFrames(const EffectPreset& p) const;
    // Each block-based stage's share of that delay, for the dialog's notes.
    static constexpr int kSpectralDelayFrames = SpectralDenoiser::kDelay;
    // A frame being collected and the model's own frame of lag.
    static constexpr int kNeuralDelayFrames = 2 * NoiseSuppressor::kFrameLength;
    // Audio thread, after process(): how late the packet it returned is (the
    // chain switched on or off counts at once, its crossfade aside).
    int lastDelayFrames() const { return lastDelayFrames_; }

    float inputLevelDb() const { return inputLevelDb_.load(std::memory_order_relaxed); }
    float outputLevelDb() const { return outputLevelDb_.load(std::memory_order_relaxed); }
    float compressorDetectorDb() const { return compDetectorDb_.load(std::memory_order_relaxed); }
    float compressorGainReductionDb() const {
        return compGainReductionDb_.load(std::memory_order_relaxed);
    }
    float limiterGainReductionDb() const {
        return limiterGainReductionDb_.load(std::memory_order_relaxed);
    }

    double sampleRate() const { return sampleRate_; }

private:
    void runStages(float* const* planes, int channels, int frames, const EffectPreset& p);
    void passThrough(float inputDb);
    void runSpectral(float* const* planes, int channels, int frames, const SpectralParams& p);
    void runNoiseSuppression(float* const* planes, int channels, int frames, const NoiseParams& p);
    NoiseSuppressionStatus prepareNoiseSuppression();

    double sampleRate_ = 48000.0;
    ParameterHandOver<EffectPreset> parameters_;
    std::atomic<bool> chainActive_{false};

    std::array<SpectralDenoiser, 2> spectral_;
    // The spectral settings the noise tables were last built from.
    bool spectralCacheValid_ = false;
    SpectralParams spectralCache_;

    // The library outlives the suppressors' model instances: declared first,
    // destroyed last.
    NoiseModelLocation noiseLocation_;
    DeepFilterLibrary deepFilter_;
    std::array<NoiseSuppressor, 2> suppressors_;
    std::atomic<int> noiseStatus_{static_cast<int>(NoiseSuppressionStatus::NotPrepared)};

    GainRamp inputGain_;
    GainRamp outputGain_;
    // Audio thread: the switch of the whole chain, and the dry voice of a
    // packet while it crossfades.
    SwitchFade fade_;
    bool started_ = false;
    int lastDelayFrames_ = 0;
    std::vector<float> dry_[2];
    Gate gate_;
    Equaliser equaliser_;
    Compressor compressor_;
    PeakLimiter limiter_;

    std::atomic<float> inputLevelDb_{-96.0f};
    std::atomic<float> outputLevelDb_{-96.0f};
    std::atomic<float> compDetectorDb_{-96.0f};
    std::atomic<float> compGainReductionDb_{0.0f};
    std::atomic<float> limiterGainReductionDb_{0.0f};
};

} // namespace Lumora
