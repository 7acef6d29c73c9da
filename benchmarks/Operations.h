// SPDX-License-Identifier: MIT
// The operations that are measured.
#pragma once

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

namespace benchmarks {

using Document = PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

inline QByteArray xmlOf(const Document& document)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    document.GetXml(writer);
    return xml;
}

inline QString xmlStringOf(const Document& document)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    document.GetXml(writer);
    return xml;
}

inline QString documentOf(const Document& document) { return Document(document).GetXmlString(); }

inline QByteArray documentBytesOf(const Document& document) { return document.GetXmlBytes(); }

inline QByteArray frameOf(const Document& document)
{
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    document.GetBinary(stream, 0, false);
    return frame;
}

inline void parseXml(Document& document, const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    reader.readNextStartElement();
    document.ProcessXml(reader);
}

inline void readFrame(Document& document, const QByteArray& frame)
{
    QDataStream stream(frame);
    int length = 0;
    stream >> length;
    document.SetBinary(stream, length);
}

// A copy shares everything until it is accessed, which gives it blocks of its own.
inline auto copyAndTouch(const Document& document)
{
    Document copy(document);
    return copy.GetPelLu300RouterMessage().GetFragment().size();
}

} // namespace benchmarks
