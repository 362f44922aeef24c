// `lumora-cli process`: a WAV file through both chains with presets from files.
#include "WavFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;
using namespace Lumora;

namespace {

const std::string kCli = std::string(LUMORA_BINARY_DIR) + "/tools/lumora-cli";

class ProcessCommand : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/lumora-process-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        dir_ = pattern;
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
    void TearDown() override { fs::remove_all(dir_); }

    std::string path(const std::string& name) const { return dir_ + "/" + name; }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(path(name)) << text;
    }
    int run(const std::string& args) const {
        return std::system((kCli + " process " + args + " 2>" + path("err.txt")).c_str());
    }
    std::string errorText() const {
        std::ifstream f(path("err.txt"));
        std::stringstream text;
        text << f.rdbuf();
        return text.str();
    }

    std::string dir_;
};

} // namespace

// The preset from the start, and from half a second on another one, as the
// dialog applies it: the gain glides across the packet after the change.
TEST_F(ProcessCommand, AppliesThePresetsAtTheirTimesAndKeepsRateAndChannels) {
    write("quieter.json", R"({"name": "quieter", "inputGainDb": -6})");
    write("quietest.json", R"({"name": "quietest", "inputGainDb": -18})");
    ASSERT_EQ(run("--preset " + path("quieter.json") + " --at 0.5 --preset " +
                  path("quietest.json") + " " + path("in.wav") + " " + path("out.wav")),
              0)
        << errorText();
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
                  path("in.wav") + " " + path("out2.wav")),
              0)
        << "--at out of time order";
}

TEST_F(ProcessCommand, TakesTheRecommendedPresetOfADiagnosisAndASoundEffect) {
    write("diag.json", R"({"overall": 0, "recommended": {"limiter": {"enabled": true,
                         "ceilingDb": -6, "releaseMs": 50}}})");
    write("fx.json", R"({"soundFxPresets": [{"name": "echo", "delay": {"enabled": true,
                       "timeMs": 100, "feedback": 0, "wetMix": 1}}]})");
    ASSERT_EQ(run("--preset " + path("diag.json") + " --fx " + path("fx.json") + " --block 1024 " +
                  path("in.wav") + " " + path("out.wav")),
              0)
        << errorText();
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
    const std::string out = path("out.wav");
    EXPECT_NE(run("--preset " + path("bad.json") + " " + path("in.wav") + " " + out), 0);
    EXPECT_NE(run("--preset " + path("missing.json") + " " + path("in.wav") + " " + out), 0);
    EXPECT_NE(run("--preset " + path("p.json") + " " + path("missing.wav") + " " + out), 0);
    EXPECT_NE(run("--preset " + path("p.json") + " --block 0 " + path("in.wav") + " " + out), 0);
    EXPECT_NE(run("--preset " + path("p.json") + " " + path("in.wav")), 0);
    EXPECT_NE(run("--bogus " + path("in.wav") + " " + out), 0);
    EXPECT_FALSE(fs::exists(out));
    const std::string text = errorText();
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
}
