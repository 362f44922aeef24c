#pragma once

#include <QWidget>

namespace Lumora {

// The round clock of the diagnosis: "3, 2, 1" before a take, a filling ring
// while it records, a turning arc while the analysis runs. Painted from a
// logical 140 x 140 square.
class CountdownWidget : public QWidget {
    Q_OBJECT
public:
    enum class Mode { Idle, Countdown, Recording, Busy };

    explicit CountdownWidget(QWidget* parent);

    // Countdown: seconds left (3..1) and progress 0..1 of the three seconds.
    void showCountdown(int secondsLeft, double progress);
    // Recording: progress 0..1 of the take and whole seconds left.
    void showRecording(double progress, int secondsLeft);
    // Analysing: the arc turns with dt.
    void showBusy(double dt);
    void showIdle();

    Mode mode() const { return mode_; }
    double progress() const { return progress_; }
    int secondsLeft() const { return seconds_; }

    QSize sizeHint() const override { return QSize(140, 140); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void set(Mode mode, double progress, int seconds);

    Mode mode_ = Mode::Idle;
    double progress_ = 0.0;
    int seconds_ = 0;
    double spinner_ = 0.0; // degrees
    int shownStep_ = -1;   // progress in 1/360ths, to skip repaints that change nothing
};

} // namespace Lumora
