#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace Lumora {

class GainFader;
class LevelMeter;

// A strip with the input and output level of one chain, a gain fader for each
// and the chain's bypass button.
class MeterFaderWidget : public QWidget {
    Q_OBJECT
public:
    explicit MeterFaderWidget(QWidget* parent);

    void setTitle(const QString& title);
    void retranslateUi();

    // Levels in dB, clamped to -60..0 for the meters.
    void setLevels(float inputDb, float outputDb);
    void clearLevels();
    // Shows how late the filter's output is beside the title (a strip that is
    // never told shows nothing).
    void setDelayMs(double ms);

    // Set from outside: clamped to the faders' range, no signals.
    void setGains(float inputGainDb, float outputGainDb);
    void setBypass(bool on);
    float inputGain() const;
    float outputGain() const;
    bool bypass() const;

    LevelMeter* inputMeter() const { return inputMeter_; }
    LevelMeter* outputMeter() const { return outputMeter_; }
    GainFader* inputFader() const { return inputFader_; }
    GainFader* outputFader() const { return outputFader_; }
    QPushButton* bypassButton() const { return bypassButton_; }

signals:
    void gainsChanged(float inputGainDb, float outputGainDb);
    void bypassChanged(bool on);

private:
    void refreshValueLabels();
    void refreshDelay();

    QLabel* title_ = nullptr;
    QLabel* delay_ = nullptr;
    double delayMs_ = -1.0; // none shown yet
    QPushButton* bypassButton_ = nullptr;
    QLabel* inputLabel_ = nullptr;
    QLabel* outputLabel_ = nullptr;
    LevelMeter* inputMeter_ = nullptr;
    LevelMeter* outputMeter_ = nullptr;
    GainFader* inputFader_ = nullptr;
    GainFader* outputFader_ = nullptr;
    QLabel* inputValue_ = nullptr;
    QLabel* outputValue_ = nullptr;
};

} // namespace Lumora
