#pragma once

#include "dsp/Biquad.h"
#include "dsp/SoundFxPreset.h"
#include "dsp/SwitchFade.h"
#include "dsp/fx/FdnReverb.h"

#include <vector>

namespace Lumora {

// Stereo reverb with ducking: the feedback delay network, a high-pass on the
// reverberated signal, and an envelope follower on the dry voice that pulls the
// reverb down while the voice is loud, so words stay clear and the room blooms
// in the pauses. Channel 0 is the left side; a mono packet uses it for both
// sides, and the right side's write, coming second, is what it keeps.
class ReverbEffect {
public:
    static constexpr int kMaxBlock = 4096;

    void prepare(double sampleRate);
    void reset();
    // frames must not exceed kMaxBlock (the chain works in chunks of that size).
    void process(float* const* channels, int channelCount, int frames, const ReverbParams& p);

    float envelope() const { return envelope_; }

private:
    double sampleRate_ = 48000.0;
    FdnReverb network_;
    PreciseBiquad highPass_[2];
    float lastLowCutHz_ = 0.0f;
    bool highPassDesigned_ = false;
    float envelope_ = 0.0f;
    SwitchFade intake_;    // how much of the voice the room takes in
    float lastWet_ = 0.0f; // the mix the last packet ended on
    bool wetKnown_ = false;
    float attack_ = 0.0f;
    float release_ = 0.0f;
    std::vector<float> wetLeft_;
    std::vector<float> wetRight_;
};

} // namespace Lumora
