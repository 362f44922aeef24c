#include "ui/FxPresetDef.h"

#include "settings/BuiltInPresets.h"
#include "ui/Localisation.h"

namespace Lumora {

// The values: seven of these are the parts of the seeded key-assignment
// combinations (BuiltInParts), so a preset picked here sounds like the same
// name on an arrow key. The others are set by ear to their names.

QString FxPresetDef::name() const {
    return QString::fromUtf8(isJapanese() ? nameJa : nameEn);
}

QString FxPresetDef::description() const {
    return QString::fromUtf8(isJapanese() ? descriptionJa : descriptionEn);
}

namespace {

const char kDefaultJa[] = "デフォルト";
const char kDefaultEn[] = "Default";
const char kDefaultDescriptionJa[] = "すべてのパラメーターを初期値に戻します。";
const char kDefaultDescriptionEn[] = "Puts every parameter back to its starting value.";

template <typename Group>
FxPresetDef defaultEntry(Group SoundFxPreset::*group) {
    return {kDefaultJa, kDefaultEn, kDefaultDescriptionJa, kDefaultDescriptionEn,
            [group](SoundFxPreset& p) {
                const bool on = (p.*group).enabled;
                p.*group = Group{};
                (p.*group).enabled = on;
            }};
}

// A pitch preset sets the layers and keeps the streamer's formant-EQ bands.
void usePitch(SoundFxPreset& p, const PitchParams& pitch) {
    const auto bands = p.pitch.formantBands;
    p.pitch = pitch;
    p.pitch.formantBands = bands;
}

} // namespace

const std::vector<FxPresetDef>& pitchPresets() {
    static const std::vector<FxPresetDef> sPitchPresets = {
        defaultEntry(&SoundFxPreset::pitch),
        {"デスゲームマスター", "Death Game Master",
         "1オクターブ上と下の2レイヤーを重ねた\n威圧感たっぷりの黒幕ボイス！",
         "Two layers an octave up and an octave down,\nthe low one in front: an imposing "
         "villain!",
         [](SoundFxPreset& p) { usePitch(p, BuiltInParts::deathGamePitch()); }},
        {"コンピューターシステム", "Computer System",
         "少しずらした2つの高めの声を重ねて\n無機質なシステム音声に！",
         "Two slightly detuned, raised voices together:\na cold, machine-like system voice!",
         [](SoundFxPreset& p) { usePitch(p, BuiltInParts::computerPitch()); }},
        {"バ美肉", "Virtual Cutie", "5半音上げて明るい響きに。\n女の子らしいかわいい声に変身！",
         "Five semitones up with a brighter tone:\na higher, feminine voice!",
         // +5 semitones lifts a typical male voice (~120 Hz) into the female
         // range (~160 Hz); the shifter moves the formants up with it, and a
         // light +20 % formant tilt adds the brightness of a smaller vocal tract.
         [](SoundFxPreset& p) {
             PitchParams cutie;
             cutie.enabled = true;
             cutie.semitonesA = 5.0f;
             cutie.formantShiftA = 0.2f;
             usePitch(p, cutie);
         }},
    };
    return sPitchPresets;
}

const std::vector<FxPresetDef>& modPresets() {
    static const std::vector<FxPresetDef> sModPresets = {
        defaultEntry(&SoundFxPreset::mod),
        {"バックコーラス", "Backing Chorus",
         "広がり感のあるコーラス。\n複数人が歌っているような厚みが出る！",
         "A wide chorus:\nsounds like several people singing together!",
         // Slow (0.8 Hz) and fairly deep so the voices drift apart like real
         // singers; half wet keeps the lead voice in front.
         [](SoundFxPreset& p) { p.mod = ModParams{true, kModChorus, 0.8f, 0.6f, 0.2f, 0.5f}; }},
        {"宇宙人", "Alien", "うねりの強いフランジャーで\n異星人・機械生命体のような声に！",
         "A strongly swirling flanger:\nthe voice of an alien or a machine life form!",
         // High feedback gives the metallic resonance, a slow sweep the swirl.
         [](SoundFxPreset& p) { p.mod = ModParams{true, kModFlanger, 0.4f, 0.9f, 0.75f, 0.6f}; }},
        {"扇風機", "Electric Fan",
         "速いトレモロで音量をブルブル震わせる。\n扇風機前で話しているような効果に！",
         "A fast tremolo makes the volume shudder:\nlike talking into an electric fan!",
         // A fan's blades chop the voice some eight to ten times a second.
         [](SoundFxPreset& p) { p.mod = ModParams{true, kModTremolo, 9.0f, 0.85f, 0.0f, 1.0f}; }},
    };
    return sModPresets;
}

const std::vector<FxPresetDef>& radioPresets() {
    static const std::vector<FxPresetDef> sRadioPresets = {
        defaultEntry(&SoundFxPreset::radio),
        {"AM ラジオ", "AM Radio",
         "AMラジオの狭い帯域と歪みを再現。\nざらつきのある古いラジオ感に！",
         "The narrow band and distortion of AM radio:\na gritty old-radio sound!",
         // AM speech: roughly 500 Hz to 2.5 kHz and an overdriven old set.
         [](SoundFxPreset& p) {
             p.radio = RadioParams{true, 500.0f, 2500.0f, 0.4f};
         }},
        {"FM ラジオ", "FM Radio", "FMラジオの広い帯域と\nクリアなサウンドを再現！",
         "The wide band and clear sound\nof FM radio!",
         [](SoundFxPreset& p) { p.radio = BuiltInParts::fmRadio(); }},
        {"ロケットからのメッセージ", "Message from a Rocket",
         "宇宙通信のようなノイジーな声。\n高域カットなしで強い歪みが特徴！",
         "A noisy voice like a transmission from space:\nno high cut, heavy distortion!",
         // The high cut at its top (8 kHz, above the voice's harmonics) lets
         // the distortion's harsh overtones through.
         [](SoundFxPreset& p) {
             p.radio = RadioParams{true, 400.0f, 8000.0f, 0.85f};
         }},
    };
    return sRadioPresets;
}

const std::vector<FxPresetDef>& delayPresets() {
    static const std::vector<FxPresetDef> sDelayPresets = {
        defaultEntry(&SoundFxPreset::delay),
        {"歌枠", "Singing Stream",
         "歌配信向けの短いスラップバックディレイ。\n声に自然な奥行きが加わる！",
         "A short slapback delay for singing streams:\nadds natural depth to the voice!",
         [](SoundFxPreset& p) { p.delay = BuiltInParts::singingDelay(); }},
        {"特撮ヒーロー", "Tokusatsu Hero", "変身シーンや決め台詞に合う\nちょうどいいエコー感！",
         "Just the right echo for transformation scenes\nand catchphrases!",
         [](SoundFxPreset& p) { p.delay = BuiltInParts::heroDelay(); }},
        {"やまびこ", "Mountain Echo", "山の中でやまびこが返ってくる\nロングディレイ！",
         "A long delay:\nyour voice comes back from the mountains!",
         // Half a second apart (a wall some 90 m away), each return a little
         // quieter than the one before.
         [](SoundFxPreset& p) {
             p.delay = DelayParams{true, 520.0f, 0.45f, 0.4f};
         }},
    };
    return sDelayPresets;
}

const std::vector<FxPresetDef>& reverbPresets() {
    static const std::vector<FxPresetDef> sReverbPresets = {
        defaultEntry(&SoundFxPreset::reverb),
        {"歌枠リバーブ", "Singing Reverb",
         "歌配信向けの控えめなリバーブ。\n声を邪魔せずふわっと空間を演出！",
         "A discreet reverb for singing streams:\na soft space that stays out of the way!",
         [](SoundFxPreset& p) { p.reverb = BuiltInParts::singingReverb(); }},
        {"お風呂", "Bathroom", "お風呂・タイル部屋のような\n響き感たっぷりのリバーブ！",
         "A reverb full of ring,\nlike a bathroom or a tiled room!",
         // A small hard room: medium size, hardly any damping (tiles reflect
         // the highs), plenty of wet signal, no ducking.
         [](SoundFxPreset& p) {
             p.reverb = ReverbParams{true, 0.72f, 0.12f, 0.45f, 100.0f, 0.0f};
         }},
        {"心の中のセリフ", "Inner Voice",
         "高域を削ったダークな残響で\n内なる声・回想シーンに最適！",
         "A dark reverb with the highs taken off:\nperfect for inner voices and flashbacks!",
         [](SoundFxPreset& p) { p.reverb = BuiltInParts::innerVoiceReverb(); }},
    };
    return sReverbPresets;
}

const std::vector<FxPresetDef>& fxPresetsFor(int effectCode) {
    static const std::vector<FxPresetDef> none;
    switch (effectCode) {
    case kEffectPitch:
        return pitchPresets();
    case kEffectModulation:
        return modPresets();
    case kEffectRadio:
        return radioPresets();
    case kEffectDelay:
        return delayPresets();
    case kEffectReverb:
        return reverbPresets();
    default:
        return none;
    }
}

} // namespace Lumora
