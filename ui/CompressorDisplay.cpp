#include "ui/CompressorDisplay.h"
#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

float clampOr(float v, float lo, float hi, float fallback) {
    return std::isfinite(v) ? std::clamp(v, lo, hi) : fallback;
}

bool sameComp(const CompParams& a, const CompParams& b) {
    return a.enabled == b.enabled && a.thresholdDb == b.thresholdDb && a.ratio == b.ratio &&
           a.kneeDb == b.kneeDb && a.attackMs == b.attackMs && a.releaseMs == b.releaseMs &&
           a.makeupGainDb == b.makeupGainDb;
}

} // namespace

CompressorDisplay::CompressorDisplay(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kLogicalHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TranslucentBackground);
}

double CompressorDisplay::staticOutputDb(const CompParams& comp, double inputDb) {
    if (!comp.enabled) {
        return inputDb;
    }
    const double over = inputDb - comp.thresholdDb;
    const double knee = comp.kneeDb;
    const double slope = comp.ratio > 0.0f ? 1.0 - 1.0 / comp.ratio : 0.0;
    double reduction = 0.0;
    if (2.0 * over < -knee) {
        reduction = 0.0;
    } else if (knee > 0.0 && 2.0 * over <= knee) {
        reduction = slope * (over + knee / 2.0) * (over + knee / 2.0) / (2.0 * knee);
    } else {
        reduction = slope * over;
    }
    return inputDb - reduction + comp.makeupGainDb;
}

void CompressorDisplay::setParameters(const CompParams& comp, const LimiterParams& limiter) {
    if (sameComp(comp, comp_) && limiter.enabled == limiter_.enabled &&
        limiter.ceilingDb == limiter_.ceilingDb) {
        return;
    }
    comp_ = comp;
    limiter_ = limiter;
    update();
}

void CompressorDisplay::push(float inputDb, float gainReductionDb, float outputDb) {
    Point point;
    point.in = clampOr(inputDb, kFloorDb, 0.0f, kFloorDb);
    point.gr = clampOr(gainReductionDb, 0.0f, kMaxReductionDb, 0.0f);
    point.out = clampOr(outputDb, kFloorDb, 0.0f, kFloorDb);
    const Point& newest = at(kHistory - 1);
    flatRun_ = point == newest ? std::min(flatRun_ + 1, kHistory) : 0;
    history_[static_cast<size_t>(head_)] = point;
    head_ = (head_ + 1) % kHistory;
    // Once every point equals the newest, scrolling changes no pixel.
    if (flatRun_ < kHistory) {
        ++historyRepaints_;
        update();
    }
}

void CompressorDisplay::clearHistory() {
    history_.fill(Point{});
    head_ = 0;
    flatRun_ = kHistory;
    update();
}

const CompressorDisplay::Point& CompressorDisplay::at(int index) const {
    return history_[static_cast<size_t>((head_ + index) % kHistory)];
}

float CompressorDisplay::inputAt(int index) const {
    return at(index).in;
}

float CompressorDisplay::gainReductionAt(int index) const {
    return at(index).gr;
}

float CompressorDisplay::outputAt(int index) const {
    return at(index).out;
}

void CompressorDisplay::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const qreal w = beginDisplay(p, *this, kLogicalHeight);
    const qreal h = kLogicalHeight;

    QFont small = font();
    small.setPointSizeF(6.5);
    p.setFont(small);
    const QColor label = Palette::colour(Palette::kDisplayText, Palette::kDisplayTextAlpha);

    // Static curve, input -60..0 dB across, output -60..0 dB up.
    const QRectF curve(10.0, 6.0, h - 24.0, h - 24.0);
    auto cx = [&](double db) { return curve.left() + (db - kFloorDb) / -kFloorDb * curve.width(); };
    auto cy = [&](double db) {
        const double c = std::clamp(db, static_cast<double>(kFloorDb), 0.0);
        return curve.bottom() - (c - kFloorDb) / -kFloorDb * curve.height();
    };
    p.setPen(QPen(Palette::colour(Palette::kWhite, 26), 1.0));
    for (int db = -48; db < 0; db += 12) {
        p.drawLine(QPointF(cx(db), curve.top()), QPointF(cx(db), curve.bottom()));
        p.drawLine(QPointF(curve.left(), cy(db)), QPointF(curve.right(), cy(db)));
    }
    p.setPen(QPen(Palette::colour(Palette::kWhite, 60), 1.0, Qt::DashLine));
    p.drawLine(QPointF(cx(kFloorDb), cy(kFloorDb)), QPointF(cx(0), cy(0)));
    p.setBrush(Qt::NoBrush);
    p.drawRect(curve);
    if (comp_.enabled && comp_.thresholdDb > kFloorDb && comp_.thresholdDb < 0.0f) {
        p.setPen(QPen(Palette::colour(Palette::kWarn, 150), 1.0, Qt::DotLine));
        p.drawLine(QPointF(cx(comp_.thresholdDb), curve.top()),
                   QPointF(cx(comp_.thresholdDb), curve.bottom()));
    }
    QPainterPath path;
    for (int i = 0; i <= 120; ++i) {
        const double in = kFloorDb + (-kFloorDb) * i / 120.0;
        double out = staticOutputDb(comp_, in);
        if (limiter_.enabled) {
            out = std::min(out, static_cast<double>(limiter_.ceilingDb));
        }
        const QPointF pt(cx(in), cy(out));
        i == 0 ? path.moveTo(pt) : path.lineTo(pt);
    }
    p.setPen(QPen(comp_.enabled || limiter_.enabled ? Palette::colour(Palette::kGlowTeal)
                                                    : Palette::colour(Palette::kGreyCool),
                  2.0));
    p.drawPath(path);
    const Point& now = at(kHistory - 1);
    if (now.in > kFloorDb) {
        double out = staticOutputDb(comp_, now.in);
        if (limiter_.enabled) {
            out = std::min(out, static_cast<double>(limiter_.ceilingDb));
        }
        p.setPen(QPen(Qt::white, 1.0));
        p.setBrush(Palette::colour(Palette::kWarn));
        p.drawEllipse(QPointF(cx(now.in), cy(out)), 3.5, 3.5);
    }
    p.setPen(label);
    p.drawText(QRectF(curve.left(), curve.bottom() + 2, curve.width(), 12), Qt::AlignCenter,
               QStringLiteral("IN → OUT"));

    // History: levels as lines, gain reduction hanging from the top.
    const QRectF hist(curve.right() + 12.0, 6.0, w - curve.right() - 20.0, h - 24.0);
    if (hist.width() < 20.0) {
        return;
    }
    auto hx = [&](int i) { return hist.left() + hist.width() * i / (kHistory - 1.0); };
    auto hy = [&](float db) { return hist.bottom() - (db - kFloorDb) / -kFloorDb * hist.height(); };
    p.setPen(QPen(Palette::colour(Palette::kWhite, 26), 1.0));
    p.setBrush(Qt::NoBrush);
    p.drawRect(hist);
    QPainterPath reduction;
    reduction.moveTo(hist.left(), hist.top());
    for (int i = 0; i < kHistory; ++i) {
        reduction.lineTo(hx(i), hist.top() + at(i).gr / kMaxReductionDb * hist.height() * 0.5);
    }
    reduction.lineTo(hist.right(), hist.top());
    reduction.closeSubpath();
    p.setPen(Qt::NoPen);
    p.setBrush(Palette::colour(Palette::kWarn, 150));
    p.drawPath(reduction);
    QPainterPath input;
    QPainterPath output;
    for (int i = 0; i < kHistory; ++i) {
        const QPointF a(hx(i), hy(at(i).in));
        const QPointF b(hx(i), hy(at(i).out));
        i == 0 ? input.moveTo(a) : input.lineTo(a);
        i == 0 ? output.moveTo(b) : output.lineTo(b);
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(Palette::colour(Palette::kLilacPale, 200), 1.2));
    p.drawPath(input);
    p.setPen(QPen(Palette::colour(Palette::kGlowTeal), 1.5));
    p.drawPath(output);

    p.setPen(Palette::colour(Palette::kLilacMist));
    p.drawText(QRectF(hist.left() + 4, hist.bottom() + 2, 40, 12), Qt::AlignLeft,
               QStringLiteral("IN"));
    p.setPen(Palette::colour(Palette::kGlowTeal));
    p.drawText(QRectF(hist.left() + 30, hist.bottom() + 2, 40, 12), Qt::AlignLeft,
               QStringLiteral("OUT"));
    p.setPen(Palette::colour(Palette::kAmber));
    p.drawText(QRectF(hist.left() + 64, hist.bottom() + 2, 40, 12), Qt::AlignLeft,
               QStringLiteral("GR"));
}

} // namespace Lumora
