#include "ui/DiagnosisFlow.h"

#include "module/ObsFilterState.h"
#include "ui/WizardPanel.h"

#include <optional>

namespace Lumora {

namespace {
// How long the wizard's closing words stay before the main page returns.
constexpr double kEndHoldSeconds = 1.5;
} // namespace

DiagnosisFlow::DiagnosisFlow(QObject* parent, WizardPanel* panel, const EffectPreset* working)
    : QObject(parent), panel_(panel), working_(working) {
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

DiagnosisFlow::~DiagnosisFlow() {
    if (runner_.effectsDisabled()) {
        restoreEffects();
    }
}

void DiagnosisFlow::setAnalyseFunction(DiagnosisRunner::AnalyseFunction analyse) {
    runner_.setAnalyseFunction(std::move(analyse));
}

void DiagnosisFlow::open(ObsFilterState& state) {
    state_ = &state;
    // The analyser must hear the raw voice.
    runner_.disableEffects(state, *working_);
    endHold_ = 0.0;
    refresh();
}

void DiagnosisFlow::start(ObsFilterState& state) {
    controller_.reset();
    open(state);
}

void DiagnosisFlow::startNoiseLearning(ObsFilterState& state) {
    controller_.reset();
    controller_.restartAtSilence();
    open(state);
}

void DiagnosisFlow::tick(double dt) {
    float level = -96.0f;
    if (state_ && state_->analyser) {
        const DiagnosisController::State before = controller_.state();
        controller_.tick(dt, state_->analyser->snapshot());
        followTake(before);
        level = state_->chain.inputLevelDb();
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
    DiagnosisAnalyser& analyser = *state_->analyser;
    const DiagnosisController::State now = controller_.state();
    if (now == DiagnosisController::kRecording && before != DiagnosisController::kRecording) {
        controller_.setTakeEpoch(analyser.restartHeld());
        if (controller_.currentStep() == kStepSilence) {
            captureBuffer_.resize(8192);
            // Whatever an earlier reader left in the ring is not this take.
            while (analyser.readCapture(captureBuffer_.data(), captureBuffer_.size()) > 0) {
            }
            analyser.setRecording(true);
            capturing_ = true;
        }
    }
    if (capturing_) {
        for (size_t n;
             (n = analyser.readCapture(captureBuffer_.data(), captureBuffer_.size())) > 0;) {
            controller_.appendSilenceAudio(captureBuffer_.data(), n, analyser.sampleRate());
        }
        if (now != DiagnosisController::kRecording) {
            stopCapture();
        }
    }
}

void DiagnosisFlow::stopCapture() {
    if (capturing_ && state_ && state_->analyser) {
        state_->analyser->setRecording(false);
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

void DiagnosisFlow::forgetState() {
    stopCapture();
    runner_.forgetState();
    state_ = nullptr;
}

void DiagnosisFlow::refresh(double dt, float levelDb) {
    panel_->refresh(controller_, dt, levelDb);
}

void DiagnosisFlow::next() {
    if (!controller_.next()) {
        return;
    }
    if (controller_.state() == DiagnosisController::kAnalysing) {
        runner_.start(state_, controller_.session());
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
    if (std::optional<DiagnosisResult> result = runner_.poll(state_)) {
        deliver(std::move(*result));
    }
}

void DiagnosisFlow::deliver(DiagnosisResult result) {
    if (!controller_.deliverResult(std::move(result))) {
        return;
    }
    restoreEffects();
    if (controller_.singleStep()) {
        // Learning the room's noise: only the silence spectrum is kept.
        emit noiseLearned(controller_.result().noiseSpectrum);
        controller_.finish();
        return;
    }
    emit resultDelivered(controller_.result());
}

void DiagnosisFlow::restoreEffects() {
    if (state_) {
        runner_.restoreEffects(*state_, *working_);
    }
}

} // namespace Lumora
