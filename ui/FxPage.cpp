#include "ui/FxPage.h"

#include "ui/MeterFaderWidget.h"

namespace Lumora {

FxPage::FxPage(QWidget* parent) : ChainPage(parent) {
    retranslateUi();
}

void FxPage::retranslateUi() {
    strip()->setTitle(QStringLiteral("🎵 ") + tr("Voice effects"));
    strip()->retranslateUi();
}

} // namespace Lumora
