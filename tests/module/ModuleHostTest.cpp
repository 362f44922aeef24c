// The real libobs loads the built module (HostEnvironment) and shows its
// properties. (That it registers an audio filter is what every packet in
// FilterAudioHostTest proves.)
#include "HostEnvironment.h"

#include <gtest/gtest.h>

// The button's label comes through the module's locale files.
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
