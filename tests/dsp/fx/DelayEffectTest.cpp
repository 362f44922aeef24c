// Delay: clamping of the time, echo timing and feedback on both channels.
// Impulses come 50 ms in: an echo just switched on takes the voice in over its
// crossfade.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

TEST(DelayEffect, ImpulseComesBackAfterTheSetTimeWithTheSetFeedback) {
    const float feedback = 0.6f;
    const float wet = 0.4f;
    VoiceFxChain chain;
    setUp(chain, onlyDelay(250.0f, feedback, wet));
    const int d = 12000, at = 2400;
    Audio audio({impulse(at + 5 * d, at), impulse(at + 5 * d, at)});
    runInPackets(chain, audio, 480);
    for (int c = 0; c < 2; ++c) {
        const Signal& y = audio.planes[c];
        EXPECT_FLOAT_EQ(y[at], 1.0f - wet);
        for (int k = 1; k < 5; ++k) {
            EXPECT_NEAR(y[at + k * d], wet * std::pow(feedback, static_cast<float>(k - 1)), 1e-6)
                << "echo " << k;
        }
        double elsewhere = 0.0;
        for (int i = 0; i < at + 5 * d; ++i) {
            if (i < at || (i - at) % d != 0) {
                elsewhere += std::fabs(y[i]);
            }
        }
        EXPECT_EQ(elsewhere, 0.0);
    }
}

TEST(DelayEffect, TimesBeyondTheKnobAreClampedNotRefused) {
    {
        VoiceFxChain chain;
        setUp(chain, onlyDelay(0.0f, 0.0f, 1.0f));
        Audio audio({impulse(2880, 2400)});
        runInPackets(chain, audio, 480);
        EXPECT_EQ(audio.planes[0][2400 + 48], 1.0f) << "0 ms is the knob's 1 ms";
    }
    {
        VoiceFxChain chain;
        setUp(chain, onlyDelay(5000.0f, 0.0f, 1.0f));
        Audio audio({impulse(51200, 2400)});
        runInPackets(chain, audio, 1024);
        EXPECT_EQ(audio.planes[0][2400 + 48000], 1.0f) << "5000 ms is the knob's 1000 ms";
        EXPECT_EQ(rms(audio.planes[0], 2401, 2400 + 48000), 0.0);
    }
}
