// SPDX-License-Identifier: MIT
#include "documents/RecordingMachine.h"

#include "documents/ExchangeKeys.h"
#include "documents/JsonBehindXml.h"
#include "documents/MessageFailures.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

using MODELKIT::Failure;

namespace {

// Where a binary message breaks off a text, its first word may have been taken for text. These bytes are
// looked at again, with the one behind them.
constexpr qint64 lookBack = 5;

// How much of a skipped text is kept: more than the beginning of a message has in any units.
constexpr qint64 leastKept = 256;

} // namespace

RecordingReader::Machine::Machine(QIODevice& device, const RecordingOptions& options)
    : Source(device), m_form(options.form), m_end(JsonEnd(JsonEnd::AnyLines))
{}

RecordingReader::Machine::Step RecordingReader::Machine::TakeStep(RecordedMessage& message)
{
    switch (m_state) {
    case State::Between:
        return PassOver();
    case State::Searching:
        return Search();
    case State::Rejected:
        return LeaveRejected();
    case State::Broken:
        return LeaveBroken(message);
    case State::Inside:
    case State::Skipping:
        break;
    }
    return IsBinary(m_messageForm) ? FindEndOfBinary(message) : FindEndOfText(message);
}

bool RecordingReader::Machine::IsNothingBegun() const
{
    return m_state == State::Searching || m_state == State::Broken
           || (m_state == State::Between && m_arrivals.Size() == 0)
           || (m_state == State::Rejected && m_arrivals.Size() == m_scanned);
}

RecordingReader::Machine::Step RecordingReader::Machine::PassOver()
{
    while (m_arrivals.Size() > 0) {
        const qint64 white = whiteAt(m_arrivals.Data(), m_arrivals.Size(), m_units, m_isAll);
        if (white < 0)
            return Step::NeedsMore;
        if (white == 0)
            return Begin(Recognise(0, Look::Expecting));
        m_examined += white;
        m_arrivals.Drop(white, m_units);
    }
    return m_isAll ? Step::Finished : Step::NeedsMore;
}

RecordingReader::Machine::Step RecordingReader::Machine::Begin(const MessageBeginning& beginning)
{
    switch (beginning.kind) {
    case MessageBeginning::Unclear:
        return Step::NeedsMore;
    case MessageBeginning::Nothing:
        return BeginNothing();
    case MessageBeginning::Mark:
        m_arrivals.Drop(beginning.mark);
        return Step::Done;
    case MessageBeginning::Aside:
    case MessageBeginning::Message:
        break;
    }
    const bool isXml = beginning.form == Form::Xml;
    m_aside.reset();
    if (beginning.kind == MessageBeginning::Aside)
        m_aside = FailureHere(Failure::None, QString()).place;
    m_state = m_aside ? State::Skipping : State::Inside;
    m_messageForm = beginning.form;
    m_units = beginning.units;
    m_scanned = beginning.mark;
    m_searched = 1;
    m_isDoubtful = false;
    if (isXml)
        m_end = XmlEnd(m_aside ? XmlEnd::Aside : XmlEnd::Document, m_units, beginning.mark > 0);
    else
        m_end = JsonEnd(beginning.form == Form::JsonLines ? JsonEnd::OneLine : JsonEnd::AnyLines);
    return Step::Done;
}

RecordingReader::Machine::Step RecordingReader::Machine::BeginNothing()
{
    BeginningRules rules = Rules(0, Look::Searching);
    rules.form = std::nullopt;
    const MessageBeginning other = m_form ? Recognise(0, m_arrivals.Size(), rules) : MessageBeginning();
    if (other.kind == MessageBeginning::Unclear)
        return Step::NeedsMore;
    const bool isOther = other.kind == MessageBeginning::Message;
    const QString text = isOther ? QStringLiteral("Here begins a message in the form %1, expected is %2")
                                       .arg(NameOf(other.form), NameOf(*m_form))
                                 : QStringLiteral("No message begins here");
    BeginStretch(FailureHere(Failure::None, text), 1);
    if (isOther)
        m_stretch.otherForm = other.form;
    return Step::Done;
}

RecordingReader::Machine::Step RecordingReader::Machine::FindEndOfBinary(RecordedMessage& message)
{
    const qint64 there = m_arrivals.Size();
    const auto cutOff = [this](const QString& missing) {
        m_isCutOff = true;
        return BeginStretch(FailureHere(Failure::NotABinaryForm, cutOffBinary(missing)), 1,
                            ByteCount::LeftOut);
    };
    if (there < binaryHeaderSize)
        return m_isAll ? cutOff(missingLength()) : Step::NeedsMore;
    const qint64 length = binaryLength(m_arrivals.Data());
    if (length < 0)
        return BeginStretch(FailureHere(Failure::NotABinaryForm, negativeLength()), 1);
    const qint64 size = binaryHeaderSize + length;
    if (size > m_limit)
        return BeginStretch(FailureHere(Failure::InputTooLarge, binaryTooLarge(size, m_limit)), 1);
    if (there < size)
        return m_isAll ? cutOff(missingBytes(size - there)) : Step::NeedsMore;
    return EndMessage(size, message);
}

RecordingReader::Machine::Step RecordingReader::Machine::FindEndOfText(RecordedMessage& message)
{
    if (m_isDoubtful)
        return BreakOffXml(message);
    const char* const begin = m_arrivals.Data() + m_scanned;
    const qint64 size = m_arrivals.Size() - m_scanned;
    qint64 used = 0;
    const bool isXml = m_messageForm == Form::Xml;
    const auto xml = isXml ? std::get<XmlEnd>(m_end).Scan(begin, size, used) : XmlEnd::More;
    const auto json = isXml ? JsonEnd::More : std::get<JsonEnd>(m_end).Scan(begin, size, used);
    m_scanned += used;
    m_examined += used;
    const qint64 other = m_units.size > 1 ? FindOtherUnits(xml == XmlEnd::Ended) : 0;
    if (other > 0)
        return BreakOff(other, message);
    if (xml == XmlEnd::Ended || json == JsonEnd::Ended)
        return EndMessage(m_scanned, message);
    if (xml == XmlEnd::Another)
        return BreakOff(ScannedOfDocument(), message);
    m_isDoubtful = xml == XmlEnd::Doubt;
    if (json == JsonEnd::Broken) {
        // The end of its string may be missing, and what stands in the string may be another message.
        const qint64 line = std::get<JsonEnd>(m_end).GetLineSize();
        m_scanned = std::max<qint64>(m_scanned - std::max(lookBack, line), 1);
        if (m_state == State::Inside && Recognise(0, Look::Searching).kind == MessageBeginning::Message) {
            m_state = State::Broken;
            return Step::Done;
        }
        const bool isUntold = m_state == State::Inside;
        PassOverBroken();
        m_stretch.isUntold = isUntold;
        return Step::Done;
    }
    return m_isDoubtful ? Step::Done : TooLittle(message);
}

// The bytes of a document that was cut off are followed by narrow ones, or by such that lie one byte off.
qint64 RecordingReader::Machine::FindOtherUnits(bool isEnd)
{
    const bool isWhole = isEnd || m_isAll;
    for (; m_searched + 1 < m_scanned; ++m_searched) {
        const bool isAligned = m_searched % m_units.size == 0;
        if (!mayBreakOffWide(m_arrivals.Data() + m_searched, m_units, isAligned))
            continue;
        BeginningRules rules = Rules(m_searched, Look::Searching);
        rules.isAll = isWhole;
        const MessageBeginning beginning = Recognise(m_searched, m_scanned, rules);
        if (beginning.kind == MessageBeginning::Unclear)
            return 0;
        const bool isOther =
            beginning.units.size != m_units.size
            || (beginning.units.isBigEndian == m_units.isBigEndian ? !isAligned : beginning.mark > 0);
        if (beginning.kind == MessageBeginning::Message && isOther)
            return m_searched;
    }
    return 0;
}

// On one line, and at the end, it is clear what belongs to it. Then it is delivered, so that its reader says
// what is wrong. Otherwise the caller is told how much is passed over.
RecordingReader::Machine::Step RecordingReader::Machine::LeaveBroken(RecordedMessage& message)
{
    const char* const begin = m_arrivals.Data();
    const MessageBeginning::Kind kind = FindBeginning(m_scanned);
    if (m_scanned > m_limit)
        return PassOverBroken();
    const bool isRest = kind == MessageBeginning::Nothing && m_isAll;
    if (kind != MessageBeginning::Message && !isRest)
        return Step::NeedsMore;
    qint64 size = m_scanned;
    while (isWhite(begin[size - 1]))
        --size;
    const bool isOneLine = std::none_of(begin, begin + size, [](char c) { return c == '\n' || c == '\r'; });
    if (!isOneLine && !(isRest && m_messageForm == Form::Json))
        return PassOverBroken();
    m_examined += size;
    return EndMessage(size, message);
}

RecordingReader::Machine::Step RecordingReader::Machine::PassOverBroken()
{
    return BeginStretch(FailureHere(Failure::NotWellFormed, QStringLiteral("This is no JSON value")),
                        m_scanned);
}

qint64 RecordingReader::Machine::ScannedOfDocument() const
{
    return std::max<qint64>(m_scanned - std::get<XmlEnd>(m_end).GetBehind(), 0);
}

// Where bytes are in no XML, another message may begin, because the end of this one is missing.
RecordingReader::Machine::Step RecordingReader::Machine::BreakOffXml(RecordedMessage& message)
{
    for (qint64 at = std::max<qint64>(m_scanned - lookBack, 1); at < m_scanned; ++at) {
        const MessageBeginning beginning = Recognise(at, Look::Searching);
        if (beginning.kind == MessageBeginning::Unclear)
            return Step::NeedsMore;
        if (beginning.kind == MessageBeginning::Message && beginning.form != Form::Xml)
            return BreakOff(at, message);
    }
    m_isDoubtful = false;
    return Step::Done;
}

// Another message begins. The document that it breaks off is delivered, so that its reader says what is
// missing. So is one that the end of the recording breaks off.
RecordingReader::Machine::Step RecordingReader::Machine::BreakOff(qint64 size, RecordedMessage& message)
{
    if (!m_aside) {
        const qint64 json = JsonBehind(size);
        return EndMessage(json > 0 ? json : size, message);
    }
    m_state = State::Between;
    m_arrivals.Drop(size, m_units);
    Throw({Failure::NotWellFormed, cutOffAside(), *m_aside});
}

qint64 RecordingReader::Machine::JsonBehind(qint64 size)
{
    const bool isText = m_messageForm == Form::Xml && std::get<XmlEnd>(m_end).IsInElements();
    if (m_state != State::Inside || m_aside || m_units.size > 1 || !isText)
        return 0;
    return jsonBehindXml(m_arrivals.Data(), size, Rules(0, Look::Searching), m_examined);
}

// The text has been scanned as far as it is there.
RecordingReader::Machine::Step RecordingReader::Machine::TooLittle(RecordedMessage& message)
{
    if (m_state == State::Inside && m_scanned > m_limit) {
        m_state = State::Skipping;
        Throw(MessageTooLarge());
    }
    if (m_isAll && m_messageForm == Form::Xml && std::get<XmlEnd>(m_end).IsRootLeft())
        return EndMessage(ScannedOfDocument(), message);
    if (m_isAll) {
        const Step step = BreakOff(m_scanned, message);
        m_isCutOff = m_arrivals.Size() == 0;
        return step;
    }
    if (m_state == State::Skipping && m_scanned > leastKept) {
        // In whole units.
        const qint64 dropped = (m_scanned - leastKept) / 4 * 4;
        m_arrivals.Drop(dropped, m_units);
        m_scanned -= dropped;
        m_searched = std::max<qint64>(m_searched - dropped, 0);
    }
    return Step::NeedsMore;
}

RecordingReader::Machine::Step RecordingReader::Machine::EndMessage(qint64 size, RecordedMessage& message)
{
    const bool isSkipped = m_state == State::Skipping;
    m_state = State::Between;
    if (isSkipped || size > m_limit) {
        const Failure failure = isSkipped ? Failure() : MessageTooLarge();
        m_arrivals.Drop(size, m_units);
        if (!isSkipped)
            Throw(failure);
        return Step::Done;
    }
    const bool isJson = m_messageForm == Form::Json || m_messageForm == Form::JsonLines;
    if (isJson && isEvent(QByteArray::fromRawData(m_arrivals.Data(), static_cast<int>(size)))) {
        m_examined += size;
        m_arrivals.Drop(size, m_units);
        return Step::Done;
    }
    message.number = ++m_count;
    message.offset = m_arrivals.Offset();
    message.line = m_arrivals.Line();
    message.column = m_arrivals.Column();
    message.form = m_messageForm;
    if (IsBinary(m_messageForm))
        m_arrivals.ForgetLines();
    message.bytes = m_arrivals.Take(size, m_units);
    return Step::Found;
}

RecordingReader::Machine::Step RecordingReader::Machine::Search()
{
    qint64 at = 0;
    const MessageBeginning::Kind kind = FindBeginning(at);
    AddToStretch(at);
    const bool isOver = kind == MessageBeginning::Nothing && m_isAll;
    return kind == MessageBeginning::Message || isOver ? EndStretch() : Step::NeedsMore;
}

MessageBeginning::Kind RecordingReader::Machine::FindBeginning(qint64& place)
{
    const char* const begin = m_arrivals.Data();
    const char* const end = begin + m_arrivals.Size();
    for (const char* at = begin + place; at != end; ++at) {
        at = std::find_if(at, end, mayBeginMessage);
        m_examined += at == end ? 0 : 1;
        if (at == end)
            break;
        const MessageBeginning beginning = Recognise(at - begin, Look::Searching);
        if (beginning.kind == MessageBeginning::Nothing)
            continue;
        place = at - begin;
        return beginning.kind;
    }
    place = m_arrivals.Size();
    return MessageBeginning::Nothing;
}

RecordingReader::Machine::Step RecordingReader::Machine::BeginStretch(const Failure& failure, qint64 size,
                                                                      ByteCount byteCount)
{
    m_stretch = Stretch();
    m_stretch.failure = failure;
    m_stretch.byteCount = byteCount;
    m_state = State::Searching;
    AddToStretch(size);
    return Step::Done;
}

void RecordingReader::Machine::AddToStretch(qint64 size)
{
    const char* const begin = m_arrivals.Data();
    m_stretch.size += size;
    m_stretch.isText = m_stretch.isText && std::all_of(begin, begin + size, isTextByte);
    if (!m_stretch.isText)
        m_arrivals.ForgetLines();
    m_arrivals.Drop(size);
    m_examined += size;
}

RecordingReader::Machine::Step RecordingReader::Machine::EndStretch()
{
    m_state = State::Between;
    m_units = TextUnits();
    if (!m_stretch.isUntold)
        return Step::Done;
    Failure failure = m_stretch.failure;
    if (failure.kind == Failure::None)
        failure.kind = m_stretch.isText ? Failure::NotWellFormed : Failure::NotABinaryForm;
    if (m_stretch.byteCount == ByteCount::Added)
        failure.text +=
            QStringLiteral("; %1.").arg(countedBytes(m_stretch.size, QStringLiteral("passed over")));
    Throw(failure, m_stretch.otherForm);
}

MessageBeginning RecordingReader::Machine::Recognise(qint64 at, Look look)
{
    return Recognise(at, m_arrivals.Size(), Rules(at, look));
}

MessageBeginning RecordingReader::Machine::Recognise(qint64 at, qint64 end, BeginningRules rules)
{
    m_examined += std::min(end - at, binaryHeaderSize);
    return recogniseBeginning(m_arrivals.Data() + at, end - at, rules);
}

BeginningRules RecordingReader::Machine::Rules(qint64 at, Look look) const
{
    const char* const place = m_arrivals.Data() + at;
    BeginningRules rules;
    rules.form = m_form;
    rules.limit = m_limit;
    rules.look = look;
    rules.isAtLineBegin = at > 0 ? place[-1] == '\n' || place[-1] == '\r' : m_arrivals.IsAtLineBegin();
    rules.isAll = m_isAll;
    return rules;
}

Failure RecordingReader::Machine::MessageTooLarge() const
{
    return FailureHere(Failure::InputTooLarge, messageTooLarge(m_limit));
}

void RecordingReader::Machine::Throw(const Failure& failure, std::optional<Form> otherForm)
{
    throw DocumentError(failure, otherForm);
}

} // namespace ROUTERDOCUMENTS
