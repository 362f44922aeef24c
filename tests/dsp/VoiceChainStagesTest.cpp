// The stages inside the chain: order, meters, the spectral cache, and that no
// parameter or sample can leave the chain producing non-finite output.
#include "DspTestSignals.h"
#include "dsp/VoiceChain.h"
#include "dsp/fx/FxTestSupport.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

using FxTest::Audio;

// Two channels of different white noise.
Audio stereoNoise(int n, unsigned seed = 1, float amplitude = 0.3f) {
    return Audio({noise(n, amplitude, seed), noise(n, amplitude, seed + 1)});
}

bool allFinite(const Audio& audio) {
    return TestSignals::allFinite(audio.planes[0]) && TestSignals::allFinite(audio.planes[1]);
}

// Every stage on except neural suppression (no library here), with a lively
// equaliser.
EffectPreset everyStage() {
    EffectPreset p;
    p.active = true;
    p.spectral.enabled = true;
    p.spectral.profileDb.fill(-70.0f);
    p.gate.enabled = true;
    p.eq.enabled = true;
    p.eq.lowCutEnabled = true;
    p.eq.highShelfEnabled = true;
    p.eq.highShelfGainDb = 3.0f;
    p.eq.highCutEnabled = true;
    for (int b = 0; b < kNotchBandCount; ++b) {
        p.eq.notchBands[b] = {true, 200.0f * (b + 1), 2.0f - b, 2.0f};
    }
    p.comp.enabled = true;
    p.comp.kneeDb = 6.0f;
    p.limiter.enabled = true;
    return p;
}

std::unique_ptr<VoiceChain> chainWith(const EffectPreset& p) {
    auto chain = std::make_unique<VoiceChain>();
    chain->prepare(48000.0, 1024);
    chain->setParameters(p);
    return chain;
}

} // namespace

TEST(VoiceChainStages, MetersOfTheDynamicsStagesAreZeroWhenOff) {
    EffectPreset p = everyStage();
    auto chain = chainWith(p);
    for (int k = 0; k < 4; ++k) { // past the spectral stage's delay
        Audio loud = stereoNoise(1024, 3 + k, 0.9f);
        chain->process(loud.data(), 2, 1024);
    }
    EXPECT_GT(chain->compressorDetectorDb(), -20.0f);
    EXPECT_GT(chain->compressorGainReductionDb(), 0.0f);
    p.comp.enabled = false;
    p.limiter.enabled = false;
    chain->setParameters(p);
    Audio again = stereoNoise(1024, 5, 0.9f);
    chain->process(again.data(), 2, 1024);
    EXPECT_EQ(chain->compressorDetectorDb(), -96.0f);
    EXPECT_EQ(chain->compressorGainReductionDb(), 0.0f);
    EXPECT_EQ(chain->limiterGainReductionDb(), 0.0f);
}

TEST(VoiceChainStages, LimiterMeterReadsThroughTheChain) {
    EffectPreset p;
    p.active = true;
    p.limiter.enabled = true;
    p.limiter.ceilingDb = -6.0f;
    auto chain = chainWith(p);
    std::vector<float> x(480, 0.0f);
    x[479] = 1.0f; // 6 dB over, on the packet's last sample (the meter reads its end)
    float* planes[1] = {x.data()};
    chain->process(planes, 1, 480);
    EXPECT_NEAR(chain->limiterGainReductionDb(), 6.0f, 1e-3f);
    EXPECT_NEAR(x[479], std::pow(10.0f, -6.0f / 20.0f), 1e-5f);
}

TEST(VoiceChainStages, SpectralSettingsTakeEffectOnBothChannelsAtTheNextPacket) {
    EffectPreset p;
    p.active = true;
    p.spectral.enabled = true;
    p.spectral.amount = 0.0f;
    p.spectral.profileDb.fill(-10.0f); // loud: would suppress everything
    auto chain = chainWith(p);
    const int n = 4096;
    Audio first = stereoNoise(n);
    const Audio input = first;
    chain->process(first.data(), 2, n);
    for (int c = 0; c < 2; ++c) {
        for (int i = 1024; i < n; ++i) { // amount 0: delay only
            ASSERT_NEAR(first.planes[c][i], input.planes[c][i - 1024], 2e-6f) << "channel " << c;
        }
    }
    // The profile now describes the noise itself: white noise of amplitude 0.3
    // puts 0.03·512 into each bin's power, -42.3 dB on the profile's scale.
    p.spectral.profileDb.fill(-42.3f);
    p.spectral.amount = 1.0f;
    chain->setParameters(p);
    Audio second = stereoNoise(8 * n, 9);
    chain->process(second.data(), 2, 8 * n);
    const double inDb = toDb(0.3 / std::sqrt(3.0));
    for (int c = 0; c < 2; ++c) {
        EXPECT_LT(FxTest::rmsDb(second.planes[c], 4 * n, 8 * n) - inDb, -12.0) << "channel " << c;
    }
}

TEST(VoiceChainRobustness, NonsenseParametersNeverGiveNonFiniteOutput) {
    EffectPreset p = everyStage();
    p.eq.notchBands[0].q = 0.0f;
    p.eq.notchBands[1].centerHz = kNaN;
    p.eq.notchBands[2].gainDb = kInf;
    p.eq.highCutQ = -1.0f;
    p.eq.lowCutHz = 1e9f;
    p.eq.highShelfHz = -5.0f;
    p.gate.attackMs = -5.0f;
    p.gate.releaseMs = kNaN;
    p.gate.rangeDb = kNaN;
    p.gate.holdMs = -1.0f;
    p.comp.ratio = 0.0f;
    p.comp.attackMs = -10.0f;
    p.comp.thresholdDb = kNaN;
    p.comp.kneeDb = kNaN;
    p.comp.makeupGainDb = kInf;
    p.limiter.releaseMs = kNaN;
    p.limiter.ceilingDb = kNaN;
    p.spectral.amount = kNaN;
    p.spectral.profileDb[3] = kNaN;
    p.spectral.profileDb[4] = kInf;
    auto chain = chainWith(p);
    for (int k = 0; k < 20; ++k) {
        Audio packet = stereoNoise(480, 10 + k, 0.8f);
        chain->process(packet.data(), 2, 480);
        ASSERT_TRUE(allFinite(packet)) << "packet " << k;
    }
    EXPECT_TRUE(std::isfinite(chain->outputLevelDb()));
    EXPECT_TRUE(std::isfinite(chain->compressorGainReductionDb()));
    EXPECT_TRUE(std::isfinite(chain->limiterGainReductionDb()));
}

// A broken source upstream: non-finite samples, and finite ones whose square
// overflows a float in every level detector of the chain.
TEST(VoiceChainRobustness, BadSamplesSpoilAtMostTheirOwnPacket) {
    for (float bad : {kNaN, kInf, -kInf, 3e38f, -3e38f}) {
        auto chain = chainWith(everyStage());
        for (int k = 0; k < 5; ++k) {
            Audio packet = stereoNoise(1024, 20 + k);
            chain->process(packet.data(), 2, 1024);
        }
        Audio spoilt = stereoNoise(1024, 30);
        spoilt.planes[0][100] = bad;
        spoilt.planes[1][900] = bad;
        chain->process(spoilt.data(), 2, 1024);
        for (int k = 0; k < 10; ++k) {
            Audio packet = stereoNoise(1024, 40 + k);
            chain->process(packet.data(), 2, 1024);
            ASSERT_TRUE(allFinite(packet)) << "value " << bad << ", packet " << k << " after";
        }
        EXPECT_TRUE(std::isfinite(chain->compressorDetectorDb()));
    }
}

TEST(VoiceChainRobustness, ProcessNeverAllocatesAfterPrepare) {
    if (!Testing::allocationCountingSupported()) {
        GTEST_SKIP() << "allocation counting needs glibc's allocator without sanitizers";
    }
    ASSERT_EQ(Testing::probeAllocations(), 2) << "the counter misses this program's allocations";
    const std::vector<float> voice = FxTest::speech(8.0);
    ASSERT_FALSE(voice.empty()) << "no recorded speech";
    VoiceChain chain;
    chain.setNoiseModelLocation({{LUMORA_DEEPFILTER_STANDIN},
                                 LUMORA_TEST_DATA_DIR
                                 "/noise-model/models/DeepFilterNet3_onnx.tar.gz"});
    chain.prepare(48000.0, 1024);
    ASSERT_TRUE(chain.noiseSuppressionAvailable());
    EffectPreset p = everyStage();
    p.noise.enabled = true;
    std::vector<float> left = voice, right = voice;
    // The host's packet sizes, a tiny one and one longer than the switch's dry
    // copy; the settings move every few packets (new coefficients, a new noise
    // table) and the chain is switched off and on again (the crossfade).
    const int sizes[] = {480, 1024, 441, 1, 5000, 960};
    long allocations = 0;
    size_t position = 0;
    for (int k = 0; k < 400; ++k) {
        const int n = sizes[k % 6];
        if (position + static_cast<size_t>(n) > voice.size()) {
            position = 0;
        }
        if (k % 10 == 0) {
            const int j = k / 10;
            p.bypass = j % 7 == 6;
            p.spectral.amount = 0.5f + 0.05f * static_cast<float>(j % 10);
            p.spectral.profileDb.fill(-75.0f + static_cast<float>(j % 20));
            p.noise.mix = static_cast<float>(j % 3) / 2.0f;
            p.gate.thresholdDb = -50.0f + static_cast<float>(j % 30);
            p.eq.notchBands[j % kNotchBandCount].gainDb = static_cast<float>(j % 13) - 6.0f;
            p.comp.thresholdDb = -30.0f + static_cast<float>(j % 20);
            p.limiter.ceilingDb = -6.0f + static_cast<float>(j % 5);
            chain.setParameters(p); // the interface thread's copy may allocate
        }
        float* planes[2] = {left.data() + position, right.data() + position};
        allocations += Testing::allocationsIn([&] { chain.process(planes, 2, n); });
        position += static_cast<size_t>(n);
    }
    EXPECT_EQ(allocations, 0);
    EXPECT_TRUE(allFinite(left));
}
