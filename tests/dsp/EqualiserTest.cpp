// The equaliser's filters: steady-state response in dB against the analog
// prototypes they are the bilinear transforms of.
#include "dsp/Equaliser.h"
#include "DspTestSignals.h"

#include <gtest/gtest.h>

#include <complex>
#include <cstring>
#include <initializer_list>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr double kRate = 48000.0;
constexpr double kToleranceDb = 0.05;

// The analog frequency that the bilinear transform, prewarped at f0, maps f to.
double warped(double f, double f0) {
    return std::tan(kPi * f / kRate) / std::tan(kPi * f0 / kRate);
}

double analogDb(std::complex<double> num, std::complex<double> den) {
    return 20.0 * std::log10(std::abs(num / den));
}

double highPassDb(double f, double f0, double q) {
    const std::complex<double> s(0.0, warped(f, f0));
    return analogDb(s * s, s * s + s / q + 1.0);
}

double lowPassDb(double f, double f0, double q) {
    const std::complex<double> s(0.0, warped(f, f0));
    return analogDb(1.0, s * s + s / q + 1.0);
}

double peakDb(double f, double f0, double gainDb, double q) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const std::complex<double> s(0.0, warped(f, f0));
    return analogDb(s * s + s * (a / q) + 1.0, s * s + s / (a * q) + 1.0);
}

double shelfDb(double f, double f0, double gainDb) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const double q = 1.0 / std::sqrt(2.0); // slope 1
    const std::complex<double> s(0.0, warped(f, f0));
    return analogDb(a * (a * s * s + std::sqrt(a) / q * s + 1.0), s * s + std::sqrt(a) / q * s + a);
}

// Runs a one-second sine through the equaliser (both channels) and returns the
// gain in dB measured over the last half second, and checks both channels agree.
// The `earlier` records reach the equaliser first, as a user's edits would.
double measuredDb(const EqParams& p, double hz, std::initializer_list<EqParams> earlier = {}) {
    Equaliser eq;
    eq.prepare(kRate);
    for (const EqParams& e : earlier) {
        eq.updateCoefficients(e);
    }
    eq.updateCoefficients(p);
    const int n = 48000;
    std::vector<float> left = sine(hz, kRate, n, 0.25f);
    std::vector<float> right = left;
    float* planes[2] = {left.data(), right.data()};
    for (int start = 0; start < n; start += 480) {
        float* packet[2] = {planes[0] + start, planes[1] + start};
        eq.process(packet, 2, 480, p);
    }
    EXPECT_EQ(std::memcmp(left.data(), right.data(), n * sizeof(float)), 0);
    return toDb(amplitudeAt(left, n / 2, n / 2, hz, kRate) / 0.25);
}

EqParams withLowCut(float hz) {
    EqParams p;
    p.enabled = true;
    p.lowCutEnabled = true;
    p.lowCutHz = hz;
    return p;
}

} // namespace

TEST(EqualiserResponse, LowCutFollowsItsSecondOrderHighPass) {
    const EqParams p = withLowCut(80.0f);
    for (double f : {30.0, 60.0, 80.0, 120.0, 400.0, 2000.0}) {
        EXPECT_NEAR(measuredDb(p, f), highPassDb(f, 80.0, 0.707), kToleranceDb) << f << " Hz";
    }
    EXPECT_NEAR(measuredDb(p, 80.0), -3.01, 0.02); // Q 0.707 at the corner

    // Turned off, its knob moved, turned on again: the new corner, not the old.
    EqParams moved = withLowCut(200.0f);
    moved.lowCutEnabled = false;
    EXPECT_NEAR(measuredDb(withLowCut(200.0f), 200.0, {p, moved}), -3.01, 0.02);
}

TEST(EqualiserResponse, HighCutFollowsItsLowPassWithTheGivenQ) {
    EqParams p;
    p.enabled = true;
    p.highCutEnabled = true;
    p.highCutHz = 6000.0f;
    p.highCutQ = 0.707f;
    for (double f : {500.0, 3000.0, 6000.0, 9000.0, 15000.0}) {
        EXPECT_NEAR(measuredDb(p, f), lowPassDb(f, 6000.0, 0.707), kToleranceDb) << f << " Hz";
    }
    p.highCutQ = 2.0f; // a resonant corner: +6 dB at the frequency
    EXPECT_NEAR(measuredDb(p, 6000.0), 20.0 * std::log10(2.0), kToleranceDb);
}

TEST(EqualiserResponse, PeakingBandHasItsGainAtTheCentreAndNoneFarAway) {
    EqParams p;
    p.enabled = true;
    p.notchBands[2] = {true, 1000.0f, -9.0f, 4.0f};
    for (double f : {100.0, 700.0, 940.0, 1000.0, 1060.0, 1500.0, 10000.0}) {
        EXPECT_NEAR(measuredDb(p, f), peakDb(f, 1000.0, -9.0, 4.0), kToleranceDb) << f << " Hz";
    }
    EXPECT_NEAR(measuredDb(p, 1000.0), -9.0, kToleranceDb);
    EXPECT_NEAR(measuredDb(p, 100.0), 0.0, kToleranceDb);
}

TEST(EqualiserResponse, HighShelfReachesItsGainAboveAndHalfOfItAtTheFrequency) {
    EqParams p;
    p.enabled = true;
    p.highShelfEnabled = true;
    p.highShelfHz = 5000.0f;
    p.highShelfGainDb = 6.0f;
    for (double f : {200.0, 2500.0, 5000.0, 10000.0, 18000.0}) {
        EXPECT_NEAR(measuredDb(p, f), shelfDb(f, 5000.0, 6.0), kToleranceDb) << f << " Hz";
    }
    EXPECT_NEAR(measuredDb(p, 5000.0), 3.0, kToleranceDb);
    EXPECT_NEAR(measuredDb(p, 200.0), 0.0, kToleranceDb);
}

TEST(EqualiserResponse, FiltersInSeriesAddUpInDb) {
    EqParams p = withLowCut(100.0f);
    p.notchBands[0] = {true, 300.0f, 4.0f, 1.0f};
    p.notchBands[4] = {true, 3000.0f, -5.0f, 2.0f};
    p.highShelfEnabled = true;
    p.highShelfHz = 8000.0f;
    p.highShelfGainDb = -4.0f;
    p.highCutEnabled = true;
    p.highCutHz = 12000.0f;
    for (double f : {70.0, 300.0, 3000.0, 9000.0}) {
        const double expected = highPassDb(f, 100.0, 0.707) + peakDb(f, 300.0, 4.0, 1.0) +
                                peakDb(f, 3000.0, -5.0, 2.0) + shelfDb(f, 8000.0, -4.0) +
                                lowPassDb(f, 12000.0, 0.707);
        EXPECT_NEAR(measuredDb(p, f), expected, 2 * kToleranceDb) << f << " Hz";
    }
}

TEST(EqualiserBands, BandAtZeroDbChangesNothingWhateverItsSwitch) {
    EqParams p;
    p.enabled = true;
    p.notchBands[1] = {true, 1000.0f, 0.0f, 4.0f};
    p.notchBands[3] = {false, 500.0f, 6.0f, 4.0f}; // off: ignored however loud
    Equaliser eq;
    eq.prepare(kRate);
    eq.updateCoefficients(p);
    std::vector<float> x = noise(960, 0.5f);
    const std::vector<float> original = x;
    float* planes[1] = {x.data()};
    eq.process(planes, 1, 960, p);
    EXPECT_EQ(std::memcmp(x.data(), original.data(), x.size() * sizeof(float)), 0);
}
