#include "dsp/Compressor.h"

namespace Lumora {

void Compressor::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    reset();
}

void Compressor::reset() {
    detectorDb_ = -96.0f;
    gainReductionDb_ = 0.0f;
}

void Compressor::updateCoefficients(const CompParams&) {}

void Compressor::process(float* const*, int, int, const CompParams&) {}

} // namespace Lumora
