#pragma once

#include <QWidget>

class QScrollArea;
class QVBoxLayout;

namespace Lumora {

class MeterFaderWidget;

// A chain's tab: its meter-fader strip on top and, filling the rest, a scroll
// area for the chain's panel. Subclasses may put controls between the two.
class ChainPage : public QWidget {
    Q_OBJECT
public:
    MeterFaderWidget* strip() const { return strip_; }
    QScrollArea* scrollArea() const { return scroll_; }
    // Puts the panel into the scroll area (replacing the empty host).
    void setPanel(QWidget* panel);

protected:
    explicit ChainPage(QWidget* parent);
    // Adds a widget under the strip (and under any added before it).
    void addAboveScrollArea(QWidget* widget);

private:
    QVBoxLayout* layout_ = nullptr;
    MeterFaderWidget* strip_ = nullptr;
    QScrollArea* scroll_ = nullptr;
};

} // namespace Lumora
