// The effect-preset and sound-effect-preset objects of the settings file.

#include "settings/SettingsJson.h"

#include <string>

namespace Lumora {

namespace {

// The noise profile, which no control sets, is held where the chain's
// arithmetic stays finite.
constexpr float kProfileMinDb = -96.0f, kProfileMaxDb = 0.0f;

// A number of the cleaning groups, pulled into its parameter's range.
float read(const JsonValue& o, const Parameter& p) {
    return asClampedFloat(member(o, p.key), p.initial, p.minimum, p.maximum);
}

JsonValue eqToJson(const EqParams& eq) {
    JsonValue bands = JsonValue::array();
    for (const NotchBand& band : eq.notchBands) {
        JsonValue b = JsonValue::object();
        b.set("enabled", band.enabled);
        b.set(Params::kBandHz.key, band.centerHz);
        b.set(Params::kBandGain.key, band.gainDb);
        b.set(Params::kBandQ.key, band.q);
        bands.push(std::move(b));
    }
    JsonValue o = JsonValue::object();
    o.set("enabled", eq.enabled);
    o.set("lowCutEnabled", eq.lowCutEnabled);
    o.set(Params::kLowCut.key, eq.lowCutHz);
    o.set("highShelfEnabled", eq.highShelfEnabled);
    o.set(Params::kHighShelfHz.key, eq.highShelfHz);
    o.set(Params::kHighShelfGain.key, eq.highShelfGainDb);
    o.set("notchBands", std::move(bands));
    o.set("highCutEnabled", eq.highCutEnabled);
    o.set(Params::kHighCut.key, eq.highCutHz);
    o.set(Params::kHighCutQ.key, eq.highCutQ);
    return o;
}

EqParams eqFromJson(const JsonValue& o) {
    EqParams eq;
    eq.enabled = asBool(member(o, "enabled"), false);
    eq.lowCutEnabled = asBool(member(o, "lowCutEnabled"), false);
    eq.lowCutHz = read(o, Params::kLowCut);
    eq.highShelfEnabled = asBool(member(o, "highShelfEnabled"), false);
    eq.highShelfHz = read(o, Params::kHighShelfHz);
    eq.highShelfGainDb = read(o, Params::kHighShelfGain);
    const auto& bands = member(o, "notchBands").elements();
    for (size_t i = 0; i < bands.size() && i < eq.notchBands.size(); ++i) {
        const NotchBand bd;
        NotchBand& band = eq.notchBands[i];
        band.enabled = asBool(member(bands[i], "enabled"), bd.enabled);
        band.centerHz = asFloat(member(bands[i], Params::kBandHz.key), bd.centerHz);
        band.gainDb = asFloat(member(bands[i], Params::kBandGain.key), bd.gainDb);
        band.q = asFloat(member(bands[i], Params::kBandQ.key), bd.q);
    }
    eq.highCutEnabled = asBool(member(o, "highCutEnabled"), false);
    eq.highCutHz = read(o, Params::kHighCut);
    eq.highCutQ = read(o, Params::kHighCutQ);
    return eq;
}

JsonValue compToJson(const CompParams& c) {
    JsonValue o = JsonValue::object();
    o.set("enabled", c.enabled);
    o.set(Params::kCompThreshold.key, c.thresholdDb);
    o.set(Params::kCompRatio.key, c.ratio);
    o.set(Params::kCompKnee.key, c.kneeDb);
    o.set(Params::kCompAttack.key, c.attackMs);
    o.set(Params::kCompRelease.key, c.releaseMs);
    o.set(Params::kCompMakeup.key, c.makeupGainDb);
    return o;
}

CompParams compFromJson(const JsonValue& o) {
    CompParams c;
    c.enabled = asBool(member(o, "enabled"), false);
    c.thresholdDb = read(o, Params::kCompThreshold);
    c.ratio = read(o, Params::kCompRatio);
    c.kneeDb = read(o, Params::kCompKnee);
    c.attackMs = read(o, Params::kCompAttack);
    c.releaseMs = read(o, Params::kCompRelease);
    c.makeupGainDb = read(o, Params::kCompMakeup);
    return c;
}

JsonValue limiterToJson(const LimiterParams& l) {
    JsonValue o = JsonValue::object();
    o.set("enabled", l.enabled);
    o.set(Params::kLimiterCeiling.key, l.ceilingDb);
    o.set(Params::kLimiterRelease.key, l.releaseMs);
    return o;
}

LimiterParams limiterFromJson(const JsonValue& o) {
    LimiterParams l;
    l.enabled = asBool(member(o, "enabled"), false);
    l.ceilingDb = read(o, Params::kLimiterCeiling);
    l.releaseMs = read(o, Params::kLimiterRelease);
    return l;
}

JsonValue gateToJson(const GateParams& g) {
    JsonValue o = JsonValue::object();
    o.set("enabled", g.enabled);
    o.set(Params::kGateThreshold.key, g.thresholdDb);
    o.set(Params::kGateAttack.key, g.attackMs);
    o.set(Params::kGateHold.key, g.holdMs);
    o.set(Params::kGateRelease.key, g.releaseMs);
    o.set(Params::kGateRange.key, g.rangeDb);
    return o;
}

GateParams gateFromJson(const JsonValue& o) {
    GateParams g;
    g.enabled = asBool(member(o, "enabled"), false);
    g.thresholdDb = read(o, Params::kGateThreshold);
    g.attackMs = read(o, Params::kGateAttack);
    g.holdMs = read(o, Params::kGateHold);
    g.releaseMs = read(o, Params::kGateRelease);
    g.rangeDb = read(o, Params::kGateRange);
    return g;
}

JsonValue noiseToJson(const NoiseParams& n) {
    JsonValue o = JsonValue::object();
    o.set("enabled", n.enabled);
    o.set(Params::kNoiseAttenuation.key, n.attenLimitDb);
    o.set(Params::kNoiseMix.key, n.mix);
    return o;
}

NoiseParams noiseFromJson(const JsonValue& o) {
    NoiseParams n;
    n.enabled = asBool(member(o, "enabled"), false);
    n.attenLimitDb = read(o, Params::kNoiseAttenuation);
    n.mix = read(o, Params::kNoiseMix);
    return n;
}

JsonValue spectralToJson(const SpectralParams& s) {
    JsonValue profile = JsonValue::array();
    for (const float db : s.profileDb) {
        profile.push(db);
    }
    JsonValue o = JsonValue::object();
    o.set("enabled", s.enabled);
    o.set(Params::kSpectralAmount.key, s.amount);
    o.set("profileDb", std::move(profile));
    return o;
}

SpectralParams spectralFromJson(const JsonValue& o) {
    const SpectralParams d;
    SpectralParams s;
    s.enabled = asBool(member(o, "enabled"), false);
    s.amount = read(o, Params::kSpectralAmount);
    const auto& profile = member(o, "profileDb").elements();
    for (size_t i = 0; i < profile.size() && i < s.profileDb.size(); ++i) {
        s.profileDb[i] = asClampedFloat(profile[i], d.profileDb[i], kProfileMinDb, kProfileMaxDb);
    }
    return s;
}

// The formant band objects are named "fband0" to "fband4".
std::string formantBandKey(size_t index) {
    return "fband" + std::to_string(index);
}

JsonValue pitchToJson(const PitchParams& p) {
    JsonValue o = JsonValue::object();
    o.set("enabled", p.enabled);
    o.set(Params::kPitchA.key, p.semitonesA);
    o.set(Params::kFormantShiftA.key, p.formantShiftA);
    o.set("layerBEnabled", p.layerBEnabled);
    o.set(Params::kPitchB.key, p.semitonesB);
    o.set(Params::kFormantShiftB.key, p.formantShiftB);
    o.set(Params::kPitchWet.key, p.wetMix);
    o.set(Params::kPitchMixAB.key, p.mixAB);
    o.set("formantEqEnabled", p.formantEqEnabled);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        JsonValue band = JsonValue::object();
        band.set(Params::kFormantHz.key, p.formantBands[i].hz);
        band.set(Params::kFormantGain.key, p.formantBands[i].gainDb);
        o.set(formantBandKey(i), std::move(band));
    }
    return o;
}

PitchParams pitchFromJson(const JsonValue& o) {
    const PitchParams d;
    PitchParams p;
    p.enabled = asBool(member(o, "enabled"), d.enabled);
    // Older files named layer A's keys without the suffix.
    p.semitonesA = asFloat(member(o, Params::kPitchA.key), asFloat(member(o, "semitones"), 0.0f));
    p.formantShiftA =
        asFloat(member(o, Params::kFormantShiftA.key), asFloat(member(o, "formantShift"), 0.0f));
    p.layerBEnabled = asBool(member(o, "layerBEnabled"), d.layerBEnabled);
    p.semitonesB = asFloat(member(o, Params::kPitchB.key), d.semitonesB);
    p.formantShiftB = asFloat(member(o, Params::kFormantShiftB.key), d.formantShiftB);
    p.wetMix = asFloat(member(o, Params::kPitchWet.key), d.wetMix);
    p.mixAB = asFloat(member(o, Params::kPitchMixAB.key), d.mixAB);
    p.formantEqEnabled = asBool(member(o, "formantEqEnabled"), d.formantEqEnabled);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        const JsonValue& band = member(o, formantBandKey(i));
        p.formantBands[i].hz = asFloat(member(band, Params::kFormantHz.key), d.formantBands[i].hz);
        p.formantBands[i].gainDb =
            asFloat(member(band, Params::kFormantGain.key), d.formantBands[i].gainDb);
    }
    return p;
}

JsonValue reverbToJson(const ReverbParams& r) {
    JsonValue o = JsonValue::object();
    o.set("enabled", r.enabled);
    o.set(Params::kReverbRoom.key, r.roomSize);
    o.set(Params::kReverbDamping.key, r.damping);
    o.set(Params::kReverbWet.key, r.wetMix);
    o.set(Params::kReverbLowCut.key, r.lowCutHz);
    o.set(Params::kReverbDucking.key, r.duckingAmount);
    return o;
}

ReverbParams reverbFromJson(const JsonValue& o) {
    const ReverbParams d;
    ReverbParams r;
    r.enabled = asBool(member(o, "enabled"), d.enabled);
    r.roomSize = asFloat(member(o, Params::kReverbRoom.key), d.roomSize);
    r.damping = asFloat(member(o, Params::kReverbDamping.key), d.damping);
    r.wetMix = asFloat(member(o, Params::kReverbWet.key), d.wetMix);
    r.lowCutHz = asFloat(member(o, Params::kReverbLowCut.key), d.lowCutHz);
    r.duckingAmount = asFloat(member(o, Params::kReverbDucking.key), d.duckingAmount);
    return r;
}

JsonValue delayToJson(const DelayParams& dl) {
    JsonValue o = JsonValue::object();
    o.set("enabled", dl.enabled);
    o.set(Params::kDelayTime.key, dl.timeMs);
    o.set(Params::kDelayFeedback.key, dl.feedback);
    o.set(Params::kDelayWet.key, dl.wetMix);
    return o;
}

DelayParams delayFromJson(const JsonValue& o) {
    const DelayParams d;
    DelayParams dl;
    dl.enabled = asBool(member(o, "enabled"), d.enabled);
    dl.timeMs = asFloat(member(o, Params::kDelayTime.key), d.timeMs);
    dl.feedback = asFloat(member(o, Params::kDelayFeedback.key), d.feedback);
    dl.wetMix = asFloat(member(o, Params::kDelayWet.key), d.wetMix);
    return dl;
}

JsonValue radioToJson(const RadioParams& r) {
    JsonValue o = JsonValue::object();
    o.set("enabled", r.enabled);
    o.set(Params::kRadioLowCut.key, r.lowCutHz);
    o.set(Params::kRadioHighCut.key, r.highCutHz);
    o.set(Params::kRadioDrive.key, r.overdrive);
    return o;
}

RadioParams radioFromJson(const JsonValue& o) {
    const RadioParams d;
    RadioParams r;
    r.enabled = asBool(member(o, "enabled"), d.enabled);
    r.lowCutHz = asFloat(member(o, Params::kRadioLowCut.key), d.lowCutHz);
    r.highCutHz = asFloat(member(o, Params::kRadioHighCut.key), d.highCutHz);
    r.overdrive = asFloat(member(o, Params::kRadioDrive.key), d.overdrive);
    return r;
}

JsonValue modToJson(const ModParams& m) {
    JsonValue o = JsonValue::object();
    o.set("enabled", m.enabled);
    o.set("type", static_cast<int>(m.type));
    o.set(Params::kModRate.key, m.rate);
    o.set(Params::kModDepth.key, m.depth);
    o.set(Params::kModFeedback.key, m.feedback);
    o.set(Params::kModWet.key, m.wetMix);
    return o;
}

ModParams modFromJson(const JsonValue& o) {
    const ModParams d;
    ModParams m;
    m.enabled = asBool(member(o, "enabled"), d.enabled);
    m.type = asInt(member(o, "type"), d.type);
    m.rate = asFloat(member(o, Params::kModRate.key), d.rate);
    m.depth = asFloat(member(o, Params::kModDepth.key), d.depth);
    m.feedback = asFloat(member(o, Params::kModFeedback.key), d.feedback);
    m.wetMix = asFloat(member(o, Params::kModWet.key), d.wetMix);
    return m;
}

} // namespace

JsonValue effectPresetToJson(const SavedEffectPreset& saved) {
    const EffectPreset& p = saved.preset;
    JsonValue o = JsonValue::object();
    o.set("name", saved.name);
    o.set("description", saved.description);
    o.set("savedAt", saved.savedAt);
    o.set("recording", saved.recording);
    o.set("eq", eqToJson(p.eq));
    o.set("comp", compToJson(p.comp));
    o.set("limiter", limiterToJson(p.limiter));
    o.set("gate", gateToJson(p.gate));
    o.set("noise", noiseToJson(p.noise));
    o.set("spectral", spectralToJson(p.spectral));
    o.set(Params::kInputGain.key, p.inputGainDb);
    o.set(Params::kOutputGain.key, p.outputGainDb);
    return o;
}

SavedEffectPreset effectPresetFromJson(const JsonValue& o) {
    const EffectPreset d;
    SavedEffectPreset saved;
    saved.name = asString(member(o, "name"), "");
    saved.description = asString(member(o, "description"), "");
    saved.savedAt = asString(member(o, "savedAt"), "");
    saved.recording = asBool(member(o, "recording"), false);
    EffectPreset& p = saved.preset;
    p.eq = eqFromJson(member(o, "eq"));
    p.comp = compFromJson(member(o, "comp"));
    p.limiter = limiterFromJson(member(o, "limiter"));
    p.gate = gateFromJson(member(o, "gate"));
    p.noise = noiseFromJson(member(o, "noise"));
    p.spectral = spectralFromJson(member(o, "spectral"));
    p.inputGainDb = read(o, Params::kInputGain);
    p.outputGainDb = read(o, Params::kOutputGain);
    return saved;
}

JsonValue soundFxPresetToJson(const SavedSoundFxPreset& saved) {
    const SoundFxPreset& p = saved.preset;
    JsonValue order = JsonValue::array();
    for (const int32_t code : p.effectOrder) {
        order.push(static_cast<int>(code));
    }
    JsonValue o = JsonValue::object();
    o.set("name", saved.name);
    o.set("description", saved.description);
    o.set("savedAt", saved.savedAt);
    o.set("pitch", pitchToJson(p.pitch));
    o.set("reverb", reverbToJson(p.reverb));
    o.set("delay", delayToJson(p.delay));
    o.set("radio", radioToJson(p.radio));
    o.set("mod", modToJson(p.mod));
    o.set("effectOrder", std::move(order));
    // The level that matches a voice's loudness to the dry voice (the built-ins
    // carry one); a voice without one is stored as it always was.
    if (p.outputGainDb != 0.0f) {
        o.set(Params::kFxOutputGain.key, p.outputGainDb);
    }
    return o;
}

SavedSoundFxPreset soundFxPresetFromJson(const JsonValue& o) {
    SavedSoundFxPreset saved;
    saved.name = asString(member(o, "name"), "");
    saved.description = asString(member(o, "description"), "");
    saved.savedAt = asString(member(o, "savedAt"), "");
    SoundFxPreset& p = saved.preset;
    p.pitch = pitchFromJson(member(o, "pitch"));
    p.reverb = reverbFromJson(member(o, "reverb"));
    p.delay = delayFromJson(member(o, "delay"));
    p.radio = radioFromJson(member(o, "radio"));
    p.mod = modFromJson(member(o, "mod"));
    p.outputGainDb = read(o, Params::kFxOutputGain);
    // Only a list of exactly five is an order; anything else keeps the default.
    const JsonValue& order = member(o, "effectOrder");
    if (order.isArray() && order.elements().size() == p.effectOrder.size()) {
        for (size_t i = 0; i < p.effectOrder.size(); ++i) {
            p.effectOrder[i] = asInt(order.elements()[i], static_cast<int32_t>(i));
        }
    }
    return saved;
}

} // namespace Lumora
