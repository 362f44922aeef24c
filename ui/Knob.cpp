#include "ui/Knob.h"
#include "ui/Theme.h"

#include <QInputDialog>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

constexpr double kStartAngle = 225.0; // degrees, counter-clockwise from three o'clock
constexpr double kSweep = 270.0;
constexpr double kPi = 3.14159265358979323846;

// The largest point size up to `preferred` at which `text` fits `width`.
QFont fitted(QFont font, const QString& text, qreal preferred, qreal smallest, qreal width) {
    for (qreal size = preferred; size >= smallest; size -= 0.5) {
        font.setPointSizeF(size);
        if (QFontMetricsF(font).horizontalAdvance(text) <= width) {
            return font;
        }
    }
    font.setPointSizeF(smallest);
    return font;
}

} // namespace

Knob::Knob(QWidget* parent) : QWidget(parent) {
    setFixedSize(kLogicalWidth, kLogicalHeight);
    setCursor(Qt::SizeVerCursor);
    setAttribute(Qt::WA_TranslucentBackground);
}

void Knob::setRange(double minimum, double maximum) {
    if (!std::isfinite(minimum) || !std::isfinite(maximum)) {
        return;
    }
    minimum_ = std::min(minimum, maximum);
    maximum_ = std::max(minimum, maximum);
    const double clamped = std::clamp(value_, minimum_, maximum_);
    if (clamped != value_) {
        value_ = clamped;
        emit valueChanged(value_);
    }
    update();
}

void Knob::setLogarithmic(bool logarithmic) {
    if (logarithmic_ != logarithmic) {
        logarithmic_ = logarithmic;
        update();
    }
}

void Knob::setCaption(const QString& caption) {
    if (caption_ != caption) {
        caption_ = caption;
        update();
    }
}

void Knob::setSuffix(const QString& suffix) {
    if (suffix_ != suffix) {
        suffix_ = suffix;
        update();
    }
}

void Knob::setDecimals(int decimals) {
    decimals = std::clamp(decimals, 0, 4);
    if (decimals_ != decimals) {
        decimals_ = decimals;
        update();
    }
}

void Knob::setValue(double value) {
    if (std::isnan(value)) {
        return;
    }
    const double clamped = std::clamp(value, minimum_, maximum_);
    if (clamped == value_) {
        return;
    }
    value_ = clamped;
    update();
    emit valueChanged(value_);
}

double Knob::fraction() const {
    if (maximum_ <= minimum_) {
        return 0.0;
    }
    if (isLogarithmic()) {
        return (std::log(value_) - std::log(minimum_)) / (std::log(maximum_) - std::log(minimum_));
    }
    return (value_ - minimum_) / (maximum_ - minimum_);
}

QString Knob::valueText() const {
    // Frequencies of a kilohertz and more read better as "16.0k".
    if (suffix_ == QLatin1String("Hz") && std::abs(value_) >= 1000.0) {
        return QString::number(value_ / 1000.0, 'f', 1) + QLatin1Char('k');
    }
    QString text = QString::number(value_, 'f', decimals_);
    if (text.startsWith(QLatin1Char('-')) && text.mid(1) == QString::number(0.0, 'f', decimals_)) {
        text.remove(0, 1); // a tiny negative value reads as zero, not "-0"
    }
    return text;
}

bool Knob::editValue() {
    // The box takes numbers well past the range and the knob clamps them: a
    // box limited to ±12 would refuse the "0" of a typed "20" and leave 2,
    // where the user meant "as far as it goes", 12.
    const double reach = 10.0 * std::max({std::abs(minimum_), std::abs(maximum_), 1.0});
    bool ok = false;
    const double typed =
        QInputDialog::getDouble(this, caption_, caption_ + QLatin1Char(':'), value_, -reach, reach,
                                decimals_, &ok, Qt::WindowFlags(), 1.0);
    if (ok) {
        setValue(typed);
    }
    return ok;
}

void Knob::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    dragging_ = true;
    pressY_ = event->pos().y();
    pressValue_ = value_;
    event->accept();
}

void Knob::mouseMoveEvent(QMouseEvent* event) {
    if (!dragging_) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const double pixelsUp = static_cast<double>(pressY_ - event->pos().y());
    if (isLogarithmic()) {
        const double step = (std::log(maximum_) - std::log(minimum_)) / kLogPixels;
        setValue(std::exp(std::log(std::max(pressValue_, minimum_)) + step * pixelsUp));
    } else {
        setValue(pressValue_ + (maximum_ - minimum_) / kLinearPixels * pixelsUp);
    }
    event->accept();
}

void Knob::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        dragging_ = false;
    }
    QWidget::mouseReleaseEvent(event);
}

void Knob::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    dragging_ = false;
    editValue();
}

void Knob::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.scale(width() / static_cast<qreal>(kLogicalWidth),
            height() / static_cast<qreal>(kLogicalHeight));
    if (!isEnabled()) {
        p.setOpacity(0.4); // a knob that does nothing right now (layer B off)
    }

    const QPointF centre(36.0, 31.0);
    const qreal radius = 24.0;
    const QRectF arcRect(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
    const double f = std::clamp(fraction(), 0.0, 1.0);

    // Track, then the filled part of the arc.
    QPen track(Palette::colour(Palette::kBlue, 45), 5.0, Qt::SolidLine, Qt::RoundCap);
    p.setPen(track);
    p.drawArc(arcRect, static_cast<int>(kStartAngle * 16), static_cast<int>(-kSweep * 16));
    if (f > 0.0) {
        QLinearGradient fill(arcRect.bottomLeft(), arcRect.topRight());
        fill.setColorAt(0.0, Palette::colour(Palette::kTeal));
        fill.setColorAt(1.0, Palette::colour(Palette::kBlue));
        QPen pen(QBrush(fill), 5.0, Qt::SolidLine, Qt::RoundCap);
        p.setPen(pen);
        p.drawArc(arcRect, static_cast<int>(kStartAngle * 16),
                  static_cast<int>(std::lround(-kSweep * f * 16)));
    }

    // The body, and the pointer riding on the arc where the fill ends.
    p.setPen(QPen(Palette::colour(Palette::kBlue, 70), 1.0));
    QRadialGradient body(centre - QPointF(5, 6), 22.0);
    body.setColorAt(0.0, Qt::white);
    body.setColorAt(1.0, Palette::colour(Palette::kPaleBlue));
    p.setBrush(body);
    p.drawEllipse(centre, 17.0, 17.0);
    const double angle = (kStartAngle - kSweep * f) * kPi / 180.0;
    const QPointF tip(centre.x() + radius * std::cos(angle), centre.y() - radius * std::sin(angle));
    p.setPen(QPen(Qt::white, 1.5));
    p.setBrush(Palette::colour(Palette::kBlueStrong));
    p.drawEllipse(tip, 3.6, 3.6);

    QFont font = this->font();
    font.setBold(true);
    const QString text = valueText();
    p.setFont(fitted(font, text, 8.5, 6.0, 28.0));
    p.setPen(Palette::colour(Palette::kInk));
    p.drawText(QRectF(centre.x() - 16, centre.y() - 9, 32, 18), Qt::AlignCenter, text);

    if (!suffix_.isEmpty()) {
        QFont unit = this->font();
        p.setFont(fitted(unit, suffix_, 7.0, 5.5, 32.0));
        p.setPen(Palette::colour(Palette::kBlueInk));
        p.drawText(QRectF(centre.x() - 18, 48, 36, 13), Qt::AlignCenter, suffix_);
    }

    QFont captionFont = this->font();
    p.setFont(fitted(captionFont, caption_, 8.0, 6.0, kLogicalWidth - 2.0));
    p.setPen(Palette::colour(Palette::kInk));
    p.drawText(QRectF(0, 63, kLogicalWidth, 20), Qt::AlignHCenter | Qt::AlignTop, caption_);
}

} // namespace Lumora
