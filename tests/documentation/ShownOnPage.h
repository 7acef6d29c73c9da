// SPDX-License-Identifier: MIT
// What pages say that their samples print.
#pragma once

#include "TestSupport.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

namespace testing_support {

// The text of a page, "docs/xml-form.md".
inline QString pageText(const char* path)
{
    QFile file(projectPath(path));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

// The indented block of the page whose first line contains the text, without the indentation; what a sample
// prints.
inline QString shownOn(const char* path, const QString& begin)
{
    const QStringList lines = pageText(path).split(QLatin1Char('\n'));
    QStringList shown;
    bool isCode = false;
    for (const QString& line : lines) {
        isCode = isCode != line.startsWith(QStringLiteral("```"));
        const bool isIndented = !isCode && line.startsWith(QStringLiteral("    "));
        if (isIndented && (!shown.isEmpty() || line.contains(begin)))
            shown.append(line.mid(4));
        else if (!shown.isEmpty())
            break;
    }
    return shown.join(QLatin1Char('\n'));
}

// The blocks of the page between ```language and ```, in order.
inline QStringList blocksOf(const char* path, const QString& language)
{
    QStringList blocks;
    bool isInside = false;
    for (const QString& line : pageText(path).split(QLatin1Char('\n'))) {
        if (isInside && line == QStringLiteral("```")) {
            isInside = false;
        } else if (isInside) {
            blocks.last() += line + QLatin1Char('\n');
        } else if (line == QStringLiteral("```") + language) {
            isInside = true;
            blocks.append(QString());
        }
    }
    return blocks;
}

} // namespace testing_support
