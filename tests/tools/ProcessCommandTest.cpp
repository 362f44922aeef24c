// `lumora-cli process`: a WAV file through both chains with presets from files.
#include "WavFile.h"
#include "support/CommandRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace fs = std::filesystem;
using namespace Lumora;

namespace {

class ProcessCommand : public ::testing::Test {
protected:
    void SetUp() override {
        WavData in;
        in.sampleRate = 44100;
        in.planes.assign(2, std::vector<float>(44100));
        for (int i = 0; i < 44100; ++i) {
            in.planes[0][i] = 0.9f * std::sin(2.0f * 3.14159265f * 440.0f * i / 44100.0f);
            in.planes[1][i] = 0.5f * in.planes[0][i];
        }
        std::string error;
        ASSERT_TRUE(writeWav(path("in.wav"), in, error)) << error;
    }

    std::string path(const std::string& name) const { return dir_.file(name); }
    void write(const std::string& name, const std::string& text) const {
        Testing::TempFolder::write(path(name), text);
    }
    Testing::CommandRun run(const std::string& args) const {
        return Testing::runCommand(Testing::lumoraCli("process " + args));
    }

    Testing::TempFolder dir_;
};

} // namespace

// The preset from the start, and from half a second on another one, as the
// dialog applies it: the gain glides across the packet after the change.
TEST_F(ProcessCommand, AppliesThePresetsAtTheirTimesAndKeepsRateAndChannels) {
    write("quieter.json", R"({"name": "quieter", "inputGainDb": -6})");
    write("quietest.json", R"({"name": "quietest", "inputGainDb": -18})");
    const Testing::CommandRun r =
        run("--preset " + path("quieter.json") + " --at 0.5 --preset " + path("quietest.json") +
            " " + path("in.wav") + " " + path("out.wav"));
    ASSERT_EQ(r.code, 0) << r.err;
    WavData in, out;
    std::string error;
    ASSERT_TRUE(readWav(path("in.wav"), in, error));
    ASSERT_TRUE(readWav(path("out.wav"), out, error));
    EXPECT_EQ(out.sampleRate, 44100);
    ASSERT_EQ(out.channels(), 2);
    ASSERT_EQ(out.frames(), in.frames());
    const float first = std::pow(10.0f, -6.0f / 20.0f);
    const float second = std::pow(10.0f, -18.0f / 20.0f);
    const int change = 22050; // 0.5 s; applied at the next packet (at 22080)
    for (int c = 0; c < 2; ++c) {
        // After the first packet, across which the gain glides in from unity.
        for (int i = 480; i < change; i += 101) {
            ASSERT_NEAR(out.planes[c][i], in.planes[c][i] * first, 1e-5f) << i;
        }
        for (int i = change + 1024; i < in.frames(); i += 101) {
            ASSERT_NEAR(out.planes[c][i], in.planes[c][i] * second, 1e-5f) << i;
        }
    }
    EXPECT_NE(run("--preset " + path("quieter.json") + " --at 0.5 --preset " +
                  path("quietest.json") + " --at 0.2 --fx " + path("quieter.json") + " " +
                  path("in.wav") + " " + path("out2.wav"))
                  .code,
              0)
        << "--at out of time order";
}

TEST_F(ProcessCommand, TakesTheRecommendedPresetOfADiagnosisAndASoundEffect) {
    write("diag.json", R"({"overall": 0, "recommended": {"limiter": {"enabled": true,
                         "ceilingDb": -6, "releaseMs": 50}}})");
    write("fx.json", R"({"soundFxPresets": [{"name": "echo", "delay": {"enabled": true,
                       "timeMs": 100, "feedback": 0, "wetMix": 1}}]})");
    const Testing::CommandRun r = run("--preset " + path("diag.json") + " --fx " + path("fx.json") +
                                      " --block 1024 " + path("in.wav") + " " + path("out.wav"));
    ASSERT_EQ(r.code, 0) << r.err;
    WavData out;
    std::string error;
    ASSERT_TRUE(readWav(path("out.wav"), out, error));
    // Fully wet delay of 100 ms: silence first, then the limited tone.
    for (int i = 0; i < 4410; ++i) {
        ASSERT_EQ(out.planes[0][i], 0.0f) << i;
    }
    float peak = 0.0f;
    for (int i = 22050; i < out.frames(); ++i) {
        peak = std::max(peak, std::fabs(out.planes[0][i]));
    }
    EXPECT_NEAR(peak, std::pow(10.0f, -6.0f / 20.0f), 0.01f);
}

TEST_F(ProcessCommand, ErrorsAreOneLineAndWriteNothing) {
    write("bad.json", "[1, 2");
    write("p.json", "{}");
    const std::string in = path("in.wav"), out = path("out.wav");
    for (const std::string& args :
         {"--preset " + path("bad.json") + " " + in + " " + out,
          "--preset " + path("missing.json") + " " + in + " " + out,
          "--preset " + path("p.json") + " " + path("missing.wav") + " " + out,
          "--preset " + path("p.json") + " --block 0 " + in + " " + out,
          "--preset " + path("p.json") + " " + in, "--bogus " + in + " " + out}) {
        const Testing::CommandRun r = run(args);
        EXPECT_NE(r.code, 0) << args;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << args << ": " << r.err;
    }
    EXPECT_FALSE(fs::exists(out));
}
