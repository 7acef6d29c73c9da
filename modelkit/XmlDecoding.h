// SPDX-License-Identifier: MIT
// From the bytes of an XML document to its text. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace MODELKIT {

// The text of a document: all that looks through it, reads it or finds places in it works on this one text.
struct DecodedXml
{
    // Without the mark at its beginning.
    QString text;
    // The text ends where the input stops being text of its encoding, or goes on to its end.
    bool isWhole = true;
    // It stops because the input ends inside of a character: more input may complete it.
    bool endsInside = false;
    // The encoding that the declaration names and that is not accepted; the text is empty then.
    QString refusedEncoding;
};

// Decodes by the byte order mark, else by the declaration, else as UTF-8. UTF-16 and UTF-32 without a mark
// are known by the zeros among their first bytes. Other encodings are accepted when they keep no state, write
// markup as ASCII and are known to Qt.
DecodedXml decodeXml(const QByteArray& bytes);

// A string needs no decoding, whatever its declaration names; but what it names must be known.
DecodedXml decodeXml(const QString& string);

} // namespace MODELKIT
