#pragma once

#include "dsp/EffectPreset.h"

#include <QPointF>
#include <QWidget>

#include <vector>

namespace Lumora {

// The equaliser's effective magnitude response: low cut, the five bands, the
// high shelf and the high cut exactly as the chain runs them (same coefficient
// formulas, same single-precision coefficients, same rules for which section
// runs), drawn over 20 Hz to 20 kHz and ±18 dB with a dot on each band.
//
// The dialog's timer hands it the preset in force at every tick; only a change
// of the equaliser's record recomputes the curve and repaints.
// Painted from a logical height of 120; the logical width follows the widget.
class EqCurveDisplay : public QWidget {
    Q_OBJECT
public:
    static constexpr double kMinHz = 20.0;
    static constexpr double kMaxHz = 20000.0;
    static constexpr double kRangeDb = 18.0;
    static constexpr int kLogicalHeight = 120;
    static constexpr int kPoints = 240;

    explicit EqCurveDisplay(QWidget* parent);

    void setParameters(const EqParams& eq);
    void setPreset(const EffectPreset& preset) { setParameters(preset.eq); }
    const EqParams& parameters() const { return eq_; }
    void setSampleRate(double sampleRate);
    double sampleRate() const { return sampleRate_; }
    // How often the curve was recomputed (a change arrived).
    int updates() const { return updates_; }

    // The gain in dB at `hz` of the equaliser as the chain would run `eq` at
    // `sampleRate`; 0 when the stage would not run at all.
    static double responseDb(const EqParams& eq, double hz, double sampleRate);
    static bool sameParameters(const EqParams& a, const EqParams& b);

    QSize sizeHint() const override { return QSize(440, kLogicalHeight); }
    QSize minimumSizeHint() const override { return QSize(200, kLogicalHeight); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void recompute();

    EqParams eq_;
    double sampleRate_ = 48000.0;
    bool known_ = false;
    int updates_ = 0;
    std::vector<double> curveDb_; // kPoints values, log-spaced from kMinHz to kMaxHz
};

} // namespace Lumora
