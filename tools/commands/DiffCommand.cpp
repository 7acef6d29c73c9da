// SPDX-License-Identifier: MIT
#include "DiffCommand.h"

#include "InputFiles.h"
#include "Progress.h"
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

void requireDifferentInputs(const DiffOptions& options)
{
    const QString standardInput = QStringLiteral("-");
    if (options.first == standardInput && options.second == standardInput)
        throw UsageError(QStringLiteral("Only one of the documents can come from standard input."));
}

IgnoredMembers ignoredMembers(const DiffOptions& options)
{
    try {
        return IgnoredMembers(options.ignored);
    } catch (const InvalidMemberPath& error) {
        throw UsageError(error.GetText());
    }
}

std::pair<Document, Document> loadBoth(const DiffOptions& options, Session& session)
{
    Progress progress(session, 2);
    progress.next(inputName(options.first));
    Document first = load(options.first);
    progress.next(inputName(options.second));
    return {std::move(first), load(options.second)};
}

} // namespace

Status diff(const DiffOptions& options, Session& session)
{
    requireDifferentInputs(options);
    const IgnoredMembers ignored = ignoredMembers(options);
    const auto [first, second] = loadBoth(options, session);
    const auto report = makeReport(session);
    qint64 count = 0;
    CompareRecords(*first.record, *second.record, ignored, [&](const Difference& difference) {
        ++count;
        report->add(difference);
    });
    report->end(count);
    return count == 0 ? Fine : Found;
}

} // namespace routermsg
