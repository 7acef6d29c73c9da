// SPDX-License-Identifier: MIT
// The command `split`: each message of a recording as a file of its own.

#include "Commands.h"
#include "Conversion.h"
#include "OutputPattern.h"
#include "Progress.h"
#include "SharedOptions.h"
#include "documents/Text.h"

#include <QtCore/QFileInfo>
#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// There may be very many of them; their names are made again for the report.
struct WrittenFile
{
    qint64 number;
    qint64 size;
    Form form;
    bool isComplete;
};

// One run of the command.
class Splitting
{
public:
    Splitting(const Arguments& arguments, Session& session)
        : m_path(arguments.text("REC")), m_pattern(arguments.text("--output")),
          m_form(formToWrite(arguments, m_pattern.nameOf(1))), m_session(session),
          m_progress(session, {m_path}), m_report(m_pattern.text(), session),
          m_conversion(arguments, m_report, m_progress, m_form ? Copies::None : Copies::All)
    {}

    Status run()
    {
        return m_report.run([this] { return split(); });
    }

private:
    Status split()
    {
        try {
            m_conversion.read(m_path, [this](const ConvertedMessage& message) { write(message); });
        } catch (const OutputRefusal& refusal) {
            m_conversion.addProblem(refusal.finding());
        }
        if (m_conversion.hasMessages())
            reportFiles();
        else
            m_conversion.reportNothing();
        return m_conversion.status();
    }

    void write(const ConvertedMessage& message)
    {
        const RecordedMessage& recorded = message.input.recorded;
        const QString path = m_pattern.nameOf(recorded.number);
        requireOwnFile(path);
        Target target(path, m_form.value_or(recorded.form));
        target.makesFolders = true;
        MessageWriter writer(target, m_session, m_report);
        if (m_form)
            writer.add(*message.document.record);
        else
            writer.copy(recorded, QByteArray());
        const FileSummary file = m_conversion.finish(writer);
        m_written.isMixed |= m_files > 0 && m_written.form != file.form;
        m_written.form = file.form;
        m_written.size += file.size;
        ++m_files;
        if (m_session.format() == Format::Json)
            m_list +=
                WrittenFile{recorded.number, file.size, file.form, message.isComplete && writer.isComplete()};
    }

    // Nothing of the recording may get lost by writing to the same file twice, or to the recording.
    void requireOwnFile(const QString& path) const
    {
        const auto refuse = [&](const QString& reason) {
            throw OutputRefusal(
                Finding::ofFile(path, QStringLiteral("The file is not written, because %1.").arg(reason)));
        };
        if (isSameFile(m_path, path))
            refuse(QStringLiteral("it is the input"));
        const auto number = m_pattern.beforeNumber().size();
        for (auto end = number; end >= 0 && end < path.size();) {
            end = path.indexOf(QLatin1Char('/'), end + 1);
            if (QFileInfo(path.left(end)).isSymLink())
                refuse(QStringLiteral("a link could lead to the file of another message"));
        }
    }

    void reportFiles()
    {
        const FileSummary& input = m_conversion.inputs().constFirst();
        m_report.addFile(QStringLiteral("input"), input.toJson());
        m_report.addFile(QStringLiteral("output"), {{QStringLiteral("file"), m_pattern.text()},
                                                    {QStringLiteral("form"), m_written.formName()},
                                                    {QStringLiteral("files"), m_files},
                                                    {QStringLiteral("bytes"), m_written.size},
                                                    {QStringLiteral("complete"), m_conversion.isComplete()}});
        m_report.addList(QStringLiteral("files"), [this](LargeJson& json) {
            for (const WrittenFile& file : m_list)
                json.AddItem(toJson(file));
        });
        m_report.setText(
            QStringLiteral("%1 -> %2 (%3, %4, %5 bytes)")
                .arg(input.toText(), Printable(m_pattern.text()), m_written.formName(),
                     m_files == 1 ? QStringLiteral("1 file") : QStringLiteral("%1 files").arg(m_files),
                     QString::number(m_written.size)));
    }

    QJsonObject toJson(const WrittenFile& file) const
    {
        QJsonObject json =
            FileSummary{m_pattern.nameOf(file.number), file.form, file.size, file.isComplete}.toJson();
        json[QStringLiteral("message")] = file.number;
        return json;
    }

    QString m_path;
    OutputPattern m_pattern;
    std::optional<Form> m_form;
    Session& m_session;
    Progress m_progress;
    SavingReport m_report;
    Conversion m_conversion;
    // What all files have together.
    FileSummary m_written;
    qint64 m_files = 0;
    QVector<WrittenFile> m_list;
};

Status split(const Arguments& arguments, Session& session) { return Splitting(arguments, session).run(); }

} // namespace

Command splitCommand()
{
    CommandTable table;
    table.name = "split";
    table.summary = "Write each message of a recording to a file of its own.";
    table.arguments = {
        required(argument("REC", fileValue(), "The recording to read, or - for standard input."))};
    table.options = {
        required(
            option({"-o", "--output"}, "PATTERN",
                   "The names of the files. %d stands for the number of the message in the recording, %05d "
                   "for the number with at least five digits, and %% for a percent sign. Missing folders "
                   "are made.")),
        formOption("--to", "The form of the files. Without it, the ending of PATTERN tells the form; with an "
                           "unknown ending, messages keep their bytes."),
        messageOption(),
        whereOption(),
        invalidOption(),
        acceptLossOption("Without the option the files are written as well, but the exit status is 1.")};
    table.readsMessages = true;
    table.examples = {
        {"%1 split week.rec -o 'week/%05d.xml'", "Each message as XML."},
        {"%1 split week.rec --output '%d.msg'", "The bytes of each message, whatever its form."},
        {"nc router 5000 | %1 split - -o 'events/%06d.json' --where Type=Event",
         "Events, as soon as they arrive."}};
    return {table, split};
}

} // namespace routermsg
