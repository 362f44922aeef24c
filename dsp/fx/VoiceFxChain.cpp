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
    align_.prepare(sampleRate);
    pitch_.prepare(sampleRate);
    modulation_.prepare(sampleRate);
    radio_.prepare(sampleRate);
    delay_.prepare(sampleRate);
    reverb_.prepare(sampleRate);
    for (SwitchFade& fade : fades_) {
        fade.prepare(sampleRate);
    }
    ran_.fill(false);
    relaunch_.fill(false);
    started_ = false;
    for (int c = 0; c < 2; ++c) {
        dry_[c].assign(kMaxBlock, 0.0f);
        late_[c].assign(kMaxBlock, 0.0f);
    }
    delayFrames_ = 0;
    prepared_ = true;
}

void VoiceFxChain::setParameters(const SoundFxPreset& preset) {
    parameters_.publish(preset);
}

SoundFxPreset VoiceFxChain::getParameters() const {
    return parameters_.latest();
}

void VoiceFxChain::resetEffects() {
    for (int code = 0; code < kEffectCount; ++code) {
        resetEffect(code);
    }
}

void VoiceFxChain::process(float* const* planes, int channels, int frames) {
    const int used = std::min(channels, 2);
    const int n = std::max(frames, 0);
    const bool active = active_.load(std::memory_order_acquire);
    params_ = parameters_.acquire();
    // Switched off, the chain goes on running until every effect has faded out.
    const bool on = active && params_.anyEnabled();
    const bool running = prepared_ && used > 0 && (on || fading());
    const bool aligned = aligned_.load(std::memory_order_acquire);
    aligning_ = aligned;
    // The first sound after prepare: nothing is switched, nothing fades.
    settle_ = !started_;
    if (settle_ && prepared_ && n > 0) {
        align_.reset(aligned);
    }
    started_ = started_ || n > 0;
    delayFrames_ = prepared_ && used > 0 && aligned ? align_.delayFrames() : 0;

    if (!running) {
        double sum = 0.0;
        for (int c = 0; c < used; ++c) {
            sum += sumOfSquares(planes[c], n);
        }
        const float db = levelDb(sum, static_cast<long>(used) * n);
        inputLevelDb_.store(db, std::memory_order_relaxed);
        outputLevelDb_.store(db, std::memory_order_relaxed);
        ran_.fill(false);
        relaunch_.fill(false);
        // Off, the gains are unity: switched on again, they ramp from there.
        inputGain_.reset();
        outputGain_.reset();
        if (prepared_ && used > 0) {
            float* block[2] = {nullptr, nullptr};
            for (int start = 0; start < n; start += kMaxBlock) {
                for (int c = 0; c < used; ++c) {
                    block[c] = planes[c] + start;
                }
                align_.process(block, block, used, std::min(kMaxBlock, n - start), aligned);
            }
        }
        return;
    }

    DenormalGuard denormals;
    params_ = guardFxParameters(params_, sampleRate_);
    double sumIn = 0.0;
    double sumOut = 0.0;
    float* block[2] = {nullptr, nullptr};
    for (int start = 0; start < n; start += kMaxBlock) {
        const int m = std::min(kMaxBlock, n - start);
        for (int c = 0; c < used; ++c) {
            block[c] = planes[c] + start;
        }
        processBlock(block, used, m, on, sumIn, sumOut);
    }
    inputLevelDb_.store(levelDb(sumIn, static_cast<long>(used) * n), std::memory_order_relaxed);
    outputLevelDb_.store(levelDb(sumOut, static_cast<long>(used) * n), std::memory_order_relaxed);
}

void VoiceFxChain::processBlock(float* const* ch, int used, int n, bool on, double& sumIn,
                                double& sumOut) {
    // Switched off, the gains glide back to unity while the effects fade out.
    inputGain_.process(ch, used, n, on ? dbToGain(params_.inputGainDb) : 1.0f);
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

    runEffects(ch, used, n, on);

    // A voice's output gain matches its loudness with its pitch in. Until the
    // pitch has faded in (its shifters fill for 64 ms), the voice is the dry
    // one through the other effects, which that gain was not measured for: a
    // boost then waits for the pitch (dry into a voice at +4.5 dB peaked
    // 5.6 dB over either), a cut applies at once.
    float outputDb = params_.outputGainDb;
    if (params_.pitch.enabled && !fades_[static_cast<size_t>(kEffectPitch)].full()) {
        outputDb = std::min(outputDb, 0.0f);
    }
    outputGain_.process(ch, used, n, on ? dbToGain(outputDb) : 1.0f);

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

void VoiceFxChain::runEffects(float* const* ch, int used, int n, bool chainOn) {
    std::array<bool, kEffectCount> done{};
    // The pitch stage's place holds the chain's delay; an order without it
    // (a damaged preset) takes the delay at the end.
    const bool pitchListed = std::find(params_.effectOrder.begin(), params_.effectOrder.end(),
                                       kEffectPitch) != params_.effectOrder.end();
    for (const int32_t code : params_.effectOrder) {
        // Unknown codes are skipped; a code stored twice runs once, where it
        // first appears.
        if (code < 0 || code >= kEffectCount || done[static_cast<size_t>(code)]) {
            continue;
        }
        done[static_cast<size_t>(code)] = true;
        SwitchFade& fade = fades_[static_cast<size_t>(code)];
        bool& ran = ran_[static_cast<size_t>(code)];
        bool& relaunch = relaunch_[static_cast<size_t>(code)];
        const bool wanted = chainOn && enabled(code);
        // A new voice that changes an effect by more than a knob can in one
        // block (another pitch, a second layer, another kind of modulation)
        // fades the effect out as it was and in again as it is now.
        if (relaunch && fade.silent()) {
            relaunch = false;
        }
        if (wanted && ran && !settle_ && jumped(code)) {
            relaunch = true;
        }
        const bool on = wanted && !relaunch;
        if (settle_) {
            fade.settle(on);
        }
        if (code == kEffectPitch) {
            runPitch(fade, on, ch, used, n);
            continue;
        }
        if (!on && fade.silent()) {
            ran = false;
            continue;
        }
        if (on && !ran) {
            resetEffect(code); // from silence, not from what it held before
        }
        ran = true;
        if (on) {
            keepSettings(code);
        }
        if (on && fade.full()) {
            runEffect(code, ch, used, n, params_);
            continue;
        }
        for (int c = 0; c < used; ++c) {
            std::copy(ch[c], ch[c] + n, dry_[c].data());
        }
        runEffect(code, ch, used, n, lastOn_);
        const float* dry[2] = {dry_[0].data(), dry_[1].data()};
        fade.mix(dry, ch, used, n, on);
        ran = on || !fade.silent();
    }
    if (!pitchListed) {
        align_.process(ch, ch, used, n, aligning_);
    }
    settle_ = false;
}

void VoiceFxChain::runPitch(SwitchFade& fade, bool on, float* const* ch, int used, int n) {
    bool& ran = ran_[static_cast<size_t>(kEffectPitch)];
    // The delayed voice, always: the line stays current for whenever the
    // shifter is off, and it is the dry part of the shifter's blend.
    if (!on && fade.silent()) {
        ran = false;
        align_.process(ch, ch, used, n, aligning_);
        return;
    }
    float* late[2] = {late_[0].data(), late_[1].data()};
    align_.process(ch, late, used, n, aligning_);
    if (on && !ran) {
        pitch_.reset(); // from silence, not from what it held before
    }
    ran = true;
    if (on) {
        keepSettings(kEffectPitch);
    }
    const float* dry[2] = {late[0], late[1]};
    pitch_.process(ch, dry, used, n, on ? params_.pitch : lastOn_.pitch);
    if (on && fade.full()) {
        return;
    }
    // The pitch fades in once the shifted voice flows: until it is due, the
    // delayed dry voice goes on rather than the shifter's silence.
    fade.mix(dry, ch, used, n, on && pitch_.flowing());
    ran = on || !fade.silent();
}

bool VoiceFxChain::jumped(int code) const {
    const auto apart = [](float a, float b, float by) { return std::fabs(a - b) > by; };
    switch (code) {
    case kEffectPitch: {
        const PitchParams& now = params_.pitch;
        const PitchParams& was = lastOn_.pitch;
        return pitch_.wantsRestart() || apart(now.semitonesA, was.semitonesA, 1.0f) ||
               apart(now.formantShiftA, was.formantShiftA, 0.2f) ||
               now.layerBEnabled != was.layerBEnabled ||
               (now.layerBEnabled && (apart(now.semitonesB, was.semitonesB, 1.0f) ||
                                      apart(now.formantShiftB, was.formantShiftB, 0.2f)));
    }
    case kEffectModulation:
        return params_.mod.type != lastOn_.mod.type;
    case kEffectRadio:
        return apart(params_.radio.overdrive, lastOn_.radio.overdrive, 0.3f);
    default:
        return false;
    }
}

bool VoiceFxChain::enabled(int code) const {
    switch (code) {
    case kEffectPitch:
        return params_.pitch.enabled;
    case kEffectModulation:
        return params_.mod.enabled;
    case kEffectRadio:
        return params_.radio.enabled;
    case kEffectDelay:
        return params_.delay.enabled;
    case kEffectReverb:
        return params_.reverb.enabled;
    default:
        return false;
    }
}

void VoiceFxChain::runEffect(int code, float* const* ch, int used, int n, const SoundFxPreset& p) {
    switch (code) {
    case kEffectModulation:
        modulation_.process(ch, used, n, p.mod);
        break;
    case kEffectRadio:
        radio_.process(ch, used, n, p.radio);
        break;
    case kEffectDelay:
        delay_.process(ch, used, n, p.delay);
        break;
    case kEffectReverb:
        reverb_.process(ch, used, n, p.reverb);
        break;
    default:
        break;
    }
}

void VoiceFxChain::keepSettings(int code) {
    switch (code) {
    case kEffectPitch:
        lastOn_.pitch = params_.pitch;
        break;
    case kEffectModulation:
        lastOn_.mod = params_.mod;
        break;
    case kEffectRadio:
        lastOn_.radio = params_.radio;
        break;
    case kEffectDelay:
        lastOn_.delay = params_.delay;
        break;
    case kEffectReverb:
        lastOn_.reverb = params_.reverb;
        break;
    default:
        break;
    }
}

void VoiceFxChain::resetEffect(int code) {
    switch (code) {
    case kEffectPitch:
        pitch_.reset();
        break;
    case kEffectModulation:
        modulation_.reset();
        break;
    case kEffectRadio:
        radio_.reset();
        break;
    case kEffectDelay:
        delay_.reset();
        break;
    case kEffectReverb:
        reverb_.reset();
        break;
    default:
        break;
    }
}

bool VoiceFxChain::fading() const {
    return std::any_of(fades_.begin(), fades_.end(),
                       [](const SwitchFade& fade) { return !fade.silent(); });
}

} // namespace Lumora
