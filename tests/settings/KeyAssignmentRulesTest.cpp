// The arrow-key rules driven by plain sequences of key events, with a target
// that records what reached the chains: the orders of events a user rarely
// makes (a toggle while a key is held, defaults edited mid-way). The common
// ones are tested through the dialog on a real engine, in KeyVoicesTest.

#include "settings/KeyAssignmentRules.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace Lumora;

namespace {

// The chains as the dialog would expose them: the current presets, and a log of
// every application as "fx:<name>" / "effect:<name>".
class RecordingTarget : public KeyAssignmentTarget {
public:
    EffectPreset effect;
    SoundFxPreset fx;
    std::string fxName = "start";
    std::vector<std::string> log;

    EffectPreset currentEffectPreset() const override { return effect; }
    SoundFxPreset currentSoundFxPreset() const override {
        SoundFxPreset p = fx;
        p.delay.timeMs = static_cast<float>(fxName.size()); // carries the name's identity
        return p;
    }
    void applyEffectPreset(const EffectPreset& p) override {
        effect = p;
        log.push_back("effect:" + (p.name.empty() ? std::string("snapshot") : p.name) +
                      (p.active ? "" : "(inactive)"));
    }
    void applySoundFxPreset(const SoundFxPreset& p) override {
        fx = p;
        log.push_back("fx:" + std::to_string(static_cast<int>(p.delay.timeMs)));
    }
};

// Sound-effect presets are told apart by their delay time: "fx:<ms>".
SavedSoundFxPreset fxPreset(const std::string& name, float marker) {
    SavedSoundFxPreset p;
    p.name = name;
    p.preset.delay.timeMs = marker;
    return p;
}

SavedEffectPreset effectPreset(const std::string& name) {
    SavedEffectPreset p;
    p.name = name;
    p.preset.gate.enabled = true;
    return p;
}

AppSettings settings() {
    AppSettings s;
    s.soundFxPresets = {fxPreset("robot", 100), fxPreset("cave", 200), fxPreset("radio", 300)};
    s.presets = {effectPreset("talk"), effectPreset("sing")};
    KeyAssignment& up = s.keyAssignments.keys[0];
    up = {KeyMode::Momentary, false, true, "", "robot", ""};
    KeyAssignment& down = s.keyAssignments.keys[1];
    down = {KeyMode::Toggle, true, true, "sing", "cave", "歌枠"};
    // Left stays unassigned (its stored mode says Toggle, which does not count).
    s.keyAssignments.keys[2].mode = KeyMode::Toggle;
    KeyAssignment& right = s.keyAssignments.keys[3];
    right = {KeyMode::Toggle, false, true, "", "radio", ""};
    return s;
}

struct Fixture {
    AppSettings stored = settings();
    RecordingTarget target;
    KeyAssignmentRules rules{[this] { return std::optional<AppSettings>(stored); }, &target};
};

const std::string kUp = "▲", kLeft = "◀";

} // namespace

TEST(KeyAssignmentRules, PressingTheToggledKeyAgainRestoresTheDefaultSlot) {
    Fixture f;
    f.stored.keyAssignments.defaultKey = {KeyMode::Toggle, true, true, "talk", "cave", ""};
    f.rules.press(3);
    f.rules.press(3);
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:300", "effect:talk", "fx:200"}));
    // A default naming a preset that no longer exists falls back to the snapshot.
    f.stored.keyAssignments.defaultKey = {KeyMode::Toggle, true, true, "gone", "gone", ""};
    f.target.log.clear();
    f.rules.press(3);
    f.rules.press(3);
    // The snapshot holds "talk" and the sound effects from before the press.
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:300", "effect:talk", "fx:5"}));
}

TEST(KeyAssignmentRules, TogglingWhileHeldWaitsForTheRelease) {
    Fixture f;
    f.rules.press(0); // hold robot
    f.rules.press(3); // toggle radio: not applied while robot is held
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:100"}));
    EXPECT_EQ(f.rules.badge().text, kUp + "  robot（押している間）");
    f.rules.press(3); // untoggle while held: nothing restored yet
    EXPECT_EQ(f.target.log.size(), 1u);
    f.rules.release(0); // nothing toggled: the voice from before comes back
    EXPECT_EQ(f.target.log,
              (std::vector<std::string>{"fx:100", "effect:snapshot(inactive)", "fx:5"}));
}

TEST(KeyAssignmentRules, AnUnassignedKeyIsHeldButAppliesNothing) {
    Fixture f;
    f.rules.press(2); // stored as Toggle, but unassigned keys always act momentary
    EXPECT_EQ(f.rules.heldSlot(), 2);
    EXPECT_EQ(f.rules.toggledSlot(), kNoSlot);
    EXPECT_EQ(f.rules.badge().text, kLeft + "  （押している間）");
    EXPECT_TRUE(f.target.log.empty());
    EXPECT_FALSE(f.rules.hasEffectSnapshot()); // no snapshot from an unassigned key
    f.rules.release(2);
    EXPECT_TRUE(f.target.log.empty()); // nothing to restore, no default
    EXPECT_EQ(f.rules.activeSlot(), kNoSlot);

    // With a toggle active, releasing the unassigned key re-applies the toggle.
    f.rules.press(1);
    f.rules.press(2);
    EXPECT_EQ(f.rules.badge().text, kLeft + "  （押している間）");
    f.rules.release(2);
    EXPECT_EQ(f.target.log,
              (std::vector<std::string>{"effect:sing", "fx:200", "effect:sing", "fx:200"}));

    // With a default slot and nothing toggled, releasing it restores the default.
    f.rules.press(1);
    f.stored.keyAssignments.defaultKey = {KeyMode::Toggle, false, true, "", "robot", ""};
    f.target.log.clear();
    f.rules.press(2);
    f.rules.release(2);
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:100"}));
}

TEST(KeyAssignmentRules, TheModeIsReadAtEachPress) {
    Fixture f;
    f.rules.press(0);
    f.rules.release(0);
    f.stored.keyAssignments.keys[0].mode = KeyMode::Toggle;
    f.rules.press(0);
    f.rules.release(0);
    EXPECT_EQ(f.rules.toggledSlot(), 0);
    EXPECT_EQ(f.rules.badge().text, kUp + "  robot（切替中）");
}

TEST(KeyAssignmentRules, BadgeNamesFallBackInOrder) {
    EXPECT_EQ(slotDisplayName({KeyMode::Toggle, true, true, "e", "s", "k"}), "k");
    EXPECT_EQ(slotDisplayName({KeyMode::Toggle, true, true, "e", "s", ""}), "s");
    EXPECT_EQ(slotDisplayName({KeyMode::Toggle, true, true, "e", "", ""}), "e");
    EXPECT_EQ(slotDisplayName({KeyMode::Toggle, true, false, "e", "s", ""}), "e");
    EXPECT_EQ(slotDisplayName({KeyMode::Toggle, false, false, "e", "s", ""}), ""); // unassigned
    EXPECT_EQ(effectiveMode(KeyAssignment{KeyMode::Toggle, false, false, "", "", "x"}),
              KeyMode::Momentary);
}

TEST(KeyAssignmentRules, ResetForgetsEverythingWithoutApplying) {
    Fixture f;
    f.rules.press(3);
    f.rules.press(0);
    f.rules.reset();
    EXPECT_EQ(f.rules.activeSlot(), kNoSlot);
    EXPECT_FALSE(f.rules.hasSoundFxSnapshot());
    EXPECT_EQ(f.rules.badge().text, "");
    EXPECT_EQ(f.target.log.size(), 2u);
    f.rules.press(7);
    f.rules.release(-1);
    EXPECT_EQ(f.rules.activeSlot(), kNoSlot);
}

TEST(KeyAssignmentRules, EditingTheDefaultSlotAppliesItAtOnceOnlyWhenIdle) {
    Fixture f;
    f.rules.refreshIdle(); // no default slot: nothing to apply
    EXPECT_TRUE(f.target.log.empty());
    f.stored.keyAssignments.defaultKey = {KeyMode::Toggle, false, true, "", "cave", ""};
    f.rules.refreshIdle();
    // The effect half is not named: the voice's own comes back unchanged.
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"effect:snapshot(inactive)", "fx:200"}));
    EXPECT_FALSE(f.rules.hasSoundFxSnapshot());

    // While a key is active the edit waits for the key to end.
    f.target.log.clear();
    f.rules.press(3);
    f.stored.keyAssignments.defaultKey = {KeyMode::Toggle, true, true, "talk", "robot", ""};
    f.rules.refreshIdle();
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:300"}));
    f.rules.press(3);
    EXPECT_EQ(f.target.log, (std::vector<std::string>{"fx:300", "effect:talk", "fx:100"}));

    // Without a target or settings nothing happens.
    KeyAssignmentRules detached{[] { return std::optional<AppSettings>(); }, &f.target};
    f.target.log.clear();
    detached.refreshIdle();
    EXPECT_TRUE(f.target.log.empty());
}
