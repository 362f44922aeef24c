#include "ui/NoiseProfileDisplay.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Lumora {

NoiseProfileDisplay::NoiseProfileDisplay(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kLogicalHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TranslucentBackground);
}

void NoiseProfileDisplay::setProfile(const std::array<float, kProfileBandCount>& profileDb,
                                     bool live) {
    if (profileDb == profile_ && live == live_) {
        return;
    }
    profile_ = profileDb;
    live_ = live;
    update();
}

void NoiseProfileDisplay::setEmptyText(const QString& text) {
    if (emptyText_ != text) {
        emptyText_ = text;
        update();
    }
}

void NoiseProfileDisplay::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const qreal w = beginDisplay(p, *this, kLogicalHeight);
    const qreal h = kLogicalHeight;

    const QRectF plot(8.0, 6.0, w - 16.0, h - 18.0);
    const qreal barWidth = plot.width() / kProfileBandCount;
    p.setPen(Qt::NoPen);
    const QColor bar =
        live_ ? Palette::colour(Palette::kLilacPale, 200) : Palette::colour(Palette::kTeal, 220);
    for (int b = 0; b < kProfileBandCount; ++b) {
        const float db = profile_[static_cast<size_t>(b)];
        if (!std::isfinite(db) || db <= kBottomDb) {
            continue;
        }
        const double f = std::clamp((db - kBottomDb) / (kTopDb - kBottomDb), 0.0f, 1.0f);
        const qreal top = plot.bottom() - f * plot.height();
        p.setBrush(bar);
        p.drawRect(QRectF(plot.left() + b * barWidth + 0.5, top, std::max(barWidth - 1.0, 1.0),
                          plot.bottom() - top));
    }

    const bool empty = std::none_of(profile_.begin(), profile_.end(),
                                    [](float db) { return std::isfinite(db) && db > kBottomDb; });
    if (empty && !emptyText_.isEmpty()) {
        QFont hint = font();
        hint.setPointSizeF(8.0);
        p.setFont(hint);
        p.setPen(Palette::colour(Palette::kDisplayText, Palette::kDisplayTextAlpha));
        p.drawText(plot, Qt::AlignCenter | Qt::TextWordWrap, emptyText_);
    }

    // Decade marks: band b starts at 20·(24000/20)^(b/64) Hz at 48 kHz.
    QFont small = font();
    small.setPointSizeF(6.0);
    p.setFont(small);
    p.setPen(Palette::colour(Palette::kDisplayText, Palette::kDisplayTextAlpha));
    const double span = std::log(24000.0 / 20.0);
    const double marks[] = {100.0, 1000.0, 10000.0};
    const char* text[] = {"100", "1k", "10k"};
    for (int i = 0; i < 3; ++i) {
        const qreal x = plot.left() + plot.width() * std::log(marks[i] / 20.0) / span;
        p.drawText(QRectF(x - 14, plot.bottom() + 1, 28, 10), Qt::AlignCenter,
                   QString::fromLatin1(text[i]));
    }
}

} // namespace Lumora
