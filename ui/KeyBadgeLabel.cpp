#include "ui/KeyBadgeLabel.h"

namespace Lumora {

KeyBadgeLabel::KeyBadgeLabel(QWidget* parent) : QLabel(parent) {
    setAlignment(Qt::AlignCenter);
    apply(this, KeyBadge{"", kBadgeIdleStyle});
}

void KeyBadgeLabel::showBadge(const KeyBadge& badge) {
    apply(this, badge);
}

void KeyBadgeLabel::apply(QLabel* label, const KeyBadge& badge) {
    const QString text = QString::fromStdString(badge.text);
    const QString style = QString::fromStdString(badge.styleSheet);
    if (label->text() != text) {
        label->setText(text);
    }
    if (label->styleSheet() != style) {
        label->setStyleSheet(style);
    }
}

} // namespace Lumora
