// The peak limiter (the cleaning chain's and the safety limiter behind the
// filter): nothing above the ceiling from the first sample, one gain for all
// channels, a release with its own time constant, and nothing touched below
// the ceiling.
#include "dsp/PeakLimiter.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr double kRate = 48000.0;

PeakLimiter limiterAt(float ceilingDb, float releaseMs) {
    PeakLimiter limiter;
    limiter.setCeilingDb(ceilingDb);
    limiter.setReleaseMs(releaseMs);
    limiter.prepare(kRate);
    return limiter;
}

} // namespace

TEST(PeakLimiter, APeakSixDbOverTheCeilingComesOutAtTheCeilingOnBothChannels) {
    PeakLimiter limiter = limiterAt(-3.0f, 50.0f);
    const float ceiling = std::pow(10.0f, -3.0f / 20.0f);
    const float over = ceiling * std::pow(10.0f, 6.0f / 20.0f);
    std::vector<float> left = sine(440.0, kRate, 480, 0.5f);
    std::vector<float> right = sine(440.0, kRate, 480, over, 0.3);
    right[200] = -over; // the loudest sample, on the second channel
    const std::vector<float> before = left;
    float* planes[2] = {left.data(), right.data()};
    limiter.process(planes, 2, 480);
    EXPECT_LE(peak(right), ceiling);
    EXPECT_GT(peak(right), ceiling * 0.999f);
    // One gain for both channels: at the loudest sample, left is scaled alike.
    EXPECT_NEAR(left[200] / before[200], -right[200] / over, 1e-5f);
    EXPECT_GT(limiter.gainReductionDb(), 5.0f);
}

TEST(PeakLimiter, ReleasesTowardsUnityWithItsTimeConstant) {
    PeakLimiter limiter = limiterAt(-6.0f, 50.0f);
    std::vector<float> loud(480, 1.0f);
    float* lp[1] = {loud.data()};
    limiter.process(lp, 1, 480);
    const float reduction = 1.0f - limiter.gain();
    // 50 ms of quiet: the reduction falls by a factor e.
    std::vector<float> quiet(2400, 0.01f);
    float* qp[1] = {quiet.data()};
    limiter.process(qp, 1, 2400);
    EXPECT_NEAR((1.0f - limiter.gain()) / reduction, std::exp(-1.0f), 0.01f);
}
