// SPDX-License-Identifier: MIT
// A benchmark of this suite: an operation, the contender that carries it out, and how.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace benchmarks {

// Does the work once. From 1000 fragments on, its result is destroyed outside the measured time, for all
// contenders alike; below that, stopping the clock would cost more.
using Operation = std::function<std::shared_ptr<void>()>;

// Makes the operation for a document of that many fragments. It must check the operation's result with
// require() first, so that no wrong result is timed.
using Prepare = std::function<Operation(int fragments)>;

// Adds a row of CPU time per fragment. The time of the contender "records" is divided by that of each other
// one.
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
