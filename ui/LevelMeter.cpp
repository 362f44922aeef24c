#include "ui/LevelMeter.h"
#include "ui/Theme.h"

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
    p.fillPath(track, Palette::colour(Palette::kLilacPale, 70));

    shownLevelPx_ = pixelFor(meter_.levelDb);
    shownPeakPx_ = pixelFor(meter_.peakDb);
    if (shownLevelPx_ > 0) {
        // Mint for speech, apricot near -6 dB, rose at the top.
        QLinearGradient fill(0, 0, width(), 0);
        fill.setColorAt(0.0, Palette::colour(Palette::kTeal));
        fill.setColorAt(0.75, Palette::colour(Palette::kTealBlue));
        fill.setColorAt(0.88, Palette::colour(Palette::kAmber));
        fill.setColorAt(1.0, Palette::colour(Palette::kBad));
        p.save();
        p.setClipRect(QRectF(0, 0, shownLevelPx_, height()));
        p.fillPath(track, fill);
        p.restore();
    }
    if (shownPeakPx_ > 1) {
        const qreal x = std::min<qreal>(shownPeakPx_, width() - 2);
        p.fillRect(QRectF(x - 1.0, 1.0, 2.0, height() - 2.0), Palette::colour(Palette::kInk, 170));
    }
}

} // namespace Lumora
