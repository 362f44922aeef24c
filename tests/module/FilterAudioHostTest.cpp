// Packets through the filter in the real libobs: layouts, odd packets, lifecycle.
#include "HostEnvironment.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <thread>

// A fresh filter (its keys hold the built-in voices, none on air) hands every
// layout back bit for bit, at the output's rate, whatever the packet size:
// late by the voices' constant delay, and with timestamps moved earlier by
// exactly that delay, so OBS keeps voice and picture together. Its creation and
// its delay are logged.
TEST(FilterAudioHost, EveryLayoutComesBackBitExactOnItsOwnTime) {
    const struct {
        uint32_t rate;
        int channels, block;
    } layouts[] = {{48000, 1, 480}, {48000, 2, 1024}, {48000, 6, 480}, {44100, 2, 441}};
    for (const auto& l : layouts) {
        const std::string created = "[Lumora] filter created (sr=" + std::to_string(l.rate) +
                                    " ch=" + std::to_string(l.channels) + ")";
        SCOPED_TRACE(created);
        ASSERT_NE(freshFilter(l.channels, l.rate), nullptr);
        const auto in = makeSignal(l.channels, 9600);
        size_t delay = 0;
        const auto out = pushThrough(in, l.block, delay);
        host().removeAllFilters();
        EXPECT_EQ(delay, static_cast<size_t>(std::lround(0.064 * l.rate)));
        ASSERT_EQ(out.size(), in.size());
        for (size_t c = 0; c < in.size(); ++c) {
            ASSERT_EQ(out[c].size(), in[c].size()) << "channel " << c;
            EXPECT_EQ(std::memcmp(out[c].data() + delay, in[c].data(),
                                  (in[c].size() - delay) * sizeof(float)),
                      0)
                << "channel " << c;
        }
        EXPECT_EQ(countLines(created), 1);
        EXPECT_GE(countLines("[Lumora] output delay 64.0 ms"), 1);
    }
}

TEST(FilterAudioHost, ZeroFramesAndMissingPlanesComeBackUntouched) {
    std::string error;
    ASSERT_TRUE(host().resetAudio(48000, 2, error)) << error;
    obs_source_t* filter = host().addFilter("lumora_filter", "", error);
    ASSERT_NE(filter, nullptr) << error;

    float left[4] = {0.1f, 0.2f, 0.3f, 0.4f};
    obs_audio_data packet = {};
    packet.data[0] = reinterpret_cast<uint8_t*>(left);
    packet.frames = 0;
    packet.timestamp = 1234;
    EXPECT_EQ(callFilterAudio(filter, &packet), &packet);
    EXPECT_EQ(packet.frames, 0u);
    EXPECT_EQ(packet.timestamp, 1234u);
    EXPECT_EQ(left[0], 0.1f);

    obs_audio_data empty = {};
    empty.frames = 480;
    EXPECT_EQ(callFilterAudio(filter, &empty), &empty);
    EXPECT_EQ(callFilterAudio(filter, nullptr), nullptr);

    // Through libobs itself a zero-frame packet is simply nothing.
    std::vector<std::vector<float>> out;
    std::vector<const float*> planes = {left, left};
    host().push(planes, 0, out);
    host().removeAllFilters();
}

TEST(FilterAudioHost, NanSamplesDoNotCrashThePassThrough) {
    std::string error;
    ASSERT_TRUE(host().resetAudio(48000, 2, error)) << error;
    ASSERT_NE(host().addFilter("lumora_filter", "", error), nullptr) << error;
    std::vector<float> nan(480, std::numeric_limits<float>::quiet_NaN());
    std::vector<float> inf(480, std::numeric_limits<float>::infinity());
    std::vector<std::vector<float>> out;
    host().push({nan.data(), inf.data()}, 480, out);
    host().removeAllFilters();
}

TEST(FilterAudioHost, HundredCreateDestroyCyclesLeaveNothingBehind) {
    std::string error;
    ASSERT_TRUE(host().resetAudio(48000, 2, error)) << error;
    auto cycle = [&] {
        ASSERT_NE(host().addFilter("lumora_filter", "", error), nullptr) << error;
        std::vector<std::vector<float>> out;
        auto signal = makeSignal(2, 480);
        host().push({signal[0].data(), signal[1].data()}, 480, out);
        host().removeAllFilters();
    };
    // libobs frees sources on a queue of its own: wait until every filter made
    // so far has really gone.
    auto settle = [] {
        for (int i = 0; i < 200 && countLines("[Lumora] filter created") !=
                                       countLines("[Lumora] filter destroyed");
             ++i) {
            obs_wait_for_destroy_queue();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        // Our destroy callback runs before libobs frees the source's own
        // buffers, which it does afterwards on its destroy queue.
        obs_wait_for_destroy_queue();
    };
    cycle(); // warm up lazily created host state
    settle();
    const long obsAllocs = bnum_allocs();
    const size_t heap = mallinfo2().uordblks;
    const int created = countLines("[Lumora] filter created");
    const int destroyed = countLines("[Lumora] filter destroyed");
    for (int i = 0; i < 100; ++i) {
        cycle();
    }
    settle();
    EXPECT_EQ(countLines("[Lumora] filter created") - created, 100);
    EXPECT_EQ(countLines("[Lumora] filter destroyed") - destroyed, 100);
    // libobs's own threads allocate a little now and then and, on a loaded
    // machine, may still be finishing a release: they get a moment to come back.
    // A leak per cycle would show as a hundred or more and never come back.
    long extraAllocs = bnum_allocs() - obsAllocs;
    for (int i = 0; i < 100 && extraAllocs >= 10; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        obs_wait_for_destroy_queue();
        extraAllocs = bnum_allocs() - obsAllocs;
    }
    EXPECT_LT(extraAllocs, 10);
    // One filter instance holds well over a megabyte (analyser rings, delay lines):
    // a leak of even one instance per cycle would show as 100 MB here.
    const long grown = static_cast<long>(mallinfo2().uordblks) - static_cast<long>(heap);
    EXPECT_LT(grown, 2L * 1024 * 1024) << "heap grew by " << grown << " bytes";
}
