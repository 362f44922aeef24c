#include "dsp/NoiseProfileLearner.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
// The reducer's scale: the unnormalised transform of a windowed frame.
constexpr double kPowerScale = 262144.0;
constexpr double kPi = 3.14159265358979323846;
} // namespace

NoiseProfileLearner::NoiseProfileLearner() : fft_(kFrameSize) {
    for (int n = 0; n < kFrameSize; ++n) {
        window_[n] = static_cast<float>(std::sin(kPi * (n + 0.5) / kFrameSize));
    }
    prepare(sampleRate_);
}

void NoiseProfileLearner::prepare(double sampleRate) {
    sampleRate_ = sampleRate > 0.0 && std::isfinite(sampleRate) ? sampleRate : 48000.0;
    const double binWidth = sampleRate_ / kFrameSize;
    const double span = sampleRate_ / 2.0 / 20.0;
    for (int b = 0; b < kProfileBandCount; ++b) {
        const double lo = 20.0 * std::pow(span, static_cast<double>(b) / kProfileBandCount);
        const double hi = 20.0 * std::pow(span, static_cast<double>(b + 1) / kProfileBandCount);
        firstBin_[b] = std::max(0, static_cast<int>(std::floor(lo / binWidth)));
        lastBin_[b] = std::min(static_cast<int>(std::floor(hi / binWidth)), kBins - 1);
    }
    reset();
}

void NoiseProfileLearner::reset() {
    frame_.fill(0.0f);
    powerSum_.fill(0.0);
    groupSum_.fill(0.0);
    groupFrames_ = 0;
    groupMeans_.clear();
    position_ = 0;
    frames_ = 0;
    primed_ = false;
}

void NoiseProfileLearner::process(const float* samples, int n) {
    for (int i = 0; i < n; ++i) {
        const float x = samples[i];
        frame_[kHop + position_] = std::isfinite(x) ? x : 0.0f;
        if (++position_ == kHop) {
            position_ = 0;
            // The first frame would be half zeros: it only fills the window.
            if (primed_) {
                analyseFrame();
            }
            primed_ = true;
            std::copy(frame_.begin() + kHop, frame_.end(), frame_.begin());
        }
    }
}

void NoiseProfileLearner::analyseFrame() {
    for (int n = 0; n < kFrameSize; ++n) {
        re_[n] = frame_[n] * window_[n];
        im_[n] = 0.0f;
    }
    fft_.forward(re_.data(), im_.data());
    for (int k = 0; k < kBins; ++k) {
        const double power =
            static_cast<double>(re_[k]) * re_[k] + static_cast<double>(im_[k]) * im_[k];
        powerSum_[k] += power;
        groupSum_[k] += power;
    }
    ++frames_;
    if (++groupFrames_ == kGroupFrames) {
        groupMeans_.push_back(bandMeans(groupSum_, groupFrames_));
        groupSum_.fill(0.0);
        groupFrames_ = 0;
    }
}

std::array<double, kProfileBandCount>
NoiseProfileLearner::bandMeans(const std::array<double, kBins>& sums, int frames) const {
    std::array<double, kProfileBandCount> out{};
    for (int b = 0; b < kProfileBandCount; ++b) {
        if (lastBin_[b] < firstBin_[b] || frames == 0) {
            continue;
        }
        double sum = 0.0;
        for (int k = firstBin_[b]; k <= lastBin_[b]; ++k) {
            sum += sums[k];
        }
        out[b] = sum / ((lastBin_[b] - firstBin_[b] + 1) * double(frames));
    }
    return out;
}

std::array<float, kProfileBandCount> NoiseProfileLearner::profileDb(float marginDb) const {
    std::array<float, kProfileBandCount> out = silentProfile();
    if (frames_ == 0) {
        return out;
    }
    std::array<double, kProfileBandCount> level = bandMeans(powerSum_, frames_);
    const size_t groups = groupMeans_.size();
    if (groups >= 3) {
        std::vector<double> column(groups);
        for (int b = 0; b < kProfileBandCount; ++b) {
            for (size_t g = 0; g < groups; ++g) {
                column[g] = groupMeans_[g][b];
            }
            std::sort(column.begin(), column.end());
            level[b] = groups % 2 ? column[groups / 2]
                                  : 0.5 * (column[groups / 2 - 1] + column[groups / 2]);
        }
    }
    for (int b = 0; b < kProfileBandCount; ++b) {
        if (lastBin_[b] < firstBin_[b]) {
            continue;
        }
        const double mean = level[b];
        const double db = mean > 0.0 ? 10.0 * std::log10(mean / kPowerScale) + marginDb : -96.0;
        out[b] = static_cast<float>(std::clamp(db, -96.0, 0.0));
    }
    return out;
}

} // namespace Lumora
