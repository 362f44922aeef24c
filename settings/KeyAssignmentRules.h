#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/SoundFxPreset.h"
#include "settings/AppSettings.h"

#include <functional>
#include <optional>
#include <string>

namespace Lumora {

// The keys that switch voices. The dialog maps its toolkit's key codes to these.
enum class ArrowKey { Up, Down, Left, Right, Other };

constexpr int kNoSlot = -1;
constexpr int kDefaultSlot = 4;

// Slot of an arrow key: Up 0, Down 1, Left 2, Right 3; any other key kNoSlot.
int slotOfKey(ArrowKey key);
// "Up", "Down", "Left", "Right", "Default" (slot 4), "Key" for anything else;
// English sources for the translator.
const char* slotLabel(int slot);
// "▲", "▼", "◀", "▶" for slots 0 to 3, empty otherwise.
const char* slotGlyph(int slot);

// A slot is assigned when it applies an effect preset or a sound-effect preset.
bool isAssigned(const KeyAssignment& key);
// The stored mode for an assigned slot; an unassigned slot always acts Momentary.
KeyMode effectiveMode(const KeyAssignment& key);
// The name the badge shows: keyName, else the sound-effect preset's name, else the
// effect preset's name (each only when assigned and non-empty), else empty.
std::string slotDisplayName(const KeyAssignment& key);

// What pressing a key does to the voice, supplied by the dialog (it forwards to the
// filter's chains and its own working copies).
class KeyAssignmentTarget {
public:
    virtual ~KeyAssignmentTarget() = default;
    virtual EffectPreset currentEffectPreset() const = 0;
    virtual SoundFxPreset currentSoundFxPreset() const = 0;
    virtual void applyEffectPreset(const EffectPreset& preset) = 0;
    virtual void applySoundFxPreset(const SoundFxPreset& preset) = 0;
    // The same with the name the preset is stored under (empty for a voice that
    // was on before a key), for targets that tell which voice is on.
    virtual void applyNamedSoundFxPreset(const SoundFxPreset& preset, const std::string& name) {
        (void)name;
        applySoundFxPreset(preset);
    }
    virtual std::string currentSoundFxPresetName() const { return {}; }
    // Whether the effects run now, and putting back the voice from before the
    // first key with that on/off, for targets that keep both.
    virtual bool currentSoundFxOn() const { return true; }
    virtual void restoreSoundFxPreset(const SoundFxPreset& preset, const std::string& name,
                                      bool on) {
        (void)on;
        applyNamedSoundFxPreset(preset, name);
    }
};

// The rounded label that shows the active slot.
struct KeyBadge {
    std::string text;       // empty when no slot is active
    std::string styleSheet; // transparent when no slot is active
};

extern const char* const kBadgeIdleStyle;
extern const char* const kBadgeHeldColour;    // "rgba(20,160,140,220)"
extern const char* const kBadgeToggledColour; // "rgba(10,110,95,235)"
extern const char* const kBadgeHeldSuffix;    // "（押している間）"
extern const char* const kBadgeToggledSuffix; // "（切替中）"
// The active badge's style with `colour` as its background.
std::string badgeStyle(const char* colour);

// The press and release rules of the four arrow-key slots, without widgets.
//
// A Momentary slot applies while its key is held; a Toggle slot applies from one
// press to the next. A held slot wins over a toggled one, and releasing it brings
// the toggled slot back. When the last active slot ends, the default slot applies,
// or, where it names nothing that exists, the voice from before the first key
// press (a snapshot taken when a key becomes active from the idle state).
//
// The settings are read afresh at every event, so edits on the key-assignment page
// take effect at the next press (and the default slot's through refreshIdle).
class KeyAssignmentRules {
public:
    // Reads the current settings; an empty result (no store) makes every slot
    // unassigned.
    using SettingsReader = std::function<std::optional<AppSettings>()>;

    KeyAssignmentRules() = default;
    KeyAssignmentRules(SettingsReader reader, KeyAssignmentTarget* target);

    void setReader(SettingsReader reader) { reader_ = std::move(reader); }
    // A null target (no filter) makes every slot unassigned.
    void setTarget(KeyAssignmentTarget* target) { target_ = target; }

    // The rules for slot 0 to 3; other slots are ignored.
    void press(int slot);
    void release(int slot);

    // Back to idle without applying anything (the dialog opening again).
    void reset();

    // The assignments were edited: with no slot active, the voice the default slot
    // now names is the one to hear, at once rather than after the next key.
    void refreshIdle();

    int toggledSlot() const { return toggled_; }
    int heldSlot() const { return held_; }
    // The held slot, else the toggled slot, else kNoSlot.
    int activeSlot() const { return held_ != kNoSlot ? held_ : toggled_; }
    bool lampLit(int slot) const { return slot != kNoSlot && slot == activeSlot(); }
    const KeyBadge& badge() const { return badge_; }
    bool hasEffectSnapshot() const { return effectSnapshotPresent_; }
    bool hasSoundFxSnapshot() const { return soundFxSnapshotPresent_; }

private:
    std::optional<AppSettings> read() const;
    void applySlot(int slot, const std::optional<AppSettings>& settings);
    void restoreDefault(const std::optional<AppSettings>& settings);
    void applyEffect(const SavedEffectPreset& saved);
    void refreshBadge(const std::optional<AppSettings>& settings);

    SettingsReader reader_;
    KeyAssignmentTarget* target_ = nullptr;
    int toggled_ = kNoSlot;
    int held_ = kNoSlot;
    EffectPreset effectSnapshot_;
    SoundFxPreset soundFxSnapshot_;
    std::string soundFxSnapshotName_;
    bool soundFxSnapshotOn_ = true;
    bool effectSnapshotPresent_ = false;
    bool soundFxSnapshotPresent_ = false;
    KeyBadge badge_{"", kBadgeIdleStyle};
};

} // namespace Lumora
