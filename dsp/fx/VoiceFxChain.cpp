#include "dsp/fx/VoiceFxChain.h"

#include "dsp/AudioMath.h"
#include "dsp/DenormalGuard.h"
#include "dsp/fx/FxParameterGuard.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

// Samples beyond ±1000 (+60 dBFS) are no audio any device delivers; keeping
// the effects' input below that keeps their internal sums far from overflow.
constexpr float kSampleLimit = 1000.0f;

float levelDb(double sumOfSquares, long count) {
    const double rms = count > 0 ? std::sqrt(sumOfSquares / static_cast<double>(count)) : 0.0;
    return rms > 1e-9 ? static_cast<float>(20.0 * std::log10(rms)) : kMinLevelDb;
}

double sumOfSquares(const float* x, int n) {
    double sum = 0.0;
    for (int i = 0; i < n; ++i) {
        sum += static_cast<double>(x[i]) * static_cast<double>(x[i]);
    }
    return sum;
}

} // namespace

VoiceFxChain::VoiceFxChain() = default;
VoiceFxChain::~VoiceFxChain() = default;

void VoiceFxChain::prepare(double sampleRate, int /*blockLength*/) {
    // The block length is only a hint: packets of any length are split into
    // blocks of kMaxBlock, for which everything below is sized.
    prepared_ = false;
    if (!(sampleRate >= 8000.0 && sampleRate <= 384000.0)) {
        return;
    }
    sampleRate_ = sampleRate;
    pitch_.prepare(sampleRate);
    modulation_.prepare(sampleRate);
    radio_.prepare(sampleRate);
    delay_.prepare(sampleRate);
    reverb_.prepare(sampleRate);
    pitchRan_ = false;
    prepared_ = true;
}

void VoiceFxChain::setParameters(const SoundFxPreset& preset) {
    parameters_.publish(preset);
}

SoundFxPreset VoiceFxChain::getParameters() const {
    return parameters_.latest();
}

void VoiceFxChain::resetEffects() {
    pitch_.reset();
    modulation_.reset();
    radio_.reset();
    delay_.reset();
    reverb_.reset();
}

void VoiceFxChain::process(float* const* planes, int channels, int frames) {
    const int used = std::min(channels, 2);
    const int n = std::max(frames, 0);
    const bool active = active_.load(std::memory_order_acquire);
    params_ = parameters_.acquire();

    if (!prepared_ || !active || !params_.anyEnabled() || used < 1) {
        double sum = 0.0;
        for (int c = 0; c < used; ++c) {
            sum += sumOfSquares(planes[c], n);
        }
        const float db = levelDb(sum, static_cast<long>(used) * n);
        inputLevelDb_.store(db, std::memory_order_relaxed);
        outputLevelDb_.store(db, std::memory_order_relaxed);
        pitchRan_ = false;
        // Off, the gains are unity: switched on again, they ramp from there.
        inputGain_.reset();
        outputGain_.reset();
        return;
    }

    DenormalGuard denormals;
    params_ = guardFxParameters(params_, sampleRate_);
    pitchRunning_ = false;
    double sumIn = 0.0;
    double sumOut = 0.0;
    float* block[2] = {nullptr, nullptr};
    for (int start = 0; start < n; start += kMaxBlock) {
        const int m = std::min(kMaxBlock, n - start);
        for (int c = 0; c < used; ++c) {
            block[c] = planes[c] + start;
        }
        processBlock(block, used, m, sumIn, sumOut);
    }
    pitchRan_ = pitchRunning_;
    inputLevelDb_.store(levelDb(sumIn, static_cast<long>(used) * n), std::memory_order_relaxed);
    outputLevelDb_.store(levelDb(sumOut, static_cast<long>(used) * n), std::memory_order_relaxed);
}

void VoiceFxChain::processBlock(float* const* ch, int used, int n, double& sumIn, double& sumOut) {
    inputGain_.process(ch, used, n, dbToGain(params_.inputGainDb));
    // What comes in is audio from here on: nothing that is not a number, and
    // nothing louder than any device can deliver, reaches an effect's memory.
    for (int c = 0; c < used; ++c) {
        float* x = ch[c];
        for (int i = 0; i < n; ++i) {
            const float v = x[i];
            if (!(std::fabs(v) <= kSampleLimit)) {
                x[i] = std::isnan(v) ? 0.0f : std::copysign(kSampleLimit, v);
            }
        }
        sumIn += sumOfSquares(x, n);
    }

    runEffects(ch, used, n);

    outputGain_.process(ch, used, n, dbToGain(params_.outputGainDb));

    // Last line of defence: should an effect ever produce something that is
    // not a finite number, silence those samples and restart every effect, so
    // the fault costs one block instead of poisoning the lines for good.
    double sum = 0.0;
    for (int c = 0; c < used; ++c) {
        sum += sumOfSquares(ch[c], n);
    }
    if (!std::isfinite(sum)) {
        ++recoveries_;
        resetEffects();
        sum = 0.0;
        for (int c = 0; c < used; ++c) {
            float* x = ch[c];
            for (int i = 0; i < n; ++i) {
                if (!std::isfinite(x[i])) {
                    x[i] = 0.0f;
                }
            }
            sum += sumOfSquares(x, n);
        }
    }
    sumOut += sum;
}

void VoiceFxChain::runEffects(float* const* ch, int used, int n) {
    const SoundFxPreset& p = params_;
    for (const int32_t code : p.effectOrder) {
        switch (code) {
        case kEffectPitch:
            if (p.pitch.enabled) {
                // Back after a pause: start from silence rather than replay
                // what the shifters held when the pitch was last switched off.
                if (!pitchRan_ && !pitchRunning_) {
                    pitch_.reset();
                }
                pitchRunning_ = true;
                pitch_.process(ch, used, n, p.pitch);
            }
            break;
        case kEffectModulation:
            if (p.mod.enabled) {
                modulation_.process(ch, used, n, p.mod);
            }
            break;
        case kEffectRadio:
            if (p.radio.enabled) {
                radio_.process(ch, used, n, p.radio);
            }
            break;
        case kEffectDelay:
            if (p.delay.enabled) {
                delay_.process(ch, used, n, p.delay);
            }
            break;
        case kEffectReverb:
            if (p.reverb.enabled) {
                reverb_.process(ch, used, n, p.reverb);
            }
            break;
        default:
            break; // unknown codes are skipped
        }
    }
}

} // namespace Lumora
