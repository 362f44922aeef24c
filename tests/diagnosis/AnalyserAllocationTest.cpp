// The analyser's process must not allocate: it runs on the host's audio thread.

#include "diagnosis/DiagnosisAnalyser.h"
#include "support/AllocationCounter.h"

#include <ebur128.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace Lumora {
namespace {

using Testing::allocationsIn;

TEST(AnalyserAllocation, CounterSeesCxxAndLibraryAllocations) {
    if (!Testing::allocationCountingSupported()) {
        GTEST_SKIP() << "allocation counting needs glibc's allocator without sanitizers";
    }
    ASSERT_EQ(Testing::probeAllocations(), 2) << "the counter misses this program's allocations";
    EXPECT_EQ(allocationsIn([] {
                  auto p = std::make_unique<int>(1);
                  EXPECT_EQ(*p, 1);
              }),
              1);
    // libebur128 in block-list mode mallocs one node per 100 ms gating block:
    // the counter must see a library's allocations too, or the no-allocation
    // tests would prove nothing where a library allocates.
    ebur128_state* st = ebur128_init(1, 48000, EBUR128_MODE_I);
    ASSERT_NE(st, nullptr);
    std::vector<float> second(48000);
    for (size_t i = 0; i < second.size(); ++i) {
        // A tone, not DC: the K-weighting removes DC, and gating blocks below
        // -70 LUFS are never stored.
        second[i] = static_cast<float>(0.1 * std::sin(0.13 * static_cast<double>(i)));
    }
    EXPECT_GE(allocationsIn([&] { ebur128_add_frames_float(st, second.data(), second.size()); }),
              5);
    ebur128_destroy(&st);
}

TEST(AnalyserAllocation, ProcessNeverAllocatesAfterPrepare) {
    if (!Testing::allocationCountingSupported()) {
        GTEST_SKIP() << "allocation counting needs glibc's allocator without sanitizers";
    }
    ASSERT_EQ(Testing::probeAllocations(), 2) << "the counter misses this program's allocations";
    auto analyser = std::make_unique<DiagnosisAnalyser>();
    analyser->prepare(48000.0);
    analyser->setRecording(true);
    std::vector<float> block(4800);
    std::vector<float> out(DiagnosisAnalyser::kCaptureSize);
    double phase = 0.0;
    const long count = allocationsIn([&] {
        // One minute of speech-like noise in the filter's usual blocks, with the
        // capture on and drained now and then, plus odd block sizes.
        unsigned seed = 1;
        for (int b = 0; b < 6000; ++b) {
            for (int i = 0; i < 480; ++i) {
                seed = seed * 1664525u + 1013904223u;
                block[static_cast<size_t>(i)] =
                    static_cast<float>(0.2 * std::sin(phase) + ((seed >> 9) * 1e-8 - 0.04));
                phase += 0.13;
            }
            analyser->process(block.data(), 480);
            if (b % 100 == 0) {
                analyser->readCapture(out.data(), out.size());
                (void)analyser->snapshot();
            }
        }
        analyser->process(block.data(), 4800);
        analyser->process(block.data(), 1);
        analyser->process(block.data(), 1023);
    });
    EXPECT_EQ(count, 0);
    EXPECT_EQ(analyser->snapshot().blockCount, 6003u);
    EXPECT_GT(analyser->snapshot().shortTermLufs, -70.0f);
}

} // namespace
} // namespace Lumora
