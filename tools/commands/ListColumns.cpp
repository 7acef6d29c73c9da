// SPDX-License-Identifier: MIT
#include "ListColumns.h"

#include "UsageError.h"
#include "documents/DocumentError.h"
#include "documents/FoundMembers.h"
#include "documents/Sentences.h"
#include "documents/Text.h"
#include "documents/Values.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <utility>
#include <vector>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// --- special columns ------------------------------------------------------------------------

// A column with one value for each message.
class PropertyColumn : public ListColumn
{
public:
    using Value = QJsonValue (*)(const ListedMessage&);

    PropertyColumn(const char* title, int width, bool isNumber, Value value)
        : ListColumn(QString::fromLatin1(title), width, isNumber), m_value(value)
    {}

    QStringList values(const ListedMessage& listed) const override
    {
        return {m_value(listed).toVariant().toString()};
    }
    QJsonValue json(const ListedMessage& listed) const override { return m_value(listed); }

private:
    Value m_value;
};

using CountedNames = std::vector<std::pair<QString, int>>;

void count(const QString& name, CountedNames& counts)
{
    const auto found =
        std::find_if(counts.begin(), counts.end(), [&](const auto& one) { return one.first == name; });
    if (found == counts.end())
        counts.emplace_back(name, 1);
    else
        ++found->second;
}

// Counts what all records carry that carry one member at a time.
void countCarried(const IMKObject& record, CountedNames& counts)
{
    const RecordInfo& info = RecordInfo::Of(record);
    if (info.IsChoice()) {
        const MemberInfo* carried = info.GetSelected(record);
        count(carried ? carried->GetName() : QStringLiteral("none"), counts);
    }
    for (const MemberInfo* member : info.GetMembers()) {
        if (!member->IsSet(record))
            continue;
        if (member->GetKind() == MemberInfo::Record)
            countCarried(member->GetRecord(record), counts);
        if (member->GetKind() == MemberInfo::List)
            for (int i = 0, items = member->CountItems(record); i < items; ++i)
                countCarried(member->GetItem(record, i), counts);
    }
}

class FragmentsColumn : public ListColumn
{
public:
    FragmentsColumn() : ListColumn(QStringLiteral("fragments"), 30, false) {}

    QStringList values(const ListedMessage& listed) const override
    {
        QStringList texts;
        for (const auto& [name, number] : countsOf(listed))
            texts += number == 1 ? name : QStringLiteral("%1×%2").arg(name, QString::number(number));
        return texts;
    }

    QJsonValue json(const ListedMessage& listed) const override
    {
        QJsonObject json;
        for (const auto& [name, number] : countsOf(listed))
            json[name] = number;
        return json;
    }

private:
    static CountedNames countsOf(const ListedMessage& listed)
    {
        CountedNames counts;
        countCarried(*listed.document.record, counts);
        return counts;
    }
};

std::unique_ptr<const ListColumn> specialColumn(const QString& name, int longestFile)
{
    // With the number of a message behind it.
    const int fileWidth = std::min(longestFile, 50) + 4;
    std::vector<std::unique_ptr<const ListColumn>> columns;
    columns.push_back(std::make_unique<PropertyColumn>(
        "file", fileWidth, false,
        [](const ListedMessage& listed) -> QJsonValue { return listed.message.name; }));
    columns.push_back(
        std::make_unique<PropertyColumn>("form", 10, false, [](const ListedMessage& listed) -> QJsonValue {
            return NameOf(listed.document.form);
        }));
    columns.push_back(std::make_unique<PropertyColumn>(
        "bytes", 6, true, [](const ListedMessage& listed) -> QJsonValue { return listed.document.size; }));
    columns.push_back(
        std::make_unique<PropertyColumn>("root", 26, false, [](const ListedMessage& listed) -> QJsonValue {
            return listed.document.info->GetName();
        }));
    columns.push_back(std::make_unique<FragmentsColumn>());
    for (auto& column : columns)
        if (column->title() == name)
            return std::move(column);
    return nullptr;
}

// --- members --------------------------------------------------------------------------------

bool isNumeric(const MemberInfo& member)
{
    return member.GetKind() == MemberInfo::UnsignedInteger || member.GetKind() == MemberInfo::Decimal;
}

int usualWidth(const MemberInfo& member)
{
    int longest = 0;
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return 10;
    case MemberInfo::Decimal:
        return 12;
    case MemberInfo::Boolean:
        return 5;
    case MemberInfo::Text:
        return 20;
    case MemberInfo::Enumeration:
        for (const QString& name : member.GetNames())
            longest = std::max(longest, static_cast<int>(name.size()));
        return longest;
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return 30;
}

class MemberColumn : public ListColumn
{
public:
    explicit MemberColumn(const PathPattern& pattern)
        : ListColumn(pattern.GetText(), widthOf(pattern), isNumeric(pattern)), m_pattern(pattern),
          m_isRepeating(pattern.CanRepeat())
    {}

    QStringList values(const ListedMessage& listed) const override
    {
        QStringList texts;
        forEach(listed, [&](const FoundMember& found) {
            const bool isText = found.IsValue() && found.member->GetKind() == MemberInfo::Text;
            texts += isText ? found.member->GetValue(found.record).toString() : found.ToText();
        });
        return texts;
    }

    QJsonValue json(const ListedMessage& listed) const override
    {
        QJsonArray values;
        forEach(listed, [&](const FoundMember& found) { values += found.ToJson(); });
        if (m_isRepeating)
            return values;
        return values.isEmpty() ? QJsonValue(QJsonValue::Undefined) : values.first();
    }

private:
    static int widthOf(const PathPattern& pattern)
    {
        int width = 0;
        for (const MemberInfo* member : pattern.GetMembers())
            width = std::max(width, usualWidth(*member));
        return width;
    }

    static bool isNumeric(const PathPattern& pattern)
    {
        const auto& members = pattern.GetMembers();
        return !members.isEmpty()
               && std::all_of(members.begin(), members.end(),
                              [](const MemberInfo* member) { return routermsg::isNumeric(*member); });
    }

    template <class Visit>
    void forEach(const ListedMessage& listed, const Visit& visit) const
    {
        FindMembers(*listed.document.record, m_pattern, [&](const FoundMember& found) {
            visit(found);
            return true;
        });
    }

    PathPattern m_pattern;
    bool m_isRepeating;
};

std::unique_ptr<const ListColumn> memberColumn(const QString& path)
{
    try {
        return std::make_unique<MemberColumn>(PathPattern(path));
    } catch (const InvalidMemberPath& error) {
        throw UsageError(QStringLiteral("%1 Columns are paths of members and %2.")
                             .arg(error.GetText(), Listed(specialColumns())));
    }
}

} // namespace

QStringList specialColumns()
{
    return {QStringLiteral("file"), QStringLiteral("form"), QStringLiteral("bytes"), QStringLiteral("root"),
            QStringLiteral("fragments")};
}

QStringList usualColumns()
{
    return {QStringLiteral("file"), QStringLiteral("form"),      QStringLiteral("bytes"),
            QStringLiteral("Type"), QStringLiteral("MessageID"), QStringLiteral("fragments")};
}

ListColumns listColumns(const QStringList& names, int longestFile)
{
    ListColumns columns;
    for (const QString& given : names) {
        const QString name = given.trimmed();
        for (const auto& column : columns)
            if (column->title() == name)
                throw UsageError(QStringLiteral("The column %1 is given twice.").arg(Quoted(name)));
        auto column = specialColumn(name, longestFile);
        columns.push_back(column ? std::move(column) : memberColumn(name));
    }
    return columns;
}

} // namespace routermsg
