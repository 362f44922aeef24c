#include "ui/SoundFxPanel.h"
#include "PanelTestSupport.h"
#include "dsp/fx/VoiceFxChain.h"
#include "ui/CollapsibleSection.h"
#include "ui/FxModulationControls.h"
#include "ui/FxPitchControls.h"
#include "ui/FxPresetCardFilter.h"
#include "ui/FxPresetDef.h"
#include "ui/Knob.h"
#include "ui/Localisation.h"
#include "ui/SubGroup.h"
#include "ui/ToggleSwitch.h"

#include <QApplication>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFrame>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Lumora {
namespace {

using PanelTest::sendMouse;

// Every field of every effect, as the chain sees them.
bool sameDelay(const DelayParams& a, const DelayParams& b) {
    return a.enabled == b.enabled && a.timeMs == b.timeMs && a.feedback == b.feedback &&
           a.wetMix == b.wetMix;
}
bool sameRadio(const RadioParams& a, const RadioParams& b) {
    return a.enabled == b.enabled && a.lowCutHz == b.lowCutHz && a.highCutHz == b.highCutHz &&
           a.overdrive == b.overdrive;
}
bool sameReverb(const ReverbParams& a, const ReverbParams& b) {
    return a.enabled == b.enabled && a.roomSize == b.roomSize && a.damping == b.damping &&
           a.wetMix == b.wetMix && a.lowCutHz == b.lowCutHz && a.duckingAmount == b.duckingAmount;
}
bool sameMod(const ModParams& a, const ModParams& b) {
    return a.enabled == b.enabled && a.type == b.type && a.rate == b.rate && a.depth == b.depth &&
           a.feedback == b.feedback && a.wetMix == b.wetMix;
}
bool samePitch(const PitchParams& a, const PitchParams& b) {
    bool same = a.enabled == b.enabled && a.semitonesA == b.semitonesA &&
                a.formantShiftA == b.formantShiftA && a.wetMix == b.wetMix &&
                a.layerBEnabled == b.layerBEnabled && a.semitonesB == b.semitonesB &&
                a.formantShiftB == b.formantShiftB && a.mixAB == b.mixAB &&
                a.formantEqEnabled == b.formantEqEnabled;
    for (size_t i = 0; i < a.formantBands.size(); ++i) {
        same = same && a.formantBands[i].hz == b.formantBands[i].hz &&
               a.formantBands[i].gainDb == b.formantBands[i].gainDb &&
               a.formantBands[i].width == b.formantBands[i].width;
    }
    return same;
}
bool sameFx(const SoundFxPreset& a, const SoundFxPreset& b) {
    return samePitch(a.pitch, b.pitch) && sameMod(a.mod, b.mod) && sameRadio(a.radio, b.radio) &&
           sameDelay(a.delay, b.delay) && sameReverb(a.reverb, b.reverb) &&
           a.effectOrder == b.effectOrder;
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

TEST(SoundFxPanel, KnobsHaveTheirRangesDefaultsAndSuffixes) {
    applyLanguage(QStringLiteral("ja"));
    SoundFxPanel panel(nullptr);
    struct Row {
        const char* name;
        double min, max, def;
        const char* suffix;
    };
    const Row table[] = {
        {"pitchSemitonesA", -12, 12, 0, "半音"},
        {"pitchFormantA", -100, 100, 0, "%"},
        {"pitchMixAB", 0, 100, 50, "%B"},
        {"pitchSemitonesB", -12, 12, 0, "半音"},
        {"pitchFormantB", -100, 100, 0, "%"},
        {"pitchWet", 0, 100, 100, "%"},
        {"formantBand0Hz", 80, 16000, 400, "Hz"},
        {"formantBand4Hz", 80, 16000, 7000, "Hz"},
        {"formantBand2Gain", -24, 24, 0, "dB"},
        {"formantBand3Q", 0.3, 10, 1.5, ""},
        {"modRate", 0.1, 10, 1, "Hz"},
        {"modDepth", 0, 100, 50, "%"},
        {"modFeedback", 0, 90, 30, "%"},
        {"modWet", 0, 100, 50, "%"},
        {"radioLowCut", 100, 2000, 300, "Hz"},
        {"radioHighCut", 1000, 8000, 3400, "Hz"},
        {"radioDrive", 0, 100, 20, "%"},
        {"delayTime", 1, 1000, 250, "ms"},
        {"delayFeedback", 0, 90, 30, "%"},
        {"delayWet", 0, 100, 30, "%"},
        {"reverbRoom", 0, 100, 50, "%"},
        {"reverbDamping", 0, 100, 50, "%"},
        {"reverbLowCut", 20, 2000, 20, "Hz"},
        {"reverbDucking", 0, 100, 0, "%"},
        {"reverbMix", 0, 100, 30, "%"},
    };
    for (const Row& r : table) {
        const Knob* k = panel.knob(QString::fromLatin1(r.name));
        ASSERT_NE(k, nullptr) << r.name;
        EXPECT_DOUBLE_EQ(k->minimum(), r.min) << r.name;
        EXPECT_DOUBLE_EQ(k->maximum(), r.max) << r.name;
        EXPECT_NEAR(k->value(), r.def, 1e-9) << r.name;
        EXPECT_EQ(k->suffix(), QString::fromUtf8(r.suffix)) << r.name;
    }
    EXPECT_EQ(panel.knob(QStringLiteral("pitchSemitonesA"))->caption(), QStringLiteral("ピッチA"));
    EXPECT_EQ(panel.knob(QStringLiteral("formantBand1Gain"))->caption(), QStringLiteral("ゲイン2"));
    EXPECT_EQ(panel.knob(QStringLiteral("formantBand1Hz"))->caption(), QStringLiteral("F2 Hz"));
    EXPECT_EQ(panel.section(kEffectDelay)->title(), QStringLiteral("ディレイ & エコー"));
}

TEST(SoundFxPanel, PitchStopsAtTwelveSemitonesEvenWhenTwentyIsTyped) {
    ShownPanel s;
    Knob* pitch = s.panel.knob(QStringLiteral("pitchSemitonesA"));
    QSignalSpy edits(&s.panel, &SoundFxPanel::presetEdited);
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, poll, [poll] {
        if (auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget())) {
            poll->stop();
            poll->deleteLater();
            QLineEdit* edit = dialog->findChild<QDoubleSpinBox*>()->findChild<QLineEdit*>();
            edit->selectAll();
            QTest::keyClicks(edit, QStringLiteral("20"));
            QTest::keyClick(edit, Qt::Key_Return);
        }
    });
    poll->start();
    QTest::mouseDClick(pitch, Qt::LeftButton, Qt::NoModifier, QPoint(36, 40));
    EXPECT_DOUBLE_EQ(pitch->value(), 12.0);
    EXPECT_FLOAT_EQ(s.panel.currentPreset().pitch.semitonesA, 12.0f);
    EXPECT_EQ(edits.count(), 1);
    SoundFxPreset p;
    p.pitch.semitonesB = -30.0f;
    s.panel.loadPreset(p);
    EXPECT_DOUBLE_EQ(s.panel.knob(QStringLiteral("pitchSemitonesB"))->value(), -12.0);
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
        EXPECT_FALSE(sameFx(before, s.panel.currentPreset())) << k->objectName().toStdString();
    }
    EXPECT_EQ(expected, 6 + 15 + 4 + 3 + 3 + 5);
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

TEST(SoundFxPanel, DefaultInAPopupRestoresThatEffectAlone) {
    applyLanguage(QStringLiteral("ja"));
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

    const SoundFxPreset after = s.panel.currentPreset();
    DelayParams fresh;
    fresh.enabled = true; // the switch is not a parameter
    EXPECT_TRUE(sameDelay(after.delay, fresh));
    EXPECT_TRUE(samePitch(after.pitch, busy.pitch));
    EXPECT_TRUE(sameMod(after.mod, busy.mod));
    EXPECT_TRUE(sameRadio(after.radio, busy.radio));
    EXPECT_TRUE(sameReverb(after.reverb, busy.reverb));
    EXPECT_DOUBLE_EQ(s.panel.knob(QStringLiteral("delayTime"))->value(), 250.0);
    QTest::qWait(20);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr); // closed after the choice
}

TEST(SoundFxPanel, EveryDefaultEntryTouchesOnlyItsOwnEffect) {
    for (int code = 0; code < kEffectCount; ++code) {
        const auto& table = fxPresetsFor(code);
        ASSERT_GE(table.size(), 4u);
        SoundFxPreset p = busyPreset();
        table[0].apply(p);
        const SoundFxPreset busy = busyPreset();
        SoundFxPreset fresh;
        EXPECT_EQ(samePitch(p.pitch, busy.pitch), code != kEffectPitch) << code;
        EXPECT_EQ(sameMod(p.mod, busy.mod), code != kEffectModulation) << code;
        EXPECT_EQ(sameRadio(p.radio, busy.radio), code != kEffectRadio) << code;
        EXPECT_EQ(sameDelay(p.delay, busy.delay), code != kEffectDelay) << code;
        EXPECT_EQ(sameReverb(p.reverb, busy.reverb), code != kEffectReverb) << code;
        // Every other entry switches its effect on and leaves the others alone.
        for (size_t i = 1; i < table.size(); ++i) {
            SoundFxPreset q;
            table[i].apply(q);
            EXPECT_TRUE(q.anyEnabled()) << code << "/" << i;
            int on = q.pitch.enabled + q.mod.enabled + q.radio.enabled + q.delay.enabled +
                     q.reverb.enabled;
            EXPECT_EQ(on, 1) << table[i].nameEn;
            EXPECT_NE(std::string(table[i].nameEn), std::string(table[i].nameJa));
            EXPECT_STRNE(table[i].descriptionEn, "");
        }
    }
}

TEST(SoundFxPanel, BuiltInTablesHaveTheirNamesInOrder) {
    auto names = [](const std::vector<FxPresetDef>& t) {
        std::vector<std::string> out;
        for (const FxPresetDef& d : t) {
            out.push_back(d.nameJa);
        }
        return out;
    };
    using V = std::vector<std::string>;
    EXPECT_EQ(names(delayPresets()), (V{"デフォルト", "歌枠", "特撮ヒーロー", "やまびこ"}));
    EXPECT_EQ(names(modPresets()), (V{"デフォルト", "バックコーラス", "宇宙人", "扇風機"}));
    EXPECT_EQ(names(pitchPresets()),
              (V{"デフォルト", "デスゲームマスター", "コンピューターシステム", "バ美肉"}));
    EXPECT_EQ(names(radioPresets()),
              (V{"デフォルト", "AM ラジオ", "FM ラジオ", "ロケットからのメッセージ"}));
    EXPECT_EQ(names(reverbPresets()),
              (V{"デフォルト", "歌枠リバーブ", "お風呂", "心の中のセリフ"}));
    EXPECT_STREQ(delayPresets()[0].descriptionJa, "すべてのパラメーターを初期値に戻します。");
    // The mod presets pick the type their description promises.
    SoundFxPreset p;
    modPresets()[1].apply(p);
    EXPECT_EQ(p.mod.type, kModChorus);
    modPresets()[2].apply(p);
    EXPECT_EQ(p.mod.type, kModFlanger);
    modPresets()[3].apply(p);
    EXPECT_EQ(p.mod.type, kModTremolo);
    // Names shown follow the language.
    applyLanguage(QStringLiteral("en"));
    EXPECT_EQ(reverbPresets()[2].name(), QStringLiteral("Bathroom"));
    applyLanguage(QStringLiteral("ja"));
    EXPECT_EQ(reverbPresets()[2].name(), QStringLiteral("お風呂"));
}

TEST(SoundFxPanel, CardsLightUpUnderThePointerAndRestWhenItLeavesEvenAfterAPress) {
    ShownPanel s;
    QFrame* popup = openPopup(s.panel, kEffectReverb);
    ASSERT_NE(popup, nullptr);
    QFrame* card = cardsOf(popup).at(1);
    QEvent enter(QEvent::Enter);
    QApplication::sendEvent(card, &enter);
    EXPECT_EQ(card->styleSheet(), QLatin1String(FxPresetCardFilter::kHighlightStyle));
    sendMouse(card, QEvent::MouseButtonPress, QPoint(5, 5));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(card, &leave);
    EXPECT_EQ(card->styleSheet(), QLatin1String(FxPresetCardFilter::kRestingStyle));
    EXPECT_FALSE(s.panel.currentPreset().reverb.enabled); // no release, no choice
    popup->close();
}

TEST(SoundFxPanel, ChoosingABuiltInPresetWritesItAndSwitchesTheEffectOn) {
    ShownPanel s;
    QFrame* popup = openPopup(s.panel, kEffectReverb);
    ASSERT_NE(popup, nullptr);
    QTest::mouseClick(cardsOf(popup).at(2), Qt::LeftButton); // お風呂
    const ReverbParams& r = s.panel.currentPreset().reverb;
    EXPECT_TRUE(r.enabled);
    EXPECT_TRUE(s.panel.section(kEffectReverb)->toggle()->isChecked());
    EXPECT_GT(r.wetMix, 0.3f);
    EXPECT_LT(r.damping, 0.3f);
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
    applyLanguage(QStringLiteral("en"));
    SoundFxPanel panel(nullptr);
    panel.loadPreset(busyPreset());
    panel.moveSection(kEffectReverb, 0);
    const SoundFxPreset before = panel.currentPreset();
    QSignalSpy edits(&panel, &SoundFxPanel::presetEdited);
    QString title;
    QString text;
    PanelTest::answerNextMessageBox(QMessageBox::Cancel, &title, &text);
    panel.resetButton()->click();
    EXPECT_EQ(title, QStringLiteral("Reset"));
    EXPECT_EQ(text, QStringLiteral("Reset to defaults?"));
    EXPECT_TRUE(sameFx(panel.currentPreset(), before));
    EXPECT_EQ(edits.count(), 0);
    PanelTest::answerNextMessageBox(QMessageBox::Ok);
    EXPECT_TRUE(panel.confirmReset());
    EXPECT_TRUE(sameFx(panel.currentPreset(), SoundFxPreset{}));
    EXPECT_EQ(panel.displayOrder(), SoundFxPreset{}.effectOrder);
    applyLanguage(QStringLiteral("ja"));
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
    EXPECT_TRUE(sameFx(saved->preset, panel.currentPreset()));
}

TEST(SoundFxPanel, EasyModeHidesLayerBAndTheFormantEqualiser) {
    ShownPanel s(true);
    s.panel.loadPreset(busyPreset());
    EXPECT_FALSE(s.panel.pitchControls()->layerBCheck()->isVisible());
    EXPECT_TRUE(s.panel.knob(QStringLiteral("pitchSemitonesA"))->isVisible());
    EXPECT_FALSE(s.panel.knob(QStringLiteral("reverbDucking"))->isVisible());
    EXPECT_TRUE(s.panel.knob(QStringLiteral("reverbMix"))->isVisible());
    s.panel.setEasyMode(false);
    EXPECT_TRUE(s.panel.pitchControls()->layerBCheck()->isVisible());
    EXPECT_TRUE(s.panel.pitchControls()->formantEqGroup()->isVisible());
    EXPECT_FALSE(s.panel.knob(QStringLiteral("formantBand0Hz"))->isVisible()); // folded: EQ off
    EXPECT_TRUE(s.panel.knob(QStringLiteral("reverbDucking"))->isVisible());
}

} // namespace
} // namespace Lumora
