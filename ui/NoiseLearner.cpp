#include "ui/NoiseLearner.h"

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

bool NoiseLearner::start(FilterEngine* engine) {
    if (engine_ || !engine || !engine->analyser()) {
        return false;
    }
    engine_ = engine;
    DiagnosisAnalyser& analyser = *engine->analyser();
    hold_ = engine->holdForMeasurement();

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
    if (!engine_) {
        return;
    }
    timer_->stop();
    engine_->analyser()->setRecording(wasRecording_);
    engine_ = nullptr;
    hold_.release();
}

double NoiseLearner::progress() const {
    if (!engine_) {
        return 0.0;
    }
    return std::min(1.0, static_cast<double>(clock_.elapsed()) / std::max(durationMs_, 1));
}

void NoiseLearner::collect(bool keep) {
    DiagnosisAnalyser& analyser = *engine_->analyser();
    for (size_t n; (n = analyser.readCapture(scratch_.data(), scratch_.size())) > 0;) {
        if (keep) {
            learner_->process(scratch_.data(), static_cast<int>(n));
        }
    }
}

void NoiseLearner::tick() {
    if (!engine_) {
        return;
    }
    const qint64 elapsed = clock_.elapsed();
    collect(elapsed >= kSettleMs);
    latest_ = engine_->analyser()->snapshot().spectrumDb;
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
