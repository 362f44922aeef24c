#pragma once

#include "dsp/EffectPreset.h"

namespace Lumora {

// Noise gate linked over the first two channels (one gain for both).
//
// It starts fully closed at gain 0, not at the range: until the first sample at
// or above the threshold the output is silence, and only after its first
// release does the gate rest at the range's floor. That start is deliberate: a
// freshly created filter does not let the room in before the voice arrives.
class Gate {
public:
    enum State { Closed = 0, Attack = 1, Open = 2, Hold = 3, Release = 4 };

    void prepare(double sampleRate);
    void reset();
    void process(float* const* planes, int channels, int frames, const GateParams& p);

    float gain() const { return gain_; }
    int state() const { return state_; }

private:
    void updateCoefficients(const GateParams& p);

    double sampleRate_ = 48000.0;
    int state_ = Closed;
    float gain_ = 0.0f;
    float attackCoeff_ = 0.0f;
    float releaseCoeff_ = 0.0f;
    float holdLength_ = 0.0f;
    float holdCounter_ = 0.0f;
    float cachedThresholdDb_ = -999.0f;
    float cachedAttackMs_ = 0.0f;
    float cachedHoldMs_ = 0.0f;
    float cachedReleaseMs_ = 0.0f;
};

} // namespace Lumora
