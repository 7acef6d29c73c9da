// SPDX-License-Identifier: MIT
// Reads documents that are made from the input, so that most of them are nearly right, without Qt's reader
// and with it.
#include "fuzz/AnyRecord.h"

#include "tests/unit/RandomXml.h"
#include "tests/unit/ReadingBothWays.h"

using namespace fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Random decisions(data, size);
    const MODELKIT::LimitsInScope inScope(smallLimits());
    useAnyClass(decisions, [&](auto tag) {
        using R = typename decltype(tag)::Record;
        const QByteArray xml = RandomXml(decisions).make(R().GetObjectName().toUtf8());
        requireSame(seenOfBothWays<R>(xml, decisions), xml.constData());
    });
    return 0;
}
