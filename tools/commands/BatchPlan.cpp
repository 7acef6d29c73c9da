// SPDX-License-Identifier: MIT
#include "BatchPlan.h"

#include "InputList.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

// The same for all names of a file that exists.
QString identityOf(const QString& path)
{
    const QFileInfo file(path);
    const QString canonical = file.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(file.absoluteFilePath()) : canonical;
}

QString withSlash(const QString& folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QString withEnding(const QString& name, Form form)
{
    return name.left(name.lastIndexOf(QLatin1Char('.'))) + EndingOf(form);
}

void refuseClashes(QVector<BatchFile>& files)
{
    QHash<QString, QString> inputs;
    for (const BatchFile& file : qAsConst(files))
        inputs.insert(identityOf(file.input), file.input);
    QHash<QString, QString> writers;
    for (BatchFile& file : files) {
        const QString output = identityOf(file.output);
        const QString overwritten = inputs.value(output);
        const QString writer = writers.value(output);
        if (!overwritten.isEmpty() && output != identityOf(file.input))
            file.obstacle =
                QStringLiteral("The file is not converted, because it would replace the input %1.")
                    .arg(overwritten);
        else if (!writer.isEmpty())
            file.obstacle =
                QStringLiteral(
                    "The file is not converted, because its output %1 is the same file as that of %2.")
                    .arg(file.output, writer);
        else
            writers.insert(output, file.input);
    }
}

} // namespace

BatchPlan planOf(const QString& folder, const QString& outFolder, Form form)
{
    const InputList found = inputsIn(folder);
    BatchPlan plan{{}, found.problems};
    const QString identity = withSlash(identityOf(folder));
    const QString outIdentity = withSlash(identityOf(outFolder));
    const bool isInside = outIdentity != identity && outIdentity.startsWith(identity);
    const auto begin = withSlash(folder).size();
    for (const QString& input : found.files) {
        const QString name = input.mid(begin);
        if (!isInside || !(identity + name).startsWith(outIdentity))
            plan.files += {input, withSlash(outFolder) + withEnding(name, form)};
    }
    if (plan.files.isEmpty() && plan.problems.isEmpty())
        plan.problems += nothingIn(folder);
    refuseClashes(plan.files);
    return plan;
}

} // namespace routermsg
