// Arrow keys switching voices in the open dialog, with the real chains of a
// filter state and the built-in key assignments of a fresh settings folder.
#include "module/ObsFilterState.h"
#include "settings/PresetFile.h"
#include "ui/EffectPanel.h"
#include "ui/KeyAssignPanel.h"
#include "ui/Knob.h"
#include "ui/Localisation.h"
#include "ui/SoundFxPanel.h"
#include "ui/WizardDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>

namespace Lumora {
namespace {

struct KeyVoices : ::testing::Test {
    std::string folder;
    std::unique_ptr<ObsFilterState> state = std::make_unique<ObsFilterState>();
    std::unique_ptr<WizardDialog> dialog;

    void SetUp() override {
        char pattern[] = "/tmp/lumora-keys-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        folder = pattern;
        state->analyser = makeAnalyser();
        state->analyser->prepare(48000.0);
        state->chain.prepare(48000.0, 4800);
        state->effects.prepare(48000.0, 4800);
        state->ownedStore = std::make_unique<SettingsStore>(folder);
        state->store = state->ownedStore.get();
        (void)state->store->load(); // seeds the four built-in voices on the arrow keys
        applyLanguage(QStringLiteral("ja"));
        dialog = std::make_unique<WizardDialog>(nullptr, state.get());
        dialog->show();
        dialog->tickTimer()->stop();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    void TearDown() override {
        dialog.reset();
        std::filesystem::remove_all(folder);
    }

    void key(QEvent::Type type, int k) {
        QWidget* target = dialog->focusWidget() ? dialog->focusWidget() : dialog.get();
        QKeyEvent event(type, k, Qt::NoModifier);
        QApplication::sendEvent(target, &event);
    }
    void press(int k) { key(QEvent::KeyPress, k); }
    void release(int k) { key(QEvent::KeyRelease, k); }
    SoundFxPreset fx() const { return state->effects.getParameters(); }
    QString badge() const {
        auto* label = dialog->findChild<QLabel*>(QStringLiteral("keyBadge"));
        return label ? label->text() : QStringLiteral("<no badge>");
    }
};

} // namespace

TEST_F(KeyVoices, MomentaryKeyAppliesItsVoiceOnlyWhileHeld) {
    EXPECT_FALSE(fx().radio.enabled);
    press(Qt::Key_Up);
    EXPECT_TRUE(fx().radio.enabled);
    EXPECT_TRUE(fx().pitch.enabled);
    EXPECT_TRUE(state->effects.isActive());
    EXPECT_TRUE(badge().startsWith(QStringLiteral("▲"))) << badge().toStdString();
    EXPECT_TRUE(badge().endsWith(QStringLiteral("（押している間）")));
    release(Qt::Key_Up);
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_FALSE(fx().pitch.enabled);
    EXPECT_TRUE(badge().isEmpty());
}

TEST_F(KeyVoices, ToggleKeyStaysUntilPressedAgain) {
    press(Qt::Key_Left);
    release(Qt::Key_Left);
    EXPECT_TRUE(fx().delay.enabled);
    EXPECT_TRUE(fx().reverb.enabled);
    EXPECT_TRUE(badge().endsWith(QStringLiteral("（切替中）"))) << badge().toStdString();
    press(Qt::Key_Left);
    release(Qt::Key_Left);
    EXPECT_FALSE(fx().delay.enabled);
    EXPECT_FALSE(fx().reverb.enabled);
    EXPECT_TRUE(badge().isEmpty());
}

TEST_F(KeyVoices, MomentaryInsideToggleShowsTheHeldBadgeAndGivesTheToggleBack) {
    press(Qt::Key_Left);
    release(Qt::Key_Left);
    press(Qt::Key_Down); // "デスゲーム": pitch only
    EXPECT_TRUE(fx().pitch.enabled);
    EXPECT_FALSE(fx().delay.enabled);
    EXPECT_TRUE(badge().startsWith(QStringLiteral("▼")));
    EXPECT_TRUE(badge().endsWith(QStringLiteral("（押している間）")));
    release(Qt::Key_Down);
    EXPECT_TRUE(fx().delay.enabled);
    EXPECT_FALSE(fx().pitch.enabled);
    EXPECT_TRUE(badge().startsWith(QStringLiteral("◀")));
}

TEST_F(KeyVoices, UnassignedKeyIsHeldButAppliesNothingAndRestoresTheDefault) {
    KeyAssignmentSet keys = state->store->load().keyAssignments;
    keys.keys[3] = KeyAssignment{};
    ASSERT_TRUE(state->store->saveKeyAssignments(keys));
    press(Qt::Key_Up);
    release(Qt::Key_Up);
    press(Qt::Key_Right);
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_FALSE(fx().reverb.enabled);
    EXPECT_TRUE(badge().startsWith(QStringLiteral("▶"))) << badge().toStdString();
    release(Qt::Key_Right);
    EXPECT_TRUE(badge().isEmpty());
    EXPECT_FALSE(fx().reverb.enabled);
}

} // namespace Lumora

namespace Lumora {

// The record as the settings file would keep it: equal texts, equal settings.
std::string text(const EffectPreset& p) {
    SavedEffectPreset saved;
    saved.preset = p;
    return effectPresetText(saved);
}
std::string text(const SoundFxPreset& p) {
    SavedSoundFxPreset saved;
    saved.preset = p;
    return soundFxPresetText(saved);
}

// Moves a knob to the other end of its range as a user would, signal and all.
void turn(Knob* knob) {
    knob->setValue(knob->value() == knob->minimum() ? knob->maximum() : knob->minimum());
    emit knob->valueChanged(knob->value());
}

TEST_F(KeyVoices, PanelEditsReachTheFilterAtOnce) {
    QList<Knob*> knobs = dialog->effectPanel()->findChildren<Knob*>();
    ASSERT_FALSE(knobs.isEmpty());
    const std::string before = text(state->chain.getParameters());
    turn(knobs.front());
    EXPECT_NE(text(state->chain.getParameters()), before);
    EXPECT_TRUE(state->chain.getParameters().active);

    QList<Knob*> fxKnobs = dialog->soundFxPanel()->findChildren<Knob*>();
    ASSERT_FALSE(fxKnobs.isEmpty());
    const std::string fxBefore = text(state->effects.getParameters());
    turn(fxKnobs.front());
    EXPECT_NE(text(state->effects.getParameters()), fxBefore);
}

TEST_F(KeyVoices, ChoosingADefaultVoiceIsHeardAtOnceAndAfterEveryKey) {
    auto* card = dialog->keyAssignPanel()->findChild<QWidget*>(QStringLiteral("defaultCard"));
    ASSERT_NE(card, nullptr);
    const QList<QComboBox*> choosers = card->findChildren<QComboBox*>();
    ASSERT_EQ(choosers.size(), 2); // effect preset, sound-effect preset
    QComboBox* sound = choosers[1];
    const int deathGame = sound->findText(QStringLiteral("デスゲーム"));
    ASSERT_GE(deathGame, 0);
    sound->setCurrentIndex(deathGame);
    emit sound->activated(deathGame);
    EXPECT_TRUE(fx().pitch.enabled);
    EXPECT_FLOAT_EQ(fx().pitch.semitonesA, 12.0f);
    EXPECT_TRUE(state->store->load().keyAssignments.defaultKey.hasSoundFxPreset);

    press(Qt::Key_Up);
    EXPECT_TRUE(fx().radio.enabled);
    release(Qt::Key_Up);
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_FLOAT_EQ(fx().pitch.semitonesA, 12.0f);
}

} // namespace Lumora
