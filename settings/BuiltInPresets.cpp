#include "settings/BuiltInPresets.h"

#include "settings/PresetLists.h"

#include <algorithm>

namespace Lumora {

namespace {

// Spelled out in UTF-8 and checked, so that a compiler reading the source in
// another code page fails here instead of seeding under a garbled name.
constexpr char kDefaultName[] = "デフォルト十字キー";
static_assert(sizeof(kDefaultName) == 9 * 3 + 1, "compile the sources as UTF-8 (/utf-8)");

SavedSoundFxPreset named(const char* name) {
    SavedSoundFxPreset p;
    p.name = name;
    return p;
}

// Two shifted layers, all wet.
PitchParams twoLayers(float semitonesA, float formantA, float semitonesB, float formantB,
                      float mixAB) {
    PitchParams p;
    p.enabled = true;
    p.semitonesA = semitonesA;
    p.formantShiftA = formantA;
    p.wetMix = 1.0f;
    p.layerBEnabled = true;
    p.semitonesB = semitonesB;
    p.formantShiftB = formantB;
    p.mixAB = mixAB;
    return p;
}

} // namespace

const char* const kDefaultKeyAssignPresetName = kDefaultName;

namespace BuiltInParts {

PitchParams computerPitch() {
    return twoLayers(4.7f, 0.31f, 3.4f, 0.35f, 0.5f);
}

RadioParams fmRadio() {
    return RadioParams{true, 233.0f, 8000.0f, 0.09f};
}

PitchParams deathGamePitch() {
    return twoLayers(12.0f, 0.3f, -12.0f, -0.34f, 0.66f);
}

DelayParams singingDelay() {
    return DelayParams{true, 180.0f, 0.1f, 0.05f};
}

ReverbParams singingReverb() {
    return ReverbParams{true, 0.79f, 0.31f, 0.05f, 325.0f, 0.28f};
}

DelayParams heroDelay() {
    return DelayParams{true, 212.0f, 0.33f, 0.2f};
}

ReverbParams innerVoiceReverb() {
    return ReverbParams{true, 0.9f, 0.67f, 0.22f, 1469.0f, 0.0f};
}

} // namespace BuiltInParts

// Each voice's output gain brings its speech loudness back to the dry voice's
// (EBU R 128 on recorded speech; the table is in docs/voices.md), so that a
// switch of voice on air changes the voice and not the volume.
std::vector<SavedSoundFxPreset> builtInSoundFxPresets() {
    using namespace BuiltInParts;
    std::vector<SavedSoundFxPreset> list;
    SavedSoundFxPreset computer = named("コンピューターシステム＋FMラジオ");
    computer.preset.pitch = computerPitch();
    computer.preset.radio = fmRadio();
    computer.preset.outputGainDb = 4.5f;
    list.push_back(computer);

    SavedSoundFxPreset deathGame = named("デスゲーム");
    deathGame.preset.pitch = deathGamePitch();
    deathGame.preset.outputGainDb = -3.7f;
    list.push_back(deathGame);

    SavedSoundFxPreset singing = named("ディレイ歌枠＋歌枠リバーブ");
    singing.preset.reverb = singingReverb();
    singing.preset.delay = singingDelay();
    singing.preset.outputGainDb = 0.9f;
    list.push_back(singing);

    SavedSoundFxPreset hero = named("ディレイ特撮ヒーロー＋リバーブ心の中のセリフ");
    hero.preset.reverb = innerVoiceReverb();
    hero.preset.delay = heroDelay();
    hero.preset.outputGainDb = 4.1f;
    list.push_back(hero);
    return list;
}

KeyAssignmentSet builtInKeyAssignments() {
    static constexpr KeyMode kModes[kKeySlotCount] = {KeyMode::Momentary, KeyMode::Momentary,
                                                      KeyMode::Toggle, KeyMode::Momentary};
    const std::vector<SavedSoundFxPreset> combos = builtInSoundFxPresets();
    KeyAssignmentSet set;
    for (size_t i = 0; i < set.keys.size(); ++i) {
        KeyAssignment& key = set.keys[i];
        key.mode = kModes[i];
        key.hasSoundFxPreset = true;
        key.soundFxPresetName = combos[i].name;
    }
    return set;
}

bool seedBuiltIns(AppSettings& s, const std::string& savedAt) {
    // Deleting the built-in assignment brings the built-ins back, on purpose; a
    // renamed one is still the built-in, and seeding again would reset the
    // user's keys and their edited voices.
    const bool present = std::any_of(s.keyAssignPresets.begin(), s.keyAssignPresets.end(),
                                     [](const KeyAssignPreset& p) {
                                         return p.builtIn || p.name == kDefaultKeyAssignPresetName;
                                     });
    if (present) {
        return false;
    }
    for (SavedSoundFxPreset preset : builtInSoundFxPresets()) {
        preset.savedAt = savedAt;
        putSoundFxPreset(s, std::move(preset));
    }
    s.keyAssignments = builtInKeyAssignments();
    putKeyAssignPreset(
        s, KeyAssignPreset{kDefaultKeyAssignPresetName, savedAt, s.keyAssignments, true});
    return true;
}

} // namespace Lumora
