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
// orders work for every ratio, but the wrong one sounds rougher and is later,
// so a pitch dragged more than kWrongWaySemitones the other way asks for a
// restart (which the chain crossfades through the dry voice).
//
// Timing. Every layer delays the voice by the same VoiceAlignment::kDelayMs,
// whatever its shift and the packet size: its first output sample is the
// first input sample, due exactly that many samples after the layer started;
// before that it gives silence. The stretcher delivers in bursts, one
// sequence each time its input has grown by one, and holds more input the
// faster it plays, so the delay covers its longest wait at a steady pitch
// (about 55 ms). A pitch dragged far the other way from where it started can
// make a burst late all the same: the missing samples are silence, the layer
// waits for a burst of reserve before it speaks again (one fault costs one
// gap, not a stutter), and it drops as many samples as it fell behind once
// it has voice to spare, so that it comes back onto its timeline.
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
    // The wrong order falls behind the delay beyond 4 semitones; before that,
    // its splices already sound rougher: dragged from -12 to +2.4 semitones,
    // speech had 4 to 7 dB more energy above 6 kHz than either order held
    // there. Within 1.5 semitones the two orders sound alike.
    static constexpr float kWrongWaySemitones = 1.5f;

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

    // Puts n (≤ kMaxBlock) samples in and writes n to out. Returns how many of
    // them, at the end of out, are the shifted voice; those before it are the
    // silence before the voice is due.
    int process(const float* in, int n, float* out);

    // The shifted voice is coming out.
    bool isRunning() const { return running_; }
    int delayFrames() const { return delay_; }
    bool stretchesFirst() const { return stretchFirst_; }
    // False once the pitch has gone so far the other way from where the
    // layer started that its order would keep it late (beyond
    // kWrongWaySemitones): it wants a restart, which picks the other order.
    bool suitsItsPitch() const {
        return !started_ ||
               (stretchFirst_ ? semitones_ > -kWrongWaySemitones : semitones_ < kWrongWaySemitones);
    }
    long underruns() const { return underruns_; }
    int buffered() const;

private:
    void configure();
    void put(const float* samples, int count);
    int burst() const;
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
    int delay_ = 0;
    int untilDue_ = 0;     // samples of silence still to give before the voice
    int debt_ = 0;         // samples the voice has fallen behind its timeline
    bool waiting_ = false; // after a gap, for a burst of reserve
    int maxBacklog_ = 0;
    int sequence_ = 0; // the stretcher's output per sequence, in samples
    long underruns_ = 0;
};

} // namespace Lumora
