// SPDX-License-Identifier: MIT
/// \file
/// The messages of a connection, from its bytes as they arrive.
#pragma once

#include "documents/Forms.h"
#include "link/Export.h"

#include "modelkit/Failure.h"
#include "modelkit/IMKObject.h"
#include "modelkit/Limits.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

#include <memory>

namespace ROUTERLINK {

/// Reads the messages of a connection. It has no device and no thread: you give it the bytes as they arrive,
/// in any pieces, and it gives the messages.
///
/// A message is a document in XML, in the binary form or in the compressed form. The reader recognises the
/// form of each message, and a connection may mix them. Between messages there may be white space, line ends,
/// zero bytes, byte order marks, and comments and processing instructions of XML. A message is there as soon
/// as its last byte has arrived: a binary form ends where its length says, an XML document with the end of
/// its root element.
///
/// When the content of a message cannot be read but its end is certain, it is refused, and the next one is
/// read. Otherwise the connection is broken: nobody can tell where the next message begins. That is so
///
/// - where no message begins,
/// - behind a length that is negative or above the limit,
/// - in XML that is not well-formed, has a document type declaration or an encoding that is not accepted, or
///   exceeds one of the limits on its size, depth and attributes,
/// - when the connection ends inside a message.
///
/// Every byte is looked at a few times at most, also when each is given alone. The reader keeps no more than
/// one message of the largest size that the limits admit and what was added since Next() returned #NeedMore.
///
/// It can be used in any thread, but not in two at once.
///
/// \code
/// ROUTERLINK::MessageReader reader(limits);
/// reader.AddData(socket.readAll());
/// PelLu300RouterInterfaceXml document;
/// while (reader.Next(document) == ROUTERLINK::MessageReader::Ready)
///     handle(document);
/// \endcode
class ROUTERLINK_EXPORT MessageReader
{
public:
    /// What Next() has found.
    enum Outcome : int
    {
        NeedMore, ///< no whole message; call Next() again after AddData() or EndData()
        Ready,    ///< a message, which was read
        Refused,  ///< a message with content that cannot be read; the next call goes on behind it
        Broken,   ///< no further message can be read, now and in all further calls
        Ended     ///< EndData() was called, and all messages have been read
    };

    /// The limits apply to each message: Limits::inputSize to its bytes, the others as when a record reads a
    /// document. Limits::inputSize has no effect above ROUTERDOCUMENTS::LargestMessage, and
    /// Limits::waitingTime has none at all. Without \a limits those that are in force now apply.
    explicit MessageReader(const MODELKIT::Limits& limits = MODELKIT::Limits::Get());
    /// Not copied: the bytes of a connection are read once.
    MessageReader(const MessageReader&) = delete;
    /// Not copied: the bytes of a connection are read once.
    MessageReader& operator=(const MessageReader&) = delete;
    /// Bytes that were not read are lost.
    ~MessageReader();

    /// Adds what has arrived, which is copied. Never throws: if there is no memory for it, the connection is
    /// broken. Has no effect when the connection is broken or EndData() was called.
    void AddData(const QByteArray& bytes);
    /// As above.
    /// \param size in bytes; nothing is added when it is negative.
    void AddData(const char* bytes, qint64 size);

    /// Tells that the connection has ended and no more bytes follow.
    void EndData();

    /// Reads the next message. Never throws; what the record throws is told by GetFailure().
    /// \param document any record, whose class all messages must have. If its validation is on, it is also
    /// checked. It receives the content with #Ready. With #NeedMore and #Ended it is not touched; otherwise
    /// it may hold some of the content.
    Outcome Next(MODELKIT::IMKObject& document);

    /// Why the last message was refused or the connection is broken; of kind Failure::None after all other
    /// outcomes. A message that was interrupted by an exception that is none of the library's, such as
    /// std::bad_alloc, has the kind Failure::Interrupted. Places count from the beginning of the message.
    const MODELKIT::Failure& GetFailure() const;

    /// The form of the message that was read or refused last; XML before the first one.
    ROUTERDOCUMENTS::Form GetForm() const;
    /// The offset in bytes, from the beginning of the connection, of the message that was read or refused
    /// last, or of the place where the connection is broken.
    qint64 GetOffset() const;
    /// A copy of the bytes of the message that Next() has read or refused last; empty after all other
    /// outcomes, and when more was added since than the reader can hold.
    QByteArray GetBytes() const;
    /// When the connection is broken, a copy of the bytes from GetOffset() on, as far as they were added
    /// before Next() said so; otherwise empty.
    QByteArray GetUnreadBytes() const;

    /// The number of bytes examined to find messages; a byte that is examined twice counts twice. The total
    /// is close to the size of what was added, whatever the pieces.
    qint64 GetExaminedBytes() const;

private:
    class Machine;
    std::unique_ptr<Machine> m_machine;
};

} // namespace ROUTERLINK
