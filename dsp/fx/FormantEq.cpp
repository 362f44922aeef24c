#include "dsp/fx/FormantEq.h"

#include "dsp/FilterDesign.h"

#include <algorithm>

namespace Lumora {

void FormantEq::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void FormantEq::reset() {
    for (auto& band : filters_) {
        for (auto& f : band) {
            f.reset();
        }
    }
    valid_ = false;
}

void FormantEq::process(float* const* channels, int channelCount, int frames,
                        const std::array<FormantBand, kFormantBandCount>& bands) {
    const int used = std::min(channelCount, 2);
    for (int b = 0; b < kFormantBandCount; ++b) {
        const FormantBand& band = bands[b];
        // Coefficients follow the knobs; the filter state is kept so a sweep of
        // the centre does not click.
        if (!valid_ || band.hz != designed_[b].hz || band.gainDb != designed_[b].gainDb ||
            band.width != designed_[b].width) {
            for (auto& f : filters_[b]) {
                f.setCoefficients(
                    FilterDesign::peaking(band.hz, band.gainDb, band.width, sampleRate_));
            }
            designed_[b] = band;
        }
    }
    valid_ = true;
    for (int b = 0; b < kFormantBandCount; ++b) {
        if (bands[b].gainDb == 0.0f) {
            continue;
        }
        for (int c = 0; c < used; ++c) {
            filters_[b][c].process(channels[c], frames);
        }
    }
}

} // namespace Lumora
