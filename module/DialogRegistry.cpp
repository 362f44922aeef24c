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

std::map<FilterEngine*, QPointer<WizardDialog>>& dialogs() {
    static std::map<FilterEngine*, QPointer<WizardDialog>> map;
    return map;
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
