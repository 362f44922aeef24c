#pragma once

#include <vector>

namespace Lumora {

// One channel of flanger: a short delay (0.25 ms up to about 5 ms) swept by a
// raised-cosine LFO and mixed with the dry voice, so the comb notches glide up
// and down; the modulation group's feedback recirculates the delayed signal
// and turns the notches into resonant peaks (negative values move the peaks
// to where the notches were).
//
// Stability and loudness at every setting:
// - feedback is kept within ±0.9, so the loop gain stays below one;
// - the input to the loop is scaled by √(1 − feedback²), which keeps the average
//   power of the recirculating comb equal to that of the input: full feedback
//   rings at the resonances (+13 dB at 0.9) instead of jumping 20 dB louder;
// - the sweep is at most 4.75 ms and never more than the rate allows for a pitch
//   deviation of 5 %, so fast rates give a flanger, not a siren;
// - the right channel's LFO runs a quarter turn ahead, which gives width.
class Flanger {
public:
    static constexpr double kMinDelayMs = 0.25;
    static constexpr double kMaxSweepMs = 4.75;
    static constexpr double kMaxPitchDeviation = 0.05;
    static constexpr float kMaxFeedback = 0.9f;

    void prepare(double sampleRate, int channelIndex);
    void reset();
    // In place: x becomes (1 − wet)·x + wet·delayed.
    void process(float* x, int n, float rate, float depth, float feedback, float wet);

private:
    double sampleRate_ = 48000.0;
    int channelIndex_ = 0;
    std::vector<float> ring_;
    int mask_ = 0;
    int write_ = 0;
    double phase_ = 0.0;
    // Half the sweep in samples at the end of the last block (below 0: none
    // yet); a new rate or depth reaches it across the block (see Chorus).
    double halfSweep_ = -1.0;
};

} // namespace Lumora
