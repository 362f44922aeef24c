#pragma once

#include <QString>
#include <QWidget>

namespace Lumora {

// A rotary control for one parameter: a 270° arc that fills with the value,
// the value and its unit in the middle and a caption underneath.
//
// Values are clamped to the range whichever way they arrive (code, drag,
// typed entry). Dragging moves the value with the pointer's height: a linear
// knob by a 500th of its range per pixel, a logarithmic one (cut-off
// frequencies) by a 600th of its range in log frequency, so every pixel is the
// same musical step. A double-click asks for a number.
//
// Painted from a logical 72 × 86 area scaled to the widget.
class Knob : public QWidget {
    Q_OBJECT
public:
    static constexpr int kLogicalWidth = 72;
    static constexpr int kLogicalHeight = 86;
    static constexpr double kLinearPixels = 500.0;
    static constexpr double kLogPixels = 600.0;

    explicit Knob(QWidget* parent);

    void setRange(double minimum, double maximum);
    double minimum() const { return minimum_; }
    double maximum() const { return maximum_; }
    // Logarithmic drag and fill; only honoured for a range above zero.
    void setLogarithmic(bool logarithmic);
    bool isLogarithmic() const { return logarithmic_ && minimum_ > 0.0; }
    void setCaption(const QString& caption);
    const QString& caption() const { return caption_; }
    void setSuffix(const QString& suffix);
    const QString& suffix() const { return suffix_; }
    // Digits after the point in the shown value and in the number entry.
    void setDecimals(int decimals);
    int decimals() const { return decimals_; }

    double value() const { return value_; }
    // Clamps to the range; a changed value repaints and emits valueChanged.
    void setValue(double value);
    // 0..1, on the knob's own scale; 0 when the range is empty.
    double fraction() const;
    // The value as shown in the middle of the knob, without the unit.
    QString valueText() const;

    // The number entry of a double-click (modal); true when a value was accepted.
    bool editValue();

    QSize sizeHint() const override { return QSize(kLogicalWidth, kLogicalHeight); }

signals:
    void valueChanged(double value);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    double minimum_ = 0.0;
    double maximum_ = 1.0;
    double value_ = 0.0;
    bool logarithmic_ = false;
    int decimals_ = 0;
    QString caption_;
    QString suffix_;

    bool dragging_ = false;
    int pressY_ = 0;
    double pressValue_ = 0.0;
};

} // namespace Lumora
