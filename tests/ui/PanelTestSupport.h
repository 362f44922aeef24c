#pragma once

// Shared helpers of the panel tests: answering modal boxes from a timer,
// settings folders of their own, signals through the real chains.

#include "dsp/EffectPreset.h"
#include "dsp/SoundFxPreset.h"
#include "settings/SettingsStore.h"

#include <QColor>
#include <QEvent>
#include <QMessageBox>
#include <QPoint>
#include <QString>
#include <QTemporaryDir>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Lumora {

class VoiceChain;

namespace PanelTest {

// Presses `button` on the next message box that opens (modal: from a timer).
// `seen` receives the box's title and text.
void answerNextMessageBox(QMessageBox::StandardButton button, QString* title = nullptr,
                          QString* text = nullptr);

// A settings store in a folder of its own, deleted with it.
struct TempStore {
    QTemporaryDir dir;
    std::unique_ptr<SettingsStore> store;
    TempStore();
    SettingsStore* operator->() { return store.get(); }
    SettingsStore* get() { return store.get(); }
};

// A preset as the settings file keeps it: equal texts, equal settings (every
// field the file stores, whatever fields the presets gain).
std::string fileText(const EffectPreset& preset);
std::string fileText(const SoundFxPreset& preset);

// Types `text` into the number entry a knob opens on a double-click, then
// presses Enter (or cancels). Polls from a timer because the entry is modal.
void typeIntoNextInputDialog(const QString& text, bool accept = true);

// A name prompt for the panels that answers `name` (or cancels when empty).
std::function<bool(const QString&, const QString&, QString&)> answerName(const QString& name);

std::vector<float> sine(double hz, int frames, float amplitude, double rate = 48000.0);

// The level in dBFS of `x` from sample `from` on.
double rmsDb(const std::vector<float>& x, size_t from = 0);

// Steady-state gain in dB of `chain` (already prepared and set) at `hz`:
// a sine through it in 480-sample packets, the last third measured.
double measureGainDb(VoiceChain& chain, double hz, double rate = 48000.0);

// `top` (with its alpha) laid over the opaque `under`: the colour the eye gets.
QColor over(const QColor& top, const QColor& under);

} // namespace PanelTest
} // namespace Lumora

class QWidget;

namespace Lumora::PanelTest {
// Counts the paint events of the widgets it is installed on.
struct PaintCounter : QObject {
    int paints = 0;
    bool eventFilter(QObject*, QEvent* e) override {
        paints += e->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

// Sends one mouse event straight to `widget` (press, move or release of the
// left button at `pos` in the widget's coordinates).
void sendMouse(QWidget* widget, int type, const QPoint& pos);
} // namespace Lumora::PanelTest
