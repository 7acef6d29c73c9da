// SPDX-License-Identifier: MIT
#include "modelkit/XmlPlaces.h"

#include "modelkit/Limits.h"
#include "modelkit/XmlDecoding.h"
#include "modelkit/XmlPath.h"
#include "modelkit/XmlTraps.h"

#include <QtCore/QXmlStreamReader>

namespace MODELKIT {

Place FindInXml(const QByteArray& xml, const QString& path)
{
    return XmlPath(decodeXml(xml).text).FindElement(path);
}

QVector<Place> FindInXml(const QByteArray& xml, const QStringList& paths)
{
    return XmlPath(decodeXml(xml).text).FindElements(paths);
}

QString RootNameOfXml(const QByteArray& xml)
{
    const DecodedXml decoded = decodeXml(xml);
    if (findTrap(decoded.text, Limits::Get().attributes).kind != Trap::None)
        return QString();
    QXmlStreamReader reader(decoded.text);
    reader.setNamespaceProcessing(false);
    while (!reader.atEnd() && !reader.isStartElement())
        reader.readNext();
    return reader.isStartElement() ? reader.name().toString() : QString();
}

} // namespace MODELKIT
