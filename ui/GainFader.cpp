#include "ui/GainFader.h"
#include "ui/Theme.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
constexpr qreal kKnobRadius = 7.0;
constexpr float kStepDb = 0.5f;

float snap(float db) {
    return std::round(db / kStepDb) * kStepDb;
}
} // namespace

GainFader::GainFader(QWidget* parent, float minDb, float maxDb)
    : QWidget(parent), min_(minDb), max_(maxDb) {
    setAttribute(Qt::WA_TranslucentBackground);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMinimumHeight(22);
}

void GainFader::setValue(float db) {
    const float v = db == db ? std::clamp(db, min_, max_) : 0.0f;
    if (v == value_) {
        return;
    }
    value_ = v;
    update();
}

qreal GainFader::xFor(float db) const {
    const qreal span = std::max<qreal>(1.0, width() - 2 * kKnobRadius - 2);
    return kKnobRadius + 1 + span * static_cast<qreal>((db - min_) / (max_ - min_));
}

void GainFader::setFromUser(float db) {
    const float before = value_;
    setValue(snap(db));
    if (value_ != before) {
        emit valueChanged(value_);
    }
}

void GainFader::setFromX(qreal x) {
    const qreal span = std::max<qreal>(1.0, width() - 2 * kKnobRadius - 2);
    const qreal f = std::clamp((x - kKnobRadius - 1) / span, 0.0, 1.0);
    setFromUser(min_ + static_cast<float>(f) * (max_ - min_));
}

void GainFader::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal cy = height() / 2.0;
    const qreal x0 = xFor(min_);
    const qreal x1 = xFor(max_);
    const qreal xz = xFor(std::clamp(0.0f, min_, max_));
    const qreal xv = xFor(value_);

    p.setPen(Qt::NoPen);
    p.setBrush(Palette::colour(Palette::kLilacPale, 90));
    p.drawRoundedRect(QRectF(x0, cy - 2, x1 - x0, 4), 2, 2);
    p.setBrush(Palette::colour(Palette::kTeal));
    p.drawRoundedRect(QRectF(std::min(xz, xv), cy - 2, std::abs(xv - xz), 4), 2, 2);
    p.setBrush(Palette::colour(Palette::kGrey));
    p.drawRect(QRectF(xz - 0.75, cy - 6, 1.5, 12));

    p.setPen(QPen(Palette::colour(Palette::kTeal), 2));
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(xv, cy), kKnobRadius, kKnobRadius);
}

void GainFader::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        setFromX(event->pos().x());
    }
}

void GainFader::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton) {
        setFromX(event->pos().x());
    }
}

void GainFader::mouseDoubleClickEvent(QMouseEvent*) {
    setFromUser(0.0f);
}

void GainFader::wheelEvent(QWheelEvent* event) {
    const int delta = event->angleDelta().y();
    if (delta != 0) {
        setFromUser(value_ + (delta > 0 ? kStepDb : -kStepDb));
    }
    event->accept();
}

} // namespace Lumora
