#include "diagnosis/RecommendedSettings.h"

#include <algorithm>
#include <vector>

namespace Lumora {

namespace {

float clampf(float v, float lo, float hi) {
    return std::min(std::max(v, lo), hi);
}

// The recommendation's own starting point, independent of what the stored
// presets default to.
EffectPreset startingPoint() {
    EffectPreset p;
    p.eq.enabled = false;
    p.eq.lowCutEnabled = false;
    p.eq.lowCutHz = 80.0f;
    p.eq.highShelfEnabled = false;
    p.eq.highShelfHz = 5000.0f;
    p.eq.highShelfGainDb = 0.0f;
    for (NotchBand& band : p.eq.notchBands) {
        band = NotchBand{false, 1000.0f, 0.0f, 4.0f};
    }
    p.eq.highCutEnabled = false;
    p.eq.highCutHz = 16000.0f;
    p.eq.highCutQ = 0.7071f;
    p.comp.enabled = false;
    p.comp.thresholdDb = -20.0f;
    p.comp.ratio = 2.0f;
    p.comp.attackMs = 10.0f;
    p.comp.releaseMs = 150.0f;
    p.comp.makeupGainDb = 0.0f;
    p.limiter = LimiterParams{false, -3.0f, 50.0f};
    p.gate = GateParams{false, -55.0f, 5.0f, 100.0f, 150.0f, -60.0f};
    p.spectral.enabled = false;
    p.spectral.amount = 0.75f;
    p.spectral.profileDb = silentProfile();
    p.noise = NoiseParams{false, 40.0f, 0.8f};
    p.inputGainDb = 0.0f;
    return p;
}

const DiagnosisItem* findItem(const DiagnosisResult& result, const char* key) {
    for (const DiagnosisItem& item : result.items) {
        if (item.key == key) {
            return &item;
        }
    }
    return nullptr;
}

void recommendInputGain(EffectPreset& p, const StepStats& s1, const StepStats& s5) {
    if (!s1.valid) {
        return;
    }
    const float need = -25.0f - s1.level;
    if (need < -1.0f) {
        p.inputGainDb = clampf(need, -12.0f, 24.0f);
    } else if (need > 1.0f) {
        const float ref = s5.valid ? s5.peakMax : s1.noiseFloorMin + 10.0f;
        // (ref + 3) - ref - 6 is -3 for any finite ref, so the headroom is 0 and
        // a quiet voice keeps unity gain: raising the gain would lift the room
        // noise with it. Kept in this form on purpose.
        const float headroom = std::max((ref + 3.0f) - ref - 6.0f, 0.0f);
        const float raise = std::min({headroom, 6.0f, need});
        if (raise > 0.5f) {
            p.inputGainDb = clampf(raise, -12.0f, 24.0f);
        }
    }
}

// The gate opens on any sample at or above its threshold, so the threshold must
// clear the room's own sample peaks: the silence take's held peak, restarted
// when that take began (a peak carried over from the "pa" take would set the
// gate at -20 dBFS and mute a soft voice), 3 dB over the loudest 5 % of it.
// And it must never sit above the quiet syllables of the user's own takes: at
// most 6 dB under the 10th percentile of the soft (and normal) take's active
// block levels. Where the room is as loud as those syllables, the gate stays
// low and open, and the noise reduction does the work.
constexpr float kGateOverRoomDb = 3.0f;
constexpr float kGateUnderSyllablesDb = 6.0f;

void recommendGate(EffectPreset& p, const DiagnosisResult& result) {
    const StepStats& s1 = result.speech;
    const StepStats& s5 = result.silence;
    float t = -50.0f;
    float noise = -65.0f;
    if (s5.valid) {
        t = s5.peak95 + kGateOverRoomDb;
        noise = s5.peak95;
    } else if (s1.valid) {
        t = s1.noiseFloorMin + 12.0f;
        noise = s1.noiseFloorMin;
    }
    t = std::max(std::min(t, -15.0f), -70.0f);
    // The syllables' cap comes after the room's -70 dBFS floor: a voice far
    // too quiet (a soft take around -62 dBFS) has quiet syllables under -76,
    // and a gate held at -70 muted 2 % of them. Only the gate's own -80 floor
    // stands under the cap.
    for (const StepStats* take : {&result.soft, &s1}) {
        if (take->valid && take->activeLevelP10 > -96.0f) {
            t = std::min(t, take->activeLevelP10 - kGateUnderSyllablesDb);
        }
    }
    p.gate.enabled = true;
    p.gate.thresholdDb = std::max(std::min(t, -20.0f), -80.0f);
    const float n = noise + 65.0f;
    p.gate.attackMs = 3.0f;
    p.gate.holdMs = clampf(3.0f * n + 60.0f, 60.0f, 150.0f);
    p.gate.releaseMs = clampf(2.0f * n + 100.0f, 60.0f, 100.0f);
    p.gate.rangeDb = -60.0f;
}

void recommendEq(EffectPreset& p, const StepStats& s1) {
    // p > 0: more low than mid (a close mic's proximity effect); p < 0: thin.
    const float prox = clampf((s1.low - s1.mid) / 10.0f, -1.0f, 1.0f);
    const float dull = std::max(s1.mid - s1.high, 0.0f);
    const float mids = std::max(s1.mid + 32.0f, 0.0f);
    const float harsh = std::max(s1.high - s1.mid + 3.0f, 0.0f);

    p.eq.lowCutEnabled = true;
    p.eq.lowCutHz = clampf(30.0f * prox + 90.0f, 60.0f, 180.0f);

    auto& b = p.eq.notchBands;
    for (NotchBand& band : b) {
        band.enabled = true;
    }
    b[0].centerHz = clampf(300.0f - 100.0f * prox, 200.0f, 430.0f);
    b[0].gainDb =
        prox > 0.0f ? std::max(-(2.5f * prox + 2.0f), -4.5f) : std::max(-(2.0f + prox), -1.5f);
    b[0].q = clampf(2.5f * prox + 3.0f, 1.5f, 6.0f);

    b[1].centerHz = clampf(1200.0f - 500.0f * prox, 700.0f, 2000.0f);
    b[1].gainDb = std::max(-(0.12f * mids + 1.5f), -4.0f);
    b[1].q = clampf(0.06f * mids + 1.2f, 0.8f, 2.5f);

    b[2].centerHz = clampf(2800.0f - 600.0f * prox, 2200.0f, 4000.0f);
    b[2].gainDb = std::min(0.12f * dull + 1.5f, 4.5f);
    b[2].q = clampf(1.4f - 0.03f * dull, 0.7f, 1.8f);

    b[3].centerHz =
        std::min(clampf(6500.0f - 1500.0f * prox, 4500.0f, 8500.0f) + 100.0f * harsh, 10000.0f);
    b[3].gainDb = std::max(-(0.35f * harsh + 3.5f), -8.0f);
    b[3].q = clampf(0.25f * harsh + 2.5f, 1.5f, 5.5f);

    b[4].centerHz = 0.75f * b[3].centerHz;
    b[4].gainDb = std::min(0.1f * dull + 1.5f, 4.0f);
    b[4].q = std::max(0.9f - 0.02f * dull, 0.5f);
}

void recommendCompressor(EffectPreset& p, const StepStats& s1) {
    if (!s1.valid) {
        return;
    }
    p.comp.enabled = true;
    p.comp.thresholdDb = clampf(clampf(s1.level + 6.0f, -38.0f, -12.0f), -40.0f, -6.0f);
    p.comp.ratio = 3.5f;
    p.comp.attackMs = 15.0f;
    p.comp.releaseMs = 80.0f;
    p.comp.makeupGainDb = clampf(-25.0f - s1.level + 1.5f - p.inputGainDb, 0.0f, 24.0f);
}

void recommendLimiter(EffectPreset& p, const DiagnosisResult& result) {
    p.limiter.enabled = true;
    p.limiter.ceilingDb = -2.0f;
    p.limiter.releaseMs = 50.0f;
    const DiagnosisItem* clipping = findItem(result, "clipping");
    if (clipping && clipping->level != 0) {
        const float target = clipping->level == 2 ? -3.0f : -2.0f;
        if (!p.limiter.enabled || p.limiter.ceilingDb > target) {
            p.limiter.ceilingDb = std::max(target, -6.0f);
        }
    }
}

int32_t noiseLevel(const DiagnosisResult& result) {
    const DiagnosisItem* noise = findItem(result, "noise");
    return noise ? noise->level : kLevelGood;
}

// Noise reduction follows the noise verdict, so that what the result says and
// what the preset does agree: a quiet room gets none, a Caution the spectral
// reducer at 0.9, a Warning the same reducer plus the neural filter. The
// reducer takes at most 20 dB off (1 - 0.9); on the corpus's fan noise 30 dB
// and 12 dB under the voice that lifts every voice over the room by 8.4 dB or
// more while no active speech block loses more than 15 dB. Weaker falls short
// on a slow talker, whose compressor (set from the take's median, mostly pauses)
// gives back 3 dB of it: 0.85 gained 6 dB there and 0.6 only 4 dB on any voice.
// Stronger mutes syllables: 0.95 under a room 12 dB down cost one talker 1.7 %
// of its normal take's speech blocks, 1.0 up to 5 % of a soft take. The
// room's profile is filled in whenever the silence take was heard, so a user
// who switches the reducer on later starts from their own room.
void recommendSpectral(EffectPreset& p, const DiagnosisResult& result) {
    const bool heard = std::any_of(result.noiseSpectrum.begin(), result.noiseSpectrum.end(),
                                   [](float db) { return db > -95.0f; });
    if (!heard) {
        return; // nothing learned from the silence take: leave the profile alone
    }
    std::copy(result.noiseSpectrum.begin(), result.noiseSpectrum.end(),
              p.spectral.profileDb.begin());
    const int32_t level = noiseLevel(result);
    if (level != kLevelGood) {
        p.spectral.enabled = true;
        p.spectral.amount = 0.9f;
    }
}

void recommendNoiseFilter(EffectPreset& p, const DiagnosisResult& result) {
    const StepStats& s1 = result.speech;
    const StepStats& s5 = result.silence;
    if (!s1.valid || !s5.valid || noiseLevel(result) != kLevelWarning) {
        return;
    }
    const float snr = s1.level - s5.level;
    p.noise.enabled = true;
    p.noise.mix = 1.0f;
    p.noise.attenLimitDb = clampf(2.0f * (30.0f - snr) + 20.0f, 20.0f, 60.0f);
}

} // namespace

EffectPreset recommend(const DiagnosisResult& result, bool recordingMode) {
    EffectPreset p = startingPoint();
    p.recording = recordingMode;
    if (recordingMode) {
        p.name = "録音モード（エフェクトなし）";
        p.description = "録音用ならこのままがおすすめ！";
        return p;
    }
    if (!result.valid) {
        p.name = "未診断";
        p.description = "診断を先にやってみてね！";
        return p;
    }
    const StepStats& s1 = result.speech;
    const StepStats& s5 = result.silence;
    recommendInputGain(p, s1, s5);
    recommendGate(p, result);
    recommendEq(p, s1);
    recommendCompressor(p, s1);
    recommendLimiter(p, result);
    recommendSpectral(p, result);
    recommendNoiseFilter(p, result);
    p.eq.enabled = std::any_of(p.eq.notchBands.begin(), p.eq.notchBands.end(),
                               [](const NotchBand& b) { return b.enabled; });
    p.name = "配信最適化プリセット";
    p.description = describe(p);
    return p;
}

std::string describe(const EffectPreset& preset) {
    if (preset.recording) {
        return "録音用ならこのままがおすすめ！";
    }
    if (!preset.comp.enabled && !preset.limiter.enabled && !preset.gate.enabled) {
        return "いい感じ！特に調整は必要ないかも。";
    }
    std::vector<const char*> phrases;
    if (preset.inputGainDb > 1.0f) {
        phrases.push_back("入力ゲインを上げたよ");
    } else if (preset.inputGainDb < -1.0f) {
        phrases.push_back("入力ゲインを下げたよ");
    }
    if (preset.spectral.enabled) {
        phrases.push_back("ノイズリダクションで環境ノイズを除去");
    } else if (preset.gate.enabled) {
        phrases.push_back("環境ノイズをゲートでカット");
    }
    if (preset.eq.enabled) {
        phrases.push_back("声を5バンドEQで整えたよ");
    }
    if (preset.comp.enabled) {
        phrases.push_back("声の強弱をコンプで均した");
    }
    if (preset.limiter.enabled) {
        phrases.push_back("ピーク抑制ON");
    }
    if (phrases.empty()) {
        return "少し整えてみたよ！";
    }
    std::string text;
    for (size_t i = 0; i < phrases.size(); ++i) {
        if (i > 0) {
            text += "、";
        }
        text += phrases[i];
    }
    return text + "！";
}

} // namespace Lumora
