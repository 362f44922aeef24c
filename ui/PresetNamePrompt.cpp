#include "ui/PresetNamePrompt.h"

#include <QInputDialog>
#include <QLineEdit>

namespace Lumora {

bool promptForPresetName(QWidget* parent, const QString& title, const QString& label,
                         QString& name) {
    bool ok = false;
    const QString typed =
        QInputDialog::getText(parent, title, label, QLineEdit::Normal, name, &ok).trimmed();
    if (!ok || typed.isEmpty()) {
        return false;
    }
    name = typed;
    return true;
}

} // namespace Lumora
