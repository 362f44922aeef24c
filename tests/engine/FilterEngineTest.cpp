// The filter engine as its one owner of the live voice: what reaches the audio
// while a measurement holds the chains, what views are told, and changes made
// while the audio thread runs.
#include "engine/FilterEngine.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>
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

std::vector<float> tone() {
    std::vector<float> x(480);
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = 0.1f * static_cast<float>(std::sin(2.0 * 3.14159265358979 * 440.0 * i / kRate));
    }
    return x;
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
        EXPECT_EQ(run(engine, in), in);
        // A key or an edit while the take records: kept, not heard.
        EffectPreset louder = loud();
        louder.inputGainDb = 18.0f;
        engine.applyEffectPreset(louder);
        engine.setSoundFxActive(false);
        EXPECT_EQ(run(engine, in), in);
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

    engine.removeListener(id);
    engine.setSoundFxActive(false);
    EXPECT_EQ(heard.size(), 4u);
}

// The interface thread changes the voice while the audio thread runs: every
// packet must be heard with one whole preset, never half of the last one and
// half of the next. Both voices give the input back (+6 dB in and -6 dB out, or
// the reverse); a torn one is 12 dB off.
TEST(FilterEngine, ChangesWhileAudioFlowsAreHeardWhole) {
    FilterEngine engine;
    engine.prepare(kRate);
    EffectPreset up;
    up.inputGainDb = 6.0f;
    up.outputGainDb = -6.0f;
    EffectPreset down;
    down.inputGainDb = -6.0f;
    down.outputGainDb = 6.0f;
    SoundFxPreset silentEcho; // runs the effects chain without changing the sound
    silentEcho.delay.enabled = true;
    silentEcho.delay.wetMix = 0.0f;
    engine.applyEffectPreset(up);
    engine.applySoundFxPreset(silentEcho);

    std::atomic<bool> writing{true};
    int packets = 0, torn = 0;
    std::thread audio([&] {
        const std::vector<float> in = tone();
        while (writing.load() || packets < 50) {
            const std::vector<float> out = run(engine, in);
            for (size_t i = 0; i < in.size(); ++i) {
                if (!(std::fabs(out[i] - in[i]) <= 1e-5f)) {
                    ++torn;
                    break;
                }
            }
            ++packets;
        }
    });
    for (int i = 0; i < 20000; ++i) {
        engine.applyEffectPreset(i % 2 ? up : down);
        silentEcho.delay.timeMs = i % 2 ? 80.0f : 160.0f;
        engine.applySoundFxPreset(silentEcho);
    }
    writing.store(false);
    audio.join();
    EXPECT_EQ(torn, 0) << "of " << packets << " packets";
}

} // namespace
} // namespace Lumora
