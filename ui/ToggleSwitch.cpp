#include "ui/ToggleSwitch.h"
#include "ui/Theme.h"

#include <QPainter>
#include <QVariantAnimation>

namespace Lumora {

ToggleSwitch::ToggleSwitch(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(52, 28);
    setFocusPolicy(Qt::TabFocus);
    animation_ = new QVariantAnimation(this);
    animation_->setDuration(140);
    animation_->setEasingCurve(QEasingCurve::OutCubic);
    connect(animation_, &QVariantAnimation::valueChanged, this, [this](const QVariant& v) {
        position_ = v.toReal();
        update();
    });
}

void ToggleSwitch::checkStateSet() {
    // Set from code: jump without animation.
    animation_->stop();
    position_ = isChecked() ? 1.0 : 0.0;
    update();
}

void ToggleSwitch::nextCheckState() {
    QAbstractButton::nextCheckState();
    animateTo(isChecked());
}

void ToggleSwitch::animateTo(bool on) {
    animation_->stop();
    animation_->setStartValue(position_);
    animation_->setEndValue(on ? 1.0 : 0.0);
    animation_->start();
}

void ToggleSwitch::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal sx = width() / 52.0;
    const qreal sy = height() / 28.0;
    p.scale(sx, sy);

    const QColor off = Palette::colour(Palette::kLilacMist);
    const QColor on = Palette::colour(Palette::kTeal);
    const qreal t = position_;
    const QColor track(static_cast<int>(off.red() + (on.red() - off.red()) * t),
                       static_cast<int>(off.green() + (on.green() - off.green()) * t),
                       static_cast<int>(off.blue() + (on.blue() - off.blue()) * t));
    p.setPen(Qt::NoPen);
    p.setBrush(isEnabled() ? track : off);
    p.drawRoundedRect(QRectF(1, 1, 50, 26), 13, 13);

    const qreal x = 14.0 + t * 24.0;
    p.setBrush(Palette::colour(Palette::kInk, 40));
    p.drawEllipse(QPointF(x, 15.0), 10.5, 10.5);
    p.setBrush(Qt::white);
    p.drawEllipse(QPointF(x, 14.0), 10.5, 10.5);
}

} // namespace Lumora
