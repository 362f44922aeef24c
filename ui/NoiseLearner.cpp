#include "ui/NoiseLearner.h"

#include "module/ObsFilterState.h"

#include <QTimer>

#include <algorithm>

namespace Lumora {

NoiseLearner::NoiseLearner(QObject* parent)
    : QObject(parent), learner_(std::make_unique<NoiseProfileLearner>()), scratch_(8192) {
    timer_ = new QTimer(this);
    timer_->setInterval(kIntervalMs);
    connect(timer_, &QTimer::timeout, this, &NoiseLearner::tick);
}

NoiseLearner::~NoiseLearner() {
    // A panel closed while learning must not leave the voice switched off.
    cancel();
}

bool NoiseLearner::heardAnything(const Profile& profile) {
    return std::any_of(profile.begin(), profile.end(), [](float db) { return db > kSilenceDb; });
}

bool NoiseLearner::start(ObsFilterState* state) {
    if (state_ || !state || !state->analyser) {
        return false;
    }
    state_ = state;
    DiagnosisAnalyser& analyser = *state->analyser;
    savedChain_ = state->chain.getParameters();
    savedFxActive_ = state->effects.isActive();
    EffectPreset through = savedChain_;
    through.active = false;
    state->chain.setParameters(through);
    state->effects.setActive(false);

    learner_->prepare(analyser.sampleRate());
    wasRecording_ = analyser.isRecording();
    collect(false); // whatever an earlier recording left behind
    analyser.setRecording(true);
    latest_ = silentProfile();
    clock_.start();
    timer_->start();
    return true;
}

void NoiseLearner::cancel() {
    if (!state_) {
        return;
    }
    timer_->stop();
    state_->analyser->setRecording(wasRecording_);
    state_->chain.setParameters(savedChain_);
    state_->effects.setActive(savedFxActive_);
    state_ = nullptr;
}

double NoiseLearner::progress() const {
    if (!state_) {
        return 0.0;
    }
    return std::min(1.0, static_cast<double>(clock_.elapsed()) / std::max(durationMs_, 1));
}

void NoiseLearner::collect(bool keep) {
    DiagnosisAnalyser& analyser = *state_->analyser;
    for (size_t n; (n = analyser.readCapture(scratch_.data(), scratch_.size())) > 0;) {
        if (keep) {
            learner_->process(scratch_.data(), static_cast<int>(n));
        }
    }
}

void NoiseLearner::tick() {
    if (!state_) {
        return;
    }
    const qint64 elapsed = clock_.elapsed();
    collect(elapsed >= kSettleMs);
    latest_ = state_->analyser->snapshot().spectrumDb;
    emit progressed(progress());
    if (elapsed >= durationMs_) {
        finish();
    }
}

void NoiseLearner::finish() {
    cancel();
    const Profile heard = learner_->profileDb();
    if (learner_->framesSeen() == 0 || !heardAnything(heard)) {
        emit failed();
        return;
    }
    profile_ = heard;
    emit learned();
}

} // namespace Lumora
