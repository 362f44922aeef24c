// Delay: clamping of the time, echo timing and feedback, the shared write
// position.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

using namespace Lumora;
using namespace FxTest;

TEST(DelayEffect, ImpulseComesBackAfterTheSetTimeWithTheSetFeedback) {
    const float feedback = 0.6f;
    const float wet = 0.4f;
    VoiceFxChain chain;
    setUp(chain, onlyDelay(250.0f, feedback, wet));
    const int d = 12000;
    Audio audio({impulse(5 * d), impulse(5 * d)});
    runInPackets(chain, audio, 480);
    for (int c = 0; c < 2; ++c) {
        const Signal& y = audio.planes[c];
        EXPECT_FLOAT_EQ(y[0], 1.0f - wet);
        for (int k = 1; k < 5; ++k) {
            EXPECT_NEAR(y[k * d], wet * std::pow(feedback, static_cast<float>(k - 1)), 1e-6)
                << "echo " << k;
        }
        double elsewhere = 0.0;
        for (int i = 1; i < 5 * d; ++i) {
            if (i % d != 0) {
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
        Audio audio({impulse(480, 10)});
        runInPackets(chain, audio, 480);
        EXPECT_EQ(audio.planes[0][10 + 48], 1.0f) << "0 ms is the knob's 1 ms";
    }
    {
        VoiceFxChain chain;
        setUp(chain, onlyDelay(5000.0f, 0.0f, 1.0f));
        Audio audio({impulse(48480, 0)});
        runInPackets(chain, audio, 1024);
        EXPECT_EQ(audio.planes[0][48000], 1.0f) << "5000 ms is the knob's 1000 ms";
        EXPECT_EQ(rms(audio.planes[0], 0, 48000), 0.0);
    }
}

TEST(DelayEffect, ChannelsShareOneWritePosition) {
    // Impulses at different times on the two channels keep their distance.
    VoiceFxChain chain;
    setUp(chain, onlyDelay(20.0f, 0.0f, 1.0f));
    Audio audio({impulse(4800, 100), impulse(4800, 350)});
    runInPackets(chain, audio, 256);
    EXPECT_EQ(audio.planes[0][100 + 960], 1.0f);
    EXPECT_EQ(audio.planes[1][350 + 960], 1.0f);
}
