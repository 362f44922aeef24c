// Neural noise suppression through the stand-in library: framing delay, mix,
// the attenuation limit, and every way of being unavailable.
#include "DspTestSignals.h"
#include "dsp/VoiceChain.h"
#include "dsp/fx/FxTestSupport.h"
#include "platform/Platform.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>

using namespace Lumora;
using namespace Lumora::TestSignals;

namespace {

constexpr int kFrame = NoiseSuppressor::kFrameLength;

// The stand-in's own counters, read through a second handle on the same library.
class StandIn {
public:
    StandIn() { library_.open(LUMORA_DEEPFILTER_STANDIN); }
    int liveStates() const { return call("standin_live_states"); }
    int limitCalls() const { return call("standin_limit_calls"); }

private:
    int call(const char* name) const {
        auto fn = reinterpret_cast<int (*)()>(library_.symbol(name));
        return fn ? fn() : -1;
    }
    Platform::DynamicLibrary library_;
};

std::string modelFile(const std::string& name, const std::string& content) {
    const std::string path = ::testing::TempDir() + "lumora-standin-" + name;
    std::ofstream(path) << content;
    return path;
}

NoiseModelLocation standInLocation(const std::string& modelPath) {
    return {{LUMORA_DEEPFILTER_STANDIN}, modelPath};
}

// A chain with only noise suppression on.
std::unique_ptr<VoiceChain> noiseChain(const NoiseModelLocation& where, float mix, float limitDb,
                                       double rate = 48000.0) {
    auto chain = std::make_unique<VoiceChain>();
    chain->setNoiseModelLocation(where);
    chain->prepare(rate, 1024);
    EffectPreset p;
    p.active = true;
    p.noise.enabled = true;
    p.noise.mix = mix;
    p.noise.attenLimitDb = limitDb;
    chain->setParameters(p);
    return chain;
}

// Runs x through the chain in packets, on `channels` channels alike (one or
// two), and returns the first; both must come out the same.
std::vector<float> runMono(VoiceChain& chain, const std::vector<float>& x, int packet,
                           int channels = 1) {
    FxTest::Audio audio(std::vector<FxTest::Signal>(static_cast<size_t>(channels), x));
    FxTest::runInPackets(chain, audio, packet);
    if (channels > 1) {
        EXPECT_EQ(audio.planes[1], audio.planes[0]) << "the channels differ";
    }
    return audio.planes[0];
}

void expectDelayedAndScaled(const std::vector<float>& out, const std::vector<float>& in, int delay,
                            float scale) {
    for (int i = 0; i < delay; ++i) {
        ASSERT_EQ(out[i], 0.0f) << "sample " << i;
    }
    for (size_t i = delay; i < out.size(); ++i) {
        ASSERT_NEAR(out[i], in[i - delay] * scale, 1e-6f) << "sample " << i;
    }
}

const float kHalf = std::pow(10.0f, -6.0f / 20.0f); // the stand-in's scale at a 6 dB limit

} // namespace

// The stage's own framing delays by exactly one frame, the model's delay comes
// on top, and the dry frame blended in is the one before the frame just
// processed, so with a model that lags by a frame the dry path lags exactly as
// much: any blend is then only a scale of the delayed input. Packets of 1024
// and 480 carry part of a frame over; a lost or repeated sample shows.
TEST(NoiseSuppressorMix, WetAndDryLineUpAtEveryMix) {
    const struct {
        const char* file;
        const char* model;
        float mix;
        int packet;
        int delay;
        float scale;
    } cases[] = {
        {"d0", "delay=0", 1.0f, 1024, kFrame, kHalf},
        {"d1", "delay=1", 1.0f, 1024, 2 * kFrame, kHalf},
        {"d1", "delay=1", 0.0f, 1024, 2 * kFrame, 1.0f},
        {"d1", "delay=1", 0.25f, 480, 2 * kFrame, 0.75f + 0.25f * kHalf},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.model) + ", mix " + std::to_string(c.mix));
        auto chain = noiseChain(standInLocation(modelFile(c.file, c.model)), c.mix, 6.0f);
        ASSERT_TRUE(chain->noiseSuppressionAvailable());
        const std::vector<float> in = noise(4800, 0.5f);
        expectDelayedAndScaled(runMono(*chain, in, c.packet, 2), in, c.delay, c.scale);
    }
}

TEST(NoiseSuppressorLimit, ChangeTakesEffectAtTheNextPacket) {
    StandIn standIn;
    auto chain = noiseChain(standInLocation(modelFile("d0", "delay=0")), 1.0f, 20.0f);
    const int calls = standIn.limitCalls();
    std::vector<float> x(kFrame, 0.5f);
    runMono(*chain, x, kFrame); // frame 0 processed at -20 dB, out next packet
    EffectPreset p = chain->getParameters();
    p.noise.attenLimitDb = 6.0f;
    chain->setParameters(p);
    const auto second = runMono(*chain, x, kFrame); // frame 0 out; frame 1 at -6 dB
    const auto third = runMono(*chain, x, kFrame);
    EXPECT_NEAR(second[0], 0.5f * 0.1f, 1e-6f);
    EXPECT_NEAR(third[0], 0.5f * kHalf, 1e-6f);
    EXPECT_EQ(standIn.limitCalls() - calls, 3); // once per packet while enabled
}

TEST(NoiseSuppressorAvailability, EachMissingPiecePassesAudioThroughUndelayed) {
    const std::string good = modelFile("d1", "delay=1");
    struct Case {
        const char* name;
        NoiseModelLocation where;
        double rate;
        NoiseSuppressionStatus status;
    };
    const Case cases[] = {
        {"no library",
         {{"/nonexistent/libdeepfilter.so", "libnotthere-lumora.so"}, good},
         48000.0,
         NoiseSuppressionStatus::LibraryMissing},
        {"no model", standInLocation("/nonexistent/model.tar.gz"), 48000.0,
         NoiseSuppressionStatus::ModelMissing},
        {"empty model path", standInLocation(""), 48000.0, NoiseSuppressionStatus::ModelMissing},
        {"44.1 kHz", standInLocation(good), 44100.0, NoiseSuppressionStatus::UnsupportedRate},
        {"model refused", standInLocation(modelFile("reject", "reject")), 48000.0,
         NoiseSuppressionStatus::ModelRejected},
        {"other frame length", standInLocation(modelFile("f512", "frame=512")), 48000.0,
         NoiseSuppressionStatus::ModelRejected},
    };
    StandIn standIn;
    const int live = standIn.liveStates();
    for (const Case& c : cases) {
        auto chain = noiseChain(c.where, 1.0f, 40.0f, c.rate);
        EXPECT_EQ(chain->noiseSuppressionStatus(), c.status) << c.name;
        EXPECT_FALSE(chain->noiseSuppressionAvailable()) << c.name;
        const std::vector<float> in = noise(2048, 0.5f);
        EXPECT_EQ(runMono(*chain, in, 1024), in) << c.name;
        EXPECT_EQ(standIn.liveStates(), live) << c.name << ": a model instance was left behind";
    }
}

TEST(NoiseSuppressorAvailability, NotPreparedUntilPrepareAndStandardLayoutIsFound) {
    VoiceChain chain;
    EXPECT_EQ(chain.noiseSuppressionStatus(), NoiseSuppressionStatus::NotPrepared);
    // The module's layout: the library beside the module, the model in data/models.
    std::string libraryPath = LUMORA_DEEPFILTER_STANDIN;
    const std::string folder = libraryPath.substr(0, libraryPath.find_last_of("/\\"));
    const auto where =
        NoiseModelLocation::standard(folder, std::string(LUMORA_TEST_DATA_DIR) + "/noise-model");
    ASSERT_FALSE(where.libraryCandidates.empty());
    EXPECT_EQ(where.libraryCandidates.front(), libraryPath);
    chain.setNoiseModelLocation(where);
    chain.prepare(48000.0, 480);
    EXPECT_EQ(chain.noiseSuppressionStatus(), NoiseSuppressionStatus::Available);
}

TEST(NoiseSuppressorLifetime, ModelInstancesAreFreedOnPrepareAndDestruction) {
    StandIn standIn;
    const int live = standIn.liveStates();
    {
        auto chain = noiseChain(standInLocation(modelFile("d1", "delay=1")), 1.0f, 6.0f);
        EXPECT_EQ(standIn.liveStates(), live + 2); // one per channel
        chain->prepare(48000.0, 480);
        EXPECT_EQ(standIn.liveStates(), live + 2);
        chain->prepare(44100.0, 480);
        EXPECT_EQ(standIn.liveStates(), live);
        chain->prepare(48000.0, 480);
    }
    EXPECT_EQ(standIn.liveStates(), live);
}

TEST(NoiseSuppressorRobustness, NonFiniteSamplesEnterTheModelAsSilence) {
    auto chain = noiseChain(standInLocation(modelFile("d0", "delay=0")), 0.5f, 6.0f);
    std::vector<float> x = noise(1920, 0.5f);
    x[10] = std::numeric_limits<float>::quiet_NaN();
    x[500] = -std::numeric_limits<float>::infinity();
    EXPECT_TRUE(allFinite(runMono(*chain, x, 480)));
}
