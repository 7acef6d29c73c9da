// SPDX-License-Identifier: MIT
// What is said of messages whose end does not come or cannot be. Not installed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// "1 byte is missing" or "2 bytes are missing".
inline QString countedBytes(qint64 bytes, const QString& what)
{
    return bytes == 1 ? QStringLiteral("1 byte is %1").arg(what)
                      : QStringLiteral("%1 bytes are %2").arg(QString::number(bytes), what);
}

inline QString cutOffAside() { return QStringLiteral("The comment or processing instruction is cut off."); }

inline QString messageTooLarge(qint64 limit)
{
    return QStringLiteral("The message is larger than the limit of %1 bytes.").arg(limit);
}

// Of a binary form, with what is missing. A sentence.
inline QString cutOffBinary(const QString& missing)
{
    return QStringLiteral("The binary form is cut off; %1.").arg(missing);
}
inline QString missingLength() { return QStringLiteral("its length is missing"); }
inline QString missingBytes(qint64 bytes) { return countedBytes(bytes, QStringLiteral("missing")); }

// Of a binary form. Without the full stop.
inline QString negativeLength() { return QStringLiteral("The binary form has a negative length"); }
inline QString binaryTooLarge(qint64 size, qint64 limit)
{
    return QStringLiteral("The binary form of %1 bytes is larger than the limit of %2 bytes")
        .arg(QString::number(size), QString::number(limit));
}

} // namespace ROUTERDOCUMENTS
