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
        b.set("centerHz", band.centerHz);
        b.set("gainDb", band.gainDb);
        b.set("q", band.q);
        bands.push(std::move(b));
    }
    JsonValue o = JsonValue::object();
    o.set("enabled", eq.enabled);
    o.set("lowCutEnabled", eq.lowCutEnabled);
    o.set("lowCutHz", eq.lowCutHz);
    o.set("highShelfEnabled", eq.highShelfEnabled);
    o.set("highShelfHz", eq.highShelfHz);
    o.set("highShelfGainDb", eq.highShelfGainDb);
    o.set("notchBands", std::move(bands));
    o.set("highCutEnabled", eq.highCutEnabled);
    o.set("highCutHz", eq.highCutHz);
    o.set("highCutQ", eq.highCutQ);
    return o;
}

EqParams eqFromJson(const JsonValue& o) {
    const EqParams d;
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
        band.centerHz = asFloat(member(bands[i], "centerHz"), bd.centerHz);
        band.gainDb = asFloat(member(bands[i], "gainDb"), bd.gainDb);
        band.q = asFloat(member(bands[i], "q"), bd.q);
    }
    eq.highCutEnabled = asBool(member(o, "highCutEnabled"), false);
    eq.highCutHz = read(o, Params::kHighCut);
    eq.highCutQ = read(o, Params::kHighCutQ);
    return eq;
}

JsonValue compToJson(const CompParams& c) {
    JsonValue o = JsonValue::object();
    o.set("enabled", c.enabled);
    o.set("thresholdDb", c.thresholdDb);
    o.set("ratio", c.ratio);
    o.set("kneeDb", c.kneeDb);
    o.set("attackMs", c.attackMs);
    o.set("releaseMs", c.releaseMs);
    o.set("makeupGainDb", c.makeupGainDb);
    return o;
}

CompParams compFromJson(const JsonValue& o) {
    const CompParams d;
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
    o.set("ceilingDb", l.ceilingDb);
    o.set("releaseMs", l.releaseMs);
    return o;
}

LimiterParams limiterFromJson(const JsonValue& o) {
    const LimiterParams d;
    LimiterParams l;
    l.enabled = asBool(member(o, "enabled"), false);
    l.ceilingDb = read(o, Params::kLimiterCeiling);
    l.releaseMs = read(o, Params::kLimiterRelease);
    return l;
}

JsonValue gateToJson(const GateParams& g) {
    JsonValue o = JsonValue::object();
    o.set("enabled", g.enabled);
    o.set("thresholdDb", g.thresholdDb);
    o.set("attackMs", g.attackMs);
    o.set("holdMs", g.holdMs);
    o.set("releaseMs", g.releaseMs);
    o.set("rangeDb", g.rangeDb);
    return o;
}

GateParams gateFromJson(const JsonValue& o) {
    const GateParams d;
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
    o.set("attenLimitDb", n.attenLimitDb);
    o.set("mix", n.mix);
    return o;
}

NoiseParams noiseFromJson(const JsonValue& o) {
    const NoiseParams d;
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
    o.set("amount", s.amount);
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
    o.set("semitonesA", p.semitonesA);
    o.set("formantShiftA", p.formantShiftA);
    o.set("layerBEnabled", p.layerBEnabled);
    o.set("semitonesB", p.semitonesB);
    o.set("formantShiftB", p.formantShiftB);
    o.set("wetMix", p.wetMix);
    o.set("mixAB", p.mixAB);
    o.set("formantEqEnabled", p.formantEqEnabled);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        JsonValue band = JsonValue::object();
        band.set("hz", p.formantBands[i].hz);
        band.set("gainDb", p.formantBands[i].gainDb);
        o.set(formantBandKey(i), std::move(band));
    }
    return o;
}

PitchParams pitchFromJson(const JsonValue& o) {
    const PitchParams d;
    PitchParams p;
    p.enabled = asBool(member(o, "enabled"), d.enabled);
    // Older files named layer A's keys without the suffix.
    p.semitonesA = asFloat(member(o, "semitonesA"), asFloat(member(o, "semitones"), 0.0f));
    p.formantShiftA = asFloat(member(o, "formantShiftA"), asFloat(member(o, "formantShift"), 0.0f));
    p.layerBEnabled = asBool(member(o, "layerBEnabled"), d.layerBEnabled);
    p.semitonesB = asFloat(member(o, "semitonesB"), d.semitonesB);
    p.formantShiftB = asFloat(member(o, "formantShiftB"), d.formantShiftB);
    p.wetMix = asFloat(member(o, "wetMix"), d.wetMix);
    p.mixAB = asFloat(member(o, "mixAB"), d.mixAB);
    p.formantEqEnabled = asBool(member(o, "formantEqEnabled"), d.formantEqEnabled);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        const JsonValue& band = member(o, formantBandKey(i));
        p.formantBands[i].hz = asFloat(member(band, "hz"), d.formantBands[i].hz);
        p.formantBands[i].gainDb = asFloat(member(band, "gainDb"), d.formantBands[i].gainDb);
    }
    return p;
}

JsonValue reverbToJson(const ReverbParams& r) {
    JsonValue o = JsonValue::object();
    o.set("enabled", r.enabled);
    o.set("roomSize", r.roomSize);
    o.set("damping", r.damping);
    o.set("wetMix", r.wetMix);
    o.set("lowCutHz", r.lowCutHz);
    o.set("duckingAmount", r.duckingAmount);
    return o;
}

ReverbParams reverbFromJson(const JsonValue& o) {
    const ReverbParams d;
    ReverbParams r;
    r.enabled = asBool(member(o, "enabled"), d.enabled);
    r.roomSize = asFloat(member(o, "roomSize"), d.roomSize);
    r.damping = asFloat(member(o, "damping"), d.damping);
    r.wetMix = asFloat(member(o, "wetMix"), d.wetMix);
    r.lowCutHz = asFloat(member(o, "lowCutHz"), d.lowCutHz);
    r.duckingAmount = asFloat(member(o, "duckingAmount"), d.duckingAmount);
    return r;
}

JsonValue delayToJson(const DelayParams& dl) {
    JsonValue o = JsonValue::object();
    o.set("enabled", dl.enabled);
    o.set("timeMs", dl.timeMs);
    o.set("feedback", dl.feedback);
    o.set("wetMix", dl.wetMix);
    return o;
}

DelayParams delayFromJson(const JsonValue& o) {
    const DelayParams d;
    DelayParams dl;
    dl.enabled = asBool(member(o, "enabled"), d.enabled);
    dl.timeMs = asFloat(member(o, "timeMs"), d.timeMs);
    dl.feedback = asFloat(member(o, "feedback"), d.feedback);
    dl.wetMix = asFloat(member(o, "wetMix"), d.wetMix);
    return dl;
}

JsonValue radioToJson(const RadioParams& r) {
    JsonValue o = JsonValue::object();
    o.set("enabled", r.enabled);
    o.set("lowCutHz", r.lowCutHz);
    o.set("highCutHz", r.highCutHz);
    o.set("overdrive", r.overdrive);
    return o;
}

RadioParams radioFromJson(const JsonValue& o) {
    const RadioParams d;
    RadioParams r;
    r.enabled = asBool(member(o, "enabled"), d.enabled);
    r.lowCutHz = asFloat(member(o, "lowCutHz"), d.lowCutHz);
    r.highCutHz = asFloat(member(o, "highCutHz"), d.highCutHz);
    r.overdrive = asFloat(member(o, "overdrive"), d.overdrive);
    return r;
}

JsonValue modToJson(const ModParams& m) {
    JsonValue o = JsonValue::object();
    o.set("enabled", m.enabled);
    o.set("type", static_cast<int>(m.type));
    o.set("rate", m.rate);
    o.set("depth", m.depth);
    o.set("feedback", m.feedback);
    o.set("wetMix", m.wetMix);
    return o;
}

ModParams modFromJson(const JsonValue& o) {
    const ModParams d;
    ModParams m;
    m.enabled = asBool(member(o, "enabled"), d.enabled);
    m.type = asInt(member(o, "type"), d.type);
    m.rate = asFloat(member(o, "rate"), d.rate);
    m.depth = asFloat(member(o, "depth"), d.depth);
    m.feedback = asFloat(member(o, "feedback"), d.feedback);
    m.wetMix = asFloat(member(o, "wetMix"), d.wetMix);
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
    o.set("inputGainDb", p.inputGainDb);
    o.set("outputGainDb", p.outputGainDb);
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
        o.set("outputGainDb", p.outputGainDb);
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
