#include "ui/LevelMeter.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace Lumora {

LevelMeter::LevelMeter(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

int LevelMeter::pixelFor(float db) const {
    return static_cast<int>(PeakHold::fraction(db) * static_cast<float>(width()) + 0.5f);
}

void LevelMeter::setLevel(float db) {
    meter_.update(db);
    const int levelPx = pixelFor(meter_.levelDb);
    const int peakPx = pixelFor(meter_.peakDb);
    if (levelPx != shownLevelPx_ || peakPx != shownPeakPx_) {
        update();
    }
}

void LevelMeter::clear() {
    meter_.reset();
    update();
}

void LevelMeter::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const qreal radius = r.height() / 2.0;

    QPainterPath track;
    track.addRoundedRect(r, radius, radius);
    p.fillPath(track, QColor(200, 180, 240, 70));

    shownLevelPx_ = pixelFor(meter_.levelDb);
    shownPeakPx_ = pixelFor(meter_.peakDb);
    if (shownLevelPx_ > 0) {
        // Mint for speech, apricot near -6 dB, rose at the top.
        QLinearGradient fill(0, 0, width(), 0);
        fill.setColorAt(0.0, QColor(0x4E, 0xCD, 0xC4));
        fill.setColorAt(0.75, QColor(0x45, 0xB7, 0xD1));
        fill.setColorAt(0.88, QColor(0xF2, 0xC1, 0x4E));
        fill.setColorAt(1.0, QColor(0xE8, 0x5D, 0x75));
        p.save();
        p.setClipRect(QRectF(0, 0, shownLevelPx_, height()));
        p.fillPath(track, fill);
        p.restore();
    }
    if (shownPeakPx_ > 1) {
        const qreal x = std::min<qreal>(shownPeakPx_, width() - 2);
        p.fillRect(QRectF(x - 1.0, 1.0, 2.0, height() - 2.0), QColor(0x2D, 0x1B, 0x69, 170));
    }
}

} // namespace Lumora
