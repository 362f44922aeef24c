#include "ui/CountdownWidget.h"

#include "ui/Localisation.h"
#include "ui/Theme.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Lumora {

CountdownWidget::CountdownWidget(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(140, 140);
}

void CountdownWidget::set(Mode mode, double progress, int seconds) {
    const double p = std::clamp(progress, 0.0, 1.0);
    const int step = static_cast<int>(p * 360.0);
    if (mode == mode_ && seconds == seconds_ && step == shownStep_ && mode != Mode::Busy) {
        return;
    }
    mode_ = mode;
    progress_ = p;
    seconds_ = seconds;
    shownStep_ = step;
    update();
}

void CountdownWidget::showCountdown(int secondsLeft, double progress) {
    set(Mode::Countdown, progress, secondsLeft);
}

void CountdownWidget::showRecording(double progress, int secondsLeft) {
    set(Mode::Recording, progress, secondsLeft);
}

void CountdownWidget::showBusy(double dt) {
    spinner_ = std::fmod(spinner_ + dt * 240.0, 360.0);
    set(Mode::Busy, 0.0, 0);
}

void CountdownWidget::showIdle() {
    set(Mode::Idle, 0.0, 0);
}

void CountdownWidget::paintEvent(QPaintEvent*) {
    if (mode_ == Mode::Idle) {
        return;
    }
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const qreal scale = std::min(width(), height()) / 140.0;
    p.scale(scale, scale);

    const QRectF ring(12, 12, 116, 116);
    p.setPen(Qt::NoPen);
    p.setBrush(Palette::colour(Palette::kWhite, 215));
    p.drawEllipse(QRectF(4, 4, 132, 132));

    QPen track(Palette::colour(Palette::kLilacPale, 90), 10);
    track.setCapStyle(Qt::RoundCap);
    p.setPen(track);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(ring);

    QPen arc(Palette::colour(Palette::kTeal), 10);
    arc.setCapStyle(Qt::RoundCap);
    if (mode_ == Mode::Countdown) {
        arc.setColor(Palette::colour(Palette::kLilacPale));
    }
    p.setPen(arc);
    if (mode_ == Mode::Busy) {
        p.drawArc(ring, static_cast<int>((90.0 - spinner_) * 16.0), 100 * 16);
    } else if (progress_ > 0.0) {
        p.drawArc(ring, 90 * 16, -static_cast<int>(progress_ * 360.0 * 16.0));
    }

    p.setFont(appFont(10));
    QFont font = p.font();
    if (mode_ == Mode::Countdown) {
        font.setPointSizeF(40);
        font.setBold(true);
        p.setFont(font);
        p.setPen(Palette::colour(Palette::kInk));
        p.drawText(QRectF(0, 0, 140, 140), Qt::AlignCenter, QString::number(seconds_));
    } else if (mode_ == Mode::Recording) {
        p.setPen(Qt::NoPen);
        p.setBrush(Palette::colour(Palette::kBad));
        p.drawEllipse(QPointF(70, 52), 7, 7);
        font.setPointSizeF(22);
        font.setBold(true);
        p.setFont(font);
        p.setPen(Palette::colour(Palette::kInk));
        p.drawText(QRectF(0, 62, 140, 40), Qt::AlignCenter, QString::number(seconds_));
    } else {
        p.setPen(Qt::NoPen);
        for (int i = 0; i < 3; ++i) {
            const double phase = spinner_ / 360.0 * 2.0 * M_PI * 2.0 - i * 0.9;
            const int alpha = static_cast<int>(120 + 120 * (0.5 + 0.5 * std::sin(phase)));
            p.setBrush(Palette::colour(Palette::kLilac, std::clamp(alpha, 0, 255)));
            p.drawEllipse(QPointF(52 + i * 18, 70), 5, 5);
        }
    }
}

} // namespace Lumora
