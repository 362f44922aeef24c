#pragma once

#include "dsp/Biquad.h"
#include "dsp/EffectPreset.h"

#include <array>

namespace Lumora {

// Low cut, five peaking bands, high shelf and high cut, per channel (first two).
//
// Coefficients follow the record, gliding to a new one across the packet
// (inGlideSteps), and are recomputed only when a filter's own inputs differ
// from what it was last computed from (exact float comparison), so a steady
// record costs no transcendental work.
class Equaliser {
public:
    static constexpr int kChannels = 2;

    void prepare(double sampleRate);
    void reset();
    // True when the stage would change anything: enabled and some filter on.
    static bool isActive(const EqParams& p);
    void updateCoefficients(const EqParams& p);
    void process(float* const* planes, int channels, int frames, const EqParams& p);

private:
    static bool bandRuns(const NotchBand& b) { return b.enabled && b.gainDb != 0.0f; }
    // Fills `sections` with the channel's sections that run, in order; returns how many.
    int activeSections(int channel, const EqParams& p, Biquad** sections);
    // Runs the sections of `p` over [offset, offset + frames) of each plane.
    void run(float* const* planes, int channels, int offset, int frames, const EqParams& p);
    void setBoth(std::array<Biquad, kChannels>& pair, const BiquadCoeffs<double>& c);

    double sampleRate_ = 48000.0;
    std::array<Biquad, kChannels> lowCut_;
    std::array<std::array<Biquad, kChannels>, kNotchBandCount> bands_;
    std::array<Biquad, kChannels> highShelf_;
    std::array<Biquad, kChannels> highCut_;

    float cachedLowCutHz_ = 0.0f;
    struct BandCache {
        float centerHz = 0.0f;
        float gainDb = 0.0f;
        float q = 0.0f;
    };
    std::array<BandCache, kNotchBandCount> cachedBands_{};
    float cachedShelfHz_ = 0.0f;
    float cachedShelfGainDb_ = 0.0f;
    float cachedHighCutHz_ = 0.0f;
    float cachedHighCutQ_ = 0.0f;

    // The record the coefficients were last brought to, where a change glides from.
    EqParams shape_;
    bool shaped_ = false;
};

} // namespace Lumora
