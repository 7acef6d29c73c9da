// SPDX-License-Identifier: MIT
// The command `check`: are documents valid?

#include "Acceptance.h"
#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "documents/LargeJson.h"
#include "documents/Text.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QJsonArray>
#include <QtCore/QVector>

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::IMKObject;
using MODELKIT::Place;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// --- records that nobody sends --------------------------------------------------------------

// These lists are kept by hand. If they followed from the tables of the records, a new optional member would
// make old documents incomplete.

struct MemberName
{
    const char* record;
    const char* member;
};

// Nobody sends a record without these members.
constexpr MemberName alwaysSet[] = {{"PelLu300RouterInterfaceXml", "PelLu300RouterMessage"},
                                    {"PelLu300RouterMessage", "Type"},
                                    {"PelLu300RouterMessage", "MessageID"},
                                    {"PelLu300RouterMessage", "Fragment"}};

// Nobody sends these records without any member. Others are sent empty, to ask for what they hold.
constexpr const char* neverEmpty[] = {"Fragment", "MastershipState", "PelVtConnectServer", "DF_Params"};

/// Finds members that are not set although nobody sends a record without them.
class SenseWarnings
{
public:
    SenseWarnings(const QString& file, QVector<Finding>& findings) : m_file(file), m_findings(findings) {}

    void visit(const IMKObject& record, const QString& path)
    {
        const RecordInfo& info = RecordInfo::Of(record);
        for (const MemberName& name : alwaysSet)
            if (info.GetName() == QLatin1String(name.record))
                warnIfUnset(record, *info.FindMember(QLatin1String(name.member)), path);
        for (const char* name : neverEmpty)
            if (info.GetName() == QLatin1String(name))
                warnIfEmpty(record, info, path);
        for (const MemberInfo* member : info.GetMembers())
            if (member->IsSet(record))
                visitOwned(record, *member, path);
    }

private:
    void warnIfUnset(const IMKObject& record, const MemberInfo& member, const QString& path)
    {
        if (!member.IsSet(record))
            warn(QStringLiteral("%1 is not set.").arg(member.GetName()), path);
    }

    void warnIfEmpty(const IMKObject& record, const RecordInfo& info, const QString& path)
    {
        const auto& members = info.GetMembers();
        if (std::none_of(members.begin(), members.end(),
                         [&](const MemberInfo* member) { return member->IsSet(record); }))
            warn(QStringLiteral("None of the members of %1 is set.").arg(info.GetName()), path);
    }

    void visitOwned(const IMKObject& record, const MemberInfo& member, const QString& path)
    {
        const QString step = path + QLatin1Char('/');
        if (member.GetKind() == MemberInfo::Record)
            visit(member.GetRecord(record), step + member.GetName());
        if (member.GetKind() == MemberInfo::List)
            for (int i = 0; i < member.CountItems(record); ++i)
                visit(member.GetItem(record, i), step + Place::Step(member.GetName(), i + 1));
    }

    void warn(const QString& text, const QString& path)
    {
        Finding finding;
        finding.severity = Finding::Warning;
        finding.text = text;
        finding.place.file = m_file;
        finding.place.path = path;
        m_findings += finding;
    }

    const QString& m_file;
    QVector<Finding>& m_findings;
};

// --- one document ---------------------------------------------------------------------------

struct Verdict
{
    QString file;
    QVector<Finding> findings;

    Status status() const
    {
        Status worst = Fine;
        for (const Finding& finding : findings)
            worst = std::max(worst, finding.status);
        return worst;
    }

    bool isNoMessage() const { return findings.size() == 1 && findings.constFirst().isNoMessage; }

    QJsonObject toJson() const
    {
        QJsonArray array;
        for (const Finding& finding : findings)
            array += finding.toJson();
        return {{QStringLiteral("file"), file},
                {QStringLiteral("ok"), findings.isEmpty()},
                {QStringLiteral("findings"), array}};
    }
};

Verdict examine(const InputMessage& message, bool strict)
{
    Verdict verdict{message.name, {}};
    const MODELKIT::ReadingReport report;
    try {
        const Document loaded = message.read(Validation::On);
        if (strict) {
            verdict.findings += acceptedSilently(report, message);
            SenseWarnings(verdict.file, verdict.findings)
                .visit(*loaded.record, QLatin1Char('/') + loaded.info->GetName());
        }
    } catch (const Refusal& refusal) {
        if (strict)
            verdict.findings += acceptedSilently(report, message);
        verdict.findings += refusal.finding();
    }
    return verdict;
}

// --- all documents --------------------------------------------------------------------------

/// Writes the verdicts one by one, because there may be many.
class Report
{
public:
    virtual ~Report() = default;
    virtual void add(const Verdict& verdict) = 0;
    virtual void end() = 0;
};

struct Counts
{
    int ok = 0;
    int wrong = 0;
    int unreadable = 0;
    // Places in recordings; no documents.
    int withoutMessage = 0;

    void add(const Verdict& verdict)
    {
        const Status status = verdict.status();
        ++(verdict.isNoMessage() ? withoutMessage
           : status == Fine      ? ok
           : status == Found     ? wrong
                                 : unreadable);
    }
    int all() const { return ok + wrong + unreadable; }
};

QString counted(int count, const QString& what)
{
    return count == 1 ? QStringLiteral("1 ") + what : QStringLiteral("%1 %2s").arg(count).arg(what);
}

class TextReport : public Report
{
public:
    explicit TextReport(Session& session) : m_session(session) {}

    void add(const Verdict& verdict) override
    {
        m_counts.add(verdict);
        for (const Finding& finding : verdict.findings) {
            if (finding.status == Failed)
                m_session.complain(finding);
            else
                out().writeLine(finding.toLine(out()));
        }
        if (verdict.findings.isEmpty() && !m_session.isQuiet())
            out().writeLine(Printable(verdict.file) + QStringLiteral(": ")
                            + out().paint(Style::Good, QStringLiteral("OK")));
    }

    void end() override
    {
        if (m_counts.all() + m_counts.withoutMessage < 2 || m_session.isQuiet())
            return;
        QString summary = QStringLiteral("%1: %2 OK, %3 not OK")
                              .arg(counted(m_counts.all(), QStringLiteral("document")))
                              .arg(m_counts.ok)
                              .arg(m_counts.wrong);
        if (m_counts.unreadable > 0)
            summary += QStringLiteral(", %1 not read").arg(m_counts.unreadable);
        if (m_counts.withoutMessage > 0)
            summary += QStringLiteral("; %1 without a message")
                           .arg(counted(m_counts.withoutMessage, QStringLiteral("place")));
        out().writeLine(summary);
    }

private:
    Output& out() { return m_session.out(); }

    Session& m_session;
    Counts m_counts;
};

class JsonReport : public Report
{
public:
    explicit JsonReport(Output& out) : m_json(out.writer()) { m_json.BeginList(QStringLiteral("documents")); }

    void add(const Verdict& verdict) override
    {
        m_json.AddItem(verdict.toJson());
        m_counts.add(verdict);
    }

    void end() override
    {
        m_json.EndList();
        m_json.Add(QStringLiteral("summary"),
                   QJsonObject{{QStringLiteral("documents"), m_counts.all()},
                               {QStringLiteral("ok"), m_counts.ok},
                               {QStringLiteral("notOk"), m_counts.wrong},
                               {QStringLiteral("notRead"), m_counts.unreadable},
                               {QStringLiteral("noMessage"), m_counts.withoutMessage}});
        m_json.End();
    }

private:
    LargeJson m_json;
    Counts m_counts;
};

std::unique_ptr<Report> makeReport(Session& session)
{
    if (session.format() == Format::Json)
        return std::make_unique<JsonReport>(session.out());
    return std::make_unique<TextReport>(session);
}

Status check(const Arguments& arguments, Session& session)
{
    const QStringList files = inputsOf(arguments);
    const bool strict = arguments.isGiven("--strict");
    const auto report = makeReport(session);
    Progress progress(session, files);
    Status worst = Fine;
    for (const QString& file : files) {
        progress.next(inputName(file));
        const auto add = [&](const Verdict& verdict) {
            report->add(verdict);
            worst = std::max(worst, verdict.status());
            session.out().flush();
        };
        forEachMessage(
            file, {messagesOf(arguments), std::nullopt, &progress},
            [&](const InputMessage& message) { add(examine(message, strict)); },
            [&](const Finding& finding) {
                add({inputName(file), {finding}});
            });
    }
    report->end();
    return worst;
}

} // namespace

Command checkCommand()
{
    CommandTable table;
    table.name = "check";
    table.summary = "Say whether documents are valid, or what is wrong and where.";
    table.arguments = {inputsArgument()};
    table.options = {
        messageOption(),
        flag({"--strict"},
             "Also find what is accepted silently: what is unknown or repeated, texts that are not numbers, "
             "numbers that lose digits, attributes, and members that should be set.")};
    table.examples = {
        {"%1 check request.xml", "One document."},
        {"%1 check --quiet recordings", "All documents of a folder, without a line for the valid ones."},
        {"%1 check --strict request.xml", "With warnings of what is accepted silently."}};
    return {table, check};
}

} // namespace routermsg
