#include "Save.h"

#include "UsageError.h"
#include "documents/Closest.h"
#include "documents/JsonForm.h"
#include "documents/Text.h"

namespace routermsg {

namespace {

bool isStandardOutput(const Target& target) { return target.path == QLatin1String("-"); }

Form formFor(const QString& path)
{
    if (path == QLatin1String("-"))
        return Form::Xml;
    if (const auto form = formOfFileName(path))
        return *form;
    throw UsageError(
        QStringLiteral("The name %1 does not tell the form to write. Give it one of the endings %2, "
                       "or name the form with --to: %3.")
            .arg(path, knownEndings(), enumerated(formNames())));
}

// JSON carries everything, so two documents are the same when it is.
bool isCarriedBy(const QByteArray& bytes, Form form, const MODELKIT::IMKObject& record)
{
    if (form == Form::Json)
        return true;
    try {
        return toJson(*parse(bytes, QString(), {form, false}).record) == toJson(record);
    } catch (const Refusal&) {
        return false;
    }
}

Finding lossIn(const Target& target)
{
    Finding finding;
    finding.severity = Finding::Warning;
    finding.text =
        QStringLiteral(
            "The %1 form does not carry everything: what is read from it differs. JSON carries all.")
            .arg(nameOf(target.form));
    finding.place.file = outputName(target.path);
    return finding;
}

} // namespace

Target::Target(const QString& targetPath, const std::optional<Form>& targetForm)
    : path(targetPath), form(targetForm ? *targetForm : formFor(targetPath))
{}

QString Copy::toText() const
{
    return QStringLiteral("%1 (%2, %3 bytes)").arg(printable(name), nameOf(form), QString::number(size));
}

QJsonObject Copy::toJson() const
{
    QJsonObject json{{QStringLiteral("file"), name},
                     {QStringLiteral("form"), nameOf(form)},
                     {QStringLiteral("bytes"), size}};
    if (isComplete)
        json[QStringLiteral("complete")] = *isComplete;
    return json;
}

Copy save(MODELKIT::IMKObject& record, const Target& target, Session& session)
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
        session.writeJson(json, isStandardOutput(target) ? session.err() : session.out());
    else if (!session.isQuiet() && !isStandardOutput(target))
        session.out().writeLine(text);
}

} // namespace routermsg
