// The effect-preset and sound-effect-preset objects of the settings file.

#include "settings/SettingsJson.h"

#include <string>

namespace Lumora {

namespace {

// The noise profile, which no control sets, is held where the chain's
// arithmetic stays finite.
constexpr float kProfileMinDb = -96.0f, kProfileMaxDb = 0.0f;

// Each group names its fields once, in `fields`, and the same list writes and
// reads them: a field written under one key and read under another, or not
// read at all, would lose a user's setting at the next start of OBS.

struct Writer {
    JsonValue& o;
    void operator()(const char* key, bool value) const { o.set(key, value); }
    void operator()(const char* key, int32_t value) const { o.set(key, static_cast<int>(value)); }
    void operator()(const Parameter& p, float value) const { o.set(p.key, value); }
};

// The cleaning chain's numbers are pulled into their parameters' ranges; what
// is missing or of the wrong type keeps the record's default.
struct ClampingReader {
    const JsonValue& o;
    void operator()(const char* key, bool& value) const { value = asBool(member(o, key), value); }
    void operator()(const Parameter& p, float& value) const {
        value = asClampedFloat(member(o, p.key), value, p.minimum, p.maximum);
    }
};

// Numbers taken as written, for the stages that hold them in range themselves
// (the voice effects, the equaliser's bands); what is missing or of the wrong
// type keeps the record's default.
struct PlainReader {
    const JsonValue& o;
    void operator()(const char* key, bool& value) const { value = asBool(member(o, key), value); }
    void operator()(const char* key, int32_t& value) const { value = asInt(member(o, key), value); }
    void operator()(const Parameter& p, float& value) const {
        value = asFloat(member(o, p.key), value);
    }
};

template <typename Visit>
void fields(NotchBand& b, Visit&& v) {
    v("enabled", b.enabled);
    v(Params::kBandHz, b.centerHz);
    v(Params::kBandGain, b.gainDb);
    v(Params::kBandQ, b.q);
}

// The equaliser's bands are an array beside these ("notchBands").
template <typename Visit>
void fields(EqParams& eq, Visit&& v) {
    v("enabled", eq.enabled);
    v("lowCutEnabled", eq.lowCutEnabled);
    v(Params::kLowCut, eq.lowCutHz);
    v("highShelfEnabled", eq.highShelfEnabled);
    v(Params::kHighShelfHz, eq.highShelfHz);
    v(Params::kHighShelfGain, eq.highShelfGainDb);
    v("highCutEnabled", eq.highCutEnabled);
    v(Params::kHighCut, eq.highCutHz);
    v(Params::kHighCutQ, eq.highCutQ);
}

template <typename Visit>
void fields(CompParams& c, Visit&& v) {
    v("enabled", c.enabled);
    v(Params::kCompThreshold, c.thresholdDb);
    v(Params::kCompRatio, c.ratio);
    v(Params::kCompKnee, c.kneeDb);
    v(Params::kCompAttack, c.attackMs);
    v(Params::kCompRelease, c.releaseMs);
    v(Params::kCompMakeup, c.makeupGainDb);
}

template <typename Visit>
void fields(LimiterParams& l, Visit&& v) {
    v("enabled", l.enabled);
    v(Params::kLimiterCeiling, l.ceilingDb);
    v(Params::kLimiterRelease, l.releaseMs);
}

template <typename Visit>
void fields(GateParams& g, Visit&& v) {
    v("enabled", g.enabled);
    v(Params::kGateThreshold, g.thresholdDb);
    v(Params::kGateAttack, g.attackMs);
    v(Params::kGateHold, g.holdMs);
    v(Params::kGateRelease, g.releaseMs);
    v(Params::kGateRange, g.rangeDb);
}

template <typename Visit>
void fields(NoiseParams& n, Visit&& v) {
    v("enabled", n.enabled);
    v(Params::kNoiseAttenuation, n.attenLimitDb);
    v(Params::kNoiseMix, n.mix);
}

// The learned profile is an array beside these ("profileDb").
template <typename Visit>
void fields(SpectralParams& s, Visit&& v) {
    v("enabled", s.enabled);
    v(Params::kSpectralAmount, s.amount);
}

// The width is the formant equaliser's own and is not stored.
template <typename Visit>
void fields(FormantBand& b, Visit&& v) {
    v(Params::kFormantHz, b.hz);
    v(Params::kFormantGain, b.gainDb);
}

// The formant bands are objects beside these ("fband0" to "fband4").
template <typename Visit>
void fields(PitchParams& p, Visit&& v) {
    v("enabled", p.enabled);
    v(Params::kPitchA, p.semitonesA);
    v(Params::kFormantShiftA, p.formantShiftA);
    v("layerBEnabled", p.layerBEnabled);
    v(Params::kPitchB, p.semitonesB);
    v(Params::kFormantShiftB, p.formantShiftB);
    v(Params::kPitchWet, p.wetMix);
    v(Params::kPitchMixAB, p.mixAB);
    v("formantEqEnabled", p.formantEqEnabled);
}

template <typename Visit>
void fields(ReverbParams& r, Visit&& v) {
    v("enabled", r.enabled);
    v(Params::kReverbRoom, r.roomSize);
    v(Params::kReverbDamping, r.damping);
    v(Params::kReverbWet, r.wetMix);
    v(Params::kReverbLowCut, r.lowCutHz);
    v(Params::kReverbDucking, r.duckingAmount);
}

template <typename Visit>
void fields(DelayParams& d, Visit&& v) {
    v("enabled", d.enabled);
    v(Params::kDelayTime, d.timeMs);
    v(Params::kDelayFeedback, d.feedback);
    v(Params::kDelayWet, d.wetMix);
}

template <typename Visit>
void fields(RadioParams& r, Visit&& v) {
    v("enabled", r.enabled);
    v(Params::kRadioLowCut, r.lowCutHz);
    v(Params::kRadioHighCut, r.highCutHz);
    v(Params::kRadioDrive, r.overdrive);
}

template <typename Visit>
void fields(ModParams& m, Visit&& v) {
    v("enabled", m.enabled);
    v("type", m.type);
    v(Params::kModRate, m.rate);
    v(Params::kModDepth, m.depth);
    v(Params::kModFeedback, m.feedback);
    v(Params::kModWet, m.wetMix);
}

// A copy, since one list of fields serves reading too.
template <typename Group>
JsonValue toJson(Group group) {
    JsonValue o = JsonValue::object();
    fields(group, Writer{o});
    return o;
}

// `group` holds the defaults on the way in.
template <typename Reader, typename Group>
Group read(const JsonValue& o, Group group) {
    fields(group, Reader{o});
    return group;
}

// A number of the cleaning chain outside the groups, pulled into its range.
float read(const JsonValue& o, const Parameter& p) {
    float value = p.initial;
    ClampingReader{o}(p, value);
    return value;
}

JsonValue eqToJson(const EqParams& eq) {
    JsonValue bands = JsonValue::array();
    for (const NotchBand& band : eq.notchBands) {
        bands.push(toJson(band));
    }
    JsonValue o = toJson(eq);
    o.set("notchBands", std::move(bands));
    return o;
}

EqParams eqFromJson(const JsonValue& o) {
    EqParams eq = read<ClampingReader>(o, EqParams{});
    const auto& bands = member(o, "notchBands").elements();
    for (size_t i = 0; i < bands.size() && i < eq.notchBands.size(); ++i) {
        eq.notchBands[i] = read<PlainReader>(bands[i], NotchBand{});
    }
    return eq;
}

JsonValue spectralToJson(const SpectralParams& s) {
    JsonValue profile = JsonValue::array();
    for (const float db : s.profileDb) {
        profile.push(db);
    }
    JsonValue o = toJson(s);
    o.set("profileDb", std::move(profile));
    return o;
}

SpectralParams spectralFromJson(const JsonValue& o) {
    const SpectralParams d;
    SpectralParams s = read<ClampingReader>(o, d);
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
    JsonValue o = toJson(p);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        o.set(formantBandKey(i), toJson(p.formantBands[i]));
    }
    return o;
}

PitchParams pitchFromJson(const JsonValue& o) {
    PitchParams p;
    // Older files named layer A's keys without the suffix.
    p.semitonesA = asFloat(member(o, "semitones"), 0.0f);
    p.formantShiftA = asFloat(member(o, "formantShift"), 0.0f);
    p = read<PlainReader>(o, p);
    for (size_t i = 0; i < p.formantBands.size(); ++i) {
        p.formantBands[i] = read<PlainReader>(member(o, formantBandKey(i)), p.formantBands[i]);
    }
    return p;
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
    o.set("comp", toJson(p.comp));
    o.set("limiter", toJson(p.limiter));
    o.set("gate", toJson(p.gate));
    o.set("noise", toJson(p.noise));
    o.set("spectral", spectralToJson(p.spectral));
    o.set(Params::kInputGain.key, p.inputGainDb);
    o.set(Params::kOutputGain.key, p.outputGainDb);
    return o;
}

SavedEffectPreset effectPresetFromJson(const JsonValue& o) {
    SavedEffectPreset saved;
    saved.name = asString(member(o, "name"), "");
    saved.description = asString(member(o, "description"), "");
    saved.savedAt = asString(member(o, "savedAt"), "");
    saved.recording = asBool(member(o, "recording"), false);
    EffectPreset& p = saved.preset;
    p.eq = eqFromJson(member(o, "eq"));
    p.comp = read<ClampingReader>(member(o, "comp"), p.comp);
    p.limiter = read<ClampingReader>(member(o, "limiter"), p.limiter);
    p.gate = read<ClampingReader>(member(o, "gate"), p.gate);
    p.noise = read<ClampingReader>(member(o, "noise"), p.noise);
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
    o.set("reverb", toJson(p.reverb));
    o.set("delay", toJson(p.delay));
    o.set("radio", toJson(p.radio));
    o.set("mod", toJson(p.mod));
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
    p.reverb = read<PlainReader>(member(o, "reverb"), p.reverb);
    p.delay = read<PlainReader>(member(o, "delay"), p.delay);
    p.radio = read<PlainReader>(member(o, "radio"), p.radio);
    p.mod = read<PlainReader>(member(o, "mod"), p.mod);
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
