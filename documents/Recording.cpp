// SPDX-License-Identifier: MIT
#include "documents/Recording.h"

#include "documents/RecordingMachine.h"

namespace ROUTERDOCUMENTS {

RecordingReader::RecordingReader(QIODevice& device, const RecordingOptions& options)
    : m_machine(std::make_unique<Machine>(device, options))
{}

RecordingReader::~RecordingReader() = default;

bool RecordingReader::ReadNext(RecordedMessage& message) { return m_machine->ReadNext(message); }

qint64 RecordingReader::GetExaminedBytes() const { return m_machine->GetExaminedBytes(); }

qint64 ForEachMessage(QIODevice& device, const RecordingOptions& options,
                      const std::function<void(const RecordedMessage&)>& onMessage,
                      const std::function<void(const DocumentError&)>& onError)
{
    RecordingReader reader(device, options);
    RecordedMessage message;
    const auto readNext = [&] {
        try {
            return reader.ReadNext(message);
        } catch (const DocumentError& error) {
            onError(error);
            // Only then the reader has not gone on.
            return error.GetKind() != MODELKIT::Failure::NotWholeYet;
        }
    };
    qint64 count = 0;
    while (readNext())
        if (message.number > 0) {
            ++count;
            onMessage(message);
        }
    return count;
}

} // namespace ROUTERDOCUMENTS
