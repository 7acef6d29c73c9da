// SPDX-License-Identifier: MIT
/// \file
/// Recorded exchanges: what came and went on a connection, and when, as lines of JSON.
///
/// Each line is a JSON object with the keys
/// - `time`: in UTC, `2024-05-17T08:30:00.250Z`,
/// - `direction`: `received` or `sent`, as seen by the program that records; `toServer` or `toClient` for one
///   between a client and a server,
/// - `peer`: the other end, such as `127.0.0.1:4711`; for a program between a client and a server the client,
///
/// and one of
/// - `form` and `document`: a message, its form on the connection, and its JSON as in JsonForm.h,
/// - `fault` and `bytes`, and `form` where it is known: bytes that were no message or could not be read, in
///   base64, and a sentence that says what is wrong,
/// - `event`: `connected` or `closed`, with `fault` when the connection ended with a failure.
///
/// ReadDocument() and RecordingReader read such lines as the messages inside. See docs/recordings.md.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"
#include "documents/Validation.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QString>

#include <memory>
#include <optional>

class QIODevice;

namespace ROUTERDOCUMENTS {

/// Which way something went on a connection.
enum class Direction
{
    Received, ///< to the program that records
    Sent,     ///< by the program that records
    ToServer, ///< through the program that records, from a client
    ToClient  ///< through the program that records, from a server
};

/// What happens to a connection.
enum class ConnectionEvent
{
    Connected, ///< it begins
    Closed     ///< it ends
};

/// The name of a direction in a recording: "received", "sent", "toServer", "toClient".
ROUTERDOCUMENTS_EXPORT QString NameOf(Direction direction);
/// The name of an event in a recording: "connected", "closed".
ROUTERDOCUMENTS_EXPORT QString NameOf(ConnectionEvent event);

/// Something that came or went on a connection. It is a message when it has a record, an event when it has
/// one, and otherwise bytes with a fault.
struct Exchange
{
    /// When it came or went.
    QDateTime time = QDateTime::currentDateTimeUtc();
    /// Of an event: who did it. `Received` is the other end, `ToServer` the client.
    Direction direction = Direction::Received;
    /// The other end of the connection.
    QString peer;
    /// The form of the message on the connection, or that in which the faulty bytes begin.
    std::optional<Form> form = std::nullopt;
    /// The message.
    std::shared_ptr<MODELKIT::IMKObject> record = nullptr;
    /// What is wrong with the bytes, or why the connection ended; null when nothing is.
    QString fault = {};
    /// The bytes that are wrong.
    QByteArray bytes = {};
    /// What happened to the connection.
    std::optional<ConnectionEvent> event = std::nullopt;
};

/// The exchange as a line, with the line break.
/// \throws std::logic_error when it is no message, no event and has no fault, or is a message without a form.
ROUTERDOCUMENTS_EXPORT QByteArray ToExchangeLine(const Exchange& exchange);

/// Appends the exchange to a recording, in one piece, and flushes a file.
/// \throws DocumentError of the kind Failure::InputOutput when the device does not take everything.
/// \throws std::logic_error as ToExchangeLine() does, before anything is written.
ROUTERDOCUMENTS_EXPORT void WriteExchange(QIODevice& device, const Exchange& exchange);

/// Whether a JSON document begins like an exchange, and not like a record.
ROUTERDOCUMENTS_EXPORT bool IsExchange(const QByteArray& json);

/// Reads an exchange. Other than ReadDocument(), it does not refuse faults and events.
/// \param json the line
/// \param validation whether the record is validated
/// \throws DocumentError with line, column and path when the line is no exchange, or its document cannot be
/// read.
ROUTERDOCUMENTS_EXPORT Exchange ReadExchange(const QByteArray& json, Validation validation = Validation::Off);

} // namespace ROUTERDOCUMENTS
