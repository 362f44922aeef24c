#include "dsp/fx/FxParameterGuard.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

void guard(float& value, float fallback, float lo, float hi) {
    value = std::isfinite(value) ? std::clamp(value, lo, hi) : fallback;
}

} // namespace

SoundFxPreset guardFxParameters(const SoundFxPreset& in, double sampleRate) {
    const SoundFxPreset d; // defaults
    SoundFxPreset p = in;
    const auto top = static_cast<float>(0.45 * sampleRate);

    guard(p.inputGainDb, 0.0f, -96.0f, 48.0f);
    guard(p.outputGainDb, 0.0f, -96.0f, 48.0f);

    PitchParams& pitch = p.pitch;
    guard(pitch.semitonesA, 0.0f, -24.0f, 24.0f);
    guard(pitch.semitonesB, 0.0f, -24.0f, 24.0f);
    guard(pitch.formantShiftA, 0.0f, -1.0f, 1.0f);
    guard(pitch.formantShiftB, 0.0f, -1.0f, 1.0f);
    guard(pitch.wetMix, d.pitch.wetMix, 0.0f, 1.0f);
    guard(pitch.mixAB, d.pitch.mixAB, 0.0f, 1.0f);
    for (int b = 0; b < kFormantBandCount; ++b) {
        FormantBand& band = pitch.formantBands[b];
        guard(band.hz, d.pitch.formantBands[b].hz, 20.0f, top);
        guard(band.gainDb, 0.0f, -24.0f, 24.0f);
        guard(band.width, d.pitch.formantBands[b].width, 0.1f, 20.0f);
    }

    ReverbParams& reverb = p.reverb;
    guard(reverb.roomSize, d.reverb.roomSize, 0.0f, 1.0f);
    guard(reverb.damping, d.reverb.damping, 0.0f, 1.0f);
    guard(reverb.wetMix, d.reverb.wetMix, 0.0f, 1.0f);
    guard(reverb.lowCutHz, d.reverb.lowCutHz, 0.0f, top);
    guard(reverb.duckingAmount, d.reverb.duckingAmount, 0.0f, 1.0f);

    DelayParams& delay = p.delay;
    guard(delay.timeMs, d.delay.timeMs, 0.0f, 1.0e6f);
    guard(delay.feedback, d.delay.feedback, -0.95f, 0.95f);
    guard(delay.wetMix, d.delay.wetMix, 0.0f, 1.0f);

    RadioParams& radio = p.radio;
    guard(radio.lowCutHz, d.radio.lowCutHz, 10.0f, top);
    guard(radio.highCutHz, d.radio.highCutHz, 10.0f, top);
    guard(radio.overdrive, d.radio.overdrive, 0.0f, 2.0f);

    ModParams& mod = p.mod;
    guard(mod.rate, d.mod.rate, 0.0f, 20.0f);
    guard(mod.depth, d.mod.depth, 0.0f, 1.0f);
    guard(mod.feedback, d.mod.feedback, -0.9f, 0.9f);
    guard(mod.wetMix, d.mod.wetMix, 0.0f, 1.0f);
    return p;
}

} // namespace Lumora
