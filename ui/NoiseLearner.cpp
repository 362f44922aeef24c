#include "ui/NoiseLearner.h"

#include "diagnosis/StepSummary.h"
#include "module/ObsFilterState.h"

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace Lumora {

NoiseLearner::NoiseLearner(QObject* parent) : QObject(parent) {
    timer_ = new QTimer(this);
    timer_->setInterval(kIntervalMs);
    timer_->setTimerType(Qt::PreciseTimer);
    connect(timer_, &QTimer::timeout, this, &NoiseLearner::tick);
}

NoiseLearner::~NoiseLearner() {
    // A panel closed while learning must not leave the voice switched off.
    if (state_) {
        restoreChains();
    }
}

NoiseLearner::Profile NoiseLearner::medianProfile(const std::vector<AudioMetrics>& snapshots) {
    Profile out = silentProfile();
    if (snapshots.empty()) {
        return out;
    }
    std::vector<float> band(snapshots.size());
    for (size_t b = 0; b < out.size(); ++b) {
        for (size_t i = 0; i < snapshots.size(); ++i) {
            band[i] = snapshots[i].spectrumDb[b];
        }
        out[b] = medianOf(band);
    }
    return out;
}

NoiseLearner::Profile NoiseLearner::stageProfile(const Profile& median, double sampleRate) {
    // The analyser measures with a Hann window and the spectral stage filters
    // with a sine window; for the same noise the stage's bins hold about
    // 1.2 dB (noise) to 2.1 dB (a steady tone) more, and a profile below the
    // noise it meets only dents it. Hence the correction.
    //
    // At the lowest bins a hum's mirror image at the negative frequency lies
    // only a bin or two away and beats with it, so a frame's level there swings
    // with the hum's phase and spills into the next bin; the median of the
    // analyser's snapshots misses those swings. So each band also covers what
    // its neighbouring bins hold, 6 dB down. Measured at full strength on a
    // 50 Hz hum with five harmonics: 20 dB removed without these two steps,
    // 31 dB with them (60 Hz: 17 and 26 dB), while a 120 Hz tone 14 dB above
    // the hum's fundamental loses 0.6 dB.
    //
    // The bands are mapped to bins exactly as the spectral stage maps them: band
    // b spans 20·(N/20)^(b/64) to 20·(N/20)^((b+1)/64) Hz, N half the rate.
    constexpr int kBins = 513;
    const double rate = sampleRate > 0.0 ? sampleRate : 48000.0;
    const double nyquist = rate / 2.0;
    const double binWidth = rate / 1024.0;
    std::array<int, kProfileBandCount> first{};
    std::array<int, kProfileBandCount> last{};
    std::array<float, kBins> binDb;
    binDb.fill(kSilenceDb);
    for (int b = 0; b < kProfileBandCount; ++b) {
        const double lo = 20.0 * std::pow(nyquist / 20.0, b / 64.0);
        const double hi = 20.0 * std::pow(nyquist / 20.0, (b + 1) / 64.0);
        first[static_cast<size_t>(b)] = std::max(0, static_cast<int>(std::floor(lo / binWidth)));
        last[static_cast<size_t>(b)] =
            std::min(static_cast<int>(std::floor(hi / binWidth)), kBins - 1);
        for (int k = first[static_cast<size_t>(b)]; k <= last[static_cast<size_t>(b)]; ++k) {
            binDb[static_cast<size_t>(k)] =
                std::max(binDb[static_cast<size_t>(k)], median[static_cast<size_t>(b)]);
        }
    }
    Profile out = silentProfile();
    for (size_t b = 0; b < out.size(); ++b) {
        if (!(median[b] > kSilenceDb)) {
            continue;
        }
        float level = median[b];
        const int from = std::max(0, first[b] - 1);
        const int to = std::min(kBins - 1, last[b] + 1);
        for (int k = from; k <= to; ++k) {
            const bool neighbour = k < first[b] || k > last[b];
            const float v = binDb[static_cast<size_t>(k)] - (neighbour ? kNeighbourDropDb : 0.0f);
            level = std::max(level, v);
        }
        out[b] = level + kWindowCorrectionDb;
    }
    return out;
}

NoiseLearner::Profile NoiseLearner::learnedProfile(const std::vector<AudioMetrics>& snapshots) {
    // A hum beats against the analyser's frames: at the lowest bins a band's
    // level swings by 15 dB and more over a cycle of some 15 frames, and the
    // plain median lands wherever the frames that were caught happen to sit.
    // The mean power over a quarter of a second holds still; the median of
    // those means still keeps a door slam (one group out of a dozen) out.
    const size_t groups = snapshots.size() / kGroupSize;
    if (groups < 3) {
        return medianProfile(snapshots);
    }
    std::vector<AudioMetrics> means(groups);
    for (size_t g = 0; g < groups; ++g) {
        for (size_t b = 0; b < static_cast<size_t>(kProfileBandCount); ++b) {
            double power = 0.0;
            for (size_t i = 0; i < static_cast<size_t>(kGroupSize); ++i) {
                power += std::pow(10.0, snapshots[g * kGroupSize + i].spectrumDb[b] / 10.0);
            }
            const double db = 10.0 * std::log10(power / kGroupSize);
            means[g].spectrumDb[b] =
                static_cast<float>(std::max(db, static_cast<double>(kSilenceDb)));
        }
    }
    return medianProfile(means);
}

bool NoiseLearner::heardAnything(const Profile& profile) {
    return std::any_of(profile.begin(), profile.end(), [](float db) { return db > kSilenceDb; });
}

bool NoiseLearner::start(ObsFilterState* state) {
    if (state_ || !state || !state->analyser) {
        return false;
    }
    state_ = state;
    sampleRate_ = state->analyser->sampleRate();
    savedChain_ = state->chain.getParameters();
    savedFxActive_ = state->effects.isActive();
    EffectPreset through = savedChain_;
    through.active = false;
    state->chain.setParameters(through);
    state->effects.setActive(false);
    snapshots_.clear();
    lastBlock_ = state->analyser->snapshot().blockCount;
    latest_ = silentProfile();
    clock_.start();
    timer_->start();
    return true;
}

void NoiseLearner::restoreChains() {
    state_->chain.setParameters(savedChain_);
    state_->effects.setActive(savedFxActive_);
}

void NoiseLearner::cancel() {
    if (!state_) {
        return;
    }
    timer_->stop();
    restoreChains();
    state_ = nullptr;
}

double NoiseLearner::progress() const {
    if (!state_) {
        return 0.0;
    }
    return std::min(1.0, static_cast<double>(clock_.elapsed()) / std::max(durationMs_, 1));
}

void NoiseLearner::tick() {
    if (!state_) {
        return;
    }
    const qint64 elapsed = clock_.elapsed();
    const AudioMetrics m = state_->analyser->snapshot();
    // Each spectrum the analyser computes counts once: a source that stopped
    // sending would otherwise repeat its last spectrum for the whole run, and
    // a spectrum seen by two ticks would weigh twice in the median.
    if (m.blockCount != lastBlock_ && m.spectrumDb != latest_) {
        lastBlock_ = m.blockCount;
        latest_ = m.spectrumDb;
        if (elapsed >= kSettleMs) {
            snapshots_.push_back(m);
        }
    }
    emit progressed(progress());
    if (elapsed < durationMs_) {
        return;
    }
    timer_->stop();
    restoreChains();
    state_ = nullptr;
    const Profile median = learnedProfile(snapshots_);
    if (!heardAnything(median)) {
        emit failed();
        return;
    }
    profile_ = stageProfile(median, sampleRate_);
    emit learned();
}

} // namespace Lumora
