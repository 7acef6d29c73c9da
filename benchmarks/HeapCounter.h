// SPDX-License-Identifier: MIT
// What the heap holds, counted at every allocation of the program and its libraries.
#pragma once

namespace benchmarks {

// Counts while it exists. There is one at a time.
class HeapCounter
{
public:
    HeapCounter();
    HeapCounter(const HeapCounter&) = delete;
    HeapCounter& operator=(const HeapCounter&) = delete;
    ~HeapCounter();

    // How many bytes more the heap holds than in the beginning, with what the allocator adds to each block.
    static long long bytes();
    // The most that it has been.
    static long long mostBytes();
    // How many blocks were allocated.
    static long long allocations();
};

} // namespace benchmarks
