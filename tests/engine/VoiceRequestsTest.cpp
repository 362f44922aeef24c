// The "Tindra" obs-websocket requests on a real engine and settings file,
// without OBS: every request, every error, and that an error changes nothing.

#include "engine/VoiceRequests.h"

#include "engine/FilterEngine.h"
#include "settings/BuiltInPresets.h"
#include "settings/JsonText.h"
#include "settings/SettingsStore.h"
#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Lumora {
namespace {

using Testing::TempFolder;

// One source "Mic" with a Tindra filter "Tindra" on a fresh settings folder.
class VoiceRequestsTest : public ::testing::Test {
protected:
    VoiceRequestsTest() : store_(folder_.path()) {
        engine_.prepare(48000.0);
        engine_.setStore(std::make_unique<SettingsStore>(folder_.path()));
        engine_.restoreFromSettings(); // seeds the built-ins
        SavedEffectPreset talk;
        talk.name = "雑談";
        talk.preset.gate.thresholdDb = -48.0f;
        store_.saveEffectPreset(talk);
    }

    JsonValue ask(const std::string& request, const std::string& json = "") {
        const JsonValue data = json.empty() ? JsonValue() : parseJson(json).value;
        return requests_.handle(request, data);
    }
    static std::string errorOf(const JsonValue& answer) {
        return asString(member(answer, "error"), "");
    }
    std::string stateText() {
        return renderJson(VoiceRequests::state(engine_)) +
               renderJson(engine_.soundFxPreset().pitch.enabled);
    }

    TempFolder folder_;
    SettingsStore store_;
    FilterEngine engine_;
    VoiceRequests requests_{
        [this](const std::string& source, const std::string& filter, std::string& error) {
            if (source != "Mic") {
                error = "no source named \"" + source + "\"";
                return VoiceRequests::Filter{};
            }
            if (!filter.empty() && filter != "Tindra") {
                error = "no Tindra filter named \"" + filter + "\"";
                return VoiceRequests::Filter{};
            }
            return VoiceRequests::Filter{&engine_, "Mic", "Tindra"};
        },
        store_};
};

TEST_F(VoiceRequestsTest, GetVoicesListsTheBuiltInsTheEffectPresetsAndTheSlots) {
    const JsonValue answer = ask("GetVoices");
    const auto& voices = member(answer, "voices").elements();
    ASSERT_EQ(voices.size(), 4u);
    const auto builtIns = builtInSoundFxPresets();
    for (size_t i = 0; i < voices.size(); ++i) {
        EXPECT_EQ(asString(member(voices[i], "name"), ""), builtIns[i].name);
        EXPECT_TRUE(asBool(member(voices[i], "builtIn"), false));
    }
    ASSERT_EQ(member(answer, "effectPresets").elements().size(), 1u);
    EXPECT_EQ(asString(member(member(answer, "effectPresets").elements()[0], "name"), ""), "雑談");
    const JsonValue& up = member(member(answer, "slots"), "up");
    EXPECT_EQ(asString(member(up, "trigger"), ""), "momentary");
    EXPECT_EQ(asString(member(up, "soundFxPreset"), ""), builtIns[0].name);
    EXPECT_TRUE(member(up, "effectPreset").isNull()); // absent, not null
    EXPECT_EQ(asString(member(member(member(answer, "slots"), "left"), "trigger"), ""), "toggle");
}

TEST_F(VoiceRequestsTest, SetVoiceOnAirAndGetStateReportsIt) {
    const std::string voice = builtInSoundFxPresets()[1].name;
    const JsonValue answer = ask("SetVoice", R"({"sourceName": "Mic", "voice": ")" + voice + "\"}");
    EXPECT_EQ(errorOf(answer), "");
    EXPECT_EQ(engine_.soundFxPresetName(), voice);
    EXPECT_TRUE(engine_.soundFxActive());
    EXPECT_FLOAT_EQ(engine_.soundFxPreset().pitch.semitonesA, 12.0f);
    const JsonValue state = ask("GetState", R"({"sourceName": "Mic", "filterName": "Tindra"})");
    EXPECT_EQ(asString(member(state, "soundFxPreset"), ""), voice);
    EXPECT_TRUE(asBool(member(state, "effectsOn"), false));
    // Voices in use: the constant delay that keeps every voice on one timeline.
    EXPECT_FLOAT_EQ(asFloat(member(state, "latencyMs"), -1.0f),
                    static_cast<float>(VoiceAlignment::kDelayMs));
    EXPECT_TRUE(member(state, "activeSlot").isNull());
}

TEST_F(VoiceRequestsTest, ApplyEffectPresetByNameOrAsAnObject) {
    EXPECT_EQ(errorOf(ask("ApplyEffectPreset", R"({"sourceName": "Mic", "preset": "雑談"})")), "");
    EXPECT_EQ(engine_.effectPreset().name, "雑談");
    EXPECT_FLOAT_EQ(engine_.effectPreset().gate.thresholdDb, -48.0f);
    const JsonValue answer = ask("ApplyEffectPreset",
                                 R"({"sourceName": "Mic", "preset": {"name": "外から",
                                     "gate": {"enabled": true, "thresholdDb": -41}}})");
    EXPECT_EQ(errorOf(answer), "");
    EXPECT_EQ(asString(member(answer, "effectPreset"), ""), "外から");
    EXPECT_FLOAT_EQ(engine_.effectPreset().gate.thresholdDb, -41.0f);
    EXPECT_TRUE(engine_.effectPreset().active);
    // Spectral reduction delays the voice by its 1024-sample block, on top of
    // the voices' delay when voices are in use.
    const JsonValue spectral = ask("ApplyEffectPreset", R"({"sourceName": "Mic", "preset":
                                   {"name": "静か", "spectral": {"enabled": true}}})");
    const double voices = engine_.effects().isAligned() ? VoiceAlignment::kDelayMs : 0.0;
    EXPECT_NEAR(asFloat(member(spectral, "latencyMs"), 0.0f), 1024.0 / 48.0 + voices, 1e-3);
}

TEST_F(VoiceRequestsTest, PressKeyFollowsTheSlotsTrigger) {
    const auto builtIns = builtInSoundFxPresets();
    // Up is momentary: the voice while it is down (heard even with the effects
    // off), the previous one after, effects off again.
    ASSERT_FALSE(engine_.soundFxActive());
    ASSERT_EQ(errorOf(ask("PressKey", R"({"sourceName": "Mic", "key": "up", "down": true})")), "");
    EXPECT_EQ(engine_.soundFxPresetName(), builtIns[0].name);
    EXPECT_TRUE(engine_.soundFxActive());
    EXPECT_EQ(asString(member(ask("GetState", R"({"sourceName": "Mic"})"), "activeSlot"), ""),
              "up");
    ask("PressKey", R"({"sourceName": "Mic", "key": "up", "down": false})");
    EXPECT_EQ(engine_.keys().activeSlot(), kNoSlot);
    EXPECT_NE(engine_.soundFxPresetName(), builtIns[0].name);
    EXPECT_FALSE(engine_.soundFxActive());
    // Left toggles: on at one press, off at the next; its release does nothing.
    ask("PressKey", R"({"sourceName": "Mic", "key": "left", "down": true})");
    ask("PressKey", R"({"sourceName": "Mic", "key": "left", "down": false})");
    EXPECT_EQ(engine_.soundFxPresetName(), builtIns[2].name);
    ask("PressKey", R"({"sourceName": "Mic", "key": "left", "down": true})");
    EXPECT_EQ(engine_.keys().activeSlot(), kNoSlot);
}

TEST_F(VoiceRequestsTest, EveryBadRequestIsAnErrorThatChangesNothing) {
    const std::string before = stateText();
    const struct {
        const char* request;
        const char* json;
        const char* error;
    } cases[] = {
        {"SetVoice", R"({"voice": "デスゲーム"})", "\"sourceName\" must be a string"},
        {"SetVoice", R"({"sourceName": 7, "voice": "デスゲーム"})",
         "\"sourceName\" must be a string"},
        {"SetVoice", R"({"sourceName": "Desk", "voice": "デスゲーム"})",
         "no source named \"Desk\""},
        {"SetVoice", R"({"sourceName": "Mic", "filterName": 3, "voice": "デスゲーム"})",
         "\"filterName\" must be a string"},
        {"SetVoice", R"({"sourceName": "Mic", "filterName": "EQ", "voice": "デスゲーム"})",
         "no Tindra filter named \"EQ\""},
        {"SetVoice", R"({"sourceName": "Mic", "voice": "ない声"})", "no voice named \"ない声\""},
        {"SetVoice", R"({"sourceName": "Mic", "voice": ["デスゲーム"]})",
         "\"voice\" must be a string"},
        {"ApplyEffectPreset", R"({"sourceName": "Mic", "preset": "ない"})",
         "no effect preset named \"ない\""},
        {"ApplyEffectPreset", R"({"sourceName": "Mic", "preset": 1})",
         "\"preset\" must be a preset name or a preset object"},
        {"PressKey", R"({"sourceName": "Mic", "key": "space", "down": true})",
         "\"key\" must be \"up\", \"down\", \"left\" or \"right\""},
        {"PressKey", R"({"sourceName": "Mic", "key": "up", "down": "yes"})",
         "\"down\" must be true or false"},
        {"PressKey", R"({"sourceName": "Mic", "key": "up"})", "\"down\" must be true or false"},
        {"GetState", "", "\"sourceName\" must be a string"},
        {"Reboot", R"({"sourceName": "Mic"})", "unknown request \"Reboot\""},
        {"GetState", R"([1, 2])", "request data must be an object"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.request) + " " + c.json);
        EXPECT_EQ(errorOf(ask(c.request, c.json)), c.error);
        EXPECT_EQ(stateText(), before);
    }
}

} // namespace
} // namespace Lumora
