// Pitch and formant: the shift itself, the fill, continuity on real speech,
// the formant shelves, layer B, the equaliser and the dry/wet blend.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

#include <complex>
#include <random>

using namespace Lumora;
using namespace FxTest;

namespace {

SoundFxPreset onlyPitch(float semitones) {
    SoundFxPreset p;
    p.pitch.enabled = true;
    p.pitch.semitonesA = semitones;
    return p;
}

int firstNonZero(const Signal& x) {
    for (size_t i = 0; i < x.size(); ++i) {
        if (x[i] != 0.0f) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

// Longest run of exact zeros in [from, end).
int longestZeroRun(const Signal& x, int from) {
    int longest = 0;
    int run = 0;
    for (size_t i = static_cast<size_t>(from); i < x.size(); ++i) {
        run = x[i] == 0.0f ? run + 1 : 0;
        longest = std::max(longest, run);
    }
    return longest;
}

// Magnitude in dB of a biquad designed by the textbook shelf formulas (the
// independent reference for the chain's shelves) at hz.
double shelfDb(bool high, double hz, double gainDb, double fc, double rate = kRate) {
    const double a = std::pow(10.0, gainDb / 40.0);
    const double w0 = 2.0 * kPi * fc / rate;
    const double cw = std::cos(w0);
    const double alpha = std::sin(w0) / std::sqrt(2.0);
    const double k = 2.0 * std::sqrt(a) * alpha;
    double b0, b1, b2, a0, a1, a2;
    if (high) {
        b0 = a * ((a + 1) + (a - 1) * cw + k);
        b1 = -2 * a * ((a - 1) + (a + 1) * cw);
        b2 = a * ((a + 1) + (a - 1) * cw - k);
        a0 = (a + 1) - (a - 1) * cw + k;
        a1 = 2 * ((a - 1) - (a + 1) * cw);
        a2 = (a + 1) - (a - 1) * cw - k;
    } else {
        b0 = a * ((a + 1) - (a - 1) * cw + k);
        b1 = 2 * a * ((a - 1) - (a + 1) * cw);
        b2 = a * ((a + 1) - (a - 1) * cw - k);
        a0 = (a + 1) + (a - 1) * cw + k;
        a1 = -2 * ((a - 1) + (a + 1) * cw);
        a2 = (a + 1) + (a - 1) * cw - k;
    }
    const std::complex<double> z = std::polar(1.0, -2.0 * kPi * hz / rate);
    const std::complex<double> h = (b0 + b1 * z + b2 * z * z) / (a0 + a1 * z + a2 * z * z);
    return 20.0 * std::log10(std::abs(h));
}

} // namespace

TEST(PitchEffect, OctaveUpTurns440Into880AfterSilentFill) {
    VoiceFxChain chain;
    setUp(chain, onlyPitch(12.0f));
    const int frames = static_cast<int>(kRate); // one second
    Audio audio({sine(440.0, frames, 0.5f), sine(440.0, frames, 0.5f)});
    runInPackets(chain, audio, 480);

    const Signal& out = audio.planes[0];
    const int start = firstNonZero(out);
    EXPECT_EQ(start, VoiceAlignment::delayFramesAt(kRate))
        << "the shifted voice starts exactly one constant delay late";
    const int from = start + static_cast<int>(0.1 * kRate);
    EXPECT_NEAR(zeroCrossingHz(out, from, frames), 880.0, 880.0 * 0.005);
    EXPECT_NEAR(rmsDb(out, from, frames), rmsDb(audio.planes[1], from, frames), 0.01);
    EXPECT_NEAR(rms(out, from, frames), 0.5 / std::sqrt(2.0), 0.05);
    EXPECT_EQ(longestZeroRun(out, start), 0);
}

TEST(PitchEffect, DownwardShiftsMeasureTheirRatio) {
    for (float semitones : {-12.0f, -5.0f, 7.0f}) {
        VoiceFxChain chain;
        setUp(chain, onlyPitch(semitones));
        const int frames = static_cast<int>(kRate);
        Audio audio({sine(600.0, frames, 0.5f)});
        runInPackets(chain, audio, 1024);
        const double expected = 600.0 * std::pow(2.0, semitones / 12.0);
        EXPECT_NEAR(zeroCrossingHz(audio.planes[0], frames / 2, frames), expected, expected * 0.005)
            << semitones;
    }
}

TEST(PitchEffect, MinuteOfSpeechHasNoPaddedGaps) {
    const Signal voice = speech(60.0);
    ASSERT_FALSE(voice.empty()) << "speech samples missing";
    // A faint noise floor under the speech, so that an exact zero in the output
    // can only be padding (the recordings hold digital silence of their own).
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-1e-3f, 1e-3f);
    Signal input = voice;
    for (float& v : input) {
        v += noise(random);
    }
    for (int packet : {480, 1024}) {
        SoundFxPreset p = onlyPitch(5.0f);
        p.pitch.layerBEnabled = true;
        p.pitch.semitonesB = -7.0f;
        p.pitch.formantShiftA = 0.3f;
        VoiceFxChain chain;
        setUp(chain, p);
        Audio audio({input, input});
        runInPackets(chain, audio, packet);
        for (int c = 0; c < 2; ++c) {
            const int start = firstNonZero(audio.planes[c]);
            ASSERT_GE(start, 0);
            EXPECT_EQ(start, VoiceAlignment::delayFramesAt(kRate));
            EXPECT_EQ(longestZeroRun(audio.planes[c], start), 0) << "packet " << packet;
        }
        EXPECT_EQ(chain.pitchEffect().underruns(), 0) << "packet " << packet;
    }
}

TEST(PitchEffect, SweepingThePitchKeepsTheStreamWhole) {
    // A knob being turned: a new pitch on every packet, up and down the range,
    // starting downwards and upwards.
    const Signal voice = speech(20.0);
    ASSERT_FALSE(voice.empty());
    Signal input = voice;
    std::mt19937 random(3);
    std::uniform_real_distribution<float> noise(-1e-3f, 1e-3f);
    for (float& v : input) {
        v += noise(random);
    }
    for (float start : {-0.5f, 0.5f}) {
        SoundFxPreset p = onlyPitch(12.0f * std::sin(start));
        VoiceFxChain chain;
        setUp(chain, p);
        Audio audio({input});
        const int packet = 480;
        std::vector<float*> pointer(1);
        for (int from = 0, k = 0; from + packet <= audio.frames(); from += packet, ++k) {
            p.pitch.semitonesA = 12.0f * std::sin(start + k * 0.01f);
            chain.setParameters(p);
            pointer[0] = audio.planes[0].data() + from;
            chain.process(pointer.data(), 1, packet);
        }
        const int begin = firstNonZero(audio.planes[0]);
        ASSERT_GE(begin, 0);
        EXPECT_TRUE(allFinite(audio.planes[0]));
        // Dragged across to the other side, the shifter restarts through the
        // dry voice instead of falling behind its delay: no gap at all.
        EXPECT_EQ(chain.pitchEffect().underruns(), 0) << start;
        EXPECT_EQ(longestZeroRun(audio.planes[0], begin), 0) << start;
        EXPECT_LT(rmsDb(audio.planes[0], begin, audio.frames()), 0.0);
        EXPECT_GT(rmsDb(audio.planes[0], begin, audio.frames()), rmsDb(input) - 6.0);
    }
}

TEST(PitchEffect, SwitchingOnAgainStartsFromSilence) {
    VoiceFxChain chain;
    SoundFxPreset p = onlyPitch(3.0f);
    setUp(chain, p);
    Audio loud({sine(300.0, 48000, 0.5f)});
    runInPackets(chain, loud, 480);
    p.pitch.enabled = false;
    p.delay.enabled = true; // the chain keeps running, the pitch does not
    p.delay.wetMix = 0.0f;
    chain.setParameters(p);
    Audio quiet(1, 4800);
    runInPackets(chain, quiet, 480);
    p.pitch.enabled = true;
    chain.setParameters(p);
    Audio silence(1, 4800);
    runInPackets(chain, silence, 480);
    EXPECT_EQ(rms(silence.planes[0]), 0.0) << "old voice replayed after switching back on";
}

TEST(PitchEffect, FormantShelvesFollowTheShiftsSignAndATinyShiftIsBypassed) {
    // Zero semitones, so the tone keeps its frequency and the shelves alone
    // change its level. Expected: the textbook shelves at 800 Hz and 2 kHz with
    // shelf factor 10^(∓24·shift/40); a positive shift cuts the lows and lifts
    // the highs, a negative one the reverse, and one too small to hear is left out
    // (run, its shelves would still move the level by about 0.1 dB).
    for (float shift : {0.5f, -0.5f, 0.004f}) {
        const bool bypassed = std::fabs(shift) < 0.005f;
        for (double hz : {150.0, 400.0, 1200.0, 3000.0, 8000.0}) {
            SoundFxPreset p = onlyPitch(0.0f);
            p.pitch.formantShiftA = shift;
            VoiceFxChain chain;
            setUp(chain, p);
            const int frames = 48000;
            Audio audio({sine(hz, frames, 0.25f)});
            runInPackets(chain, audio, 480);
            const double measured = rmsDb(audio.planes[0], frames / 2, frames) -
                                    rmsDb(sine(hz, frames, 0.25f), frames / 2, frames);
            const double expected = bypassed ? 0.0
                                             : shelfDb(false, hz, -24.0 * shift, 800.0) +
                                                   shelfDb(true, hz, 24.0 * shift, 2000.0);
            EXPECT_NEAR(measured, expected, bypassed ? 0.03 : 0.3)
                << "shift " << shift << ", " << hz << " Hz";
            const double lifted = shift > 0.0f ? measured : -measured;
            if (!bypassed && hz < 800.0) {
                EXPECT_LT(lifted, -3.0) << "shift " << shift << ", " << hz << " Hz";
            }
            if (!bypassed && hz > 2000.0) {
                EXPECT_GT(lifted, 3.0) << "shift " << shift << ", " << hz << " Hz";
            }
        }
    }
}

TEST(PitchEffect, LayerBBlendsItsOwnPitchAndFormant) {
    // A: +0 semitones, B: +12; mixAB 1 leaves only B (after it has filled),
    // and B's formant shelves act on B alone.
    SoundFxPreset p = onlyPitch(0.0f);
    p.pitch.layerBEnabled = true;
    p.pitch.semitonesB = 12.0f;
    p.pitch.mixAB = 1.0f;
    VoiceFxChain chain;
    setUp(chain, p);
    const int frames = 48000;
    Audio audio({sine(500.0, frames, 0.4f)});
    runInPackets(chain, audio, 480);
    EXPECT_NEAR(zeroCrossingHz(audio.planes[0], frames / 2, frames), 1000.0, 5.0);

    p.pitch.mixAB = 0.0f; // only A
    p.pitch.formantShiftB = 1.0f;
    VoiceFxChain chainA;
    setUp(chainA, p);
    Audio onlyA({sine(500.0, frames, 0.4f)});
    runInPackets(chainA, onlyA, 480);
    EXPECT_NEAR(zeroCrossingHz(onlyA.planes[0], frames / 2, frames), 500.0, 2.5);
    EXPECT_NEAR(rms(onlyA.planes[0], frames / 2, frames), 0.4 / std::sqrt(2.0), 0.02)
        << "layer B's formant must not colour layer A";
}

TEST(PitchEffect, DryWetBlendUsesTheUndelayedDry) {
    SoundFxPreset p = onlyPitch(7.0f);
    p.pitch.wetMix = 0.25f;
    VoiceFxChain chain;
    setUp(chain, p);
    Audio audio({sine(300.0, 4800, 0.5f)});
    const Signal dry = audio.planes[0];
    chain.process(audio.data(), 1, 480); // first packet: the shifter is still filling
    for (int i = 0; i < 480; ++i) {
        ASSERT_FLOAT_EQ(audio.planes[0][i], 0.75f * dry[i]);
    }
}

TEST(PitchEffect, FormantEqualiserBoostsItsBand) {
    SoundFxPreset p = onlyPitch(0.0f);
    p.pitch.formantEqEnabled = true;
    p.pitch.formantBands[2].gainDb = 12.0f; // 2000 Hz, Q 1.5
    for (double hz : {2000.0, 300.0}) {
        VoiceFxChain chain;
        setUp(chain, p);
        const int frames = 48000;
        Audio audio({sine(hz, frames, 0.1f)});
        runInPackets(chain, audio, 480);
        const double gain =
            rmsDb(audio.planes[0], frames / 2, frames) - rmsDb(sine(hz, 4800, 0.1f));
        if (hz == 2000.0) {
            EXPECT_NEAR(gain, 12.0, 0.3);
        } else {
            EXPECT_NEAR(gain, 0.0, 0.5);
        }
    }
}
