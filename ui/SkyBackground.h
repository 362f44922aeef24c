#pragma once

#include <QPixmap>
#include <QRect>
#include <QRegion>
#include <QSize>

#include <array>

class QPainter;

namespace Lumora {

// The dialog's animated sky: two gradients (cached in a pixmap), 24 drifting
// stars and 7 bobbing clouds. Sprites are drawn at whole-pixel positions, so a
// tick only repaints the sprites whose drawn rectangle actually moved.
class SkyBackground {
public:
    static constexpr int kStarCount = 24;
    static constexpr int kCloudCount = 7;
    static constexpr float kStarSpeed = 16.0f; // px/s

    struct Star {
        float x = 0.0f;
        float y = 0.0f;
        float size = 0.0f;
        float speed = kStarSpeed;
        float opacity = 1.0f;
        int kind = 0; // 0 "starshape.png", 1 "starframe.png"
    };
    struct Cloud {
        float x = 0.0f;
        float y = 0.0f;
        float opacity = 1.0f;
        float amplitude = 0.0f;
        float frequency = 0.0f;
        float phase = 0.0f;
        QPixmap pixmap; // scaled to the cloud's width
    };

    void setPixmaps(const QPixmap& starShape, const QPixmap& starFrame, const QPixmap& cloud);
    // The size of the painted area (and of the star field) and the screen's
    // device pixel ratio.
    void setSize(const QSize& size, qreal devicePixelRatio);
    QSize size() const { return size_; }

    // Lays the stars out over the current size (500 x 700 while it is unknown).
    void layoutStars();
    void layoutClouds();

    // Moves every star along its 30 degree diagonal, wrapping at the edges.
    void advance(float dt);

    // Paints the `exposed` area; sprites are left out of `hidden` (the area under
    // the dialog's panels).
    void paint(QPainter& painter, const QRegion& exposed, float t,
               const QRegion& hidden = QRegion());
    // The area whose drawing changed since the previous call (old and new
    // rectangles of every sprite that moved); everything on the first call.
    QRegion takeChangedRegion(float t);

    const std::array<Star, kStarCount>& stars() const { return stars_; }
    void setStar(int index, const Star& star);
    const std::array<Cloud, kCloudCount>& clouds() const { return clouds_; }

private:
    QRect starRect(int index) const;
    QRect cloudRect(int index, float t) const;
    void rebuildCache();
    void rescaleStar(int index);

    QSize size_{500, 700};
    qreal dpr_ = 1.0;
    QPixmap starShape_;
    QPixmap starFrame_;
    QPixmap cloudSource_;
    QPixmap gradientCache_;
    std::array<Star, kStarCount> stars_{};
    std::array<QPixmap, kStarCount> starPixmaps_{};
    std::array<Cloud, kCloudCount> clouds_{};
    std::array<QRect, kStarCount + kCloudCount> shownRects_{};
    bool everythingChanged_ = true;
};

} // namespace Lumora
