// SPDX-License-Identifier: MIT
#include "link/Framing.h"

#include "link/WellFormedness.h"

#include "documents/MessageFailures.h"
#include "documents/Recording.h"
#include "documents/UnknownForm.h"

#include <algorithm>

namespace ROUTERLINK {

using MODELKIT::Failure;
using ROUTERDOCUMENTS::Form;
using ROUTERDOCUMENTS::MessageBeginning;
using ROUTERDOCUMENTS::XmlEnd;

namespace {

// The zeros in front of the first character of a document in UTF-32.
constexpr qint64 mostLeadingZeros = 3;

QString cutOffDocument()
{
    return QStringLiteral("The XML document is cut off: the end of its root element is missing.");
}

} // namespace

Framing::Framing(const MODELKIT::Limits& limits)
    : m_limits(limits), m_limit(std::clamp<qint64>(limits.inputSize, 0, ROUTERDOCUMENTS::LargestMessage)),
      m_end(XmlEnd::SoundDocument, m_units, false)
{}

void Framing::Add(const char* bytes, qint64 size)
{
    if (m_state == State::Broken || m_isAll)
        return;
    // A byte array of Qt 5 holds no more.
    if (size > ROUTERDOCUMENTS::LargestMessage - m_bytes.Size())
        LeaveMessage();
    if (size > ROUTERDOCUMENTS::LargestMessage - m_bytes.Size()) {
        BreakHere(Failure::InputTooLarge,
                  QStringLiteral("More bytes have arrived than fit into the memory for unread messages."));
        return;
    }
    m_bytes.Append(bytes, size);
}

Framing::Outcome Framing::Find()
{
    LeaveMessage();
    while (true) {
        switch (TakeStep()) {
        case Step::Done:
            break;
        case Step::NeedsMore:
            return NeedMore;
        case Step::Found:
            return Whole;
        case Step::Broken:
            return Broken;
        case Step::Ended:
            return Ended;
        }
    }
}

void Framing::LeaveMessage()
{
    if (m_state != State::Found)
        return;
    Drop(m_size);
    m_state = State::Between;
}

void Framing::Break(const Failure& failure)
{
    m_failure = failure;
    m_state = State::Broken;
}

QByteArray Framing::View() const
{
    return m_state == State::Found ? QByteArray::fromRawData(m_bytes.Data(), static_cast<int>(m_size))
                                   : QByteArray();
}

QByteArray Framing::Rest() const
{
    return m_state == State::Broken ? QByteArray(m_bytes.Data(), static_cast<int>(m_bytes.Size()))
                                    : QByteArray();
}

Framing::Step Framing::TakeStep()
{
    switch (m_state) {
    case State::Between:
        return PassOver();
    case State::Inside:
        return IsBinary(m_form) ? FindEndOfBinary() : FindEndOfXml();
    case State::Found:
        return Step::Found;
    case State::Broken:
        break;
    }
    return Step::Broken;
}

Framing::Step Framing::PassOver()
{
    while (m_bytes.Size() > 0) {
        const qint64 size = SizeBetween();
        if (size < 0)
            return Step::NeedsMore;
        if (size == 0)
            return Begin();
        m_examined += size;
        Drop(size);
    }
    return m_isAll ? Step::Ended : Step::NeedsMore;
}

qint64 Framing::SizeBetween() const
{
    const char* const begin = m_bytes.Data();
    const qint64 there = m_bytes.Size();
    const qint64 white = ROUTERDOCUMENTS::whiteAt(begin, there, m_units, m_isAll);
    if (white != 0 || *begin != 0)
        return white;
    const qint64 zeros = std::find_if(begin, begin + there, [](char byte) { return byte != 0; }) - begin;
    // Behind a text with wide units, zeros have the same units.
    if (m_units.size > 1)
        return zeros == there && there < m_units.size && !m_isAll ? -1 : zeros / m_units.size * m_units.size;
    return std::max<qint64>(zeros - mostLeadingZeros, 0);
}

MessageBeginning Framing::Recognise(bool isAll)
{
    ROUTERDOCUMENTS::BeginningRules rules;
    rules.limit = m_limit;
    rules.isAll = isAll;
    m_examined += std::min(m_bytes.Size(), ROUTERDOCUMENTS::binaryHeaderSize);
    return ROUTERDOCUMENTS::recogniseBeginning(m_bytes.Data(), m_bytes.Size(), rules);
}

Framing::Step Framing::Begin()
{
    MessageBeginning beginning = Recognise(false);
    const bool isUnclear = beginning.kind == MessageBeginning::Unclear;
    if (isUnclear && !m_isAll)
        return Step::NeedsMore;
    if (isUnclear)
        beginning = Recognise(true);
    switch (beginning.kind) {
    case MessageBeginning::Unclear:
    case MessageBeginning::Nothing:
        if (*m_bytes.Data() != 0)
            return BreakAtNoMessage(isUnclear);
        Drop(1);
        return Step::Done;
    case MessageBeginning::Mark:
        Drop(beginning.mark);
        return Step::Done;
    case MessageBeginning::Aside:
    case MessageBeginning::Message:
        break;
    }
    if (beginning.form == Form::Json)
        return BreakHere(Failure::NotWellFormed,
                         QStringLiteral("JSON is no form of messages on a connection."));
    m_isAside = beginning.kind == MessageBeginning::Aside;
    m_form = beginning.form;
    m_units = beginning.units;
    m_scanned = beginning.mark;
    m_end = XmlEnd(m_isAside ? XmlEnd::Aside : XmlEnd::SoundDocument, m_units, beginning.mark > 0);
    m_state = State::Inside;
    return Step::Done;
}

Framing::Step Framing::FindEndOfBinary()
{
    const qint64 there = m_bytes.Size();
    if (there < ROUTERDOCUMENTS::binaryHeaderSize)
        return EndOfData();
    const qint64 length = ROUTERDOCUMENTS::binaryLength(m_bytes.Data());
    if (length < 0)
        return BreakHere(Failure::NotABinaryForm, ROUTERDOCUMENTS::negativeLength() + QLatin1Char('.'));
    const qint64 size = ROUTERDOCUMENTS::binaryHeaderSize + length;
    if (size > m_limit)
        return BreakHere(Failure::InputTooLarge,
                         ROUTERDOCUMENTS::binaryTooLarge(size, m_limit) + QLatin1Char('.'));
    return there < size ? EndOfData() : EndMessage(size);
}

Framing::Step Framing::FindEndOfXml()
{
    // However much has arrived, the scan ends directly behind the largest message.
    const qint64 there = std::min(m_bytes.Size(), m_limit + 1);
    qint64 used = 0;
    const auto outcome =
        m_scanned < there ? m_end.Scan(m_bytes.Data() + m_scanned, there - m_scanned, used) : XmlEnd::More;
    m_scanned += used;
    m_examined += used;
    switch (outcome) {
    case XmlEnd::Another:
        return BreakHere(Failure::NotWellFormed,
                         QStringLiteral("Another XML document begins before the end of this one."));
    case XmlEnd::Doubt:
        return BreakHere(Failure::NotWellFormed, QStringLiteral("The XML document contains a zero byte."));
    case XmlEnd::Damaged:
        return BreakAtDamage();
    case XmlEnd::Ended:
    case XmlEnd::More:
        break;
    }
    if (m_scanned > m_limit)
        return BreakHere(Failure::InputTooLarge, ROUTERDOCUMENTS::messageTooLarge(m_limit));
    return outcome == XmlEnd::Ended ? EndMessage(m_scanned) : EndOfData();
}

// The message has not arrived completely.
Framing::Step Framing::EndOfData()
{
    if (!m_isAll)
        return Step::NeedsMore;
    if (!IsBinary(m_form))
        return BreakHere(Failure::NotWellFormed,
                         m_isAside ? ROUTERDOCUMENTS::cutOffAside() : cutOffDocument());
    const qint64 there = m_bytes.Size();
    const qint64 header = ROUTERDOCUMENTS::binaryHeaderSize;
    return BreakHere(Failure::NotABinaryForm,
                     ROUTERDOCUMENTS::cutOffBinary(
                         there < header ? ROUTERDOCUMENTS::missingLength()
                                        : ROUTERDOCUMENTS::missingBytes(
                                            header + ROUTERDOCUMENTS::binaryLength(m_bytes.Data()) - there)));
}

Framing::Step Framing::EndMessage(qint64 size)
{
    if (m_isAside) {
        Drop(size);
        m_state = State::Between;
        return Step::Done;
    }
    m_size = size;
    m_state = State::Found;
    return Step::Found;
}

Framing::Step Framing::BreakHere(Failure::Kind kind, const QString& text)
{
    Break({kind, text, {}});
    return Step::Broken;
}

Framing::Step Framing::BreakAtDamage()
{
    const MODELKIT::LimitsInScope inScope(m_limits);
    Break(whyNotWellFormed(QByteArray::fromRawData(m_bytes.Data(), static_cast<int>(m_scanned))));
    return Step::Broken;
}

Framing::Step Framing::BreakAtNoMessage(bool isCutOff)
{
    constexpr int beginning = 64;
    const QByteArray first(m_bytes.Data(), static_cast<int>(std::min<qint64>(m_bytes.Size(), beginning)));
    QString reason = isCutOff
                         ? QStringLiteral("The message is cut off; %1.")
                               .arg(ROUTERDOCUMENTS::countedBytes(m_bytes.Size(), QStringLiteral("there")))
                         : ROUTERDOCUMENTS::WhyNoForm(first);
    if (reason.isEmpty())
        reason = QStringLiteral("No message begins here.");
    return BreakHere(
        ROUTERDOCUMENTS::isTextByte(first.at(0)) ? Failure::NotWellFormed : Failure::NotABinaryForm, reason);
}

void Framing::Drop(qint64 size)
{
    m_bytes.Drop(size);
    m_offset += size;
}

} // namespace ROUTERLINK
