#include "ui/KeyCap.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>

namespace Lumora {

KeyCap::KeyCap(QWidget* parent, int slot) : QAbstractButton(parent), slot_(slot) {
    setCursor(Qt::PointingHandCursor);
    setFixedSize(kLogicalWidth, kLogicalHeight);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::NoFocus); // the arrow keys belong to the dialog
}

void KeyCap::setGlyph(const QString& glyph) {
    if (glyph_ != glyph) {
        glyph_ = glyph;
        update();
    }
}

void KeyCap::setName(const QString& name) {
    if (name_ != name) {
        name_ = name;
        update();
    }
}

void KeyCap::setLamp(bool lit) {
    if (lamp_ != lit) {
        lamp_ = lit;
        update();
    }
}

void KeyCap::setSelected(bool selected) {
    if (selected_ != selected) {
        selected_ = selected;
        update();
    }
}

void KeyCap::setFlash(bool on) {
    if (flash_ != on) {
        flash_ = on;
        update();
    }
}

QStringList KeyCap::nameLines(const QString& name) {
    for (const QChar plus : {QChar(0xFF0B), QChar('+')}) {
        const int at = name.indexOf(plus, 1);
        if (at > 0) {
            return {name.left(at).trimmed(), name.mid(at).trimmed()};
        }
    }
    return {name};
}

void KeyCap::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.scale(width() / static_cast<qreal>(kLogicalWidth),
            height() / static_cast<qreal>(kLogicalHeight));

    const QRectF key(2.0, 2.0, kLogicalWidth - 4.0, kLogicalHeight - 6.0);
    // The key's side, then its top.
    p.setPen(Qt::NoPen);
    p.setBrush(Palette::colour(Palette::kInk, 40));
    p.drawRoundedRect(key.translated(0, 3), 10, 10);
    QLinearGradient top(key.topLeft(), key.bottomLeft());
    if (flash_ || isDown()) {
        top.setColorAt(0.0, Palette::colour(Palette::kTealLight));
        top.setColorAt(1.0, Palette::colour(Palette::kTealBlue));
    } else {
        top.setColorAt(0.0, Qt::white);
        top.setColorAt(1.0, underMouse() ? Palette::colour(Palette::kPaleBlue)
                                         : Palette::colour(Palette::kPaleLilac));
    }
    p.setBrush(top);
    p.setPen(selected_ ? QPen(Palette::colour(Palette::kTeal), 2.5)
                       : QPen(Palette::colour(Palette::kLilacLine, 120), 1));
    p.drawRoundedRect(key, 10, 10);

    const QColor ink = Palette::colour(Palette::kInk);
    const QStringList lines = nameLines(name_);
    // Two lines of name leave the glyph a little less room.
    const bool twoLines = lines.size() > 1;
    QFont glyphFont = font();
    glyphFont.setPointSizeF(twoLines ? 10.0 : 13.0);
    glyphFont.setBold(true);
    p.setFont(glyphFont);
    p.setPen(ink);
    p.drawText(QRectF(key.left(), key.top() + 1, key.width(), twoLines ? 17 : 24), Qt::AlignCenter,
               glyph_);

    // Never below a readable size (inside OBS a shrinking name ended at 6 pt,
    // cut off): a long name is elided instead, and shown whole in the tool tip.
    QFont nameFont = font();
    nameFont.setPointSizeF(kNamePointSize);
    p.setFont(nameFont);
    p.setPen(Palette::colour(flash_ || isDown() ? Palette::kInk : Palette::kLilac));
    const QFontMetricsF metrics(nameFont);
    const qreal lineHeight = std::min(metrics.height(), (key.height() - 19.0) / 2.0);
    qreal y = twoLines ? key.top() + 18 : key.top() + 26 + lineHeight * 0.3;
    for (const QString& line : lines) {
        const QString shown = metrics.elidedText(line, Qt::ElideRight, key.width() - 10);
        p.drawText(QRectF(key.left() + 5, y, key.width() - 10, lineHeight), Qt::AlignCenter, shown);
        y += lineHeight;
    }

    // The lamp; the default slot has none (it is never the active slot).
    if (slot_ >= 4) {
        return;
    }
    const QPointF lampAt(key.right() - 10, key.top() + 10);
    if (lamp_) {
        QRadialGradient glow(lampAt, 9);
        glow.setColorAt(0.0, Palette::colour(Palette::kGlowMint, 200));
        glow.setColorAt(1.0, Palette::colour(Palette::kGlowMint, 0));
        p.setPen(Qt::NoPen);
        p.setBrush(glow);
        p.drawEllipse(lampAt, 9, 9);
        p.setBrush(Palette::colour(Palette::kGlowMint));
    } else {
        p.setBrush(Palette::colour(Palette::kLilacMist));
    }
    p.setPen(QPen(Qt::white, 1.0));
    p.drawEllipse(lampAt, 4, 4);
}

} // namespace Lumora
