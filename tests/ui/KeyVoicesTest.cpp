// The open dialog as a view of a real filter engine (its chains, and the
// built-in key assignments of a fresh settings folder): arrow keys switching
// voices, what the dialog shows when it opens and after each change, edits and
// keys during a measurement, and changes that arrive from another thread.
#include "PanelTestSupport.h"
#include "engine/FilterEngine.h"
#include "settings/support/TempFolder.h"
#include "ui/DiagnosisPresenter.h"
#include "ui/EffectPanel.h"
#include "ui/FxPage.h"
#include "ui/KeyAssignPanel.h"
#include "ui/KeyBadgeBoard.h"
#include "ui/Knob.h"
#include "ui/MeterFaderWidget.h"
#include "ui/PresetsPanel.h"
#include "ui/SoundFxPanel.h"
#include "ui/SoundPage.h"
#include "ui/WizardDialog.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace Lumora {
namespace {

struct KeyVoices : ::testing::Test {
    Testing::TempFolder folder; // outlives the engine that saves into it
    std::unique_ptr<FilterEngine> state = std::make_unique<FilterEngine>();
    std::unique_ptr<WizardDialog> dialog;

    void SetUp() override {
        state->prepare(48000.0);
        state->setStore(std::make_unique<SettingsStore>(folder.path()));
        (void)state->store()->load(); // seeds the four built-in voices on the arrow keys
        dialog = std::make_unique<WizardDialog>(nullptr, state.get());
        dialog->show();
        dialog->tickTimer()->stop();
        dialog->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    void TearDown() override { dialog.reset(); }

    void key(QEvent::Type type, int k, bool autoRepeat = false) {
        QWidget* target = dialog->focusWidget() ? dialog->focusWidget() : dialog.get();
        QKeyEvent event(type, k, Qt::NoModifier, QString(), autoRepeat);
        QApplication::sendEvent(target, &event);
    }
    void press(int k) { key(QEvent::KeyPress, k); }
    void release(int k) { key(QEvent::KeyRelease, k); }
    SoundFxPreset fx() const { return state->effects().getParameters(); }
    QString badge() const {
        auto* label = dialog->findChild<QLabel*>(QStringLiteral("keyBadge"));
        return label ? label->text() : QStringLiteral("<no badge>");
    }
};

} // namespace

// A toggled voice stays after its key is let go, a held voice inside it gives
// it back on release, and a second press ends the toggle. The keys belong to
// the filter, not to the window: one pressed elsewhere (an OBS hotkey) shows at
// once, and a voice still on shows when the dialog opens again.
TEST_F(KeyVoices, MomentaryInsideToggleShowsTheHeldBadgeAndGivesTheToggleBack) {
    const std::string cleaning = PanelTest::fileText(state->chain().getParameters());
    const bool cleaningOn = state->chain().isActive();
    // Auto-repeat comes as release and press pairs while a key is held: taken as
    // presses they would undo the toggle, taken as releases end the held voice.
    auto autoRepeat = [this](int k) {
        key(QEvent::KeyRelease, k, true);
        key(QEvent::KeyPress, k, true);
    };
    press(Qt::Key_Left);
    autoRepeat(Qt::Key_Left);
    press(Qt::Key_A); // not a voice key
    release(Qt::Key_Left);
    EXPECT_TRUE(fx().delay.enabled);
    EXPECT_TRUE(fx().reverb.enabled);
    EXPECT_TRUE(badge().endsWith(QStringLiteral("（切替中）"))) << badge().toStdString();
    press(Qt::Key_Down); // "デスゲーム": pitch only
    autoRepeat(Qt::Key_Down);
    EXPECT_TRUE(fx().pitch.enabled);
    EXPECT_FALSE(fx().delay.enabled);
    EXPECT_TRUE(badge().startsWith(QStringLiteral("▼")));
    EXPECT_TRUE(badge().endsWith(QStringLiteral("（押している間）")));
    release(Qt::Key_Down);
    EXPECT_TRUE(fx().delay.enabled);
    EXPECT_FALSE(fx().pitch.enabled);
    EXPECT_TRUE(badge().startsWith(QStringLiteral("◀")));
    // The held voice gives back the cleaning half whole too.
    EXPECT_EQ(PanelTest::fileText(state->chain().getParameters()), cleaning);
    EXPECT_EQ(state->chain().isActive(), cleaningOn);
    // Untoggled, the voice from before the toggle comes back, not the held one's.
    press(Qt::Key_Left);
    release(Qt::Key_Left);
    EXPECT_FALSE(dialog->keyAssignPanel()->lampLit(2));
    EXPECT_FALSE(fx().delay.enabled);
    EXPECT_FALSE(fx().reverb.enabled);
    EXPECT_FALSE(fx().pitch.enabled);
    EXPECT_TRUE(badge().isEmpty());
    // Toggled by a key pressed elsewhere (an OBS hotkey): shown at once, and
    // still shown when the dialog opens again.
    state->pressKey(2, true);
    EXPECT_TRUE(dialog->keyAssignPanel()->lampLit(2));
    EXPECT_TRUE(badge().startsWith(QStringLiteral("◀")));
    dialog->hide();
    dialog->show();
    EXPECT_TRUE(badge().startsWith(QStringLiteral("◀")));
    EXPECT_TRUE(dialog->keyAssignPanel()->lampLit(2));
}

using PanelTest::fileText;

// Moves a knob to the other end of its range as a user would (the knob says
// so once, as a drag's last step does).
void turn(Knob* knob) {
    knob->setValue(knob->value() == knob->minimum() ? knob->maximum() : knob->minimum());
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
    EXPECT_TRUE(state->store()->load().keyAssignments.defaultKey.hasSoundFxPreset);

    press(Qt::Key_Up);
    EXPECT_TRUE(fx().radio.enabled);
    release(Qt::Key_Up);
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_FLOAT_EQ(fx().pitch.semitonesA, 12.0f);
}

namespace {

SoundFxPreset shiftedWithReverb(float semitones) {
    SoundFxPreset voice;
    voice.pitch.enabled = true;
    voice.pitch.semitonesA = semitones;
    voice.reverb.enabled = true;
    voice.reverb.wetMix = 0.4f;
    voice.outputGainDb = 3.0f;
    return voice;
}

} // namespace

// What OBS Studio's UI task handler does with a task queued from another thread
// (a procedure, a hotkey): runs it on the application's thread and waits.
void runOnApplicationThread(const std::function<void()>& task) {
    QMetaObject::invokeMethod(qApp, task, Qt::BlockingQueuedConnection);
}

// The panels show the filter's voice when the dialog opens and whenever it
// changes from another thread; an edit reaches the filter at once and changes
// only what it touches, never bringing back a stale voice.
TEST_F(KeyVoices, OpeningShowsTheFiltersVoiceAndEveryEditKeepsTheRest) {
    dialog.reset();
    state->applySoundFxPreset(shiftedWithReverb(12.0f));
    EffectPreset cleaning;
    cleaning.inputGainDb = -6.0f;
    cleaning.gate.enabled = true;
    state->applyEffectPreset(cleaning);
    dialog = std::make_unique<WizardDialog>(nullptr, state.get());

    EXPECT_FLOAT_EQ(dialog->soundFxPanel()->currentPreset().pitch.semitonesA, 12.0f);
    EXPECT_TRUE(dialog->soundFxPanel()->currentPreset().reverb.enabled);
    EXPECT_FLOAT_EQ(dialog->fxPage()->strip()->outputGain(), 3.0f);
    EXPECT_FLOAT_EQ(dialog->soundPage()->strip()->inputGain(), -6.0f);
    EXPECT_TRUE(dialog->effectPanel()->currentPreset().gate.enabled);

    const float room = fx().reverb.roomSize;
    turn(dialog->soundFxPanel()->knob(QStringLiteral("reverbRoom")));
    EXPECT_NE(fx().reverb.roomSize, room);
    EXPECT_FLOAT_EQ(fx().pitch.semitonesA, 12.0f);
    EXPECT_TRUE(fx().reverb.enabled);
    EXPECT_FLOAT_EQ(fx().outputGainDb, 3.0f);

    const std::string chainBefore = fileText(state->chain().getParameters());
    turn(dialog->effectPanel()->findChildren<Knob*>().front());
    EXPECT_NE(fileText(state->chain().getParameters()), chainBefore);
    EXPECT_FLOAT_EQ(state->chain().getParameters().inputGainDb, -6.0f);

    std::atomic<bool> done{false};
    std::thread caller([&] {
        SoundFxPreset second = shiftedWithReverb(-5.0f);
        second.outputGainDb = -2.0f;
        runOnApplicationThread([&] { state->applySoundFxPreset(second); });
        done = true;
    });
    while (!done) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    caller.join();
    EXPECT_FLOAT_EQ(dialog->soundFxPanel()->currentPreset().pitch.semitonesA, -5.0f);
    EXPECT_FLOAT_EQ(dialog->fxPage()->strip()->outputGain(), -2.0f);
    turn(dialog->soundFxPanel()->knob(QStringLiteral("reverbRoom")));
    EXPECT_FLOAT_EQ(fx().pitch.semitonesA, -5.0f);
    EXPECT_TRUE(fx().reverb.enabled);
}

// The voice keys hold voices, so the filter runs on the voices' constant delay;
// a spectral filter adds its block. The strip and the sound panel's note show
// the figures the filter moves its timestamps by.
TEST_F(KeyVoices, TheDelayShowsBesideTheVoiceEffectsAndInTheNoiseNotes) {
    auto delayText = [this] {
        dialog->advance(0.05);
        return dialog->fxPage()->strip()->findChild<QLabel*>(QStringLiteral("outputDelay"))->text();
    };
    EXPECT_EQ(delayText(), QStringLiteral("⏱ 遅延: 64ms"));
    EffectPreset cleaning;
    cleaning.active = true;
    cleaning.spectral.enabled = true;
    state->applyEffectPreset(cleaning);
    EXPECT_EQ(delayText(), QStringLiteral("⏱ 遅延: 85ms"));
    EXPECT_EQ(dialog->findChild<QLabel*>(QStringLiteral("ambientLatency"))->text(),
              QStringLiteral("① レイテンシ: ~21ms"));
}

TEST_F(KeyVoices, PresetsFromTheListOrAKeyMoveTheFaders) {
    SavedEffectPreset quiet;
    quiet.name = "小声用";
    quiet.preset.inputGainDb = 9.0f;
    quiet.preset.outputGainDb = -2.0f;
    ASSERT_TRUE(state->store()->saveEffectPreset(quiet));
    auto* list = dialog->findChild<PresetsPanel*>();
    ASSERT_NE(list, nullptr);
    emit list->presetApplied(quiet);
    EXPECT_FLOAT_EQ(dialog->soundPage()->strip()->inputGain(), 9.0f);
    EXPECT_FLOAT_EQ(dialog->soundPage()->strip()->outputGain(), -2.0f);
    EXPECT_EQ(state->lastPresetName(), "小声用");

    SavedEffectPreset loud = quiet;
    loud.name = "叫び用";
    loud.preset.inputGainDb = -12.0f;
    ASSERT_TRUE(state->store()->saveEffectPreset(loud));
    KeyAssignmentSet keys = state->store()->load().keyAssignments;
    keys.keys[0].hasEffectPreset = true;
    keys.keys[0].effectPresetName = "叫び用";
    ASSERT_TRUE(state->store()->saveKeyAssignments(keys));
    press(Qt::Key_Up);
    EXPECT_FLOAT_EQ(dialog->soundPage()->strip()->inputGain(), -12.0f);
    release(Qt::Key_Up);
    EXPECT_FLOAT_EQ(dialog->soundPage()->strip()->inputGain(), 9.0f);
    // The next fader move keeps the other gain as the preset set it.
    dialog->soundPage()->strip()->setGains(9.0f, -5.0f);
    emit dialog->soundPage()->strip()->gainsChanged(9.0f, -5.0f);
    EXPECT_FLOAT_EQ(state->chain().getParameters().inputGainDb, 9.0f);
}

TEST_F(KeyVoices, AKeyDuringADiagnosisTakeWaitsForTheTakeToEnd) {
    dialog->diagnosis()->start();
    ASSERT_TRUE(dialog->diagnosisShown());
    ASSERT_FALSE(state->effects().isActive());
    press(Qt::Key_Left); // a toggled voice: delay and reverb
    release(Qt::Key_Left);
    EXPECT_FALSE(state->effects().isActive());
    EXPECT_FALSE(state->chain().isActive());
    EXPECT_TRUE(state->soundFxPreset().delay.enabled); // kept for later
    turn(dialog->effectPanel()->findChildren<Knob*>().front());
    EXPECT_FALSE(state->chain().isActive());

    dialog->hide(); // ends the diagnosis
    EXPECT_TRUE(state->effects().isActive());
    EXPECT_TRUE(fx().delay.enabled);
    EXPECT_TRUE(state->chain().isActive());
}

TEST_F(KeyVoices, LosingTheKeyboardReleasesAHeldKey) {
    press(Qt::Key_Up);
    ASSERT_TRUE(fx().radio.enabled);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_TRUE(badge().isEmpty());
    // Keys meant for another window are not ours.
    QKeyEvent elsewhere(QEvent::KeyPress, Qt::Key_Up, Qt::NoModifier);
    QApplication::sendEvent(&other, &elsewhere);
    EXPECT_FALSE(fx().radio.enabled);
}

TEST_F(KeyVoices, ArrowKeysKeepTheirEditingMeaningInATextField) {
    auto* edit = new QLineEdit(QStringLiteral("abc"), dialog.get());
    edit->show();
    edit->setFocus();
    edit->setCursorPosition(3);
    QTest::keyClick(edit, Qt::Key_Left);
    QTest::keyPress(edit, Qt::Key_Up);
    EXPECT_FALSE(fx().radio.enabled);
    EXPECT_FALSE(fx().delay.enabled);
    EXPECT_EQ(edit->cursorPosition(), 2); // the line edit got its Left
}

// On the keys tab a key only shows which card it is, so a user can try the
// keys while assigning them without switching the voice on air.
TEST_F(KeyVoices, OnTheKeysTabAKeyOnlyLightsTheBoard) {
    dialog->selectTab(WizardDialog::kKeysTab);
    press(Qt::Key_Down);
    EXPECT_EQ(dialog->keyBoard()->litSlot(), 1);
    EXPECT_FALSE(fx().pitch.enabled);
    release(Qt::Key_Down);
    EXPECT_EQ(dialog->keyBoard()->litSlot(), -1);
}

} // namespace Lumora
