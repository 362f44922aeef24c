#pragma once

#include <QPointer>
#include <QRegion>
#include <QWidget>

#include <vector>

namespace Lumora {

// Knows the white panels (widgets marked with markPanel) inside a window and
// the area they cover, so the window's animated background can leave them out.
class PanelTracker {
public:
    // Finds the marked widgets among `root`'s descendants (again after panels
    // were added or removed).
    void collect(const QWidget* root);
    // The area, in `root`'s coordinates, under the visible panels, each clipped
    // by the scroll areas and pages it sits in.
    QRegion region(const QWidget* root) const;
    size_t count() const { return panels_.size(); }

private:
    std::vector<QPointer<QWidget>> panels_;
};

} // namespace Lumora
