#pragma once

#include "dsp/Biquad.h"
#include "dsp/SoundFxPreset.h"
#include "dsp/fx/FormantEq.h"
#include "dsp/fx/PitchShifterLayer.h"

#include <vector>

namespace Lumora {

// Pitch and formant: layer A (and, when enabled, layer B from the same input)
// shifted by their own semitones, each coloured by its own formant shelves,
// blended A:B, then the formant equaliser and the dry/wet blend.
//
// Formant shelves: a low shelf at 800 Hz and a high shelf at 2 kHz (slope 1)
// whose shelf factor is A = 10^(∓24·shift/40): a positive shift thins the
// lows and brightens the highs (a smaller, younger vocal tract), a negative one
// the reverse. Layer B gets the same pair driven by its own shift and applied
// to its own output before the blend, so each layer's formant knob acts on that
// layer alone (layer A's shelves likewise act on layer A before the blend).
//
// Each layer gives silence until its voice is due, VoiceAlignment::kDelayMs
// after it started (see PitchShifterLayer). The dry part of the blend is the
// input as late, so the blend holds one moment of the voice.
class PitchEffect {
public:
    static constexpr int kMaxBlock = PitchShifterLayer::kMaxBlock;
    static constexpr double kLowShelfHz = 800.0;
    static constexpr double kHighShelfHz = 2000.0;
    // Shelf gain in dB per unit of formant shift (the RBJ shelf's far gain).
    static constexpr double kShelfDbPerShift = 24.0;
    static constexpr float kShiftThreshold = 0.005f;

    void prepare(double sampleRate);
    // Restarts the shifters (silent until they fill again) and clears filters.
    void reset();
    // In place; `aligned` holds the same input delayed by the layers' delay,
    // the dry part of the blend. frames ≤ kMaxBlock.
    void process(float* const* channels, const float* const* aligned, int channelCount, int frames,
                 const PitchParams& p);

    const PitchShifterLayer& layer(int layerIndex, int channel) const {
        return layers_[layerIndex][channel];
    }
    long underruns() const;
    // The shifted voice is coming out (the shifters have filled).
    bool flowing() const { return layers_[0][0].isRunning(); }
    // A layer's pitch went far the other way from where it started.
    bool wantsRestart() const {
        return !layers_[0][0].suitsItsPitch() || (layerBLive_ && !layers_[1][0].suitsItsPitch());
    }

private:
    struct Shelves {
        PreciseBiquad low;
        PreciseBiquad high;
        void process(float* x, int n) {
            low.process(x, n);
            high.process(x, n);
        }
    };
    void designShelves(int layerIndex, float shift);
    // Runs a layer's shelves of one channel over x, their shift gliding from
    // `from` to `to` across the block (inGlideSteps).
    void runShelves(int layerIndex, int channel, float* x, int n, float from, float to);

    double sampleRate_ = 48000.0;
    PitchShifterLayer layers_[2][2]; // [layer A, B][channel]
    Shelves shelves_[2][2];
    float lastShift_[2] = {0.0f, 0.0f};
    bool shelvesDesigned_[2] = {false, false};
    bool layerBLive_ = false; // layer B ran in the previous block
    FormantEq formantEq_;
    std::vector<float> layerBInput_[2];
    std::vector<float> scratch_;
};

} // namespace Lumora
