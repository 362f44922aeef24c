#include "dsp/fx/FxParameterGuard.h"

#include <algorithm>

namespace Lumora {

namespace {

void guard(float& value, const Parameter& parameter) {
    value = parameter.clamp(value);
}

// A frequency's top also stays under 0.45 × the rate, where the filters that
// use it are still well behaved.
void guard(float& value, const Parameter& parameter, float top) {
    value = std::min(parameter.clamp(value), top);
}

} // namespace

SoundFxPreset guardFxParameters(const SoundFxPreset& in, double sampleRate) {
    SoundFxPreset p = in;
    const auto top = static_cast<float>(0.45 * sampleRate);
    using namespace Params;

    guard(p.inputGainDb, kInputGain);
    guard(p.outputGainDb, kFxOutputGain);

    PitchParams& pitch = p.pitch;
    guard(pitch.semitonesA, kPitch);
    guard(pitch.semitonesB, kPitch);
    guard(pitch.formantShiftA, kFormantShift);
    guard(pitch.formantShiftB, kFormantShift);
    guard(pitch.wetMix, kPitchWet);
    guard(pitch.mixAB, kPitchMixAB);
    for (FormantBand& band : pitch.formantBands) {
        guard(band.hz, kFormantHz, top);
        guard(band.gainDb, kFormantGain);
        guard(band.width, kFormantWidth);
    }

    ReverbParams& reverb = p.reverb;
    guard(reverb.roomSize, kReverbRoom);
    guard(reverb.damping, kReverbDamping);
    guard(reverb.wetMix, kReverbWet);
    guard(reverb.lowCutHz, kReverbLowCut, top);
    guard(reverb.duckingAmount, kReverbDucking);

    DelayParams& delay = p.delay;
    guard(delay.timeMs, kDelayTime);
    guard(delay.feedback, kDelayFeedback);
    guard(delay.wetMix, kDelayWet);

    RadioParams& radio = p.radio;
    guard(radio.lowCutHz, kRadioLowCut, top);
    guard(radio.highCutHz, kRadioHighCut, top);
    guard(radio.overdrive, kRadioDrive);

    ModParams& mod = p.mod;
    guard(mod.rate, kModRate);
    guard(mod.depth, kModDepth);
    guard(mod.feedback, kModFeedback);
    guard(mod.wetMix, kModWet);
    return p;
}

} // namespace Lumora
