#pragma once

#include <array>

namespace Lumora {

// One channel of chorus: two voices, each a delay ring of 2400 samples read at a
// slowly swept position with linear interpolation. A voice feeds its read value
// back into its ring and yields the mean of that value and the input; the
// chorus output is the mean of its two voices.
//
// Voice design. A chorus should thicken the voice, never turn into vibrato, so:
// - base delays 12 ms and 18 ms: far enough apart that the voices do not comb
//   against each other, short enough to be heard as one thicker voice rather
//   than an echo;
// - a sine sweep (a triangle's corners are heard as pitch jumps), the two voices
//   a quarter turn apart and the right channel's voices half a turn from the
//   left's, which spreads a mono microphone across the stereo field;
// - a sweep of at most 4 ms, and never more than the rate allows for a pitch
//   deviation of 2 % (a third of a semitone): at 10 Hz the sweep shrinks to
//   0.3 ms, so every setting of rate and depth still sounds like a chorus;
// - half of the modulation group's feedback, at most 0.45: at the full 0.9 a
//   12 ms comb rings audibly as a metallic tone, which is the flanger's job.
class Chorus {
public:
    static constexpr int kRingLength = 2400;
    static constexpr double kBaseDelayMs[2] = {12.0, 18.0};
    static constexpr double kMaxSweepMs = 4.0;
    static constexpr double kMaxPitchDeviation = 0.02;
    static constexpr float kFeedbackShare = 0.5f;

    // channelIndex 0 or 1 sets the starting phases of the voices.
    void prepare(double sampleRate, int channelIndex);
    void reset();
    // In place: x becomes (1 − wet)·x + wet·c; rate in Hz, depth 0..1, feedback
    // as set on the knob.
    void process(float* x, int n, float rate, float depth, float feedback, float wet);

private:
    struct Voice {
        std::array<float, kRingLength> ring{};
        int write = 0;
    };

    double sampleRate_ = 48000.0;
    int channelIndex_ = 0;
    Voice voices_[2];
    // LFO phase of the first voice; the second runs a quarter turn ahead, so
    // one rotating phasor gives both (sine and cosine).
    double phase_ = 0.0;
    // The sweep's width in samples at the end of the last block (below 0:
    // none yet). A new rate or depth widens it across the block, not at its
    // first sample, which would move the read position at once (a click).
    double sweep_ = -1.0;
};

} // namespace Lumora
