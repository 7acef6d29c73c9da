// SPDX-License-Identifier: MIT
// Checking what reports say.
#pragma once

#include "modelkit/ReadingReport.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace testing_support {

enum class PathShown
{
    Whole,
    LastStep
};

// The entries as lines: kind, place, text and path.
inline QStringList lines(const MODELKIT::ReadingReport& report, PathShown shown = PathShown::Whole)
{
    QStringList result;
    for (const MODELKIT::ReadingReport::Entry& entry : report.GetEntries()) {
        const QString& path = entry.place.path;
        result += QStringLiteral("%1 %2 %3 %4")
                      .arg(entry.kind)
                      .arg(entry.place.ToString(), entry.text,
                           shown == PathShown::Whole ? path : path.section(QLatin1Char('/'), -1));
    }
    return result;
}

} // namespace testing_support
