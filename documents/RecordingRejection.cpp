// SPDX-License-Identifier: MIT
// Messages that their reader refuses.
#include "documents/RecordingMachine.h"

#include <QtCore/QBuffer>

namespace ROUTERDOCUMENTS {

namespace {

// What no payload of a form that was cut off looks like by chance.
bool isSure(const MessageBeginning& beginning, const char* bytes)
{
    if (beginning.kind != MessageBeginning::Message)
        return false;
    const bool isBinary = beginning.form == Form::Binary || beginning.form == Form::Compressed;
    return isBinary || beginning.units.size > 1 || beginning.mark > 0 || bytes[1] == '?' || bytes[1] == '!';
}

} // namespace

// The message is put back until it is known what follows.
void RecordingReader::Machine::Reject(const RecordedMessage& message)
{
    const qint64 size = message.bytes.size();
    const bool isBinary = message.form == Form::Binary || message.form == Form::Compressed;
    const bool isLast = m_state == State::Between && m_count > 0 && message.number == m_count
                        && message.offset + size == m_arrivals.Offset();
    if (!isBinary || !isLast)
        return;
    // Forms inside each other could otherwise be made to cost as much as their square.
    constexpr int mostTimes = 4;
    if (m_allRejected + size > mostTimes * m_arrivals.Offset())
        return;
    m_allRejected += size;
    m_arrivals.Return(message.bytes);
    m_state = State::Rejected;
    m_rejected = size;
    m_scanned = size;
}

RecordingReader::Machine::Step RecordingReader::Machine::LeaveRejected()
{
    const char* const begin = m_arrivals.Data();
    while (m_scanned < m_arrivals.Size() && isWhite(begin[m_scanned]))
        ++m_scanned;
    // At the end of the recording the length is taken for right.
    if (m_scanned == m_arrivals.Size())
        return m_isAll ? Step::Finished : Step::NeedsMore;
    BeginningRules rules = Rules(m_scanned, true);
    rules.isAtLineBegin = true;
    const MessageBeginning sure = Recognise(m_scanned, m_arrivals.Size(), rules);
    const MessageBeginning any = Recognise(m_scanned, false);
    if (sure.kind == MessageBeginning::Unclear || any.kind == MessageBeginning::Unclear)
        return Step::NeedsMore;
    qint64 passed = m_rejected;
    if (!isSure(sure, begin + m_scanned)) {
        const Inside inside = LookInside(QByteArray::fromRawData(begin, static_cast<int>(m_rejected)));
        if (inside.first && (inside.isOpen || any.kind == MessageBeginning::Nothing))
            passed = *inside.first;
    }
    m_examined += m_rejected;
    m_state = State::Between;
    m_units = TextUnits();
    m_arrivals.Drop(passed);
    return Step::Done;
}

RecordingReader::Machine::Inside RecordingReader::Machine::LookInside(const QByteArray& bytes) const
{
    QByteArray rest = bytes.mid(1);
    QBuffer buffer(&rest);
    Machine machine(buffer, {m_form});
    // In the middle of a form, only what looks much like a message is one.
    machine.m_state = State::Searching;
    machine.m_stretch.isUntold = false;
    RecordedMessage message;
    for (bool isThere = true; isThere;) {
        try {
            isThere = machine.ReadNext(message);
        } catch (const DocumentError&) {
            // What is wrong inside was never looked for.
        }
    }
    Inside inside;
    if (machine.m_first)
        inside.first = *machine.m_first + 1;
    inside.isOpen = machine.m_isCutOff;
    return inside;
}

} // namespace ROUTERDOCUMENTS
