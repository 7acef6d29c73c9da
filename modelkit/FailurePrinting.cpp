// SPDX-License-Identifier: MIT
#include "modelkit/FailurePrinting.h"

#include <QtCore/QDebug>

#include <ostream>

namespace MODELKIT {

namespace {

QString printed(const Place& place)
{
    const QString where = place.ToString();
    if (place.path.isEmpty())
        return where.isEmpty() ? QStringLiteral("unknown place") : where;
    const QString inside = QStringLiteral("in ") + place.path;
    return where.isEmpty() ? inside : where + QLatin1String(" (") + inside + QLatin1Char(')');
}

QString printed(const Failure& failure)
{
    return failure.kind == Failure::None ? QStringLiteral("no failure") : failure.GetSentence();
}

QDebug print(QDebug debug, const QString& text)
{
    const QDebugStateSaver saver(debug);
    return debug.noquote() << text;
}

} // namespace

QDebug operator<<(QDebug debug, const Place& place) { return print(debug, printed(place)); }
std::ostream& operator<<(std::ostream& stream, const Place& place)
{
    return stream << printed(place).toUtf8().constData();
}

QDebug operator<<(QDebug debug, const Failure& failure) { return print(debug, printed(failure)); }
std::ostream& operator<<(std::ostream& stream, const Failure& failure)
{
    return stream << printed(failure).toUtf8().constData();
}

} // namespace MODELKIT
