#include "ui/Knob.h"
#include "PanelTestSupport.h"
#include "dsp/Compressor.h"
#include "ui/CompressorDisplay.h"
#include "ui/EqCurveDisplay.h"
#include "ui/NoiseProfileDisplay.h"

#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

#include <cmath>

namespace Lumora {
namespace {

using PanelTest::sendMouse;

Knob* makeKnob(QWidget* parent, double min, double max, double value, bool log = false) {
    auto* knob = new Knob(parent);
    knob->setRange(min, max);
    knob->setLogarithmic(log);
    knob->setValue(value);
    return knob;
}

// Drags from the knob's middle by `up` pixels (negative: down) in steps.
void drag(Knob* knob, int up, int steps = 1) {
    const QPoint start(36, 40);
    sendMouse(knob, QEvent::MouseButtonPress, start);
    for (int i = 1; i <= steps; ++i) {
        sendMouse(knob, QEvent::MouseMove, start - QPoint(0, up * i / steps));
    }
    sendMouse(knob, QEvent::MouseButtonRelease, start - QPoint(0, up));
}

TEST(Knob, ValuesFromCodeAreClampedAndOnlyChangesAreSignalled) {
    QWidget host;
    Knob* knob = makeKnob(&host, -12.0, 12.0, 0.0);
    QSignalSpy spy(knob, &Knob::valueChanged);
    knob->setValue(20.0);
    EXPECT_DOUBLE_EQ(knob->value(), 12.0);
    knob->setValue(30.0); // still 12: nothing to say
    knob->setValue(-99.0);
    EXPECT_DOUBLE_EQ(knob->value(), -12.0);
    knob->setValue(std::nan(""));
    EXPECT_DOUBLE_EQ(knob->value(), -12.0);
    ASSERT_EQ(spy.count(), 2);
    EXPECT_DOUBLE_EQ(spy.at(0).at(0).toDouble(), 12.0);
    Knob* empty = makeKnob(&host, 5.0, 5.0, 5.0); // an empty range draws no arc
    EXPECT_DOUBLE_EQ(empty->fraction(), 0.0);
}

TEST(Knob, LinearDragComesBackWhereItStartedAndStopsAtTheEnd) {
    QWidget host;
    Knob* gate = makeKnob(&host, -80.0, -20.0, -55.0);
    drag(gate, 50);
    EXPECT_GT(gate->value(), -55.0);
    drag(gate, -50, 5);
    EXPECT_NEAR(gate->value(), -55.0, 1e-9);
    drag(gate, -400); // far down: clamped
    EXPECT_DOUBLE_EQ(gate->value(), -80.0);
}

TEST(Knob, LogarithmicDragMovesTheLogarithmInEqualSteps) {
    QWidget host;
    Knob* lowCut = makeKnob(&host, 60.0, 200.0, 100.0, true);
    const double step = (std::log(200.0) - std::log(60.0)) / 600.0;
    // Ten pixels at a time from the same press: every step multiplies the
    // frequency by the same ratio, whatever the frequency.
    const QPoint start(36, 40);
    sendMouse(lowCut, QEvent::MouseButtonPress, start);
    double previous = lowCut->value();
    for (int i = 1; i <= 6; ++i) {
        sendMouse(lowCut, QEvent::MouseMove, start - QPoint(0, 10 * i));
        EXPECT_NEAR(std::log(lowCut->value()) - std::log(previous), 10.0 * step, 1e-9);
        previous = lowCut->value();
    }
    sendMouse(lowCut, QEvent::MouseButtonRelease, start - QPoint(0, 60));
    EXPECT_NEAR(lowCut->value(), 100.0 * std::exp(60.0 * step), 1e-9);
    // The whole range is 600 pixels.
    lowCut->setValue(60.0);
    drag(lowCut, 600, 4);
    EXPECT_NEAR(lowCut->value(), 200.0, 1e-9);
}

TEST(Knob, ValueTextReadsKilohertzAndNeverMinusZero) {
    QWidget host;
    Knob* hz = makeKnob(&host, 2000.0, 20000.0, 16000.0, true);
    hz->setSuffix(QStringLiteral("Hz"));
    EXPECT_EQ(hz->valueText(), QStringLiteral("16.0k"));
    Knob* db = makeKnob(&host, -15.0, 15.0, -0.01);
    db->setDecimals(1);
    EXPECT_EQ(db->valueText(), QStringLiteral("0.0"));
}

TEST(Displays, RepaintOnlyWhenWhatTheyShowChanges) {
    EqCurveDisplay eq(nullptr);
    CompressorDisplay comp(nullptr);
    NoiseProfileDisplay noise(nullptr);
    for (QWidget* w : {static_cast<QWidget*>(&eq), static_cast<QWidget*>(&comp),
                       static_cast<QWidget*>(&noise)}) {
        w->resize(440, w->height());
        w->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(w));
    }
    EffectPreset preset;
    preset.eq.enabled = true;
    preset.eq.lowCutEnabled = true;
    eq.setPreset(preset);
    comp.setPreset(preset);
    for (int i = 0; i < CompressorDisplay::kHistory; ++i) {
        comp.push(-70.0f, 0.0f, -70.0f); // silence: clamped to the floor, flat
    }
    QTest::qWait(30);
    PanelTest::PaintCounter eqPaints, compPaints, noisePaints;
    eq.installEventFilter(&eqPaints);
    comp.installEventFilter(&compPaints);
    noise.installEventFilter(&noisePaints);
    const int updates = eq.updates();
    const int repaints = comp.historyRepaints();
    for (int tick = 0; tick < 30; ++tick) { // half a second of the dialog's timer
        eq.setPreset(preset);
        comp.setPreset(preset);
        comp.push(-60.0f, 0.0f, -60.0f);
        noise.setProfile(silentProfile());
        QCoreApplication::processEvents();
    }
    EXPECT_EQ(eq.updates(), updates);
    EXPECT_EQ(comp.historyRepaints(), repaints);
    EXPECT_EQ(eqPaints.paints + compPaints.paints + noisePaints.paints, 0);

    preset.eq.lowCutHz = 150.0f;
    eq.setPreset(preset);
    comp.push(-20.0f, 3.0f, -23.0f);
    QTest::qWait(30);
    EXPECT_EQ(eq.updates(), updates + 1);
    EXPECT_GE(eqPaints.paints, 1);
    EXPECT_GE(compPaints.paints, 1);
    EXPECT_FLOAT_EQ(comp.inputAt(CompressorDisplay::kHistory - 1), -20.0f);
    EXPECT_FLOAT_EQ(comp.gainReductionAt(CompressorDisplay::kHistory - 1), 3.0f);
    EXPECT_FLOAT_EQ(comp.inputAt(CompressorDisplay::kHistory - 2), -60.0f);
}

// The curve drawn is the one the compressor applies, over the knobs' ranges.
TEST(Displays, CompressorCurveIsTheCompressorsOwn) {
    constexpr double kToleranceDb = 1e-3; // float against double arithmetic
    CompParams c;
    c.enabled = true;
    for (float threshold : {-40.0f, -20.0f, -6.0f}) {
        for (float ratio : {1.0f, 2.5f, 6.0f}) {
            for (float knee : {0.0f, 6.0f, 12.0f}) {
                c.thresholdDb = threshold;
                c.ratio = ratio;
                c.kneeDb = knee;
                c.makeupGainDb = knee / 2.0f;
                for (double in = -60.0; in <= 0.0; in += 0.5) {
                    const double applied = in -
                                           Compressor::gainReductionDb(static_cast<float>(in), c) +
                                           c.makeupGainDb;
                    EXPECT_NEAR(CompressorDisplay::staticOutputDb(c, in), applied, kToleranceDb)
                        << threshold << " dB, " << ratio << ":1, knee " << knee << ", in " << in;
                }
            }
        }
    }
    c.enabled = false;
    EXPECT_DOUBLE_EQ(CompressorDisplay::staticOutputDb(c, -10.0), -10.0);
}

} // namespace
} // namespace Lumora
