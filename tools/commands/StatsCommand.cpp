#include "StatsCommand.h"

#include "Progress.h"
#include "documents/Forms.h"
#include "documents/Statistics.h"
#include "documents/Text.h"

#include <QtCore/QJsonArray>

#include <algorithm>

namespace routermsg {

namespace {

// --- text -----------------------------------------------------------------------------------

class TableText
{
public:
    explicit TableText(Output& output) : m_output(output) {}

    void write(const Table& table)
    {
        const int nameWidth = widthOfNames(table);
        QString head = m_output.paint(Style::Name, table.title.leftJustified(nameWidth));
        for (int column = 0; column < table.columns.size(); ++column)
            head += m_output.paint(Style::Faint, right(table.columns.at(column), widthOf(table, column)));
        m_output.writeLine();
        m_output.writeLine(head);
        for (const Table::Row& row : table.rows)
            writeRow(table, row, nameWidth);
    }

private:
    static constexpr int indentation = 2;
    static constexpr int gap = 2;

    void writeRow(const Table& table, const Table::Row& row, int nameWidth)
    {
        QString line = (QString(indentation, QLatin1Char(' ')) + row.name).leftJustified(nameWidth);
        for (int column = 0; column < row.numbers.size(); ++column)
            line +=
                m_output.paint(Style::Value, right(exactly(row.numbers.at(column)), widthOf(table, column)));
        m_output.writeLine(line);
    }

    static QString right(const QString& text, int width) { return text.rightJustified(width); }

    static int widthOfNames(const Table& table)
    {
        auto width = table.title.size();
        for (const Table::Row& row : table.rows)
            width = std::max(width, row.name.size() + indentation);
        return static_cast<int>(width);
    }

    static int widthOf(const Table& table, int column)
    {
        auto width = table.columns.at(column).size();
        for (const Table::Row& row : table.rows)
            width = std::max(width, exactly(row.numbers.at(column)).size());
        return static_cast<int>(width) + gap;
    }

    Output& m_output;
};

QString counted(qint64 count)
{
    return count == 1 ? QStringLiteral("1 document") : QStringLiteral("%1 documents").arg(count);
}

void writeText(const Statistics& statistics, Output& output)
{
    QString line = counted(statistics.documents());
    if (statistics.unreadable() > 0)
        line += QStringLiteral(" read, %1 not read").arg(statistics.unreadable());
    output.writeLine(line);
    TableText text(output);
    for (const Table& table : statistics.tables())
        text.write(table);
}

// --- JSON -----------------------------------------------------------------------------------

QJsonObject toJson(const Table& table)
{
    QJsonArray rows;
    for (const Table::Row& row : table.rows) {
        QJsonObject json{{QStringLiteral("name"), row.name}};
        for (int column = 0; column < row.numbers.size(); ++column)
            json[table.columns.at(column)] = row.numbers.at(column);
        rows += json;
    }
    return {{QStringLiteral("title"), table.title}, {QStringLiteral("rows"), rows}};
}

QJsonObject toJson(const Statistics& statistics)
{
    QJsonArray tables;
    for (const Table& table : statistics.tables())
        tables += toJson(table);
    return {{QStringLiteral("documents"), statistics.documents()},
            {QStringLiteral("notRead"), statistics.unreadable()},
            {QStringLiteral("tables"), tables}};
}

} // namespace

Status stats(const StatsOptions& options, Session& session)
{
    const QStringList files = filesAmong(options.inputs);
    Statistics statistics;
    Status worst = Fine;
    {
        Progress progress(session, static_cast<int>(files.size()));
        for (const QString& file : files) {
            progress.next(file);
            try {
                statistics.add(load(file));
            } catch (const Refusal& refusal) {
                session.complain(refusal.finding());
                statistics.addUnreadable();
                worst = std::max(worst, refusal.finding().status);
            }
        }
    }
    if (session.format() == Format::Json)
        session.writeJson(toJson(statistics));
    else
        writeText(statistics, session.out());
    return worst;
}

} // namespace routermsg
