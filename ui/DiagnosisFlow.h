#pragma once

#include "diagnosis/DiagnosisController.h"
#include "ui/DiagnosisRunner.h"

#include <QObject>

#include <array>
#include <vector>

namespace Lumora {

class FilterEngine;
class WizardPanel;

// The running diagnosis between the dialog and its wizard page: forwards the
// page's buttons to the controller, records on the dialog's tick, holds the
// filter's chains straight through for the takes, runs the analysis on its
// thread and reports what the dialog has to do with the outcome.
class DiagnosisFlow : public QObject {
    Q_OBJECT
public:
    DiagnosisFlow(QObject* parent, WizardPanel* panel);
    ~DiagnosisFlow() override;

    void setAnalyseFunction(DiagnosisRunner::AnalyseFunction analyse);

    // Opens the wizard at the mic choice.
    void start(FilterEngine& engine);
    // One tick while the wizard is shown: the latest snapshot, the analysis,
    // the page; after the closing words it emits finished().
    void tick(double dt);
    // Ends whatever runs (the dialog is being hidden) and brings the effects back.
    void abort();
    // The filter is going away: nothing of it may be touched any more.
    void forgetEngine();

    bool effectsHeld() const { return runner_.effectsHeld(); }
    const DiagnosisController& controller() const { return controller_; }
    const DiagnosisRunner& runner() const { return runner_; }

signals:
    // The diagnosis finished with this result.
    void resultDelivered(const DiagnosisResult& result);
    void applyRequested(const DiagnosisResult& result);
    void saveRequested(const DiagnosisResult& result);
    // The wizard is over; the dialog shows its main page again.
    void finished();

private:
    void open(FilterEngine& engine);
    void refresh(double dt = 0.0, float levelDb = -96.0f);
    void next();
    void cancel();
    void close();
    void poll();
    void deliver(DiagnosisResult result);
    void restoreEffects();
    // Around a take's recording: restart the held measures, capture the
    // take's audio.
    void followTake(DiagnosisController::State before);
    // Hands the take's captured audio to the controller.
    void drainCapture();
    void stopCapture();

    enum class PendingAction { None, Apply, Save };

    WizardPanel* panel_;
    FilterEngine* engine_ = nullptr;
    DiagnosisController controller_;
    DiagnosisRunner runner_;
    PendingAction pending_ = PendingAction::None;
    double endHold_ = 0.0;
    bool capturing_ = false;
    std::vector<float> captureBuffer_;
};

} // namespace Lumora
