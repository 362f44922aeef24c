#include "ui/SoundFxPanel.h"
#include "PanelTestSupport.h"
#include "dsp/fx/FxParameterGuard.h"
#include "dsp/fx/VoiceFxChain.h"
#include "ui/CollapsibleSection.h"
#include "ui/FxModulationControls.h"
#include "ui/FxPitchControls.h"
#include "ui/FxPresetDef.h"
#include "ui/Knob.h"
#include "ui/ToggleSwitch.h"

#include <QApplication>
#include <QCheckBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace Lumora {
namespace {

using PanelTest::fileText;
using PanelTest::sendMouse;

// What the panel edits, as the chain gets it: the settings file's text and the
// formant bands' widths, which the file does not keep.
std::string edited(const SoundFxPreset& p) {
    std::string text = fileText(p);
    for (const FormantBand& band : p.pitch.formantBands) {
        text += " " + std::to_string(band.width);
    }
    return text;
}

// `preset` with effect `code` taken from `from`.
SoundFxPreset withEffectFrom(SoundFxPreset preset, const SoundFxPreset& from, int code) {
    switch (code) {
    case kEffectPitch:
        preset.pitch = from.pitch;
        break;
    case kEffectModulation:
        preset.mod = from.mod;
        break;
    case kEffectRadio:
        preset.radio = from.radio;
        break;
    case kEffectDelay:
        preset.delay = from.delay;
        break;
    default:
        preset.reverb = from.reverb;
        break;
    }
    return preset;
}

// Everything away from its default, every effect on.
SoundFxPreset busyPreset() {
    SoundFxPreset p;
    p.pitch = PitchParams{};
    p.pitch.enabled = true;
    p.pitch.semitonesA = 5.0f;
    p.pitch.layerBEnabled = true;
    p.pitch.semitonesB = -3.0f;
    p.pitch.formantBands[2].gainDb = 6.0f;
    p.mod = ModParams{true, kModFlanger, 3.0f, 0.9f, 0.6f, 0.7f};
    p.radio = RadioParams{true, 700.0f, 2500.0f, 0.6f};
    p.delay = DelayParams{true, 400.0f, 0.6f, 0.5f};
    p.reverb = ReverbParams{true, 0.9f, 0.2f, 0.6f, 500.0f, 0.5f};
    return p;
}

struct ShownPanel {
    SoundFxPanel panel{nullptr};
    explicit ShownPanel(bool easy = false) {
        panel.setEasyMode(easy);
        panel.resize(470, 1400);
        panel.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
    }
};

TEST(SoundFxPanel, PitchStopsAtTwelveSemitonesEvenWhenTwentyIsTyped) {
    ShownPanel s;
    Knob* pitch = s.panel.knob(QStringLiteral("pitchSemitonesA"));
    QSignalSpy edits(&s.panel, &SoundFxPanel::presetEdited);
    PanelTest::typeIntoNextInputDialog(QStringLiteral("20"));
    QTest::mouseDClick(pitch, Qt::LeftButton, Qt::NoModifier, QPoint(36, 40));
    EXPECT_DOUBLE_EQ(pitch->value(), 12.0);
    EXPECT_FLOAT_EQ(s.panel.currentPreset().pitch.semitonesA, 12.0f);
    EXPECT_EQ(edits.count(), 1);
    PanelTest::typeIntoNextInputDialog(QStringLiteral("-3"), false); // cancelled: no change
    EXPECT_FALSE(pitch->editValue());
    EXPECT_DOUBLE_EQ(pitch->value(), 12.0);
    EXPECT_EQ(edits.count(), 1);
}

TEST(SoundFxPanel, EveryEditIsEmittedAtOnce) {
    ShownPanel s;
    s.panel.loadPreset(busyPreset());
    QSignalSpy edits(&s.panel, &SoundFxPanel::presetEdited);
    int expected = 0;
    for (Knob* k : s.panel.findChildren<Knob*>()) {
        const SoundFxPreset before = s.panel.currentPreset();
        k->setValue(k->value() == k->maximum() ? k->minimum() : k->maximum());
        EXPECT_EQ(edits.count(), ++expected) << k->objectName().toStdString();
        EXPECT_NE(edited(before), edited(s.panel.currentPreset())) << k->objectName().toStdString();
        // What the knob sets is what plays: the guard before the audio
        // keeps the knobs' ends.
        EXPECT_EQ(edited(guardFxParameters(s.panel.currentPreset(), 48000.0)),
                  edited(s.panel.currentPreset()))
            << k->objectName().toStdString();
    }
    EXPECT_GT(expected, 20);
    for (int code = 0; code < kEffectCount; ++code) {
        s.panel.section(code)->toggle()->click();
        EXPECT_EQ(edits.count(), ++expected);
    }
    EXPECT_FALSE(s.panel.currentPreset().anyEnabled());
    s.panel.modulationControls()->typeButton(kModTremolo)->click();
    EXPECT_EQ(s.panel.currentPreset().mod.type, kModTremolo);
    s.panel.pitchControls()->layerBCheck()->click();
    EXPECT_FALSE(s.panel.currentPreset().pitch.layerBEnabled);
    EXPECT_EQ(edits.count(), expected + 2);
}

QFrame* openPopup(SoundFxPanel& panel, int effect) {
    QTest::mouseClick(panel.presetButton(effect), Qt::LeftButton);
    auto* popup = qobject_cast<QFrame*>(QApplication::activePopupWidget());
    EXPECT_NE(popup, nullptr);
    return popup;
}

QList<QFrame*> cardsOf(QFrame* popup) {
    QList<QFrame*> cards;
    for (QFrame* f : popup->findChildren<QFrame*>(QStringLiteral("presetCard"))) {
        cards << f;
    }
    return cards;
}

TEST(SoundFxPanel, PopupDefaultRestoresThatEffectAloneAndAPresetSwitchesItsEffectOn) {
    ShownPanel s;
    const SoundFxPreset busy = busyPreset();
    s.panel.loadPreset(busy);
    QSignalSpy edits(&s.panel, &SoundFxPanel::presetEdited);
    QFrame* popup = openPopup(s.panel, kEffectDelay);
    ASSERT_NE(popup, nullptr);
    const QList<QFrame*> cards = cardsOf(popup);
    ASSERT_EQ(cards.size(), 4);
    ASSERT_EQ(cards[0]->findChild<QLabel*>()->text(), QStringLiteral("デフォルト"));
    QTest::mouseClick(cards[0], Qt::LeftButton);
    EXPECT_EQ(edits.count(), 1);
    SoundFxPreset expected = busy;
    expected.delay = DelayParams{};
    expected.delay.enabled = true; // the switch is not a parameter
    EXPECT_EQ(edited(s.panel.currentPreset()), edited(expected));
    EXPECT_DOUBLE_EQ(s.panel.knob(QStringLiteral("delayTime"))->value(), 250.0);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr); // closed after the choice

    s.panel.loadPreset(SoundFxPreset{});
    popup = openPopup(s.panel, kEffectReverb);
    ASSERT_NE(popup, nullptr);
    QTest::mouseClick(cardsOf(popup).at(2), Qt::LeftButton); // お風呂
    const ReverbParams& r = s.panel.currentPreset().reverb;
    EXPECT_TRUE(r.enabled);
    EXPECT_TRUE(s.panel.section(kEffectReverb)->toggle()->isChecked());
    EXPECT_GT(r.wetMix, 0.3f);
    EXPECT_LT(r.damping, 0.3f);
}

TEST(SoundFxPanel, EveryDefaultEntryTouchesOnlyItsOwnEffect) {
    const SoundFxPreset busy = busyPreset();
    for (int code = 0; code < kEffectCount; ++code) {
        const auto& table = fxPresetsFor(code);
        ASSERT_GE(table.size(), 4u);
        SoundFxPreset p = busy;
        table[0].apply(p);
        EXPECT_NE(edited(p), edited(busy)) << code;
        EXPECT_EQ(edited(withEffectFrom(p, busy, code)), edited(busy)) << code;
        // Every other entry switches its effect on and leaves the others alone.
        for (size_t i = 1; i < table.size(); ++i) {
            SoundFxPreset q;
            table[i].apply(q);
            EXPECT_TRUE(q.anyEnabled()) << code << "/" << i;
            int on = q.pitch.enabled + q.mod.enabled + q.radio.enabled + q.delay.enabled +
                     q.reverb.enabled;
            EXPECT_EQ(on, 1) << table[i].nameEn;
        }
    }
}

// Processes `input` through a chain with `preset`, in 480-sample packets.
std::vector<float> through(const SoundFxPreset& preset, std::vector<float> audio) {
    VoiceFxChain chain;
    chain.prepare(48000.0, 4800);
    chain.setParameters(preset);
    chain.setActive(true);
    for (size_t at = 0; at < audio.size(); at += 480) {
        float* planes[1] = {audio.data() + at};
        chain.process(planes, 1, static_cast<int>(std::min<size_t>(480, audio.size() - at)));
    }
    return audio;
}

double maxDifference(const std::vector<float>& a, const std::vector<float>& b) {
    double worst = 0.0;
    for (size_t i = 0; i < a.size(); ++i) {
        worst = std::max(worst, std::abs(static_cast<double>(a[i]) - b[i]));
    }
    return worst;
}

TEST(SoundFxPanel, DraggingTheReverbToTheTopMakesItRunFirst) {
    ShownPanel s;
    SoundFxPreset p;
    p.radio = RadioParams{true, 300.0f, 3400.0f, 0.8f}; // strongly non-linear
    p.reverb = ReverbParams{true, 0.8f, 0.3f, 0.7f, 20.0f, 0.0f};
    s.panel.loadPreset(p);
    QCoreApplication::processEvents();
    QSignalSpy edits(&s.panel, &SoundFxPanel::presetEdited);

    // Drag the reverb card by its handle up over the top card.
    QLabel* handle = s.panel.section(kEffectReverb)->dragHandle();
    QWidget* top = s.panel.section(kEffectPitch);
    const QPoint target = handle->mapFromGlobal(top->mapToGlobal(QPoint(40, 5)));
    sendMouse(handle, QEvent::MouseButtonPress, QPoint(4, 4));
    sendMouse(handle, QEvent::MouseMove, QPoint(4, 4) + (target - QPoint(4, 4)) / 2);
    sendMouse(handle, QEvent::MouseMove, target);
    sendMouse(handle, QEvent::MouseButtonRelease, target);

    ASSERT_EQ(edits.count(), 1);
    const SoundFxPreset moved = s.panel.currentPreset();
    EXPECT_EQ(moved.effectOrder,
              (std::array<int32_t, kEffectCount>{
                  {kEffectReverb, kEffectPitch, kEffectModulation, kEffectRadio, kEffectDelay}}));
    EXPECT_EQ(s.panel.displayOrder(), moved.effectOrder);
    QCoreApplication::processEvents();
    EXPECT_LT(s.panel.section(kEffectReverb)->y(), s.panel.section(kEffectPitch)->y());

    // Through the real chain: the same as a reverb alone followed by a radio
    // alone, and not the other way round (the radio's drive makes the order
    // audible).
    std::vector<float> input = PanelTest::sine(220.0, 48000, 0.5f);
    for (size_t i = 24000; i < input.size(); ++i) {
        input[i] = 0.0f; // the tail shows the reverb
    }
    SoundFxPreset reverbOnly;
    reverbOnly.reverb = moved.reverb;
    SoundFxPreset radioOnly;
    radioOnly.radio = moved.radio;
    const std::vector<float> chained = through(moved, input);
    const std::vector<float> reverbThenRadio = through(radioOnly, through(reverbOnly, input));
    const std::vector<float> radioThenReverb = through(reverbOnly, through(radioOnly, input));
    EXPECT_LT(maxDifference(chained, reverbThenRadio), 1e-6);
    EXPECT_GT(maxDifference(chained, radioThenReverb), 0.05);
}

TEST(SoundFxPanel, AnOrderWithRepeatsShowsEachCardOnceAndIsKeptUntilADrag) {
    SoundFxPanel panel(nullptr);
    SoundFxPreset p;
    p.effectOrder = {{kEffectDelay, kEffectDelay, 9, kEffectRadio, kEffectDelay}};
    panel.loadPreset(p);
    EXPECT_EQ(panel.displayOrder(),
              (std::array<int32_t, kEffectCount>{
                  {kEffectDelay, kEffectRadio, kEffectPitch, kEffectModulation, kEffectReverb}}));
    EXPECT_EQ(panel.currentPreset().effectOrder, p.effectOrder);
    panel.moveSection(kEffectReverb, 0);
    EXPECT_EQ(panel.currentPreset().effectOrder,
              (std::array<int32_t, kEffectCount>{
                  {kEffectReverb, kEffectDelay, kEffectRadio, kEffectPitch, kEffectModulation}}));
}

TEST(SoundFxPanel, CancelOnResetChangesNothingAndOkStartsOver) {
    SoundFxPanel panel(nullptr);
    panel.loadPreset(busyPreset());
    panel.moveSection(kEffectReverb, 0);
    const SoundFxPreset before = panel.currentPreset();
    QSignalSpy edits(&panel, &SoundFxPanel::presetEdited);
    PanelTest::answerNextMessageBox(QMessageBox::Cancel);
    panel.resetButton()->click();
    EXPECT_EQ(edited(panel.currentPreset()), edited(before));
    EXPECT_EQ(edits.count(), 0);
    PanelTest::answerNextMessageBox(QMessageBox::Ok);
    EXPECT_TRUE(panel.confirmReset());
    EXPECT_EQ(edited(panel.currentPreset()), edited(SoundFxPreset{}));
    EXPECT_EQ(panel.displayOrder(), SoundFxPreset{}.effectOrder);
}

TEST(SoundFxPanel, SavingStoresTheWholeEffectsState) {
    PanelTest::TempStore store;
    SoundFxPanel panel(nullptr);
    panel.loadPreset(busyPreset());
    panel.moveSection(kEffectDelay, 0);
    panel.setStore(store.get());
    panel.setNamePrompt(PanelTest::answerName(QStringLiteral("ロボット実況")));
    ASSERT_TRUE(panel.savePreset());
    const auto saved = store->findSoundFxPreset("ロボット実況");
    ASSERT_TRUE(saved.has_value());
    EXPECT_EQ(fileText(saved->preset), fileText(panel.currentPreset()));
}

} // namespace
} // namespace Lumora
