#pragma once

#include "diagnosis/AudioMetrics.h"
#include "dsp/EffectPreset.h"

#include <QElapsedTimer>
#include <QObject>

#include <array>
#include <vector>

class QTimer;

namespace Lumora {

struct ObsFilterState;

// Learns the room's noise for the ambient noise filter: for three seconds of
// silence it takes the filter's analyser spectrum on a timer, and the median
// of each band becomes the 64-band noise profile, as the diagnosis does with
// its silence take; the median keeps a door slam or a click out of it. Two
// steps make the profile fit the spectral stage that uses it (see
// learnedProfile and stageProfile).
//
// Meanwhile the cleaning chain passes the microphone through untouched and the
// voice effects are off, so the analyser hears the raw room and not what the
// old profile, the gate or a reverb make of it; both come back afterwards.
class NoiseLearner : public QObject {
    Q_OBJECT
public:
    static constexpr int kDurationMs = 3000;
    // Often enough to catch nearly every spectrum the analyser computes (one
    // per 1024 samples): a hum beats against those frames, and sparse
    // snapshots would see only some of its phases.
    static constexpr int kIntervalMs = 10;
    // The analyser's spectrum window still holds processed audio at the start.
    static constexpr int kSettleMs = 150;
    using Profile = std::array<float, kProfileBandCount>;

    explicit NoiseLearner(QObject* parent);
    ~NoiseLearner() override;

    // False when there is no filter state with an analyser, or learning runs.
    bool start(ObsFilterState* state);
    // Stops without a result and brings the chains back.
    void cancel();
    bool isRunning() const { return state_ != nullptr; }
    // 0..1 of the learning time.
    double progress() const;
    // The spectrum of the last snapshot taken (for a live display).
    const Profile& latestSpectrum() const { return latest_; }
    // The profile of the last successful run.
    const Profile& profile() const { return profile_; }
    int snapshotCount() const { return static_cast<int>(snapshots_.size()); }

    // The median of each band over the snapshots; -96 everywhere without any.
    static Profile medianProfile(const std::vector<AudioMetrics>& snapshots);
    // What a run learns: the spectra in consecutive groups of kGroupSize
    // (a quarter of a second), each group's mean power per band, and the
    // median of those means (the plain median when there are too few groups).
    static Profile learnedProfile(const std::vector<AudioMetrics>& snapshots);
    static constexpr int kGroupSize = 12;
    // The median profile put on the spectral stage's own scale (see the .cpp):
    // raised by kWindowCorrectionDb and widened to the neighbouring FFT bins,
    // kNeighbourDropDb down. Silent bands stay silent.
    static Profile stageProfile(const Profile& median, double sampleRate);
    static constexpr float kWindowCorrectionDb = 2.0f;
    static constexpr float kNeighbourDropDb = 6.0f;
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
    void restoreChains();

    ObsFilterState* state_ = nullptr;
    QTimer* timer_ = nullptr;
    QElapsedTimer clock_;
    int durationMs_ = kDurationMs;
    double sampleRate_ = 48000.0;
    EffectPreset savedChain_;
    bool savedFxActive_ = false;
    uint64_t lastBlock_ = 0;
    std::vector<AudioMetrics> snapshots_;
    Profile latest_ = silentProfile();
    Profile profile_ = silentProfile();
};

} // namespace Lumora
