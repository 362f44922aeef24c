#pragma once

#include "dsp/fx/BandlimitedResampler.h"

#include <memory>
#include <vector>

namespace soundtouch {
class SoundTouch;
}

namespace Lumora {

// One channel of one pitch layer: a resampler shifts pitch by the ratio (and
// changes the length), SoundTouch's time stretcher brings the length back
// (tempo = 1 / ratio) without touching the pitch.
//
// Why not SoundTouch's own setPitchSemiTones: every change of its rate rebuilds
// the anti-alias filter of its rate transposer, five heap allocations on the
// audio thread per knob step. Its tempo change allocates nothing once its
// buffers have grown, so the layer does the transposition itself (a windowed
// sinc that follows the knob without allocating) and leaves SoundTouch the
// stretching.
//
// Order. The stretcher needs about 55 ms of its own input before it answers.
// Resampling first feeds it faster than real time for a downward shift (less
// latency) but slower for an upward one (at +12, 110 ms). So the layer picks
// the order when it starts: resample then stretch for a downward shift or
// none, stretch then resample for an upward one, as SoundTouch does inside.
// The order is kept while the knob moves (switching it would click); both
// orders work for every ratio, only the latency differs.
//
// Output is taken a whole block at a time, and only once it can keep flowing.
// The stretcher delivers its output in bursts of one sequence each time its
// input has grown by one sequence; between bursts its output drains by a block
// per packet. Taking the first block as soon as one is there can leave too
// little to bridge the next gap, depending on how the packet size and the
// sequence happen to line up, and a gap follows seconds later. So while
// filling, the layer feeds the stretcher in small pieces to see where its first
// output appears, and starts once the input has passed that point by the first
// sequence's shortfall (one overlap, 8 ms) plus a margin: from then on each
// burst arrives before the output runs dry. The price is at most one packet
// of extra latency. Should the stream run dry anyway (the pitch jumped, a
// packet grew), the block is padded with silence and the layer waits for a
// whole sequence of reserve before it speaks again: one fault costs one gap,
// not a stutter.
class PitchShifterLayer {
public:
    static constexpr int kMaxBlock = 4096;
    static constexpr double kMaxSemitones = 24.0;
    // Sequence, seek window and overlap in ms: shorter than SoundTouch's
    // defaults (tuned for music), which halves the latency for speech; quick
    // seek keeps four stretchers well inside the CPU budget.
    static constexpr int kSequenceMs = 40;
    static constexpr int kSeekWindowMs = 15;
    static constexpr int kOverlapMs = 8;
    // Piece size while looking for the first output, in samples.
    static constexpr int kProbe = 64;

    PitchShifterLayer();
    ~PitchShifterLayer();
    PitchShifterLayer(const PitchShifterLayer&) = delete;
    PitchShifterLayer& operator=(const PitchShifterLayer&) = delete;

    // Creates the stretcher and grows every buffer to its largest size by
    // running it at the extreme ratios, so process() never allocates.
    void prepare(double sampleRate);
    // Empties the stretcher (keeping its buffers) and restarts the fill.
    void reset();
    void setSemitones(float semitones);

    // Puts n (≤ kMaxBlock) samples in; writes 0 or n samples (fewer only on an
    // underrun) to out and returns how many.
    int process(const float* in, int n, float* out);

    bool isRunning() const { return running_; }
    bool stretchesFirst() const { return stretchFirst_; }
    long underruns() const { return underruns_; }
    long trimmedSamples() const { return trimmed_; }
    int buffered() const;

private:
    void configure();
    void put(const float* samples, int count);
    // Feeds the stretcher; while filling, in pieces, noting where its output
    // begins. `scale` converts stretcher input samples to input samples.
    void feed(const float* samples, int count, double scale);
    void drainThroughResampler();
    int take(float* out, int count);
    void discard(int count);

    std::unique_ptr<soundtouch::SoundTouch> stretcher_;
    BandlimitedResampler resampler_;
    std::vector<float> resampled_; // resampler output (resample-first) or input
    std::vector<float> stretched_; // stretcher output on its way to the resampler
    std::vector<float> queue_;     // finished output (stretch-first)
    int queueLength_ = 0;
    double sampleRate_ = 48000.0;
    float semitones_ = 0.0f;
    double ratio_ = 1.0;
    bool started_ = false;
    bool stretchFirst_ = false;
    bool running_ = false;
    bool outputSeen_ = false;       // the stretcher has produced output since the fill began
    double inputSinceOutput_ = 0.0; // input samples put after that point
    int reserve_ = 0;
    int startMargin_ = 0;
    int maxBacklog_ = 0;
    long underruns_ = 0;
    long trimmed_ = 0;
};

} // namespace Lumora
