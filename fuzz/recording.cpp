// SPDX-License-Identifier: MIT
// Reads any bytes as a recording, from a device that gives all at once and from one that gives them in small
// pieces. Both must give the same messages and errors, and lose no byte of a message.
#include "fuzz/AnyRecord.h"

#include "tests/documents/RecordingSupport.h"

using namespace fuzzing;

namespace {

std::string seenOfRecording(QIODevice& device, const QByteArray& all, bool rejects)
{
    std::string seen;
    ROUTERDOCUMENTS::RecordingReader reader(device);
    ROUTERDOCUMENTS::RecordedMessage message;
    for (int rounds = 0;; ++rounds) {
        require(rounds <= 2 * all.size() + 2, "reading comes to an end");
        try {
            if (!reader.ReadNext(message))
                return seen;
        } catch (const ROUTERDOCUMENTS::DocumentError& error) {
            require(error.GetKind() != Failure::None, "an error has a kind");
            seen += "\nerror " + seenOf(error.GetText()) + seenOf(error.GetPlace());
            continue;
        }
        require(all.mid(static_cast<int>(message.offset), static_cast<int>(message.bytes.size()))
                    == message.bytes,
                "a message stands in the recording");
        seen += '\n' + std::to_string(message.number) + ' ' + std::to_string(message.line) + ':'
                + std::to_string(message.column) + seenOf(message.bytes);
        if (rejects && message.number % 2 == 0)
            reader.Reject(message);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const MODELKIT::LimitsInScope inScope(smallLimits());
    const bool rejects = input.decisions.oneIn(4);
    QBuffer whole;
    whole.setData(input.bytes);
    whole.open(QIODevice::ReadOnly);
    recording_support::Pieces pieces(input.bytes, 1 + input.decisions.below(9));
    requireSame(seenOfRecording(whole, input.bytes, rejects), seenOfRecording(pieces, input.bytes, rejects),
                "a recording in one and in several pieces");
    return 0;
}
