// SPDX-License-Identifier: MIT
// What a RecordingReader does. Not installed.
#pragma once

#include "documents/Arrivals.h"
#include "documents/JsonEnd.h"
#include "documents/MessageBeginning.h"
#include "documents/RecordingSource.h"
#include "documents/XmlEnd.h"

#include "modelkit/Devices.h"
#include "modelkit/Failure.h"

#include <QtCore/QString>

#include <optional>
#include <variant>

namespace ROUTERDOCUMENTS {

// Goes through the recording in steps. What it knows between two steps is all here, so that it can wait for
// data, or be left and called again, after each of them.
class RecordingReader::Machine : public RecordingReader::Source
{
public:
    Machine(QIODevice& device, const RecordingOptions& options);

    bool ReadNext(RecordedMessage& message) override;
    void Reject(const RecordedMessage& message) override;
    qint64 GetExaminedBytes() const override { return m_examined; }

private:
    enum class State
    {
        Between,   // messages
        Inside,    // a message, from its first byte on
        Skipping,  // to the end of what is not given to the caller
        Searching, // the next message, in what is none
        Rejected   // in front of a binary form that could not be read
    };

    enum class Step
    {
        Done,      // go on with the next one
        NeedsMore, // bytes
        Found,     // the message
        Finished   // the recording
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
        // Whether the caller still has to be told.
        bool isUntold = true;
        ByteCount byteCount = ByteCount::Added;
        qint64 size = 0;
        bool isText = true;
    };

    Step TakeStep(RecordedMessage& message);
    void FetchMore(MODELKIT::Intake& intake);

    Step PassOver();
    Step Begin(const MessageBeginning& beginning);
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
    Step Search();
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
    MODELKIT::Failure FailureHere(MODELKIT::Failure::Kind kind, const QString& text) const;
    MODELKIT::Failure MessageTooLarge() const;
    [[noreturn]] static void Throw(const MODELKIT::Failure& failure);

    std::optional<Form> m_form;
    Arrivals m_arrivals;
    qint64 m_limit = 0;
    // Whether the device has no more data at the moment, and will not have them by waiting.
    bool m_isAll = false;
    bool m_isOver = false;

    State m_state = State::Between;
    // Of the current or last text.
    TextUnits m_units;
    // Of the current message.
    Form m_messageForm = Form::Xml;
    std::variant<XmlEnd, JsonEnd> m_end;
    // How many of its bytes were given to it.
    qint64 m_scanned = 0;
    // How many of them were searched for other units.
    qint64 m_searched = 0;
    // The size of the rejected message.
    qint64 m_rejected = 0;
    // How many bytes were in rejected messages.
    qint64 m_allRejected = 0;
    // Whether a message was cut off by the end.
    bool m_isCutOff = false;
    // Whether the byte just scanned cannot occur in XML.
    bool m_isDoubtful = false;
    // Whether a comment or a processing instruction is being skipped.
    bool m_isAside = false;
    Stretch m_stretch;
    qint64 m_count = 0;
    qint64 m_examined = 0;
};

} // namespace ROUTERDOCUMENTS
