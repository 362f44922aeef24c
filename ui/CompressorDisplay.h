#pragma once

#include "dsp/EffectPreset.h"

#include <QWidget>

#include <array>

namespace Lumora {

// The compressor at a glance: on the left its static curve (output level over
// input level, with threshold, ratio, knee, makeup and the limiter's ceiling),
// on the right the last 300 ticks of input level, gain reduction and output
// level, fed by the dialog's timer through push().
//
// Repaints when the parameters change or the history moves; a history that
// has been flat for its whole length (silence, nothing running) does not
// repaint at all. Painted from a logical height of 120; the logical width
// follows the widget.
class CompressorDisplay : public QWidget {
    Q_OBJECT
public:
    static constexpr int kHistory = 300;
    static constexpr int kLogicalHeight = 120;
    static constexpr float kFloorDb = -60.0f;
    static constexpr float kMaxReductionDb = 24.0f;

    explicit CompressorDisplay(QWidget* parent);

    void setParameters(const CompParams& comp, const LimiterParams& limiter);
    void setPreset(const EffectPreset& preset) { setParameters(preset.comp, preset.limiter); }

    // One tick: input level, gain reduction (positive dB) and output level.
    // Levels are kept within -60..0 dB, the reduction within 0..24 dB.
    void push(float inputDb, float gainReductionDb, float outputDb);
    void clearHistory();

    // Oldest first; index 0 .. kHistory-1.
    float inputAt(int index) const;
    float gainReductionAt(int index) const;
    float outputAt(int index) const;
    // Repaints asked for by push() (for the idle-cost tests).
    int historyRepaints() const { return historyRepaints_; }

    // The static curve: output level for a steady input level, as the
    // compressor computes it (knee included), plus makeup, before the limiter.
    static double staticOutputDb(const CompParams& comp, double inputDb);

    QSize sizeHint() const override { return QSize(440, kLogicalHeight); }
    QSize minimumSizeHint() const override { return QSize(240, kLogicalHeight); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Point {
        float in = kFloorDb;
        float gr = 0.0f;
        float out = kFloorDb;
        bool operator==(const Point& o) const { return in == o.in && gr == o.gr && out == o.out; }
    };
    const Point& at(int index) const;

    CompParams comp_;
    LimiterParams limiter_;
    std::array<Point, kHistory> history_{};
    int head_ = 0;           // where the next point goes (the oldest point)
    int flatRun_ = kHistory; // consecutive pushes equal to their predecessor
    int historyRepaints_ = 0;
};

} // namespace Lumora
