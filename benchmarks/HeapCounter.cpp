// SPDX-License-Identifier: MIT
#include "HeapCounter.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>

#include <malloc.h>

namespace {

struct Counts
{
    bool isOn = false;
    long long bytes = 0;
    long long mostBytes = 0;
    long long allocations = 0;
};

Counts counts;

// The allocator keeps the size in front of each block.
long long sizeOf(void* block)
{
    return static_cast<long long>(malloc_usable_size(block) + sizeof(std::size_t));
}

void* counted(void* block)
{
    if (counts.isOn && block) {
        ++counts.allocations;
        counts.bytes += sizeOf(block);
        counts.mostBytes = std::max(counts.mostBytes, counts.bytes);
    }
    return block;
}

} // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) { return counted(__libc_malloc(size)); }
void* calloc(std::size_t count, std::size_t size) { return counted(__libc_calloc(count, size)); }
void* memalign(std::size_t alignment, std::size_t size) { return counted(__libc_memalign(alignment, size)); }
void* aligned_alloc(std::size_t alignment, std::size_t size) { return memalign(alignment, size); }

int posix_memalign(void** block, std::size_t alignment, std::size_t size)
{
    *block = memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}

void free(void* block)
{
    if (counts.isOn && block)
        counts.bytes -= sizeOf(block);
    __libc_free(block);
}

void* realloc(void* block, std::size_t size)
{
    if (!counts.isOn || !block)
        return counted(__libc_realloc(block, size));
    const long long before = sizeOf(block);
    void* const result = __libc_realloc(block, size);
    // A block that moves may exist twice for a moment.
    if (result && result != block)
        counted(result);
    else if (result)
        counts.bytes += sizeOf(result);
    if (result || size == 0)
        counts.bytes -= before;
    counts.mostBytes = std::max(counts.mostBytes, counts.bytes);
    return result;
}

} // extern "C"

namespace benchmarks {

HeapCounter::HeapCounter()
{
    counts = Counts();
    counts.isOn = true;
}

HeapCounter::~HeapCounter() { counts.isOn = false; }

long long HeapCounter::bytes() { return counts.bytes; }
long long HeapCounter::mostBytes() { return counts.mostBytes; }
long long HeapCounter::allocations() { return counts.allocations; }

} // namespace benchmarks
