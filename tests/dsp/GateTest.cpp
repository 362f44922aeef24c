// The gate: silence until the first loud sample, the attack fade-in, hold, and
// the release down to the range, where a closed gate rests.
#include "dsp/Gate.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

using namespace Lumora;

namespace {

constexpr double kRate = 48000.0;

GateParams gateParams() {
    GateParams p;
    p.enabled = true;
    p.thresholdDb = -40.0f; // 0.01
    p.attackMs = 2.0f;
    p.holdMs = 10.0f;
    p.releaseMs = 20.0f;
    p.rangeDb = -40.0f;
    return p;
}

void run(Gate& gate, std::vector<float>& x, const GateParams& p) {
    float* planes[1] = {x.data()};
    gate.process(planes, 1, static_cast<int>(x.size()), p);
}

} // namespace

TEST(Gate, FreshGateIsSilentUntilTheFirstLoudSampleThenFadesInWithTheAttack) {
    Gate gate;
    gate.prepare(kRate);
    const GateParams p = gateParams();
    // Quiet (but not silent) for 1000 samples, then at the threshold exactly.
    std::vector<float> x(3000, 0.005f);
    for (size_t i = 1000; i < x.size(); ++i) {
        x[i] = 0.01f;
    }
    run(gate, x, p);
    for (int i = 0; i <= 1000; ++i) {
        ASSERT_EQ(x[i], 0.0f) << "sample " << i; // silent, not merely attenuated
    }
    // The attack covers 1 − 1/e of the way up in its time (2 ms, 96 samples).
    EXPECT_NEAR(x[1096] / 0.01f, 1.0f - std::exp(-1.0f), 1e-4f);
    EXPECT_EQ(x.back(), 0.01f);
    EXPECT_EQ(gate.state(), Gate::Open);
    EXPECT_EQ(gate.gain(), 1.0f);
}

TEST(Gate, HoldsThenReleasesToTheRangeAndRestsThere) {
    Gate gate;
    gate.prepare(kRate);
    GateParams p = gateParams();
    std::vector<float> loud(2000, 0.5f);
    run(gate, loud, p);
    ASSERT_EQ(gate.state(), Gate::Open);

    std::vector<float> quiet(48000, 0.001f);
    run(gate, quiet, p);
    const int hold = static_cast<int>(p.holdMs * 0.001 * kRate); // 480 samples
    for (int i = 0; i < hold; ++i) {
        ASSERT_EQ(quiet[i], 0.001f) << "held open at sample " << i;
    }
    // The release starts one sample after the hold ran out and covers 1 − 1/e
    // of the way down in its time (20 ms, 960 samples).
    const float range = std::pow(10.0f, p.rangeDb / 20.0f);
    EXPECT_NEAR(quiet[hold + 960] / 0.001f, range + (1.0f - range) * std::exp(-1.0f), 1e-4f);
    EXPECT_EQ(gate.state(), Gate::Closed);
    EXPECT_EQ(gate.gain(), range);
    EXPECT_FLOAT_EQ(quiet.back(), 0.001f * range);

    // A new range does not move a closed gate (the gain stays where it is).
    p.rangeDb = -20.0f;
    std::vector<float> more(480, 0.001f);
    run(gate, more, p);
    EXPECT_EQ(gate.gain(), range);
}

TEST(Gate, LinksTheChannelsAndLeavesNoChannelBehind) {
    Gate gate;
    gate.prepare(kRate);
    GateParams p = gateParams();
    p.attackMs = 0.0f; // instant
    std::vector<float> left(100, 0.0f), right(100, 0.0f);
    right[10] = 0.5f; // only the right channel is loud
    for (int i = 11; i < 100; ++i) {
        left[i] = 0.2f;
    }
    float* planes[2] = {left.data(), right.data()};
    gate.process(planes, 2, 100, p);
    EXPECT_EQ(left[10], 0.0f);
    EXPECT_EQ(left[11], 0.2f); // opened by the other channel
}
