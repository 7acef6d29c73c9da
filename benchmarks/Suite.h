// SPDX-License-Identifier: MIT
// A benchmark of this suite: an operation, the contender that carries it out, and how.
#pragma once

#include "Require.h"

#include <functional>
#include <memory>
#include <vector>

namespace benchmarks {

// Does the work once. The result is destroyed inside the measured time.
using Operation = std::function<std::shared_ptr<void>()>;

// Makes the operation for a document of that many fragments. It must check the operation's result with
// require() first, so that no wrong result is timed.
using Prepare = std::function<Operation(int fragments)>;

// Adds a row of CPU time per fragment. The table also shows the time of the contender "records" divided by
// the time of each other contender.
void addTime(const char* operation, const char* contender, const Prepare& prepare,
             const std::vector<int>& sizes = {1, 1000, 100000});

// Adds a row of heap bytes and one of allocations, per fragment, for the operation's result.
void addMemory(const char* operation, const char* contender, const Prepare& prepare);

// Adds a row with a value that is measured in another way, for one size.
void addValue(const char* operation, const char* contender, int fragments,
              const std::function<double(int fragments)>& measure);

// Each file of contenders adds its own benchmarks in a function of this kind, which Suite.cpp calls.
void addRecords();
void addPlainLoops();
void addPeakMemory();
void addLinks();
void addProtobuf();
void addPugixml();
void addXsd();
void addGsoap();
void addKdSoap();

// Carries out what addPeakMemory() starts in a process of its own: "load" or "save", and a file.
int measurePeakMemory(const char* operation, const char* path);

} // namespace benchmarks
