#include "dsp/Equaliser.h"

namespace Lumora {

void Equaliser::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Equaliser::reset() {}

bool Equaliser::isActive(const EqParams& p) {
    if (!p.enabled) {
        return false;
    }
    bool any = p.lowCutEnabled || p.highShelfEnabled || p.highCutEnabled;
    for (const auto& b : p.notchBands) {
        any = any || b.enabled;
    }
    return any;
}

void Equaliser::updateCoefficients(const EqParams&) {}

void Equaliser::process(float* const*, int, int, const EqParams&) {}

} // namespace Lumora
