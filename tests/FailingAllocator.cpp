// SPDX-License-Identifier: MIT
#include "FailingAllocator.h"

#include <QtCore/QtGlobal>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    #include <dlfcn.h>
    #include <execinfo.h>
#endif

#if defined(__has_feature)
    #if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer)
        #define UNDER_SANITIZER
    #endif
#endif
#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__)
    #define UNDER_SANITIZER
#endif

namespace testing_support {

namespace {

thread_local long allocations = 0;

// While armed, allocationsLeft is the number of allocations by the armed allocator that still succeed.
thread_local bool armed = false;
thread_local Allocator armedAllocator = Allocator::New;
thread_local Extent armedExtent = Extent::Once;
thread_local long allocationsLeft = 0;
thread_local bool isAnyFailed = false;

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
// Qt 6 ends the process when memory runs out while its XML reader is constructed, so no allocation fails
// there.
bool isSpared() noexcept
{
    armed = false;
    void* frames[64];
    const int depth = backtrace(frames, 64);
    bool isConstructing = false;
    for (int i = 0; i < depth && !isConstructing; ++i) {
        Dl_info info;
        static const char constructor[] = "_ZN16QXmlStreamReaderC";
        isConstructing = dladdr(frames[i], &info) != 0 && info.dli_sname
                         && std::strncmp(info.dli_sname, constructor, sizeof constructor - 1) == 0;
    }
    armed = true;
    return isConstructing;
}

// The first call of backtrace() loads a library, which allocates.
void prepareToSpare()
{
    void* frame = nullptr;
    backtrace(&frame, 1);
}
#else
bool isSpared() noexcept { return false; }
void prepareToSpare() {}
#endif

bool allocationFails(Allocator allocator) noexcept
{
    if (!armed || allocator != armedAllocator)
        return false;
    if (allocationsLeft > 0) {
        --allocationsLeft;
        return false;
    }
    if ((isAnyFailed && armedExtent == Extent::Once) || isSpared())
        return false;
    isAnyFailed = true;
    return true;
}

void* allocateOrNull(std::size_t size) noexcept
{
    ++allocations;
    return allocationFails(Allocator::New) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size)
{
    void* const memory = allocateOrNull(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

} // namespace

bool canFail(Allocator allocator)
{
// The containers of Qt 6 do not survive it: they write to null, or an assertion ends the process.
#if defined(UNDER_SANITIZER) || QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return allocator == Allocator::New;
#else
    static_cast<void>(allocator);
    return true;
#endif
}

FailingAllocations::FailingAllocations(long successes, Allocator allocator, Extent extent)
{
    prepareToSpare();
    armedAllocator = allocator;
    armedExtent = extent;
    allocationsLeft = successes;
    isAnyFailed = false;
    armed = true;
}

FailingAllocations::~FailingAllocations() { armed = false; }

bool FailingAllocations::hasFailed() const { return isAnyFailed; }

long countAllocations() { return allocations; }

} // namespace testing_support

using testing_support::allocate;
using testing_support::allocateOrNull;

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocateOrNull(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocateOrNull(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

#ifndef UNDER_SANITIZER
// The libraries call these only if they are visible; clang would hide them.
    #pragma GCC visibility push(default)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size)
{
    if (!testing_support::allocationFails(testing_support::Allocator::Malloc))
        return __libc_malloc(size);
    errno = ENOMEM;
    return nullptr;
}

void* calloc(std::size_t count, std::size_t size)
{
    if (!testing_support::allocationFails(testing_support::Allocator::Malloc))
        return __libc_calloc(count, size);
    errno = ENOMEM;
    return nullptr;
}

void* realloc(void* memory, std::size_t size)
{
    if (!testing_support::allocationFails(testing_support::Allocator::Malloc))
        return __libc_realloc(memory, size);
    errno = ENOMEM;
    return nullptr;
}
}
    #pragma GCC visibility pop
#endif
