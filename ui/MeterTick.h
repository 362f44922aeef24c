#pragma once

#include <QElapsedTimer>
#include <QObject>

class QTimer;

namespace Lumora {

class FilterEngine;

// The dialog's clock: a timer whose ticks drive the animation and the running
// diagnosis, and the reading of the engine's meters that the level meters and
// displays are fed from on each tick. 30 ticks a second while the dialog is
// the active window (meters and the sky's drift look smooth at it, and each
// tick may cost a repaint pass); 10 while the streamer works elsewhere, where
// the meters only need to show that the voice is there.
class MeterTick : public QObject {
    Q_OBJECT
public:
    // The levels one tick hands to the meters and displays, in dB.
    struct Levels {
        float chainInput = -96.0f;
        float chainOutput = -96.0f;
        float compressorInput = -60.0f;   // clamped below at -60
        float compressorReduction = 0.0f; // clamped below at 0
        float compressorOutput = -60.0f;  // the chain's output, clamped below at -60
        float fxInput = -96.0f;           // floor -96
        float fxOutput = -96.0f;
        // Not a level, but read on the same clock: how late the filter's
        // output is, in ms (OBS moves the timestamps to match).
        double outputDelayMs = 0.0;
    };

    explicit MeterTick(QObject* parent);

    QTimer* timer() const { return timer_; }
    // Starts the timer; the first step is measured from now.
    void start();
    void stop();
    // The rate: foreground (the active window) or background.
    void setForeground(bool foreground);
    // One tick with the given time step (capped at 0.1 s): emits ticked().
    void advance(double dt);
    quint64 count() const { return count_; }
    // Reads the engine's meters (after prepare) and emits levelsUpdated().
    void readLevels(const FilterEngine& engine);

signals:
    void ticked(double dt);
    void levelsUpdated(const Lumora::MeterTick::Levels& levels);

private:
    QTimer* timer_;
    QElapsedTimer elapsed_;
    quint64 count_ = 0;
};

} // namespace Lumora
