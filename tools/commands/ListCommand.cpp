// SPDX-License-Identifier: MIT
// The command `list`: one line for each message.

#include "Commands.h"
#include "FittingMessages.h"
#include "InputFile.h"
#include "ListColumns.h"
#include "Session.h"
#include "SharedOptions.h"
#include "documents/PathPattern.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <QtCore/QJsonObject>

#include <algorithm>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

/// Writes the messages one by one, as they arrive.
class List
{
public:
    virtual ~List() = default;
    /// Writes what stands in front of all messages.
    virtual void begin() {}
    virtual void add(const ListedMessage& listed) = 0;
};

class TextList : public List
{
public:
    TextList(const ListColumns& columns, Session& session)
        : m_columns(columns), m_out(session.out()), m_hasHead(!session.isQuiet())
    {}

    void add(const ListedMessage& listed) override
    {
        if (std::exchange(m_hasHead, false))
            m_out.writeLine(
                m_out.paint(Style::Faint, line([](const ListColumn& column) { return column.title(); })));
        m_out.writeLine(line([&](const ListColumn& column) { return text(column.values(listed)); }));
    }

private:
    // What a message does not have is a dash. Quotes and null tell empty texts from those that are null.
    static QString text(const QStringList& values)
    {
        if (values.isEmpty())
            return QStringLiteral("-");
        QStringList texts;
        for (const QString& value : values)
            texts += value.isNull()    ? QStringLiteral("null")
                     : value.isEmpty() ? QStringLiteral("\"\"")
                                       : Printable(value);
        return texts.join(QStringLiteral(", "));
    }

    // The messages to come are not known yet, so columns have their usual widths.
    template <class TextOf>
    QString line(const TextOf& textOf) const
    {
        QStringList cells;
        for (const auto& column : m_columns) {
            const int width = std::max(column->width(), static_cast<int>(column->title().size()));
            const QString cell = textOf(*column);
            cells += column->isNumber() ? cell.rightJustified(width) : cell.leftJustified(width);
        }
        QString text = cells.join(QStringLiteral("  "));
        while (text.endsWith(QLatin1Char(' ')))
            text.chop(1);
        return text;
    }

    const ListColumns& m_columns;
    Output& m_out;
    bool m_hasHead;
};

/// As RFC 4180 says. Control characters in texts are escaped on a terminal only.
class CsvList : public List
{
public:
    CsvList(const ListColumns& columns, Session& session) : m_columns(columns), m_out(session.out()) {}

    void begin() override
    {
        write([](const ListColumn& column) { return column.title(); });
    }

    void add(const ListedMessage& listed) override
    {
        write([&](const ListColumn& column) { return column.values(listed).join(QStringLiteral(", ")); });
    }

private:
    template <class TextOf>
    void write(const TextOf& textOf)
    {
        QStringList fields;
        for (const auto& column : m_columns)
            fields += field(textOf(*column));
        m_out.write(fields.join(QLatin1Char(',')) + QStringLiteral("\r\n"));
    }

    QString field(QString text) const
    {
        if (m_out.isTerminal())
            text = Printable(text);
        const bool isPlain = std::none_of(text.begin(), text.end(), [](QChar unit) {
            return unit == QLatin1Char(',') || unit == QLatin1Char('"') || unit == QLatin1Char('\r')
                   || unit == QLatin1Char('\n');
        });
        return isPlain ? text
                       : QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\""))
                             + QLatin1Char('"');
    }

    const ListColumns& m_columns;
    Output& m_out;
};

class JsonList : public List
{
public:
    JsonList(const ListColumns& columns, Session& session) : m_columns(columns), m_session(session) {}

    void add(const ListedMessage& listed) override
    {
        QJsonObject json;
        for (const auto& column : m_columns) {
            const QJsonValue value = column->json(listed);
            if (!value.isUndefined())
                json[column->title()] = value;
        }
        m_session.writeJsonLine(json);
    }

private:
    const ListColumns& m_columns;
    Session& m_session;
};

std::unique_ptr<List> makeList(const ListColumns& columns, Session& session)
{
    switch (session.format()) {
    case Format::Csv:
        return std::make_unique<CsvList>(columns, session);
    case Format::Json:
        return std::make_unique<JsonList>(columns, session);
    case Format::Text:
        break;
    }
    return std::make_unique<TextList>(columns, session);
}

ListColumns columnsOf(const Arguments& arguments, const QStringList& files)
{
    int longest = 0;
    for (const QString& file : files)
        longest = std::max(longest, static_cast<int>(inputName(file).size()));
    const QStringList names =
        arguments.isGiven("--columns") ? arguments.text("--columns").split(QLatin1Char(',')) : usualColumns();
    return listColumns(names, longest);
}

Status list(const Arguments& arguments, Session& session)
{
    FittingMessages messages(arguments, session);
    const ListColumns columns = columnsOf(arguments, messages.files());
    const auto listing = makeList(columns, session);
    listing->begin();
    return messages.forEach([&](const InputMessage& message, const Document& document) {
        listing->add({message, document});
    });
}

} // namespace

Command listCommand()
{
    CommandTable table;
    table.name = "list";
    table.summary = "List messages, one on each line.";
    table.arguments = {inputsArgument()};
    table.options = {
        messageOption(), whereOption(),
        suggestingParts(
            specialColumns() + PathPattern::Examples(), ",",
            option(
                {"--columns"}, "COLUMNS",
                QStringLiteral("What to list, separated by commas: paths of members, and %1. Without it, %2.")
                    .arg(Listed(specialColumns()), Listed(usualColumns()))))};
    table.furtherFormats = QStringList{"csv"};
    table.readsMessages = true;
    table.examples = {{"%1 list week.rec", "Every message of a recording."},
                      {"nc router 5000 | %1 list - --where Type=Event", "Events, as soon as they arrive."},
                      {"%1 list recordings --columns file,DF_Params/Frequency --format csv > frequencies.csv",
                       "A table for a spreadsheet."}};
    return {table, list};
}

} // namespace routermsg
