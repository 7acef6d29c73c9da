// SPDX-License-Identifier: MIT
// Merging the content of another object.

#include "modelkit/DocumentContext.h"
#include "modelkit/DocumentOperation.h"
#include "modelkit/IMKObject.h"
#include "modelkit/NotRepresentableException.h"

#include <QtCore/QDataStream>
#include <QtCore/QIODevice>

#include <typeinfo>

namespace MODELKIT {

bool IMKObject::MergeMKObject(const IMKObject& other)
{
    DocumentOperation operation(*this, QString());
    if (typeid(*this) != typeid(other))
        return operation.Fail(
            Failure::WrongClass,
            QStringLiteral("A %1 cannot be merged into a %2.").arg(other.GetObjectName(), GetObjectName()));
    try {
        // The binary form holds what is set, and reading it merges. Reading begins only when writing has
        // succeeded.
        DocumentContext transfer(DocumentContext::Purpose::Transfer);
        QByteArray frame;
        {
            QDataStream stream(&frame, QIODevice::WriteOnly);
            other.GetBinary(stream, 0, false);
        }
        QDataStream stream(frame);
        int length = 0;
        stream >> length;
        SetBinary(stream, length);
    } catch (const NotRepresentableException& exception) {
        return operation.Fail(Failure::NotRepresentable, exception.GetText(), exception.GetPlace());
    } catch (ModelKitException& exception) {
        // The offset in this temporary form means nothing to the caller.
        Place place = exception.GetPlace();
        place.offset = -1;
        operation.Refuse(exception, place);
        throw;
    }
    return true;
}

} // namespace MODELKIT
