// SPDX-License-Identifier: MIT
#include "Saving.h"

#include "Uninterrupted.h"
#include "UsageError.h"
#include "WritingLosses.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/ReplaceFile.h"

#include <QtCore/QFileInfo>

#include <filesystem>
#include <unistd.h>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

bool isStandardOutput(const QString& path) { return path == QLatin1String("-"); }

Form formFor(const QString& path)
{
    if (isStandardOutput(path))
        return Form::Xml;
    if (const auto form = FormOfFileName(path))
        return *form;
    throw UsageError(QStringLiteral("The name %1 does not tell the form to write. Use one of the endings %2, "
                                    "or name the form with --to: %3.")
                         .arg(path, KnownEndings(), Listed(FormNames())));
}

// A copied message may have any encoding.
QString textForTerminal(const QByteArray& bytes, const Target& target)
{
    const QByteArray mark = QByteArrayLiteral("\xef\xbb\xbf");
    const QByteArray narrow = bytes.startsWith(mark) ? bytes.mid(mark.size()) : bytes;
    QString text = QString::fromUtf8(narrow);
    if (narrow.contains('\0') || text.toUtf8() != narrow)
        throw OutputRefusal(Finding::ofFile(
            outputName(target.path),
            QStringLiteral("The message is not in UTF-8 and is not written to a terminal. Choose a form with "
                           "--to, name a file or redirect the output.")));
    return text;
}

// What a terminal shows of the bytes, with control characters as escapes of the form.
QByteArray forTerminal(const QByteArray& bytes, const Target& target)
{
    if (IsBinary(target.form))
        throw OutputRefusal(Finding::ofFile(
            outputName(target.path),
            QStringLiteral("The %1 form is not written to a terminal. Name a file or redirect the output.")
                .arg(NameOf(target.form))));
    const QString text = textForTerminal(bytes, target);
    return (target.form == Form::Xml ? ShowableXml(text) : ShowableJson(text)).toUtf8();
}

void makeFoldersOf(const QString& path)
{
    const auto folder = std::filesystem::u8path(path.toStdString()).parent_path();
    std::error_code error;
    if (!folder.empty())
        std::filesystem::create_directories(folder, error);
    if (error)
        throw OutputRefusal(Finding::ofFile(
            path, QStringLiteral("Its folder cannot be made: %1.").arg(qt_error_string(error.value()))));
}

} // namespace

QString outputName(const QString& path) { return isStandardOutput(path) ? QStringLiteral("<stdout>") : path; }

bool isSameFile(const QString& input, const QString& path)
{
    const QString file = isStandardOutput(input) ? QStringLiteral("/dev/stdin") : input;
    const QString canonical = QFileInfo(file).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(path).canonicalFilePath();
}

Target::Target(const QString& targetPath, const std::optional<Form>& targetForm)
    : path(descriptorNamedBy(targetPath) == STDOUT_FILENO ? QStringLiteral("-") : targetPath),
      form(targetForm ? *targetForm : formFor(path)),
      isFile(!isStandardOutput(path) && !DirectOutput::isAt(path))
{}

QString FileSummary::formName() const { return isMixed ? QStringLiteral("mixed") : NameOf(form); }

QString FileSummary::toText() const
{
    const QString counted = messages == 1 ? QString() : QStringLiteral("%1 messages, ").arg(messages);
    const QString others =
        leftOut.value_or(0) == 0 ? QString() : QStringLiteral(", %1 left out").arg(*leftOut);
    return QStringLiteral("%1 (%2, %3%4 bytes%5)")
        .arg(Printable(name), formName(), counted, QString::number(size), others);
}

QJsonObject FileSummary::toJson() const
{
    QJsonObject json{{QStringLiteral("file"), name},
                     {QStringLiteral("form"), formName()},
                     {QStringLiteral("bytes"), size}};
    if (messages != 1)
        json[QStringLiteral("messages")] = messages;
    if (isComplete)
        json[QStringLiteral("complete")] = *isComplete;
    if (leftOut)
        json[QStringLiteral("leftOut")] = *leftOut;
    return json;
}

QByteArray encode(MODELKIT::IMKObject& record, Form form, const QString& name)
{
    try {
        return WriteDocument(record, form);
    } catch (const DocumentError& error) {
        throw Refusal(Finding::of(error, name));
    }
}

MessageWriter::MessageWriter(const Target& target, Session& session, FindingReceiver& report)
    : m_target(target), m_session(session), m_report(report)
{
    m_summary.name = outputName(target.path);
    m_summary.form = target.form;
    m_summary.isComplete = true;
    m_summary.messages = 0;
}

// The output was opened with the first message only, because a pipe waits for its reader.
MessageWriter::~MessageWriter()
{
    if (!m_target.isFile && !isStandardOutput(m_target.path) && !m_direct)
        DirectOutput::letReaderGo(m_target.path);
}

void MessageWriter::add(MODELKIT::IMKObject& record)
{
    const QByteArray bytes = encode(record, m_target.form, m_summary.name);
    append(bytes);
    const QString name = m_summary.messages == 1
                             ? m_summary.name
                             : m_summary.name + QLatin1Char('#') + QString::number(m_summary.messages);
    for (const Finding& loss : lostByWriting(record, bytes, m_target.form, name)) {
        m_report.add(loss);
        m_summary.isComplete = false;
    }
}

void MessageWriter::copy(const QByteArray& bytes)
{
    const bool isJson = m_target.form == Form::Json || m_target.form == Form::JsonLines;
    append(isJson && !bytes.endsWith('\n') ? bytes + '\n' : bytes);
}

void MessageWriter::copy(const RecordedMessage& message, const QByteArray& behind)
{
    m_summary.isMixed |= m_summary.messages > 0 && m_summary.form != message.form;
    m_summary.form = m_target.form = message.form;
    write(message.bytes + behind);
    ++m_summary.messages;
}

void MessageWriter::append(const QByteArray& bytes)
{
    // Texts begin on a line of their own.
    write(m_isInLine ? '\n' + bytes : bytes);
    m_isInLine = !IsBinary(m_target.form) && !bytes.endsWith('\n');
    ++m_summary.messages;
}

void MessageWriter::write(const QByteArray& bytes)
{
    Output& out = m_session.out();
    if (m_target.isFile) {
        writeToFile(bytes);
    } else if (isStandardOutput(m_target.path)) {
        out.writeBytes(out.isTerminal() ? forTerminal(bytes, m_target) : bytes);
        out.flush();
    } else {
        writeDirectly(bytes);
    }
    m_summary.size += bytes.size();
}

void MessageWriter::writeDirectly(const QByteArray& bytes)
{
    if (!m_direct)
        m_direct.emplace(m_target.path);
    m_direct->write(m_direct->isTerminal() ? forTerminal(bytes, m_target) : bytes);
}

void MessageWriter::writeToFile(const QByteArray& bytes)
{
    const Uninterrupted uninterrupted;
    if (m_summary.messages == 0 && m_target.makesFolders)
        makeFoldersOf(m_target.path);
    MODELKIT::Failure failure;
    if ((m_summary.messages == 0 && !m_file.Open(m_target.path, failure)) || !m_file.Write(bytes, failure))
        throw OutputRefusal(Finding::of(failure, m_target.path));
}

FileSummary MessageWriter::finish()
{
    if (m_direct)
        m_direct->close();
    const Uninterrupted uninterrupted;
    MODELKIT::Failure failure;
    if (m_summary.messages > 0 && m_target.isFile && !m_file.Commit(failure))
        throw OutputRefusal(Finding::of(failure, m_target.path));
    return m_summary;
}

} // namespace routermsg
