// SPDX-License-Identifier: MIT
#include "documents/BrokenXml.h"

#include "modelkit/Utf8.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QXmlStreamReader>

namespace ROUTERDOCUMENTS {

QByteArray readablePartOf(const QByteArray& xml)
{
    constexpr char byteOrderMark[] = "\xEF\xBB\xBF";
    const QByteArray mark = xml.startsWith(byteOrderMark) ? QByteArray(byteOrderMark) : QByteArray();
    const char* const begin = xml.constData() + mark.size();
    const QString text =
        MODELKIT::textOfUtf8(begin, MODELKIT::wellFormedUtf8(begin, xml.size() - mark.size()));
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    QStringList open;
    // Behind the last whole tag.
    qint64 end = 0;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement())
            open += reader.qualifiedName().toString();
        else if (reader.isEndElement() && !open.isEmpty())
            open.removeLast();
        else
            continue;
        end = reader.characterOffset();
    }
    if (open.isEmpty())
        return {};
    QByteArray part = mark + text.left(static_cast<int>(end)).toUtf8();
    while (!open.isEmpty())
        part += "</" + open.takeLast().toUtf8() + '>';
    return part;
}

} // namespace ROUTERDOCUMENTS
