// Runs `lumora-cli diagnose` on takes made from real recorded speech and checks
// its JSON output, its readable report and its error exits.

#include "WavFile.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace Lumora {
namespace {

namespace fs = std::filesystem;

const std::string kCli = std::string(LUMORA_BINARY_DIR) + "/tools/lumora-cli";
const std::string kSounds = "/usr/share/sounds/alsa/";

// ---- a minimal JSON reader, enough to check the output's shape ----

struct Json {
    enum Kind { Null, Bool, Number, String, Array, Object } kind = Null;
    bool b = false;
    double n = 0.0;
    std::string s;
    std::vector<Json> items;
    std::vector<std::pair<std::string, Json>> fields;

    const Json* get(const std::string& key) const {
        for (const auto& [k, v] : fields) {
            if (k == key) {
                return &v;
            }
        }
        return nullptr;
    }
    const Json& operator[](const std::string& key) const {
        static const Json none;
        const Json* v = get(key);
        return v ? *v : none;
    }
};

class JsonReader {
public:
    explicit JsonReader(const std::string& text) : t_(text) {}
    bool parse(Json& out) {
        const bool ok = value(out);
        space();
        return ok && p_ == t_.size();
    }

private:
    void space() {
        while (p_ < t_.size() && std::isspace(static_cast<unsigned char>(t_[p_]))) {
            ++p_;
        }
    }
    bool literal(const char* word) {
        const std::string w(word);
        if (t_.compare(p_, w.size(), w) != 0) {
            return false;
        }
        p_ += w.size();
        return true;
    }
    bool string(std::string& out) {
        if (t_[p_] != '"') {
            return false;
        }
        for (++p_; p_ < t_.size(); ++p_) {
            const char c = t_[p_];
            if (c == '"') {
                ++p_;
                return true;
            }
            if (c == '\\') {
                if (++p_ >= t_.size()) {
                    return false;
                }
                const char e = t_[p_];
                out += e == 'n' ? '\n' : e == 't' ? '\t' : e == 'r' ? '\r' : e;
                if (e == 'u') {
                    return false; // the command never needs \u for its texts
                }
            } else {
                out += c;
            }
        }
        return false;
    }
    bool value(Json& out) {
        space();
        if (p_ >= t_.size()) {
            return false;
        }
        const char c = t_[p_];
        if (c == '{') {
            out.kind = Json::Object;
            ++p_;
            space();
            if (t_[p_] == '}') {
                ++p_;
                return true;
            }
            while (true) {
                space();
                std::string key;
                if (!string(key)) {
                    return false;
                }
                space();
                if (t_[p_++] != ':') {
                    return false;
                }
                Json v;
                if (!value(v)) {
                    return false;
                }
                out.fields.emplace_back(key, std::move(v));
                space();
                if (t_[p_] == ',') {
                    ++p_;
                    continue;
                }
                return t_[p_++] == '}';
            }
        }
        if (c == '[') {
            out.kind = Json::Array;
            ++p_;
            space();
            if (t_[p_] == ']') {
                ++p_;
                return true;
            }
            while (true) {
                Json v;
                if (!value(v)) {
                    return false;
                }
                out.items.push_back(std::move(v));
                space();
                if (t_[p_] == ',') {
                    ++p_;
                    continue;
                }
                return t_[p_++] == ']';
            }
        }
        if (c == '"') {
            out.kind = Json::String;
            return string(out.s);
        }
        if (literal("true") || literal("false")) {
            out.kind = Json::Bool;
            out.b = t_[p_ - 1] == 'e' && t_[p_ - 2] == 'u';
            return true;
        }
        if (literal("null")) {
            return true;
        }
        char* end = nullptr;
        out.n = std::strtod(t_.c_str() + p_, &end);
        if (end == t_.c_str() + p_) {
            return false;
        }
        out.kind = Json::Number;
        p_ = static_cast<size_t>(end - t_.c_str());
        return true;
    }

    const std::string& t_;
    size_t p_ = 0;
};

// ---- making the takes ----

std::vector<float> load(const std::string& name) {
    WavData w;
    std::string error;
    EXPECT_TRUE(readWav(kSounds + name, w, error)) << error;
    return w.planes.empty() ? std::vector<float>{} : w.planes[0];
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

struct RunResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

std::string slurp(const fs::path& p) {
    std::ifstream f(p, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}

class DiagnoseCommand : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir_ = fs::temp_directory_path() / ("lumora-diagnose-" + std::to_string(::getpid()));
        fs::create_directories(dir_);
        std::vector<float> words;
        for (const char* name : {"Front_Left.wav", "Front_Center.wav", "Front_Right.wav"}) {
            const std::vector<float> w = load(name);
            words.insert(words.end(), w.begin(), w.end());
        }
        // Room noise at about -70 dBFS (the recorded noise sits at -30 dBFS).
        std::vector<float> room = load("Noise.wav");
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

    static RunResult run(const std::string& args) {
        const fs::path out = dir_ / "stdout.txt";
        const fs::path err = dir_ / "stderr.txt";
        const std::string cmd =
            kCli + " diagnose " + args + " >" + out.string() + " 2>" + err.string();
        const int status = std::system(cmd.c_str());
        RunResult r;
        r.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        r.out = slurp(out);
        r.err = slurp(err);
        return r;
    }
    static std::string takes(const std::string& normal = take("normal.wav"),
                             const std::string& loud = take("loud.wav")) {
        return "--normal " + normal + " --loud " + loud + " --soft " + take("soft.wav") +
               " --plosive " + take("plosive.wav") + " --silence " + take("silence.wav");
    }

    static fs::path dir_;
};

fs::path DiagnoseCommand::dir_;

int itemLevel(const Json& result, const std::string& key) {
    for (const Json& item : result["items"].items) {
        if (item["key"].s == key) {
            return static_cast<int>(item["level"].n);
        }
    }
    return -1;
}

TEST_F(DiagnoseCommand, RealSpeechGivesASensibleDiagnosisAsJson) {
    ASSERT_TRUE(fs::exists(kCli)) << kCli;
    const RunResult r = run("--mic dynamic " + takes());
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
    Json j;
    ASSERT_TRUE(JsonReader(r.out).parse(j)) << r.out;
    ASSERT_EQ(j.kind, Json::Object);

    for (const char* key : {"overall", "summaryJa", "summaryEn", "micType", "items", "speech",
                            "silence", "noiseSpectrum", "recommended"}) {
        EXPECT_NE(j.get(key), nullptr) << key;
    }
    EXPECT_EQ(j["micType"].n, 0.0);
    const std::vector<Json>& items = j["items"].items;
    ASSERT_EQ(items.size(), 6u);
    const char* order[] = {"clipping", "volume", "noise", "distance", "dynamics", "pop"};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(items[i]["key"].s, order[i]);
        for (const char* field : {"titleJa", "adviceJa", "titleEn", "adviceEn"}) {
            EXPECT_EQ(items[i][field].kind, Json::String) << order[i] << " " << field;
        }
        EXPECT_EQ(items[i]["value"].kind, Json::Number);
        EXPECT_FALSE(items[i]["titleEn"].s.empty());
    }

    // Speech about 6 dB under the recording's own level, a 20 dB range between
    // loud and soft, the same voice for the plosives, a quiet room.
    EXPECT_EQ(itemLevel(j, "clipping"), 0);
    EXPECT_EQ(itemLevel(j, "volume"), 0);
    EXPECT_EQ(itemLevel(j, "noise"), 0);
    EXPECT_EQ(itemLevel(j, "dynamics"), 0);
    EXPECT_EQ(itemLevel(j, "pop"), 0);
    EXPECT_NEAR(items[4]["value"].n, 20.0, 2.0) << "loud - soft is 20 dB";
    const Json& speech = j["speech"];
    EXPECT_TRUE(speech["valid"].b);
    EXPECT_GE(speech["count"].n, 180.0);
    EXPECT_LE(speech["count"].n, 190.0); // one snapshot per 16 ms over 3 s
    EXPECT_GT(speech["level"].n, -36.0);
    EXPECT_LT(speech["level"].n, -24.0);
    const Json& silence = j["silence"];
    EXPECT_TRUE(silence["valid"].b);
    EXPECT_NEAR(silence["level"].n, -70.0, 3.0);

    const std::vector<Json>& spectrum = j["noiseSpectrum"].items;
    ASSERT_EQ(spectrum.size(), 64u);
    EXPECT_EQ(spectrum[0].n, -96.0) << "narrower than one bin at 48 kHz";
    EXPECT_GT(spectrum[50].n, -96.0);
    EXPECT_LT(spectrum[50].n, -60.0);

    const Json& preset = j["recommended"];
    EXPECT_EQ(preset["name"].s, "配信最適化プリセット");
    EXPECT_FALSE(preset["recording"].b);
    EXPECT_TRUE(preset["gate"]["enabled"].b);
    EXPECT_TRUE(preset["limiter"]["enabled"].b);
    EXPECT_TRUE(preset["comp"]["enabled"].b);
    EXPECT_EQ(preset["eq"]["notchBands"].items.size(), 5u);
    EXPECT_EQ(preset["spectral"]["profileDb"].items.size(), 64u);
    for (const char* key : {"kneeDb", "makeupGainDb"}) {
        EXPECT_EQ(preset["comp"][key].kind, Json::Number) << key;
    }
    for (const char* key : {"attenLimitDb", "mix"}) {
        EXPECT_EQ(preset["noise"][key].kind, Json::Number) << key;
    }
    EXPECT_EQ(preset["inputGainDb"].kind, Json::Number);
    EXPECT_EQ(preset["outputGainDb"].kind, Json::Number);
}

TEST_F(DiagnoseCommand, StereoAndOtherRatesAndBlockSizesReadTheSame) {
    Json base;
    Json other;
    RunResult r = run("--mic usb " + takes());
    ASSERT_EQ(r.exitCode, 0) << r.err;
    ASSERT_TRUE(JsonReader(r.out).parse(base));
    r = run("--mic usb --block 1024 " + takes(take("normal-stereo.wav"), take("loud-44k.wav")));
    ASSERT_EQ(r.exitCode, 0) << r.err;
    ASSERT_TRUE(JsonReader(r.out).parse(other));
    EXPECT_NEAR(other["speech"]["level"].n, base["speech"]["level"].n, 0.3);
    EXPECT_NEAR(other["items"].items[4]["value"].n, base["items"].items[4]["value"].n, 0.5);
    for (const char* key : {"clipping", "volume", "noise", "dynamics", "pop"}) {
        EXPECT_EQ(itemLevel(other, key), itemLevel(base, key)) << key;
    }
}

TEST_F(DiagnoseCommand, ReadableReportInEitherLanguage) {
    RunResult r = run("--mic condenser --lang en " + takes());
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.out.find("✅ Good"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Volume is spot on"), std::string::npos) << r.out;
    EXPECT_EQ(r.out.find('{'), std::string::npos);
    r = run("--mic condenser --lang ja " + takes());
    ASSERT_EQ(r.exitCode, 0) << r.err;
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
        const RunResult r = run(c.args);
        EXPECT_NE(r.exitCode, 0) << c.args;
        EXPECT_EQ(r.out, "") << c.args;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << c.args << "\n" << r.err;
        EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    }
}

} // namespace
} // namespace Lumora
