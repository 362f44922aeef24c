#include "dsp/Gate.h"

namespace Lumora {

void Gate::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Gate::reset() {
    state_ = 0;
    gain_ = 0.0f;
}

void Gate::process(float* const*, int, int, const GateParams&) {}

} // namespace Lumora
