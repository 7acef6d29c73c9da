// SPDX-License-Identifier: MIT
#include "documents/Cutter.h"
#include "documents/DissectedValues.h"
#include "documents/Dissection.h"
#include "documents/Frames.h"
#include "documents/Values.h"

#include "modelkit/Place.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QVector>

#include <algorithm>
#include <optional>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// The byte count of a null text.
constexpr qint32 nullText = -1;

// Texts, decimals and enumerators are written as texts, with a byte count in front.
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

class PlainForm
{
public:
    // Info: the class, if it is known.
    PlainForm(const QByteArray& form, const FrameFormat& format, const RecordInfo* info,
              const PartVisitor& visit)
        : m_cutter(form, visit, format.byteOrder), m_format(format), m_info(info)
    {}

    void dissect()
    {
        const qint64 least = headerSizeOf(m_format);
        if (m_cutter.size() < least) {
            m_cutter.emitRest(m_cutter.size());
            m_cutter.emitEnd(QStringLiteral("A form has at least %1 bytes.").arg(least));
            return;
        }
        const RecordInfo* info = m_format.hasId ? dissectClassId() : m_info;
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

    // The class with which the form is decoded; null when neither the id nor the first tag tells it.
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
        } else if (m_info && info != m_info)
            part.wrong = QStringLiteral("Expected is %1.").arg(m_info->GetName());
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
        // In the path of a list, its items are the steps.
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
            part.meaning = QStringLiteral("%1 (%2)").arg(member->GetName(), TypeName(*member));
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

    // Returns the end of the payload, which is not after frameEnd, the end of the frame around it.
    qint64 dissectLength(const RecordInfo& info, const MemberInfo* member, qint64 frameEnd)
    {
        const qint32 length = m_cutter.peekWord();
        const qint64 begin = m_cutter.at() + wordSize;
        const qint64 end = begin + length;
        const bool isPossible = length >= 0 && end <= frameEnd;
        const auto size = member ? sizeOfValue(*member, frameEnd) : std::nullopt;
        const qint64 behindValue = begin + size.value_or(length);
        const bool disagree = behindValue != end;
        // Reading uses the size of the value. But when a known tag follows only at the end according to the
        // length, more can be decoded with the length.
        const bool goesByValue =
            disagree && behindValue <= frameEnd
            && !(isPossible && canGoOn(info, end, frameEnd) && !canGoOn(info, behindValue, frameEnd));
        QString wrong = negativeLength(length);
        if (length >= 0 && end > frameEnd)
            wrong = goesBeyond(QStringLiteral("The entry"), end - frameEnd, info.GetName());
        // Otherwise the byte count of a text is wrong, and not the length.
        else if (length >= 0 && disagree && (goesByValue || !isTextual(*member)))
            wrong = QStringLiteral("The length is %1, but the value takes %2.")
                        .arg(length)
                        .arg(bytesText(behindValue - begin));
        m_cutter.emitWord(Part::Length, length, lengthText(length), wrong);
        if (goesByValue)
            return behindValue;
        return isPossible ? end : frameEnd;
    }

    // Whether the frame ends at the offset or continues there with a known tag.
    bool canGoOn(const RecordInfo& info, qint64 offset, qint64 frameEnd) const
    {
        if (offset == frameEnd)
            return true;
        const qint64 behind = offset - m_cutter.at();
        return m_cutter.available(frameEnd) >= behind + wordSize
               && info.FindMember(static_cast<quint32>(m_cutter.peekWord(behind)));
    }

    // The size in bytes of the member's value, which follows the length at the current position. Nothing when
    // only the length tells it.
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

    // When the input is cut off, only its end is reported as wrong.
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
            part.note = QStringLiteral("A null text is not a number. The record reads it as 0.");
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
    const FrameFormat m_format;
    const RecordInfo* const m_info;
};

} // namespace

void DissectPlain(const QByteArray& form, const PartVisitor& visit, const RecordInfo* info)
{
    PlainForm(form, FrameFormat(), info, visit).dissect();
}

void DissectFrame(const QByteArray& frame, const FrameFormat& format, const RecordInfo* info,
                  QByteArray& plain, const PartVisitor& visit)
{
    requireClass(format, info);
    plain.clear();
    if (!isCompressedFrame(frame, format)) {
        PlainForm(frame, format, info, visit).dissect();
        return;
    }
    DissectCompressed(inUsualOrder(frame, format), plain, [&](Part part) {
        part.bytes = frame.mid(static_cast<int>(part.offset), static_cast<int>(part.bytes.size()));
        visit(part);
    });
}

} // namespace ROUTERDOCUMENTS
