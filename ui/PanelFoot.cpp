#include "ui/PanelFoot.h"

#include "ui/Theme.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace Lumora {

QHBoxLayout* saveAndResetRow(QWidget* panel, QPushButton*& save, QPushButton*& reset) {
    const QString footStyle = QStringLiteral("QPushButton { font-size: 9pt; padding: 6px 10px; }");
    auto* row = new QHBoxLayout();
    row->setSpacing(8);
    save = new QPushButton(panel);
    save->setStyleSheet(Styles::darkButton() + footStyle);
    reset = new QPushButton(panel);
    reset->setStyleSheet(Styles::outlinedButton() + footStyle);
    for (QPushButton* b : {save, reset}) {
        b->setCursor(Qt::PointingHandCursor);
        markPanel(b, 10);
        row->addWidget(b, 1);
    }
    return row;
}

} // namespace Lumora
