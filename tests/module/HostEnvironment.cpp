#include "HostEnvironment.h"

#include "settings/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

std::unique_ptr<Lumora::ObsHarness> gHost;

class HostEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        // Every test process gets settings of its own: a filter restores the voice
        // stored there, and one test's presets must not leak into another's.
        ASSERT_FALSE(settings_.path().empty());
        setenv("LUMORA_SETTINGS_DIR", settings_.path().c_str(), 1);
        gHost = std::make_unique<Lumora::ObsHarness>();
        std::string error;
        ASSERT_TRUE(gHost->start(48000, 2, error)) << error;
        ASSERT_TRUE(gHost->loadModule(LUMORA_MODULE_PATH, LUMORA_MODULE_DATA, error)) << error;
    }
    void TearDown() override { gHost.reset(); }

private:
    Lumora::Testing::TempFolder settings_;
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

obs_source_t* freshFilter(int channels, uint32_t rate) {
    std::string error;
    EXPECT_TRUE(host().resetAudio(rate, channels, error)) << error;
    obs_source_t* filter = host().addFilter("lumora_filter", "", error);
    EXPECT_NE(filter, nullptr) << error;
    return filter;
}

std::vector<std::vector<float>> pushThrough(const std::vector<std::vector<float>>& input, int block,
                                            size_t& delay) {
    const int frames = input.empty() ? 0 : static_cast<int>(input[0].size());
    std::vector<std::vector<float>> out;
    for (int start = 0; start < frames; start += block) {
        std::vector<const float*> planes;
        for (const auto& p : input) {
            planes.push_back(p.data() + start);
        }
        host().push(planes, static_cast<uint32_t>(std::min(block, frames - start)), out);
    }
    delay = static_cast<size_t>(
        std::llround(host().lastTimestampShiftNs() * 1e-9 * host().sampleRate()));
    return out;
}

int countLines(const std::string& needle) {
    int n = 0;
    for (const auto& line : host().logLines()) {
        n += line.find(needle) != std::string::npos ? 1 : 0;
    }
    return n;
}
