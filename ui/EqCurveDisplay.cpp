#include "ui/EqCurveDisplay.h"

#include "dsp/Equaliser.h"
#include "dsp/FilterDesign.h"
#include "ui/Theme.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

bool sameBand(const NotchBand& a, const NotchBand& b) {
    return a.enabled == b.enabled && a.centerHz == b.centerHz && a.gainDb == b.gainDb && a.q == b.q;
}

double frequencyAt(int i) {
    return EqCurveDisplay::kMinHz *
           std::pow(EqCurveDisplay::kMaxHz / EqCurveDisplay::kMinHz,
                    static_cast<double>(i) / (EqCurveDisplay::kPoints - 1));
}

} // namespace

EqCurveDisplay::EqCurveDisplay(QWidget* parent) : QWidget(parent) {
    setFixedHeight(kLogicalHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setAttribute(Qt::WA_TranslucentBackground);
    recompute();
}

bool EqCurveDisplay::sameParameters(const EqParams& a, const EqParams& b) {
    if (a.enabled != b.enabled || a.lowCutEnabled != b.lowCutEnabled || a.lowCutHz != b.lowCutHz ||
        a.highShelfEnabled != b.highShelfEnabled || a.highShelfHz != b.highShelfHz ||
        a.highShelfGainDb != b.highShelfGainDb || a.highCutEnabled != b.highCutEnabled ||
        a.highCutHz != b.highCutHz || a.highCutQ != b.highCutQ) {
        return false;
    }
    for (int i = 0; i < kNotchBandCount; ++i) {
        if (!sameBand(a.notchBands[static_cast<size_t>(i)], b.notchBands[static_cast<size_t>(i)])) {
            return false;
        }
    }
    return true;
}

double EqCurveDisplay::responseDb(const EqParams& eq, double hz, double sampleRate) {
    if (!Equaliser::isActive(eq) || !(sampleRate > 0.0)) {
        return 0.0;
    }
    double db = 0.0;
    if (eq.lowCutEnabled) {
        db +=
            FilterDesign::responseDb(FilterDesign::lowCut(eq.lowCutHz, sampleRate), hz, sampleRate);
    }
    for (const NotchBand& band : eq.notchBands) {
        // The chain skips a band at exactly 0 dB.
        if (band.enabled && band.gainDb != 0.0f) {
            db += FilterDesign::responseDb(
                FilterDesign::peaking(band.centerHz, band.gainDb, band.q, sampleRate), hz,
                sampleRate);
        }
    }
    if (eq.highShelfEnabled) {
        db += FilterDesign::responseDb(
            FilterDesign::highShelf(eq.highShelfHz, eq.highShelfGainDb, sampleRate), hz,
            sampleRate);
    }
    if (eq.highCutEnabled) {
        db += FilterDesign::responseDb(FilterDesign::highCut(eq.highCutHz, eq.highCutQ, sampleRate),
                                       hz, sampleRate);
    }
    return db;
}

void EqCurveDisplay::setParameters(const EqParams& eq) {
    if (known_ && sameParameters(eq, eq_)) {
        return;
    }
    eq_ = eq;
    known_ = true;
    recompute();
    update();
}

void EqCurveDisplay::setSampleRate(double sampleRate) {
    if (!(sampleRate > 0.0) || sampleRate == sampleRate_) {
        return;
    }
    sampleRate_ = sampleRate;
    recompute();
    update();
}

void EqCurveDisplay::recompute() {
    curveDb_.resize(kPoints);
    const double nyquist = 0.5 * sampleRate_;
    for (int i = 0; i < kPoints; ++i) {
        const double hz = std::min(frequencyAt(i), 0.999 * nyquist);
        curveDb_[static_cast<size_t>(i)] = responseDb(eq_, hz, sampleRate_);
    }
    ++updates_;
}

void EqCurveDisplay::paintEvent(QPaintEvent*) {
    QPainter p(this);
    const qreal w = beginDisplay(p, *this, kLogicalHeight);
    const qreal h = kLogicalHeight;

    const QRectF plot(30.0, 8.0, w - 38.0, h - 24.0);
    const double logSpan = std::log(kMaxHz / kMinHz);
    auto xOf = [&](double hz) {
        return plot.left() + plot.width() * std::log(hz / kMinHz) / logSpan;
    };
    auto yOf = [&](double db) {
        const double c = std::clamp(db, -kRangeDb, kRangeDb);
        return plot.center().y() - c / kRangeDb * plot.height() * 0.5;
    };

    QFont small = font();
    small.setPointSizeF(6.5);
    p.setFont(small);
    const double gridHz[] = {50, 100, 200, 500, 1000, 2000, 5000, 10000};
    const char* gridText[] = {"50", "100", "200", "500", "1k", "2k", "5k", "10k"};
    for (int i = 0; i < 8; ++i) {
        const qreal x = xOf(gridHz[i]);
        p.setPen(QPen(Palette::colour(Palette::kWhite, 28), 1.0));
        p.drawLine(QPointF(x, plot.top()), QPointF(x, plot.bottom()));
        p.setPen(Palette::colour(Palette::kDisplayText, Palette::kDisplayTextAlpha));
        p.drawText(QRectF(x - 14, plot.bottom() + 2, 28, 12), Qt::AlignCenter,
                   QString::fromLatin1(gridText[i]));
    }
    for (int db = -12; db <= 12; db += 6) {
        const qreal y = yOf(db);
        p.setPen(QPen(db == 0 ? Palette::colour(Palette::kWhite, 80)
                              : Palette::colour(Palette::kWhite, 24),
                      1.0));
        p.drawLine(QPointF(plot.left(), y), QPointF(plot.right(), y));
        p.setPen(Palette::colour(Palette::kDisplayText, Palette::kDisplayTextAlpha));
        p.drawText(QRectF(2, y - 6, 25, 12), Qt::AlignRight | Qt::AlignVCenter,
                   db > 0 ? QStringLiteral("+%1").arg(db) : QString::number(db));
    }

    QPainterPath curve;
    for (int i = 0; i < kPoints; ++i) {
        const QPointF pt(xOf(frequencyAt(i)), yOf(curveDb_[static_cast<size_t>(i)]));
        if (i == 0) {
            curve.moveTo(pt);
        } else {
            curve.lineTo(pt);
        }
    }
    QPainterPath area = curve;
    area.lineTo(plot.right(), yOf(0));
    area.lineTo(plot.left(), yOf(0));
    area.closeSubpath();
    p.save();
    p.setClipRect(plot);
    p.setPen(Qt::NoPen);
    p.setBrush(Palette::colour(Palette::kTeal, eq_.enabled ? 60 : 20));
    p.drawPath(area);
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(eq_.enabled ? Palette::colour(Palette::kGlowTeal)
                              : Palette::colour(Palette::kGreyCool),
                  2.0));
    p.drawPath(curve);
    p.restore();

    // A dot on every band that runs, at its centre and gain.
    p.setPen(QPen(Qt::white, 1.0));
    for (const NotchBand& band : eq_.notchBands) {
        if (!band.enabled || band.centerHz < kMinHz || band.centerHz > kMaxHz) {
            continue;
        }
        p.setBrush(band.gainDb >= 0.0f ? Palette::colour(Palette::kTeal)
                                       : Palette::colour(Palette::kWarn));
        p.drawEllipse(QPointF(xOf(band.centerHz), yOf(band.gainDb)), 3.5, 3.5);
    }
}

} // namespace Lumora
