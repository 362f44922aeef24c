#include "settings/KeyAssignmentRules.h"

#include "settings/PresetLists.h"

namespace Lumora {

const char* const kBadgeIdleStyle =
    "QLabel { background: transparent; color: transparent; border-radius: 10px; padding: 0px; }";
const char* const kBadgeHeldColour = "rgba(20,160,140,220)";
const char* const kBadgeToggledColour = "rgba(10,110,95,235)";
const char* const kBadgeHeldSuffix = "（押している間）";
const char* const kBadgeToggledSuffix = "（切替中）";

namespace {

bool isKeySlot(int slot) {
    return slot >= 0 && slot < kKeySlotCount;
}

} // namespace

std::string badgeStyle(const char* colour) {
    return std::string("QLabel { background: ") + colour +
           "; color: white; border-radius: 10px; padding: 4px 10px; font-size: 8pt; "
           "font-weight: bold; }";
}

int slotOfKey(ArrowKey key) {
    switch (key) {
    case ArrowKey::Up:
        return 0;
    case ArrowKey::Down:
        return 1;
    case ArrowKey::Left:
        return 2;
    case ArrowKey::Right:
        return 3;
    case ArrowKey::Other:
        break;
    }
    return kNoSlot;
}

const char* slotLabel(int slot) {
    static const char* const kLabels[] = {"Up", "Down", "Left", "Right", "Default"};
    return slot >= 0 && slot <= kDefaultSlot ? kLabels[slot] : "Key";
}

const char* slotGlyph(int slot) {
    static const char* const kGlyphs[] = {"▲", "▼", "◀", "▶"};
    return isKeySlot(slot) ? kGlyphs[slot] : "";
}

bool isAssigned(const KeyAssignment& key) {
    return key.hasEffectPreset || key.hasSoundFxPreset;
}

KeyMode effectiveMode(const KeyAssignment& key) {
    return isAssigned(key) ? key.mode : KeyMode::Momentary;
}

std::string slotDisplayName(const KeyAssignment& key) {
    if (!key.keyName.empty()) {
        return key.keyName;
    }
    if (key.hasSoundFxPreset && !key.soundFxPresetName.empty()) {
        return key.soundFxPresetName;
    }
    if (key.hasEffectPreset && !key.effectPresetName.empty()) {
        return key.effectPresetName;
    }
    return {};
}

KeyAssignmentRules::KeyAssignmentRules(SettingsReader reader, KeyAssignmentTarget* target)
    : reader_(std::move(reader)), target_(target) {}

void KeyAssignmentRules::reset() {
    toggled_ = kNoSlot;
    held_ = kNoSlot;
    effectSnapshotPresent_ = false;
    soundFxSnapshotPresent_ = false;
    badge_ = KeyBadge{"", kBadgeIdleStyle};
}

void KeyAssignmentRules::refreshIdle() {
    if (activeSlot() != kNoSlot || !target_) {
        return;
    }
    const std::optional<AppSettings> settings = read();
    if (!settings) {
        return;
    }
    // Like a press from idle: what the default does not name comes from the voice
    // as it is now.
    if (isAssigned(settings->keyAssignments.defaultKey) && !effectSnapshotPresent_) {
        effectSnapshot_ = target_->currentEffectPreset();
        soundFxSnapshot_ = target_->currentSoundFxPreset();
        soundFxSnapshotName_ = target_->currentSoundFxPresetName();
        soundFxSnapshotOn_ = target_->currentSoundFxOn();
        effectSnapshotPresent_ = true;
        soundFxSnapshotPresent_ = true;
    }
    restoreDefault(settings);
}

std::optional<AppSettings> KeyAssignmentRules::read() const {
    return reader_ ? reader_() : std::nullopt;
}

void KeyAssignmentRules::press(int slot) {
    if (!isKeySlot(slot)) {
        return;
    }
    const std::optional<AppSettings> settings = read();
    KeyAssignment key;
    if (settings && target_) {
        key = settings->keyAssignments.keys[static_cast<size_t>(slot)];
    }
    const bool assigned = isAssigned(key);

    // The voice to come back to is the one before the first active key.
    if (toggled_ == kNoSlot && held_ == kNoSlot && assigned) {
        effectSnapshot_ = target_->currentEffectPreset();
        soundFxSnapshot_ = target_->currentSoundFxPreset();
        soundFxSnapshotName_ = target_->currentSoundFxPresetName();
        soundFxSnapshotOn_ = target_->currentSoundFxOn();
        effectSnapshotPresent_ = true;
        soundFxSnapshotPresent_ = true;
    }

    if (effectiveMode(key) == KeyMode::Momentary) {
        held_ = slot;
        if (assigned) {
            applySlot(slot, settings);
        }
    } else if (slot == toggled_) {
        toggled_ = kNoSlot;
        if (held_ == kNoSlot) {
            restoreDefault(settings);
        }
    } else {
        toggled_ = slot;
        if (held_ == kNoSlot && assigned) {
            applySlot(slot, settings);
        }
    }
    refreshBadge(settings);
}

void KeyAssignmentRules::release(int slot) {
    if (slot == kNoSlot || slot != held_) {
        return; // a toggle key's release, or a key that is no longer the held one
    }
    held_ = kNoSlot;
    const std::optional<AppSettings> settings = read();
    if (toggled_ != kNoSlot) {
        applySlot(toggled_, settings);
    } else {
        restoreDefault(settings);
    }
    refreshBadge(settings);
}

void KeyAssignmentRules::applyEffect(const SavedEffectPreset& saved) {
    EffectPreset preset = saved.preset;
    preset.active = true;
    preset.name = saved.name;
    preset.description = saved.description;
    preset.recording = saved.recording;
    target_->applyEffectPreset(preset);
}

void KeyAssignmentRules::applySlot(int slot, const std::optional<AppSettings>& settings) {
    if (!settings || !target_ || !isKeySlot(slot)) {
        return;
    }
    const KeyAssignment& key = settings->keyAssignments.keys[static_cast<size_t>(slot)];
    // A name that no longer exists is ignored.
    if (key.hasEffectPreset) {
        if (const SavedEffectPreset* p = findEffectPreset(*settings, key.effectPresetName)) {
            applyEffect(*p);
        }
    }
    if (key.hasSoundFxPreset) {
        if (const SavedSoundFxPreset* p = findSoundFxPreset(*settings, key.soundFxPresetName)) {
            target_->applyNamedSoundFxPreset(p->preset, p->name);
        }
    }
}

void KeyAssignmentRules::restoreDefault(const std::optional<AppSettings>& settings) {
    if (!target_) {
        effectSnapshotPresent_ = false;
        soundFxSnapshotPresent_ = false;
        return;
    }
    const KeyAssignment defaultKey =
        settings ? settings->keyAssignments.defaultKey : KeyAssignment{};

    const SavedEffectPreset* effect = nullptr;
    if (settings && defaultKey.hasEffectPreset) {
        effect = findEffectPreset(*settings, defaultKey.effectPresetName);
    }
    if (effect) {
        applyEffect(*effect);
    } else if (effectSnapshotPresent_) {
        target_->applyEffectPreset(effectSnapshot_);
    }
    effectSnapshotPresent_ = false;

    const SavedSoundFxPreset* fx = nullptr;
    if (settings && defaultKey.hasSoundFxPreset) {
        fx = findSoundFxPreset(*settings, defaultKey.soundFxPresetName);
    }
    if (fx) {
        target_->applyNamedSoundFxPreset(fx->preset, fx->name);
    } else if (soundFxSnapshotPresent_) {
        target_->restoreSoundFxPreset(soundFxSnapshot_, soundFxSnapshotName_, soundFxSnapshotOn_);
    }
    soundFxSnapshotPresent_ = false;
}

void KeyAssignmentRules::refreshBadge(const std::optional<AppSettings>& settings) {
    const int slot = activeSlot();
    if (slot == kNoSlot) {
        badge_ = KeyBadge{"", kBadgeIdleStyle};
        return;
    }
    std::string name;
    if (settings) {
        name = slotDisplayName(settings->keyAssignments.keys[static_cast<size_t>(slot)]);
    }
    const bool held = held_ != kNoSlot;
    badge_.text = std::string(slotGlyph(slot)) + "  " + name +
                  (held ? kBadgeHeldSuffix : kBadgeToggledSuffix);
    badge_.styleSheet = badgeStyle(held ? kBadgeHeldColour : kBadgeToggledColour);
}

} // namespace Lumora
