#pragma once

#include <QWidget>

namespace Lumora {

// The four arrow keys in a cross, as on a keyboard; the key being pressed lights
// up. Shown on the keys tab so the user can try the keys without switching
// voices. Painted from a logical 240 x 140 area.
class KeyBadgeBoard : public QWidget {
    Q_OBJECT
public:
    explicit KeyBadgeBoard(QWidget* parent);

    // Slots 0 Up, 1 Down, 2 Left, 3 Right.
    void setPressed(int slot, bool pressed);
    int litSlot() const { return lit_; }

    QSize sizeHint() const override { return QSize(240, 140); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int lit_ = -1;
};

} // namespace Lumora
