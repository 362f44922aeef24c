#pragma once

#include "dsp/Parameters.h"

#include <QWidget>

namespace Lumora {

// A small horizontal gain fader in dB: drag or wheel in 0.5 dB steps,
// double-click for 0 dB.
class GainFader : public QWidget {
    Q_OBJECT
public:
    // The range of the chains' gains (the parameter table).
    explicit GainFader(QWidget* parent, float minDb = Params::kInputGain.minimum,
                       float maxDb = Params::kInputGain.maximum);

    float value() const { return value_; }
    float minimum() const { return min_; }
    float maximum() const { return max_; }
    // Clamped to the range; repaints only when the value changed. Emits nothing.
    void setValue(float db);

    QSize sizeHint() const override { return QSize(140, 22); }

signals:
    // Only for changes made by the user.
    void valueChanged(float db);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    qreal xFor(float db) const;
    void setFromUser(float db);
    void setFromX(qreal x);

    float min_;
    float max_;
    float value_ = 0.0f;
};

} // namespace Lumora
