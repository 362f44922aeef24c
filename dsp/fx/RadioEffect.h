#pragma once

#include "dsp/Biquad.h"
#include "dsp/SoundFxPreset.h"

namespace Lumora {

// Telephone and radio voice: a high-pass and a low-pass narrow the band, then a
// tanh stage drives it into soft saturation. Fully wet.
class RadioEffect {
public:
    void prepare(double sampleRate);
    void reset();
    void process(float* const* channels, int channelCount, int frames, const RadioParams& p);

private:
    double sampleRate_ = 48000.0;
    PreciseBiquad highPass_[2];
    PreciseBiquad lowPass_[2];
    // Corners the coefficients were computed for (valid once designed_ is set).
    float lastLowCutHz_ = 0.0f;
    float lastHighCutHz_ = 0.0f;
    bool designed_ = false;
    float lastDrive_ = 1.0f; // the drive the last packet ended on
    bool driveKnown_ = false;
};

} // namespace Lumora
