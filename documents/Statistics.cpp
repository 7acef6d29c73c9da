// SPDX-License-Identifier: MIT
#include "documents/Statistics.h"

#include "documents/Text.h"

#include <limits>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;

void Histogram::Add(qint64 number)
{
    ++m_counts[number];
    ++m_count;
    m_total += number;
}

double Histogram::GetMedian() const
{
    if (IsEmpty())
        return 0;
    return static_cast<double>(at((m_count - 1) / 2) + at(m_count / 2)) / 2;
}

qint64 Histogram::at(qint64 position) const
{
    qint64 before = 0;
    for (auto i = m_counts.begin(); i != m_counts.end(); ++i) {
        before += i.value();
        if (position < before)
            return i.key();
    }
    return 0;
}

void Statistics::Add(const Document& document)
{
    ++m_documents;
    m_sizes[document.form].Add(document.size);
    ++m_roots[document.info];
    addRecord(*document.record);
}

void Statistics::addRecord(const IMKObject& record)
{
    const RecordInfo& info = RecordInfo::Of(record);
    ++m_records[&info];
    for (const MemberInfo* member : info.GetMembers())
        addMember(record, *member);
}

void Statistics::addMember(const IMKObject& record, const MemberInfo& member)
{
    if (member.GetKind() == MemberInfo::List)
        m_lists[&member].Add(member.CountItems(record));
    if (!member.IsSet(record))
        return;
    ++m_set[&member];
    switch (member.GetKind()) {
    case MemberInfo::Enumeration:
    case MemberInfo::Boolean:
        ++m_values[&member][member.GetValue(record).toInt()];
        break;
    case MemberInfo::Record:
        addRecord(member.GetRecord(record));
        break;
    case MemberInfo::List:
        for (int i = 0, count = member.CountItems(record); i < count; ++i)
            addRecord(member.GetItem(record, i));
        break;
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Decimal:
        m_ranges[&member].Add(member.GetValue(record).toDouble());
        break;
    case MemberInfo::Text:
        m_texts[&member].Add(member.GetValue(record).toString());
        break;
    }
}

namespace {

QStringList countColumn() { return {QStringLiteral("count")}; }

QVector<double> numbersOf(const Histogram& histogram)
{
    return {static_cast<double>(histogram.GetCount()), static_cast<double>(histogram.GetSmallest()),
            histogram.GetMedian(), static_cast<double>(histogram.GetLargest()),
            static_cast<double>(histogram.GetTotal())};
}

QStringList histogramColumns()
{
    return {QStringLiteral("count"), QStringLiteral("min"), QStringLiteral("median"), QStringLiteral("max"),
            QStringLiteral("total")};
}

void addRow(StatisticsTable& table, const QString& name, qint64 count)
{
    table.rows.append({name, {static_cast<double>(count)}});
}

// Adds a row that is left out when its count is 0.
void addRowIfAny(StatisticsTable& table, const QString& name, qint64 count)
{
    if (count > 0)
        addRow(table, name, count);
}

} // namespace

QVector<StatisticsTable> Statistics::GetTables() const
{
    QVector<StatisticsTable> tables;
    if (m_documents == 0)
        return tables;
    tables = {formTable(), rootTable()};
    for (const RecordInfo* info : RecordInfo::All()) {
        if (!m_records.contains(info))
            continue;
        if (info->IsChoice())
            tables += choiceTable(*info);
        for (const MemberInfo* member : info->GetMembers()) {
            if (member->GetKind() == MemberInfo::Enumeration || member->GetKind() == MemberInfo::Boolean)
                tables += valueTable(*info, *member);
            if (member->GetKind() == MemberInfo::List)
                tables += listTable(*info, *member);
            if (m_texts.contains(member))
                tables += textTable(*info, *member);
        }
    }
    if (!m_ranges.isEmpty())
        tables += rangeTable();
    return tables;
}

StatisticsTable Statistics::formTable() const
{
    StatisticsTable table{QStringLiteral("form (bytes)"), histogramColumns(), {}};
    for (auto i = m_sizes.begin(); i != m_sizes.end(); ++i)
        table.rows.append({NameOf(i.key()), numbersOf(i.value())});
    return table;
}

StatisticsTable Statistics::rootTable() const
{
    StatisticsTable table{QStringLiteral("root"), countColumn(), {}};
    for (const RecordInfo* info : RecordInfo::All())
        addRowIfAny(table, info->GetName(), m_roots.value(info));
    return table;
}

StatisticsTable Statistics::valueTable(const RecordInfo& info, const MemberInfo& member) const
{
    StatisticsTable table{info.GetName() + QLatin1Char('/') + member.GetName(), countColumn(), {}};
    const QStringList names = member.GetKind() == MemberInfo::Enumeration
                                  ? member.GetNames()
                                  : QStringList{QStringLiteral("false"), QStringLiteral("true")};
    const auto values = m_values.value(&member);
    qint64 known = 0;
    for (int i = 0; i < names.size(); ++i) {
        addRow(table, names.at(i), values.value(i));
        known += values.value(i);
    }
    addRowIfAny(table, QStringLiteral("no enumerator"), m_set.value(&member) - known);
    addRowIfAny(table, QStringLiteral("not set"), m_records.value(&info) - m_set.value(&member));
    return table;
}

StatisticsTable Statistics::choiceTable(const RecordInfo& info) const
{
    StatisticsTable table{info.GetName(), countColumn(), {}};
    qint64 known = 0;
    for (const MemberInfo* member : info.GetMembers()) {
        addRow(table, member->GetName(), m_set.value(member));
        known += m_set.value(member);
    }
    addRowIfAny(table, QStringLiteral("not set"), m_records.value(&info) - known);
    return table;
}

StatisticsTable Statistics::listTable(const RecordInfo& info, const MemberInfo& member) const
{
    return {QStringLiteral("%1/%2 (items)").arg(info.GetName(), member.GetName()),
            histogramColumns(),
            {{QStringLiteral("lists"), numbersOf(m_lists.value(&member))}}};
}

StatisticsTable Statistics::textTable(const RecordInfo& info, const MemberInfo& member) const
{
    constexpr int shown = 10;
    StatisticsTable table{
        QStringLiteral("%1/%2 (texts)").arg(info.GetName(), member.GetName()), countColumn(), {}};
    const TextCounts texts = m_texts.value(&member);
    qint64 known = texts.GetTogether() + texts.GetNull();
    for (const auto& [text, count] : texts.GetMostFrequent(shown)) {
        table.rows.append({Quoted(Abbreviated(text)), {static_cast<double>(count)}, text});
        known += count;
    }
    const int others = texts.GetDifferent() - shown;
    addRowIfAny(table,
                others == 1 ? QStringLiteral("1 other text") : QStringLiteral("%1 other texts").arg(others),
                m_set.value(&member) - known);
    addRowIfAny(table, QStringLiteral("texts that are not told apart"), texts.GetTogether());
    addRowIfAny(table, QStringLiteral("null"), texts.GetNull());
    addRowIfAny(table, QStringLiteral("not set"), m_records.value(&info) - m_set.value(&member));
    return table;
}

StatisticsTable Statistics::rangeTable() const
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    StatisticsTable table{QStringLiteral("numbers"),
                          {QStringLiteral("count"), QStringLiteral("min"), QStringLiteral("max")},
                          {}};
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers()) {
            const NumberRange range = m_ranges.value(member);
            const QString name = info->GetName() + QLatin1Char('/') + member->GetName();
            if (range.GetCount() > 0)
                table.rows.append(
                    {name, {static_cast<double>(range.GetCount()), range.GetSmallest(), range.GetLargest()}});
            if (range.GetNotNumbers() > 0)
                table.rows.append({name + QStringLiteral(" (not a number)"),
                                   {static_cast<double>(range.GetNotNumbers()), none, none}});
        }
    return table;
}

} // namespace ROUTERDOCUMENTS
