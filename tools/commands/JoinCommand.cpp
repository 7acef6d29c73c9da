// SPDX-License-Identifier: MIT
// The command `join`: the messages of several inputs as one recording.

#include "Commands.h"
#include "Conversion.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "documents/Recording.h"

#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// One run of the command.
class Joining
{
public:
    Joining(const Arguments& arguments, Session& session)
        : m_inputs(inputsOf(arguments)),
          m_path(arguments.isGiven("--output") ? arguments.text("--output") : QStringLiteral("-")),
          m_form(formToWrite(arguments, m_path)), m_target(m_path, m_form.value_or(Form::Xml)),
          m_progress(session, m_inputs.files), m_report(m_target.path, session),
          m_conversion(arguments, m_report, m_progress, m_form ? Copies::None : Copies::All),
          m_writer(m_target, session, m_report)
    {}

    Status run()
    {
        return m_report.run([this] { return join(); });
    }

private:
    Status join()
    {
        for (const Finding& problem : m_inputs.problems)
            m_conversion.addProblem(problem);
        for (const QString& file : m_inputs.files)
            m_conversion.read(file, [this](const ConvertedMessage& message) { write(message); });
        if (!m_conversion.hasMessages()) {
            m_conversion.reportNothing();
            return m_conversion.status();
        }
        m_report.addList(QStringLiteral("inputs"), [this](LargeJson& json) {
            for (const FileSummary& input : m_conversion.inputs())
                if (input.messages > 0)
                    json.AddItem(input.toJson());
        });
        if (const auto output = m_conversion.finish(m_writer, m_target)) {
            m_report.addFile(QStringLiteral("output"), output->toJson());
            m_report.setText(allInputs().toText() + QStringLiteral(" -> ") + output->toText());
        }
        return m_conversion.status();
    }

    void write(const ConvertedMessage& message)
    {
        if (m_form)
            m_writer.add(*message.document.record);
        else
            m_writer.copy(message.input.recorded, LineBreakBehind(message.input.recorded));
    }

    // What was read, as one input.
    FileSummary allInputs() const
    {
        const QVector<FileSummary>& inputs = m_conversion.inputs();
        FileSummary all = inputs.constFirst();
        if (inputs.size() == 1)
            return all;
        all = {QStringLiteral("%1 inputs").arg(inputs.size()), Form::Xml, 0, std::nullopt, 0};
        for (const FileSummary& input : inputs) {
            all.isMixed |=
                input.isMixed || (all.messages > 0 && input.messages > 0 && input.form != all.form);
            all.form = input.messages > 0 ? input.form : all.form;
            all.size += input.size;
            all.messages += input.messages;
            if (input.leftOut)
                all.leftOut = all.leftOut.value_or(0) + *input.leftOut;
        }
        return all;
    }

    InputList m_inputs;
    QString m_path;
    std::optional<Form> m_form;
    Target m_target;
    Progress m_progress;
    SavingReport m_report;
    Conversion m_conversion;
    MessageWriter m_writer;
};

Status join(const Arguments& arguments, Session& session) { return Joining(arguments, session).run(); }

} // namespace

Command joinCommand()
{
    CommandTable table;
    table.name = "join";
    table.summary = "Write messages one behind another, as a recording.";
    table.arguments = {inputsArgument()};
    table.options = {
        option({"-o", "--output"}, fileValue(), "The file to write. Without it, or for -, standard output."),
        formOption("--to",
                   "The form of all messages. Without it, the ending of the file tells the form; with "
                   "an unknown ending and for -, messages keep their bytes."),
        messageOption(),
        whereOption(),
        invalidOption(),
        acceptLossOption(
            "Without the option the file is written as well, unless it is an input, but the exit "
            "status is 1.")};
    table.readsMessages = true;
    table.examples = {
        {"%1 join monday.rec tuesday.rec -o week.jsonl", "Messages of two recordings as JSON lines."},
        {"%1 join recordings -o all.rec", "All messages in a folder, each with its bytes."},
        {"%1 join - more.xml -o rec.bin < rec.bin", "A message behind those of standard input."}};
    return {table, join};
}

} // namespace routermsg
