// The real libobs loads the built module: its API version, registration and properties.
#include "HostEnvironment.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

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
