// Chorus and flanger: their voices' timing and blend, feedback and stereo spread;
// the tremolo's gain curve.
#include "FxTestSupport.h"

#include "dsp/fx/Chorus.h"
#include "dsp/fx/Flanger.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

namespace {

SoundFxPreset onlyMod(int32_t type, float rate, float depth, float feedback, float wet) {
    SoundFxPreset p;
    p.mod.enabled = true;
    p.mod.type = type;
    p.mod.rate = rate;
    p.mod.depth = depth;
    p.mod.feedback = feedback;
    p.mod.wetMix = wet;
    return p;
}

} // namespace

TEST(Chorus, StillVoicesEchoAtTheirBaseDelaysBlendedEvenly) {
    // Depth 0: the voices sit at 12 and 18 ms. Each yields (read + input)/2 and
    // the chorus is their mean, so an impulse gives 1/2 now and 1/4 per voice.
    VoiceFxChain chain;
    setUp(chain, onlyMod(kModChorus, 1.0f, 0.0f, 0.0f, 1.0f));
    Audio audio({impulse(4800)});
    runInPackets(chain, audio, 480);
    const Signal& y = audio.planes[0];
    const int d1 = static_cast<int>(Chorus::kBaseDelayMs[0] * 48.0);
    const int d2 = static_cast<int>(Chorus::kBaseDelayMs[1] * 48.0);
    EXPECT_FLOAT_EQ(y[0], 0.5f);
    EXPECT_FLOAT_EQ(y[d1], 0.25f);
    EXPECT_FLOAT_EQ(y[d2], 0.25f);
    EXPECT_NEAR(rms(y) * rms(y) * 4800, 0.5 * 0.5 + 2 * 0.25 * 0.25, 1e-6) << "nothing else";
}

TEST(Chorus, SweepsAndSpreadsTheChannels) {
    VoiceFxChain chain;
    setUp(chain, onlyMod(kModChorus, 1.5f, 1.0f, 0.3f, 1.0f));
    const Signal x = sine(440.0, 48000, 0.5f);
    Audio audio({x, x});
    runInPackets(chain, audio, 480);
    double difference = 0.0;
    for (int i = 24000; i < 48000; ++i) {
        difference += std::fabs(audio.planes[0][i] - audio.planes[1][i]);
    }
    EXPECT_GT(difference / 24000, 0.01) << "left and right sweep apart";
    EXPECT_TRUE(allFinite(audio.planes[0]));
    EXPECT_GT(rmsDb(audio.planes[0], 24000), rmsDb(x) - 10.0);
}

TEST(Flanger, ShortDelayCombsWithTheDry) {
    // Depth 0: a fixed 0.25 ms delay mixed with the dry voice.
    VoiceFxChain chain;
    setUp(chain, onlyMod(kModFlanger, 1.0f, 0.0f, 0.0f, 0.5f));
    Audio audio({impulse(960)});
    runInPackets(chain, audio, 480);
    const int d = static_cast<int>(Flanger::kMinDelayMs * 48.0);
    EXPECT_FLOAT_EQ(audio.planes[0][0], 0.5f);
    EXPECT_FLOAT_EQ(audio.planes[0][d], 0.5f);
    EXPECT_NEAR(rms(audio.planes[0]) * rms(audio.planes[0]) * 960, 0.5, 1e-6);
}

TEST(Flanger, FeedbackRingsButKeepsThePowerOfTheInput) {
    // The loop input is scaled by √(1 − fb²): the echoes' energy sums to one.
    const float feedback = 0.9f;
    VoiceFxChain chain;
    setUp(chain, onlyMod(kModFlanger, 1.0f, 0.0f, feedback, 1.0f));
    Audio audio({impulse(48000)});
    runInPackets(chain, audio, 480);
    const int d = static_cast<int>(Flanger::kMinDelayMs * 48.0);
    EXPECT_NEAR(audio.planes[0][d], std::sqrt(1.0f - feedback * feedback), 1e-6);
    EXPECT_NEAR(audio.planes[0][2 * d], std::sqrt(1.0f - feedback * feedback) * feedback, 1e-6);
    const double energy = rms(audio.planes[0]) * rms(audio.planes[0]) * 48000;
    EXPECT_NEAR(energy, 1.0, 1e-3);
}

// Over a steady 1 the output is the gain: at full depth (1 + sin)/2 at the
// rate, swinging from 0 to 1 with both channels on one phase. At depth 0 a
// tone comes through untouched, whatever the wet mix.
TEST(Tremolo, FullDepthSwingsBetweenZeroAndOneAtTheRateAndDepthZeroNotAtAll) {
    const float rate = 4.0f;
    const int frames = 48000;
    VoiceFxChain chain;
    setUp(chain, onlyMod(kModTremolo, rate, 1.0f, 0.0f, 1.0f));
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

    VoiceFxChain still;
    setUp(still, onlyMod(kModTremolo, 5.0f, 0.0f, 0.0f, 0.7f));
    const Signal x = sine(300.0, 4800, 0.5f);
    Audio tone({x, x});
    runInPackets(still, tone, 480);
    for (int i = 0; i < 4800; ++i) {
        ASSERT_NEAR(tone.planes[0][i], x[i], 1e-7f) << i;
    }
}
