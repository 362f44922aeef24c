#pragma once

#include "dsp/Biquad.h"
#include "dsp/SoundFxPreset.h"

namespace Lumora {

// The pitch effect's five-band equaliser for shaping formants after the shift:
// one constant-Q peaking band per entry (centre hz, gainDb, width as the Q),
// per channel. Peaking bands leave everything away from their centre alone,
// so five of them can sit on the voice's formant regions (400 Hz to 7 kHz by
// default) without colouring the rest; a band at 0 dB is skipped.
class FormantEq {
public:
    void prepare(double sampleRate);
    void reset();
    void process(float* const* channels, int channelCount, int frames,
                 const std::array<FormantBand, kFormantBandCount>& bands);

private:
    double sampleRate_ = 48000.0;
    PreciseBiquad filters_[kFormantBandCount][2];
    std::array<FormantBand, kFormantBandCount> designed_{};
    bool valid_ = false;
};

} // namespace Lumora
