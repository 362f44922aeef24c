#include "ui/PresetsPanel.h"
#include "PanelTestSupport.h"
#include "settings/BuiltInPresets.h"
#include "ui/KeyAssignPresetsPanel.h"
#include "ui/Localisation.h"
#include "ui/PhraseBreaks.h"
#include "ui/PresetMetaTypes.h"
#include "ui/PresetRow.h"
#include "ui/SoundFxPresetsPanel.h"
#include "ui/TrashButton.h"

#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace Lumora {
namespace {

using PanelTest::answerNextMessageBox;

SavedEffectPreset effectPreset(const std::string& name, float gateDb) {
    SavedEffectPreset p;
    p.name = name;
    p.description = "ゲートでノイズをカット";
    p.preset.gate.enabled = true;
    p.preset.gate.thresholdDb = gateDb;
    return p;
}

struct PresetRig {
    PanelTest::TempStore store;
    PresetRig() {
        store->saveEffectPreset(effectPreset("配信", -50.0f));
        store->saveEffectPreset(effectPreset("歌枠", -60.0f));
    }
};

TEST(PresetsPanel, ListsNameDescriptionAndDateAndAppliesWithOneClick) {
    PresetRig rig;
    PresetsPanel panel(nullptr, rig.store.get());
    panel.resize(470, 650);
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    ASSERT_EQ(panel.names(), (QStringList{QStringLiteral("配信"), QStringLiteral("歌枠")}));
    PresetRow* row = panel.row(1);
    EXPECT_EQ(withoutJoiners(row->descriptionLabel()->text()),
              QStringLiteral("ゲートでノイズをカット"));
    EXPECT_FALSE(row->isCurrent());

    QSignalSpy applied(&panel, &PresetsPanel::presetApplied);
    QTest::mouseClick(row, Qt::LeftButton);
    ASSERT_EQ(applied.count(), 1);
    const auto chosen = applied.at(0).at(0).value<SavedEffectPreset>();
    EXPECT_EQ(chosen.name, "歌枠");
    EXPECT_FLOAT_EQ(chosen.preset.gate.thresholdDb, -60.0f);
    // It is now the preset the filter brings back next time, and marked so.
    EXPECT_EQ(rig.store->load().lastPresetName, "歌枠");
    EXPECT_TRUE(panel.rowNamed(QStringLiteral("歌枠"))->isCurrent());
    EXPECT_FALSE(panel.rowNamed(QStringLiteral("配信"))->isCurrent());
}

TEST(PresetsPanel, RenamingSavesUnderTheNewNameAndTheCurrentMarkFollows) {
    PresetRig rig;
    PresetsPanel panel(nullptr, rig.store.get());
    panel.applyPreset(QStringLiteral("配信"));
    panel.setNamePrompt(PanelTest::answerName(QStringLiteral("ゲーム配信")));
    ASSERT_TRUE(panel.renameWithPrompt(QStringLiteral("配信")));
    const AppSettings s = rig.store->load();
    ASSERT_EQ(s.presets.size(), 2u);
    // Renamed in place: the list keeps its order.
    EXPECT_EQ(s.presets[0].name, "ゲーム配信");
    EXPECT_EQ(s.presets[1].name, "歌枠");
    EXPECT_FLOAT_EQ(s.presets[0].preset.gate.thresholdDb, -50.0f);
    EXPECT_EQ(s.lastPresetName, "ゲーム配信");
    EXPECT_TRUE(panel.rowNamed(QStringLiteral("ゲーム配信"))->isCurrent());

    // Onto an existing name: asked first; Cancel keeps both.
    panel.setNamePrompt(PanelTest::answerName(QStringLiteral("歌枠")));
    answerNextMessageBox(QMessageBox::Cancel);
    EXPECT_FALSE(panel.renameWithPrompt(QStringLiteral("ゲーム配信")));
    EXPECT_EQ(rig.store->load().presets.size(), 2u);
}

TEST(PresetsPanel, DeletingAsksFirst) {
    applyLanguage(QStringLiteral("en"));
    PresetRig rig;
    PresetsPanel panel(nullptr, rig.store.get());
    QString text;
    answerNextMessageBox(QMessageBox::Cancel, nullptr, &text);
    panel.rowNamed(QStringLiteral("配信"))->deleteButton()->click();
    EXPECT_EQ(text, QStringLiteral("Delete the preset \"配信\"?"));
    EXPECT_EQ(panel.rowCount(), 2);
    answerNextMessageBox(QMessageBox::Ok);
    panel.rowNamed(QStringLiteral("配信"))->deleteButton()->click();
    EXPECT_EQ(panel.names(), QStringList{QStringLiteral("歌枠")});
    EXPECT_EQ(rig.store->load().presets.size(), 1u);
}

TEST(PresetsPanel, ExportWritesThePresetFileFormatAndImportReadsItBack) {
    PresetRig rig;
    PresetsPanel panel(nullptr, rig.store.get());
    const QString file = rig.store.dir.filePath(QStringLiteral("歌枠.json"));
    QString error;
    ASSERT_TRUE(panel.exportToFile(QStringLiteral("歌枠"), file, &error)) << error.toStdString();

    PanelTest::TempStore other;
    PresetsPanel fresh(nullptr, other.get());
    EXPECT_EQ(fresh.rowCount(), 0);
    ASSERT_TRUE(fresh.importFromFile(file, &error)) << error.toStdString();
    EXPECT_EQ(fresh.names(), QStringList{QStringLiteral("歌枠")});
    const auto imported = other->findEffectPreset("歌枠");
    ASSERT_TRUE(imported.has_value());
    EXPECT_FLOAT_EQ(imported->preset.gate.thresholdDb, -60.0f);
    EXPECT_FALSE(imported->savedAt.empty());

    // A sound-effect page finds nothing of its kind in that file.
    SoundFxPresetsPanel fx(nullptr, other.get());
    EXPECT_FALSE(fx.importFromFile(file, &error));
    EXPECT_FALSE(error.isEmpty());
    // Nor does anyone in a damaged file.
    QFile bad(rig.store.dir.filePath(QStringLiteral("bad.json")));
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("{\"presets\": [");
    bad.close();
    EXPECT_FALSE(fresh.importFromFile(bad.fileName(), &error));
    EXPECT_EQ(fresh.rowCount(), 1);
}

TEST(KeyAssignPresetsPanel, ApplyingASetMakesItTheCurrentAssignment) {
    PanelTest::TempStore store;
    KeyAssignmentSet mine;
    mine.keys[0] = {KeyMode::Toggle, false, true, "", "デスゲーム", "ボス"};
    store->saveKeyAssignPreset("ボス戦", mine);
    KeyAssignPresetsPanel panel(nullptr, store.get());
    ASSERT_EQ(panel.rowCount(), 2);
    EXPECT_TRUE(panel.rowNamed(QString::fromUtf8(kDefaultKeyAssignPresetName))->isCurrent());
    EXPECT_TRUE(withoutJoiners(panel.rowNamed(QStringLiteral("ボス戦"))->descriptionLabel()->text())
                    .startsWith(QStringLiteral("▲ ボス")));
    QSignalSpy applied(&panel, &KeyAssignPresetsPanel::presetApplied);
    ASSERT_TRUE(panel.applyPreset(QStringLiteral("ボス戦")));
    EXPECT_EQ(applied.count(), 1);
    EXPECT_EQ(store->load().keyAssignments.keys[0].keyName, "ボス");
    EXPECT_TRUE(panel.rowNamed(QStringLiteral("ボス戦"))->isCurrent());
    EXPECT_FALSE(panel.row(0)->exportButton()->isVisibleTo(&panel)); // no file format
}

} // namespace
} // namespace Lumora
