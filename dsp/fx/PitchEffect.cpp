#include "dsp/fx/PitchEffect.h"

#include "dsp/FilterDesign.h"
#include "dsp/GlideSteps.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Lumora {

void PitchEffect::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    for (auto& layer : layers_) {
        for (auto& channel : layer) {
            channel.prepare(sampleRate);
        }
    }
    formantEq_.prepare(sampleRate);
    for (int c = 0; c < 2; ++c) {
        layerBInput_[c].assign(kMaxBlock, 0.0f);
    }
    scratch_.assign(kMaxBlock, 0.0f);
    reset();
}

void PitchEffect::reset() {
    for (auto& layer : layers_) {
        for (auto& channel : layer) {
            channel.reset();
        }
    }
    for (auto& layer : shelves_) {
        for (auto& s : layer) {
            s.low.reset();
            s.high.reset();
        }
    }
    shelvesDesigned_[0] = shelvesDesigned_[1] = false;
    layerBLive_ = false;
    formantEq_.reset();
}

long PitchEffect::underruns() const {
    long sum = 0;
    for (const auto& layer : layers_) {
        for (const auto& channel : layer) {
            sum += channel.underruns();
        }
    }
    return sum;
}

void PitchEffect::designShelves(int layerIndex, float shift) {
    if (shelvesDesigned_[layerIndex] && shift == lastShift_[layerIndex]) {
        return;
    }
    const double db = kShelfDbPerShift * shift;
    for (auto& s : shelves_[layerIndex]) {
        s.low.setCoefficients(FilterDesign::lowShelf(kLowShelfHz, -db, sampleRate_));
        s.high.setCoefficients(FilterDesign::highShelf(kHighShelfHz, db, sampleRate_));
    }
    lastShift_[layerIndex] = shift;
    shelvesDesigned_[layerIndex] = true;
}

void PitchEffect::runShelves(int layerIndex, int channel, float* x, int n, float from, float to) {
    // Near the knob's end the shelves cut a low tone by up to 23 dB, where a
    // jump of their coefficients was heard as a faint knock.
    inGlideSteps(n, from != to, [&](float t, int offset, int count) {
        designShelves(layerIndex, t < 1.0f ? from + (to - from) * t : to);
        shelves_[layerIndex][channel].process(x + offset, count);
    });
}

void PitchEffect::process(float* const* channels, const float* const* aligned, int channelCount,
                          int frames, const PitchParams& p) {
    if (scratch_.empty()) {
        return;
    }
    const int n = std::min(frames, kMaxBlock);
    const int used = std::min(channelCount, 2);
    const bool blendDry = p.wetMix < 0.999f;
    const size_t bytes = static_cast<size_t>(n) * sizeof(float);

    // Where each layer's shelves glide from: their last shift, or none yet.
    const float fromA = shelvesDesigned_[0] ? lastShift_[0] : p.formantShiftA;
    const float fromB = shelvesDesigned_[1] ? lastShift_[1] : p.formantShiftB;
    if (p.layerBEnabled) {
        // Switched on again: start from silence, not from what it held when
        // it was switched off.
        if (!layerBLive_) {
            for (auto& channel : layers_[1]) {
                channel.reset();
            }
        }
    }
    layerBLive_ = p.layerBEnabled;
    const bool shelvesA = std::fabs(p.formantShiftA) > kShiftThreshold;
    const bool shelvesB = std::fabs(p.formantShiftB) > kShiftThreshold;
    // Shelves left out still follow the knob, so that they come in where it is.
    if (!shelvesA) {
        designShelves(0, p.formantShiftA);
    }
    if (p.layerBEnabled && !shelvesB) {
        designShelves(1, p.formantShiftB);
    }

    for (int c = 0; c < used; ++c) {
        float* x = channels[c];
        if (p.layerBEnabled) {
            std::memcpy(layerBInput_[c].data(), x, bytes);
        }

        PitchShifterLayer& a = layers_[0][c];
        a.setSemitones(p.semitonesA);
        a.process(x, n, scratch_.data());
        std::memcpy(x, scratch_.data(), bytes);
        if (shelvesA) {
            runShelves(0, c, x, n, fromA, p.formantShiftA);
        }

        if (p.layerBEnabled) {
            PitchShifterLayer& b = layers_[1][c];
            b.setSemitones(p.semitonesB);
            // Mixed in only where its voice flows, so that layer A does
            // not dip while B is not yet due.
            const int kb = b.process(layerBInput_[c].data(), n, scratch_.data());
            if (shelvesB) {
                runShelves(1, c, scratch_.data(), n, fromB, p.formantShiftB);
            }
            const float mix = p.mixAB;
            for (int i = n - kb; i < n; ++i) {
                x[i] = mix * scratch_[i] + (1.0f - mix) * x[i];
            }
        }
    }

    if (p.formantEqEnabled) {
        formantEq_.process(channels, used, n, p.formantBands);
    }

    if (blendDry) {
        const float wet = p.wetMix;
        for (int c = 0; c < used; ++c) {
            float* x = channels[c];
            const float* d = aligned[c];
            for (int i = 0; i < n; ++i) {
                x[i] = wet * x[i] + (1.0f - wet) * d[i];
            }
        }
    }
}

} // namespace Lumora
