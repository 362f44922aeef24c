#include "ui/TrashButton.h"
#include "ui/Theme.h"

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
    const QColor ink = !isEnabled() ? Palette::colour(Palette::kGreyLight)
                       : hot        ? Palette::colour(Palette::kBad)
                                    : Palette::colour(Palette::kLilac);
    p.setPen(Qt::NoPen);
    p.setBrush(hot ? Palette::colour(Palette::kBad, 36) : Palette::colour(Palette::kLilac, 18));
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
