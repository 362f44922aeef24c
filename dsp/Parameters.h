#pragma once

#include <algorithm>
#include <cmath>

namespace Lumora {

// What a parameter's number means. A percentage is kept as a fraction
// (0.75) and shown times 100 (75 %).
enum class Unit { None, Db, Hz, Ms, Percent, Semitones, Ratio };

// One continuous parameter of the two chains: its key in the settings file,
// its range, its default and how it is shown. The records' defaults, the
// settings reader's clamps, the knobs' ranges, the guard that runs before
// the audio and the tests that sweep every knob all read it from here.
struct Parameter {
    const char* key;
    float minimum;
    float maximum;
    float initial;
    Unit unit;
    bool logarithmic = false; // the knob moves on a log scale
    // How long the sound takes to follow a change across the whole range;
    // 0: within the packet that brings it (a gain ramps, a filter's
    // coefficients are interpolated).
    float glideMs = 0.0f;

    constexpr float shownScale() const { return unit == Unit::Percent ? 100.0f : 1.0f; }
    // The same parameter stored under another key (layer A's and B's pitch).
    constexpr Parameter as(const char* otherKey) const {
        return {otherKey, minimum, maximum, initial, unit, logarithmic, glideMs};
    }
    // Into range; what is not a number takes the default.
    float clamp(float value) const {
        return std::isfinite(value) ? std::clamp(value, minimum, maximum) : initial;
    }
};

namespace Params {

// The cleaning chain.
inline constexpr Parameter kInputGain{"inputGainDb", -30.0f, 30.0f, 0.0f, Unit::Db};
inline constexpr Parameter kOutputGain{"outputGainDb", -30.0f, 30.0f, 0.0f, Unit::Db};
inline constexpr Parameter kLowCut{"lowCutHz", 60.0f, 200.0f, 80.0f, Unit::Hz, true};
inline constexpr Parameter kHighShelfHz{"highShelfHz", 3000.0f, 8000.0f, 5000.0f, Unit::Hz, true};
inline constexpr Parameter kHighShelfGain{"highShelfGainDb", -3.0f, 3.0f, 0.0f, Unit::Db};
inline constexpr Parameter kHighCut{"highCutHz", 2000.0f, 20000.0f, 16000.0f, Unit::Hz, true};
// 0.707 exactly, not 1/√2: what the files have always held.
inline constexpr Parameter kHighCutQ{"highCutQ", 0.3f, 2.0f, 0.707f, Unit::None};
// The equaliser's bands are not clamped on reading; these are their knobs.
inline constexpr Parameter kBandHz{"centerHz", 40.0f, 16000.0f, 1000.0f, Unit::Hz, true};
inline constexpr Parameter kBandGain{"gainDb", -15.0f, 15.0f, 0.0f, Unit::Db};
inline constexpr Parameter kBandQ{"q", 0.3f, 8.0f, 4.0f, Unit::None, true};
inline constexpr Parameter kCompThreshold{"thresholdDb", -40.0f, -6.0f, -20.0f, Unit::Db};
inline constexpr Parameter kCompRatio{"ratio", 1.0f, 6.0f, 2.0f, Unit::Ratio};
inline constexpr Parameter kCompKnee{"kneeDb", 0.0f, 12.0f, 0.0f, Unit::Db};
inline constexpr Parameter kCompAttack{"attackMs", 1.0f, 100.0f, 10.0f, Unit::Ms};
inline constexpr Parameter kCompRelease{"releaseMs", 50.0f, 500.0f, 150.0f, Unit::Ms};
inline constexpr Parameter kCompMakeup{"makeupGainDb", 0.0f, 24.0f, 0.0f, Unit::Db};
inline constexpr Parameter kLimiterCeiling{"ceilingDb", -6.0f, -1.0f, -3.0f, Unit::Db};
inline constexpr Parameter kLimiterRelease{"releaseMs", 20.0f, 200.0f, 50.0f, Unit::Ms};
inline constexpr Parameter kGateThreshold{"thresholdDb", -80.0f, -20.0f, -55.0f, Unit::Db};
inline constexpr Parameter kGateAttack{"attackMs", 1.0f, 50.0f, 5.0f, Unit::Ms};
inline constexpr Parameter kGateHold{"holdMs", 10.0f, 500.0f, 100.0f, Unit::Ms};
inline constexpr Parameter kGateRelease{"releaseMs", 50.0f, 1000.0f, 150.0f, Unit::Ms};
inline constexpr Parameter kGateRange{"rangeDb", -80.0f, -10.0f, -60.0f, Unit::Db};
inline constexpr Parameter kSpectralAmount{"amount", 0.0f, 1.0f, 0.75f, Unit::Percent};
inline constexpr Parameter kNoiseAttenuation{"attenLimitDb", 0.0f, 100.0f, 40.0f, Unit::Db};
inline constexpr Parameter kNoiseMix{"mix", 0.0f, 1.0f, 0.8f, Unit::Percent};

// The voice effects. A frequency's top is also held under 0.45 × the sample
// rate where the audio runs.
inline constexpr Parameter kFxOutputGain{"outputGainDb", -30.0f, 30.0f, 0.0f, Unit::Db};
inline constexpr Parameter kPitch{"semitones", -12.0f, 12.0f, 0.0f, Unit::Semitones};
inline constexpr Parameter kPitchA = kPitch.as("semitonesA");
inline constexpr Parameter kPitchB = kPitch.as("semitonesB");
inline constexpr Parameter kFormantShift{"formantShift", -1.0f, 1.0f, 0.0f, Unit::Percent};
inline constexpr Parameter kFormantShiftA = kFormantShift.as("formantShiftA");
inline constexpr Parameter kFormantShiftB = kFormantShift.as("formantShiftB");
inline constexpr Parameter kPitchWet{"wetMix", 0.0f, 1.0f, 1.0f, Unit::Percent};
inline constexpr Parameter kPitchMixAB{"mixAB", 0.0f, 1.0f, 0.5f, Unit::Percent};
inline constexpr Parameter kFormantHz{"hz", 80.0f, 16000.0f, 1000.0f, Unit::Hz, true};
inline constexpr Parameter kFormantGain{"gainDb", -24.0f, 24.0f, 0.0f, Unit::Db};
inline constexpr Parameter kFormantWidth{"width", 0.3f, 10.0f, 1.5f, Unit::None, true};
inline constexpr Parameter kModRate{"rate", 0.1f, 10.0f, 1.0f, Unit::Hz};
inline constexpr Parameter kModDepth{"depth", 0.0f, 1.0f, 0.5f, Unit::Percent};
inline constexpr Parameter kModFeedback{"feedback", 0.0f, 0.9f, 0.3f, Unit::Percent};
inline constexpr Parameter kModWet{"wetMix", 0.0f, 1.0f, 0.5f, Unit::Percent};
inline constexpr Parameter kRadioLowCut{"lowCutHz", 100.0f, 2000.0f, 300.0f, Unit::Hz, true};
inline constexpr Parameter kRadioHighCut{"highCutHz", 1000.0f, 8000.0f, 3400.0f, Unit::Hz, true};
inline constexpr Parameter kRadioDrive{"overdrive", 0.0f, 1.0f, 0.2f, Unit::Percent};
// The echo's read position slides to a new time rather than jumping (a jump
// is a click): a quarter of a sample per sample, about 4 s across the range.
inline constexpr Parameter kDelayTime{"timeMs", 1.0f, 1000.0f, 250.0f, Unit::Ms, false, 3996.0f};
inline constexpr Parameter kDelayFeedback{"feedback", 0.0f, 0.9f, 0.3f, Unit::Percent};
inline constexpr Parameter kDelayWet{"wetMix", 0.0f, 1.0f, 0.3f, Unit::Percent};
inline constexpr Parameter kReverbRoom{"roomSize", 0.0f, 1.0f, 0.5f, Unit::Percent};
inline constexpr Parameter kReverbDamping{"damping", 0.0f, 1.0f, 0.5f, Unit::Percent};
inline constexpr Parameter kReverbWet{"wetMix", 0.0f, 1.0f, 0.3f, Unit::Percent};
inline constexpr Parameter kReverbLowCut{"lowCutHz", 20.0f, 2000.0f, 20.0f, Unit::Hz, true};
inline constexpr Parameter kReverbDucking{"duckingAmount", 0.0f, 1.0f, 0.0f, Unit::Percent};

} // namespace Params

} // namespace Lumora
