#include "ui/ResetPrompt.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace Lumora {

bool confirmResetToDefaults(QWidget* parent) {
    // Literal contexts, so that regenerating the translation source finds them.
    QMessageBox box(QMessageBox::Question,
                    QCoreApplication::translate("Lumora::ResetPrompt", "Reset"),
                    QCoreApplication::translate("Lumora::ResetPrompt", "Reset to defaults?"),
                    QMessageBox::Ok | QMessageBox::Cancel, parent);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

} // namespace Lumora
