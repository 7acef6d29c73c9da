// SPDX-License-Identifier: MIT
#include "HelpPage.h"

#include "ProgramName.h"

#include <algorithm>

namespace routermsg {

namespace {

/// Lays text out in columns.
class Page
{
public:
    explicit Page(int width) : m_width(width > 0 ? width : usualWidth) {}

    void addTitle(const QString& title)
    {
        if (!m_text.isEmpty())
            m_text += QLatin1Char('\n');
        m_text += title + QStringLiteral(":\n");
    }

    void addParagraph(const QString& text, int indent = 0)
    {
        for (const QString& line : wrapped(text, m_width - indent))
            m_text += QString(indent, QLatin1Char(' ')) + line + QLatin1Char('\n');
    }

    void addLine(const QString& line) { m_text += line + QLatin1Char('\n'); }

    // The texts have their own column, unless it would be too narrow.
    void addTable(const QString& title, const QVector<Row>& rows)
    {
        if (rows.isEmpty())
            return;
        addTitle(title);
        const int column = textColumn(rows);
        for (const Row& row : rows) {
            const QString name = QStringLiteral("  ") + row.first;
            QStringList lines = wrapped(row.second, m_width - column);
            if (name.size() + 2 <= column)
                addLine(name.leftJustified(column) + (lines.isEmpty() ? QString() : lines.takeFirst()));
            else
                addLine(name);
            for (const QString& line : qAsConst(lines))
                addLine(QString(column, QLatin1Char(' ')) + line);
        }
    }

    const QString& text() const { return m_text; }

private:
    static constexpr int usualWidth = 80;
    static constexpr int widestName = 30;
    static constexpr int leastText = 30;

    int textColumn(const QVector<Row>& rows) const
    {
        int widest = 0;
        for (const Row& row : rows)
            widest = std::max(widest, static_cast<int>(row.first.size()));
        const int column = 4 + std::min(widest, widestName);
        return m_width - column < leastText ? 8 : column;
    }

    static QStringList wrapped(const QString& text, int width)
    {
        QStringList lines;
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (lines.isEmpty() || lines.last().size() + 1 + word.size() > width)
                lines += word;
            else
                lines.last() += QLatin1Char(' ') + word;
        }
        return lines;
    }

    const int m_width;
    QString m_text;
};

} // namespace

QString helpPage(const ProgramTable& program, int width)
{
    Page page(width);
    page.addParagraph(program.withoutCommand.summary);
    page.addTitle(QStringLiteral("Usage"));
    page.addLine(QStringLiteral("  ") + usageOfProgram());
    QVector<Row> commands;
    for (const CommandTable& command : program.commands)
        commands += {command.name, command.summary};
    page.addTable(QStringLiteral("Commands"), commands);
    page.addTable(QStringLiteral("Options"), rowsOf(program.withoutCommand.options));
    for (const Section& section : program.sections) {
        page.addTitle(section.title);
        for (const QString& paragraph : section.paragraphs)
            page.addParagraph(paragraph, 2);
    }
    page.addLine(QString());
    page.addParagraph(
        QStringLiteral("%1 COMMAND --help explains a command, with examples.").arg(programName()));
    return page.text();
}

QString helpPage(const CommandTable& command, int width)
{
    Page page(width);
    page.addParagraph(command.summary);
    page.addTitle(QStringLiteral("Usage"));
    page.addLine(QStringLiteral("  ") + usage(command));
    page.addTable(QStringLiteral("Arguments"), argumentRowsOf(command));
    page.addTable(QStringLiteral("Options"), rowsOf(command.options));
    page.addTable(command.notesTitle, noteRowsOf(command));
    page.addTitle(QStringLiteral("Examples"));
    for (const Example& example : command.examples) {
        page.addLine(QStringLiteral("  ") + commandOf(example));
        page.addParagraph(example.text, 6);
    }
    return page.text();
}

} // namespace routermsg
