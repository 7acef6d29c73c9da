// SPDX-License-Identifier: MIT
// The command `check`: are documents valid?

#include "Acceptance.h"
#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "documents/DocumentCheck.h"
#include "documents/LargeJson.h"
#include "documents/Text.h"

#include <QtCore/QJsonArray>
#include <QtCore/QVector>

#include <algorithm>
#include <tuple>

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

struct CheckOptions
{
    int maximalErrors = 0;
    bool isStrict = false;
};

// About the document as a whole.
Finding remark(const InputMessage& message, Finding::Severity severity, const QString& text)
{
    Finding finding;
    finding.severity = severity;
    finding.text = text;
    finding.place.file = message.name;
    return finding;
}

void addAcceptedInSilence(const CheckedDocument& checked, const InputMessage& message, Verdict& verdict)
{
    for (const auto& entry : checked.accepted)
        verdict.findings += acceptedSilently(entry, message);
}

void sortByPlace(QVector<Finding>& findings)
{
    const auto position = [](const Finding& finding) {
        const Place& place = finding.place;
        const bool isUnknown = place.line == 0 && place.offset < 0;
        return std::make_tuple(isUnknown, place.line, place.column, place.offset);
    };
    std::stable_sort(findings.begin(), findings.end(), [&](const Finding& finding, const Finding& other) {
        return position(finding) < position(other);
    });
}

QString counted(qint64 count, const QString& what)
{
    return count == 1 ? QStringLiteral("1 more %1 is not listed").arg(what)
                      : QStringLiteral("%1 more %2s are not listed").arg(count).arg(what);
}

QString unlistedErrorsText(const CheckedDocument& checked, const CheckOptions& options)
{
    const qint64 all = static_cast<qint64>(checked.errors.size()) + checked.unlistedErrors;
    const QString text = counted(checked.unlistedErrors, QStringLiteral("error"));
    if (options.maximalErrors == 0 || options.maximalErrors >= CheckingOptions::mostErrorsOfJson)
        return text + QLatin1Char('.');
    return text
           + (all > CheckingOptions::mostErrorsOfJson ? QStringLiteral("; --max-errors 0 lists more.")
                                                      : QStringLiteral("; --max-errors 0 lists all."));
}

Verdict examine(const InputMessage& message, const CheckOptions& options)
{
    const CheckedDocument checked =
        CheckDocument(message.recorded.bytes, {message.recorded.form, options.maximalErrors,
                                               message.recorded.frame, message.format.info});
    Verdict verdict{message.name, {}};
    if (options.isStrict)
        addAcceptedInSilence(checked, message, verdict);
    for (const DocumentError& error : checked.errors)
        verdict.findings += message.findingOf(error);
    const bool isValid = checked.errors.empty();
    if (!isValid)
        sortByPlace(verdict.findings);
    if (checked.unlistedErrors > 0)
        verdict.findings += remark(message, Finding::Error, unlistedErrorsText(checked, options));
    if (checked.dropped > 0 && options.isStrict)
        verdict.findings += moreNotListed(checked.dropped, message.name);
    if (checked.dropped > 0 && !isValid)
        verdict.findings +=
            remark(message, Finding::Error,
                   QStringLiteral("There is so much to warn of that errors may be missing here."));
    if (options.isStrict && isValid)
        SenseWarnings(verdict.file, verdict.findings)
            .visit(*checked.document.record, QLatin1Char('/') + checked.document.info->GetName());
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

class CheckText : public Report
{
public:
    explicit CheckText(Session& session) : m_session(session) {}

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

class CheckJson : public Report
{
public:
    explicit CheckJson(Output& out) : m_json(out.writer()) { m_json.BeginList(QStringLiteral("documents")); }

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
        return std::make_unique<CheckJson>(session.out());
    return std::make_unique<CheckText>(session);
}

constexpr const char* maximalErrorsName = "--max-errors";

int maximalErrorsOf(const Arguments& arguments)
{
    if (!arguments.isGiven(maximalErrorsName))
        return CheckingOptions().maximalErrors;
    const QString text = arguments.text(maximalErrorsName);
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 0)
        arguments.refuse(
            QStringLiteral("\"%1\" is no value of --max-errors. Write the number of errors to list "
                           "for each document, or 0 for all.")
                .arg(text));
    return number;
}

Status check(const Arguments& arguments, Session& session)
{
    const InputList inputs = inputsOf(arguments);
    const MessageRange range = messagesOf(arguments);
    const InputFormat format = inputFormatOf(arguments);
    const CheckOptions options{maximalErrorsOf(arguments), arguments.isGiven("--strict")};
    const auto report = makeReport(session);
    Status worst = Fine;
    const auto add = [&](const Verdict& verdict) {
        report->add(verdict);
        worst = std::max(worst, verdict.status());
        session.out().flush();
    };
    for (const Finding& problem : inputs.problems)
        add({problem.place.file, {problem}});
    Progress progress(session, inputs.files);
    for (const QString& file : inputs.files) {
        progress.next(inputName(file));
        forEachMessage(
            file, {range, format, &progress},
            [&](const InputMessage& message) { add(examine(message, options)); },
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
        option({maximalErrorsName}, "N",
               QStringLiteral("List at most N errors of each document, 0 for all; without it %1.")
                   .arg(CheckingOptions().maximalErrors)),
        flag({"--strict"},
             "Also find what is accepted silently: what is unknown or repeated, texts that are not numbers, "
             "numbers that lose digits, attributes, and members that should be set.")};
    table.readsMessages = true;
    table.examples = {
        {"routermsg check request.xml", "One document."},
        {"routermsg check --quiet recordings",
         "All documents of a folder, without a line for the valid ones."},
        {"routermsg check --max-errors 0 request.xml", "Every error, however many there are."},
        {"routermsg check --strict request.xml", "With warnings of what is accepted silently."}};
    return {table, check};
}

} // namespace routermsg
