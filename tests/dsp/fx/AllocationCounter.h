#pragma once

// Counts calls of the global operator new (scalar and array, also from inside
// shared libraries such as SoundTouch) while a scope is open. The counting
// replacement is defined weak, so another test file of this executable may
// bring its own; available() then says whether counting really works.
namespace FxTest {

class AllocationScope {
public:
    AllocationScope();
    ~AllocationScope();
    AllocationScope(const AllocationScope&) = delete;
    AllocationScope& operator=(const AllocationScope&) = delete;
    long count() const;

    static bool available();

private:
    long start_;
};

} // namespace FxTest
