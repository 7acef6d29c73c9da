// SPDX-License-Identifier: MIT
#include "Finding.h"

#include "Output.h"
#include "ProgramName.h"
#include "documents/Text.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

MODELKIT::Place inFile(MODELKIT::Place place, const QString& file)
{
    if (place.file.isEmpty())
        place.file = file;
    return place;
}

// Whether --limit admits more.
bool isAboutLimit(MODELKIT::Failure::Kind kind)
{
    using MODELKIT::Failure;
    return kind == Failure::InputTooLarge || kind == Failure::InflatedTooLarge
           || kind == Failure::TooManyItems;
}

} // namespace

Finding Finding::of(const MODELKIT::Failure& failure, const QString& file)
{
    const Status status = failure.kind == MODELKIT::Failure::InputOutput ? Failed : Found;
    Finding finding{Error, status, failure.text, inFile(failure.place, file)};
    if (isAboutLimit(failure.kind))
        finding.hint = QStringLiteral("--limit raises the limit.");
    return finding;
}

Finding Finding::of(const DocumentError& error, const QString& file)
{
    return of(MODELKIT::Failure{error.GetKind(), error.GetText(), error.GetPlace()}, file);
}

Finding Finding::ofFile(const QString& file, const QString& text)
{
    Finding finding;
    finding.status = Failed;
    finding.text = text;
    finding.place.file = file;
    return finding;
}

QString Finding::toLine(const Output& output) const
{
    const QString where = Printable(place.ToString());
    QString line = output.paint(Style::Place, (where.isEmpty() ? programName() : where) + QLatin1Char(':'));
    line += QLatin1Char(' ');
    line += severity == Error ? output.paint(Style::Error, QStringLiteral("error:"))
                              : output.paint(Style::Warning, QStringLiteral("warning:"));
    line += QLatin1Char(' ') + Printable(text);
    if (!place.path.isEmpty())
        line += QStringLiteral(" (in %1)").arg(Printable(place.path));
    if (!hint.isEmpty())
        line +=
            (line.endsWith(QLatin1Char('.')) ? QStringLiteral(" ") : QStringLiteral("; ")) + Printable(hint);
    return line;
}

QJsonObject Finding::toJson() const
{
    QJsonObject json;
    json[QStringLiteral("severity")] =
        severity == Error ? QStringLiteral("error") : QStringLiteral("warning");
    json[QStringLiteral("text")] = text;
    if (!place.file.isEmpty())
        json[QStringLiteral("file")] = place.file;
    if (place.line > 0)
        json[QStringLiteral("line")] = place.line;
    if (place.line > 0 && place.column > 0)
        json[QStringLiteral("column")] = place.column;
    if (place.offset >= 0)
        json[QStringLiteral("offset")] = place.offset;
    if (!place.path.isEmpty())
        json[QStringLiteral("path")] = place.path;
    if (!hint.isEmpty())
        json[QStringLiteral("hint")] = hint;
    return json;
}

} // namespace routermsg
