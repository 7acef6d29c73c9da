// SPDX-License-Identifier: MIT
// Memory that runs out when a test wants it to. It replaces operator new, and where possible malloc, by
// functions that can be made to fail. The programs that use it are in with_failing_allocator in
// CMakeLists.txt.
#pragma once

#include <gtest/gtest.h>

#include <new>

namespace testing_support {

// The function that fails.
enum class Allocator
{
    New,
    // The containers of Qt use it. It cannot be replaced under a sanitizer, and those of Qt 6 do not survive
    // that it fails.
    Malloc
};

enum class Extent
{
    Once,
    FromThenOn
};

bool canFail(Allocator allocator);

// While the object lives, so many allocations in this thread succeed, and then the next one or all fail.
class FailingAllocations
{
public:
    explicit FailingAllocations(long successes, Allocator allocator = Allocator::New,
                                Extent extent = Extent::Once);
    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
    ~FailingAllocations();

    // Whether one has failed so far.
    bool hasFailed() const;
};

// How often this thread has called operator new.
long countAllocations();

template <class Statement>
long allocationsIn(Statement&& statement)
{
    const long before = countAllocations();
    statement();
    return countAllocations() - before;
}

// Lets one allocation of the statement fail. Returns whether the statement got that far; then it must throw
// std::bad_alloc.
template <class Statement>
bool failsOutOfMemory(long successes, Statement&& statement)
{
    bool isThrown = false;
    const FailingAllocations failing(successes);
    try {
        statement();
    } catch (const std::bad_alloc&) {
        isThrown = true;
    }
    EXPECT_EQ(failing.hasFailed(), isThrown) << "after " << successes << " allocations";
    return isThrown;
}

} // namespace testing_support
