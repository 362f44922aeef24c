#pragma once

#include "dsp/SoundFxPreset.h"

namespace Lumora {

// Amplitude modulation by a sine. One phase for both channels, kept between
// packets, so the stereo image does not wobble and packet edges are seamless.
class Tremolo {
public:
    void prepare(double sampleRate);
    void reset() { phase_ = 0.0; }
    void process(float* const* channels, int channelCount, int frames, const ModParams& p);

    double phase() const { return phase_; }

private:
    double sampleRate_ = 48000.0;
    double phase_ = 0.0;
};

} // namespace Lumora
