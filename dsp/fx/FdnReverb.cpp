#include "dsp/fx/FdnReverb.h"

#include <algorithm>
#include <cmath>

namespace Lumora {

namespace {
constexpr double kTwoPi = 6.28318530717958647692;
constexpr uint64_t kOne = uint64_t{1} << FdnReverb::kFracBits;
constexpr float kFracScale = 1.0f / static_cast<float>(kOne);
} // namespace

void FdnReverb::prepare(double sampleRate) {
    sampleRate_ = sampleRate;
    const double depth = kModDepthMs * 0.001 * sampleRate;
    for (int i = 0; i < kLines; ++i) {
        const int length =
            std::max(8, static_cast<int>(std::lround(kLineMs[i] * 0.001 * sampleRate)));
        const int needed = length + static_cast<int>(depth) + 8;
        uint32_t size = 16;
        while (size < static_cast<uint32_t>(needed)) {
            size *= 2;
        }
        storage_[i].assign(size, 0.0f);
        lines_.ring[i] = storage_[i].data();
        lines_.mask[i] = size - 1;
        lines_.length[i] = length;
    }
    dampingHz_ = -1.0;
    reset();
}

void FdnReverb::reset() {
    for (int i = 0; i < kLines; ++i) {
        std::fill(storage_[i].begin(), storage_[i].end(), 0.0f);
        lines_.write[i] = 0;
        const uint32_t start = (0u - static_cast<uint32_t>(lines_.length[i])) & lines_.mask[i];
        lines_.read[i] = static_cast<uint64_t>(start) << kFracBits;
        lines_.step[i] = static_cast<int64_t>(kOne);
        lines_.count[i] = 0;
        lines_.random[i] = 0x9E3779B9u * static_cast<uint32_t>(i + 1);
        lines_.last[i] = 0.0f;
    }
}

void FdnReverb::setDampingHz(double hz) {
    if (hz == dampingHz_) {
        return;
    }
    dampingHz_ = hz;
    const double fc = std::clamp(hz, 10.0, 0.45 * sampleRate_);
    const double b = 2.0 - std::cos(kTwoPi * fc / sampleRate_);
    damping_ = b - std::sqrt(b * b - 1.0);
}

float FdnReverb::nextRandom(int line) {
    uint32_t& r = lines_.random[line];
    r = r * 1664525u + 1013904223u;
    return static_cast<float>(r >> 8) * (1.0f / 16777216.0f);
}

void FdnReverb::renewModulation(int line) {
    const double period =
        kModMinPeriodS + (kModMaxPeriodS - kModMinPeriodS) * static_cast<double>(nextRandom(line));
    const int32_t count = std::max(1, static_cast<int32_t>(period * sampleRate_));
    const double depth = kModDepthMs * 0.001 * sampleRate_;
    const double target = lines_.length[line] + depth * (2.0 * nextRandom(line) - 1.0);

    // Current delay: write position minus read position, both in fixed point.
    const uint64_t size = static_cast<uint64_t>(lines_.mask[line]) + 1;
    const uint64_t fixedMask = (size << kFracBits) - 1;
    const uint64_t current =
        ((static_cast<uint64_t>(lines_.write[line]) << kFracBits) - lines_.read[line]) & fixedMask;
    const auto targetFixed = static_cast<int64_t>(target * static_cast<double>(kOne));
    lines_.step[line] = static_cast<int64_t>(kOne) +
                        (static_cast<int64_t>(current) - targetFixed) / static_cast<int64_t>(count);
    lines_.count[line] = count;
}

void FdnReverb::process(const float* left, const float* right, float* outLeft, float* outRight,
                        int n, float lineGain) {
    if (storage_[0].empty()) {
        std::fill(outLeft, outLeft + n, 0.0f);
        std::fill(outRight, outRight + n, 0.0f);
        return;
    }
    const float g = lineGain;
    const auto c = static_cast<float>(damping_);
    Lines& L = lines_;
    for (int s = 0; s < n; ++s) {
        float sum = 0.0f;
        for (int i = 0; i < kLines; ++i) {
            sum += L.last[i];
        }
        const float m = 0.25f * sum;
        const float in[2] = {left[s], right[s]};

        // Write, then gather the four points around each read position.
        float ym1[kLines], y0[kLines], y1[kLines], y2[kLines], f[kLines];
        for (int i = 0; i < kLines; ++i) {
            float* ring = L.ring[i];
            const uint32_t mask = L.mask[i];
            ring[L.write[i]] = m + in[i & 1] - L.last[i];
            L.write[i] = (L.write[i] + 1) & mask;
            const auto idx = static_cast<uint32_t>(L.read[i] >> kFracBits);
            f[i] = static_cast<float>(L.read[i] & (kOne - 1)) * kFracScale;
            ym1[i] = ring[(idx - 1) & mask];
            y0[i] = ring[idx & mask];
            y1[i] = ring[(idx + 1) & mask];
            y2[i] = ring[(idx + 2) & mask];
            const uint64_t fixedMask = ((static_cast<uint64_t>(mask) + 1) << kFracBits) - 1;
            L.read[i] = (L.read[i] + static_cast<uint64_t>(L.step[i])) & fixedMask;
        }
        // Lagrange weights for the points at −1, 0, 1, 2 around the fraction,
        // the line gain and the damping: the same arithmetic on every lane.
        for (int i = 0; i < kLines; ++i) {
            const float fi = f[i];
            const float fm1 = fi - 1.0f;
            const float fm2 = fi - 2.0f;
            const float fp1 = fi + 1.0f;
            const float value = -fi * fm1 * fm2 * (1.0f / 6.0f) * ym1[i] +
                                fp1 * fm1 * fm2 * 0.5f * y0[i] - fp1 * fi * fm2 * 0.5f * y1[i] +
                                fp1 * fi * fm1 * (1.0f / 6.0f) * y2[i];
            const float y = value * g;
            L.last[i] = y + c * (L.last[i] - y);
        }
        outLeft[s] = 0.35f * (L.last[0] + L.last[2] + L.last[4] + L.last[6]);
        outRight[s] = 0.35f * (L.last[1] + L.last[3] + L.last[5] + L.last[7]);
        for (int i = 0; i < kLines; ++i) {
            if (--L.count[i] <= 0) {
                renewModulation(i);
            }
        }
    }
}

} // namespace Lumora
