#include "ui/DiagnosisPresenter.h"

#include "diagnosis/RecommendedSettings.h"
#include "engine/FilterEngine.h"
#include "settings/SettingsJson.h"
#include "settings/SettingsStore.h"
#include "ui/DiagnosisFlow.h"
#include "ui/EngineBinding.h"
#include "ui/HomePanel.h"
#include "ui/Localisation.h"
#include "ui/PresetNamePrompt.h"
#include "ui/ResultSummaryCard.h"
#include "ui/ResultsPage.h"
#include "ui/SaveFailure.h"
#include "ui/WizardPanel.h"

#include <QMessageBox>
#include <QPushButton>

namespace Lumora {

DiagnosisPresenter::DiagnosisPresenter(QWidget* dialog, EngineBinding* binding, const Pages& pages)
    : QObject(dialog), dialog_(dialog), binding_(binding), pages_(pages),
      flow_(new DiagnosisFlow(this, pages.wizard)) {
    connect(flow_, &DiagnosisFlow::finished, this, &DiagnosisPresenter::finished);
    connect(flow_, &DiagnosisFlow::resultDelivered, this, &DiagnosisPresenter::keepResult);
    connect(flow_, &DiagnosisFlow::applyRequested, this, &DiagnosisPresenter::applyFor);
    connect(flow_, &DiagnosisFlow::saveRequested, this, &DiagnosisPresenter::saveFor);
    pages_.revert->setEnabled(false);
}

DiagnosisPresenter::~DiagnosisPresenter() {
    // The flow's measurement hold ends while the engine is still there.
    delete flow_;
}

void DiagnosisPresenter::setAnalyseFunction(DiagnosisRunner::AnalyseFunction analyse) {
    flow_->setAnalyseFunction(std::move(analyse));
}

const DiagnosisController& DiagnosisPresenter::controller() const {
    return flow_->controller();
}

const DiagnosisRunner& DiagnosisPresenter::runner() const {
    return flow_->runner();
}

void DiagnosisPresenter::start() {
    if (!binding_->engine()) {
        return;
    }
    flow_->start(*binding_->engine());
    emit started();
}

void DiagnosisPresenter::tick(double dt) {
    flow_->tick(dt);
}

void DiagnosisPresenter::abort() {
    flow_->abort();
    emit finished();
}

void DiagnosisPresenter::forgetEngine() {
    flow_->forgetEngine();
}

void DiagnosisPresenter::keepResult(const DiagnosisResult& result) {
    results_[1] = results_[0];
    hasResult_[1] = hasResult_[0];
    results_[0] = result;
    hasResult_[0] = true;
    pages_.results->showResult(&results_[0]);
    showStatus();
    if (SettingsStore* store = binding_->store()) {
        DiagnosisHistoryEntry entry;
        entry.timestamp = nowTimestamp();
        entry.result = result;
        historyStamp_ = store->addDiagnosisHistory(entry) ? entry.timestamp : std::string();
        emit storeChanged();
    }
}

EffectPreset DiagnosisPresenter::recommendationFor(const DiagnosisResult& result) const {
    EffectPreset preset = recommend(result, binding_->recordingMode());
    preset.active = true;
    return preset;
}

void DiagnosisPresenter::applyFor(const DiagnosisResult& result) {
    diagnosisPreset_ = recommendationFor(result);
    hasDiagnosisPreset_ = true;
    binding_->useCleaning(diagnosisPreset_, diagnosisPreset_.name);
    pages_.revert->setEnabled(true);
    // The history tells which diagnoses the user acted on.
    SettingsStore* store = binding_->store();
    if (store && !historyStamp_.empty() && store->markDiagnosisApplied(historyStamp_)) {
        emit storeChanged();
    }
}

void DiagnosisPresenter::applyRecommended() {
    if (hasResult_[0]) {
        applyFor(results_[0]);
    }
}

void DiagnosisPresenter::saveRecommended() {
    if (hasResult_[0]) {
        saveFor(results_[0]);
    }
}

void DiagnosisPresenter::revertToDiagnosisSettings() {
    if (hasDiagnosisPreset_) {
        binding_->useCleaning(diagnosisPreset_, diagnosisPreset_.name);
    }
}

void DiagnosisPresenter::saveFor(const DiagnosisResult& result) {
    EffectPreset preset = recommendationFor(result);
    QString name = QString::fromStdString(preset.name);
    const QString title = tr("Save Preset");
    const QString label = tr("Enter a preset name:");
    const bool named =
        prompt_ ? prompt_(title, label, name) : promptForPresetName(dialog_, title, label, name);
    if (!named) {
        return;
    }
    SavedEffectPreset saved;
    saved.name = name.toStdString();
    saved.description = preset.description;
    saved.recording = preset.recording;
    saved.preset = preset;
    saved.preset.name = saved.name;
    SettingsStore* store = binding_->store();
    if (!store || !store->saveEffectPreset(saved)) {
        QMessageBox::warning(
            dialog_, title,
            saveFailureText(store, tr("The preset could not be saved. Please try again.")));
        return;
    }
    emit storeChanged();
}

void DiagnosisPresenter::retranslate() {
    pages_.wizard->retranslateUi(flow_->controller());
    pages_.results->showResult(hasResult_[0] ? &results_[0] : nullptr);
    showStatus();
}

void DiagnosisPresenter::showStatus() {
    if (!hasResult_[0]) {
        pages_.home->setStatus(QString());
        return;
    }
    pages_.home->setStatus(tr("Last diagnosis:") + QStringLiteral(" ") +
                           verdictLabel(results_[0].overall) + QStringLiteral("  ") +
                           ResultSummaryCard::summaryFor(results_[0]));
}

} // namespace Lumora
