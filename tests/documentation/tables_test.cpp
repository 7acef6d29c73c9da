// SPDX-License-Identifier: MIT
// Compares the tables on the pages with the descriptions of the records.
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QFile>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <cstdint>
#include <string>

using namespace testing_support;

namespace {

// A page of docs/. Its path is part of failures, to name the file to edit.
struct Page
{
    explicit Page(const char* name) : path(QStringLiteral("docs/") + QLatin1String(name))
    {
        QFile file(projectPath(path.toUtf8().constData()));
        if (file.open(QIODevice::ReadOnly))
            text = QString::fromUtf8(file.readAll());
    }

    // The cells of all rows of the table with that head line.
    QVector<QStringList> table(const QString& head) const
    {
        QVector<QStringList> rows;
        const QStringList lines = text.split(QLatin1Char('\n'));
        const auto begin = lines.indexOf(head);
        for (auto i = begin + 2; begin >= 0 && i < lines.size() && lines.at(i).startsWith(QLatin1Char('|'));
             ++i) {
            QStringList cells;
            for (const QString& cell : lines.at(i).mid(1).chopped(1).split(QLatin1Char('|')))
                cells.append(cell.trimmed());
            rows.append(cells);
        }
        return rows;
    }

    std::string edit(const char* what) const { return (path + QStringLiteral(": ")).toStdString() + what; }

    QString path;
    QString text;
};

// The names between backticks.
QStringList quoted(const QString& cell)
{
    QStringList names;
    auto match = QRegularExpression(QStringLiteral("`([^`]+)`")).globalMatch(cell);
    while (match.hasNext())
        names.append(match.next().captured(1));
    return names;
}

QString hex(std::uint32_t word) { return QStringLiteral("%1").arg(word, 8, 16, QLatin1Char('0')).toUpper(); }

QString typeOf(MemberInfo::Kind kind)
{
    switch (kind) {
    case MemberInfo::UnsignedInteger:
        return QStringLiteral("unsigned");
    case MemberInfo::Decimal:
        return QStringLiteral("double");
    case MemberInfo::Boolean:
        return QStringLiteral("bool");
    case MemberInfo::Text:
        return QStringLiteral("string");
    case MemberInfo::Enumeration:
        return QStringLiteral("enumeration");
    case MemberInfo::List:
        return QStringLiteral("list");
    case MemberInfo::Record:
        break;
    }
    return QStringLiteral("record");
}

// The types of all members for which the predicate is true, sorted.
template <class Predicate>
QStringList types(Predicate&& predicate)
{
    QStringList names;
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers())
            if (predicate(*member))
                names.append(typeOf(member->GetKind()));
    names.removeDuplicates();
    names.sort();
    return names;
}

QStringList firstCells(const QVector<QStringList>& rows)
{
    QStringList names;
    for (const QStringList& row : rows)
        names.append(row.first());
    names.sort();
    return names;
}

QStringList without(QStringList lines, const QStringList& others)
{
    for (const QString& line : others)
        lines.removeOne(line);
    return lines;
}

// Expects that the page has the right lines. Otherwise the failure names the lines to edit.
void expectSame(const Page& page, const char* what, const QStringList& told, const QStringList& right)
{
    const QStringList missing = without(right, told);
    const QStringList wrong = without(told, right);
    std::string text = what;
    for (const QString& line : missing)
        text += "\n  missing: " + line.toStdString();
    for (const QString& line : wrong)
        text += "\n  wrong:   " + line.toStdString();
    if (missing.isEmpty() && wrong.isEmpty())
        text += "\n  in another order";
    EXPECT_TRUE(told == right) << page.edit(text.c_str());
}

TEST(Tables, tellTheTagOfEveryMember)
{
    const Page page("binary-form.md");
    QStringList told;
    for (const QStringList& row : page.table(QStringLiteral("| Member | Tag |"))) {
        ASSERT_EQ(row.size(), 2) << page.edit("two cells belong into each row of the table of tags");
        QStringList names = quoted(row.at(0));
        ASSERT_GE(names.size(), 2) << page.edit("`Class` / `Member` belongs into the table of tags");
        const QString member = names.takeLast();
        for (const QString& name : names)
            told.append(name + QStringLiteral("::") + member + QLatin1Char(' ') + row.at(1));
    }
    QStringList right;
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers())
            right.append(info->GetName() + QStringLiteral("::") + member->GetName() + QLatin1Char(' ')
                         + hex(member->GetBinaryTag()));
    told.sort();
    right.sort();
    expectSame(page, "the table of tags is not that of the records:", told, right);
}

TEST(Tables, tellTheIdOfEveryClass)
{
    const Page page("binary-form.md");
    QStringList told;
    for (const QStringList& row : page.table(QStringLiteral("| Class | Id |")))
        told.append(quoted(row.first()).join(QLatin1Char('?')) + QLatin1Char(' ') + row.last());
    QStringList right;
    for (const RecordInfo* info : RecordInfo::All())
        right.append(info->GetName() + QLatin1Char(' ') + hex(info->GetFrameId()));
    expectSame(page, "the table of ids is not that of the records:", told, right);
}

TEST(Tables, tellHowEveryTypeIsWritten)
{
    const Page binary("binary-form.md");
    EXPECT_EQ(firstCells(binary.table(QStringLiteral("| Type | Payload |"))),
              types([](const MemberInfo& member) { return member.GetKind() != MemberInfo::Record; }))
        << binary.edit("the table of payloads lacks a type or has one too many");
    const Page xml("xml-form.md");
    EXPECT_EQ(firstCells(xml.table(QStringLiteral("| Type | Written | Read |"))),
              types([](const MemberInfo& member) { return member.GetClass() == nullptr; }))
        << xml.edit("the table of types lacks one or has one too many");
}

// The tree at the beginning of the page, made from the descriptions of the records.
void describe(const RecordInfo& info, int depth, QStringList& lines)
{
    const QString indent(2 * depth, QLatin1Char(' '));
    for (const MemberInfo* member : info.GetMembers()) {
        if (info.IsChoice()) {
            QStringList names;
            for (const MemberInfo* part : member->GetClass()->GetMembers())
                names.append(part->GetName());
            lines.append(indent + member->GetName() + QLatin1Char(' ') + names.join(QStringLiteral(", ")));
            continue;
        }
        QString line = indent + member->GetName();
        if (member->GetKind() == MemberInfo::Enumeration) {
            QStringList names = member->GetNames();
            const QString last = names.takeLast();
            line += QLatin1Char(' ') + names.join(QStringLiteral(", ")) + QStringLiteral(" or ") + last;
        } else if (member->GetKind() != MemberInfo::Record) {
            line += QLatin1Char(' ') + typeOf(member->GetKind());
        }
        lines.append(line);
        if (member->GetClass())
            describe(*member->GetClass(), depth + 1, lines);
    }
}

TEST(Tables, tellTheTreeOfADocument)
{
    const Page page("records.md");
    QStringList right{RecordInfo::Document().GetName()};
    describe(RecordInfo::Document(), 1, right);

    // Spaces between columns are reduced to one, and remarks after the type and the names are left out.
    QStringList told;
    const QStringList lines = page.text.split(QLatin1Char('\n'));
    for (auto i = lines.indexOf(QStringLiteral("    PelLu300RouterInterfaceXml"));
         i >= 0 && i < lines.size() && !lines.at(i).isEmpty(); ++i) {
        const QString line = lines.at(i).mid(4);
        const auto begin = line.indexOf(QRegularExpression(QStringLiteral("\\S")));
        told.append(
            line.left(begin)
            + line.mid(begin).remove(QRegularExpression(QStringLiteral("(;|, 32 bit).*"))).simplified());
    }
    expectSame(page, "the tree at its beginning is not that of the records:", told, right);
}

} // namespace
