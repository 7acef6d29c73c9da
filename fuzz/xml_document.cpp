// SPDX-License-Identifier: MIT
// Reads any bytes as an XML document, with and without a report. Only a report makes Qt's reader read them.
#include "fuzz/AnyRecord.h"

#include "tests/unit/ReadingBothWays.h"

using namespace fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const MODELKIT::LimitsInScope inScope(smallLimits());
    useAnyClass(input.decisions, [&](auto tag) {
        using R = typename decltype(tag)::Record;
        requireSame(seenOfBothWays<R>(input.bytes, input.decisions), "reading with and without a report");
        // A place is inside the document.
        const MODELKIT::Place& place = IMKObject::GetLastFailure().place;
        require(place.line <= input.bytes.count('\n') + input.bytes.count('\r') + 2, "the line exists");
        const bool validates = input.decisions.oneIn(2);
        seenOfReadingInto<R>(validates, [&](R& record) { return record.SetXmlBytes(input.bytes); });
    });
    return 0;
}
