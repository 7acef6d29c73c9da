// SPDX-License-Identifier: MIT
// Reads any bytes as the binary form of a whole object, plain or compressed: from bytes, a stream in memory,
// and devices. All must give the same.
#include "fuzz/AnyRecord.h"

#include "tests/TestDevices.h"

#include "modelkit/ReadingReport.h"

using namespace fuzzing;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const QByteArray& form = input.bytes;
    const MODELKIT::LimitsInScope inScope(smallLimits());
    useAnyClass(input.decisions, [&](auto tag) {
        using R = typename decltype(tag)::Record;
        const bool validates = input.decisions.oneIn(2);
        const std::string fromBytes =
            seenOfReadingInto<R>(validates, [&](R& record) { return record.SetBinaryRepresentation(form); });
        const std::string withReport = seenOfReadingInto<R>(validates, [&](R& record) {
            const MODELKIT::ReadingReport report;
            return record.SetBinaryRepresentation(form);
        });
        requireSame(fromBytes, withReport, "reading with and without a report");
        const std::string fromBuffer = seenOfReadingInto<R>(validates, [&](R& record) {
            QBuffer buffer;
            buffer.setData(form);
            buffer.open(QIODevice::ReadOnly);
            return record.LoadBinary(&buffer);
        });
        const std::string fromPipe = seenOfReadingInto<R>(validates, [&](R& record) {
            ForwardDevice device(form);
            return record.LoadBinary(&device);
        });
        // A pipe does not tell that it has ended.
        if (IMKObject::GetLastFailure().kind != Failure::NotWholeYet)
            requireSame(fromBuffer, fromPipe, "reading from a buffer and from a pipe");
        requireSame(fromBytes, fromBuffer, "reading from bytes and from a buffer");
    });
    return 0;
}
