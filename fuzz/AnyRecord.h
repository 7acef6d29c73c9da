// SPDX-License-Identifier: MIT
// What the targets share that read records from any bytes.
#pragma once

#include "fuzz/Requirements.h"

#include "tests/unit/SeenSupport.h"

#include "modelkit/Limits.h"

#include <QtCore/QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fuzzing {

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;

// An input: a few bytes that decide what is done with the others.
struct Input
{
    Input(const std::uint8_t* data, std::size_t size) : Input(data, size, std::min<std::size_t>(size, 4)) {}

    Random decisions;
    QByteArray bytes;

private:
    Input(const std::uint8_t* data, std::size_t size, std::size_t first)
        : decisions(data, first),
          bytes(reinterpret_cast<const char*>(data) + first, static_cast<int>(size - first))
    {}
};

// Limits that inputs of a fuzzer reach.
inline MODELKIT::Limits smallLimits()
{
    MODELKIT::Limits limits;
    limits.inputSize = 3000;
    limits.inflatedSize = 6000;
    limits.nestingDepth = 12;
    limits.attributes = 8;
    limits.listItems = 20;
    limits.waitingTime = 0;
    return limits;
}

// Reads the bytes into a record of its own, and tells all that can be seen of that.
template <class R, class Read>
std::string seenOfReadingInto(bool validates, const Read& read)
{
    R record;
    const Loggers loggers;
    giveSettings(record, validates, loggers.ofOwner);
    std::string seen = seenOfOperation(loggers, [&] { return read(record); });
    const Failure failure = IMKObject::GetLastFailure();
    require(failure.kind != Failure::Interrupted, "nothing has interrupted the reading");
    require((failure.kind == Failure::None) == failure.text.isEmpty(), "a failure has a text");
    seen += '\n';
    appendSeen(seen, record, loggers);
    // Whatever has happened, the record can be used afterwards.
    record.Reset();
    R other;
    other = record;
    require(record == other && !(record != other), "a copy equals its source");
    require(R() == record, "a record that was reset equals a new one");
    return seen;
}

} // namespace fuzzing
