// SPDX-License-Identifier: MIT
// What a RecordingReader asks for the next message: the steps of reading, as far as messages of all kinds
// share them. Not installed.
#pragma once

#include "documents/Arrivals.h"
#include "documents/Recording.h"

#include "modelkit/Devices.h"
#include "modelkit/Failure.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

// Goes through the recording in steps. What it knows between two steps is all in its members, so that it can
// wait for data, or be left and called again, after each of them.
class RecordingReader::Source
{
public:
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;

    bool ReadNext(RecordedMessage& message);
    virtual void Reject(const RecordedMessage& message) = 0;
    qint64 GetExaminedBytes() const { return m_examined; }

protected:
    enum class Step
    {
        Done,      // go on with the next one
        NeedsMore, // bytes
        Found,     // the message
        Finished   // the recording
    };

    explicit Source(QIODevice& device) : m_arrivals(device) {}

    virtual Step TakeStep(RecordedMessage& message) = 0;
    // Whether the recording may end here.
    virtual bool IsNothingBegun() const = 0;
    // What a failure calls a message.
    virtual QString NameOfMessage() const = 0;

    // Puts the message back to the bytes that follow it, until it is known what follows. False when it is not
    // the last one, or when that could cost too much.
    bool PutBack(const RecordedMessage& message);
    MODELKIT::Failure FailureHere(MODELKIT::Failure::Kind kind, const QString& text) const;

    Arrivals m_arrivals;
    // The size of the largest message.
    qint64 m_limit = 0;
    // Whether the device has no more data at the moment, and will not have them by waiting.
    bool m_isAll = false;
    qint64 m_count = 0;
    // The size of the message that was put back.
    qint64 m_rejected = 0;
    qint64 m_examined = 0;

private:
    void FetchMore(MODELKIT::Intake& intake);

    bool m_isOver = false;
    // How many bytes were in rejected messages.
    qint64 m_allRejected = 0;
};

} // namespace ROUTERDOCUMENTS
