#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "dsp/EffectPreset.h"

#include <string>

namespace Lumora {

// Recommended settings for the processing chain from a diagnosis. Three cases:
// the recording-mode preset (every effect off), the "未診断" placeholder for a
// result that is not valid, and the streaming preset computed from the speech
// and silence takes, the verdicts and the silence take's noise spectrum.
// The returned record is not marked active: whoever applies it does that.
EffectPreset recommend(const DiagnosisResult& result, bool recordingMode);

// The one-line Japanese description of what a preset changes.
std::string describe(const EffectPreset& preset);

} // namespace Lumora
