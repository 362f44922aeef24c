#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/NoiseModelLocation.h"
#include "ui/KnobBindings.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace Lumora {

class FilterEngine;
class Knob;
class NoiseLearner;
class NoiseProfileDisplay;
class SubGroup;

// The body of the sound panel's noise section: the two noise modes, the
// ambient (spectral) filter with noise learning, the AI filter with what keeps
// it from running, and the gate. Edits the panel's record in place and reports
// each edit at once.
class NoiseControls : public QWidget {
    Q_OBJECT
public:
    NoiseControls(QWidget* parent, EffectPreset* preset);

    // Sets every control from the record, quietly.
    void refresh();
    void setEasyMode(bool easy);
    void retranslateUi();

    // Where noise is learned from; null disables learning.
    void setEngine(FilterEngine* engine);
    void setNoiseSuppressionStatus(NoiseSuppressionStatus status);
    NoiseSuppressionStatus noiseSuppressionStatus() const { return status_; }
    void setNoiseLearned(bool learned);
    bool noiseLearned() const { return learned_; }
    // Starts learning the room noise (the button does the same).
    bool startNoiseLearning();

    NoiseLearner* learner() const { return learner_; }
    QLabel* learnedLabel() const { return learnedLabel_; }
    QLabel* statusLabel() const { return aiStatus_; }
    QPushButton* learnButton() const { return learnButton_; }
    QPushButton* strictButton() const { return strictButton_; }
    QPushButton* detailButton() const { return detailButton_; }
    NoiseProfileDisplay* profileDisplay() const { return profile_; }
    Knob* knob(const QString& name) const { return knobs_.knob(name); }

signals:
    void edited();
    void noiseLearningFinished(bool learned);

private:
    void edit();
    void onLearned();
    void onLearnFailed();
    void onLearnProgress(double fraction);
    void showLearnedState();

    EffectPreset* preset_;
    KnobBindings knobs_{"Lumora::NoiseControls"};
    FilterEngine* engine_ = nullptr;
    NoiseSuppressionStatus status_ = NoiseSuppressionStatus::NotPrepared;
    bool learned_ = false;
    bool learnFailed_ = false;

    QPushButton* strictButton_ = nullptr;
    QPushButton* detailButton_ = nullptr;
    SubGroup* ambient_ = nullptr;
    SubGroup* ai_ = nullptr;
    SubGroup* gate_ = nullptr;
    QPushButton* learnButton_ = nullptr;
    QLabel* learnedLabel_ = nullptr;
    NoiseProfileDisplay* profile_ = nullptr;
    QLabel* ambientLatency_ = nullptr;
    QLabel* aiLatency_ = nullptr;
    QLabel* aiStatus_ = nullptr;
    NoiseLearner* learner_ = nullptr;
    std::vector<QWidget*> advancedOnly_;
};

} // namespace Lumora
