#include "dsp/Limiter.h"

namespace Lumora {

void Limiter::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Limiter::reset() { gainReductionDb_ = 0.0f; }

void Limiter::updateCoefficients(const LimiterParams&) {}

void Limiter::process(float* const*, int, int, const LimiterParams&) {}

} // namespace Lumora
