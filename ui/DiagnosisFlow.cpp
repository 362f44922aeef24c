#include "ui/DiagnosisFlow.h"

#include "engine/FilterEngine.h"
#include "ui/WizardPanel.h"

#include <optional>

namespace Lumora {

namespace {
// How long the wizard's closing words stay before the main page returns.
constexpr double kEndHoldSeconds = 1.5;
} // namespace

DiagnosisFlow::DiagnosisFlow(QObject* parent, WizardPanel* panel) : QObject(parent), panel_(panel) {
    controller_.setResultCallback([this](const DiagnosisResult& result) {
        if (pending_ == PendingAction::Apply) {
            emit applyRequested(result);
        } else if (pending_ == PendingAction::Save) {
            emit saveRequested(result);
        }
    });
    connect(panel_, &WizardPanel::micChosen, this, [this](int mic) {
        controller_.selectMic(mic);
        refresh();
    });
    connect(panel_, &WizardPanel::startRequested, this, [this] {
        controller_.startTake();
        refresh();
    });
    connect(panel_, &WizardPanel::retryRequested, this, [this] {
        controller_.retry();
        refresh();
    });
    connect(panel_, &WizardPanel::nextRequested, this, &DiagnosisFlow::next);
    connect(panel_, &WizardPanel::cancelRequested, this, &DiagnosisFlow::cancel);
    connect(panel_, &WizardPanel::closeRequested, this, &DiagnosisFlow::close);
    connect(panel_, &WizardPanel::detailsRequested, this, &DiagnosisFlow::close);
    connect(panel_, &WizardPanel::offerSaveRequested, this, [this] {
        controller_.offerSave();
        refresh();
    });
    connect(panel_, &WizardPanel::applyRequested, this, [this] {
        pending_ = PendingAction::Apply;
        controller_.apply();
        pending_ = PendingAction::None;
        refresh();
    });
    connect(panel_, &WizardPanel::saveRequested, this, [this] {
        pending_ = PendingAction::Save;
        controller_.save();
        pending_ = PendingAction::None;
        refresh();
    });
}

DiagnosisFlow::~DiagnosisFlow() = default;

void DiagnosisFlow::setAnalyseFunction(DiagnosisRunner::AnalyseFunction analyse) {
    runner_.setAnalyseFunction(std::move(analyse));
}

void DiagnosisFlow::open(FilterEngine& engine) {
    engine_ = &engine;
    // The analyser must hear the raw voice.
    runner_.holdEffects(engine);
    endHold_ = 0.0;
    refresh();
}

void DiagnosisFlow::start(FilterEngine& engine) {
    controller_.reset();
    open(engine);
}

void DiagnosisFlow::tick(double dt) {
    float level = -96.0f;
    if (engine_ && engine_->analyser()) {
        // The audio since the last tick belongs to the take, even on the tick
        // that ends it: hand it over before the controller moves on.
        drainCapture();
        const DiagnosisController::State before = controller_.state();
        controller_.tick(dt, engine_->analyser()->snapshot());
        followTake(before);
        level = engine_->chain().inputLevelDb();
    }
    poll();
    refresh(dt, level);
    if (controller_.state() == DiagnosisController::kEnd) {
        endHold_ += dt;
        if (endHold_ >= kEndHoldSeconds) {
            endHold_ = 0.0;
            restoreEffects();
            emit finished();
        }
    }
}

void DiagnosisFlow::followTake(DiagnosisController::State before) {
    DiagnosisAnalyser& analyser = *engine_->analyser();
    const DiagnosisController::State now = controller_.state();
    if (now == DiagnosisController::kRecording && before != DiagnosisController::kRecording) {
        controller_.setTakeEpoch(analyser.restartHeld());
        captureBuffer_.resize(8192);
        // Whatever an earlier reader left in the ring is not this take.
        while (analyser.readCapture(captureBuffer_.data(), captureBuffer_.size()) > 0) {
        }
        analyser.setRecording(true);
        capturing_ = true;
    }
    if (capturing_ && now != DiagnosisController::kRecording) {
        stopCapture();
    }
}

void DiagnosisFlow::drainCapture() {
    if (!capturing_) {
        return;
    }
    DiagnosisAnalyser& analyser = *engine_->analyser();
    for (size_t n; (n = analyser.readCapture(captureBuffer_.data(), captureBuffer_.size())) > 0;) {
        controller_.appendAudio(captureBuffer_.data(), n, analyser.sampleRate());
    }
}

void DiagnosisFlow::stopCapture() {
    if (capturing_ && engine_ && engine_->analyser()) {
        engine_->analyser()->setRecording(false);
    }
    capturing_ = false;
}

void DiagnosisFlow::abort() {
    stopCapture();
    if (!controller_.cancel()) {
        controller_.finish();
    }
    restoreEffects();
    endHold_ = 0.0;
}

void DiagnosisFlow::forgetEngine() {
    stopCapture();
    runner_.forgetEngine();
    engine_ = nullptr;
}

void DiagnosisFlow::refresh(double dt, float levelDb) {
    panel_->refresh(controller_, dt, levelDb);
}

void DiagnosisFlow::next() {
    if (!controller_.next()) {
        return;
    }
    if (controller_.state() == DiagnosisController::kAnalysing) {
        runner_.start(engine_, controller_.session());
    }
    refresh();
}

void DiagnosisFlow::cancel() {
    stopCapture();
    if (controller_.cancel()) {
        restoreEffects();
        refresh();
    }
}

void DiagnosisFlow::close() {
    if (controller_.finish()) {
        restoreEffects();
        refresh();
    }
}

void DiagnosisFlow::poll() {
    if (!runner_.analysing() || controller_.state() != DiagnosisController::kAnalysing) {
        return;
    }
    if (std::optional<DiagnosisResult> result = runner_.poll(engine_)) {
        deliver(std::move(*result));
    }
}

void DiagnosisFlow::deliver(DiagnosisResult result) {
    if (!controller_.deliverResult(std::move(result))) {
        return;
    }
    restoreEffects();
    emit resultDelivered(controller_.result());
}

void DiagnosisFlow::restoreEffects() {
    runner_.releaseEffects();
}

} // namespace Lumora
