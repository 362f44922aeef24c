#include "dsp/fx/PitchShifterLayer.h"

#include "dsp/fx/VoiceAlignment.h"

#include <soundtouch/SoundTouch.h>

#include <algorithm>
#include <cmath>
#include <cstring>

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
    // What one sequence gives out, as the stretcher itself counts it (its
    // overlap is rounded to whole groups of samples).
    sequence_ = stretcher_->getSetting(SETTING_NOMINAL_OUTPUT_SEQUENCE);
}

void PitchShifterLayer::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    stretcher_ = std::make_unique<soundtouch::SoundTouch>();
    configure();
    const double maxRatio = ratioOf(kMaxSemitones);
    resampler_.prepare(kMaxBlock, 1.0 / maxRatio, maxRatio);
    resampled_.assign(static_cast<size_t>(resampler_.maxOutput(kMaxBlock)), 0.0f);
    stretched_.assign(kMaxBlock, 0.0f);

    // The output holds at most one block plus the reserve and a few sequences
    // in flight; anything beyond that is trimmed (see process).
    maxBacklog_ = 2 * kMaxBlock + 4 * sequence_;
    delay_ = VoiceAlignment::delayFramesAt(sampleRate);
    queue_.assign(static_cast<size_t>(maxBacklog_) + resampled_.size() + kMaxBlock, 0.0f);

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
            put(resampled_.data(), input);
        }
        while (static_cast<int>(stretcher_->numSamples()) < maxBacklog_ + 2 * kMaxBlock) {
            put(resampled_.data(), input);
        }
        stretcher_->clear();
    }
    semitones_ = 0.0f;
    ratio_ = 1.0;
    stretcher_->setTempo(1.0);
    resampler_.setStep(1.0);
    reset();
}

void PitchShifterLayer::reset() {
    if (!stretcher_) {
        return;
    }
    stretcher_->clear();
    resampler_.reset();
    queueLength_ = 0;
    started_ = false;
    running_ = false;
    untilDue_ = delay_;
    debt_ = 0;
    waiting_ = false;
}

void PitchShifterLayer::setSemitones(float semitones) {
    if (semitones == semitones_ || !stretcher_) {
        return;
    }
    semitones_ = semitones;
    ratio_ = ratioOf(std::clamp(static_cast<double>(semitones), -kMaxSemitones, kMaxSemitones));
    resampler_.setStep(ratio_);
    stretcher_->setTempo(1.0 / ratio_);
}

int PitchShifterLayer::burst() const {
    // One sequence of the stretcher's output, stretched by the resampler
    // when it comes after the stretcher.
    return stretchFirst_ ? static_cast<int>(std::ceil(sequence_ / std::min(ratio_, 1.0)))
                         : sequence_;
}

int PitchShifterLayer::buffered() const {
    if (!stretcher_) {
        return 0;
    }
    return stretchFirst_ ? queueLength_ : static_cast<int>(stretcher_->numSamples());
}

void PitchShifterLayer::put(const float* samples, int count) {
    if (count > 0) {
        stretcher_->putSamples(samples, static_cast<unsigned>(count));
    }
}

void PitchShifterLayer::drainThroughResampler() {
    const int capacity = static_cast<int>(queue_.size());
    for (;;) {
        const int k = static_cast<int>(
            stretcher_->receiveSamples(stretched_.data(), static_cast<unsigned>(kMaxBlock)));
        if (k <= 0) {
            break;
        }
        // Room for the largest answer; the oldest output gives way if needed.
        const int room = capacity - queueLength_ - resampler_.maxOutput(k);
        if (room < 0) {
            discard(-room);
        }
        queueLength_ += resampler_.process(stretched_.data(), k, queue_.data() + queueLength_);
    }
}

void PitchShifterLayer::discard(int count) {
    if (!stretchFirst_) {
        stretcher_->receiveSamples(static_cast<unsigned>(count));
        return;
    }
    count = std::min(count, queueLength_);
    std::memmove(queue_.data(), queue_.data() + count,
                 static_cast<size_t>(queueLength_ - count) * sizeof(float));
    queueLength_ -= count;
}

int PitchShifterLayer::take(float* out, int count) {
    if (!stretchFirst_) {
        return static_cast<int>(stretcher_->receiveSamples(out, static_cast<unsigned>(count)));
    }
    count = std::min(count, queueLength_);
    std::memcpy(out, queue_.data(), static_cast<size_t>(count) * sizeof(float));
    std::memmove(queue_.data(), queue_.data() + count,
                 static_cast<size_t>(queueLength_ - count) * sizeof(float));
    queueLength_ -= count;
    return count;
}

int PitchShifterLayer::process(const float* in, int n, float* out) {
    if (!stretcher_ || n <= 0) {
        return 0;
    }
    n = std::min(n, kMaxBlock);
    if (!started_) {
        stretchFirst_ = ratio_ > 1.0;
        started_ = true;
    }
    if (stretchFirst_) {
        put(in, n);
        drainThroughResampler();
    } else {
        put(resampled_.data(), resampler_.process(in, n, resampled_.data()));
    }

    // Silence until the voice is due, then the voice.
    const int lead = std::min(untilDue_, n);
    untilDue_ -= lead;
    std::fill(out, out + lead, 0.0f);
    const int due = n - lead;
    if (due > 0) {
        if (waiting_ && buffered() >= due + burst()) {
            waiting_ = false;
        }
        int taken = 0;
        if (!waiting_) {
            // Behind after a gap: back onto the timeline with what is to
            // spare beyond a burst of reserve.
            const int spare = buffered() - due - burst();
            if (debt_ > 0 && spare > 0) {
                const int late = std::min(debt_, spare);
                discard(late);
                debt_ -= late;
            }
            taken = take(out + lead, std::min(due, buffered()));
            if (taken < due) {
                ++underruns_;
                waiting_ = true;
            }
        }
        std::fill(out + lead + taken, out + n, 0.0f);
        debt_ += due - taken;
        // Flowing from the first block that is voice from its start: a
        // crossfade into it then never meets the silence before the voice.
        running_ = running_ || (lead == 0 && taken > 0);
    }
    // Output piling up (only after large pitch jumps) would add latency for
    // good; drop the oldest surplus instead.
    const int excess = buffered() - maxBacklog_;
    if (excess > 0) {
        discard(excess);
    }
    return due;
}

} // namespace Lumora
