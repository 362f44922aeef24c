#pragma once

#include "ui/PeakHold.h"

#include <QWidget>

namespace Lumora {

// A slim horizontal level meter (-60..0 dB) with a held peak marker. Repaints
// only when the bar or the marker moves by at least a pixel.
class LevelMeter : public QWidget {
    Q_OBJECT
public:
    explicit LevelMeter(QWidget* parent);

    void setLevel(float db);
    // Back to silence (no levels known).
    void clear();

    const PeakHold& peakHold() const { return meter_; }
    QSize sizeHint() const override { return QSize(200, 12); }
    QSize minimumSizeHint() const override { return QSize(60, 8); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int pixelFor(float db) const;

    PeakHold meter_;
    int shownLevelPx_ = -1;
    int shownPeakPx_ = -1;
};

} // namespace Lumora
