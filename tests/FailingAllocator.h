// SPDX-License-Identifier: MIT
// Memory that runs out when a test wants it to. A program with this in it has an operator new that can be
// told to fail, and, where malloc can be replaced, such a malloc; see with_failing_allocator in
// CMakeLists.txt.
#pragma once

#include <gtest/gtest.h>

#include <new>

namespace testing_support {

// What fails.
enum class Allocator
{
    New,
    // Here Qt's containers take their memory. It cannot be replaced under a sanitizer.
    Malloc
};

enum class Extent
{
    Once,
    FromThenOn
};

bool canFail(Allocator allocator);

// Lets an allocation in this thread fail as long as the object lives: the one behind so many that succeed.
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

// Lets one allocation of the statement fail. Returns whether it was reached; then std::bad_alloc must come
// out.
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
