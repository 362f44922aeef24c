// The key-assignment page: what it edits is in the settings file at once,
// and its presets of assignments. (What the keys then do to the voice is
// tested through the dialog, in KeyVoicesTest.)

#include "ui/KeyAssignPanel.h"
#include "PanelTestSupport.h"
#include "settings/BuiltInPresets.h"
#include "settings/KeyAssignmentRules.h"
#include "ui/KeyCap.h"

#include <QComboBox>
#include <QFrame>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

// Chooses an entry the way a click in the list does.
void choose(QComboBox* box, const QString& text) {
    const int index = text.isEmpty() ? 0 : box->findText(text);
    ASSERT_GE(index, 0) << text.toStdString();
    box->setCurrentIndex(index);
    emit box->activated(index);
}

struct KeyRig {
    PanelTest::TempStore store;
    std::unique_ptr<KeyAssignPanel> panel;

    KeyRig() {
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

TEST(KeyAssignPanel, ChoosersShowTheSlotsPresetsAndAMissingOneAsMissing) {
    KeyRig rig;
    // The seeded slot 0 shows its built-in combination.
    rig.panel->selectSlot(0);
    EXPECT_EQ(rig.panel->soundFxChooser()->currentText(),
              QString::fromUtf8("コンピューターシステム＋FMラジオ"));
    EXPECT_TRUE(rig.panel->effectChooser()->currentData().toString().isEmpty()); // (none)
    EXPECT_TRUE(rig.panel->momentaryChoice()->isChecked());
    // A preset that is gone stays visible as missing.
    rig.store->deleteSoundFxPreset("デスゲーム");
    rig.panel->reload();
    rig.panel->selectSlot(1);
    EXPECT_TRUE(rig.panel->soundFxChooser()->currentText().contains(QStringLiteral("デスゲーム")));
    EXPECT_TRUE(rig.panel->soundFxChooser()->currentText().startsWith(QStringLiteral("⚠")));
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
