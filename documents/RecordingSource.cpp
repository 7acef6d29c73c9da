// SPDX-License-Identifier: MIT
#include "documents/RecordingSource.h"

#include "modelkit/Limits.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;
using MODELKIT::Intake;
using MODELKIT::Limits;

bool RecordingReader::Source::ReadNext(RecordedMessage& message)
{
    // Two messages at a time could be too much for the memory.
    message = RecordedMessage();
    if (m_isOver)
        return false;
    const Limits limits = Limits::Get();
    m_limit = std::min(limits.inputSize, LargestMessage);
    QString reason;
    if (!m_arrivals.Open(reason)) {
        m_isOver = true;
        throw DocumentError(MODELKIT::cannotRead(&m_arrivals.Device(), reason));
    }
    Intake intake(m_arrivals.Device(), limits.waitingTime);
    m_isAll = false;
    while (true) {
        switch (TakeStep(message)) {
        case Step::Done:
            break;
        case Step::NeedsMore:
            FetchMore(intake);
            break;
        case Step::Found:
            return true;
        case Step::Finished:
            return false;
        }
    }
}

void RecordingReader::Source::FetchMore(Intake& intake)
{
    const Intake::Outcome outcome = m_arrivals.Fetch(intake);
    if (outcome == Intake::Broken) {
        m_isOver = true;
        Failure failure = MODELKIT::cannotRead(&m_arrivals.Device(), intake.GetReason());
        failure.place.offset = m_arrivals.Offset();
        throw DocumentError(failure);
    }
    if (outcome == Intake::Late || (outcome == Intake::Quiet && !IsNothingBegun()))
        throw DocumentError(
            FailureHere(Failure::NotWholeYet,
                        QStringLiteral("The end of the next %1 has not arrived.").arg(NameOfMessage())));
    m_isAll = outcome != Intake::Whole;
}

bool RecordingReader::Source::PutBack(const RecordedMessage& message)
{
    const qint64 size = message.bytes.size();
    const bool isLast =
        m_count > 0 && message.number == m_count && message.offset + size == m_arrivals.Offset();
    // Forms inside each other could otherwise be made to cost as much as their square.
    constexpr int mostTimes = 4;
    if (!isLast || m_allRejected + size > mostTimes * m_arrivals.Offset())
        return false;
    m_allRejected += size;
    m_arrivals.Return(message.bytes);
    m_rejected = size;
    return true;
}

Failure RecordingReader::Source::FailureHere(Failure::Kind kind, const QString& text) const
{
    Failure failure;
    failure.kind = kind;
    failure.text = text;
    failure.place.offset = m_arrivals.Offset();
    failure.place.line = m_arrivals.Line();
    return failure;
}

} // namespace ROUTERDOCUMENTS
