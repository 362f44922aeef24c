#pragma once

#include "dsp/SoundFxPreset.h"
#include "dsp/SwitchFade.h"

#include <vector>

namespace Lumora {

// Echo: one delay line of 96000 samples per channel (two seconds at 48 kHz)
// with one write position shared by both channels, so left and right echoes
// stay aligned to the sample.
//
// A new time glides: the read position moves towards it by at most kGlide
// samples per sample (the time parameter's glide: its range over its glide
// time) (read between samples, linearly), as a tape echo's head
// would, so a dragged time knob bends the echo's pitch briefly instead of
// cutting it (a jump of the read position is heard as a click). At rest the
// delay is a whole number of samples.
//
// After a reset (the echo switched on again starts from silence) the line
// takes the voice in over the switch's crossfade instead of at once: the
// switch itself fades, but an echo of its first sample would bring the step
// back one delay later.
class DelayEffect {
public:
    static constexpr int kLineLength = 96000;
    static constexpr double kGlide =
        (Params::kDelayTime.maximum - Params::kDelayTime.minimum) / Params::kDelayTime.glideMs;

    void prepare(double sampleRate);
    void reset();
    void process(float* const* channels, int channelCount, int frames, const DelayParams& p);

    // The delay in samples for a time: truncated, kept in 1..95999 whatever the
    // rate (the line does not grow with the sample rate).
    static int delaySamples(float timeMs, double sampleRate);

private:
    double sampleRate_ = 48000.0;
    std::vector<float> lines_[2];
    int write_ = 0;
    double delay_ = 0.0; // where the read position is now, in samples; 0 until the first block
    SwitchFade intake_;  // how much of the voice the line takes in
};

} // namespace Lumora
