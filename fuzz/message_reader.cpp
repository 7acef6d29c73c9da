// SPDX-License-Identifier: MIT
// Gives a MessageReader any bytes: the first one says how they are split, the others are what comes over the
// connection. However they are split, the outcomes must be the same.
#include "fuzz/ReaderOutcomes.h"

#include <cstddef>
#include <cstdint>
#include <random>

using namespace fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const auto* const bytes = reinterpret_cast<const char*>(data) + 1;
    const auto count = static_cast<qint64>(size) - 1;
    const auto whole = outcomesOf(bytes, count, [](qint64 left) { return left; });
    requireSame(whole, outcomesOf(bytes, count, [](qint64) { return 1; }));
    std::minstd_rand random(data[0]);
    // Short and long pieces are as likely.
    const auto anySize = [&random](qint64) { return qint64(1) << (random() >> 4U) % 10; };
    requireSame(whole, outcomesOf(bytes, count, anySize));
    return 0;
}
