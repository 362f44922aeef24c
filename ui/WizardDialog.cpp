#include "ui/WizardDialog.h"

#include "ui/Localisation.h"

namespace Lumora {

WizardDialog::WizardDialog(QWidget* parent, ObsFilterState* state)
    : QDialog(parent), state_(state) {
    setWindowTitle(QStringLiteral("Tindra"));
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_StyledBackground);
    applyLanguage(currentLanguage());
    setFixedSize(500, 776);
}

WizardDialog::~WizardDialog() = default;

void WizardDialog::detach() { state_ = nullptr; }

} // namespace Lumora
