// SPDX-License-Identifier: MIT
// Writes records whose content is made from the input, without Qt's writer and with it.
#include "fuzz/AnyRecord.h"

#include "tests/unit/WritingBothWays.h"

using namespace fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Random decisions(data, size);
    useAnyClass(decisions, [&](auto tag) {
        typename decltype(tag)::Record record;
        const Loggers loggers;
        fillAtRandom(record, decisions, loggers, unusualText);
        if (decisions.oneIn(20))
            renameAtRandom(record, decisions);
        record.SetValidate(decisions.oneIn(2));
        for (const auto& both : seenOfWritingBothWays(record, loggers))
            requireSame(both, "writing without and with Qt's writer");
    });
    return 0;
}
