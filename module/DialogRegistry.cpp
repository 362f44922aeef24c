#include "module/DialogRegistry.h"

#include "ui/FxPage.h"
#include "ui/MeterFaderWidget.h"
#include "ui/SoundFxPanel.h"
#include "ui/WizardDialog.h"

#include <obs-frontend-api.h>
#include <obs-module.h>

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QWidget>
#include <cstdio>
#include <map>
#include <string>

namespace Lumora {

namespace {

std::map<FilterEngine*, QPointer<WizardDialog>>& dialogs() {
    static std::map<FilterEngine*, QPointer<WizardDialog>> map;
    return map;
}

// The voice effects as the dialog's FX page shows them, for the OBS log that a
// user sends with a report: "pitch +12.0 st, reverb", "none", "(bypassed)".
std::string shownVoice(const WizardDialog& dialog) {
    const SoundFxPreset& fx = dialog.soundFxPanel()->currentPreset();
    std::string text;
    auto add = [&text](const std::string& part) { text += (text.empty() ? "" : ", ") + part; };
    if (fx.pitch.enabled) {
        char pitch[32];
        std::snprintf(pitch, sizeof pitch, "pitch %+.1f st",
                      static_cast<double>(fx.pitch.semitonesA));
        add(pitch);
    }
    if (fx.mod.enabled) {
        add("modulation");
    }
    if (fx.radio.enabled) {
        add("radio");
    }
    if (fx.delay.enabled) {
        add("delay");
    }
    if (fx.reverb.enabled) {
        add("reverb");
    }
    if (text.empty()) {
        text = "none";
    }
    return dialog.fxPage()->strip()->bypass() ? text + " (bypassed)" : text;
}

} // namespace

void openDialogFor(FilterEngine* engine) {
    auto& map = dialogs();
    if (auto it = map.find(engine); it != map.end()) {
        if (WizardDialog* dialog = it->second.data()) {
            dialog->show();
            dialog->raise();
            dialog->activateWindow();
            return;
        }
        map.erase(it);
    }
    auto* parent = static_cast<QWidget*>(obs_frontend_get_main_window());
    auto* dialog = new WizardDialog(parent, engine);
    map[engine] = dialog;
    dialog->show();
    blog(LOG_INFO, "[Lumora] dialog opened; voice effects shown: %s", shownVoice(*dialog).c_str());
}

void closeDialogFor(FilterEngine* engine) {
    auto& map = dialogs();
    auto it = map.find(engine);
    if (it == map.end()) {
        return;
    }
    if (WizardDialog* dialog = it->second.data()) {
        dialog->detach();
        dialog->close();
        dialog->deleteLater();
    }
    map.erase(it);
}

void closeDialogThenRelease(FilterEngine* engine, void (*release)(FilterEngine*)) {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app || QThread::currentThread() == app->thread()) {
        closeDialogFor(engine);
        release(engine);
        return;
    }
    QMetaObject::invokeMethod(
        app,
        [engine, release] {
            closeDialogFor(engine);
            release(engine);
        },
        Qt::QueuedConnection);
}

bool hasDialogFor(FilterEngine* engine) {
    auto it = dialogs().find(engine);
    return it != dialogs().end() && !it->second.isNull();
}

} // namespace Lumora
