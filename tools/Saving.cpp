// SPDX-License-Identifier: MIT
#include "Saving.h"

#include "UsageError.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include "modelkit/ReplaceFile.h"

#include <csignal>

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
                         .arg(path, KnownEndings(), Enumerated(FormNames())));
}

// JSON carries everything: documents with the same JSON are the same.
bool isCarriedBy(const QByteArray& bytes, Form form, const MODELKIT::IMKObject& record)
{
    if (form == Form::Json || form == Form::JsonLines)
        return true;
    try {
        return ToJson(*ReadDocument(bytes, {form, false}).record) == ToJson(record);
    } catch (const DocumentError&) {
        return false;
    }
}

Finding lossIn(const Target& target)
{
    Finding finding;
    finding.severity = Finding::Warning;
    finding.text =
        QStringLiteral(
            "The %1 form does not carry everything: reading it back gives a different document. JSON "
            "carries everything.")
            .arg(NameOf(target.form));
    finding.place.file = outputName(target.path);
    return finding;
}

void writeToTerminal(const QByteArray& bytes, Form form, Output& out)
{
    if (form == Form::Binary || form == Form::Compressed)
        throw Refusal(Finding::ofFile(
            outputName(QStringLiteral("-")),
            QStringLiteral("The %1 form is not written to a terminal. Name a file or redirect the output.")
                .arg(NameOf(form))));
    const QString text = QString::fromUtf8(bytes);
    out.write(form == Form::Xml ? ShowableXml(text) : ShowableJson(text));
}

// Holds back the signals that end the program, so that they do not interrupt the writing of a file.
class Uninterrupted
{
public:
    Uninterrupted()
    {
        sigset_t ending;
        sigemptyset(&ending);
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
            sigaddset(&ending, signal);
        pthread_sigmask(SIG_BLOCK, &ending, &m_before);
    }
    Uninterrupted(const Uninterrupted&) = delete;
    Uninterrupted& operator=(const Uninterrupted&) = delete;
    ~Uninterrupted() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }

private:
    sigset_t m_before{};
};

void writeToFile(const QByteArray& bytes, const QString& path)
{
    const Uninterrupted uninterrupted;
    MODELKIT::Failure failure;
    if (!MODELKIT::ReplaceFile(path, bytes, failure))
        throw Refusal(Finding::of(failure, path));
}

void writeDocument(const QByteArray& bytes, Form form, const QString& path, Session& session)
{
    if (!isStandardOutput(path))
        return writeToFile(bytes, path);
    if (session.out().isTerminal())
        writeToTerminal(bytes, form, session.out());
    else
        session.out().writeBytes(bytes);
    session.out().flush();
}

} // namespace

QString outputName(const QString& path) { return isStandardOutput(path) ? QStringLiteral("<stdout>") : path; }

Target::Target(const QString& targetPath, const std::optional<Form>& targetForm)
    : path(targetPath), form(targetForm ? *targetForm : formFor(targetPath))
{}

QString FileSummary::toText() const
{
    return QStringLiteral("%1 (%2, %3 bytes)").arg(Printable(name), NameOf(form), QString::number(size));
}

QJsonObject FileSummary::toJson() const
{
    QJsonObject json{{QStringLiteral("file"), name},
                     {QStringLiteral("form"), NameOf(form)},
                     {QStringLiteral("bytes"), size}};
    if (isComplete)
        json[QStringLiteral("complete")] = *isComplete;
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

FileSummary save(MODELKIT::IMKObject& record, const Target& target, Session& session)
{
    const QString name = outputName(target.path);
    const QByteArray bytes = encode(record, target.form, name);
    const bool isComplete = isCarriedBy(bytes, target.form, record);
    writeDocument(bytes, target.form, target.path, session);
    if (!isComplete)
        session.complain(lossIn(target));
    return {name, target.form, bytes.size(), isComplete};
}

void reportSaving(const QString& text, const QJsonObject& json, const Target& target, Session& session)
{
    if (session.format() == Format::Json)
        session.writeJson(json, isStandardOutput(target.path) ? session.err() : session.out());
    else if (!session.isQuiet() && !isStandardOutput(target.path))
        session.out().writeLine(text);
}

} // namespace routermsg
