// SPDX-License-Identifier: MIT
// What a RecordingReader does. Not installed.
#pragma once

#include "documents/JsonEnd.h"
#include "documents/MessageBeginning.h"
#include "documents/RecordingSource.h"
#include "documents/XmlEnd.h"

#include "modelkit/Failure.h"

#include <QtCore/QString>

#include <optional>
#include <variant>

namespace ROUTERDOCUMENTS {

// The messages tell their ends themselves.
class RecordingReader::Machine : public RecordingReader::Source
{
public:
    Machine(QIODevice& device, const RecordingOptions& options);

    void Reject(const RecordedMessage& message) override;

private:
    enum class State
    {
        Between,   // messages
        Inside,    // a message, from its first byte on
        Skipping,  // to the end of what is not given to the caller
        Searching, // the next message, in what is none
        Broken,    // in what begins like a JSON document but is none, from its first byte on
        Rejected   // in front of a binary form that could not be read
    };

    // Whether the number of bytes that are passed over is added to the text of a failure.
    enum class ByteCount
    {
        Added,
        LeftOut
    };

    // Bytes that are passed over until the next message begins.
    struct Stretch
    {
        MODELKIT::Failure failure;
        // The form of the message that begins it, if only another one is expected.
        std::optional<Form> otherForm;
        // Whether the caller still has to be told.
        bool isUntold = true;
        ByteCount byteCount = ByteCount::Added;
        qint64 size = 0;
        bool isText = true;
    };

    Step TakeStep(RecordedMessage& message) override;
    bool IsNothingBegun() const override;
    QString NameOfMessage() const override { return QStringLiteral("message"); }

    Step PassOver();
    Step Begin(const MessageBeginning& beginning);
    Step BeginNothing();
    Step FindEndOfBinary(RecordedMessage& message);
    Step FindEndOfText(RecordedMessage& message);
    // How much of the scanned part belongs to the document.
    qint64 ScannedOfDocument() const;
    // The place in the scanned part of a wide document at which other units begin; 0 when there is none.
    qint64 FindOtherUnits(bool isEnd);
    Step BreakOffXml(RecordedMessage& message);
    Step BreakOff(qint64 size, RecordedMessage& message);
    // Where JSON begins in the first bytes of a cut-off document, behind it; 0 when there is none.
    qint64 JsonBehind(qint64 size);
    Step TooLittle(RecordedMessage& message);
    Step EndMessage(qint64 size, RecordedMessage& message);
    Step LeaveBroken(RecordedMessage& message);
    Step PassOverBroken();
    Step Search();
    // What begins at the place or behind it: a message or what may become one, then \a place is where, or
    // nothing up to the end of what is there.
    MessageBeginning::Kind FindBeginning(qint64& place);
    Step LeaveRejected();

    Step BeginStretch(const MODELKIT::Failure& failure, qint64 size, ByteCount byteCount = ByteCount::Added);
    Step EndStretch();
    void AddToStretch(qint64 size);

    // What begins at the offset, as far as the bytes up to the end tell.
    MessageBeginning Recognise(qint64 at, Look look);
    MessageBeginning Recognise(qint64 at, qint64 end, BeginningRules rules);
    BeginningRules Rules(qint64 at, Look look) const;
    // The first message that begins inside the rejected one.
    struct Inside
    {
        MessageBeginning::Kind kind = MessageBeginning::Nothing;
        qint64 place = 0;
        // Whether a message goes on behind the rejected one.
        bool isOpen = false;
    };
    Inside LookInside();
    bool IsOpen(qint64 place);
    MODELKIT::Failure MessageTooLarge() const;
    [[noreturn]] static void Throw(const MODELKIT::Failure& failure,
                                   std::optional<Form> otherForm = std::nullopt);

    std::optional<Form> m_form;

    State m_state = State::Between;
    // Of the current or last text.
    TextUnits m_units;
    // Of the current message.
    Form m_messageForm = Form::Xml;
    std::variant<XmlEnd, JsonEnd> m_end;
    // How many of its bytes were given to it, or were searched for the next message.
    qint64 m_scanned = 0;
    // How many of them were searched for other units.
    qint64 m_searched = 0;
    // Whether the last message was cut off by the end.
    bool m_isCutOff = false;
    // Whether the byte just scanned cannot occur in XML.
    bool m_isDoubtful = false;
    // Where the comment or processing instruction begins that is being skipped.
    std::optional<MODELKIT::Place> m_aside;
    Stretch m_stretch;
};

} // namespace ROUTERDOCUMENTS
