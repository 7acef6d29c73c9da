// SPDX-License-Identifier: MIT
// What a benchmark of this suite consists of: an operation, who carries it out, and how.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace benchmarks {

// Does the work once. What it returns is destroyed outside of the measured time where that is worth
// stopping the clock for (1000 fragments and more), for all contenders alike.
using Operation = std::function<std::shared_ptr<void>()>;

// Makes the operation for a document of that many fragments. It must check the result of the
// operation before it returns it: a wrong result must not be timed. See require().
using Prepare = std::function<Operation(int fragments)>;

// Adds a row of CPU time per fragment. The contender to whose time all others are related is "records".
void addTime(const char* operation, const char* contender, const Prepare& prepare,
             const std::vector<int>& sizes = {7, 1000, 100000});

// Adds rows of heap bytes and of allocations per fragment of what the operation returns.
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
