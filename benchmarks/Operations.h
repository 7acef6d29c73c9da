// SPDX-License-Identifier: MIT
// The operations that are measured.
#pragma once

#include "CanonicalDocument.h"
#include "PlainMessage.h"
#include "Require.h"

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

// What an application does with a message: the sender builds and writes it, the receiver reads and looks at
// it. Read(document, form) reads what write(document) returns.
template <class Write, class Read>
void passMessage(const Write& write, const Read& read)
{
    Document sent = canonicalDocument(1);
    sent.SetValidate(true);
    Document received;
    received.SetValidate(true);
    read(received, write(sent));
    require(received.GetPelLu300RouterMessage().GetFragment().size() == 1);
}

inline void passSmallMessage() { passMessage(frameOf, readFrame); }

inline void passSmallForm()
{
    passMessage(
        [](Document& document) { return document.GetBinaryRepresentationAsQByteArray(); },
        [](Document& document, const QByteArray& form) { require(document.SetBinaryRepresentation(form)); });
}

inline void passSmallXmlMessage()
{
    passMessage([](Document& document) { return document.GetXmlString(); },
                [](Document& document, const QString& xml) { require(document.SetXmlString(xml, false)); });
}

// The same with plain structs. Read(form) returns what write(message) was given.
template <class Write, class Read>
void passPlainMessage(const Write& write, const Read& read)
{
    require(read(write(plainMessage(1))).fragments.size() == 1);
}

// A copy shares everything until it is accessed, which gives it blocks of its own.
inline auto copyAndTouch(const Document& document)
{
    Document copy(document);
    return copy.GetPelLu300RouterMessage().GetFragment().size();
}

} // namespace benchmarks
