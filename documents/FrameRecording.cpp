// SPDX-License-Identifier: MIT
#include "documents/FrameRecording.h"

#include "documents/MessageFailures.h"

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;

RecordingReader::FrameMachine::FrameMachine(QIODevice& device, const FrameFormat& format)
    : Source(device), m_format(format), m_headerSize(headerSizeOf(format))
{
    m_arrivals.ForgetLines();
}

RecordingReader::FrameMachine::Step RecordingReader::FrameMachine::TakeStep(RecordedMessage& message)
{
    if (m_isSearching)
        return Search();
    if (m_rejected > 0)
        return LeaveRejected();
    const qint64 there = m_arrivals.Size();
    if (there == 0)
        return m_isAll ? Step::Finished : Step::NeedsMore;
    if (there < m_headerSize)
        return m_isAll ? BeginSearch(Failure::NotABinaryForm,
                                     QStringLiteral("The frame is cut off; its length is missing"))
                       : Step::NeedsMore;
    return FindEnd(message);
}

RecordingReader::FrameMachine::Step RecordingReader::FrameMachine::FindEnd(RecordedMessage& message)
{
    const FrameHeader header(m_arrivals.Data(), m_format);
    if (!header.isFrame())
        return BeginSearch(Failure::NotABinaryForm, header.whyNoFrame());
    if (header.length < 0)
        return BeginSearch(Failure::NotABinaryForm, QStringLiteral("The frame has a negative length"));
    const qint64 size = m_headerSize + header.length;
    if (size > m_limit)
        return BeginSearch(Failure::InputTooLarge,
                           QStringLiteral("The frame of %1 bytes is larger than the limit of %2 bytes")
                               .arg(QString::number(size), QString::number(m_limit)));
    const qint64 missing = size - m_arrivals.Size();
    if (missing > 0)
        return m_isAll ? BeginSearch(Failure::NotABinaryForm,
                                     QStringLiteral("The frame is cut off; %1")
                                         .arg(countedBytes(missing, QStringLiteral("missing"))))
                       : Step::NeedsMore;
    message.number = ++m_count;
    message.offset = m_arrivals.Offset();
    message.form = header.isCompressed ? Form::Compressed : Form::Binary;
    message.frame = m_format;
    message.bytes = m_arrivals.Take(size);
    m_examined += m_headerSize;
    return Step::Found;
}

// A frame that was cut off has taken the bytes of the next one. It is put back until it is known what
// follows.
void RecordingReader::FrameMachine::Reject(const RecordedMessage& message)
{
    if (m_format.hasId && !m_isSearching && m_rejected == 0)
        PutBack(message);
}

RecordingReader::FrameMachine::Step RecordingReader::FrameMachine::LeaveRejected()
{
    const qint64 behind = m_arrivals.Size() - m_rejected;
    if (behind < m_headerSize && !m_isAll)
        return Step::NeedsMore;
    // At the end of the recording the length is taken for right.
    const bool isLengthRight = behind == 0 || (behind >= m_headerSize && MayBegin(m_rejected));
    m_arrivals.Drop(isLengthRight ? m_rejected : PlaceInside());
    m_rejected = 0;
    return Step::Done;
}

qint64 RecordingReader::FrameMachine::PlaceInside()
{
    m_examined += m_rejected;
    for (qint64 at = 1; at < m_rejected && at + m_headerSize <= m_arrivals.Size(); ++at)
        if (MayBegin(at))
            return at;
    return m_rejected;
}

RecordingReader::FrameMachine::Step RecordingReader::FrameMachine::BeginSearch(Failure::Kind kind,
                                                                               const QString& text)
{
    m_failure = FailureHere(kind, text);
    m_isSearching = true;
    m_passed = 1;
    m_arrivals.Drop(1);
    return Step::Done;
}

RecordingReader::FrameMachine::Step RecordingReader::FrameMachine::Search()
{
    const qint64 there = m_arrivals.Size();
    qint64 at = 0;
    if (!m_format.hasId)
        at = there;
    while (at + m_headerSize <= there && !MayBegin(at))
        ++at;
    const bool isFound = at + m_headerSize <= there && m_format.hasId;
    if (!isFound && m_isAll)
        at = there;
    m_arrivals.Drop(at);
    m_passed += at;
    m_examined += at;
    if (!isFound && !m_isAll)
        return Step::NeedsMore;
    m_isSearching = false;
    m_failure.text += QStringLiteral("; %1.").arg(countedBytes(m_passed, QStringLiteral("passed over")));
    throw DocumentError(m_failure);
}

bool RecordingReader::FrameMachine::MayBegin(qint64 at) const
{
    const FrameHeader header(m_arrivals.Data() + at, m_format);
    return header.isFrame() && header.length >= 0 && header.length <= m_limit - m_headerSize;
}

bool RecordingReader::FrameMachine::IsNothingBegun() const
{
    return m_isSearching || m_arrivals.Size() == m_rejected;
}

} // namespace ROUTERDOCUMENTS
