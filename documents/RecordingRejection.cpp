// SPDX-License-Identifier: MIT
// Messages that their reader refuses.
#include "documents/RecordingMachine.h"

#include <QtCore/QBuffer>

namespace ROUTERDOCUMENTS {

namespace {

// What does not stand inside of another message. A tag may follow the XML declaration of its document.
bool isSure(const MessageBeginning& beginning, const char* bytes)
{
    return beginning.kind == MessageBeginning::Message
           && (beginning.form != Form::Xml || beginning.units.size > 1 || beginning.mark > 0
               || bytes[1] == '?' || bytes[1] == '!');
}

} // namespace

void RecordingReader::Machine::Reject(const RecordedMessage& message)
{
    if (m_state != State::Between || !IsBinary(message.form) || !PutBack(message))
        return;
    m_state = State::Rejected;
    m_scanned = m_rejected;
}

RecordingReader::Machine::Step RecordingReader::Machine::LeaveRejected()
{
    const char* const begin = m_arrivals.Data();
    while (m_scanned < m_arrivals.Size() && isWhite(begin[m_scanned]))
        ++m_scanned;
    // At the end of the recording the length is taken for right.
    if (m_scanned == m_arrivals.Size())
        return m_isAll ? Step::Finished : Step::NeedsMore;
    BeginningRules rules = Rules(m_scanned, Look::Searching);
    rules.isAtLineBegin = false;
    const MessageBeginning sure = Recognise(m_scanned, m_arrivals.Size(), rules);
    const MessageBeginning any = Recognise(m_scanned, Look::Expecting);
    if (sure.kind == MessageBeginning::Unclear || any.kind == MessageBeginning::Unclear)
        return Step::NeedsMore;
    qint64 passed = m_rejected;
    if (!isSure(sure, begin + m_scanned)) {
        const Inside inside = LookInside();
        if (inside.kind == MessageBeginning::Unclear)
            return Step::NeedsMore;
        if (inside.kind == MessageBeginning::Message
            && (inside.isOpen || any.kind == MessageBeginning::Nothing))
            passed = inside.place;
    }
    m_state = State::Between;
    m_units = TextUnits();
    m_arrivals.Drop(passed);
    return Step::Done;
}

RecordingReader::Machine::Inside RecordingReader::Machine::LookInside()
{
    const char* const begin = m_arrivals.Data();
    Inside inside;
    m_examined += m_rejected;
    for (qint64 at = 1; at < m_rejected && inside.kind == MessageBeginning::Nothing; ++at) {
        if (!mayBeginMessage(begin[at]))
            continue;
        inside.kind = Recognise(at, Look::Searching).kind;
        inside.place = at;
    }
    if (inside.kind == MessageBeginning::Message)
        inside.isOpen = IsOpen(inside.place);
    return inside;
}

// Whether one of the messages from the place inside the rejected one on goes on behind it.
bool RecordingReader::Machine::IsOpen(qint64 place)
{
    BeginningRules rules = Rules(place, Look::Searching);
    rules.isAll = true;
    if (Recognise(place, m_rejected, rules).kind != MessageBeginning::Message)
        return true;
    QByteArray rest(m_arrivals.Data() + place, static_cast<int>(m_rejected - place));
    QBuffer buffer(&rest);
    RecordingOptions options;
    options.form = m_form;
    Machine machine(buffer, options);
    RecordedMessage message;
    for (bool isThere = true; isThere;) {
        try {
            isThere = machine.ReadNext(message);
        } catch (const DocumentError&) {
            // What is wrong there is found again when the reader goes on there.
        }
    }
    m_examined += machine.GetExaminedBytes();
    return machine.m_isCutOff;
}

} // namespace ROUTERDOCUMENTS
