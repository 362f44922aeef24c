// lumora-art: draws the dialog's pictures (sky, stars, cloud, the Tindra mascot)
// with QPainter and writes them as PNG files into the folder given on the
// command line (data/images in the repository). The output is committed; run
// this again only to change the art.
//
// The style: pastel lilac and mint, soft shapes with a slightly wobbly,
// hand-drawn outline in deep purple.

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QtMath>

#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const QColor kOutline(0x4A, 0x3A, 0x7A);

// A smooth closed curve through the points (Catmull-Rom turned into cubics).
QPainterPath smoothClosed(const std::vector<QPointF>& pts) {
    QPainterPath path;
    const int n = static_cast<int>(pts.size());
    if (n < 3) {
        return path;
    }
    path.moveTo(pts[0]);
    for (int i = 0; i < n; ++i) {
        const QPointF& p0 = pts[(i - 1 + n) % n];
        const QPointF& p1 = pts[i];
        const QPointF& p2 = pts[(i + 1) % n];
        const QPointF& p3 = pts[(i + 2) % n];
        path.cubicTo(p1 + (p2 - p0) / 6.0, p2 - (p3 - p1) / 6.0, p2);
    }
    path.closeSubpath();
    return path;
}

// A closed shape given in polar form around `centre`, with a gentle deterministic
// wobble so the outline looks drawn by hand.
QPainterPath wobblyShape(QPointF centre, int points, const std::function<double(double)>& radius,
                         double wobble, int seed) {
    std::vector<QPointF> pts;
    for (int i = 0; i < points; ++i) {
        const double a = 2.0 * M_PI * i / points;
        const double w = 1.0 + wobble * std::sin(a * 3.0 + seed) * std::cos(a * 5.0 + seed * 0.7);
        const double r = radius(a) * w;
        pts.emplace_back(centre.x() + r * std::cos(a), centre.y() + r * std::sin(a));
    }
    return smoothClosed(pts);
}

QPen outlinePen(double width, QColor colour = kOutline) {
    QPen pen(colour, width);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

QImage newImage(int w, int h) {
    QImage image(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// Five-pointed star with rounded points.
QPainterPath roundedStar(QPointF c, double outer, double inner, double rounding) {
    std::vector<QPointF> v;
    for (int i = 0; i < 10; ++i) {
        const double a = -M_PI / 2 + i * M_PI / 5;
        const double r = (i % 2 == 0) ? outer : inner;
        v.emplace_back(c.x() + r * std::cos(a), c.y() + r * std::sin(a));
    }
    QPainterPath path;
    const int n = static_cast<int>(v.size());
    for (int i = 0; i < n; ++i) {
        const QPointF prev = v[(i - 1 + n) % n];
        const QPointF cur = v[i];
        const QPointF next = v[(i + 1) % n];
        const QPointF a = cur + (prev - cur) * rounding;
        const QPointF b = cur + (next - cur) * rounding;
        if (i == 0) {
            path.moveTo(a);
        } else {
            path.lineTo(a);
        }
        path.quadTo(cur, b);
    }
    path.closeSubpath();
    return path;
}

QImage drawSky(int w, int h) {
    QImage image = newImage(w, h);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient base(0, 0, w, h);
    base.setColorAt(0.0, QColor(230, 222, 248));
    base.setColorAt(0.45, QColor(214, 246, 234));
    base.setColorAt(1.0, QColor(230, 222, 248));
    p.fillRect(image.rect(), base);
    QRadialGradient glow(QPointF(0.58 * w, 0.38 * h), 0.78 * w);
    glow.setColorAt(0.0, QColor(200, 248, 232, 100));
    glow.setColorAt(1.0, QColor(200, 248, 232, 0));
    p.fillRect(image.rect(), glow);
    // Soft bokeh dots, a little lighter than the sky.
    for (int i = 0; i < 40; ++i) {
        const double x = std::fmod(i * 173.3 + 31.0, w);
        const double y = std::fmod(i * 97.7 + 57.0, h);
        const double r = 6.0 + std::fmod(i * 7.3, 18.0);
        QRadialGradient dot(QPointF(x, y), r);
        dot.setColorAt(0.0, QColor(255, 255, 255, 46));
        dot.setColorAt(1.0, QColor(255, 255, 255, 0));
        p.setPen(Qt::NoPen);
        p.setBrush(dot);
        p.drawEllipse(QPointF(x, y), r, r);
    }
    return image;
}

QImage drawStarShape() {
    const int s = 128;
    QImage image = newImage(s, s);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const QPointF c(s / 2.0, s / 2.0 + 3);
    QRadialGradient halo(c, s / 2.0);
    halo.setColorAt(0.0, QColor(255, 246, 200, 150));
    halo.setColorAt(0.55, QColor(255, 246, 200, 50));
    halo.setColorAt(1.0, QColor(255, 246, 200, 0));
    p.setPen(Qt::NoPen);
    p.setBrush(halo);
    p.drawEllipse(c, s / 2.0, s / 2.0);
    const QPainterPath star = roundedStar(c, 44, 21, 0.28);
    QRadialGradient fill(c - QPointF(8, 10), 52);
    fill.setColorAt(0.0, QColor(255, 253, 232));
    fill.setColorAt(0.6, QColor(255, 231, 150));
    fill.setColorAt(1.0, QColor(255, 206, 120));
    p.setBrush(fill);
    p.setPen(outlinePen(3.2, QColor(0xE0, 0x9A, 0x5A)));
    p.drawPath(star);
    // A small shine.
    p.setPen(outlinePen(3.5, QColor(255, 255, 255, 220)));
    p.drawArc(QRectF(c.x() - 20, c.y() - 26, 22, 22), 100 * 16, 70 * 16);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 150, 150, 90));
    p.drawEllipse(c + QPointF(-13, 9), 5, 3);
    p.drawEllipse(c + QPointF(13, 9), 5, 3);
    return image;
}

QImage drawStarFrame() {
    const int s = 128;
    QImage image = newImage(s, s);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const QPointF c(s / 2.0, s / 2.0 + 3);
    const QPainterPath star = roundedStar(c, 46, 22, 0.25);
    p.setBrush(QColor(255, 255, 255, 60));
    p.setPen(outlinePen(9, QColor(255, 255, 255, 120)));
    p.drawPath(star);
    p.setBrush(Qt::NoBrush);
    p.setPen(outlinePen(4, QColor(0xB8, 0xA4, 0xF0)));
    p.drawPath(star);
    p.setPen(outlinePen(2, QColor(255, 255, 255, 230)));
    p.drawPath(roundedStar(c + QPointF(-1.5, -1.5), 40, 19, 0.25));
    // Sparkle dots around the frame.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 255, 255, 220));
    p.drawEllipse(c + QPointF(40, -34), 3.5, 3.5);
    p.drawEllipse(c + QPointF(-42, 28), 2.5, 2.5);
    return image;
}

QImage drawCloud() {
    const int w = 400;
    const int h = 240;
    QImage image = newImage(w, h);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    struct Puff {
        double x, y, r;
    };
    const Puff puffs[] = {{95, 150, 62},  {165, 105, 78}, {250, 95, 86}, {320, 140, 62},
                          {205, 165, 70}, {130, 175, 48}, {290, 180, 48}};
    QPainterPath cloud;
    for (const Puff& puff : puffs) {
        QPainterPath circle;
        circle.addEllipse(QPointF(puff.x, puff.y), puff.r, puff.r);
        cloud = cloud.united(circle);
    }
    QPainterPath cut;
    cut.addRect(0, 196, w, h);
    cloud = cloud.subtracted(cut);
    QPainterPath bottom;
    bottom.addRoundedRect(QRectF(48, 150, 320, 46), 23, 23);
    cloud = cloud.united(bottom).simplified();

    // Soft shadow, then the body with a lilac underside.
    p.translate(0, 6);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(170, 150, 220, 40));
    p.drawPath(cloud);
    p.translate(0, -6);
    QLinearGradient fill(0, 20, 0, 200);
    fill.setColorAt(0.0, QColor(255, 255, 255));
    fill.setColorAt(0.65, QColor(250, 248, 255));
    fill.setColorAt(1.0, QColor(226, 216, 250));
    p.setBrush(fill);
    p.setPen(outlinePen(3, QColor(190, 172, 235, 200)));
    p.drawPath(cloud);
    // Highlights on the big puffs.
    p.setBrush(Qt::NoBrush);
    p.setPen(outlinePen(6, QColor(255, 255, 255, 230)));
    p.drawArc(QRectF(200, 30, 110, 110), 95 * 16, 60 * 16);
    p.drawArc(QRectF(110, 50, 100, 100), 100 * 16, 55 * 16);
    return image;
}

// The mascot's expressions: 0 happy (good), 1 unsure (caution), 2 startled
// (warning), 3 listening (during the takes).
QImage drawTindra(int mood) {
    const int s = 256;
    QImage image = newImage(s, s);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const QPointF c(128, 146);

    // Ground shadow.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(120, 100, 180, 45));
    p.drawEllipse(QPointF(128, 236), 70, 9);

    // Body: a soft mochi shape, a little wider at the bottom.
    const QPainterPath body = wobblyShape(
        c, 48,
        [](double a) {
            const double sy = std::sin(a);
            return 88.0 * (1.0 + 0.10 * sy) * (sy > 0 ? 1.0 - 0.16 * sy * sy : 1.0);
        },
        0.012, 3);
    QLinearGradient bodyFill(0, 56, 0, 236);
    bodyFill.setColorAt(0.0, QColor(0xEF, 0xE6, 0xFF));
    bodyFill.setColorAt(0.55, QColor(0xDD, 0xF8, 0xF0));
    bodyFill.setColorAt(1.0, QColor(0xB9, 0xEC, 0xE0));

    // The star on the head, behind the body's top edge.
    const QPointF starCentre(150, 62);
    p.setBrush(QColor(255, 225, 140));
    p.setPen(outlinePen(4.5));
    p.save();
    p.translate(starCentre);
    p.rotate(14);
    p.drawPath(roundedStar(QPointF(0, 0), 25, 12, 0.3));
    p.restore();

    p.setBrush(bodyFill);
    p.setPen(outlinePen(5));
    p.drawPath(body);

    // Little arms; the right one holds a microphone.
    p.setBrush(QColor(0xD2, 0xF3, 0xEA));
    p.drawEllipse(QPointF(44, 170), 15, 12);
    if (mood == 2) {
        p.drawEllipse(QPointF(40, 132), 13, 15); // hands up in surprise
    }
    // Microphone.
    p.save();
    p.translate(206, 150);
    p.rotate(-18);
    p.setBrush(QColor(0x7B, 0x6B, 0xB5));
    p.drawRoundedRect(QRectF(-7, 0, 14, 40), 6, 6);
    QRadialGradient grille(QPointF(-5, -14), 22);
    grille.setColorAt(0.0, QColor(255, 255, 255));
    grille.setColorAt(1.0, QColor(0xC8, 0xBE, 0xEA));
    p.setBrush(grille);
    p.drawEllipse(QPointF(0, -10), 16, 16);
    p.setPen(outlinePen(2, QColor(0x9A, 0x8C, 0xD0)));
    p.drawLine(QPointF(-10, -12), QPointF(10, -12));
    p.drawLine(QPointF(-8, -4), QPointF(8, -4));
    p.restore();
    p.setPen(outlinePen(5));
    p.setBrush(QColor(0xD2, 0xF3, 0xEA));
    p.drawEllipse(QPointF(204, 176), 15, 12);

    // Cheeks.
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(255, 150, 170, mood == 2 ? 70 : 120));
    p.drawEllipse(QPointF(78, 170), 15, 9);
    p.drawEllipse(QPointF(178, 170), 15, 9);

    // Eyes.
    const QPointF leftEye(96, 146);
    const QPointF rightEye(160, 146);
    p.setPen(outlinePen(5.5, QColor(0x2D, 0x1B, 0x69)));
    p.setBrush(Qt::NoBrush);
    if (mood == 0) {
        // Happy arcs ^ ^.
        p.drawArc(QRectF(leftEye.x() - 13, leftEye.y() - 8, 26, 22), 20 * 16, 140 * 16);
        p.drawArc(QRectF(rightEye.x() - 13, rightEye.y() - 8, 26, 22), 20 * 16, 140 * 16);
    } else {
        const double ry = mood == 2 ? 16 : 13;
        const double rx = mood == 2 ? 12 : 10;
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x2D, 0x1B, 0x69));
        p.drawEllipse(leftEye, rx, ry);
        p.drawEllipse(rightEye, rx, ry);
        p.setBrush(Qt::white);
        p.drawEllipse(leftEye + QPointF(-3.5, -6), 4.5, 4.5);
        p.drawEllipse(rightEye + QPointF(-3.5, -6), 4.5, 4.5);
        p.drawEllipse(leftEye + QPointF(4, 6), 2, 2);
        p.drawEllipse(rightEye + QPointF(4, 6), 2, 2);
    }

    // Brows and mouth per mood.
    p.setPen(outlinePen(4.5, QColor(0x2D, 0x1B, 0x69)));
    p.setBrush(Qt::NoBrush);
    switch (mood) {
    case 0: {
        QPainterPath mouth;
        mouth.moveTo(114, 170);
        mouth.cubicTo(118, 186, 138, 186, 142, 170);
        p.setBrush(QColor(255, 130, 150));
        p.drawPath(mouth);
        break;
    }
    case 1: {
        p.drawLine(QPointF(84, 122), QPointF(104, 127));
        p.drawLine(QPointF(172, 122), QPointF(152, 127));
        QPainterPath mouth;
        mouth.moveTo(116, 178);
        mouth.cubicTo(122, 172, 128, 182, 134, 176);
        mouth.cubicTo(137, 173, 140, 175, 142, 177);
        p.drawPath(mouth);
        // A sweat drop.
        QPainterPath drop;
        drop.moveTo(196, 100);
        drop.cubicTo(188, 114, 190, 124, 198, 124);
        drop.cubicTo(206, 124, 206, 114, 196, 100);
        p.setPen(outlinePen(3, QColor(0x5A, 0x9F, 0xD6)));
        p.setBrush(QColor(0xBF, 0xE4, 0xFF));
        p.drawPath(drop);
        break;
    }
    case 2: {
        p.drawLine(QPointF(82, 118), QPointF(104, 112));
        p.drawLine(QPointF(174, 118), QPointF(152, 112));
        p.setBrush(QColor(0x6B, 0x2E, 0x5A));
        p.drawEllipse(QPointF(128, 182), 9, 11);
        // Exclamation marks.
        p.setPen(outlinePen(6, QColor(0xE8, 0x5D, 0x75)));
        p.drawLine(QPointF(222, 52), QPointF(216, 84));
        p.drawPoint(QPointF(213, 100));
        p.drawLine(QPointF(238, 66), QPointF(232, 90));
        p.drawPoint(QPointF(230, 103));
        break;
    }
    default: {
        // Listening: a calm small "o" and music notes.
        p.setBrush(QColor(255, 130, 150));
        p.drawEllipse(QPointF(128, 176), 6, 5);
        p.setPen(outlinePen(4, QColor(0x00, 0xA8, 0x96)));
        p.drawLine(QPointF(38, 78), QPointF(38, 104));
        p.drawLine(QPointF(38, 78), QPointF(54, 72));
        p.drawLine(QPointF(54, 72), QPointF(54, 96));
        p.setBrush(QColor(0x00, 0xA8, 0x96));
        p.drawEllipse(QPointF(32, 106), 7, 5);
        p.drawEllipse(QPointF(48, 98), 7, 5);
        break;
    }
    }

    // Sparkles for the happy face.
    if (mood == 0) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(255, 215, 110));
        p.drawPath(roundedStar(QPointF(40, 84), 13, 5, 0.2));
        p.drawPath(roundedStar(QPointF(222, 96), 10, 4, 0.2));
        p.setBrush(QColor(0x4E, 0xCD, 0xC4));
        p.drawPath(roundedStar(QPointF(214, 58), 7, 3, 0.2));
    }
    return image;
}

bool save(const QImage& image, const QDir& dir, const QString& name) {
    const QString path = dir.filePath(name);
    if (!image.save(path, "PNG", 0)) {
        std::fprintf(stderr, "lumora-art: cannot write %s\n", qPrintable(path));
        return false;
    }
    std::printf("%s\n", qPrintable(path));
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QGuiApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: lumora-art <output folder>\n");
        return 2;
    }
    QDir dir(QString::fromLocal8Bit(argv[1]));
    if (!dir.exists() && !QDir().mkpath(dir.path())) {
        std::fprintf(stderr, "lumora-art: cannot create %s\n", argv[1]);
        return 1;
    }
    bool ok = save(drawSky(500, 776), dir, QStringLiteral("BG.png"));
    ok = save(drawStarShape(), dir, QStringLiteral("starshape.png")) && ok;
    ok = save(drawStarFrame(), dir, QStringLiteral("starframe.png")) && ok;
    ok = save(drawCloud(), dir, QStringLiteral("view_cloud01_01.png")) && ok;
    for (int mood = 0; mood <= 3; ++mood) {
        ok = save(drawTindra(mood), dir, QStringLiteral("Tindra_%1.png").arg(mood)) && ok;
    }
    return ok ? 0 : 1;
}
