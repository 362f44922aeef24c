#include "dsp/fx/PitchShifterLayer.h"

#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {

double ratioOf(double semitones) {
    return std::pow(2.0, semitones / 12.0);
}

} // namespace

PitchShifterLayer::PitchShifterLayer() = default;
PitchShifterLayer::~PitchShifterLayer() = default;

void PitchShifterLayer::configure() {
    stretcher_->setSampleRate(static_cast<unsigned>(std::lround(sampleRate_)));
    stretcher_->setChannels(1);
    stretcher_->setSetting(SETTING_USE_QUICKSEEK, 1);
    // Its rate stays at one (the transposition is ours), where the rate
    // transposer's anti-alias filter removes nothing but costs a quarter of
    // the whole chain's time.
    stretcher_->setSetting(SETTING_USE_AA_FILTER, 0);
    stretcher_->setSetting(SETTING_SEQUENCE_MS, kSequenceMs);
    stretcher_->setSetting(SETTING_SEEKWINDOW_MS, kSeekWindowMs);
    stretcher_->setSetting(SETTING_OVERLAP_MS, kOverlapMs);
}

void PitchShifterLayer::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    stretcher_ = std::make_unique<soundtouch::SoundTouch>();
    configure();
    const double maxRatio = ratioOf(kMaxSemitones);
    resampler_.prepare(kMaxBlock, 1.0 / maxRatio, maxRatio);
    resampled_.assign(static_cast<size_t>(resampler_.maxOutput(kMaxBlock)), 0.0f);

    // The output holds at most one block plus the reserve and a few sequences
    // in flight; anything beyond that is trimmed (see process).
    const int sequence =
        static_cast<int>(std::lround((kSequenceMs - kOverlapMs) * 0.001 * sampleRate));
    maxBacklog_ = 2 * kMaxBlock + 4 * sequence;
    startMargin_ = static_cast<int>(std::lround(kOverlapMs * 0.001 * sampleRate)) + kProbe;

    // Grow the stretcher's buffers to their working maximum now: the largest
    // input (a block resampled at the lowest ratio) at the highest tempo, the
    // largest output backlog at the lowest tempo, and both again at the ends
    // of the ratio range, then empty it. Its FIFOs keep their capacity.
    std::fill(resampled_.begin(), resampled_.end(), 0.0f);
    const int bigInput = static_cast<int>(resampled_.size());
    const double ratios[] = {1.0 / maxRatio, maxRatio, 1.0, 0.5, 2.0};
    for (double ratio : ratios) {
        stretcher_->setTempo(1.0 / ratio);
        const int input = std::min(bigInput, static_cast<int>(std::ceil(kMaxBlock / ratio)) + 64);
        for (int k = 0; k < 8; ++k) {
            stretcher_->putSamples(resampled_.data(), static_cast<unsigned>(input));
        }
        while (static_cast<int>(stretcher_->numSamples()) < maxBacklog_ + 2 * kMaxBlock) {
            stretcher_->putSamples(resampled_.data(), static_cast<unsigned>(input));
        }
        stretcher_->clear();
    }
    stretcher_->setTempo(1.0);
    semitones_ = 0.0f;
    resampler_.setStep(1.0);
    reset();
}

void PitchShifterLayer::reset() {
    if (!stretcher_) {
        return;
    }
    stretcher_->clear();
    resampler_.reset();
    running_ = false;
    outputSeen_ = false;
    inputSinceOutput_ = 0.0;
    reserve_ = 0;
}

void PitchShifterLayer::setSemitones(float semitones) {
    if (semitones == semitones_) {
        return;
    }
    semitones_ = semitones;
    setRatio(ratioOf(std::clamp(static_cast<double>(semitones), -kMaxSemitones, kMaxSemitones)));
}

void PitchShifterLayer::setRatio(double ratio) {
    if (!stretcher_) {
        return;
    }
    resampler_.setStep(ratio);
    stretcher_->setTempo(1.0 / ratio);
}

void PitchShifterLayer::put(int from, int count) {
    if (count > 0) {
        stretcher_->putSamples(resampled_.data() + from, static_cast<unsigned>(count));
    }
}

int PitchShifterLayer::buffered() const {
    return stretcher_ ? static_cast<int>(stretcher_->numSamples()) : 0;
}

int PitchShifterLayer::process(const float* in, int n, float* out) {
    if (!stretcher_ || n <= 0) {
        return 0;
    }
    n = std::min(n, kMaxBlock);
    const int m = resampler_.process(in, n, resampled_.data());
    // Input already past the first output before this block, in input samples.
    const double passed = inputSinceOutput_;
    if (running_ || outputSeen_) {
        put(0, m);
        inputSinceOutput_ += n;
    } else {
        int pos = 0;
        while (pos < m && stretcher_->numSamples() == 0) {
            const int piece = std::min(kProbe, m - pos);
            put(pos, piece);
            pos += piece;
        }
        put(pos, m - pos);
        if (stretcher_->numSamples() > 0) {
            outputSeen_ = true;
            inputSinceOutput_ = (m - pos) * resampler_.step();
        }
    }
    const int available = static_cast<int>(stretcher_->numSamples());
    if (!running_) {
        const bool ready = reserve_ > 0 ? available >= n + reserve_
                                        : outputSeen_ && passed >= startMargin_ && available >= n;
        if (!ready) {
            return 0;
        }
        running_ = true;
    }
    int taken;
    if (available >= n) {
        taken = static_cast<int>(stretcher_->receiveSamples(out, static_cast<unsigned>(n)));
    } else {
        taken = static_cast<int>(stretcher_->receiveSamples(out, static_cast<unsigned>(available)));
        running_ = false;
        reserve_ = stretcher_->getSetting(SETTING_NOMINAL_OUTPUT_SEQUENCE);
        ++underruns_;
    }
    // Output piling up (only after large pitch jumps) would add latency for
    // good; drop the oldest surplus instead.
    const int excess = static_cast<int>(stretcher_->numSamples()) - maxBacklog_;
    if (excess > 0) {
        stretcher_->receiveSamples(static_cast<unsigned>(excess));
        trimmed_ += excess;
    }
    return taken;
}

} // namespace Lumora
