// Runs `lumora-cli diagnose` on takes made from real recorded speech and checks
// its JSON output, its readable report and its error exits.

#include "WavFile.h"
#include "settings/JsonText.h"
#include "support/CommandRun.h"
#include "support/RecordedSpeech.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Lumora {
namespace {

namespace fs = std::filesystem;

// ---- making the takes ----

std::vector<float> load(const std::string& name) {
    std::vector<float> sound = Testing::alsaSound(name);
    EXPECT_FALSE(sound.empty()) << "recorded speech from alsa-utils is needed: " << name;
    return sound;
}

// Half a second of quiet room noise, then the words, scaled and cut or padded
// (with room noise) to 3.5 s, or to `seconds`.
std::vector<float> makeTake(const std::vector<float>& words, float gain,
                            const std::vector<float>& room, double seconds = 3.5) {
    const auto total = static_cast<size_t>(48000 * seconds);
    std::vector<float> take(total);
    for (size_t i = 0; i < total; ++i) {
        take[i] = room[i % room.size()];
        const size_t w = i - 24000;
        if (i >= 24000 && w < words.size()) {
            take[i] += words[w] * gain;
        }
    }
    return take;
}

class DiagnoseCommand : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = fs::temp_directory_path() / ("lumora-diagnose-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
        std::vector<float> words;
        for (const char* name : {"Front_Left", "Front_Center", "Front_Right"}) {
            const std::vector<float> w = load(name);
            words.insert(words.end(), w.begin(), w.end());
        }
        // Room noise at about -70 dBFS (the recorded noise sits at -30 dBFS).
        std::vector<float> room = load("Noise");
        for (float& v : room) {
            v *= 0.01f;
        }
        write("normal.wav", makeTake(words, 0.5f, room));
        write("loud.wav", makeTake(words, 1.0f, room));
        write("soft.wav", makeTake(words, 0.1f, room));
        write("plosive.wav", makeTake(words, 0.5f, room));
        // The silence take gets a lead-in as long as the wizard's countdown (3 s):
        // the 300 ms smoothing needs about that long to fall from speech to the
        // room's level.
        write("silence.wav", makeTake({}, 0.0f, room, 6.0));
        // The normal take again as stereo, and at 44.1 kHz.
        WavData stereo;
        stereo.sampleRate = 48000;
        stereo.planes = {makeTake(words, 0.5f, room), makeTake(words, 0.5f, room)};
        std::string error;
        ASSERT_TRUE(writeWav((dir_ / "normal-stereo.wav").string(), stereo, error)) << error;
        WavData slow;
        slow.sampleRate = 44100;
        const std::vector<float> src = makeTake(words, 1.0f, room);
        for (size_t i = 0; i * 48000 / 44100 < src.size(); ++i) {
            slow.planes.resize(1);
            slow.planes[0].push_back(src[i * 48000 / 44100]);
        }
        ASSERT_TRUE(writeWav((dir_ / "loud-44k.wav").string(), slow, error)) << error;
        std::ofstream(dir_ / "not-audio.wav") << "RIFF? no, just text\n";
    }
    static void TearDownTestSuite() {
        std::error_code ec;
        fs::remove_all(dir_, ec);
    }
    static void write(const char* name, std::vector<float> samples) {
        WavData w;
        w.sampleRate = 48000;
        w.planes.push_back(std::move(samples));
        std::string error;
        ASSERT_TRUE(writeWav((dir_ / name).string(), w, error)) << error;
    }
    static std::string take(const char* name) { return (dir_ / name).string(); }

    static Testing::CommandRun run(const std::string& args) {
        return Testing::runCommand(Testing::lumoraCli("diagnose " + args));
    }
    static std::string takes(const std::string& normal = take("normal.wav"),
                             const std::string& loud = take("loud.wav")) {
        return "--normal " + normal + " --loud " + loud + " --soft " + take("soft.wav") +
               " --plosive " + take("plosive.wav") + " --silence " + take("silence.wav");
    }

    static fs::path dir_;
};

fs::path DiagnoseCommand::dir_;

// The command's JSON, read with the settings file's parser (whose own tests
// and fuzzing guard it).
bool parse(const std::string& text, JsonValue& out) {
    JsonParseResult r = parseJson(text);
    out = std::move(r.value);
    return r.ok;
}

// Element `i` of an array; null when absent.
const JsonValue& at(const JsonValue& v, size_t i) {
    static const JsonValue none;
    return i < v.elements().size() ? v.elements()[i] : none;
}

int itemLevel(const JsonValue& result, const std::string& key) {
    for (const JsonValue& item : member(result, "items").elements()) {
        if (member(item, "key").stringValue() == key) {
            return asInt(member(item, "level"), -1);
        }
    }
    return -1;
}

TEST_F(DiagnoseCommand, RealSpeechGivesASensibleDiagnosisAsJson) {
    const Testing::CommandRun r = run("--mic dynamic " + takes());
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_EQ(r.err, "");
    JsonValue j;
    ASSERT_TRUE(parse(r.out, j)) << r.out;
    ASSERT_TRUE(j.isObject());
    EXPECT_EQ(member(j, "micType").numberValue(), 0.0);
    const JsonValue& items = member(j, "items");
    ASSERT_EQ(items.elements().size(), 6u);
    EXPECT_EQ(member(at(items, 4), "key").stringValue(), "dynamics");

    // Speech about 6 dB under the recording's own level, a 20 dB range between
    // loud and soft, the same voice for the plosives, a quiet room.
    EXPECT_EQ(itemLevel(j, "clipping"), 0);
    EXPECT_EQ(itemLevel(j, "volume"), 0);
    EXPECT_EQ(itemLevel(j, "noise"), 0);
    EXPECT_EQ(itemLevel(j, "dynamics"), 0);
    EXPECT_EQ(itemLevel(j, "pop"), 0);
    EXPECT_NEAR(member(at(items, 4), "value").numberValue(), 20.0, 2.0) << "loud - soft is 20 dB";
    const JsonValue& speech = member(j, "speech");
    EXPECT_TRUE(member(speech, "valid").boolValue());
    EXPECT_GE(member(speech, "count").numberValue(), 180.0);
    EXPECT_LE(member(speech, "count").numberValue(), 190.0); // one snapshot per 16 ms over 3 s
    EXPECT_GT(member(speech, "level").numberValue(), -36.0);
    EXPECT_LT(member(speech, "level").numberValue(), -24.0);
    const JsonValue& silence = member(j, "silence");
    EXPECT_TRUE(member(silence, "valid").boolValue());
    EXPECT_NEAR(member(silence, "level").numberValue(), -70.0, 3.0);

    const JsonValue& spectrum = member(j, "noiseSpectrum");
    ASSERT_EQ(spectrum.elements().size(), 64u);
    EXPECT_EQ(at(spectrum, 0).numberValue(), -96.0) << "narrower than one bin at 48 kHz";
    EXPECT_GT(at(spectrum, 50).numberValue(), -96.0);
    EXPECT_LT(at(spectrum, 50).numberValue(), -60.0);

    // The recommendation for this voice and room.
    const JsonValue& preset = member(j, "recommended");
    EXPECT_FALSE(asBool(member(preset, "recording"), true));
    EXPECT_TRUE(member(member(preset, "gate"), "enabled").boolValue());
    EXPECT_TRUE(member(member(preset, "limiter"), "enabled").boolValue());
    EXPECT_TRUE(member(member(preset, "comp"), "enabled").boolValue());
}

TEST_F(DiagnoseCommand, StereoAndOtherRatesAndBlockSizesReadTheSame) {
    JsonValue base;
    JsonValue other;
    Testing::CommandRun r = run("--mic usb " + takes());
    ASSERT_EQ(r.code, 0) << r.err;
    ASSERT_TRUE(parse(r.out, base));
    r = run("--mic usb --block 1024 " + takes(take("normal-stereo.wav"), take("loud-44k.wav")));
    ASSERT_EQ(r.code, 0) << r.err;
    ASSERT_TRUE(parse(r.out, other));
    EXPECT_NEAR(member(member(other, "speech"), "level").numberValue(),
                member(member(base, "speech"), "level").numberValue(), 0.3);
    EXPECT_NEAR(member(at(member(other, "items"), 4), "value").numberValue(),
                member(at(member(base, "items"), 4), "value").numberValue(), 0.5);
    for (const char* key : {"clipping", "volume", "noise", "dynamics", "pop"}) {
        EXPECT_EQ(itemLevel(other, key), itemLevel(base, key)) << key;
    }
}

TEST_F(DiagnoseCommand, ReadableReportInEitherLanguage) {
    Testing::CommandRun r = run("--mic condenser --lang en " + takes());
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("✅ Good"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Volume is spot on"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find('{'), std::string::npos);
    // Every Japanese summary line and title ends in a full-width "！" (only
    // the preset's own name and description, last, have no English).
    EXPECT_EQ(r.out.substr(0, r.out.find("Recommended:")).find("！"), std::string::npos)
        << "Japanese text in the English report";
    r = run("--mic condenser --lang ja " + takes());
    ASSERT_EQ(r.code, 0) << r.err;
    EXPECT_NE(r.out.find("✅ 良好"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("配信最適化プリセット"), std::string::npos) << r.out;
}

TEST_F(DiagnoseCommand, ClearErrorsForBadInput) {
    struct Case {
        std::string args;
        const char* message;
    } cases[] = {
        {"--mic dynamic " + takes(take("missing.wav")), "cannot read"},
        {"--mic dynamic --bogus 1 " + takes(), "unknown option '--bogus'"},
        {"--mic ribbon " + takes(), "--mic must be"},
        {"--mic dynamic --block 0 " + takes(), "--block must be"},
        {"--mic dynamic --lang fr " + takes(), "--lang must be"},
        {"--mic dynamic --normal " + take("normal.wav"), "--loud FILE is required"},
        {takes(), "--mic is required"},
        {"--mic dynamic " + takes() + " --lang", "needs a value"},
        {"--mic dynamic " + takes(take("not-audio.wav")), "cannot read"},
    };
    for (const Case& c : cases) {
        const Testing::CommandRun r = run(c.args);
        EXPECT_NE(r.code, 0) << c.args;
        EXPECT_EQ(r.out, "") << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
}

} // namespace
} // namespace Lumora
