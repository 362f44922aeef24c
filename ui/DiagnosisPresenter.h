#pragma once

#include "diagnosis/DiagnosisResult.h"
#include "dsp/EffectPreset.h"
#include "ui/DiagnosisRunner.h"

#include "ui/PresetNamePrompt.h"

#include <QObject>
#include <QString>

#include <array>
#include <functional>
#include <string>

class QPushButton;
class QWidget;

namespace Lumora {

class DiagnosisController;
class DiagnosisFlow;
class EngineBinding;
class HomePanel;
class ResultsPage;
class WizardPanel;

// The diagnosis as the user meets it: the guided takes on the wizard page, the
// verdicts on the results page and the home page's status line, and what the
// results lead to: the recommended settings applied (and kept as the ones to
// go back to), saved as a preset, and every diagnosis in the history.
class DiagnosisPresenter : public QObject {
    Q_OBJECT
public:
    struct Pages {
        WizardPanel* wizard = nullptr;
        ResultsPage* results = nullptr;
        HomePanel* home = nullptr;
        QPushButton* revert = nullptr; // the sound page's "back to the diagnosis"
    };

    DiagnosisPresenter(QWidget* dialog, EngineBinding* binding, const Pages& pages);
    ~DiagnosisPresenter() override;

    // The analysis the takes go through (on a thread of its own); the real one
    // unless a tool or test needs a given result.
    void setAnalyseFunction(DiagnosisRunner::AnalyseFunction analyse);
    void setNamePrompt(NamePrompt prompt) { prompt_ = std::move(prompt); }

    // Opens the wizard (with a filter only); started() tells the dialog.
    void start();
    // One tick while the wizard is shown.
    void tick(double dt);
    // The dialog is being closed: the takes end and the voice comes back.
    void abort();
    // The engine is about to be freed.
    void forgetEngine();

    void applyRecommended();
    void saveRecommended();
    void revertToDiagnosisSettings();
    // Texts again in the current language.
    void retranslate();

    bool hasResult(int slot) const { return hasResult_[static_cast<size_t>(slot)]; }
    const DiagnosisResult& result(int slot) const { return results_[static_cast<size_t>(slot)]; }
    bool hasDiagnosisPreset() const { return hasDiagnosisPreset_; }
    const DiagnosisController& controller() const;
    const DiagnosisRunner& runner() const;

signals:
    void started();
    // The wizard is over: the dialog shows its main page again.
    void finished();
    // A preset or a diagnosis went into the settings file: the lists reload.
    void storeChanged();

private:
    void keepResult(const DiagnosisResult& result);
    void applyFor(const DiagnosisResult& result);
    void saveFor(const DiagnosisResult& result);
    EffectPreset recommendationFor(const DiagnosisResult& result) const;
    void showStatus();

    QWidget* dialog_;
    EngineBinding* binding_;
    Pages pages_;
    DiagnosisFlow* flow_;
    NamePrompt prompt_;
    // The latest result first, the one before it second.
    std::array<DiagnosisResult, 2> results_{};
    std::array<bool, 2> hasResult_{{false, false}};
    std::string historyStamp_; // the newest result's history entry, when it was kept
    EffectPreset diagnosisPreset_;
    bool hasDiagnosisPreset_ = false;
};

} // namespace Lumora
