#include "ui/KeyBadgeBoard.h"
#include "ui/Theme.h"

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
        p.setBrush(Palette::colour(Palette::kInk, 30));
        p.drawRoundedRect(kKeys[i].translated(0, 3), 12, 12);
        p.setPen(QPen(Palette::colour(Palette::kTeal), on ? 0 : 1.5));
        p.setBrush(on ? Palette::colour(Palette::kTeal) : Palette::colour(Palette::kWhite, 230));
        p.drawRoundedRect(kKeys[i], 12, 12);
        p.setPen(Palette::colour(on ? Palette::kInk : Palette::kTealInk));
        p.drawText(kKeys[i], Qt::AlignCenter, QString::fromUtf8(kGlyphs[i]));
    }
}

} // namespace Lumora
