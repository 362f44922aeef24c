#include "HostEnvironment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <memory>
#include <unistd.h>

namespace {

std::unique_ptr<Lumora::ObsHarness> gHost;

class HostEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        // Every test process gets settings of its own: a filter restores the voice
        // stored there, and one test's presets must not leak into another's.
        char folder[] = "/tmp/lumora-host-test-XXXXXX";
        ASSERT_NE(mkdtemp(folder), nullptr);
        setenv("LUMORA_SETTINGS_DIR", folder, 1);
        gHost = std::make_unique<Lumora::ObsHarness>();
        std::string error;
        ASSERT_TRUE(gHost->start(48000, 2, error)) << error;
        ASSERT_TRUE(gHost->loadModule(LUMORA_MODULE_PATH, LUMORA_MODULE_DATA, error)) << error;
    }
    void TearDown() override { gHost.reset(); }
};

const auto* const gRegistered = ::testing::AddGlobalTestEnvironment(new HostEnvironment);

} // namespace

Lumora::ObsHarness& host() {
    return *gHost;
}

std::vector<std::vector<float>> makeSignal(int channels, int frames, float amplitude) {
    std::vector<std::vector<float>> planes(static_cast<size_t>(channels));
    for (int c = 0; c < channels; ++c) {
        planes[c].resize(static_cast<size_t>(frames));
        const double w = 2.0 * M_PI * (220.0 + 110.0 * c) / 48000.0;
        for (int i = 0; i < frames; ++i) {
            planes[c][i] = amplitude * static_cast<float>(std::sin(w * i));
        }
    }
    return planes;
}

int countLines(const std::string& needle) {
    int n = 0;
    for (const auto& line : host().logLines()) {
        n += line.find(needle) != std::string::npos ? 1 : 0;
    }
    return n;
}
