// The real libobs loads the built module: registration, defaults, properties, logs.
#include "HostEnvironment.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

TEST(ModuleHost, LogsLoadAndRegistration) {
    EXPECT_EQ(countLines("[Lumora] audio filter registered"), 1);
    EXPECT_EQ(countLines("[Lumora] Plugin loaded (v1.0.0)"), 1);
}

TEST(ModuleHost, ReportsTheApiVersionItWasBuiltAgainst) {
    void* module = dlopen(LUMORA_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(module, nullptr);
    using VersionFn = uint32_t (*)();
    auto version = reinterpret_cast<VersionFn>(dlsym(module, "obs_module_ver"));
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version(), LIBOBS_API_VER);
    using TextFn = const char* (*)();
    auto name = reinterpret_cast<TextFn>(dlsym(module, "obs_module_name"));
    auto description = reinterpret_cast<TextFn>(dlsym(module, "obs_module_description"));
    ASSERT_NE(name, nullptr);
    ASSERT_NE(description, nullptr);
    EXPECT_STREQ(name(), "Tindra");
    EXPECT_STREQ(description(), "Voice quality diagnosis for streamers");
    dlclose(module);
}

TEST(ModuleHost, RegistersTheAudioFilter) {
    EXPECT_STREQ(obs_source_get_display_name("lumora_filter"), "Tindra");
    EXPECT_TRUE(obs_get_source_output_flags("lumora_filter") & OBS_SOURCE_AUDIO);
    bool found = false;
    const char* id = nullptr;
    for (size_t i = 0; obs_enum_filter_types(i, &id); ++i) {
        found = found || std::string(id) == "lumora_filter";
    }
    EXPECT_TRUE(found);
}

TEST(ModuleHost, RegistrationSetsOnlyWhatTheFilterUses) {
    const obs_source_info& info = registeredFilterInfo();
    EXPECT_STREQ(info.id, "lumora_filter");
    EXPECT_EQ(info.type, OBS_SOURCE_TYPE_FILTER);
    EXPECT_EQ(info.output_flags, static_cast<uint32_t>(OBS_SOURCE_AUDIO));
    EXPECT_NE(info.create, nullptr);
    EXPECT_NE(info.destroy, nullptr);
    EXPECT_NE(info.update, nullptr);
    EXPECT_NE(info.filter_audio, nullptr);
    EXPECT_EQ(info.filter_video, nullptr);
    EXPECT_EQ(info.video_render, nullptr);
    EXPECT_EQ(info.get_width, nullptr);
}

TEST(ModuleHost, DefaultsHoldRecordingModeOff) {
    obs_data_t* defaults = obs_get_source_defaults("lumora_filter");
    ASSERT_NE(defaults, nullptr);
    EXPECT_TRUE(obs_data_has_default_value(defaults, "is_recording_mode"));
    EXPECT_FALSE(obs_data_get_default_bool(defaults, "is_recording_mode"));
    obs_data_release(defaults);
}

TEST(ModuleHost, PropertiesAreTheOpenButtonAlone) {
    obs_properties_t* props = obs_get_source_properties("lumora_filter");
    ASSERT_NE(props, nullptr);
    obs_property_t* open = obs_properties_get(props, "open_wizard");
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(obs_property_get_type(open), OBS_PROPERTY_BUTTON);
    EXPECT_STREQ(obs_property_description(open), "Open");
    int count = 0;
    for (obs_property_t* p = obs_properties_first(props); p; obs_property_next(&p)) {
        ++count;
    }
    EXPECT_EQ(count, 1);
    obs_properties_destroy(props);
}

TEST(ModuleHost, UpdateReadsRecordingModeWithoutTouchingAudio) {
    std::string error;
    obs_source_t* filter =
        host().addFilter("lumora_filter", R"({"is_recording_mode": true})", error);
    ASSERT_NE(filter, nullptr) << error;
    obs_data_t* settings = obs_source_get_settings(filter);
    EXPECT_TRUE(obs_data_get_bool(settings, "is_recording_mode"));
    obs_data_set_bool(settings, "is_recording_mode", false);
    obs_source_update(filter, settings);
    obs_data_release(settings);
    host().removeAllFilters();
}
