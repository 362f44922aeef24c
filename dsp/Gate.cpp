#include "dsp/Gate.h"

#include "dsp/AudioMath.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

// The floor is an attenuation: a positive range would make the closed gate louder
// than the open one, so it stops at 1; a range that is not a number closes fully.
float floorGain(float rangeDb) {
    if (rangeDb > 0.0f) {
        return 1.0f;
    }
    return rangeDb <= 0.0f ? dbToGain(rangeDb) : 0.0f;
}

} // namespace

void Gate::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Gate::reset() {
    state_ = Closed;
    gain_ = 0.0f;
    attackCoeff_ = 0.0f;
    releaseCoeff_ = 0.0f;
    holdLength_ = 0.0f;
    holdCounter_ = 0.0f;
    cachedThresholdDb_ = -999.0f;
    cachedAttackMs_ = 0.0f;
    cachedHoldMs_ = 0.0f;
    cachedReleaseMs_ = 0.0f;
}

void Gate::updateCoefficients(const GateParams& p) {
    if (p.thresholdDb == cachedThresholdDb_ && p.attackMs == cachedAttackMs_ &&
        p.holdMs == cachedHoldMs_ && p.releaseMs == cachedReleaseMs_) {
        return;
    }
    attackCoeff_ = timeCoefficient(p.attackMs, sampleRate_);
    releaseCoeff_ = timeCoefficient(p.releaseMs, sampleRate_);
    // A hold that is not a positive number (negative, NaN) is no hold at all.
    holdLength_ = p.holdMs > 0.0f ? static_cast<float>(p.holdMs * 0.001 * sampleRate_) : 0.0f;
    cachedThresholdDb_ = p.thresholdDb;
    cachedAttackMs_ = p.attackMs;
    cachedHoldMs_ = p.holdMs;
    cachedReleaseMs_ = p.releaseMs;
}

void Gate::process(float* const* planes, int channels, int frames, const GateParams& p) {
    updateCoefficients(p);
    const int used = std::min(channels, 2);
    if (used < 1) {
        return;
    }
    const float open = dbToGain(p.thresholdDb);
    const float floor = floorGain(p.rangeDb);
    const float a = attackCoeff_;
    const float r = releaseCoeff_;
    float* left = planes[0];
    float* right = used > 1 ? planes[1] : nullptr;

    for (int i = 0; i < frames; ++i) {
        float x = std::fabs(left[i]);
        if (right) {
            x = std::max(x, std::fabs(right[i]));
        }
        const bool above = x >= open;
        switch (state_) {
        case Closed:
            if (above) {
                state_ = Attack;
            }
            break;
        case Attack:
            gain_ = a * gain_ + (1.0f - a);
            if (gain_ > 0.999f) {
                gain_ = 1.0f;
                state_ = Open;
                holdCounter_ = 0.0f;
            }
            break;
        case Open:
            if (!above) {
                state_ = Hold;
                holdCounter_ = 0.0f;
            }
            break;
        case Hold:
            holdCounter_ += 1.0f;
            if (above) {
                state_ = Open;
            } else if (holdCounter_ >= holdLength_) {
                state_ = Release;
            }
            break;
        default: // Release
            gain_ = r * gain_ + (1.0f - r) * floor;
            if (above) {
                state_ = Attack;
            } else if (gain_ <= floor + 0.001f) {
                gain_ = floor;
                state_ = Closed;
            }
            break;
        }
        left[i] *= gain_;
        if (right) {
            right[i] *= gain_;
        }
    }
}

} // namespace Lumora
