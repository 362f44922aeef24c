#pragma once

#include <QFrame>
#include <QPoint>

class QHBoxLayout;
class QLabel;
class QToolButton;
class QVBoxLayout;

namespace Lumora {

class ToggleSwitch;

// A white card with a title row and a body that folds away. The title row can
// carry an on/off switch for what the card controls, a drag handle "⠿" by
// which the card is moved to another place in its column, and further small
// widgets (a preset button, a reset button). Clicking the title or the arrow
// folds or unfolds the body.
//
// The card does not move itself: it reports the handle's drag in global
// coordinates and the column it sits in decides where it goes.
class CollapsibleSection : public QFrame {
    Q_OBJECT
public:
    explicit CollapsibleSection(QWidget* parent);

    void setTitle(const QString& title);
    QString title() const;
    void setTitleToolTip(const QString& tip);
    QLabel* titleLabel() const { return title_; }

    // The on/off switch in the title row (hidden until enabled).
    void setSwitchEnabled(bool on);
    ToggleSwitch* toggle() const { return toggle_; }
    // The drag handle at the left of the title row (hidden until enabled).
    void setDragHandleEnabled(bool on);
    QLabel* dragHandle() const { return handle_; }
    bool isDragging() const { return dragging_; }

    // Adds a small widget to the title row, before the switch.
    void addHeaderWidget(QWidget* widget);

    QWidget* body() const { return body_; }
    QVBoxLayout* bodyLayout() const { return bodyLayout_; }

    void setExpanded(bool expanded);
    bool isExpanded() const { return expanded_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void expandedChanged(bool expanded);
    void dragStarted();
    void dragMoved(const QPoint& globalPos);
    void dragReleased(const QPoint& globalPos);

private:
    QLabel* handle_ = nullptr;
    QToolButton* arrow_ = nullptr;
    QLabel* title_ = nullptr;
    QHBoxLayout* headerExtras_ = nullptr;
    ToggleSwitch* toggle_ = nullptr;
    QWidget* body_ = nullptr;
    QVBoxLayout* bodyLayout_ = nullptr;
    bool expanded_ = true;
    bool dragging_ = false;
};

} // namespace Lumora
