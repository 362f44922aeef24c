// The compressor: its static curve (hard and soft knee, ratio 1), the envelope's
// time constants and the meters it publishes.
#include "dsp/Compressor.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr double kRate = 48000.0;

CompParams compParams(float thresholdDb, float ratio, float kneeDb) {
    CompParams p;
    p.enabled = true;
    p.thresholdDb = thresholdDb;
    p.ratio = ratio;
    p.kneeDb = kneeDb;
    p.attackMs = 1.0f;
    p.releaseMs = 1.0f;
    return p;
}

// Gain in dB that the compressor settles to for a steady level (a constant
// signal, so the peak detector sees the same value every sample). The meters
// must show what was done: the level the detector settled on, and the
// reduction the samples got.
double settledGainDb(const CompParams& p, float levelDb) {
    Compressor comp;
    comp.prepare(kRate);
    comp.updateCoefficients(p);
    const float x = std::pow(10.0f, levelDb / 20.0f);
    std::vector<float> left(4800, x), right(4800, -x);
    float* planes[2] = {left.data(), right.data()};
    comp.process(planes, 2, 4800, p);
    EXPECT_EQ(left.back(), -right.back());
    const double gainDb = toDb(left.back() / x);
    EXPECT_NEAR(comp.detectorDb(), levelDb, 1e-3f) << levelDb << " dB";
    EXPECT_NEAR(comp.gainReductionDb(), -gainDb, 1e-3) << levelDb << " dB";
    return gainDb;
}

} // namespace

TEST(CompressorCurve, HardKneeReducesByTheRatioAboveTheThreshold) {
    const CompParams p = compParams(-20.0f, 4.0f, 0.0f);
    EXPECT_NEAR(settledGainDb(p, -30.0f), 0.0, 1e-4);
    EXPECT_NEAR(settledGainDb(p, -20.0f), 0.0, 1e-3);
    EXPECT_NEAR(settledGainDb(p, -8.0f), -9.0, 1e-3); // 12 dB over, 3/4 of it removed
    EXPECT_NEAR(settledGainDb(p, 0.0f), -15.0, 1e-3);
}

TEST(CompressorCurve, SoftKneeIsQuadraticInsideTheKneeAndMeetsTheLineAtItsEdges) {
    const CompParams p = compParams(-20.0f, 4.0f, 10.0f);
    EXPECT_NEAR(settledGainDb(p, -25.5f), 0.0, 1e-4);                 // below the knee
    EXPECT_NEAR(settledGainDb(p, -20.0f), -0.75 * 25.0 / 20.0, 1e-3); // 0.9375 dB at the threshold
    EXPECT_NEAR(settledGainDb(p, -17.0f), -0.75 * 64.0 / 20.0, 1e-3); // 3 dB over: (3 + 5)²
    EXPECT_NEAR(settledGainDb(p, -15.0f), -0.75 * 5.0, 1e-3);         // upper edge: on the line
    EXPECT_NEAR(settledGainDb(p, -5.0f), -0.75 * 15.0, 1e-3);         // beyond: the hard line
}

TEST(CompressorCurve, RatioOneChangesNothingButTheMakeUp) {
    CompParams p = compParams(-40.0f, 1.0f, 6.0f);
    std::vector<float> x = noise(2400, 0.9f);
    std::vector<float> y = x;
    Compressor comp;
    comp.prepare(kRate);
    comp.updateCoefficients(p);
    float* planes[1] = {y.data()};
    comp.process(planes, 1, 2400, p);
    for (size_t i = 0; i < x.size(); ++i) {
        ASSERT_EQ(y[i], x[i]) << i;
    }
    EXPECT_EQ(comp.gainReductionDb(), 0.0f);

    p.makeupGainDb = 6.0f;
    std::vector<float> z = x;
    float* zp[1] = {z.data()};
    comp.process(zp, 1, 2400, p);
    // A new make-up is reached across the packet, on its last sample.
    EXPECT_NEAR(z[2399], x[2399] * std::pow(10.0f, 6.0f / 20.0f), 1e-4f);
}

TEST(CompressorEnvelope, AttackCoversTwoThirdsOfAStepInItsTime) {
    CompParams p = compParams(-20.0f, 2.0f, 0.0f);
    p.attackMs = 10.0f;
    p.releaseMs = 100.0f;
    Compressor comp;
    comp.prepare(kRate);
    comp.updateCoefficients(p);
    // From the resting -96 dB to a steady 0 dB: after 10 ms the envelope has
    // covered 1 − 1/e of the 96 dB step.
    std::vector<float> x(480, 1.0f);
    float* planes[1] = {x.data()};
    comp.process(planes, 1, 480, p);
    EXPECT_NEAR(comp.detectorDb(), -96.0 * std::exp(-1.0), 0.05);
}
