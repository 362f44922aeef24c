#include "ui/TrashButton.h"

#include <QPainter>
#include <QPainterPath>

namespace Lumora {

TrashButton::TrashButton(QWidget* parent) : QAbstractButton(parent) {
    setFixedSize(kLogicalSize, kLogicalSize);
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::TabFocus);
}

void TrashButton::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(width() / static_cast<qreal>(kLogicalSize),
            height() / static_cast<qreal>(kLogicalSize));

    const bool hot = isEnabled() && (underMouse() || isDown());
    const QColor ink = !isEnabled() ? QColor(0xC0, 0xC0, 0xD0)
                       : hot        ? QColor(0xE8, 0x5D, 0x75)
                                    : QColor(0x6B, 0x4E, 0xA0);
    p.setPen(Qt::NoPen);
    p.setBrush(hot ? QColor(232, 93, 117, 36) : QColor(107, 78, 160, 18));
    p.drawEllipse(QRectF(0.5, 0.5, 21, 21));

    QPen pen(ink, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(pen);
    p.setBrush(Qt::NoBrush);
    // Lid with its handle.
    p.drawLine(QPointF(6.5, 7.0), QPointF(15.5, 7.0));
    p.drawLine(QPointF(9.5, 7.0), QPointF(9.5, 5.5));
    p.drawLine(QPointF(9.5, 5.5), QPointF(12.5, 5.5));
    p.drawLine(QPointF(12.5, 5.5), QPointF(12.5, 7.0));
    // Tapered bin with two ribs.
    QPainterPath bin;
    bin.moveTo(7.5, 8.5);
    bin.lineTo(8.3, 16.5);
    bin.lineTo(13.7, 16.5);
    bin.lineTo(14.5, 8.5);
    p.drawPath(bin);
    p.drawLine(QPointF(10.0, 10.0), QPointF(10.2, 15.0));
    p.drawLine(QPointF(12.0, 10.0), QPointF(11.8, 15.0));
}

} // namespace Lumora
