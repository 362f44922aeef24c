#pragma once

#include "settings/KeyAssignmentRules.h"

#include <QLabel>

namespace Lumora {

// The rounded label in the dialog's header that names the active key slot:
// empty and transparent when none is active, teal while a key is held, darker
// teal while one is toggled on. Text and style come from KeyAssignmentRules.
class KeyBadgeLabel : public QLabel {
    Q_OBJECT
public:
    explicit KeyBadgeLabel(QWidget* parent);

    void showBadge(const KeyBadge& badge);
};

} // namespace Lumora
