#pragma once

#include "dsp/GainRamp.h"

#include "dsp/ParameterHandOver.h"
#include "dsp/SoundFxPreset.h"
#include "dsp/SwitchFade.h"
#include "dsp/fx/DelayEffect.h"
#include "dsp/fx/ModulationEffect.h"
#include "dsp/fx/PitchEffect.h"
#include "dsp/fx/RadioEffect.h"
#include "dsp/fx/ReverbEffect.h"
#include "dsp/fx/VoiceAlignment.h"

#include <array>
#include <atomic>
#include <vector>

namespace Lumora {

// The voice-effects chain: pitch and formant, modulation, radio, delay and
// reverb in the user's order, after the cleaning chain, in place on the first
// two channels. Same hand-over as VoiceChain (a ParameterHandOver): the audio
// thread takes the newest record once per packet and works on a copy of it.
//
// The chain runs only while its active flag is set and at least one effect is
// enabled; otherwise the audio passes untouched and both meters show its level.
// The active flag is the effects switch and only setActive() moves it:
// setParameters() never does. The dialog hands over every edit with
// setParameters() and switches the effects off with setActive(false) while a
// diagnosis listens to the raw voice; an edit arriving meanwhile (a key press
// applying a preset, say) must not switch them back on behind its back.
// The flag starts off; whoever loads the user's effects switches it on.
//
// Aligned, everything that leaves the chain is late by the pitch shifter's
// constant delay, effects on or off (see VoiceAlignment); the pitch stage's
// place in the order is where that delay sits. Unaligned (the start), only a
// shifted voice is late; the engine aligns the chain whenever voices are in
// use.
class VoiceFxChain {
public:
    // Longest run of frames processed in one go; longer packets are split.
    static constexpr int kMaxBlock = 4096;

    VoiceFxChain();
    ~VoiceFxChain();
    VoiceFxChain(const VoiceFxChain&) = delete;
    VoiceFxChain& operator=(const VoiceFxChain&) = delete;

    // Interface thread, once, before audio flows: allocates every line, buffer
    // and shifter. A sample rate outside 8 kHz..384 kHz leaves the chain a
    // pass-through that still meters.
    void prepare(double sampleRate, int blockLength);

    // Interface thread; getParameters() returns what was handed over last.
    void setParameters(const SoundFxPreset& preset);
    SoundFxPreset getParameters() const;
    void setActive(bool active) { active_.store(active, std::memory_order_release); }
    bool isActive() const { return active_.load(std::memory_order_acquire); }
    // Interface thread: whether the voice goes through the constant delay.
    void setAligned(bool aligned) { aligned_.store(aligned, std::memory_order_release); }
    bool isAligned() const { return aligned_.load(std::memory_order_acquire); }
    // Audio thread, after process(): how late the packet it returned is.
    int delayFrames() const { return delayFrames_; }

    // Audio thread, in place; planes beyond the second are never touched.
    void process(float* const* planes, int channels, int frames);

    float inputLevelDb() const { return inputLevelDb_.load(std::memory_order_relaxed); }
    float outputLevelDb() const { return outputLevelDb_.load(std::memory_order_relaxed); }

    double sampleRate() const { return sampleRate_; }
    bool isPrepared() const { return prepared_; }
    // For tests and measurements: the pitch effect's shifters.
    const PitchEffect& pitchEffect() const { return pitch_; }
    // Times the output check found a non-finite sample and restarted the effects.
    long recoveries() const { return recoveries_; }

private:
    void processBlock(float* const* ch, int used, int n, bool on, double& sumIn, double& sumOut);
    void runEffects(float* const* ch, int used, int n, bool on);
    bool enabled(int code) const;
    bool jumped(int code) const;
    void runEffect(int code, float* const* ch, int used, int n, const SoundFxPreset& p);
    void runPitch(SwitchFade& fade, bool on, float* const* ch, int used, int n);
    void keepSettings(int code);
    void resetEffect(int code);
    void resetEffects();
    bool fading() const;

    double sampleRate_ = 48000.0;
    bool prepared_ = false;
    ParameterHandOver<SoundFxPreset> parameters_;
    std::atomic<bool> active_{false};
    std::atomic<bool> aligned_{false};
    std::atomic<float> inputLevelDb_{-96.0f};
    std::atomic<float> outputLevelDb_{-96.0f};

    // Audio thread only.
    SoundFxPreset params_; // this packet's record, guarded
    // Per effect code: its on/off crossfade, and whether it ran in the last
    // block (an effect that did not starts from silence, never replaying
    // what it held when it was last switched off).
    std::array<SwitchFade, kEffectCount> fades_{};
    std::array<bool, kEffectCount> ran_{};
    std::array<bool, kEffectCount> relaunch_{}; // fading out to come back as the new voice
    bool started_ = false;                      // audio has passed since prepare()
    bool settle_ = false; // this block is the first sound: fades start settled
    // Each effect's settings from the last block it was on: an effect fading
    // out goes on sounding as it did, not with the settings of the voice
    // that switched it off.
    SoundFxPreset lastOn_;
    std::vector<float> dry_[2];  // the block before an effect that is fading
    std::vector<float> late_[2]; // the block at the pitch stage, delayed
    int delayFrames_ = 0;
    bool aligning_ = false; // this packet's aligned_
    long recoveries_ = 0;
    GainRamp inputGain_;
    GainRamp outputGain_;
    VoiceAlignment align_;
    PitchEffect pitch_;
    ModulationEffect modulation_;
    RadioEffect radio_;
    DelayEffect delay_;
    ReverbEffect reverb_;
};

} // namespace Lumora
