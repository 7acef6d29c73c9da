#include "documents/Dissection.h"

#include "Terminal.h"
#include "documents/Values.h"

#include "modelkit/BinaryForm.h"
#include "modelkit/Place.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/QtEndian>

#include <algorithm>
#include <optional>

namespace routermsg {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

QString nameOf(Part::Kind kind)
{
    switch (kind) {
    case Part::ClassId:
        return QStringLiteral("classId");
    case Part::Marker:
        return QStringLiteral("marker");
    case Part::Tag:
        return QStringLiteral("tag");
    case Part::Length:
        return QStringLiteral("length");
    case Part::ItemCount:
        return QStringLiteral("itemCount");
    case Part::ItemLength:
        return QStringLiteral("itemLength");
    case Part::ByteCount:
        return QStringLiteral("byteCount");
    case Part::Value:
        return QStringLiteral("value");
    case Part::InflatedSize:
        return QStringLiteral("inflatedSize");
    case Part::Compressed:
        return QStringLiteral("compressed");
    case Part::Undecoded:
        return QStringLiteral("undecoded");
    case Part::End:
        return QStringLiteral("end");
    }
    return QString();
}

namespace {

constexpr qint64 wordSize = 4;
constexpr qint64 headerSize = 2 * wordSize;
// The byte count of a null text.
constexpr qint32 nullText = -1;

QString counted(qint64 count, const QString& one, const QString& several)
{
    return QStringLiteral("%1 %2").arg(count).arg(count == 1 ? one : several);
}

QString bytesText(qint64 count) { return counted(count, QStringLiteral("byte"), QStringLiteral("bytes")); }

QString lengthText(qint64 length) { return QStringLiteral("length %1").arg(length); }

QString negativeLength(qint64 length)
{
    return length < 0 ? QStringLiteral("The length is negative.") : QString();
}

QString goesBeyond(const QString& what, qint64 excess, const QString& whole)
{
    return QStringLiteral("%1 goes %2 beyond the end of %3.").arg(what, bytesText(excess), whole);
}

// --- bytes ----------------------------------------------------------------------------------

// Walks over the bytes and hands the parts out.
class Cutter
{
public:
    Cutter(const QByteArray& form, const PartVisitor& visit) : m_form(form), m_visit(visit) {}

    qint64 at() const { return m_at; }
    qint64 size() const { return m_form.size(); }
    // How much there is up to an end that lies perhaps behind the end of the input.
    qint64 available(qint64 end) const { return std::max<qint64>(std::min(end, size()) - m_at, 0); }
    bool isCutOff(qint64 end) const { return end > size(); }

    // The next word, or the one so many bytes behind it. It must be there.
    qint32 peekWord(qint64 behind = 0) const
    {
        return qFromBigEndian<qint32>(m_form.constData() + m_at + behind);
    }
    qint64 peekDoubleWord() const { return qFromBigEndian<qint64>(m_form.constData() + m_at); }
    QByteArray peek(qint64 count) const
    {
        return QByteArray::fromRawData(m_form.constData() + m_at, static_cast<int>(count));
    }

    // Hands out the part with the next bytes, at the path.
    void emitPart(Part part, qint64 count)
    {
        part.offset = m_at;
        part.bytes = peek(count);
        part.depth = m_depth;
        part.path = m_path.join(QLatin1Char('/'));
        m_at += count;
        m_visit(part);
    }

    void emitWord(Part::Kind kind, qint64 value, const QString& meaning, const QString& wrong = QString())
    {
        Part part;
        part.kind = kind;
        part.meaning = meaning;
        part.value = value;
        part.wrong = wrong;
        emitPart(part, wordSize);
    }

    // What is left up to the end, if anything.
    void emitRest(qint64 end, const QString& wrong = QString())
    {
        const qint64 count = available(end);
        if (count == 0)
            return;
        Part part;
        part.meaning = QStringLiteral("%1, not decoded").arg(bytesText(count));
        part.wrong = wrong;
        emitPart(part, count);
    }

    void emitEnd(const QString& wrong)
    {
        Part part;
        part.kind = Part::End;
        part.meaning = QStringLiteral("end");
        part.wrong = wrong;
        emitPart(part, 0);
    }

    // What is behind the form, or that the input ends before the form does.
    void emitBehindForm(qint64 formEnd)
    {
        if (isCutOff(formEnd))
            emitEnd(
                QStringLiteral("The input ends here; %1 missing.")
                    .arg(counted(formEnd - size(), QStringLiteral("byte is"), QStringLiteral("bytes are"))));
        const qint64 count = available(size());
        if (count == 0)
            return;
        Part part;
        part.meaning = QStringLiteral("%1 behind the form").arg(bytesText(count));
        part.note = QStringLiteral("What is behind the form is not read.");
        emitPart(part, count);
    }

    // As long as it lives, parts are a level deeper.
    class Level
    {
    public:
        explicit Level(Cutter& cutter) : m_cutter(cutter) { ++cutter.m_depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        ~Level() { --m_cutter.m_depth; }

    private:
        Cutter& m_cutter;
    };

    // As long as it lives, the path has a step more, unless that is empty.
    class Step
    {
    public:
        Step(Cutter& cutter, const QString& name) : m_path(cutter.m_path), m_sizeBefore(m_path.size())
        {
            if (!name.isEmpty())
                m_path.append(name);
        }
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;
        ~Step()
        {
            if (m_path.size() > m_sizeBefore)
                m_path.removeLast();
        }

    private:
        QStringList& m_path;
        const QStringList::size_type m_sizeBefore;
    };

private:
    const QByteArray& m_form;
    const PartVisitor& m_visit;
    qint64 m_at = 0;
    int m_depth = 0;
    // The empty first step becomes the slash in front.
    QStringList m_path = {QString()};
};

// --- values ---------------------------------------------------------------------------------

// Texts, decimals and enumerators have a byte count in front.
bool isTextual(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::Decimal:
    case MemberInfo::Text:
    case MemberInfo::Enumeration:
        return true;
    default:
        return false;
    }
}

bool isList(const MemberInfo& member) { return member.GetKind() == MemberInfo::List; }

// Both ends of a long text, without halves of surrogate pairs.
QString abbreviated(const QString& text, QString (*safe)(const QString&))
{
    int begin = 40;
    int end = 16;
    if (text.size() <= begin + end)
        return safe(text);
    if (text.at(begin - 1).isHighSurrogate())
        --begin;
    if (text.at(text.size() - end).isLowSurrogate())
        --end;
    return safe(text.left(begin)) + QStringLiteral("...") + safe(text.right(end))
           + QStringLiteral(" (%1 characters)").arg(text.size());
}

Part valuePart(const QString& meaning, const QJsonValue& value)
{
    Part part;
    part.kind = Part::Value;
    part.meaning = meaning;
    part.value = value;
    return part;
}

Part unsignedPart(qint64 number)
{
    const auto value = static_cast<unsigned int>(number & 0xFFFFFFFF);
    Part part = valuePart(QString::number(number), static_cast<qint64>(value));
    if (number != value)
        part.note = QStringLiteral("It is read as %1.").arg(value);
    return part;
}

Part booleanPart(char byte)
{
    const bool value = byte != 0;
    Part part = valuePart(value ? QStringLiteral("true") : QStringLiteral("false"), value);
    if (byte != 0 && byte != 1)
        part.note = QStringLiteral("True is usually written as 1.");
    return part;
}

Part decimalPart(const MemberInfo& member, const QString& text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber)
        return valuePart(abbreviated(text, printable), valueJson(member, number));
    Part part = valuePart(abbreviated(text, quoted), 0);
    part.note = QStringLiteral("It is no number and is read as 0.");
    return part;
}

Part enumeratorPart(const MemberInfo& member, const QString& name)
{
    const auto number = static_cast<int>(member.GetNames().indexOf(name));
    if (number >= 0)
        return valuePart(valueText(member, number), name);
    Part part = valuePart(abbreviated(name, quoted), name);
    part.wrong = QStringLiteral("There is no such enumerator of %1.").arg(member.GetName());
    return part;
}

Part textualPart(const MemberInfo& member, const QByteArray& bytes)
{
    const QString text = QString::fromUtf8(bytes);
    Part part = member.GetKind() == MemberInfo::Decimal       ? decimalPart(member, text)
                : member.GetKind() == MemberInfo::Enumeration ? enumeratorPart(member, text)
                                                              : valuePart(abbreviated(text, quoted), text);
    if (text.toUtf8() != bytes && part.note.isEmpty())
        part.note = QStringLiteral("Not all of it is UTF-8.");
    return part;
}

// --- the plain form -------------------------------------------------------------------------

class PlainForm
{
public:
    PlainForm(const QByteArray& form, const PartVisitor& visit) : m_cutter(form, visit) {}

    void dissect()
    {
        if (m_cutter.size() < headerSize) {
            m_cutter.emitRest(m_cutter.size());
            m_cutter.emitEnd(QStringLiteral("A form has at least %1 bytes.").arg(headerSize));
            return;
        }
        const RecordInfo* info = dissectClassId();
        const qint32 length = m_cutter.peekWord();
        const qint64 end = length < 0 ? m_cutter.size() : m_cutter.at() + wordSize + length;
        dissectContent(info, length, end);
        m_cutter.emitBehindForm(end);
    }

private:
    void dissectContent(const RecordInfo* info, qint32 length, qint64 end)
    {
        const Cutter::Level level(m_cutter);
        const Cutter::Step step(m_cutter, info ? info->GetName() : QString());
        m_cutter.emitWord(Part::Length, length, lengthText(length), negativeLength(length));
        if (info && length >= 0)
            dissectEntries(*info, end);
        m_cutter.emitRest(end);
    }

    // The class as which the form is to be read; null when nothing tells it.
    const RecordInfo* dissectClassId()
    {
        const auto id = static_cast<quint32>(m_cutter.peekWord());
        const RecordInfo* info = RecordInfo::FindByFrameId(id);
        Part part;
        part.kind = Part::ClassId;
        part.meaning = info ? info->GetName() : QStringLiteral("unknown class");
        part.value = info ? QJsonValue(info->GetName()) : QJsonValue(QJsonValue::Undefined);
        if (!info) {
            part.wrong = QStringLiteral("No record has this class id.");
            info = classByFirstTag();
            if (info)
                part.note = QStringLiteral("What follows is decoded as %1, which has the first tag.")
                                .arg(info->GetName());
        }
        m_cutter.emitPart(part, wordSize);
        return info;
    }

    const RecordInfo* classByFirstTag() const
    {
        if (m_cutter.size() < headerSize + wordSize)
            return nullptr;
        const auto tag = static_cast<quint32>(m_cutter.peekWord(headerSize));
        const auto& all = RecordInfo::All();
        const auto found = std::find_if(all.begin(), all.end(),
                                        [&](const RecordInfo* info) { return info->FindMember(tag); });
        return found == all.end() ? nullptr : *found;
    }

    void dissectEntries(const RecordInfo& info, qint64 end)
    {
        QVector<const MemberInfo*> before;
        while (m_cutter.available(end) >= headerSize)
            dissectEntry(info, end, before);
        m_cutter.emitRest(
            end,
            unlessCutOff(
                end, QStringLiteral("What is left in %1 is too short for an entry.").arg(info.GetName())));
    }

    void dissectEntry(const RecordInfo& info, qint64 end, QVector<const MemberInfo*>& before)
    {
        const MemberInfo* member = info.FindMember(static_cast<quint32>(m_cutter.peekWord()));
        dissectTag(info, member, member && !isList(*member) && before.contains(member));
        if (member && !before.contains(member))
            before += member;
        const Cutter::Level level(m_cutter);
        // Steps for a list are its items.
        const Cutter::Step step(m_cutter, member && !isList(*member) ? member->GetName() : QString());
        const qint64 entryEnd = dissectLength(info, member, end);
        if (member && m_cutter.available(entryEnd) > 0)
            dissectPayload(*member, entryEnd);
        m_cutter.emitRest(entryEnd);
    }

    void dissectTag(const RecordInfo& info, const MemberInfo* member, bool isRepeated)
    {
        Part part;
        part.kind = Part::Tag;
        if (member) {
            part.meaning = QStringLiteral("%1 (%2)").arg(member->GetName(), typeName(*member));
            part.value = member->GetName();
        } else {
            part.meaning = QStringLiteral("unknown tag");
            part.note =
                QStringLiteral("%1 has no member with this tag; the entry is skipped.").arg(info.GetName());
        }
        if (isRepeated)
            part.note = QStringLiteral("It came before; the last one counts.");
        m_cutter.emitPart(part, wordSize);
    }

    // Returns where the payload ends, which is in the frame that ends at frameEnd.
    qint64 dissectLength(const RecordInfo& info, const MemberInfo* member, qint64 frameEnd)
    {
        const qint32 length = m_cutter.peekWord();
        const qint64 begin = m_cutter.at() + wordSize;
        const qint64 end = begin + length;
        const bool isPossible = length >= 0 && end <= frameEnd;
        const auto size = member ? sizeOfValue(*member, frameEnd) : std::nullopt;
        const bool disagree = size && *size != length;
        // Reading goes by the value. But when only behind the length something follows that belongs there,
        // there is more to be shown that way.
        const bool goesByValue =
            disagree && begin + *size <= frameEnd
            && !(isPossible && canGoOn(info, end, frameEnd) && !canGoOn(info, begin + *size, frameEnd));
        QString wrong = negativeLength(length);
        if (length >= 0 && end > frameEnd)
            wrong = goesBeyond(QStringLiteral("The entry"), end - frameEnd, info.GetName());
        // Otherwise it is the byte count of a text that is wrong.
        else if (length >= 0 && disagree && (goesByValue || !isTextual(*member)))
            wrong =
                QStringLiteral("The length is %1, but the value takes %2.").arg(length).arg(bytesText(*size));
        m_cutter.emitWord(Part::Length, length, lengthText(length), wrong);
        if (goesByValue)
            return begin + *size;
        return isPossible ? end : frameEnd;
    }

    // Whether something follows at the offset that belongs into the frame, or nothing.
    bool canGoOn(const RecordInfo& info, qint64 offset, qint64 frameEnd) const
    {
        if (offset == frameEnd)
            return true;
        const qint64 behind = offset - m_cutter.at();
        return m_cutter.available(frameEnd) >= behind + wordSize
               && info.FindMember(static_cast<quint32>(m_cutter.peekWord(behind)));
    }

    // How many bytes the value of the member takes by itself, whose length is the next word; nothing when
    // it goes by its length.
    std::optional<qint64> sizeOfValue(const MemberInfo& member, qint64 frameEnd) const
    {
        if (member.GetKind() == MemberInfo::UnsignedInteger)
            return sizeof(qint64);
        if (member.GetKind() == MemberInfo::Boolean)
            return 1;
        if (!isTextual(member) || m_cutter.available(frameEnd) < headerSize)
            return std::nullopt;
        const qint32 count = m_cutter.peekWord(wordSize);
        return count < nullText ? std::nullopt : std::make_optional(wordSize + std::max<qint64>(count, 0));
    }

    void dissectPayload(const MemberInfo& member, qint64 end)
    {
        switch (member.GetKind()) {
        case MemberInfo::UnsignedInteger:
            if (m_cutter.available(end) >= qint64(sizeof(qint64)))
                m_cutter.emitPart(unsignedPart(m_cutter.peekDoubleWord()), sizeof(qint64));
            break;
        case MemberInfo::Boolean:
            m_cutter.emitPart(booleanPart(m_cutter.peek(1).at(0)), 1);
            break;
        case MemberInfo::Record:
            dissectEntries(*member.GetClass(), end);
            break;
        case MemberInfo::List:
            dissectList(member, end);
            break;
        default:
            dissectText(member, end);
        }
    }

    void dissectText(const MemberInfo& member, qint64 end)
    {
        if (m_cutter.available(end) < wordSize) {
            m_cutter.emitRest(end, unlessCutOff(end, QStringLiteral("A text has at least 4 bytes.")));
            return;
        }
        const qint32 count = m_cutter.peekWord();
        dissectByteCount(member, end);
        if (count >= 0 && m_cutter.available(end) >= count)
            m_cutter.emitPart(textualPart(member, m_cutter.peek(count)), count);
    }

    // Of what is missing because the input ends it is told once, there.
    QString unlessCutOff(qint64 end, const QString& wrong) const
    {
        return m_cutter.isCutOff(end) ? QString() : wrong;
    }

    void dissectByteCount(const MemberInfo& member, qint64 end)
    {
        const qint32 count = m_cutter.peekWord();
        const qint64 excess = std::max(count, 0) - (end - m_cutter.at() - wordSize);
        Part part;
        part.kind = Part::ByteCount;
        part.meaning =
            count == nullText ? QStringLiteral("null") : QStringLiteral("text of %1").arg(bytesText(count));
        part.value = count;
        if (count < nullText)
            part.wrong = QStringLiteral("The number of bytes is negative.");
        else if (excess > 0)
            part.wrong = goesBeyond(QStringLiteral("The text"), excess, QStringLiteral("its entry"));
        else if (excess < 0)
            part.wrong = QStringLiteral("The text ends %1 before its entry.").arg(bytesText(-excess));
        if (count == nullText && member.GetKind() == MemberInfo::Decimal)
            part.note = QStringLiteral("It is no number and is read as 0.");
        if (count == nullText && member.GetKind() == MemberInfo::Enumeration)
            part.note = QStringLiteral("It stands for no enumerator.");
        m_cutter.emitPart(part, wordSize);
    }

    void dissectList(const MemberInfo& member, qint64 end)
    {
        if (m_cutter.available(end) < wordSize) {
            m_cutter.emitRest(end, unlessCutOff(end, QStringLiteral("A list has at least 4 bytes.")));
            return;
        }
        const qint32 count = m_cutter.peekWord();
        m_cutter.emitWord(Part::ItemCount, count,
                          counted(count, QStringLiteral("item"), QStringLiteral("items")),
                          count < 0 ? QStringLiteral("The number of items is negative.") : QString());
        if (count < 0)
            return;
        int i = 0;
        while (i < count && m_cutter.available(end) >= wordSize)
            dissectItem(member, ++i, end);
        if (m_cutter.isCutOff(end))
            return;
        if (i == count) {
            m_cutter.emitRest(end, QStringLiteral("The list is longer than its items."));
            return;
        }
        m_cutter.emitRest(end, QStringLiteral("What is left in the list is too short for an item."));
        m_cutter.emitEnd(QStringLiteral("The list ends here; %1 of %2 missing.")
                             .arg(counted(count - i, QStringLiteral("item"), QStringLiteral("items")))
                             .arg(count));
    }

    void dissectItem(const MemberInfo& member, int number, qint64 listEnd)
    {
        const QString& name = member.GetClass()->GetName();
        const qint32 length = m_cutter.peekWord();
        const qint64 end = m_cutter.at() + wordSize + length;
        QString wrong = negativeLength(length);
        if (end > listEnd)
            wrong = goesBeyond(QStringLiteral("The item"), end - listEnd, QStringLiteral("its list"));
        const Cutter::Step step(m_cutter, MODELKIT::Place::Step(name, number));
        m_cutter.emitWord(Part::ItemLength, length,
                          QStringLiteral("[%1] %2, length %3").arg(number).arg(name).arg(length), wrong);
        const Cutter::Level level(m_cutter);
        if (length < 0)
            m_cutter.emitRest(listEnd);
        else
            dissectEntries(*member.GetClass(), std::min(end, listEnd));
    }

    Cutter m_cutter;
};

// --- the compressed form --------------------------------------------------------------------

class CompressedForm
{
public:
    // What cannot be inflated is told by the failure.
    CompressedForm(const QByteArray& form, const MODELKIT::Failure& failure, const PartVisitor& visit)
        : m_cutter(form, visit), m_failure(failure)
    {}

    void dissect()
    {
        Part marker;
        marker.kind = Part::Marker;
        marker.meaning = QStringLiteral("compressed form");
        m_cutter.emitPart(marker, wordSize);
        const qint32 length = m_cutter.peekWord();
        const qint64 end = length < 0 ? m_cutter.size() : m_cutter.at() + wordSize + length;
        dissectContent(length, end);
        m_cutter.emitBehindForm(end);
    }

private:
    // Why the form cannot be read beyond the offset.
    QString failureAt(qint64 offset) const
    {
        return m_failure.kind != MODELKIT::Failure::None && m_failure.place.offset == offset ? m_failure.text
                                                                                             : QString();
    }

    void dissectContent(qint32 length, qint64 end)
    {
        const Cutter::Level level(m_cutter);
        // The library blames the beginning for what is wrong with the length.
        m_cutter.emitWord(Part::Length, length, lengthText(length), failureAt(0));
        for (int number = 1; length >= 0 && m_cutter.available(end) >= headerSize; ++number)
            dissectPiece(number, end);
        m_cutter.emitRest(end, failureAt(m_cutter.at()));
    }

    void dissectPiece(int number, qint64 formEnd)
    {
        const qint32 length = m_cutter.peekWord();
        const qint64 end = std::clamp(m_cutter.at() + wordSize + length, m_cutter.at() + wordSize, formEnd);
        m_cutter.emitWord(Part::Length, length,
                          QStringLiteral("[%1] piece, length %2").arg(number).arg(length),
                          failureAt(m_cutter.at()));
        const Cutter::Level level(m_cutter);
        if (m_cutter.available(end) < wordSize) {
            m_cutter.emitRest(end);
            return;
        }
        const qint32 size = m_cutter.peekWord();
        m_cutter.emitWord(Part::InflatedSize, size, QStringLiteral("inflated size %1").arg(size));
        if (m_cutter.available(end) == 0)
            return;
        Part part;
        part.kind = Part::Compressed;
        part.meaning = QStringLiteral("%1, compressed").arg(bytesText(m_cutter.available(end)));
        m_cutter.emitPart(part, m_cutter.available(end));
    }

    Cutter m_cutter;
    const MODELKIT::Failure& m_failure;
};

} // namespace

void dissectPlain(const QByteArray& form, const PartVisitor& visit) { PlainForm(form, visit).dissect(); }

void dissectCompressed(const QByteArray& form, QByteArray& plain, const PartVisitor& visit)
{
    MODELKIT::Failure failure;
    MODELKIT::InflateForm(form, plain, failure);
    CompressedForm(form, failure, visit).dissect();
}

} // namespace routermsg
