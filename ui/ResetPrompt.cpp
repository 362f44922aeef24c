#include "ui/ResetPrompt.h"

#include <QCoreApplication>
#include <QMessageBox>

namespace Lumora {

bool confirmResetToDefaults(QWidget* parent) {
    // The texts keep the translation context the sound panel gave them.
    const char* context = "Lumora::EffectPanel";
    QMessageBox box(QMessageBox::Question, QCoreApplication::translate(context, "Reset"),
                    QCoreApplication::translate(context, "Reset to defaults?"),
                    QMessageBox::Ok | QMessageBox::Cancel, parent);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ok;
}

} // namespace Lumora
