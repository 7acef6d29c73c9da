// SPDX-License-Identifier: MIT
// The command `stats`: counting what documents hold.

#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "WhereOption.h"
#include "documents/Statistics.h"
#include "documents/Text.h"
#include "documents/Values.h"

#include <QtCore/QJsonArray>

#include <algorithm>
#include <cmath>
#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// --- text -----------------------------------------------------------------------------------

class TableText
{
public:
    explicit TableText(Output& output) : m_output(output) {}

    void write(const StatisticsTable& table)
    {
        const int nameWidth = widthOfNames(table);
        QString head = m_output.paint(Style::Name, table.title.leftJustified(nameWidth));
        for (int column = 0; column < table.columns.size(); ++column)
            head += m_output.paint(Style::Faint, right(table.columns.at(column), widthOf(table, column)));
        m_output.writeLine();
        m_output.writeLine(head);
        for (const StatisticsTable::Row& row : table.rows)
            writeRow(table, row, nameWidth);
    }

private:
    static constexpr int indentation = 2;
    static constexpr int gap = 2;

    void writeRow(const StatisticsTable& table, const StatisticsTable::Row& row, int nameWidth)
    {
        QString line = (QString(indentation, QLatin1Char(' ')) + row.name).leftJustified(nameWidth);
        for (int column = 0; column < row.numbers.size(); ++column)
            line +=
                m_output.paint(Style::Value, right(Exactly(row.numbers.at(column)), widthOf(table, column)));
        m_output.writeLine(line);
    }

    static QString right(const QString& text, int width) { return text.rightJustified(width); }

    static int widthOfNames(const StatisticsTable& table)
    {
        auto width = table.title.size();
        for (const StatisticsTable::Row& row : table.rows)
            width = std::max(width, row.name.size() + indentation);
        return static_cast<int>(width);
    }

    static int widthOf(const StatisticsTable& table, int column)
    {
        auto width = table.columns.at(column).size();
        for (const StatisticsTable::Row& row : table.rows)
            width = std::max(width, Exactly(row.numbers.at(column)).size());
        return static_cast<int>(width) + gap;
    }

    Output& m_output;
};

QString counted(qint64 count)
{
    return count == 1 ? QStringLiteral("1 document") : QStringLiteral("%1 documents").arg(count);
}

void writeText(const Statistics& statistics, std::optional<qint64> leftOut, Output& output)
{
    QString line = counted(statistics.GetDocuments());
    if (statistics.GetUnreadable() > 0)
        line += QStringLiteral(" read, %1 not read").arg(statistics.GetUnreadable());
    if (leftOut)
        line += QStringLiteral(", %1 left out").arg(*leftOut);
    output.writeLine(line);
    TableText text(output);
    for (const StatisticsTable& table : statistics.GetTables())
        text.write(table);
}

// --- JSON -----------------------------------------------------------------------------------

QJsonObject toJson(const StatisticsTable& table)
{
    QJsonArray rows;
    for (const StatisticsTable::Row& row : table.rows) {
        QJsonObject json{{QStringLiteral("name"), row.name}};
        for (int column = 0; column < row.numbers.size(); ++column)
            json[table.columns.at(column)] = DecimalJson(row.numbers.at(column));
        if (!row.text.isNull())
            json[QStringLiteral("text")] = row.text;
        rows += json;
    }
    return {{QStringLiteral("title"), table.title}, {QStringLiteral("rows"), rows}};
}

QJsonObject toJson(const Statistics& statistics, std::optional<qint64> leftOut, const QJsonArray& findings)
{
    QJsonArray tables;
    for (const StatisticsTable& table : statistics.GetTables())
        tables += toJson(table);
    QJsonObject json{{QStringLiteral("documents"), statistics.GetDocuments()},
                     {QStringLiteral("notRead"), statistics.GetUnreadable()},
                     {QStringLiteral("findings"), findings},
                     {QStringLiteral("tables"), tables}};
    if (leftOut)
        json[QStringLiteral("leftOut")] = *leftOut;
    return json;
}

Status stats(const Arguments& arguments, Session& session)
{
    session.keepFindingsForJson();
    const MessageRange range = messagesOf(arguments);
    const InputFormat format = inputFormatOf(arguments);
    const InputList inputs = inputsOf(arguments);
    MessageFilter filter(arguments);
    Statistics statistics;
    Status worst = Fine;
    const auto addProblem = [&](const Finding& problem) {
        session.complain(problem);
        if (!problem.isNoMessage)
            statistics.AddUnreadable();
        worst = std::max(worst, problem.status);
    };
    for (const Finding& problem : inputs.problems)
        addProblem(problem);
    {
        Progress progress(session, inputs.files);
        for (const QString& file : inputs.files) {
            progress.next(inputName(file));
            forEachMessage(
                file, {range, format, &progress},
                [&](const InputMessage& message) {
                    const Document document = message.read();
                    if (filter.takes(*document.record))
                        statistics.Add(document);
                },
                addProblem);
        }
    }
    if (session.format() == Format::Json)
        session.writeJson(toJson(statistics, filter.leftOut(), session.takeFindings()));
    else
        writeText(statistics, filter.leftOut(), session.out());
    return worst;
}

} // namespace

Command statsCommand()
{
    CommandTable table;
    table.name = "stats";
    table.summary = "Count what documents hold.";
    table.arguments = {inputsArgument()};
    table.options = {messageOption(), whereOption()};
    table.readsMessages = true;
    table.examples = {{"%1 stats recordings", "All documents of a folder together."},
                      {"%1 stats recordings --where DF_Params", "Only those with DF_Params."}};
    return {table, stats};
}

} // namespace routermsg
