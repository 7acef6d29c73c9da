// SPDX-License-Identifier: MIT
// Decoding the bytes of an XML document to its text. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace MODELKIT {

// The text of a document. Everything that scans it, reads it or finds places in it works on this one text.
struct DecodedXml
{
    // Without the byte order mark. Ends in front of the first bytes that are malformed in their encoding.
    QString text;
    // Whether the text is that of the whole input.
    bool isWhole = true;
    // Whether it is not, because the input ends inside a character that more input may complete.
    bool endsInside = false;
    // The declared encoding, if it is not accepted; the text is empty then.
    QString refusedEncoding;
};

// The byte order mark determines the encoding, or else the XML declaration; without both it is UTF-8. UTF-16
// and UTF-32 without a mark are recognised by the zeros among their first bytes. Other encodings are accepted
// when they are stateless, encode markup as ASCII and are known to Qt.
DecodedXml decodeXml(const QByteArray& bytes);

// A string needs no decoding. The encoding that its declaration names has no effect, but Qt must know it.
DecodedXml decodeXml(const QString& string);

} // namespace MODELKIT
