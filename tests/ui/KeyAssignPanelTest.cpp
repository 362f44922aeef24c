// The arrow keys end to end: the key-assignment page edits the settings, the
// rules read them at every press and drive a filter state's real chains.

#include "ui/KeyAssignPanel.h"
#include "PanelTestSupport.h"
#include "engine/FilterEngine.h"
#include "settings/BuiltInPresets.h"
#include "settings/KeyAssignmentRules.h"
#include "ui/KeyBadgeLabel.h"
#include "ui/KeyCap.h"
#include "ui/Localisation.h"

#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

// What the dialog does with a key's preset: hand it to the filter's chains.
class FilterTarget : public KeyAssignmentTarget {
public:
    explicit FilterTarget(FilterEngine& state) : state_(state) {}
    EffectPreset currentEffectPreset() const override { return state_.chain().getParameters(); }
    SoundFxPreset currentSoundFxPreset() const override { return state_.effects().getParameters(); }
    void applyEffectPreset(const EffectPreset& p) override { state_.applyEffectPreset(p); }
    void applySoundFxPreset(const SoundFxPreset& p) override { state_.applySoundFxPreset(p); }

private:
    FilterEngine& state_;
};

// Chooses an entry the way a click in the list does.
void choose(QComboBox* box, const QString& text) {
    const int index = text.isEmpty() ? 0 : box->findText(text);
    ASSERT_GE(index, 0) << text.toStdString();
    box->setCurrentIndex(index);
    emit box->activated(index);
}

// Level change of an 8 kHz tone through the filter's effects chain, in dB.
double tone8k(FilterEngine& state) {
    std::vector<float> in = PanelTest::sine(8000.0, 9600, 0.3f);
    std::vector<float> out = in;
    for (size_t at = 0; at < out.size(); at += 480) {
        float* planes[1] = {out.data() + at};
        state.processAudio(planes, 1, 480);
    }
    return PanelTest::rmsDb(out, 4800) - PanelTest::rmsDb(in, 4800);
}

SoundFxPreset busyDelay() {
    SoundFxPreset p;
    p.delay = DelayParams{true, 500.0f, 0.5f, 0.5f};
    return p;
}

struct KeyRig {
    PanelTest::TempStore store;
    FilterEngine state;
    FilterTarget target{state};
    KeyAssignmentRules rules{[this] { return std::optional<AppSettings>(store->load()); }, &target};
    std::unique_ptr<KeyAssignPanel> panel;

    KeyRig() {
        state.prepare(48000.0);
        state.applySoundFxPreset(SoundFxPreset{}); // the voice before any key
        SavedSoundFxPreset radio;
        radio.name = "無線";
        radio.preset.radio = RadioParams{true, 300.0f, 3400.0f, 0.0f};
        store->saveSoundFxPreset(radio);
        SavedSoundFxPreset echo;
        echo.name = "エコー";
        echo.preset.delay = DelayParams{true, 300.0f, 0.4f, 0.4f};
        store->saveSoundFxPreset(echo);
        SavedSoundFxPreset room;
        room.name = "いつもの部屋";
        room.preset.reverb = ReverbParams{true, 0.3f, 0.5f, 0.1f, 200.0f, 0.0f};
        store->saveSoundFxPreset(room);
        panel = std::make_unique<KeyAssignPanel>(nullptr, store.get());
    }

    // Sets one slot through the page: its sound-effect preset and trigger.
    void assign(int slot, const QString& fx, KeyMode mode) {
        panel->selectSlot(slot);
        choose(panel->soundFxChooser(), fx);
        (mode == KeyMode::Toggle ? panel->toggleChoice() : panel->momentaryChoice())->click();
    }
    const SoundFxPreset fx() const { return state.effects().getParameters(); }
};

TEST(KeyAssignPanel, EditsOnThePageAreSavedAtOnce) {
    KeyRig rig;
    QSignalSpy changed(rig.panel.get(), &KeyAssignPanel::assignmentsChanged);
    rig.assign(3, QStringLiteral("エコー"), KeyMode::Toggle);
    rig.panel->keyNameEdit()->setText(QStringLiteral("やまびこ"));
    emit rig.panel->keyNameEdit()->textEdited(QStringLiteral("やまびこ"));
    emit rig.panel->keyNameEdit()->editingFinished();
    choose(rig.panel->defaultSoundFxChooser(), QStringLiteral("いつもの部屋"));
    EXPECT_GE(changed.count(), 3);
    EXPECT_TRUE(changed.last().at(0).toBool());
    const AppSettings s = rig.store->load();
    const KeyAssignment& right = s.keyAssignments.keys[3];
    EXPECT_TRUE(right.hasSoundFxPreset);
    EXPECT_EQ(right.soundFxPresetName, "エコー");
    EXPECT_EQ(right.mode, KeyMode::Toggle);
    EXPECT_EQ(right.keyName, "やまびこ");
    EXPECT_TRUE(s.keyAssignments.defaultKey.hasSoundFxPreset);
    EXPECT_EQ(s.keyAssignments.defaultKey.soundFxPresetName, "いつもの部屋");
    EXPECT_EQ(rig.panel->keyCap(3)->name(), QStringLiteral("やまびこ"));
    choose(rig.panel->soundFxChooser(), QString()); // "(none)"
    EXPECT_FALSE(rig.store->load().keyAssignments.keys[3].hasSoundFxPreset);
}

TEST(KeyAssignPanel, PlateCardsAndChoosersAreNamedAndFilled) {
    applyLanguage(QStringLiteral("ja"));
    KeyRig rig;
    EXPECT_EQ(rig.panel->crossPlate()->objectName(), QStringLiteral("crossPlate"));
    EXPECT_EQ(rig.panel->settingsCard()->objectName(), QStringLiteral("settingsCard"));
    EXPECT_EQ(rig.panel->keyCap(kDefaultSlot)->name(), QStringLiteral("デフォルト"));
    EXPECT_EQ(rig.panel->keyNameEdit()->placeholderText(), QStringLiteral("例: 歌框モード"));
    EXPECT_EQ(rig.panel->toggleChoice()->text(), QStringLiteral("🔁 切り替え"));
    EXPECT_EQ(rig.panel->momentaryChoice()->text(), QStringLiteral("◎ 押した時だけ"));
    // The seeded slot 0 shows its built-in combination.
    rig.panel->selectSlot(0);
    EXPECT_EQ(rig.panel->soundFxChooser()->currentText(),
              QString::fromUtf8("コンピューターシステム＋FMラジオ"));
    EXPECT_EQ(rig.panel->effectChooser()->currentText(), QStringLiteral("(none)"));
    EXPECT_TRUE(rig.panel->momentaryChoice()->isChecked());
    // A preset that is gone stays visible as missing.
    rig.store->deleteSoundFxPreset("デスゲーム");
    rig.panel->reload();
    rig.panel->selectSlot(1);
    EXPECT_TRUE(rig.panel->soundFxChooser()->currentText().contains(QStringLiteral("デスゲーム")));
    EXPECT_TRUE(rig.panel->soundFxChooser()->currentText().startsWith(QStringLiteral("⚠")));
}

TEST(KeyAssignPanel, MomentaryKeyAppliesItsSoundFxOnlyWhileHeld) {
    KeyRig rig;
    rig.assign(0, QStringLiteral("無線"), KeyMode::Momentary);
    EXPECT_NEAR(tone8k(rig.state), 0.0, 0.1); // nothing on yet
    rig.rules.press(0);
    EXPECT_TRUE(rig.fx().radio.enabled);
    EXPECT_LT(tone8k(rig.state), -15.0); // the radio's 3.4 kHz high cut
    rig.rules.release(0);
    EXPECT_FALSE(rig.fx().anyEnabled()); // the voice from before the press
    EXPECT_NEAR(tone8k(rig.state), 0.0, 0.1);
    EXPECT_EQ(rig.rules.activeSlot(), kNoSlot);
}

TEST(KeyAssignPanel, ToggleKeyAppliesUntilPressedAgain) {
    KeyRig rig;
    rig.assign(2, QStringLiteral("エコー"), KeyMode::Toggle);
    rig.rules.press(2);
    rig.rules.release(2);
    EXPECT_TRUE(rig.fx().delay.enabled);
    EXPECT_EQ(rig.rules.toggledSlot(), 2);
    rig.rules.press(2);
    rig.rules.release(2);
    EXPECT_FALSE(rig.fx().delay.enabled);
    EXPECT_EQ(rig.rules.activeSlot(), kNoSlot);
}

TEST(KeyAssignPanel, MomentaryInsideToggleShowsTheHeldBadgeAndGivesTheToggleBack) {
    KeyRig rig;
    rig.assign(2, QStringLiteral("エコー"), KeyMode::Toggle);
    rig.assign(0, QStringLiteral("無線"), KeyMode::Momentary);
    KeyBadgeLabel badge(nullptr);

    rig.rules.press(2);
    rig.rules.release(2);
    badge.showBadge(rig.rules.badge());
    rig.panel->setLamps(rig.rules.activeSlot());
    EXPECT_TRUE(badge.text().endsWith(QString::fromUtf8(kBadgeToggledSuffix)));
    EXPECT_TRUE(rig.panel->lampLit(2));

    rig.rules.press(0);
    badge.showBadge(rig.rules.badge());
    rig.panel->setLamps(rig.rules.activeSlot());
    EXPECT_TRUE(rig.fx().radio.enabled);
    EXPECT_FALSE(rig.fx().delay.enabled);
    EXPECT_EQ(badge.text(), QStringLiteral("▲  無線") + QString::fromUtf8(kBadgeHeldSuffix));
    EXPECT_TRUE(badge.styleSheet().contains(QLatin1String(kBadgeHeldColour)));
    EXPECT_TRUE(rig.panel->lampLit(0));
    EXPECT_FALSE(rig.panel->lampLit(2));

    rig.rules.release(0);
    badge.showBadge(rig.rules.badge());
    rig.panel->setLamps(rig.rules.activeSlot());
    EXPECT_TRUE(rig.fx().delay.enabled); // the toggled slot again
    EXPECT_FALSE(rig.fx().radio.enabled);
    EXPECT_TRUE(badge.styleSheet().contains(QLatin1String(kBadgeToggledColour)));
    EXPECT_TRUE(rig.panel->lampLit(2));

    rig.rules.press(2);
    badge.showBadge(rig.rules.badge());
    EXPECT_TRUE(badge.text().isEmpty());
    EXPECT_EQ(badge.styleSheet(), QString::fromUtf8(kBadgeIdleStyle));
}

TEST(KeyAssignPanel, AnUnassignedKeyAppliesNothingAndItsReleaseRestoresTheDefault) {
    KeyRig rig;
    rig.panel->selectSlot(1);
    choose(rig.panel->soundFxChooser(), QString()); // slot 1 now unassigned
    choose(rig.panel->defaultSoundFxChooser(), QStringLiteral("いつもの部屋"));
    rig.state.applySoundFxPreset(busyDelay());
    rig.rules.press(1);
    EXPECT_EQ(rig.rules.heldSlot(), 1);
    EXPECT_TRUE(rig.fx().delay.enabled); // nothing applied
    EXPECT_FALSE(rig.fx().reverb.enabled);
    rig.rules.release(1);
    EXPECT_TRUE(rig.fx().reverb.enabled); // the default slot's preset
    EXPECT_FALSE(rig.fx().delay.enabled);
    EXPECT_FLOAT_EQ(rig.fx().reverb.roomSize, 0.3f);
}

TEST(KeyAssignPanel, ArrowKeysOnThePagePointAtTheirKey) {
    KeyRig rig;
    rig.panel->highlightSlot(3);
    EXPECT_EQ(rig.panel->selectedSlot(), 3);
    EXPECT_TRUE(rig.panel->keyCap(3)->isSelected());
    EXPECT_TRUE(rig.panel->keyCap(3)->isFlashing());
    QTest::qWait(300);
    EXPECT_FALSE(rig.panel->keyCap(3)->isFlashing());
    QTest::mouseClick(rig.panel->keyCap(1), Qt::LeftButton);
    EXPECT_EQ(rig.panel->selectedSlot(), 1);
}

TEST(KeyAssignPanel, AssignmentsAreSavedAsAndLoadedFromPresets) {
    KeyRig rig;
    rig.assign(0, QStringLiteral("無線"), KeyMode::Toggle);
    rig.panel->setNamePrompt(PanelTest::answerName(QStringLiteral("雑談用")));
    QSignalSpy saved(rig.panel.get(), &KeyAssignPanel::presetSaved);
    ASSERT_TRUE(rig.panel->saveAssignPreset());
    EXPECT_EQ(saved.count(), 1);
    ASSERT_TRUE(rig.panel->loadAssignPreset(QString::fromUtf8(kDefaultKeyAssignPresetName)));
    EXPECT_EQ(rig.store->load().keyAssignments.keys[0].soundFxPresetName,
              "コンピューターシステム＋FMラジオ");
    ASSERT_TRUE(rig.panel->loadAssignPreset(QStringLiteral("雑談用")));
    EXPECT_EQ(rig.panel->assignments().keys[0].soundFxPresetName, "無線");
    EXPECT_EQ(rig.store->load().keyAssignments.keys[0].mode, KeyMode::Toggle);
    EXPECT_FALSE(rig.panel->loadAssignPreset(QStringLiteral("ない")));
}

} // namespace
} // namespace Lumora
