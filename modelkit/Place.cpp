// SPDX-License-Identifier: MIT
#include "modelkit/Place.h"

namespace MODELKIT {

bool Place::IsEmpty() const { return file.isEmpty() && line == 0 && offset < 0 && path.isEmpty(); }

QString Place::ToString() const
{
    QString where = file;
    if (line > 0) {
        if (!where.isEmpty())
            where += QLatin1Char(':');
        where += QString::number(line);
        if (column > 0)
            where += QLatin1Char(':') + QString::number(column);
    } else if (offset >= 0) {
        if (!where.isEmpty())
            where += QLatin1String(": ");
        where += QLatin1String("offset ") + QString::number(offset);
    }
    return where;
}

QString Place::Step(const QString& name, qint64 number)
{
    return number <= 1 ? name : name + QLatin1Char('[') + QString::number(number) + QLatin1Char(']');
}

} // namespace MODELKIT
