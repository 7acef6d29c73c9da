// SPDX-License-Identifier: MIT
// The command `diff`: where two documents differ.

#include "Commands.h"
#include "InputFiles.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "UsageError.h"
#include "documents/Difference.h"
#include "documents/LargeJson.h"

#include <QtCore/QJsonObject>

#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// --- results --------------------------------------------------------------------------------

class Report
{
public:
    virtual ~Report() = default;
    virtual void add(const Difference& difference) = 0;
    virtual void end(qint64 count) = 0;
};

class TextReport : public Report
{
public:
    explicit TextReport(Session& session) : m_out(session.out()), m_isQuiet(session.isQuiet()) {}

    void add(const Difference& difference) override
    {
        const QString path = difference.path.ToText() + QStringLiteral(": ");
        switch (difference.kind) {
        case Difference::Changed:
            m_out.writeLine(m_out.paint(Style::Place, path) + m_out.paint(Style::Removed, difference.first)
                            + QStringLiteral(" -> ") + m_out.paint(Style::Added, difference.second));
            break;
        case Difference::Removed:
            m_out.writeLine(m_out.paint(Style::Removed, QStringLiteral("- ") + path + difference.first));
            break;
        case Difference::Added:
            m_out.writeLine(m_out.paint(Style::Added, QStringLiteral("+ ") + path + difference.second));
            break;
        }
    }

    void end(qint64 count) override
    {
        if (m_isQuiet)
            return;
        if (count == 0)
            m_out.writeLine(m_out.paint(Style::Good, QStringLiteral("No differences")));
        else
            m_out.writeLine(count == 1 ? QStringLiteral("1 difference")
                                       : QStringLiteral("%1 differences").arg(count));
    }

private:
    Output& m_out;
    bool m_isQuiet;
};

class JsonReport : public Report
{
public:
    explicit JsonReport(Output& out) : m_json(out.writer())
    {
        m_json.BeginList(QStringLiteral("differences"));
    }

    void add(const Difference& difference) override { m_json.AddItem(DifferenceJson(difference)); }

    void end(qint64 count) override
    {
        m_json.EndList();
        m_json.Add(QStringLiteral("count"), count);
        m_json.End();
    }

private:
    LargeJson m_json;
};

std::unique_ptr<Report> makeReport(Session& session)
{
    if (session.format() == Format::Json)
        return std::make_unique<JsonReport>(session.out());
    return std::make_unique<TextReport>(session);
}

void requireDifferentInputs(const QString& first, const QString& second)
{
    const QString standardInput = QStringLiteral("-");
    if (first == standardInput && second == standardInput)
        throw UsageError(QStringLiteral("Only one of the documents can come from standard input."));
}

IgnoredMembers ignoredMembers(const QStringList& paths)
{
    try {
        return IgnoredMembers(paths);
    } catch (const InvalidMemberPath& error) {
        throw UsageError(error.GetText());
    }
}

// The only message in the range.
Document loadOne(const QString& path, const MessageRange& range)
{
    Messages messages(path, {range});
    const auto message = messages.next();
    Document document = message->read(false);
    if (const auto other = messages.next())
        throw Refusal(Finding::ofFile(
            other->name, QStringLiteral("The input holds several messages. Choose one with --message N.")));
    return document;
}

std::pair<Document, Document> loadBoth(const QString& first, const QString& second, const MessageRange& range,
                                       Session& session)
{
    Progress progress(session, 2);
    progress.next(inputName(first));
    Document loaded = loadOne(first, range);
    progress.next(inputName(second));
    return {std::move(loaded), loadOne(second, range)};
}

Status diff(const Arguments& arguments, Session& session)
{
    requireDifferentInputs(arguments.text("A"), arguments.text("B"));
    const IgnoredMembers ignored = ignoredMembers(arguments.texts("--ignore"));
    const auto [first, second] =
        loadBoth(arguments.text("A"), arguments.text("B"), messagesOf(arguments), session);
    const auto report = makeReport(session);
    qint64 count = 0;
    CompareRecords(*first.record, *second.record, ignored, [&](const Difference& difference) {
        ++count;
        report->add(difference);
    });
    report->end(count);
    return count == 0 ? Fine : Found;
}

} // namespace

Command diffCommand()
{
    CommandTable table;
    table.name = "diff";
    table.summary = "Show where two documents differ, whatever their forms.";
    table.arguments = {required(argument("A", fileValue(), "The first document, or - for standard input.")),
                       required(argument("B", fileValue(), "The second document, or - for standard input."))};
    table.options = {
        messageOption(),
        repeatable(option({"--ignore"}, "PATH",
                          "A member to ignore, as a path of names such as MessageID, DF_Params/Frequency or "
                          "Fragment[2]; can be given several times."))};
    table.examples = {
        {"routermsg diff before.xml after.bin", "Member by member."},
        {"routermsg diff a.xml b.xml --ignore MessageID", "Two messages whose numbers do not matter."}};
    return {table, diff};
}

} // namespace routermsg
