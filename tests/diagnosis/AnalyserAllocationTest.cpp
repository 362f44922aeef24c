// The analyser's process must not allocate: it runs on the host's audio thread.
// On glibc this file interposes malloc and friends for the whole test program
// (forwarding to glibc's own) and counts the calls made by the counting thread,
// which catches C++ allocations and libebur128's C allocations alike.

#include "diagnosis/DiagnosisAnalyser.h"

#include <ebur128.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#define LUMORA_COUNT_MALLOC 1

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* p, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* p);
}

namespace {
thread_local bool tCounting = false;
thread_local long tAllocations = 0;
inline void noteAllocation() {
    if (tCounting) {
        ++tAllocations;
    }
}
} // namespace

extern "C" {
void* malloc(size_t size) {
    noteAllocation();
    return __libc_malloc(size);
}
void* calloc(size_t count, size_t size) {
    noteAllocation();
    return __libc_calloc(count, size);
}
void* realloc(void* p, size_t size) {
    noteAllocation();
    return __libc_realloc(p, size);
}
void* aligned_alloc(size_t alignment, size_t size) {
    noteAllocation();
    return __libc_memalign(alignment, size);
}
void* memalign(size_t alignment, size_t size) {
    noteAllocation();
    return __libc_memalign(alignment, size);
}
int posix_memalign(void** out, size_t alignment, size_t size) {
    noteAllocation();
    void* p = __libc_memalign(alignment, size);
    if (!p) {
        return 12; // ENOMEM
    }
    *out = p;
    return 0;
}
void free(void* p) {
    __libc_free(p);
}
}

namespace {
// Counts the allocations that `work` makes on this thread.
template <typename Work>
long allocationsIn(Work&& work) {
    tAllocations = 0;
    tCounting = true;
    work();
    tCounting = false;
    return tAllocations;
}
} // namespace
#endif

namespace Lumora {
namespace {

#ifdef LUMORA_COUNT_MALLOC

TEST(AnalyserAllocation, CounterSeesCxxAndLibraryAllocations) {
    EXPECT_EQ(allocationsIn([] {
                  auto p = std::make_unique<int>(1);
                  EXPECT_EQ(*p, 1);
              }),
              1);
    // libebur128 in block-list mode mallocs one node per 100 ms gating block:
    // the counter must see those, or the test below would prove nothing.
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

#else

TEST(AnalyserAllocation, ProcessNeverAllocatesAfterPrepare) {
    GTEST_SKIP() << "allocation counting needs glibc's allocator without sanitizers";
}

#endif

} // namespace
} // namespace Lumora
