// SPDX-License-Identifier: MIT
// Where the messages of a connection begin and end. Not installed.
#pragma once

#include "documents/ByteQueue.h"
#include "documents/Forms.h"
#include "documents/MessageBeginning.h"
#include "documents/XmlEnd.h"

#include "modelkit/Failure.h"
#include "modelkit/Limits.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace ROUTERLINK {

// Takes what has arrived and finds the messages in it. What it knows between two calls is all here, so no
// byte is looked at again when more arrive.
class Framing
{
public:
    enum Outcome
    {
        NeedMore,
        Whole,  // the next message has arrived
        Broken, // nobody can tell where the next message begins
        Ended   // there are no more messages, and the last one was whole
    };

    // For each message.
    explicit Framing(const MODELKIT::Limits& limits);

    void Add(const char* bytes, qint64 size);
    // No more bytes follow.
    void End() { m_isAll = true; }

    // Leaves the message found before and finds the next one.
    Outcome Find();
    // The message that was found does not belong to what is unread any more.
    void LeaveMessage();
    // Nothing is found any more.
    void Break(const MODELKIT::Failure& failure);
    const MODELKIT::Failure& GetFailure() const { return m_failure; }

    // The message that was found: its form, and its bytes, which the next call of any operation may move.
    // Empty when there is none.
    ROUTERDOCUMENTS::Form GetForm() const { return m_form; }
    QByteArray View() const;
    // When the connection is broken: what was added from that place on.
    QByteArray Rest() const;
    // The offset of the message, or of the place where the connection is broken, in all that was added.
    qint64 GetOffset() const { return m_offset; }

    qint64 GetExaminedBytes() const { return m_examined; }

private:
    enum class State
    {
        Between, // messages
        Inside,  // a message or what stands between messages, from its first byte on
        Found,
        Broken
    };

    enum class Step
    {
        Done, // go on with the next one
        NeedsMore,
        Found,
        Broken,
        Ended
    };

    Step TakeStep();
    Step PassOver();
    // How many bytes at the beginning are blanks or zeros that belong to no message; negative if more bytes
    // are needed to tell.
    qint64 SizeBetween() const;
    ROUTERDOCUMENTS::MessageBeginning Recognise(bool isAll);
    Step Begin();
    Step FindEndOfBinary();
    Step FindEndOfXml();
    Step EndOfData();
    Step EndMessage(qint64 size);
    Step BreakHere(MODELKIT::Failure::Kind kind, const QString& text);
    // The document cannot be well-formed.
    Step BreakAtDamage();
    // IsCutOff: whether more bytes could have made a beginning of what is there.
    Step BreakAtNoMessage(bool isCutOff);
    void Drop(qint64 size);

    const MODELKIT::Limits m_limits;
    // The size of the largest message in bytes.
    const qint64 m_limit;
    ROUTERDOCUMENTS::ByteQueue m_bytes;
    bool m_isAll = false;
    State m_state = State::Between;
    MODELKIT::Failure m_failure;

    // Of the last text.
    ROUTERDOCUMENTS::TextUnits m_units;
    // Of the message that is arriving or was found.
    ROUTERDOCUMENTS::Form m_form = ROUTERDOCUMENTS::Form::Xml;
    bool m_isAside = false;
    ROUTERDOCUMENTS::XmlEnd m_end;
    // How many of its bytes were given to it.
    qint64 m_scanned = 0;
    // Of the message that was found.
    qint64 m_size = 0;

    qint64 m_offset = 0;
    qint64 m_examined = 0;
};

} // namespace ROUTERLINK
