// SPDX-License-Identifier: MIT
#include "modelkit/ClassNames.h"

#include <QtCore/QHash>
#include <QtCore/QMutex>

namespace MODELKIT {

namespace {

QHash<int, QString>& classNames()
{
    static QHash<int, QString> names;
    return names;
}

QMutex& classNamesMutex()
{
    static QMutex mutex;
    return mutex;
}

} // namespace

int frameIdOf(long long typeCode) { return static_cast<int>(static_cast<unsigned int>(typeCode)); }

bool registerClass(long long typeCode, const QString& name)
{
    const QMutexLocker lock(&classNamesMutex());
    classNames().insert(frameIdOf(typeCode), name);
    return true;
}

QString classNameOf(int id)
{
    const QMutexLocker lock(&classNamesMutex());
    return classNames().value(
        id, QStringLiteral("class 0x%1").arg(static_cast<unsigned int>(id), 8, 16, QLatin1Char('0')));
}

} // namespace MODELKIT
