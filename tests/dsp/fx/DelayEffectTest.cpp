// Delay: clamping of the time, echo timing and feedback, the shared write
// position.
#include "FxTestSupport.h"

#include "dsp/DspTestSignals.h"
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

TEST(DelayEffect, ExtremeTimesAreClampedNotRefused) {
    {
        VoiceFxChain chain;
        setUp(chain, onlyDelay(0.0f, 0.0f, 1.0f));
        Audio audio({impulse(480, 10)});
        runInPackets(chain, audio, 480);
        EXPECT_EQ(audio.planes[0][11], 1.0f) << "0 ms is one sample";
    }
    {
        VoiceFxChain chain;
        setUp(chain, onlyDelay(5000.0f, 0.0f, 1.0f));
        Audio audio({impulse(96480, 0)});
        runInPackets(chain, audio, 1024);
        EXPECT_EQ(audio.planes[0][95999], 1.0f) << "5000 ms is 95999 samples";
        EXPECT_EQ(rms(audio.planes[0], 0, 95999), 0.0);
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

// The time knob dragged from 100 to 400 ms in two seconds while the echo
// plays a tone back: the read position glides, so the echo bends in pitch
// for a moment instead of jumping (each jump was a click).
TEST(DelayEffect, ATimeDraggedUnderAToneGlidesWithoutAClick) {
    VoiceFxChain chain;
    SoundFxPreset p = onlyDelay(100.0f, 0.3f, 0.5f);
    setUp(chain, p);
    const int packet = 480, drag = 200, settle = 100;
    Signal x(static_cast<size_t>(packet * (drag + settle)));
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = 0.1f * std::sin(2.0f * 3.14159265f * 233.0f * static_cast<float>(i) / 48000.0f);
    }
    Audio audio({x});
    for (int k = 0; k < drag + settle; ++k) {
        p.delay.timeMs = 100.0f + 300.0f * static_cast<float>(std::min(k, drag)) / drag;
        chain.setParameters(p);
        float* planes[1] = {audio.planes[0].data() + k * packet};
        chain.process(planes, 1, packet);
    }
    const Signal& y = audio.planes[0];
    const float steady =
        TestSignals::largestStep(y, static_cast<size_t>(packet * (drag + 50)), y.size());
    EXPECT_LE(TestSignals::largestStep(y, static_cast<size_t>(packet * 10),
                                       static_cast<size_t>(packet * drag)),
              1.5f * steady);
}
