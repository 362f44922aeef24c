// Tremolo: the gain curve, its rate and depth, and the shared phase.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

namespace {

SoundFxPreset onlyTremolo(float rate, float depth, float wet) {
    SoundFxPreset p;
    p.mod.enabled = true;
    p.mod.type = kModTremolo;
    p.mod.rate = rate;
    p.mod.depth = depth;
    p.mod.wetMix = wet;
    return p;
}

} // namespace

TEST(Tremolo, DepthZeroLeavesTheSignalAlone) {
    VoiceFxChain chain;
    setUp(chain, onlyTremolo(5.0f, 0.0f, 0.7f));
    const Signal x = sine(300.0, 4800, 0.5f);
    Audio audio({x, x});
    runInPackets(chain, audio, 480);
    for (int i = 0; i < 4800; ++i) {
        ASSERT_NEAR(audio.planes[0][i], x[i], 1e-7f) << i;
    }
}

TEST(Tremolo, FullDepthSwingsBetweenZeroAndOneAtTheRate) {
    const float rate = 4.0f;
    VoiceFxChain chain;
    setUp(chain, onlyTremolo(rate, 1.0f, 1.0f));
    const int frames = 48000;
    Audio audio({Signal(frames, 1.0f), Signal(frames, 1.0f)});
    runInPackets(chain, audio, 1024);
    float lo = 1.0f;
    float hi = 0.0f;
    for (int i = 0; i < frames; ++i) {
        const double expected = (std::sin(2.0 * kPi * rate * i / kRate) + 1.0) * 0.5;
        ASSERT_NEAR(audio.planes[0][i], expected, 2e-5) << i;
        ASSERT_EQ(audio.planes[0][i], audio.planes[1][i]) << "channels share the phase";
        lo = std::min(lo, audio.planes[0][i]);
        hi = std::max(hi, audio.planes[0][i]);
    }
    EXPECT_LT(lo, 1e-6f);
    EXPECT_GT(hi, 1.0f - 1e-6f);
}
