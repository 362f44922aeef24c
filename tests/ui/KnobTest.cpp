#include "ui/Knob.h"
#include "PanelTestSupport.h"
#include "ui/CompressorDisplay.h"
#include "ui/EqCurveDisplay.h"
#include "ui/NoiseProfileDisplay.h"

#include <QApplication>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <cmath>

namespace Lumora {
namespace {

using PanelTest::sendMouse;

// Types `text` into the number entry that a double-click opens, then presses
// Enter (or cancels). Runs from a timer because the entry is modal.
void typeIntoNextInputDialog(const QString& text, bool accept = true) {
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, text, accept] {
        auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            return;
        }
        poll->stop();
        poll->deleteLater();
        QLineEdit* edit = dialog->findChild<QDoubleSpinBox*>()->findChild<QLineEdit*>();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        if (accept) {
            QTest::keyClick(edit, Qt::Key_Return);
        } else {
            dialog->reject();
        }
    });
    poll->start();
}

Knob* makeKnob(QWidget* parent, double min, double max, double value, bool log = false) {
    auto* knob = new Knob(parent);
    knob->setCaption(QStringLiteral("ピッチA"));
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
}

TEST(Knob, FillFractionIsLinearOrLogarithmicAndZeroForAnEmptyRange) {
    QWidget host;
    Knob* linear = makeKnob(&host, -12.0, 12.0, 6.0);
    EXPECT_DOUBLE_EQ(linear->fraction(), 0.75);
    Knob* log = makeKnob(&host, 60.0, 200.0, std::sqrt(60.0 * 200.0), true);
    EXPECT_NEAR(log->fraction(), 0.5, 1e-12); // the geometric middle
    Knob* empty = makeKnob(&host, 5.0, 5.0, 5.0);
    EXPECT_DOUBLE_EQ(empty->fraction(), 0.0);
}

TEST(Knob, LinearDragMovesAFiveHundredthOfTheRangePerPixel) {
    QWidget host;
    Knob* gate = makeKnob(&host, -80.0, -20.0, -55.0);
    drag(gate, 50);
    EXPECT_NEAR(gate->value(), -55.0 + 60.0 / 500.0 * 50.0, 1e-9);
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

TEST(Knob, TypedNumberIsClampedToTheRange) {
    QWidget host;
    Knob* knob = makeKnob(&host, -12.0, 12.0, 0.0);
    host.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&host));
    QSignalSpy spy(knob, &Knob::valueChanged);
    typeIntoNextInputDialog(QStringLiteral("20"));
    QTest::mouseDClick(knob, Qt::LeftButton);
    EXPECT_DOUBLE_EQ(knob->value(), 12.0);
    ASSERT_EQ(spy.count(), 1);
    EXPECT_DOUBLE_EQ(spy.last().at(0).toDouble(), 12.0);

    typeIntoNextInputDialog(QStringLiteral("-3"), false); // cancelled: no change
    EXPECT_FALSE(knob->editValue());
    EXPECT_DOUBLE_EQ(knob->value(), 12.0);
}

TEST(Knob, NumberEntryIsTitledWithTheCaption) {
    QWidget host;
    Knob* knob = makeKnob(&host, -12.0, 12.0, 0.0);
    QString title;
    QString label;
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, poll, [&] {
        if (auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget())) {
            title = dialog->windowTitle();
            label = dialog->labelText();
            dialog->reject();
            poll->stop();
            poll->deleteLater();
        }
    });
    poll->start();
    knob->editValue();
    EXPECT_EQ(title, QStringLiteral("ピッチA"));
    EXPECT_EQ(label, QStringLiteral("ピッチA:"));
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

// Counts paint events of a widget.
struct Paints : QObject {
    int count = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        count += e->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

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
    Paints eqPaints, compPaints, noisePaints;
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
    EXPECT_EQ(eqPaints.count + compPaints.count + noisePaints.count, 0);

    preset.eq.lowCutHz = 150.0f;
    eq.setPreset(preset);
    comp.push(-20.0f, 3.0f, -23.0f);
    QTest::qWait(30);
    EXPECT_EQ(eq.updates(), updates + 1);
    EXPECT_GE(eqPaints.count, 1);
    EXPECT_GE(compPaints.count, 1);
    EXPECT_FLOAT_EQ(comp.inputAt(CompressorDisplay::kHistory - 1), -20.0f);
    EXPECT_FLOAT_EQ(comp.gainReductionAt(CompressorDisplay::kHistory - 1), 3.0f);
    EXPECT_FLOAT_EQ(comp.inputAt(CompressorDisplay::kHistory - 2), -60.0f);
}

TEST(Displays, CompressorCurveFollowsTheCompressorsOwnLaw) {
    CompParams c;
    c.enabled = true;
    c.thresholdDb = -20.0f;
    c.ratio = 4.0f;
    c.kneeDb = 6.0f;
    c.makeupGainDb = 3.0f;
    EXPECT_DOUBLE_EQ(CompressorDisplay::staticOutputDb(c, -40.0), -37.0); // below the knee
    // Above the knee: 10 dB over, 3/4 of it taken off.
    EXPECT_DOUBLE_EQ(CompressorDisplay::staticOutputDb(c, -10.0), -10.0 - 7.5 + 3.0);
    // At the threshold, inside the knee: (3/4)·(0 + 3)² / 12.
    EXPECT_DOUBLE_EQ(CompressorDisplay::staticOutputDb(c, -20.0), -20.0 - 0.5625 + 3.0);
    c.enabled = false;
    EXPECT_DOUBLE_EQ(CompressorDisplay::staticOutputDb(c, -10.0), -10.0);
}

} // namespace
} // namespace Lumora
