// SPDX-License-Identifier: MIT
#include "documents/Document.h"
#include "documents/MessageBeginning.h"
#include "documents/Recording.h"

#include "modelkit/Devices.h"

#include <QtCore/QIODevice>

#include <limits>

namespace ROUTERDOCUMENTS {

namespace {

// The units of the text of a message.
TextUnits unitsOf(const QByteArray& bytes)
{
    BeginningRules rules;
    rules.limit = std::numeric_limits<qint64>::max();
    rules.isAll = true;
    return recogniseBeginning(bytes.constData(), bytes.size(), rules).units;
}

} // namespace

QByteArray WriteMessage(MODELKIT::IMKObject& record, Form form)
{
    QByteArray bytes = WriteDocument(record, form);
    if (!IsBinary(form) && !bytes.endsWith('\n'))
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

QByteArray LineBreakBehind(const RecordedMessage& message)
{
    if (IsBinary(message.form))
        return {};
    const TextUnits units = unitsOf(message.bytes);
    QByteArray lineBreak(units.size, '\0');
    lineBreak[units.isBigEndian ? units.size - 1 : 0] = '\n';
    return message.bytes.endsWith(lineBreak) ? QByteArray() : lineBreak;
}

} // namespace ROUTERDOCUMENTS
