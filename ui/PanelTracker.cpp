#include "ui/PanelTracker.h"

#include "ui/Theme.h"

namespace Lumora {

void PanelTracker::collect(const QWidget* root) {
    panels_.clear();
    const QList<QWidget*> children = root->findChildren<QWidget*>();
    for (QWidget* child : children) {
        if (child->property(kPanelRadiusProperty).isValid()) {
            panels_.emplace_back(child);
        }
    }
}

QRegion PanelTracker::region(const QWidget* root) const {
    QRegion covered;
    for (const QPointer<QWidget>& guarded : panels_) {
        QWidget* panel = guarded.data();
        if (panel == nullptr || !panel->isVisible()) {
            continue;
        }
        // The whole rectangle, rounded corners included: a sprite drawn in a
        // corner would make the panel and its text repaint, and the few pixels
        // outside the rounding are not worth it.
        QRect rect(panel->mapTo(root, QPoint(0, 0)), panel->size());
        for (QWidget* p = panel->parentWidget(); p && p != root; p = p->parentWidget()) {
            rect &= QRect(p->mapTo(root, QPoint(0, 0)), p->size());
        }
        if (!rect.isEmpty()) {
            covered += rect;
        }
    }
    return covered;
}

} // namespace Lumora
