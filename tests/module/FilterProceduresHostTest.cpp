// The filter's procedures in the real libobs: presets given as JSON or by name,
// what they do to packets, calls from several threads while audio flows, and a
// voice that survives a restart of the host.
#include "HostEnvironment.h"

#include "settings/PresetFile.h"
#include "settings/SettingsStore.h"
#include "support/CommandRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <thread>

namespace fs = std::filesystem;
using namespace Lumora;

namespace {

struct CallResult {
    bool called = false;
    bool ok = false;
    std::string error;
    std::string result;
};

CallResult call(obs_source_t* filter, const char* name, const std::string& json) {
    CallResult r;
    calldata_t cd;
    calldata_init(&cd);
    calldata_set_string(&cd, "json", json.c_str());
    r.called = proc_handler_call(obs_source_get_proc_handler(filter), name, &cd);
    r.ok = calldata_bool(&cd, "ok");
    const char* error = calldata_string(&cd, "error");
    const char* result = calldata_string(&cd, "result");
    r.error = error ? error : "";
    r.result = result ? result : "";
    calldata_free(&cd);
    return r;
}

// Runs lumora-host as a separate process (a real restart of libobs).
std::string runHost(const std::string& env, const std::string& args, std::string& log) {
    const Testing::CommandRun run = Testing::runCommand(env + " xvfb-run -a " + LUMORA_HOST_PATH +
                                                        " --module " + LUMORA_MODULE_PATH + args);
    log = run.err;
    return run.out;
}

double jsonNumber(const std::string& json, const std::string& key) {
    const auto at = json.find("\"" + key + "\":");
    return at == std::string::npos ? NAN : std::atof(json.c_str() + at + key.size() + 3);
}

// A cleaning voice of the given input and output gains.
std::string gainPresetJson(float inputGainDb, float outputGainDb = 0.0f,
                           const std::string& name = "") {
    SavedEffectPreset preset;
    preset.name = name;
    preset.preset.inputGainDb = inputGainDb;
    preset.preset.outputGainDb = outputGainDb;
    return effectPresetText(preset);
}

// An echo that is not heard (no wet signal), told apart by its time.
std::string silentEchoJson(float timeMs) {
    SavedSoundFxPreset fx;
    fx.preset.delay.enabled = true;
    fx.preset.delay.timeMs = timeMs;
    fx.preset.delay.wetMix = 0.0f;
    return soundFxPresetText(fx);
}

bool isOneOfTheEffectVoices(const std::string& json) {
    SavedEffectPreset p;
    return parseEffectPresetText(json, p) &&
           ((p.name == "up" && p.preset.inputGainDb == 6.0f && p.preset.outputGainDb == -6.0f) ||
            (p.name == "down" && p.preset.inputGainDb == -6.0f && p.preset.outputGainDb == 6.0f));
}

bool isOneOfTheEchoes(const std::string& json) {
    SavedSoundFxPreset p;
    return parseSoundFxPresetText(json, p) && p.preset.delay.enabled &&
           (p.preset.delay.timeMs == 80.0f || p.preset.delay.timeMs == 160.0f);
}

// What one calling thread saw; checked on the test's thread.
struct CallerLog {
    int refused = 0;
    int foreignVoices = 0;
    std::string firstError;
};

} // namespace

TEST(FilterProceduresHost, JsonPresetGovernsTheFirstTwoChannelsOnly) {
    obs_source_t* filter = freshFilter(6);
    ASSERT_NE(filter, nullptr);
    const CallResult applied = call(filter, "apply_effect_preset", gainPresetJson(6.0f));
    ASSERT_TRUE(applied.called);
    ASSERT_TRUE(applied.ok) << applied.error;

    const auto in = makeSignal(6, 9600, 0.1f);
    size_t delay = 0;
    const auto out = pushThrough(in, 480, delay);
    host().removeAllFilters();
    EXPECT_EQ(delay, 3072u) << "the voices' constant delay, 64 ms";
    const float g = std::pow(10.0f, 6.0f / 20.0f);
    for (int c = 0; c < 6; ++c) {
        ASSERT_EQ(out[c].size(), in[c].size());
        // Every channel as late as the timestamps say, the other four too.
        for (size_t i = 0; i + delay < in[c].size(); i += 37) {
            if (c < 2 && i < 480) {
                continue; // the first packet, across which the gain glides in
            }
            if (c < 2) {
                ASSERT_NEAR(out[c][i + delay], in[c][i] * g, 1e-6f) << "channel " << c;
            } else {
                ASSERT_EQ(out[c][i + delay], in[c][i]) << "channel " << c;
            }
        }
    }
}

// Procedures arrive on whatever thread their caller is on (scripts, plug-ins,
// later hotkeys and obs-websocket) while the audio thread runs the filter. The
// work goes to the host's interface thread one call at a time: no call is lost
// or refused, every read is a voice someone applied, and every packet is heard
// with one whole voice.
TEST(FilterProceduresHost, CallsFromTwoThreadsWhileAudioFlowsAreEachAnsweredWhole) {
    obs_source_t* filter = freshFilter(2);
    ASSERT_NE(filter, nullptr);
    // Two voices that each come out at the level they went in: audio that
    // hears half of one and half of the other comes out 12 dB off.
    const std::string voices[2] = {gainPresetJson(6.0f, -6.0f, "up"),
                                   gainPresetJson(-6.0f, 6.0f, "down")};
    const std::string echoes[2] = {silentEchoJson(80.0f), silentEchoJson(160.0f)};
    ASSERT_TRUE(call(filter, "apply_effect_preset", voices[0]).ok);
    ASSERT_TRUE(call(filter, "apply_sound_fx_preset", echoes[0]).ok);

    std::atomic<bool> calling{true};
    int packets = 0, wrongPackets = 0;
    std::thread audio([&] {
        const auto in = makeSignal(2, 480, 0.1f);
        std::vector<std::vector<float>> out(2);
        while (calling.load() || packets < 28) {
            out[0].clear();
            out[1].clear();
            host().push({in[0].data(), in[1].data()}, 480, out);
            // Whole voices give the input back to rounding; a torn one is 12 dB
            // off, and a sample that is not a number fails the comparison too.
            // The same packet over and over, 3072 frames (64 ms) late: once
            // the delay has filled, each packet is the input turned by 192.
            bool whole = out[0].size() == in[0].size() && out[1].size() == in[1].size();
            for (size_t c = 0; whole && packets > 8 && c < 2; ++c) {
                for (size_t i = 0; whole && i < in[c].size(); ++i) {
                    whole = std::fabs(out[c][i] - in[c][(i + 480 - 192) % 480]) <= 1e-5f;
                }
            }
            wrongPackets += whole ? 0 : 1;
            ++packets;
        }
    });

    constexpr int kRounds = 150;
    CallerLog logs[2];
    auto caller = [&](int who) {
        CallerLog& log = logs[who];
        for (int i = 0; i < kRounds; ++i) {
            const int pick = (i + who) % 2;
            const CallResult results[4] = {
                call(filter, "apply_effect_preset", voices[pick]),
                call(filter, "get_effect_preset", ""),
                call(filter, "apply_sound_fx_preset", echoes[1 - pick]),
                call(filter, "get_sound_fx_preset", ""),
            };
            for (const CallResult& r : results) {
                if (!r.called || !r.ok) {
                    ++log.refused;
                    if (log.firstError.empty()) {
                        log.firstError = r.called ? r.error : "no such procedure";
                    }
                }
            }
            log.foreignVoices += isOneOfTheEffectVoices(results[1].result) ? 0 : 1;
            log.foreignVoices += isOneOfTheEchoes(results[3].result) ? 0 : 1;
        }
    };
    std::thread first(caller, 0);
    std::thread second(caller, 1);
    first.join();
    second.join();
    calling.store(false);
    audio.join();

    for (const CallerLog& log : logs) {
        EXPECT_EQ(log.refused, 0) << log.firstError;
        EXPECT_EQ(log.foreignVoices, 0);
    }
    EXPECT_EQ(wrongPackets, 0) << "of " << packets << " packets";
    EXPECT_TRUE(isOneOfTheEffectVoices(call(filter, "get_effect_preset", "").result));
    EXPECT_TRUE(isOneOfTheEchoes(call(filter, "get_sound_fx_preset", "").result));
    host().removeAllFilters();
}

TEST(FilterProceduresHost, RefusedCallsSayWhyAndChangeNothing) {
    obs_source_t* filter = freshFilter(2);
    ASSERT_NE(filter, nullptr);
    for (const char* bad : {"", "{", "[1,2]", "{\"name\": \"no such preset\"}", "\"text\""}) {
        const CallResult r = call(filter, "apply_effect_preset", bad);
        EXPECT_FALSE(r.ok) << bad;
        EXPECT_FALSE(r.error.empty()) << bad;
        EXPECT_FALSE(call(filter, "apply_sound_fx_preset", bad).ok) << bad;
    }
    // A host with no interface thread (libobs without OBS Studio's window, in
    // some other program) drops the work: the caller still hears why.
    host().setInterfaceThreadAttached(false);
    const CallResult dropped = call(filter, "apply_effect_preset", gainPresetJson(6.0f));
    const CallResult unread = call(filter, "get_effect_preset", "");
    host().setInterfaceThreadAttached(true);
    EXPECT_FALSE(dropped.ok);
    EXPECT_EQ(dropped.error, "no interface thread to run on");
    EXPECT_FALSE(unread.ok);
    const auto in = makeSignal(2, 9600, 0.1f);
    size_t delay = 0;
    const auto out = pushThrough(in, 480, delay);
    ASSERT_LT(delay, in[0].size());
    // Still a pass-through, on its own time.
    EXPECT_TRUE(std::equal(in[0].begin(), in[0].end() - static_cast<long>(delay),
                           out[0].begin() + static_cast<long>(delay)));
    host().removeAllFilters();
}

TEST(FilterProceduresHost, PresetAppliedByNameComesBackAfterARestart) {
    const Testing::TempFolder temp;
    const std::string& folder = temp.path();
    ASSERT_FALSE(folder.empty());
    {
        SettingsStore store(folder);
        SavedEffectPreset preset;
        preset.name = "配信用";
        // An attenuation: a boost would meet the safety limiter on this voice's peaks.
        preset.preset.inputGainDb = -6.0f;
        ASSERT_TRUE(store.saveEffectPreset(preset));
    }
    const std::string env = "LUMORA_SETTINGS_DIR=" + folder;
    const std::string voice = " --in /usr/share/sounds/alsa/Front_Center.wav --log lumora";
    std::string log;
    const std::string first = runHost(
        env, " --filter lumora_filter --proc apply_effect_preset '{\"name\": \"配信用\"}'" + voice,
        log);
    ASSERT_NE(first.find("levelOutDb"), std::string::npos) << log;
    EXPECT_NEAR(jsonNumber(first, "levelOutDb") - jsonNumber(first, "levelInDb"), -6.0, 0.05);
    EXPECT_EQ(SettingsStore(folder).load().lastPresetName, "配信用");

    // A new process: the filter starts with the stored voice, nobody applies it.
    const std::string second = runHost(env, " --filter lumora_filter" + voice, log);
    EXPECT_NEAR(jsonNumber(second, "levelOutDb") - jsonNumber(second, "levelInDb"), -6.0, 0.05)
        << second << log;
}

TEST(FilterProceduresHost, NeuralSuppressionRunsWhenTheLibraryAndModelAreThere) {
    const Testing::TempFolder temp;
    const std::string& folder = temp.path();
    ASSERT_FALSE(folder.empty());
    const fs::path data = fs::path(folder) / "data";
    fs::create_directories(data);
    fs::copy(LUMORA_MODULE_DATA, data, fs::copy_options::recursive);
    fs::copy(fs::path(LUMORA_TEST_DATA_DIR) / "noise-model" / "models", data / "models",
             fs::copy_options::recursive);

    SavedEffectPreset preset;
    preset.preset.noise.enabled = true;
    preset.preset.noise.attenLimitDb = 12.0f; // the stand-in scales by 10^(-12/20)
    preset.preset.noise.mix = 1.0f;
    std::string text = effectPresetText(preset);
    std::string oneLine;
    for (char ch : text) {
        oneLine += ch == '\n' ? ' ' : ch;
    }
    const std::string args = "=" + data.string() + " --filter lumora_filter --proc " +
                             "apply_effect_preset '" + oneLine + "'" +
                             " --in /usr/share/sounds/alsa/Front_Left.wav --log lumora";
    const std::string env = "LUMORA_SETTINGS_DIR=" + folder;
    std::string log;
    const std::string with =
        runHost(env + " LD_LIBRARY_PATH=" + LUMORA_DEEPFILTER_STANDIN_DIR, args, log);
    ASSERT_NE(with.find("levelOutDb"), std::string::npos) << log;
    EXPECT_NEAR(jsonNumber(with, "levelOutDb") - jsonNumber(with, "levelInDb"), -12.0, 0.5) << with;

    // Without the library the stage passes audio through, undelayed.
    const std::string without = runHost(env, args, log);
    EXPECT_NEAR(jsonNumber(without, "levelOutDb") - jsonNumber(without, "levelInDb"), 0.0, 0.01)
        << without;
}
