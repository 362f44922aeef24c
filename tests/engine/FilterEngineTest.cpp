// The filter engine as its one owner of the live voice: what reaches the audio
// while a measurement holds the chains, what views are told, and changes made
// while the audio thread runs.
#include "engine/FilterEngine.h"
#include "dsp/AudioMath.h"
#include "dsp/FilterDesign.h"
#include "settings/BuiltInPresets.h"

#include "dsp/DspTestSignals.h"
#include "support/RecordedSpeech.h"
#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace Lumora {
namespace {

constexpr double kRate = 48000.0;

EffectPreset loud() {
    EffectPreset p;
    p.inputGainDb = 12.0f;
    return p;
}

SoundFxPreset octaveUp() {
    SoundFxPreset fx;
    fx.pitch.enabled = true;
    fx.pitch.semitonesA = 12.0f;
    return fx;
}

// One packet of a 440 Hz tone through the engine; returns what came out.
std::vector<float> run(FilterEngine& engine, const std::vector<float>& in) {
    std::vector<float> out = in;
    float* planes[1] = {out.data()};
    engine.processAudio(planes, 1, static_cast<int>(out.size()));
    return out;
}

// What comes out of a stream of the same packet over and over, delayed by
// `delay` frames, once the delay has filled.
std::vector<float> late(const std::vector<float>& packet, int delay) {
    const size_t n = packet.size();
    std::vector<float> out(n);
    for (size_t i = 0; i < n; ++i) {
        out[i] = packet[(i + n - static_cast<size_t>(delay) % n) % n];
    }
    return out;
}

const int kVoiceDelay = VoiceAlignment::delayFramesAt(kRate);

std::vector<float> tone() {
    return TestSignals::sine(440.0, kRate, 480, 0.1f);
}

TEST(FilterEngine, AHoldPassesTheRawVoiceBitExactAndKeepsWhatIsAppliedMeanwhile) {
    FilterEngine engine;
    engine.prepare(kRate);
    engine.applyEffectPreset(loud());
    engine.applySoundFxPreset(octaveUp());
    const std::vector<float> in = tone();
    EXPECT_NE(run(engine, in), in);

    {
        FilterEngine::MeasurementHold hold = engine.holdForMeasurement();
        EXPECT_TRUE(engine.measuring());
        for (int i = 0; i < 10; ++i) {
            run(engine, in); // the voice effects fade out (25 ms), the delay fills
        }
        // The raw voice, as late as the voices' constant delay.
        EXPECT_EQ(run(engine, in), late(in, kVoiceDelay));
        EXPECT_DOUBLE_EQ(engine.latencyMs(), 1000.0 * kVoiceDelay / kRate);
        // A key or an edit while the take records: kept, not heard.
        EffectPreset louder = loud();
        louder.inputGainDb = 18.0f;
        engine.applyEffectPreset(louder);
        engine.setSoundFxActive(false);
        for (int i = 0; i < 3; ++i) {
            run(engine, in); // no voices in use: the delay crossfades away
        }
        EXPECT_EQ(run(engine, in), in);
        EXPECT_EQ(engine.latencyMs(), 0.0);
        EXPECT_FALSE(engine.chain().isActive());
        EXPECT_FLOAT_EQ(engine.effectPreset().inputGainDb, 18.0f);

        // Holds nest: the inner one ending does not end the outer.
        FilterEngine::MeasurementHold inner = engine.holdForMeasurement();
        inner.release();
        EXPECT_TRUE(engine.measuring());
        EXPECT_EQ(run(engine, in), in);
    }
    EXPECT_FALSE(engine.measuring());
    EXPECT_TRUE(engine.chain().isActive());
    EXPECT_FLOAT_EQ(engine.chain().getParameters().inputGainDb, 18.0f);
    EXPECT_FALSE(engine.effects().isActive());
}

TEST(FilterEngine, AMovedHoldEndsOnceAndListenersHearEveryChange) {
    FilterEngine engine;
    engine.prepare(kRate);
    std::vector<unsigned> heard;
    const int id = engine.addListener([&](unsigned changes) { heard.push_back(changes); });
    engine.applyEffectPreset(loud());
    engine.setGains(3.0f, -3.0f);
    engine.applySoundFxPreset(octaveUp());
    engine.setLastPresetName("配信用");
    ASSERT_EQ(heard.size(), 4u);
    EXPECT_EQ(heard[0], FilterEngine::kCleaningChanged);
    EXPECT_EQ(heard[1], FilterEngine::kCleaningChanged);
    EXPECT_EQ(heard[2], FilterEngine::kSoundFxChanged);
    EXPECT_EQ(heard[3], FilterEngine::kAppFieldsChanged);
    EXPECT_FLOAT_EQ(engine.effectPreset().inputGainDb, 3.0f); // gains replace the preset's

    FilterEngine::MeasurementHold first = engine.holdForMeasurement();
    FilterEngine::MeasurementHold moved = std::move(first);
    EXPECT_FALSE(first.holding());
    first.release(); // nothing: it no longer holds
    EXPECT_TRUE(engine.measuring());
    moved = FilterEngine::MeasurementHold();
    EXPECT_FALSE(engine.measuring());
    EXPECT_TRUE(engine.chain().isActive());
    // Its start and its end, once each (the log of the output delay hears them).
    ASSERT_EQ(heard.size(), 6u);
    EXPECT_EQ(heard[4], FilterEngine::kHoldChanged);
    EXPECT_EQ(heard[5], FilterEngine::kHoldChanged);

    engine.removeListener(id);
    engine.setSoundFxActive(false);
    EXPECT_EQ(heard.size(), 6u);
}

// alsa-utils voices one after another, 250 ms apart, their loudest sample
// scaled to `peak`.
std::vector<float> alsaSpeech(std::initializer_list<const char*> names, float peak) {
    std::vector<float> speech;
    for (const char* name : names) {
        const std::vector<float> sound = Testing::alsaSound(name);
        speech.insert(speech.end(), sound.begin(), sound.end());
        speech.insert(speech.end(), sound.empty() ? 0 : 12000, 0.0f);
    }
    const float top = TestSignals::peak(speech, 0, speech.size());
    for (float& v : speech) {
        v *= peak / top;
    }
    return speech;
}

// At a speaking level (peaks near -12 dBFS): what the loudness of a voice and
// its switches are judged on.
std::vector<float> speakingVoices() {
    return alsaSpeech({"Front_Center", "Front_Left", "Front_Right", "Rear_Center", "Rear_Left",
                       "Rear_Right", "Side_Left", "Side_Right"},
                      0.25f);
}

// What leaves the engine for `in` on both channels, interleaved, in 480-frame
// packets.
std::vector<float> stereoThrough(FilterEngine& engine, const std::vector<float>& in) {
    std::vector<float> left = in, right = in;
    for (size_t at = 0; at + 480 <= in.size(); at += 480) {
        float* planes[2] = {left.data() + at, right.data() + at};
        engine.processAudio(planes, 2, 480);
    }
    std::vector<float> frames(left.size() * 2);
    for (size_t i = 0; i < left.size(); ++i) {
        frames[2 * i] = left[i];
        frames[2 * i + 1] = right[i];
    }
    return frames;
}

float outputPeak(FilterEngine& engine, const std::vector<float>& in) {
    const std::vector<float> out = stereoThrough(engine, in);
    return TestSignals::peak(out, 0, out.size());
}

// Integrated loudness (EBU R 128) of what the engine makes of `in`, stereo.
double loudnessThrough(FilterEngine& engine, const std::vector<float>& in) {
    const std::vector<float> frames = stereoThrough(engine, in);
    ebur128_state* meter = ebur128_init(2, 48000, EBUR128_MODE_I);
    ebur128_add_frames_float(meter, frames.data(), frames.size() / 2);
    double lufs = -70.0;
    ebur128_loudness_global(meter, &lufs);
    ebur128_destroy(&meter);
    return lufs;
}

TEST(FilterEngine, TheDiagnosisHearsTheClippingThatTheSafetyLimiterHolds) {
    FilterEngine engine;
    engine.prepare(kRate);
    FilterEngine::MeasurementHold hold = engine.holdForMeasurement();
    std::vector<float> clipping = TestSignals::sine(220.0, kRate, 24000, 1.0f);
    for (float& v : clipping) {
        v = v >= 0.0f ? 1.0f : -1.0f; // a square wave at full scale
    }
    EXPECT_LE(outputPeak(engine, clipping), dbToGain(FilterEngine::kSafetyCeilingDb));
    EXPECT_TRUE(engine.analyser()->snapshot().clipped);
    // Once the limiter has let go, a voice below the ceiling is not touched.
    outputPeak(engine, std::vector<float>(48000, 0.0f));
    const std::vector<float> quiet = tone();
    EXPECT_EQ(run(engine, quiet), quiet);
}

// Every built-in voice and the dry one. The hottest voice a microphone gives
// (recorded speech at full scale) into a cleaning chain with 12 dB of input
// gain leaves nothing above -1 dBFS. And switching voices live must not make
// the streamer louder or quieter: at a speaking level every voice is within
// 1.5 dB of the dry voice.
TEST(FilterEngine, EveryBuiltInVoiceStaysUnderTheCeilingAndAsLoudAsTheDryVoice) {
    const std::vector<float> hotSpeech = alsaSpeech({"Front_Center", "Rear_Left"}, 1.0f);
    const std::vector<float> speech = speakingVoices();
    ASSERT_GT(hotSpeech.size(), 48000u) << "recorded speech from alsa-utils is needed";
    ASSERT_GT(speech.size(), 5u * 48000u) << "recorded speech from alsa-utils is needed";
    const float ceiling = dbToGain(FilterEngine::kSafetyCeilingDb);
    EffectPreset hot; // the cleaning chain on, 12 dB of input gain
    hot.inputGainDb = 12.0f;
    FilterEngine dry;
    dry.prepare(kRate);
    const double dryLufs = loudnessThrough(dry, speech);
    std::vector<SavedSoundFxPreset> voices = builtInSoundFxPresets();
    voices.push_back(SavedSoundFxPreset{}); // and the dry voice
    for (const SavedSoundFxPreset& voice : voices) {
        FilterEngine hotEngine;
        hotEngine.prepare(kRate);
        hotEngine.applyEffectPreset(hot);
        hotEngine.applySoundFxPreset(voice.preset);
        hotEngine.setSoundFxActive(true);
        EXPECT_LE(outputPeak(hotEngine, hotSpeech), ceiling) << voice.name;

        FilterEngine engine;
        engine.prepare(kRate);
        engine.applySoundFxPreset(voice.preset);
        engine.setSoundFxActive(true);
        EXPECT_NEAR(loudnessThrough(engine, speech), dryLufs, 1.5) << voice.name;
    }
}

// Switching voices on air, as the arrow keys do: dry, each built-in voice,
// dry again, then from voice to voice, 0.64 s apart, under a steady 233 Hz
// tone, at 480 and 1024-frame packets. Within 150 ms of a switch no step
// between samples is larger than 1.5 times the largest step of the steady
// parts and no peak is more than 1 dB over their highest; the sound never
// stops for more than 2 ms (a pitch voice fades in once its shifters flow,
// instead of leaving their fill silent); and the delay never moves.
TEST(FilterEngine, SwitchingVoicesMakesNoClickNoSpikeAndNoGap) {
    std::vector<SoundFxPreset> voices{SoundFxPreset{}};
    const std::vector<SavedSoundFxPreset> builtIn = builtInSoundFxPresets();
    for (const SavedSoundFxPreset& voice : builtIn) {
        voices.push_back(voice.preset);
        voices.push_back(SoundFxPreset{});
    }
    // And from one voice straight to another.
    for (const SavedSoundFxPreset& voice : builtIn) {
        voices.push_back(voice.preset);
    }
    voices.push_back(builtIn[0].preset);
    const size_t segment = 30720; // whole packets of either length
    for (const int packet : {480, 1024}) {
        FilterEngine engine;
        engine.prepare(kRate);
        engine.setSoundFxActive(true);
        std::vector<float> out =
            TestSignals::sine(233.0, kRate, static_cast<int>(segment * voices.size()), 0.125f);
        size_t delay = 0;
        for (size_t v = 0; v < voices.size(); ++v) {
            engine.applySoundFxPreset(voices[v]);
            for (size_t at = 0; at < segment; at += static_cast<size_t>(packet)) {
                float* planes[1] = {out.data() + v * segment + at};
                const auto d = static_cast<size_t>(engine.processAudio(planes, 1, packet));
                ASSERT_TRUE(delay == 0 || d == delay) << "the delay moved with the voice";
                delay = d;
            }
        }
        // Every voice on one timeline, the effects' constant delay late.
        ASSERT_EQ(delay, static_cast<size_t>(kVoiceDelay));
        float steady = 0.0f, top = 0.0f;
        for (size_t v = 0; v < voices.size(); ++v) {
            const size_t from = v * segment + 9600 + delay;
            const size_t to = std::min((v + 1) * segment + delay, out.size());
            steady = std::max(steady, TestSignals::largestStep(out, from, to));
            top = std::max(top, TestSignals::peak(out, from, to));
        }
        for (size_t v = 1; v < voices.size(); ++v) {
            const size_t at = v * segment + delay;
            EXPECT_LE(TestSignals::largestStep(out, at - 1, at + 7200), 1.5f * steady)
                << "switch " << v << ", packets of " << packet;
            EXPECT_LE(TestSignals::toDb(TestSignals::peak(out, at, at + 7200) / top), 1.0)
                << "switch " << v << ", packets of " << packet;
        }
        EXPECT_LE(TestSignals::longestSilence(out, delay, out.size()), 96)
            << "samples of silence, packets of " << packet;
    }
}

// The sound page's bypass switch pressed on air, a chain with 9 dB of gain:
// the cleaned and the plain voice crossfade instead of stepping.
TEST(FilterEngine, BypassingTheCleaningChainMakesNoClick) {
    FilterEngine engine;
    engine.prepare(kRate);
    EffectPreset cleaned;
    cleaned.inputGainDb = 9.0f;
    const int segment = 9600, switches = 8;
    std::vector<float> out = TestSignals::sine(233.0, kRate, segment * switches, 0.1f);
    for (int k = 0; k < switches; ++k) {
        cleaned.bypass = k % 2 == 1;
        engine.applyEffectPreset(cleaned);
        for (int at = 0; at < segment; at += 480) {
            float* planes[1] = {out.data() + k * segment + at};
            engine.processAudio(planes, 1, 480);
        }
    }
    float steady = 0.0f, switching = 0.0f;
    for (size_t i = 1; i < out.size(); ++i) {
        const float step = std::fabs(out[i] - out[i - 1]);
        float& into = (i % segment) < 2400 ? switching : steady;
        into = std::max(into, step);
    }
    EXPECT_LE(switching, 1.5f * steady);
}

// The same voice switches on recorded speech, at 480 and 1024-frame packets,
// against what either voice makes of the same words without a switch (and the
// new voice before its pitch has faded in: the other effects on the dry voice,
// not boosted): within 30 ms of each switch no 5 ms of the high band is more
// than 6 dB above it, and within 150 ms no step is larger than 1.5 times its
// largest and no peak more than 1 dB over its highest.
TEST(FilterEngine, SwitchingVoicesOnSpeechMakesNoClickNoBurstAndNoSpike) {
    const std::vector<float> speech = speakingVoices();
    ASSERT_GT(speech.size(), 5u * 48000u) << "recorded speech from alsa-utils is needed";
    std::vector<SoundFxPreset> voices{SoundFxPreset{}};
    for (const SavedSoundFxPreset& voice : builtInSoundFxPresets()) {
        voices.push_back(voice.preset);
    }
    voices.push_back(SoundFxPreset{});
    for (const size_t packet : {480u, 1024u}) {
        // Each switch where a word is loudest, so that it cannot hide in a pause.
        const size_t segment = speech.size() / voices.size();
        std::vector<size_t> switchAt(voices.size(), 0);
        for (size_t k = 1; k < voices.size(); ++k) {
            size_t loudest = k * segment;
            for (size_t i = k * segment - segment / 2; i < k * segment + segment / 2; ++i) {
                loudest = std::fabs(speech[i]) > std::fabs(speech[loudest]) ? i : loudest;
            }
            switchAt[k] = loudest / packet * packet;
        }
        auto render = [&](const std::function<const SoundFxPreset&(size_t)>& voiceAt) {
            FilterEngine engine;
            engine.prepare(kRate);
            engine.setSoundFxActive(true);
            std::vector<float> out = speech;
            for (size_t at = 0; at + packet <= out.size(); at += packet) {
                engine.applySoundFxPreset(voiceAt(at));
                float* planes[1] = {out.data() + at};
                engine.processAudio(planes, 1, static_cast<int>(packet));
            }
            return out;
        };
        const auto switched = render([&](size_t at) -> const SoundFxPreset& {
            size_t v = 0;
            while (v + 1 < voices.size() && switchAt[v + 1] <= at) {
                ++v;
            }
            return voices[v];
        });
        std::vector<std::vector<float>> steady, unpitched;
        for (const SoundFxPreset& voice : voices) {
            steady.push_back(render([&voice](size_t) -> const SoundFxPreset& { return voice; }));
            SoundFxPreset early = voice;
            early.pitch.enabled = false;
            early.outputGainDb = std::min(early.outputGainDb, 0.0f);
            unpitched.push_back(render([&early](size_t) -> const SoundFxPreset& { return early; }));
        }
        using TestSignals::highBandWindows;
        using TestSignals::largestStep;
        using TestSignals::peak;
        const auto band = highBandWindows(switched, 0, switched.size());
        for (size_t k = 1; k < voices.size(); ++k) {
            const auto before = highBandWindows(steady[k - 1], 0, switched.size());
            const auto after = highBandWindows(steady[k], 0, switched.size());
            const auto early = highBandWindows(unpitched[k], 0, switched.size());
            const size_t first = (switchAt[k] + kVoiceDelay) / 240, last = first + 6; // 30 ms
            double burst = 0.0, reference = 1e-12;
            for (size_t w = first; w <= last && w < band.size(); ++w) {
                burst = std::max(burst, band[w]);
                reference = std::max({reference, before[w], after[w], early[w]});
            }
            EXPECT_LE(10.0 * std::log10(burst / reference), 6.0)
                << "switch " << k << ", packets of " << packet;
            const size_t from = switchAt[k] + kVoiceDelay, to = from + 7200; // 150 ms
            const float step =
                std::max({largestStep(steady[k - 1], from, to), largestStep(steady[k], from, to),
                          largestStep(unpitched[k], from, to)});
            const float top = std::max({peak(steady[k - 1], from, to), peak(steady[k], from, to),
                                        peak(unpitched[k], from, to)});
            EXPECT_LE(largestStep(switched, from, to), 1.5f * step)
                << "switch " << k << ", packets of " << packet;
            EXPECT_LE(TestSignals::toDb(peak(switched, from, to) / top), 1.0)
                << "switch " << k << ", packets of " << packet;
        }
    }
}

} // namespace
} // namespace Lumora
