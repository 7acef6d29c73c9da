// SPDX-License-Identifier: MIT
#include "documents/Recording.h"

#include "documents/FrameRecording.h"
#include "documents/RecordingMachine.h"

namespace ROUTERDOCUMENTS {

RecordingReader::RecordingReader(QIODevice& device, const RecordingOptions& options)
{
    if (options.frame)
        m_source = std::make_unique<FrameMachine>(device, *options.frame);
    else
        m_source = std::make_unique<Machine>(device, options);
}

RecordingReader::~RecordingReader() = default;

bool RecordingReader::ReadNext(RecordedMessage& message) { return m_source->ReadNext(message); }

void RecordingReader::Reject(const RecordedMessage& message) { m_source->Reject(message); }

qint64 RecordingReader::GetExaminedBytes() const { return m_source->GetExaminedBytes(); }

MODELKIT::Place RecordedMessage::PlaceInRecording(MODELKIT::Place place) const
{
    if (place.line == 0 && place.offset < 0) {
        place.line = line;
        place.column = 0;
        place.offset = line == 0 ? offset : -1;
        return place;
    }
    // Behind binary forms there are no lines.
    if (place.line > 0 && line == 0) {
        place.line = 0;
        place.column = 0;
        place.offset = offset;
        return place;
    }
    if (place.line == 1 && place.column > 0)
        place.column += column - 1;
    if (place.line > 0)
        place.line += line - 1;
    if (place.offset >= 0 && form != Form::Compressed)
        place.offset += offset;
    return place;
}

MODELKIT::Place RecordedMessage::PlaceInRecording(const DocumentError& error) const
{
    using MODELKIT::Failure;
    const bool isAboutInflating =
        error.GetKind() == Failure::DamagedCompression || error.GetKind() == Failure::InflatedTooLarge;
    MODELKIT::Place place = PlaceInRecording(error.GetPlace());
    if (isAboutInflating && form == Form::Compressed && error.GetPlace().offset >= 0)
        place.offset += offset;
    return place;
}

qint64 ForEachMessage(QIODevice& device, const RecordingOptions& options,
                      const std::function<void(const RecordedMessage&)>& onMessage,
                      const std::function<void(const DocumentError&)>& onError)
{
    RecordingReader reader(device, options);
    RecordedMessage message;
    // Whether the recording may go on.
    const auto readNext = [&] {
        try {
            return reader.ReadNext(message);
        } catch (const DocumentError& error) {
            onError(error);
            // Only then the reader has not gone on.
            return error.GetKind() != MODELKIT::Failure::NotWholeYet;
        }
    };
    const auto handle = [&] {
        try {
            onMessage(message);
            return true;
        } catch (const DocumentError& error) {
            reader.Reject(message);
            onError(DocumentError({error.GetKind(), error.GetText(), message.PlaceInRecording(error)}));
            return false;
        }
    };
    qint64 count = 0;
    while (readNext())
        if (message.number > 0 && handle())
            ++count;
    return count;
}

} // namespace ROUTERDOCUMENTS
