#include "module/DialogRegistry.h"

#include "ui/WizardDialog.h"

#include <obs-frontend-api.h>

#include <QCoreApplication>
#include <QPointer>
#include <QThread>
#include <QWidget>
#include <map>

namespace Lumora {

namespace {

std::map<ObsFilterState*, QPointer<WizardDialog>>& dialogs() {
    static std::map<ObsFilterState*, QPointer<WizardDialog>> map;
    return map;
}

} // namespace

void openDialogFor(ObsFilterState* state) {
    auto& map = dialogs();
    if (auto it = map.find(state); it != map.end()) {
        if (WizardDialog* dialog = it->second.data()) {
            dialog->show();
            dialog->raise();
            dialog->activateWindow();
            return;
        }
        map.erase(it);
    }
    auto* parent = static_cast<QWidget*>(obs_frontend_get_main_window());
    auto* dialog = new WizardDialog(parent, state);
    map[state] = dialog;
    dialog->show();
}

void closeDialogFor(ObsFilterState* state) {
    auto& map = dialogs();
    auto it = map.find(state);
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

void closeDialogThenRelease(ObsFilterState* state, void (*release)(ObsFilterState*)) {
    QCoreApplication* app = QCoreApplication::instance();
    if (!app || QThread::currentThread() == app->thread()) {
        closeDialogFor(state);
        release(state);
        return;
    }
    QMetaObject::invokeMethod(
        app,
        [state, release] {
            closeDialogFor(state);
            release(state);
        },
        Qt::QueuedConnection);
}

bool hasDialogFor(ObsFilterState* state) {
    auto it = dialogs().find(state);
    return it != dialogs().end() && !it->second.isNull();
}

} // namespace Lumora
