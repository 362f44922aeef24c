#pragma once

#include "dsp/EffectPreset.h"
#include "dsp/NoiseProfileLearner.h"
#include "engine/FilterEngine.h"

#include <QElapsedTimer>
#include <QObject>

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class QTimer;

namespace Lumora {

// Learns the room's noise for the ambient noise filter: three seconds of the
// microphone, recorded through the filter's analyser, go through the same
// learner as `lumora-cli learn-noise`, which measures the noise exactly as the
// spectral stage will (its frames, window and bands), so the profile is the
// stage's own noise estimate.
//
// Meanwhile the engine holds the chains straight through, so the recording
// holds the raw room and not what the old profile, the gate or a reverb make of
// it; an edit made meanwhile waits for the end of the hold.
class NoiseLearner : public QObject {
    Q_OBJECT
public:
    static constexpr int kDurationMs = 3000;
    // How often the recording is collected and the progress shown.
    static constexpr int kIntervalMs = 30;
    // The first packets after the switch may still have gone through the chain.
    static constexpr int kSettleMs = 100;
    using Profile = std::array<float, kProfileBandCount>;

    explicit NoiseLearner(QObject* parent);
    ~NoiseLearner() override;

    // False when there is no engine with an analyser, or learning runs.
    bool start(FilterEngine* engine);
    // Stops without a result and brings the chains back.
    void cancel();
    bool isRunning() const { return engine_ != nullptr; }
    // 0..1 of the learning time.
    double progress() const;
    // The analyser's latest spectrum (for a live display).
    const Profile& latestSpectrum() const { return latest_; }
    // The profile of the last successful run.
    const Profile& profile() const { return profile_; }
    // Analysis frames that went into the profile being learned (or last learned).
    int framesLearned() const { return learner_->framesSeen(); }

    // True when some band heard anything above silence.
    static bool heardAnything(const Profile& profile);

    // For tests: a shorter learning time.
    void setDurationMs(int ms) { durationMs_ = ms; }

signals:
    void progressed(double fraction);
    // The profile is ready (profile()).
    void learned();
    // Nothing reached the analyser (no audio, or all silent).
    void failed();

private:
    void tick();
    void collect(bool keep);
    void finish();

    FilterEngine* engine_ = nullptr;
    FilterEngine::MeasurementHold hold_;
    QTimer* timer_ = nullptr;
    QElapsedTimer clock_;
    int durationMs_ = kDurationMs;
    bool wasRecording_ = false;
    std::unique_ptr<NoiseProfileLearner> learner_;
    std::vector<float> scratch_;
    Profile latest_ = silentProfile();
    Profile profile_ = silentProfile();
};

} // namespace Lumora
