// SPDX-License-Identifier: MIT
// The command `convert`: a document in another form.

#include "Acceptance.h"
#include "Commands.h"
#include "InputFile.h"
#include "InputFiles.h"
#include "Progress.h"
#include "Saving.h"
#include "SharedOptions.h"
#include "WhereOption.h"

#include "modelkit/ReadingReport.h"

#include <algorithm>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// One run of the command.
class Conversion
{
public:
    Conversion(const Arguments& arguments, Session& session)
        : m_arguments(arguments), m_path(arguments.text("IN")),
          m_target(arguments.text("OUT"), formOf(arguments, "--to")), m_filter(arguments),
          m_progress(session, {m_path}), m_report(m_target.path, session),
          m_writer(m_target, session, m_report), m_input{inputName(m_path), Form::Xml, 0, std::nullopt, 0}
    {}

    Status run()
    {
        return m_report.run([this] { return convert(); });
    }

private:
    Status convert()
    {
        m_progress.next(inputName(m_path));
        const Status worst = forEachMessage(
            m_path, {messagesOf(m_arguments), inputFormatOf(m_arguments), &m_progress},
            [this](const InputMessage& message) { convert(message); },
            [this](const Finding& finding) { m_report.add(finding); });
        m_input.leftOut = m_filter.leftOut();
        if (m_input.messages == 0)
            return nothingConverted(worst);
        m_report.addFile(QStringLiteral("input"), m_input.toJson());
        const bool isLossAccepted = m_arguments.isGiven("--accept-loss");
        const bool isLost = m_isReadingLossy || !m_writer.isComplete();
        const Status status = isLost && !isLossAccepted ? std::max(worst, Found) : worst;
        const QString reason = reasonNotToWrite(worst, isLost && !isLossAccepted);
        if (!reason.isEmpty()) {
            m_report.add(Finding::ofFile(m_target.path, reason));
            return status;
        }
        FileSummary output = m_writer.finish();
        output.isComplete = worst == Fine && !isLost;
        m_report.addFile(QStringLiteral("output"), output.toJson());
        m_report.setText(m_input.toText() + QStringLiteral(" -> ") + output.toText());
        return status;
    }

    Status nothingConverted(Status worst)
    {
        if (worst != Fine)
            return worst;
        Finding finding =
            Finding::ofFile(m_input.name, QStringLiteral("No message fits --where, so nothing is written."));
        finding.status = Found;
        m_report.add(finding);
        return Found;
    }

    void convert(const InputMessage& message)
    {
        // A message that does not fit need not be valid.
        if (m_filter.isGiven() && !m_filter.takes(*message.read().record))
            return;
        const Document document = read(message);
        m_writer.add(*document.record);
        m_input.isMixed |= m_input.messages > 0 && m_input.form != document.form;
        m_input.form = document.form;
        ++m_input.messages;
        m_input.size += document.size;
    }

    Document read(const InputMessage& message)
    {
        const MODELKIT::ReadingReport accepted;
        Document document = message.read(m_arguments.isGiven("--invalid") ? Validation::Off : Validation::On);
        for (const Finding& loss : lostByReading(accepted, message)) {
            m_report.add(loss);
            m_isReadingLossy = true;
        }
        return document;
    }

    // What the file to write holds now is never replaced by a part of it. Empty when the file is written.
    QString reasonNotToWrite(Status worst, bool isLost) const
    {
        if (m_target.path == QLatin1String("-"))
            return {};
        const bool isSame = isSameFile(m_path, m_target.path);
        if (worst == Failed || (worst == Found && isSame))
            return QStringLiteral("The file is not written, because messages of the input are missing.");
        if (isLost && isSame)
            return QStringLiteral(
                "The file is not written, because it is the input, and what is lost would be "
                "lost for good. Write another file, or use --accept-loss.");
        return {};
    }

    const Arguments& m_arguments;
    QString m_path;
    Target m_target;
    MessageFilter m_filter;
    Progress m_progress;
    SavingReport m_report;
    MessageWriter m_writer;
    FileSummary m_input;
    bool m_isReadingLossy = false;
};

Status convert(const Arguments& arguments, Session& session) { return Conversion(arguments, session).run(); }

} // namespace

Command convertCommand()
{
    CommandTable table;
    table.name = "convert";
    table.summary = "Write a document in another form.";
    table.arguments = {
        required(argument("IN", fileValue(), "The document to read, or - for standard input.")),
        required(argument("OUT", fileValue(), "The file to write, or - for standard output."))};
    table.options = {
        messageOption(), whereOption(),
        formOption("--to", "The form of OUT. Without it, the ending tells the form; - means xml."),
        flag({"--invalid"}, "Convert the document even if it is not valid."),
        flag({"--accept-loss"},
             "Report success although something is lost by reading or writing. What is lost is still listed. "
             "Without the option OUT is written as well, unless it is IN, but the exit status is 1.")};
    table.readsMessages = true;
    table.examples = {
        {"%1 convert request.xml request.bin", "From XML to the binary form."},
        {"%1 convert --accept-loss scan.json scan.xml", "To XML, even if numbers lose decimals."},
        {"%1 convert request.bin - --to json | less", "Look at a binary document as JSON."},
        {"%1 convert monday.rec replies.rec --to binary --where Type=Reply",
         "Only the replies of a recording."},
        {"%1 convert - reply.binz < reply.json", "From standard input to the compressed form."}};
    return {table, convert};
}

} // namespace routermsg
