// SPDX-License-Identifier: MIT
#include "modelkit/FormHeader.h"

#include "modelkit/ClassNames.h"
#include "modelkit/Devices.h"

#include <QtCore/QtEndian>

namespace MODELKIT {

namespace {

int word(const char* bytes, QDataStream::ByteOrder order)
{
    return order == QDataStream::BigEndian ? qFromBigEndian<qint32>(bytes) : qFromLittleEndian<qint32>(bytes);
}

} // namespace

Failure notAForm(const QString& text)
{
    Failure failure;
    failure.kind = Failure::NotABinaryForm;
    failure.text = text;
    return failure;
}

Failure cutOff(qint64 bytes)
{
    Failure failure = notAForm(QStringLiteral("The binary form is cut off."));
    failure.place.offset = bytes;
    return failure;
}

FormHeader::FormHeader(const char* bytes, QDataStream::ByteOrder order)
    : id(word(bytes, order)), length(word(bytes + 4, order))
{}

bool FormHeader::BeginsFormOf(int frameId, const QString& className, qint64 limit, Failure& failure) const
{
    if (id != frameId && id != compressedMarker) {
        failure.kind = Failure::WrongClass;
        failure.text =
            QStringLiteral("The binary form holds %1, expected is %2.").arg(classNameOf(id), className);
    } else if (length < 0) {
        failure = notAForm(QStringLiteral("The binary form has a negative length."));
    } else if (length > limit - size) {
        failure = inputTooLarge(limit);
    } else {
        return true;
    }
    failure.place.offset = 0;
    return false;
}

} // namespace MODELKIT
