#include "AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {
std::atomic<long> gAllocations{0};
std::atomic<int> gScopes{0};

void* countedAllocate(std::size_t size) {
    if (gScopes.load(std::memory_order_relaxed) > 0) {
        gAllocations.fetch_add(1, std::memory_order_relaxed);
    }
    return std::malloc(size == 0 ? 1 : size);
}
} // namespace

#if defined(__GNUC__)
// Replacements of the throwing and the non-throwing forms; the matching
// deletes of the library call free(), which suits malloc'ed blocks.
__attribute__((weak)) void* operator new(std::size_t size) {
    if (void* p = countedAllocate(size)) {
        return p;
    }
    throw std::bad_alloc();
}
__attribute__((weak)) void* operator new[](std::size_t size) {
    if (void* p = countedAllocate(size)) {
        return p;
    }
    throw std::bad_alloc();
}
__attribute__((weak)) void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return countedAllocate(size);
}
__attribute__((weak)) void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return countedAllocate(size);
}
#endif

namespace FxTest {

AllocationScope::AllocationScope() : start_(gAllocations.load()) {
    gScopes.fetch_add(1);
}
AllocationScope::~AllocationScope() {
    gScopes.fetch_sub(1);
}
long AllocationScope::count() const {
    return gAllocations.load() - start_;
}

bool AllocationScope::available() {
    AllocationScope scope;
    // volatile keeps the compiler from eliding the pair.
    int* volatile probe = new int(1);
    delete probe;
    return scope.count() == 1;
}

} // namespace FxTest
