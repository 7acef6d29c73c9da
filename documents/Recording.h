// SPDX-License-Identifier: MIT
/// \file
/// Recordings: any number of messages one behind another in a file, a stream or a connection.
///
/// The messages may be of any form and any class, and of several. Between them there may be white space, byte
/// order marks, and comments and processing instructions of XML.
#pragma once

#include "documents/DocumentError.h"
#include "documents/Export.h"
#include "documents/Forms.h"
#include "documents/FrameFormat.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <functional>
#include <limits>
#include <memory>
#include <optional>

class QIODevice;

namespace ROUTERDOCUMENTS {

/// The size in bytes of the largest message that can be held: a `QByteArray` of Qt 5, less some room for what
/// follows the message.
constexpr qint64 LargestMessage = std::numeric_limits<int>::max() - (1 << 20);

/// A message as it stands in a recording.
struct RecordedMessage
{
    /// From 1; places that are no message do not count.
    qint64 number = 0;
    /// The offset of its first byte from where reading began.
    qint64 offset = 0;
    /// The line of its first byte, from 1; 0 when anything before is no text.
    qint64 line = 0;
    /// The column of its first byte in that line, from 1; 0 like the line.
    qint64 column = 0;
    /// The form that it begins as.
    Form form = Form::Xml;
    /// What ReadDocument() reads.
    QByteArray bytes;
    /// The layout of a bare frame, for ReadDocument(); none for all other messages.
    std::optional<FrameFormat> frame = std::nullopt;

    /// Where a place in the message is in the recording. Without any place, that of the message itself. An
    /// offset inside a compressed form stays as it is, because it counts in the inflated form.
    ROUTERDOCUMENTS_EXPORT MODELKIT::Place PlaceInRecording(MODELKIT::Place place) const;
    /// Where an error of reading the message is in the recording. Why a form cannot be inflated is told with
    /// an offset in the compressed form itself.
    ROUTERDOCUMENTS_EXPORT MODELKIT::Place PlaceInRecording(const DocumentError& error) const;
};

/// How to read a recording.
struct RecordingOptions
{
    /// The form of all messages; the two binary forms count as one. Without a value each may have another
    /// one. With Form::JsonLines every message ends on its line.
    std::optional<Form> form = std::nullopt;
    /// All messages are bare frames in this layout, one directly behind another; then \a form has no effect.
    /// Compressed forms may be among frames with a class id. Behind a frame that is damaged, the reader looks
    /// for the next class id; without class ids, nothing tells where the next frame begins, and it passes
    /// over all that follows.
    std::optional<FrameFormat> frame = std::nullopt;
};

/// Finds the messages of a recording, without reading what is inside them.
///
/// It keeps no more than one message and a block of fixed size in memory. A message is there as soon as its
/// last byte has arrived. The limits in force apply to each message: Limits::inputSize, which has no effect
/// above ROUTERDOCUMENTS::LargestMessage, and Limits::waitingTime for a device whose data arrive later. The
/// reader reads more from the device than the messages that it has given.
///
/// \code
/// RecordingReader reader(device);
/// for (RecordedMessage message; reader.ReadNext(message);)
///     handle(ReadDocument(message.bytes, {message.form, Validation::Off, message.frame}));
/// \endcode
class ROUTERDOCUMENTS_EXPORT RecordingReader
{
public:
    /// The device must live as long as the reader, which opens it if it is closed and then closes it in the
    /// end.
    /// \param options what the recording holds
    explicit RecordingReader(QIODevice& device, const RecordingOptions& options = {});
    /// Not copied: it reads its device from one place.
    RecordingReader(const RecordingReader&) = delete;
    /// Not copied: it reads its device from one place.
    RecordingReader& operator=(const RecordingReader&) = delete;
    /// Closes the device if the reader has opened it.
    ~RecordingReader();

    /// Finds the next message. False at the end; when the device gets more data later, the next call finds
    /// it.
    /// \param message is emptied first.
    /// \throws DocumentError with offset and, in texts, line, when what comes next is no message, is too
    /// large, or is a binary form that is cut off. A text that is cut off is given as a message that cannot
    /// be read. The next call goes on behind it. The kind Failure::NotWholeYet says that nothing more has
    /// arrived in time; nothing is lost, and the next call goes on at the same place. With the kind
    /// Failure::InputOutput the device has failed, and the recording ends.
    bool ReadNext(RecordedMessage& message);

    /// Tells that the message that was given last cannot be read. A binary form that was cut off has taken
    /// the bytes of what follows for its own. If nothing begins where it ends, or a message inside it goes on
    /// behind it, the next call of ReadNext() goes on with the first message inside it. A form whose length
    /// is right is passed over as a whole, and so are bare frames without a class id.
    void Reject(const RecordedMessage& message);

    /// The number of bytes examined to find messages. A byte that is examined twice counts twice. The total
    /// is close to the size of the recording, whatever the pieces in which it arrives.
    qint64 GetExaminedBytes() const;

private:
    class Source;
    class Machine;
    class FrameMachine;
    std::unique_ptr<Source> m_source;
};

/// Calls \a onMessage for every message and \a onError for every error, in their order, to the end of the
/// recording or of the device. When onMessage throws a DocumentError, as ReadDocument() does, the message is
/// rejected, and onError is called with the place in the recording. All other exceptions are passed on.
/// \param options what the recording holds
/// \return the number of messages that were not rejected.
ROUTERDOCUMENTS_EXPORT qint64 ForEachMessage(QIODevice& device, const RecordingOptions& options,
                                             const std::function<void(const RecordedMessage&)>& onMessage,
                                             const std::function<void(const DocumentError&)>& onError);

/// The record as a message of a recording in that form: what WriteDocument() gives, with a line break at the
/// end of a text.
/// \throws DocumentError as WriteDocument() does.
ROUTERDOCUMENTS_EXPORT QByteArray WriteMessage(MODELKIT::IMKObject& record, Form form);

/// Appends the record to a recording in that form, in one piece, and flushes a file.
/// \throws DocumentError as WriteDocument() does, before anything is written; and of the kind
/// Failure::InputOutput when the device does not take everything.
ROUTERDOCUMENTS_EXPORT void AppendMessage(QIODevice& device, MODELKIT::IMKObject& record, Form form);

/// What to write behind a copy of the message, so that any message may follow: a line break in the encoding
/// of a text, unless it ends its line. Between messages that can be read, this keeps the bytes of each.
ROUTERDOCUMENTS_EXPORT QByteArray LineBreakBehind(const RecordedMessage& message);

} // namespace ROUTERDOCUMENTS
