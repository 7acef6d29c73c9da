// SPDX-License-Identifier: MIT
// A benchmark of this suite: an operation, the contender that carries it out, and how.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace benchmarks {

// Does the work once. From 1000 fragments on, the result is destroyed outside the measured time, for all
// contenders. For fewer fragments, stopping the clock would cost more than destroying the result.
using Operation = std::function<std::shared_ptr<void>()>;

// Makes the operation for a document of that many fragments. It must check the operation's result with
// require() first, so that no wrong result is timed.
using Prepare = std::function<Operation(int fragments)>;

// The sizes of whole documents.
const std::vector<int> wholeSizes = {1, 1000, 100000};

// Destroys the result of the operation inside the measured time.
Prepare untilDestroyed(const Prepare& prepare);

// Adds a row of CPU time per fragment. The table also shows the time of the contender "records" divided by
// the time of each other contender.
void addTime(const char* operation, const char* contender, const Prepare& prepare,
             const std::vector<int>& sizes = {7, 1000, 100000});

// Adds a row of heap bytes and one of allocations, per fragment, for the operation's result.
void addMemory(const char* operation, const char* contender, const Prepare& prepare);

// Each file of contenders adds its own benchmarks in a function of this kind, which Suite.cpp calls.
void addRecords();
void addPlainLoops();
void addProtobuf();
void addPugixml();
void addXsd();
void addGsoap();
void addKdSoap();

void require(bool correct);

} // namespace benchmarks
