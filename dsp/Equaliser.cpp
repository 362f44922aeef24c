#include "dsp/Equaliser.h"

#include "dsp/FilterDesign.h"

#include <algorithm>

namespace Lumora {

void Equaliser::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Equaliser::reset() {
    for (int c = 0; c < kChannels; ++c) {
        lowCut_[c].reset();
        highShelf_[c].reset();
        highCut_[c].reset();
        for (auto& band : bands_) {
            band[c].reset();
        }
    }
    cachedLowCutHz_ = 0.0f;
    cachedBands_.fill(BandCache{});
    cachedShelfHz_ = 0.0f;
    cachedShelfGainDb_ = 0.0f;
    cachedHighCutHz_ = 0.0f;
    cachedHighCutQ_ = 0.0f;
}

bool Equaliser::isActive(const EqParams& p) {
    if (!p.enabled) {
        return false;
    }
    if (p.lowCutEnabled || p.highShelfEnabled || p.highCutEnabled) {
        return true;
    }
    return std::any_of(p.notchBands.begin(), p.notchBands.end(),
                       [](const NotchBand& b) { return b.enabled; });
}

void Equaliser::setBoth(std::array<Biquad, kChannels>& pair, const BiquadCoefficients& c) {
    for (Biquad& section : pair) {
        section.setCoefficients(c);
    }
}

void Equaliser::updateCoefficients(const EqParams& p) {
    // A filter that is off keeps its old coefficients and cache: when it is
    // switched on again, the cache differs and it is recomputed at once.
    if (p.lowCutEnabled && p.lowCutHz != cachedLowCutHz_) {
        setBoth(lowCut_, FilterDesign::lowCut(p.lowCutHz, sampleRate_));
        cachedLowCutHz_ = p.lowCutHz;
    }
    for (int b = 0; b < kNotchBandCount; ++b) {
        const NotchBand& band = p.notchBands[b];
        BandCache& cache = cachedBands_[b];
        if (bandRuns(band) &&
            (band.centerHz != cache.centerHz || band.gainDb != cache.gainDb || band.q != cache.q)) {
            setBoth(bands_[b],
                    FilterDesign::peaking(band.centerHz, band.gainDb, band.q, sampleRate_));
            cache = {band.centerHz, band.gainDb, band.q};
        }
    }
    if (p.highShelfEnabled &&
        (p.highShelfHz != cachedShelfHz_ || p.highShelfGainDb != cachedShelfGainDb_)) {
        setBoth(highShelf_, FilterDesign::highShelf(p.highShelfHz, p.highShelfGainDb, sampleRate_));
        cachedShelfHz_ = p.highShelfHz;
        cachedShelfGainDb_ = p.highShelfGainDb;
    }
    if (p.highCutEnabled && (p.highCutHz != cachedHighCutHz_ || p.highCutQ != cachedHighCutQ_)) {
        setBoth(highCut_, FilterDesign::highCut(p.highCutHz, p.highCutQ, sampleRate_));
        cachedHighCutHz_ = p.highCutHz;
        cachedHighCutQ_ = p.highCutQ;
    }
}

void Equaliser::process(float* const* planes, int channels, int frames, const EqParams& p) {
    const int used = std::min(channels, kChannels);
    for (int c = 0; c < used; ++c) {
        // The sections that run this packet, in order; a band at exactly 0 dB is
        // skipped outright (it would change nothing).
        std::array<Biquad*, 3 + kNotchBandCount> sections{};
        int count = 0;
        if (p.lowCutEnabled) {
            sections[count++] = &lowCut_[c];
        }
        for (int b = 0; b < kNotchBandCount; ++b) {
            if (bandRuns(p.notchBands[b])) {
                sections[count++] = &bands_[b][c];
            }
        }
        if (p.highShelfEnabled) {
            sections[count++] = &highShelf_[c];
        }
        if (p.highCutEnabled) {
            sections[count++] = &highCut_[c];
        }
        for (int k = 0; k < count; ++k) {
            sections[k]->process(planes[c], frames);
            sections[k]->clearIfNonFinite();
        }
    }
}

} // namespace Lumora
