#pragma once

#include "dsp/DelayLine.h"
#include "dsp/SwitchFade.h"

#include <vector>

namespace Lumora {

// The voice-effects chain's one constant delay.
//
// The pitch shifter cannot answer before it has heard about 50 ms of the
// voice (its stretcher works on 40 ms sequences and looks 15 ms ahead), and a
// shifter that started whenever it was ready would delay the voice by 50 to
// 85 ms depending on the shift and the packet size. OBS keeps voice and
// picture together only if the filter says how late its audio is, by moving
// the packets' timestamps earlier, and a change of that delay mid-stream is
// either smoothed away by OBS (under 70 ms: the voice then stays late) or
// tears the timeline (over 70 ms: a gap or overwritten audio). So every path
// through the chain is late by the same kDelayMs: the shifter starts its voice
// exactly that late, and wherever no shifter runs (pitch off, the chain off)
// this stage delays the voice by as much. Voices with and without pitch then
// switch on one timeline, and a pitch fading in crossfades with the same
// moment of the dry voice instead of an earlier one.
//
// The delay is the price of having voices at all: a filter whose effects are
// off and whose keys hold no voice runs unaligned (the engine decides), and
// that switch crossfades between the undelayed and the delayed voice.
class VoiceAlignment {
public:
    // Above the shifter's longest start (55 ms at any shift, rate or packet
    // size), with room for a knob being turned.
    static constexpr double kDelayMs = 64.0;
    static constexpr int kMaxBlock = 4096;

    void prepare(double sampleRate);
    // Empties the lines (silence comes out first) and settles on `aligned`.
    void reset(bool aligned);
    int delayFrames() const { return delay_; }
    static int delayFramesAt(double sampleRate);

    // out := in, delayed by delayFrames() when `aligned`; a change of
    // `aligned` crossfades. in may equal out. frames ≤ kMaxBlock.
    void process(const float* const* in, float* const* out, int channels, int frames, bool aligned);

private:
    int delay_ = 0;
    DelayLine lines_[2];
    std::vector<float> undelayed_[2];
    SwitchFade fade_;
};

} // namespace Lumora
