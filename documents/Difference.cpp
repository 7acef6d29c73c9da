// SPDX-License-Identifier: MIT
#include "documents/Difference.h"

#include "documents/Alignment.h"
#include "documents/Moves.h"
#include "documents/Text.h"
#include "documents/Values.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QHash>
#include <QtCore/QIODevice>
#include <QtCore/QVector>

#include <algorithm>
#include <cmath>
#include <limits>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

QString NameOf(Difference::Kind kind)
{
    switch (kind) {
    case Difference::Changed:
        return QStringLiteral("changed");
    case Difference::Removed:
        return QStringLiteral("removed");
    case Difference::Added:
        return QStringLiteral("added");
    case Difference::Moved:
        return QStringLiteral("moved");
    }
    return QString();
}

QJsonObject DifferenceJson(const Difference& difference)
{
    QJsonObject json{{QStringLiteral("kind"), NameOf(difference.kind)}};
    if (difference.kind != Difference::Added)
        json[QStringLiteral("firstPath")] = difference.path.InFirst();
    if (difference.kind != Difference::Removed)
        json[QStringLiteral("secondPath")] = difference.path.InSecond();
    if (!difference.firstValue.isUndefined())
        json[QStringLiteral("first")] = difference.firstValue;
    if (!difference.secondValue.isUndefined())
        json[QStringLiteral("second")] = difference.secondValue;
    return json;
}

namespace {

// Extends the path by a step during its lifetime.
class Entered
{
public:
    Entered(MemberPath& path, const MemberPath::Step& step) : m_path(path) { path.Enter(step); }
    Entered(const Entered&) = delete;
    Entered& operator=(const Entered&) = delete;
    ~Entered() { m_path.Leave(); }

private:
    MemberPath& m_path;
};

// Writes the content of records without ignored members: records with the same bytes are equal.
class Fingerprint
{
public:
    Fingerprint(const IgnoredMembers& ignored, const MemberPath& path) : m_ignored(ignored), m_path(path) {}

    QByteArray of(const IMKObject& record)
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        write(record, stream);
        return bytes;
    }

private:
    void write(const IMKObject& record, QDataStream& stream)
    {
        for (const MemberInfo* member : RecordInfo::Of(record).GetMembers()) {
            if (!member->IsSet(record))
                continue;
            const Entered step(m_path, {member->GetName(), 0, 0});
            if (m_ignored.Contains(m_path))
                continue;
            stream << member->GetBinaryTag();
            write(record, *member, stream);
        }
        constexpr quint32 end = 0;
        stream << end;
    }

    void write(const IMKObject& record, const MemberInfo& member, QDataStream& stream)
    {
        switch (member.GetKind()) {
        case MemberInfo::Decimal:
            write(member.GetValue(record).toDouble(), stream);
            break;
        case MemberInfo::Text:
            stream << member.GetValue(record).toString();
            break;
        case MemberInfo::UnsignedInteger:
        case MemberInfo::Boolean:
        case MemberInfo::Enumeration:
            stream << member.GetValue(record).toLongLong();
            break;
        case MemberInfo::Record:
            write(member.GetRecord(record), stream);
            break;
        case MemberInfo::List:
            writeItems(record, member, stream);
            break;
        }
    }

    // Equal numbers have the same bytes.
    static void write(double value, QDataStream& stream)
    {
        const double same = value == 0 ? 0 : value;
        stream << (std::isnan(same) ? std::numeric_limits<double>::quiet_NaN() : same);
    }

    void writeItems(const IMKObject& record, const MemberInfo& member, QDataStream& stream)
    {
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            m_path.SetNumbers(i + 1, i + 1);
            if (!m_ignored.Contains(m_path))
                write(member.GetItem(record, i), stream);
        }
    }

    const IgnoredMembers& m_ignored;
    MemberPath m_path;
};

// The index of the member that a record carries, if the record carries one at a time.
int carriedMember(const IMKObject& record)
{
    const RecordInfo& info = RecordInfo::Of(record);
    if (!info.IsChoice())
        return 0;
    const auto& members = info.GetMembers();
    const auto found = std::find_if(members.begin(), members.end(),
                                    [&](const MemberInfo* member) { return member->IsSet(record); });
    return static_cast<int>(found - members.begin());
}

// A list of one of the records, without the ignored items.
struct Items
{
    const IMKObject& owner;
    const MemberInfo& member;
    QVector<int> positions;

    int count() const { return static_cast<int>(positions.size()); }
    const IMKObject& at(int index) const { return member.GetItem(owner, positions.at(index)); }
    int number(int index) const { return positions.at(index) + 1; }
};

class Comparison
{
public:
    Comparison(const IgnoredMembers& ignored, const std::function<void(const Difference&)>& visit)
        : m_ignored(ignored), m_visit(visit)
    {}

    void compareRoots(const IMKObject& first, const IMKObject& second)
    {
        const QString& firstClass = RecordInfo::Of(first).GetName();
        const QString& secondClass = RecordInfo::Of(second).GetName();
        if (firstClass == secondClass) {
            const Entered step(m_path, {firstClass, 0, 0});
            if (!m_ignored.Contains(m_path))
                compare(first, second);
            return;
        }
        const Entered step(m_path, {QStringLiteral("(root)"), 0, 0});
        Difference difference;
        difference.first = firstClass;
        difference.second = secondClass;
        difference.firstValue = firstClass;
        difference.secondValue = secondClass;
        report(difference);
    }

private:
    void compare(const IMKObject& first, const IMKObject& second)
    {
        for (const MemberInfo* member : RecordInfo::Of(first).GetMembers()) {
            const Entered step(m_path, {member->GetName(), 0, 0});
            if (!m_ignored.Contains(m_path))
                compare(first, second, *member);
        }
    }

    void compare(const IMKObject& first, const IMKObject& second, const MemberInfo& member)
    {
        if (member.GetKind() == MemberInfo::List) {
            compareLists(first, second, member);
            return;
        }
        const bool isInFirst = member.IsSet(first);
        const bool isInBoth = isInFirst && member.IsSet(second);
        if (isInBoth && member.GetKind() == MemberInfo::Record)
            compare(member.GetRecord(first), member.GetRecord(second));
        else if (isInBoth ? !IsSameValue(member, member.GetValue(first), member.GetValue(second))
                          : isInFirst != member.IsSet(second))
            reportChange(first, second, member);
    }

    void compareLists(const IMKObject& first, const IMKObject& second, const MemberInfo& member)
    {
        const Items inFirst = itemsThatCount(first, member);
        const Items inSecond = itemsThatCount(second, member);
        QHash<QByteArray, int> known;
        const QVector<int> firstPrints = fingerprints(inFirst, known);
        const QVector<int> secondPrints = fingerprints(inSecond, known);
        auto same = m_aligner.align(firstPrints, secondPrints);
        const Moves moves(firstPrints, secondPrints, same);
        // What follows the last pair is a gap, too.
        same += {inFirst.count(), inSecond.count()};
        int i = 0;
        int j = 0;
        for (const auto& pair : same) {
            reportMoves(inFirst, i, pair.first, inSecond, moves);
            compareGap(inFirst, moves.othersInFirst(i, pair.first), inSecond,
                       moves.othersInSecond(j, pair.second));
            i = pair.first + 1;
            j = pair.second + 1;
        }
    }

    Items itemsThatCount(const IMKObject& record, const MemberInfo& member)
    {
        Items items{record, member, {}};
        for (int i = 0, count = member.CountItems(record); i < count; ++i) {
            m_path.SetNumbers(i + 1, i + 1);
            if (!m_ignored.Contains(m_path))
                items.positions += i;
        }
        return items;
    }

    // A number for each item; equal items have the same number.
    QVector<int> fingerprints(const Items& items, QHash<QByteArray, int>& known)
    {
        QVector<int> result;
        result.reserve(items.count());
        for (int i = 0; i < items.count(); ++i) {
            m_path.SetNumbers(items.number(i), items.number(i));
            const QByteArray bytes = Fingerprint(m_ignored, m_path).of(items.at(i));
            const auto number = static_cast<int>(known.size());
            const auto found = known.constFind(bytes);
            result += found == known.constEnd() ? *known.insert(bytes, number) : *found;
        }
        return result;
    }

    // Compares the items between two pairs of equal items.
    void compareGap(const Items& inFirst, const QVector<int>& gapInFirst, const Items& inSecond,
                    const QVector<int>& gapInSecond)
    {
        const auto pairs =
            m_aligner.align(carriedMembers(inFirst, gapInFirst), carriedMembers(inSecond, gapInSecond));
        int i = 0;
        int j = 0;
        for (const auto& pair : pairs) {
            reportMissing(inFirst, gapInFirst, i, pair.first, Difference::Removed);
            reportMissing(inSecond, gapInSecond, j, pair.second, Difference::Added);
            compareItems(inFirst, gapInFirst.at(pair.first), inSecond, gapInSecond.at(pair.second));
            i = pair.first + 1;
            j = pair.second + 1;
        }
        reportMissing(inFirst, gapInFirst, i, static_cast<int>(gapInFirst.size()), Difference::Removed);
        reportMissing(inSecond, gapInSecond, j, static_cast<int>(gapInSecond.size()), Difference::Added);
    }

    static QVector<int> carriedMembers(const Items& items, const QVector<int>& indices)
    {
        QVector<int> members;
        for (const int index : indices)
            members += carriedMember(items.at(index));
        return members;
    }

    void compareItems(const Items& inFirst, int i, const Items& inSecond, int j)
    {
        m_path.SetNumbers(inFirst.number(i), inSecond.number(j));
        if (!m_ignored.Contains(m_path))
            compare(inFirst.at(i), inSecond.at(j));
    }

    void reportMoves(const Items& inFirst, int begin, int end, const Items& inSecond, const Moves& moves)
    {
        for (int i = begin; i < end; ++i) {
            if (!moves.isMoved(i))
                continue;
            m_path.SetNumbers(inFirst.number(i), inSecond.number(moves.target(i)));
            if (m_ignored.Contains(m_path))
                continue;
            Difference difference;
            difference.kind = Difference::Moved;
            const IMKObject& item = inSecond.at(moves.target(i));
            difference.first = SummaryText(inFirst.at(i));
            difference.second = SummaryText(item);
            difference.firstValue = SummaryJson(inFirst.at(i));
            difference.secondValue = SummaryJson(item);
            report(difference);
        }
    }

    // Reports the items of a gap from begin to end.
    void reportMissing(const Items& items, const QVector<int>& gap, int begin, int end, Difference::Kind kind)
    {
        const bool isInFirst = kind == Difference::Removed;
        for (int i = begin; i < end; ++i) {
            const int number = items.number(gap.at(i));
            m_path.SetNumbers(isInFirst ? number : 0, isInFirst ? 0 : number);
            Difference difference = MissingRecord(items.at(gap.at(i)), kind);
            report(difference);
        }
    }

    void reportChange(const IMKObject& first, const IMKObject& second, const MemberInfo& member)
    {
        Difference difference;
        difference.first = MemberText(first, member);
        difference.second = MemberText(second, member);
        if (member.GetKind() == MemberInfo::Text && member.IsSet(first) && member.IsSet(second))
            setChangedTexts(member.GetValue(first).toString(), member.GetValue(second).toString(),
                            difference);
        difference.firstValue = MemberJson(first, member);
        difference.secondValue = MemberJson(second, member);
        report(difference);
    }

    static void setChangedTexts(const QString& first, const QString& second, Difference& difference)
    {
        if (first.isNull() || second.isNull())
            return;
        const auto quoted = QuotedWhereDifferent(first, second);
        difference.first = quoted.first;
        difference.second = quoted.second;
    }

    void report(Difference& difference)
    {
        difference.path = m_path;
        m_visit(difference);
    }

    const IgnoredMembers& m_ignored;
    const std::function<void(const Difference&)>& m_visit;
    Aligner m_aligner;
    MemberPath m_path;
};

} // namespace

Difference MissingRecord(const IMKObject& record, Difference::Kind kind)
{
    Difference difference;
    difference.kind = kind;
    difference.path.Enter({RecordInfo::Of(record).GetName(), 0, 0});
    const bool isInFirst = kind == Difference::Removed;
    (isInFirst ? difference.first : difference.second) = SummaryText(record);
    (isInFirst ? difference.firstValue : difference.secondValue) = SummaryJson(record);
    return difference;
}

void CompareRecords(const IMKObject& first, const IMKObject& second, const IgnoredMembers& ignored,
                    const std::function<void(const Difference&)>& visit)
{
    Comparison(ignored, visit).compareRoots(first, second);
}

} // namespace ROUTERDOCUMENTS
