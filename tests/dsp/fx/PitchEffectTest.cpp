// Pitch and formant: the shift itself, the fill, continuity on real speech,
// the formant shelves, layer B, the equaliser and the dry/wet blend.
#include "FxTestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

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

// Recorded speech over a faint noise floor, so that an exact zero in the
// output can only be padding (the recordings hold digital silence of their own).
Signal speechOverNoise(double seconds) {
    Signal x = speech(seconds);
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-1e-3f, 1e-3f);
    for (float& v : x) {
        v += noise(random);
    }
    return x;
}

} // namespace

// A tone shifted up and down, at both packet sizes and at other rates: the
// shifted voice starts exactly one constant delay late, after silence, with
// no gap, at the measured ratio and the input's level on both channels.
TEST(PitchEffect, ShiftedToneHasItsRatioAfterTheConstantDelay) {
    const struct {
        float semitones;
        double rate;
        int packet;
    } cases[] = {{12.0f, kRate, 480}, {-12.0f, kRate, 1024},  {-5.0f, kRate, 1024},
                 {7.0f, kRate, 1024}, {12.0f, 22050.0, 1024}, {12.0f, 96000.0, 1024}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.semitones) + " semitones at " + std::to_string(c.rate));
        VoiceFxChain chain;
        setUp(chain, onlyPitch(c.semitones), c.rate);
        const int frames = static_cast<int>(c.rate); // one second
        Audio audio({sine(440.0, frames, 0.5f, c.rate), sine(440.0, frames, 0.5f, c.rate)});
        runInPackets(chain, audio, c.packet);
        const Signal& out = audio.planes[0];
        const int start = firstNonZero(out);
        EXPECT_EQ(start, VoiceAlignment::delayFramesAt(c.rate));
        EXPECT_EQ(longestZeroRun(out, start), 0);
        const double expected = 440.0 * std::pow(2.0, c.semitones / 12.0);
        const int from = frames / 2;
        EXPECT_NEAR(zeroCrossingHz(out, from, frames, c.rate), expected, expected * 0.005);
        EXPECT_NEAR(rms(out, from, frames), 0.5 / std::sqrt(2.0), 0.05);
        EXPECT_NEAR(rmsDb(out, from, frames), rmsDb(audio.planes[1], from, frames), 0.01);
    }
}

// Real speech through the shifter, as it plays for a long time and as a knob is
// turned (a new pitch on every packet, up and down the range, starting
// downwards and upwards): the output starts one constant delay late and then
// never pads with silence, at about the input's level.
TEST(PitchEffect, SpeechComesOutWholeHeldOrSwept) {
    const struct {
        const char* name;
        double seconds;
        int channels, packet;
        bool swept;
        float held;  // the shift, when held
        float phase; // where the sweep starts, when swept
    } cases[] = {
        {"a minute, two layers, packets of 480", 60.0, 2, 480, false, 5.0f, 0.0f},
        {"a minute, two layers, packets of 1024", 60.0, 2, 1024, false, 5.0f, 0.0f},
        {"swept, starting downwards", 20.0, 1, 480, true, 0.0f, -0.5f},
        {"swept, starting upwards", 20.0, 1, 480, true, 0.0f, 0.5f},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Signal input = speechOverNoise(c.seconds);
        ASSERT_FALSE(input.empty()) << "speech samples missing";
        SoundFxPreset p = onlyPitch(c.swept ? 12.0f * std::sin(c.phase) : c.held);
        if (!c.swept) {
            p.pitch.layerBEnabled = true;
            p.pitch.semitonesB = -7.0f;
            p.pitch.formantShiftA = 0.3f;
        }
        VoiceFxChain chain;
        setUp(chain, p);
        Audio audio(std::vector<Signal>(static_cast<size_t>(c.channels), input));
        std::vector<float*> pointers(static_cast<size_t>(c.channels));
        for (int from = 0, k = 0; from < audio.frames(); from += c.packet, ++k) {
            if (c.swept) {
                p.pitch.semitonesA = 12.0f * std::sin(c.phase + k * 0.01f);
                chain.setParameters(p);
            }
            for (int ch = 0; ch < c.channels; ++ch) {
                pointers[ch] = audio.planes[ch].data() + from;
            }
            chain.process(pointers.data(), c.channels, std::min(c.packet, audio.frames() - from));
        }
        for (const Signal& out : audio.planes) {
            const int begin = firstNonZero(out);
            if (begin < 0) {
                ADD_FAILURE() << "nothing came out";
                continue;
            }
            EXPECT_EQ(begin, VoiceAlignment::delayFramesAt(kRate));
            EXPECT_TRUE(allFinite(out));
            // Dragged across to the other side, the shifter restarts through the
            // dry voice instead of falling behind its delay: no gap at all.
            EXPECT_EQ(longestZeroRun(out, begin), 0);
            EXPECT_LT(rmsDb(out, begin, audio.frames()), 0.0);
            EXPECT_GT(rmsDb(out, begin, audio.frames()), rmsDb(input) - 6.0);
        }
        EXPECT_EQ(chain.pitchEffect().underruns(), 0);
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
    // change its level: at a shift of +0.5 a low shelf at 800 Hz cuts 12 dB and
    // a high shelf at 2 kHz lifts 12 dB; a negative shift mirrors them, and one
    // too small to hear is left out (run, its shelves would still move the
    // level by about 0.1 dB).
    const double hz[] = {150.0, 400.0, 1200.0, 3000.0, 8000.0};
    const double halfShiftDb[] = {-11.98, -11.08, -0.65, 9.66, 11.96};
    for (float shift : {0.5f, -0.5f, 0.004f}) {
        const bool bypassed = std::fabs(shift) < 0.005f;
        for (int k = 0; k < 5; ++k) {
            SoundFxPreset p = onlyPitch(0.0f);
            p.pitch.formantShiftA = shift;
            VoiceFxChain chain;
            setUp(chain, p);
            const int frames = 48000;
            const Signal x = sine(hz[k], frames, 0.25f);
            Audio audio({x});
            runInPackets(chain, audio, 480);
            const double measured =
                rmsDb(audio.planes[0], frames / 2, frames) - rmsDb(x, frames / 2, frames);
            const double expected = bypassed ? 0.0 : 2.0 * shift * halfShiftDb[k];
            EXPECT_NEAR(measured, expected, bypassed ? 0.03 : 0.3)
                << "shift " << shift << ", " << hz[k] << " Hz";
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
    for (const auto& [hz, gainDb, toleranceDb] :
         {std::tuple{2000.0, 12.0, 0.3}, std::tuple{300.0, 0.0, 0.5}}) {
        VoiceFxChain chain;
        setUp(chain, p);
        const int frames = 48000;
        const Signal x = sine(hz, frames, 0.1f);
        Audio audio({x});
        runInPackets(chain, audio, 480);
        EXPECT_NEAR(rmsDb(audio.planes[0], frames / 2, frames) - rmsDb(x), gainDb, toleranceDb)
            << hz << " Hz";
    }
}
