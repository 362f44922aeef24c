#include "dsp/VoiceChain.h"

#include "dsp/AudioMath.h"
#include "dsp/DenormalGuard.h"
#include "platform/Platform.h"

#include <algorithm>

namespace Lumora {

namespace {

// The model is trained for 48 kHz audio only.
constexpr double kNoiseModelRate = 48000.0;

} // namespace

VoiceChain::VoiceChain() = default;

void VoiceChain::setNoiseModelLocation(const NoiseModelLocation& location) {
    noiseLocation_ = location;
}

void VoiceChain::prepare(double sampleRate, int blockLength) {
    sampleRate_ = sampleRate;
    // The dry copy for a switch's crossfade: OBS's packets are at most 1024
    // frames; a longer one (or hint) is switched without it.
    for (std::vector<float>& dry : dry_) {
        dry.assign(static_cast<size_t>(std::clamp(blockLength, 4096, 16384)), 0.0f);
    }
    fade_.prepare(sampleRate);
    started_ = false;
    for (SpectralDenoiser& d : spectral_) {
        d.prepare(sampleRate);
    }
    spectralCacheValid_ = false;
    gate_.prepare(sampleRate);
    equaliser_.prepare(sampleRate);
    compressor_.prepare(sampleRate);
    limiter_.prepare(sampleRate);
    noiseStatus_.store(static_cast<int>(prepareNoiseSuppression()), std::memory_order_release);
}

NoiseSuppressionStatus VoiceChain::prepareNoiseSuppression() {
    for (NoiseSuppressor& s : suppressors_) {
        s.release();
    }
    if (!deepFilter_.load(noiseLocation_.libraryCandidates)) {
        return NoiseSuppressionStatus::LibraryMissing;
    }
    // Checked here because the library aborts the process on a path it cannot read.
    if (!Platform::fileReadable(noiseLocation_.modelPath)) {
        return NoiseSuppressionStatus::ModelMissing;
    }
    if (sampleRate_ != kNoiseModelRate) {
        return NoiseSuppressionStatus::UnsupportedRate;
    }
    bool created = true;
    for (NoiseSuppressor& s : suppressors_) {
        created = s.prepare(&deepFilter_, noiseLocation_.modelPath) && created;
    }
    if (!created) {
        // Both channels or neither: one delayed channel beside an undelayed one
        // would smear the stereo image.
        for (NoiseSuppressor& s : suppressors_) {
            s.release();
        }
        return NoiseSuppressionStatus::ModelRejected;
    }
    return NoiseSuppressionStatus::Available;
}

void VoiceChain::setParameters(const EffectPreset& preset) {
    parameters_.publish(preset);
    chainActive_.store(preset.active && !preset.bypass, std::memory_order_release);
}

EffectPreset VoiceChain::getParameters() const {
    return parameters_.latest();
}

void VoiceChain::process(float* const* planes, int channels, int frames) {
    const float inputDb = packetLevelDb(planes, channels, frames);
    inputLevelDb_.store(inputDb, std::memory_order_relaxed);

    // Switched off (bypass, a measurement, the dialog's switch), the record
    // keeps its stages: fading out, the chain goes on sounding as it did.
    const EffectPreset& p = parameters_.acquire();
    const bool on = chainActive_.load(std::memory_order_acquire) && p.active && !p.bypass;
    const int used = std::min(channels, 2);
    lastDelayFrames_ = on ? delayFrames(p) : 0;
    // Switched on or off, the chain crossfades with the dry voice; the first
    // sound after prepare is no switch, and a packet too long for the dry
    // copy switches at once.
    if (!started_ || frames > static_cast<int>(dry_[0].size())) {
        fade_.settle(on);
    }
    started_ = started_ || frames > 0;
    if (!on && fade_.silent()) {
        passThrough(inputDb);
        return;
    }
    const bool fading = !(on && fade_.full());
    if (fading) {
        for (int c = 0; c < used; ++c) {
            std::copy(planes[c], planes[c] + frames, dry_[c].data());
        }
    }

    DenormalGuard denormals;
    inputGain_.process(planes, used, frames, dbToGain(p.inputGainDb));
    if (p.inputGainDb != 0.0f) {
        inputLevelDb_.store(inputDb + p.inputGainDb, std::memory_order_relaxed);
    }

    runStages(planes, used, frames, p);

    outputGain_.process(planes, used, frames, dbToGain(p.outputGainDb));
    if (fading) {
        const float* dry[2] = {dry_[0].data(), dry_[1].data()};
        fade_.mix(dry, planes, used, frames, on);
    }
    outputLevelDb_.store(packetLevelDb(planes, channels, frames), std::memory_order_relaxed);
}

int VoiceChain::delayFrames(const EffectPreset& p) const {
    int frames = 0;
    if (p.spectral.enabled) {
        frames += kSpectralDelayFrames;
    }
    if (p.noise.enabled && noiseSuppressionAvailable()) {
        frames += kNeuralDelayFrames;
    }
    return frames;
}

void VoiceChain::passThrough(float inputDb) {
    outputLevelDb_.store(inputDb, std::memory_order_relaxed);
    // Off, the chain's gains are unity: switched on again, they ramp from there.
    inputGain_.reset();
    outputGain_.reset();
}

void VoiceChain::runStages(float* const* planes, int channels, int frames, const EffectPreset& p) {
    // Coefficients follow the record at the start of the packet.
    if (p.comp.enabled) {
        compressor_.updateCoefficients(p.comp);
    }
    if (p.limiter.enabled) {
        limiter_.setCeilingDb(p.limiter.ceilingDb);
        limiter_.setReleaseMs(p.limiter.releaseMs);
    }

    if (p.spectral.enabled) {
        runSpectral(planes, channels, frames, p.spectral);
    }
    if (p.noise.enabled) {
        runNoiseSuppression(planes, channels, frames, p.noise);
    }

    if (p.gate.enabled) {
        gate_.process(planes, channels, frames, p.gate);
    }
    if (Equaliser::isActive(p.eq)) {
        equaliser_.process(planes, channels, frames, p.eq);
    }
    if (p.comp.enabled) {
        compressor_.process(planes, channels, frames, p.comp);
        compDetectorDb_.store(compressor_.detectorDb(), std::memory_order_relaxed);
        compGainReductionDb_.store(compressor_.gainReductionDb(), std::memory_order_relaxed);
    } else {
        compDetectorDb_.store(-96.0f, std::memory_order_relaxed);
        compGainReductionDb_.store(0.0f, std::memory_order_relaxed);
    }
    if (p.limiter.enabled) {
        limiter_.process(planes, std::min(channels, 2), frames);
        limiterGainReductionDb_.store(limiter_.gainReductionDb(), std::memory_order_relaxed);
    } else {
        limiter_.reset(); // switched on again, it starts from unity
        limiterGainReductionDb_.store(0.0f, std::memory_order_relaxed);
    }
}

void VoiceChain::runSpectral(float* const* planes, int channels, int frames,
                             const SpectralParams& p) {
    if (!spectralCacheValid_ || p.enabled != spectralCache_.enabled ||
        p.amount != spectralCache_.amount || p.profileDb != spectralCache_.profileDb) {
        for (SpectralDenoiser& d : spectral_) {
            d.setAmount(p.amount);
            d.setNoiseProfile(p.profileDb);
        }
        spectralCache_ = p;
        spectralCacheValid_ = true;
    }
    for (int c = 0; c < channels; ++c) {
        spectral_[c].process(planes[c], frames);
    }
}

void VoiceChain::runNoiseSuppression(float* const* planes, int channels, int frames,
                                     const NoiseParams& p) {
    for (int c = 0; c < channels; ++c) {
        suppressors_[c].setAttenLimitDb(p.attenLimitDb);
        suppressors_[c].setMix(p.mix);
        suppressors_[c].process(planes[c], frames);
    }
}

} // namespace Lumora
