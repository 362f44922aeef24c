#include "AllocationCounter.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {
thread_local int tScopes = 0;
thread_local long tAllocations = 0;
} // namespace

// Sanitizers bring their own allocator, and mingw has no __libc_ entry points.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define LUMORA_COUNT_MALLOC 1

namespace {
void noteAllocation() {
    if (tScopes > 0) {
        ++tAllocations;
    }
}
} // namespace

extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* p, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* p);

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
#endif

namespace Lumora::Testing {

AllocationScope::AllocationScope() : start_(tAllocations) {
    ++tScopes;
}
AllocationScope::~AllocationScope() {
    --tScopes;
}
long AllocationScope::count() const {
    return tAllocations - start_;
}

bool allocationCountingSupported() {
#ifdef LUMORA_COUNT_MALLOC
    return true;
#else
    return false;
#endif
}

long probeAllocations() {
    AllocationScope scope;
    // Through volatile pointers, so that neither call can be optimised away.
    void* volatile cxx = ::operator new(16);
    ::operator delete(cxx);
    void* volatile c = std::malloc(16);
    std::free(c);
    return scope.count();
}

} // namespace Lumora::Testing
