#include "PanelTestSupport.h"

#include "dsp/VoiceChain.h"
#include "settings/PresetFile.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include <cmath>
#include <functional>

namespace Lumora::PanelTest {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Runs `answer` on the next modal widget of type T once it is up. Polled from
// a timer: a fixed delay would race a slow machine.
template <typename T>
void whenModal(std::function<void(T*)> answer) {
    auto* poll = new QTimer;
    poll->setInterval(20);
    QObject::connect(poll, &QTimer::timeout, poll, [poll, answer] {
        auto* modal = qobject_cast<T*>(QApplication::activeModalWidget());
        if (!modal) {
            return;
        }
        poll->stop();
        poll->deleteLater();
        answer(modal);
    });
    poll->start();
}

} // namespace

void answerNextMessageBox(QMessageBox::StandardButton button, QString* title, QString* text) {
    whenModal<QMessageBox>([button, title, text](QMessageBox* box) {
        if (title) {
            *title = box->windowTitle();
        }
        if (text) {
            *text = box->text();
        }
        if (QAbstractButton* b = box->button(button)) {
            b->click();
        } else {
            box->reject();
        }
    });
}

void typeIntoNextInputDialog(const QString& text, bool accept) {
    whenModal<QInputDialog>([text, accept](QInputDialog* dialog) {
        QLineEdit* edit = dialog->findChild<QDoubleSpinBox*>()->findChild<QLineEdit*>();
        edit->selectAll();
        QTest::keyClicks(edit, text);
        if (accept) {
            QTest::keyClick(edit, Qt::Key_Return);
        } else {
            dialog->reject();
        }
    });
}

double rmsDb(const std::vector<float>& x, size_t from) {
    double sum = 0.0;
    for (size_t i = from; i < x.size(); ++i) {
        sum += static_cast<double>(x[i]) * x[i];
    }
    const double n = static_cast<double>(x.size() > from ? x.size() - from : 0);
    return 10.0 * std::log10(std::max(sum / std::max(n, 1.0), 1e-30));
}

std::string fileText(const EffectPreset& preset) {
    SavedEffectPreset saved;
    saved.preset = preset;
    return effectPresetText(saved);
}

std::string fileText(const SoundFxPreset& preset) {
    SavedSoundFxPreset saved;
    saved.preset = preset;
    return soundFxPresetText(saved);
}

TempStore::TempStore() : store(std::make_unique<SettingsStore>(dir.path().toStdString())) {}

std::function<bool(const QString&, const QString&, QString&)> answerName(const QString& name) {
    return [name](const QString&, const QString&, QString& out) {
        if (name.isEmpty()) {
            return false;
        }
        out = name;
        return true;
    };
}

std::vector<float> sine(double hz, int frames, float amplitude, double rate) {
    std::vector<float> x(static_cast<size_t>(frames));
    for (int i = 0; i < frames; ++i) {
        x[static_cast<size_t>(i)] =
            amplitude * static_cast<float>(std::sin(2.0 * kPi * hz * i / rate));
    }
    return x;
}

double measureGainDb(VoiceChain& chain, double hz, double rate) {
    const int frames = static_cast<int>(rate * 0.6);
    const std::vector<float> in = sine(hz, frames, 0.1f, rate);
    std::vector<float> out = in;
    for (int at = 0; at < frames; at += 480) {
        float* planes[1] = {out.data() + at};
        chain.process(planes, 1, std::min(480, frames - at));
    }
    const size_t from = static_cast<size_t>(frames) * 2 / 3;
    return rmsDb(out, from) - rmsDb(in, from);
}

QColor over(const QColor& top, const QColor& under) {
    const qreal a = top.alphaF();
    return QColor::fromRgbF(top.redF() * a + under.redF() * (1 - a),
                            top.greenF() * a + under.greenF() * (1 - a),
                            top.blueF() * a + under.blueF() * (1 - a));
}

} // namespace Lumora::PanelTest

#include <QMouseEvent>
#include <QWidget>

namespace Lumora::PanelTest {

void sendMouse(QWidget* widget, int type, const QPoint& pos) {
    const auto kind = static_cast<QEvent::Type>(type);
    const Qt::MouseButton button = kind == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    const Qt::MouseButtons held =
        kind == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(kind, QPointF(pos), QPointF(widget->mapToGlobal(pos)), button, held,
                      Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

} // namespace Lumora::PanelTest
