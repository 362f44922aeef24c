#pragma once

#include <QAbstractButton>

namespace Lumora {

// A small round button with a waste-bin drawing, for removing a row (an
// equaliser band, a preset). Painted from a logical 22 × 22 area; the bin
// turns rose while the pointer is over it.
class TrashButton : public QAbstractButton {
    Q_OBJECT
public:
    static constexpr int kLogicalSize = 22;

    explicit TrashButton(QWidget* parent);

    QSize sizeHint() const override { return QSize(kLogicalSize, kLogicalSize); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Lumora
