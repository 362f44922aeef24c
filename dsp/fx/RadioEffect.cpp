#include "dsp/fx/RadioEffect.h"

#include "dsp/FilterDesign.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

void RadioEffect::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void RadioEffect::reset() {
    for (int c = 0; c < 2; ++c) {
        highPass_[c].reset();
        lowPass_[c].reset();
    }
    designed_ = false;
    driveKnown_ = false;
}

void RadioEffect::process(float* const* channels, int channelCount, int frames,
                          const RadioParams& p) {
    // A moved corner keeps the filters' state: a knob being turned carries on
    // from where the filters are.
    if (!designed_ || p.lowCutHz != lastLowCutHz_) {
        for (auto& f : highPass_) {
            f.setCoefficients(FilterDesign::lowCut(p.lowCutHz, sampleRate_));
        }
        lastLowCutHz_ = p.lowCutHz;
    }
    if (!designed_ || p.highCutHz != lastHighCutHz_) {
        for (auto& f : lowPass_) {
            f.setCoefficients(
                FilterDesign::highCut(p.highCutHz, FilterDesign::kButterworthQ, sampleRate_));
        }
        lastHighCutHz_ = p.highCutHz;
    }
    designed_ = true;

    // Dividing by √drive keeps the loudness roughly level as the drive rises:
    // tanh flattens the peaks, the division pulls the body back down. A new
    // drive glides across the packet: a jump of the curve is a step in the
    // wave.
    const float drive = std::max(p.overdrive, 0.0f) * 9.0f + 1.0f;
    const float from = driveKnown_ ? lastDrive_ : drive;
    lastDrive_ = drive;
    driveKnown_ = true;
    const int used = std::min(channelCount, 2);
    for (int c = 0; c < used; ++c) {
        float* x = channels[c];
        if (from == drive) {
            const float norm = 1.0f / std::sqrt(drive);
            for (int i = 0; i < frames; ++i) {
                const float v = lowPass_[c].processSample(highPass_[c].processSample(x[i]));
                x[i] = std::tanh(v * drive) * norm;
            }
            continue;
        }
        const float step = (drive - from) / static_cast<float>(std::max(frames, 1));
        for (int i = 0; i < frames; ++i) {
            const float d = from + step * static_cast<float>(i + 1);
            const float v = lowPass_[c].processSample(highPass_[c].processSample(x[i]));
            x[i] = std::tanh(v * d) / std::sqrt(d);
        }
    }
}

} // namespace Lumora
