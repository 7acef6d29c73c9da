// SPDX-License-Identifier: MIT
// The command `set`: changing members of documents.

#include "Acceptance.h"
#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "SharedOptions.h"
#include "UsageError.h"
#include "WhereOption.h"
#include "documents/DocumentError.h"
#include "documents/RecordEdits.h"
#include "documents/Text.h"
#include "documents/ValueTexts.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

RecordEdits editsOf(const Arguments& arguments)
{
    RecordEdits edits;
    try {
        for (const QString& path : arguments.texts("--unset"))
            edits.Unset(path);
        for (const QString& change : arguments.texts("CHANGE"))
            edits.Set(change);
    } catch (const InvalidMemberPath& error) {
        throw UsageError(error.GetText());
    } catch (const InvalidEdit& error) {
        throw UsageError(error.GetText());
    }
    if (edits.IsEmpty())
        arguments.refuse(QStringLiteral("There is nothing to change. Write PATH=VALUE or --unset PATH."));
    return edits;
}

// One run of the command: changes messages one by one, and copies the others.
class Editing
{
public:
    Editing(const Arguments& arguments, Session& session)
        : m_arguments(arguments), m_edits(editsOf(arguments)), m_range(messagesOf(arguments)),
          m_format(inputFormatOf(arguments)), m_filter(arguments), m_path(arguments.text("IN")),
          m_target(arguments.isGiven("--output") ? arguments.text("--output") : QStringLiteral("-"),
                   formOf(arguments, "--to")),
          m_progress(session, {m_path}), m_report(m_target.path, session),
          m_writer(m_target, session, m_report), m_input{inputName(m_path), Form::Xml, 0, std::nullopt, 0}
    {}

    Status run()
    {
        return m_report.run([this] { return edit(); });
    }

private:
    Status edit()
    {
        if (m_format.frame && isSameFile(m_path, m_target.path))
            m_arguments.refuse(QStringLiteral(
                "Bare frames are only read: IN would get another layout. Write another file."));
        m_progress.next(m_input.name);
        const Status worst = forEachMessage(
            m_path, {{}, m_format, &m_progress}, [this](const InputMessage& message) { add(message); },
            [this](const Finding& finding) { m_report.add(finding); });
        if (m_input.messages > 0)
            m_report.addFile(QStringLiteral("input"), m_input.toJson());
        if (worst != Fine)
            return refuse(worst, QStringLiteral("not every message could be read and changed"));
        if (const auto problem = whatIsWrong())
            throw Refusal(*problem);
        const bool isLost = m_isReadingLossy || !m_writer.isComplete();
        const bool isAccepted = m_arguments.isGiven("--accept-loss");
        if (isLost && !isAccepted && m_target.isFile && isSameFile(m_path, m_target.path))
            return refuse(Found, QStringLiteral("it is the input, and what is lost would be lost for good. "
                                                "Write another file, or use --accept-loss"));
        finish(isLost);
        return isLost && !isAccepted ? Found : Fine;
    }

    void finish(bool isLost)
    {
        FileSummary output = m_writer.finish();
        output.isComplete = !isLost;
        QJsonObject json = output.toJson();
        json[QStringLiteral("changed")] = m_changed;
        m_report.addFile(QStringLiteral("output"), json);
        m_report.setText(QStringLiteral("%1 -> %2, %3 changed")
                             .arg(m_input.toText(), output.toText(), QString::number(m_changed)));
    }

    Status refuse(Status status, const QString& reason)
    {
        if (m_target.isFile)
            m_report.add(Finding::ofFile(m_target.path,
                                         QStringLiteral("The file is not written, because %1.").arg(reason)));
        return status;
    }

    // What keeps the result from being written although all messages are good.
    std::optional<Finding> whatIsWrong() const
    {
        if (m_inRange == 0)
            return noSuchMessage(m_input.name, m_range, m_input.messages);
        Finding finding = Finding::ofFile(m_input.name, QStringLiteral("No message fits --where."));
        finding.status = Found;
        if (m_selected == 0)
            return finding;
        const QStringList unused = m_edits.GetUnused();
        if (unused.isEmpty())
            return std::nullopt;
        finding.text =
            QStringLiteral("There is no place for the change %1.").arg(Quoted(unused.constFirst()));
        return finding;
    }

    // --- messages

    void add(const InputMessage& message)
    {
        const qint64 number = ++m_input.messages;
        m_input.isMixed |= number > 1 && m_input.form != message.recorded.form;
        m_input.form = message.recorded.form;
        m_input.size += message.recorded.bytes.size();
        const bool isInRange = number >= m_range.first && number <= m_range.last;
        m_inRange += isInRange ? 1 : 0;
        // A message that keeps its form keeps its bytes, unless it is changed.
        const bool isCopied = isInTargetForm(message.recorded);
        if (!isInRange && isCopied)
            return m_writer.copy(message.recorded.bytes);

        const MODELKIT::ReadingReport accepted;
        const Document document = message.read();
        const bool isChanged = isInRange && isSelected(*document.record) && change(*document.record, message);
        if (!isChanged && isCopied)
            return m_writer.copy(message.recorded.bytes);
        for (const Finding& loss : lostByReading(accepted, message)) {
            m_report.add(loss);
            m_isReadingLossy = true;
        }
        m_writer.add(*document.record);
        m_changed += isChanged ? 1 : 0;
    }

    bool isSelected(const MODELKIT::IMKObject& record)
    {
        const bool isTaken = m_filter.takes(record);
        m_selected += isTaken ? 1 : 0;
        return isTaken;
    }

    // Returns whether there was something to change.
    bool change(MODELKIT::IMKObject& record, const InputMessage& message)
    {
        try {
            record.SetValidate(true);
            if (m_edits.Apply(record)) {
                record.Check();
                return true;
            }
            record.SetValidate(false);
            return false;
        } catch (const ModelKitException& exception) {
            throw Refusal(Finding::of(DocumentError(exception), message.name));
        }
    }

    bool isInTargetForm(const RecordedMessage& recorded) const
    {
        // The output has no bare frames.
        if (recorded.frame)
            return false;
        // Text in UTF-16 or UTF-32 does not go together with messages in UTF-8.
        if (recorded.form == Form::Xml && recorded.bytes.contains('\0'))
            return false;
        if (recorded.form == Form::Json && m_target.form == Form::JsonLines)
            return !recorded.bytes.trimmed().contains('\n');
        return recorded.form == m_target.form;
    }

    const Arguments& m_arguments;
    RecordEdits m_edits;
    MessageRange m_range;
    InputFormat m_format;
    MessageFilter m_filter;
    QString m_path;
    Target m_target;
    Progress m_progress;
    SavingReport m_report;
    MessageWriter m_writer;
    FileSummary m_input;
    bool m_isReadingLossy = false;
    qint64 m_inRange = 0;
    qint64 m_selected = 0;
    qint64 m_changed = 0;
};

Status set(const Arguments& arguments, Session& session) { return Editing(arguments, session).run(); }

QStringList offeredChanges()
{
    QStringList changes;
    for (const QString& path : PathPattern::Examples()) {
        const PathPattern pattern(path);
        const auto& member = *pattern.GetMembers().constFirst();
        changes += member.GetClass() ? path : path + QLatin1Char('=');
        for (const QString& value : ListedValues(member))
            changes += path + QLatin1Char('=') + value;
    }
    return changes;
}

} // namespace

Command setCommand()
{
    CommandTable table;
    table.name = "set";
    table.summary = "Change members of documents.";
    table.arguments = {
        required(argument("IN", fileValue(), "The document to read, or - for standard input.")),
        repeatable(suggesting(
            offeredChanges(),
            argument(
                "CHANGE", "CHANGE",
                "PATH=VALUE sets a member; the path of a record alone sets the record. Fragment[last] is "
                "the last fragment, and Fragment[+] appends one.")))};
    table.options = {
        option({"-o", "--output"}, fileValue(),
               "The file to write, which may be IN. Without it, or for -, standard output."),
        repeatable(
            takingPath(option({"--unset"}, "PATH",
                              "A member that is no longer set, or a fragment to remove; goes before all "
                              "changes; can be given several times."))),
        messageOption(),
        whereOption(),
        formOption("--to",
                   "The form to write. Without it, the ending of the file tells the form; - means xml."),
        flag({"--accept-loss"},
             "Report success although something is lost by reading or writing changed messages. What is lost "
             "is still listed. Without the option IN is not overwritten, and the exit status is 1.")};
    table.readsMessages = true;
    table.examples = {
        {"%1 set request.xml MessageID=8 -o request.xml", "In place."},
        {"%1 set scan.bin 'Fragment[2]/DF_Params/Frequency=98.5e6' -o new.bin", "In one fragment."},
        {"%1 set scan.bin 'Fragment[+]/DF_Params/Frequency=99e6' "
         "'Fragment[last]/DF_Params/Bandwidth=15000' -o new.bin",
         "Another fragment with two values."},
        {"%1 set week.jsonl --where Type=Event --unset MessageID -o week.jsonl",
         "In some messages of a recording; the others are copied."}};
    return {table, set};
}

} // namespace routermsg
