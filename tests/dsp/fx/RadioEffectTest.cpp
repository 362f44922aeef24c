// Radio: the band filters as designed, the tanh drive and its loudness
// normalisation, coefficient changes while running.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

#include <random>

using namespace Lumora;
using namespace FxTest;

namespace {

// The radio's filters written out from their formulas, independently of the
// chain's filter class.
struct ReferenceBiquad {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0, s1 = 0, s2 = 0;
    void design(bool highPass, double hz, double rate = kRate) {
        const double w = 2.0 * kPi * hz / rate;
        const double alpha = std::sin(w) / 1.414;
        const double a0 = 1.0 + alpha;
        const double cw = std::cos(w);
        b0 = b2 = (highPass ? (1.0 + cw) : (1.0 - cw)) / 2.0 / a0;
        b1 = (highPass ? -(1.0 + cw) : (1.0 - cw)) / a0;
        a1 = -2.0 * cw / a0;
        a2 = (1.0 - alpha) / a0;
        // A new corner keeps the state: a knob being turned must not click.
    }
    double run(double x) {
        const double y = b0 * x + s1;
        s1 = b1 * x - a1 * y + s2;
        s2 = b2 * x - a2 * y;
        return y;
    }
};

SoundFxPreset onlyRadio(float lowCut, float highCut, float overdrive) {
    SoundFxPreset p;
    p.radio.enabled = true;
    p.radio.lowCutHz = lowCut;
    p.radio.highCutHz = highCut;
    p.radio.overdrive = overdrive;
    return p;
}

Signal noise(int frames, float amplitude, unsigned seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> u(-amplitude, amplitude);
    Signal x(static_cast<size_t>(frames));
    for (float& v : x) {
        v = u(random);
    }
    return x;
}

} // namespace

TEST(RadioEffect, DriveSaturatesAndIsScaledBackByItsRoot) {
    const float overdrive = 0.5f; // drive 5.5
    VoiceFxChain chain;
    setUp(chain, onlyRadio(200.0f, 5000.0f, overdrive));
    const Signal x = noise(4800, 0.5f, 2);
    Audio audio({x, x});
    runInPackets(chain, audio, 1024);
    ReferenceBiquad hp, lp;
    hp.design(true, 200.0);
    lp.design(false, 5000.0);
    const double drive = overdrive * 9.0 + 1.0;
    for (int i = 0; i < 4800; ++i) {
        const double v = lp.run(hp.run(x[i]));
        ASSERT_NEAR(audio.planes[1][i], std::tanh(v * drive) / std::sqrt(drive), 2e-6) << i;
    }
}

TEST(RadioEffect, KeepsTheTelephoneBand) {
    // Quiet tones (tanh nearly linear): the band passes, the ends do not.
    for (const auto& [hz, lo, hi] : {std::tuple{1000.0, -1.0, 0.5}, std::tuple{80.0, -100.0, -20.0},
                                     std::tuple{12000.0, -100.0, -20.0}}) {
        VoiceFxChain chain;
        setUp(chain, onlyRadio(300.0f, 3400.0f, 0.0f));
        Audio audio({sine(hz, 9600, 0.01f)});
        runInPackets(chain, audio, 480);
        const double gain = rmsDb(audio.planes[0], 4800, 9600) - rmsDb(sine(hz, 9600, 0.01f));
        EXPECT_GT(gain, lo) << hz;
        EXPECT_LT(gain, hi) << hz;
    }
}
