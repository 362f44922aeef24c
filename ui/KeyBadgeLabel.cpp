#include "ui/KeyBadgeLabel.h"
#include "ui/Theme.h"

namespace Lumora {

KeyBadgeLabel::KeyBadgeLabel(QWidget* parent) : QLabel(parent) {
    setObjectName(QStringLiteral("keyBadge"));
    setAlignment(Qt::AlignCenter);
    setFixedHeight(32);
    showBadge(KeyBadge{"", kBadgeIdleStyle});
}

void KeyBadgeLabel::showBadge(const KeyBadge& badge) {
    // Restyling a label re-polishes it: only when something changed.
    const QString text = QString::fromStdString(badge.text);
    const QString style = QString::fromStdString(badge.styleSheet);
    if (this->text() != text) {
        setText(text);
    }
    if (styleSheet() != style) {
        setStyleSheet(themed(style));
    }
}

} // namespace Lumora
