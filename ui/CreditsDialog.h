#pragma once

#include <QDialog>

namespace Lumora {

// "Tindra Credits": who planned, drew and helped.
class CreditsDialog : public QDialog {
    Q_OBJECT
public:
    explicit CreditsDialog(QWidget* parent);
};

} // namespace Lumora
