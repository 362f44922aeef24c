#include "ui/SkyBackground.h"
#include "ui/Theme.h"

#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <cmath>

namespace Lumora {

namespace {

struct CloudSpec {
    float x, y, width, frequency, phase, opacity;
};

const CloudSpec kClouds[SkyBackground::kCloudCount] = {
    {65, 95, 85, 0.42f, 0.0f, 0.82f},    {445, 140, 75, 0.38f, 2.3f, 0.82f},
    {50, 310, 140, 0.30f, 1.1f, 0.68f},  {460, 380, 120, 0.28f, 3.6f, 0.68f},
    {80, 510, 195, 0.23f, 0.7f, 0.55f},  {430, 465, 175, 0.25f, 4.2f, 0.55f},
    {250, 660, 320, 0.18f, 1.9f, 0.45f},
};

QRect snappedRect(float cx, float cy, QSizeF logicalSize) {
    const int left = static_cast<int>(std::lround(cx - logicalSize.width() / 2.0));
    const int top = static_cast<int>(std::lround(cy - logicalSize.height() / 2.0));
    return QRect(left, top, static_cast<int>(std::ceil(logicalSize.width())),
                 static_cast<int>(std::ceil(logicalSize.height())));
}

} // namespace

void SkyBackground::setPixmaps(const QPixmap& starShape, const QPixmap& starFrame,
                               const QPixmap& cloud) {
    starShape_ = starShape;
    starFrame_ = starFrame;
    cloudSource_ = cloud;
    for (int i = 0; i < kStarCount; ++i) {
        rescaleStar(i);
    }
    everythingChanged_ = true;
}

void SkyBackground::setSize(const QSize& size, qreal devicePixelRatio) {
    const QSize valid = size.isValid() && !size.isEmpty() ? size : QSize(500, 700);
    if (valid == size_ && devicePixelRatio == dpr_) {
        return;
    }
    size_ = valid;
    dpr_ = devicePixelRatio > 0.0 ? devicePixelRatio : 1.0;
    gradientCache_ = QPixmap();
    for (int i = 0; i < kStarCount; ++i) {
        rescaleStar(i);
    }
    layoutClouds();
    everythingChanged_ = true;
}

void SkyBackground::layoutStars() {
    const double w = size_.width();
    const double h = size_.height();
    for (int i = 0; i < kStarCount; ++i) {
        Star& s = stars_[static_cast<size_t>(i)];
        s.x = static_cast<float>(std::fmod(i * 137.508 * 1.9 + 50.0, w));
        s.y = static_cast<float>(std::fmod(i * 79.302 * 3.7 + 60.0, h));
        if (i % 4 < 3) {
            s.size = static_cast<float>(2 * (i % 4) + 16);
            s.opacity = static_cast<float>((i % 5) * 0.05 + 0.5);
        } else {
            s.size = static_cast<float>((i % 3) * 8 + 36);
            s.opacity = static_cast<float>((i % 3) * 0.06 + 0.45);
        }
        s.speed = kStarSpeed;
        s.kind = i % 2; // odd stars are frames, even ones filled shapes
        rescaleStar(i);
    }
    everythingChanged_ = true;
}

void SkyBackground::layoutClouds() {
    for (int i = 0; i < kCloudCount; ++i) {
        const CloudSpec& spec = kClouds[i];
        Cloud& c = clouds_[static_cast<size_t>(i)];
        c.x = spec.x;
        c.y = spec.y;
        c.opacity = spec.opacity;
        c.amplitude = spec.width * 0.08f;
        c.frequency = spec.frequency;
        c.phase = spec.phase;
        c.pixmap = QPixmap();
        if (!cloudSource_.isNull()) {
            c.pixmap = cloudSource_.scaledToWidth(static_cast<int>(std::lround(spec.width * dpr_)),
                                                  Qt::SmoothTransformation);
            c.pixmap.setDevicePixelRatio(dpr_);
        }
    }
    everythingChanged_ = true;
}

void SkyBackground::rescaleStar(int index) {
    const Star& s = stars_[static_cast<size_t>(index)];
    const QPixmap& source = s.kind == 1 ? starFrame_ : starShape_;
    QPixmap& scaled = starPixmaps_[static_cast<size_t>(index)];
    const int side = static_cast<int>(std::lround(2.0 * s.size * dpr_));
    if (source.isNull() || side <= 0) {
        scaled = QPixmap();
        return;
    }
    scaled = source.scaled(side, side, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    scaled.setDevicePixelRatio(dpr_);
}

void SkyBackground::setStar(int index, const Star& star) {
    if (index < 0 || index >= kStarCount) {
        return;
    }
    const bool rescale = stars_[static_cast<size_t>(index)].size != star.size ||
                         stars_[static_cast<size_t>(index)].kind != star.kind;
    stars_[static_cast<size_t>(index)] = star;
    if (rescale) {
        rescaleStar(index);
    }
}

void SkyBackground::advance(float dt) {
    const float w = static_cast<float>(size_.width());
    const float h = static_cast<float>(size_.height());
    for (Star& s : stars_) {
        s.x += 0.866f * s.speed * dt;
        s.y -= 0.5f * s.speed * dt;
        const float m = s.size + 4.0f;
        if (s.x > w + m) {
            s.x -= w + 2.0f * m;
        }
        if (s.y < -m) {
            s.y += h + 2.0f * m;
        }
    }
}

QRect SkyBackground::starRect(int index) const {
    const Star& s = stars_[static_cast<size_t>(index)];
    return snappedRect(s.x, s.y, QSizeF(2.0 * s.size, 2.0 * s.size));
}

QRect SkyBackground::cloudRect(int index, float t) const {
    const Cloud& c = clouds_[static_cast<size_t>(index)];
    if (c.pixmap.isNull()) {
        return QRect();
    }
    const float y = c.y + std::sin(c.frequency * t + c.phase) * c.amplitude;
    return snappedRect(c.x, y, c.pixmap.size() / dpr_);
}

void SkyBackground::rebuildCache() {
    const QSize device = (QSizeF(size_) * dpr_).toSize();
    QPixmap cache(device);
    cache.setDevicePixelRatio(dpr_);
    QPainter p(&cache);
    const qreal w = size_.width();
    const qreal h = size_.height();
    QLinearGradient base(0, 0, w, h);
    base.setColorAt(0.0, Palette::colour(Palette::kSkyLilac));
    base.setColorAt(0.45, Palette::colour(Palette::kSkyMint));
    base.setColorAt(1.0, Palette::colour(Palette::kSkyLilac));
    p.fillRect(QRectF(0, 0, w, h), base);
    QRadialGradient glow(QPointF(0.58 * w, 0.38 * h), 0.78 * w);
    glow.setColorAt(0.0, Palette::colour(Palette::kSkyGlow, 100));
    glow.setColorAt(1.0, Palette::colour(Palette::kSkyGlow, 0));
    p.fillRect(QRectF(0, 0, w, h), glow);
    p.end();
    gradientCache_ = cache;
}

void SkyBackground::paint(QPainter& painter, const QRegion& exposed, float t,
                          const QRegion& hidden) {
    if (gradientCache_.isNull()) {
        rebuildCache();
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // Rectangle by rectangle: a blit through a many-rectangle clip is far slower.
    const QRect bounds(QPoint(0, 0), size_);
    for (const QRect& rect : exposed) {
        const QRect area = rect.intersected(bounds);
        if (area.isEmpty()) {
            continue;
        }
        painter.drawPixmap(
            area, gradientCache_,
            QRectF(QPointF(area.topLeft()) * dpr_, QSizeF(area.size()) * dpr_).toRect());
    }
    const QRegion open = hidden.isEmpty() ? exposed : exposed.subtracted(hidden);
    if (open.isEmpty()) {
        painter.restore();
        return;
    }
    painter.setClipRegion(open, Qt::IntersectClip);
    for (int i = 0; i < kStarCount; ++i) {
        const QPixmap& pix = starPixmaps_[static_cast<size_t>(i)];
        const QRect r = starRect(i);
        if (pix.isNull() || !open.intersects(r)) {
            continue;
        }
        painter.setOpacity(stars_[static_cast<size_t>(i)].opacity);
        painter.drawPixmap(r.topLeft(), pix);
    }
    for (int i = 0; i < kCloudCount; ++i) {
        const Cloud& c = clouds_[static_cast<size_t>(i)];
        const QRect r = cloudRect(i, t);
        if (c.pixmap.isNull() || !open.intersects(r)) {
            continue;
        }
        painter.setOpacity(c.opacity);
        painter.drawPixmap(r.topLeft(), c.pixmap);
    }
    painter.restore();
}

QRegion SkyBackground::takeChangedRegion(float t) {
    QRegion changed;
    if (everythingChanged_) {
        changed = QRegion(QRect(QPoint(0, 0), size_));
        everythingChanged_ = false;
    }
    for (int i = 0; i < kStarCount + kCloudCount; ++i) {
        QRect now;
        if (i < kStarCount) {
            if (!starPixmaps_[static_cast<size_t>(i)].isNull()) {
                now = starRect(i);
            }
        } else {
            now = cloudRect(i - kStarCount, t);
        }
        QRect& shown = shownRects_[static_cast<size_t>(i)];
        if (now != shown) {
            changed += shown;
            changed += now;
            shown = now;
        }
    }
    return changed;
}

} // namespace Lumora
