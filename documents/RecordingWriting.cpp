// SPDX-License-Identifier: MIT
#include "documents/Document.h"
#include "documents/Recording.h"

#include "modelkit/Devices.h"

#include <QtCore/QIODevice>

namespace ROUTERDOCUMENTS {

QByteArray WriteMessage(MODELKIT::IMKObject& record, Form form)
{
    QByteArray bytes = WriteDocument(record, form);
    const bool isText = form != Form::Binary && form != Form::Compressed;
    if (isText && !bytes.endsWith('\n'))
        bytes += '\n';
    return bytes;
}

void AppendMessage(QIODevice& device, MODELKIT::IMKObject& record, Form form)
{
    const QByteArray bytes = WriteMessage(record, form);
    QString reason;
    if (!MODELKIT::writeAll(device, bytes, reason) || !MODELKIT::flush(device, reason))
        throw DocumentError(MODELKIT::cannotWrite(QStringLiteral("message"), reason));
}

} // namespace ROUTERDOCUMENTS
