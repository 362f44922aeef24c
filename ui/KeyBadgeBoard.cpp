#include "ui/KeyBadgeBoard.h"

#include <QPainter>

#include <algorithm>

namespace Lumora {

namespace {
const QRectF kKeys[4] = {
    QRectF(92, 6, 56, 56),   // Up
    QRectF(92, 72, 56, 56),  // Down
    QRectF(26, 72, 56, 56),  // Left
    QRectF(158, 72, 56, 56), // Right
};
const char* const kGlyphs[4] = {"▲", "▼", "◀", "▶"};
} // namespace

KeyBadgeBoard::KeyBadgeBoard(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    setMinimumSize(240, 140);
}

void KeyBadgeBoard::setPressed(int slot, bool pressed) {
    const int lit = pressed ? slot : (slot == lit_ ? -1 : lit_);
    if (lit != lit_) {
        lit_ = lit;
        update();
    }
}

void KeyBadgeBoard::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal scale = std::min(width() / 240.0, height() / 140.0);
    p.translate((width() - 240.0 * scale) / 2.0, (height() - 140.0 * scale) / 2.0);
    p.scale(scale, scale);
    QFont font = p.font();
    font.setPointSizeF(16);
    p.setFont(font);
    for (int i = 0; i < 4; ++i) {
        const bool on = i == lit_;
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(45, 27, 105, 30));
        p.drawRoundedRect(kKeys[i].translated(0, 3), 12, 12);
        p.setPen(QPen(QColor(0x4E, 0xCD, 0xC4), on ? 0 : 1.5));
        p.setBrush(on ? QColor(0x4E, 0xCD, 0xC4) : QColor(255, 255, 255, 230));
        p.drawRoundedRect(kKeys[i], 12, 12);
        p.setPen(on ? QColor(Qt::white) : QColor(0x00, 0xA8, 0x96));
        p.drawText(kKeys[i], Qt::AlignCenter, QString::fromUtf8(kGlyphs[i]));
    }
}

} // namespace Lumora
