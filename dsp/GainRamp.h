#pragma once

namespace Lumora {

// A gain that reaches a new value across one packet instead of jumping at the
// packet's first sample: a fader dragged while the voice plays moves it in
// steps of one packet, and a jump at each step would be heard as a click.
// At unity, and staying there, the samples are not touched.
class GainRamp {
public:
    // Where the next ramp starts (1: the stage was not running).
    void reset(float gain = 1.0f) { current_ = gain; }
    float current() const { return current_; }

    // Multiplies the planes by a gain going from the last packet's to
    // `target` (evenly in dB), which it reaches on the packet's last sample.
    // Gains are above 0; a target that is not a finite number counts as 1.
    void process(float* const* planes, int channels, int frames, float target);

private:
    float current_ = 1.0f;
};

} // namespace Lumora
