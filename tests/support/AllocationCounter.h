#pragma once

// Counts the heap allocations a piece of work makes on the calling thread: what
// runs on the host's audio thread must never allocate. On glibc without
// sanitizers the test program's malloc and friends are replaced by counting
// ones that forward to glibc's own, so C++ allocations and those of C libraries
// (libebur128, SoundTouch) are seen alike. Elsewhere nothing is counted and
// allocationCountingSupported() says so.
namespace Lumora::Testing {

// Whether this build counts at all (glibc's allocator, no sanitizer).
bool allocationCountingSupported();

// Makes one C++ and one C allocation and counts them: 2 where the counter sees
// this program's allocations. A no-allocation test checks it first, or a
// counter that silently saw nothing would pass it.
long probeAllocations();

// Counts this thread's allocations while it is open.
class AllocationScope {
public:
    AllocationScope();
    ~AllocationScope();
    AllocationScope(const AllocationScope&) = delete;
    AllocationScope& operator=(const AllocationScope&) = delete;
    long count() const;

private:
    long start_;
};

template <typename Work>
long allocationsIn(Work&& work) {
    AllocationScope scope;
    work();
    return scope.count();
}

} // namespace Lumora::Testing
