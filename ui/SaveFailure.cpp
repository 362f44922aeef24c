#include "ui/SaveFailure.h"

#include "settings/SettingsStore.h"

#include <QCoreApplication>

namespace Lumora {

QString saveFailureText(const SettingsStore* store, const QString& fallback) {
    if (store && store->heldByNewerVersion()) {
        return QCoreApplication::translate(
                   "Lumora::SaveFailure",
                   "The settings file was written by a newer version of Lumora. It is kept "
                   "as it is and nothing is saved over it; update Lumora to save again.\n%1")
            .arg(QString::fromStdString(store->settingsPath()));
    }
    return fallback;
}

} // namespace Lumora
