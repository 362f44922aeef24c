#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QVBoxLayout;

namespace Lumora {

class ToggleSwitch;

// A titled group inside a section card ("Noise Gate", "Limiter"): a small
// blue title, an optional small on/off switch at its right, and a body.
class SubGroup : public QWidget {
    Q_OBJECT
public:
    // The title style of every sub-group.
    static const char* const kTitleStyle;

    SubGroup(QWidget* parent, bool withSwitch);

    void setTitle(const QString& title);
    QLabel* titleLabel() const { return title_; }
    ToggleSwitch* toggle() const { return toggle_; }
    QVBoxLayout* bodyLayout() const { return body_; }
    // Adds a widget to the title row, left of the switch.
    void addHeaderWidget(QWidget* widget);

private:
    QLabel* title_ = nullptr;
    ToggleSwitch* toggle_ = nullptr;
    QVBoxLayout* body_ = nullptr;
    QHBoxLayout* header_ = nullptr;
};

} // namespace Lumora
