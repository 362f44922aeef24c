#include "dsp/fx/ReverbEffect.h"

#include "dsp/FilterDesign.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
// Below this corner the high-pass is left out altogether.
constexpr float kHighPassMinHz = 30.0f;
// Envelope level at which ducking reaches its full amount (about -10 dBFS).
constexpr float kDuckFullLevel = 0.3f;
} // namespace

void ReverbEffect::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    network_.prepare(sampleRate);
    wetLeft_.assign(kMaxBlock, 0.0f);
    wetRight_.assign(kMaxBlock, 0.0f);
    attack_ = static_cast<float>(std::exp(-1.0 / (sampleRate * 0.001)));
    release_ = static_cast<float>(std::exp(-1.0 / (sampleRate * 0.15)));
    intake_.prepare(sampleRate);
    reset();
}

void ReverbEffect::reset() {
    network_.reset();
    for (auto& f : highPass_) {
        f.reset();
    }
    highPassDesigned_ = false;
    envelope_ = 0.0f;
    intake_.reset();
    wetKnown_ = false;
}

void ReverbEffect::process(float* const* channels, int channelCount, int frames,
                           const ReverbParams& p) {
    if (wetLeft_.empty() || channelCount < 1) {
        return;
    }
    frames = std::min(frames, kMaxBlock);
    const bool stereo = channelCount >= 2;
    float* left = channels[0];
    float* right = stereo ? channels[1] : channels[0];

    const bool highPass = p.lowCutHz > kHighPassMinHz;
    if (highPass && (!highPassDesigned_ || p.lowCutHz != lastLowCutHz_)) {
        for (auto& f : highPass_) {
            f.setCoefficients(FilterDesign::lowCut(p.lowCutHz, sampleRate_));
        }
        lastLowCutHz_ = p.lowCutHz;
        highPassDesigned_ = true;
    }

    const float lineGain = p.roomSize * 0.97f + 0.01f;
    network_.setDampingHz(20000.0 - static_cast<double>(p.damping) * 19000.0);
    if (!intake_.full()) {
        // Just reset: the room takes the voice in over the switch's crossfade.
        // Its early echoes of an abrupt first sample would bring back, some
        // 50 ms later, the step that the switch's fade took away.
        for (int i = 0; i < frames; ++i) {
            const float feed = intake_.advance(true);
            wetLeft_[i] = left[i] * feed;
            wetRight_[i] = right[i] * feed;
        }
        network_.process(wetLeft_.data(), wetRight_.data(), wetLeft_.data(), wetRight_.data(),
                         frames, lineGain);
    } else {
        network_.process(left, right, wetLeft_.data(), wetRight_.data(), frames, lineGain);
    }

    float e = envelope_;
    const float a = attack_;
    const float r = release_;
    // A new mix glides across the packet: a jump of the room's share is a
    // step wherever the room and the voice differ.
    float mix = wetKnown_ ? lastWet_ : p.wetMix;
    const float mixStep = (p.wetMix - mix) / static_cast<float>(std::max(frames, 1));
    lastWet_ = p.wetMix;
    wetKnown_ = true;
    for (int i = 0; i < frames; ++i) {
        mix += mixStep;
        const float l = left[i];
        const float rr = right[i];
        const float x = std::fabs((l + rr) * 0.5f);
        e = x > e ? (1.0f - a) * x + a * e : (1.0f - r) * x + r * e;
        const float duck = std::min(e / kDuckFullLevel, 1.0f) * p.duckingAmount;
        const float wet = std::max(1.0f - duck, 0.0f) * mix;

        float wl = wetLeft_[i];
        float wr = wetRight_[i];
        if (highPass) {
            wl = highPass_[0].processSample(wl);
            wr = stereo ? highPass_[1].processSample(wr) : wl;
        }
        left[i] = (1.0f - wet) * l + wet * wl;
        // For a mono packet this lands on channel 0 again and is the one kept.
        right[i] = (1.0f - wet) * rr + wet * wr;
    }
    envelope_ = e;
}

} // namespace Lumora
