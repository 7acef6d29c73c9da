// SPDX-License-Identifier: MIT
/// \file
/// The messages of an input, one by one.
#pragma once

#include "Finding.h"
#include "InputFile.h"
#include "InputOptions.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/Recording.h"

#include <QtCore/QString>

#include <deque>
#include <functional>
#include <limits>
#include <optional>

namespace routermsg {

class Progress;

/// The messages of a recording on which a command works, by number.
struct MessageRange
{
    qint64 first = 1;
    qint64 last = std::numeric_limits<qint64>::max();

    bool isWhole() const { return first == 1 && last == std::numeric_limits<qint64>::max(); }
};

/// A message of an input.
struct InputMessage
{
    /// The input, as the user named it.
    QString path;
    /// How findings call it: the first one as its input, "rec.bin", later ones with their number,
    /// "rec.bin#2".
    QString name;
    ROUTERDOCUMENTS::RecordedMessage recorded;
    /// How the input is written.
    InputFormat format = {};
    /// Gave it, and lives longer; none for an input that is not read as a recording.
    ROUTERDOCUMENTS::RecordingReader* reader = nullptr;

    /// Reads it. Places in findings count from the beginning of the input.
    /// \throws Refusal when it is no document or, with Validation::On, not valid.
    ROUTERDOCUMENTS::Document
    read(ROUTERDOCUMENTS::Validation validation = ROUTERDOCUMENTS::Validation::Off) const;

    /// Rejects it, and returns what is wrong with it, with the place in the input.
    Finding findingOf(const ROUTERDOCUMENTS::DocumentError& error) const;

    /// Tells that it cannot be read. It may then have taken the bytes of a message behind it, which is read
    /// next.
    void reject() const;

    /// The place in the input. An offset inside a compressed form stays as it is.
    MODELKIT::Place placeInInput(const MODELKIT::Place& place) const;
    MODELKIT::Place placeInInput(const ROUTERDOCUMENTS::DocumentError& error) const;
};

/// The messages of an input, which are read while they arrive.
///
/// An input with one document is a recording of one message.
class Messages
{
public:
    struct Options
    {
        MessageRange range = {};
        InputFormat format = {};
        /// Is told how much has been read.
        Progress* progress = nullptr;
    };

    /// \param path a file, or "-" for standard input
    /// \throws Refusal when it cannot be opened.
    Messages(const QString& path, const Options& options);
    explicit Messages(const QString& path) : Messages(path, Options()) {}

    /// The next message in the range; none at the end.
    /// \throws Refusal when the next bytes are no message, or when there is no message in the range. In front
    /// of a chosen range, bytes are only refused if there is no message at all. The next call continues
    /// behind them.
    std::optional<InputMessage> next();

    /// How many messages were found, in the range and in front of it.
    qint64 count() const { return m_count; }
    /// Whether the input holds no message. Known after the first call of next().
    bool isWithoutMessage() const { return m_isWithoutMessage; }
    /// The first bytes of the input.
    const QByteArray& head() const { return m_file.head(); }
    /// The whole input, unless the first message was taken from a stream.
    /// \throws Refusal when it cannot be read, or is a stream and too large to keep.
    QByteArray whole();

private:
    // What comes next: a message, an error, or neither at the end.
    struct Step
    {
        std::optional<ROUTERDOCUMENTS::RecordedMessage> message;
        std::optional<ROUTERDOCUMENTS::DocumentError> error;
    };

    Step read();
    Step take();
    void begin();
    bool isTold(const ROUTERDOCUMENTS::DocumentError& error) const;
    void explainByHead();
    QString hintOf(const ROUTERDOCUMENTS::DocumentError& error) const;
    QString remedy() const;
    bool isInOtherByteOrder() const;
    bool isJsonOnSeveralLines() const;

    QString m_path;
    QString m_name;
    Options m_options;
    InputFile m_file;
    ROUTERDOCUMENTS::RecordingReader m_reader;
    // What was read ahead: the errors in front of the first message, and the message.
    std::deque<Step> m_ahead;
    // How many messages were taken.
    qint64 m_count = 0;
    bool m_hasBegun = false;
    bool m_hasErrors = false;
    bool m_isWithoutMessage = false;
    // Which option reads the input, when those that are given find no message; empty if none is known.
    QString m_remedy;
    bool m_isOver = false;
};

/// That an input with so many messages has none in the range.
Finding noSuchMessage(const QString& input, const MessageRange& range, qint64 count);

/// Calls \a onMessage for each message in the range, and \a onProblem for each Refusal: that the input cannot
/// be opened, that bytes are no message, and those that onMessage throws. An OutputRefusal ends the work.
/// \returns the worst status of the problems.
Status forEachMessage(const QString& path, const Messages::Options& options,
                      const std::function<void(const InputMessage&)>& onMessage,
                      const std::function<void(const Finding&)>& onProblem);

} // namespace routermsg
