// The limiter: one gain per packet, instant attack to exactly the ceiling, and
// a release with its time constant.
#include "dsp/Limiter.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr double kRate = 48000.0;

float peakOf(const std::vector<float>& x) {
    float p = 0.0f;
    for (float v : x) {
        p = std::max(p, std::fabs(v));
    }
    return p;
}

} // namespace

TEST(Limiter, PacketSixDbOverTheCeilingComesOutAtTheCeilingWithASixDbMeter) {
    Limiter limiter;
    limiter.prepare(kRate);
    LimiterParams p;
    p.enabled = true;
    p.ceilingDb = -3.0f;
    limiter.updateCoefficients(p);
    const float ceiling = std::pow(10.0f, -3.0f / 20.0f);
    const float peak = ceiling * std::pow(10.0f, 6.0f / 20.0f);
    std::vector<float> left = sine(440.0, kRate, 480, 0.5f);
    std::vector<float> right = sine(440.0, kRate, 480, peak, 0.3);
    right[200] = -peak; // the loudest sample of the packet, on the second channel
    const std::vector<float> before = left;
    float* planes[2] = {left.data(), right.data()};
    limiter.process(planes, 2, 480, p);
    EXPECT_NEAR(peakOf(right), ceiling, 1e-6f);
    EXPECT_NEAR(limiter.gainReductionDb(), 6.0f, 1e-4f);
    // One gain for the whole packet and both channels.
    const float g = limiter.gain();
    for (int i = 0; i < 480; ++i) {
        ASSERT_FLOAT_EQ(left[i], before[i] * g);
    }
}

TEST(Limiter, ReleasesTowardsUnityWithItsTimeConstant) {
    Limiter limiter;
    limiter.prepare(kRate);
    LimiterParams p;
    p.enabled = true;
    p.ceilingDb = -6.0f;
    p.releaseMs = 50.0f;
    limiter.updateCoefficients(p);
    std::vector<float> loud(480, 1.0f);
    float* lp[1] = {loud.data()};
    limiter.process(lp, 1, 480, p);
    const float g0 = limiter.gain();
    std::vector<float> quiet(480, 0.01f);
    float* qp[1] = {quiet.data()};
    limiter.process(qp, 1, 480, p);
    const float r = static_cast<float>(std::exp(-1.0 / (50.0 * 0.001 * kRate)));
    EXPECT_FLOAT_EQ(limiter.gain(), (1.0f - r) * 1.0f + r * g0);
    EXPECT_FLOAT_EQ(quiet[0], 0.01f * limiter.gain());
}

TEST(Limiter, PacketBelowTheCeilingPassesUntouchedWithAZeroMeter) {
    Limiter limiter;
    limiter.prepare(kRate);
    LimiterParams p;
    p.enabled = true;
    limiter.updateCoefficients(p);
    std::vector<float> x = noise(1024, 0.5f);
    const std::vector<float> before = x;
    float* planes[1] = {x.data()};
    limiter.process(planes, 1, 1024, p);
    EXPECT_EQ(x, before);
    EXPECT_EQ(limiter.gainReductionDb(), 0.0f);
}
