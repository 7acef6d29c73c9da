// XML as text, looked at without reading it. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

// The characters as a reader counts them. Exact for UTF-8 and UTF-16; of other encodings each byte is
// taken for a character.
QString decodedXml(const QByteArray& bytes);
inline QString decodedXml(const QString& text) { return text; }

// Something in a document that is not to be given to a reader, because its work on it grows with the
// square of the size, or without bound.
struct Trap
{
    enum Kind
    {
        None,
        Doctype,
        Attributes
    };

    Kind kind = None;
    // Where the markup begins, in characters.
    qint64 characterOffset = 0;
};

// The first declaration of a document type, or the first tag with more attributes than that. What is
// not well-formed may hide them, but the reader stops there as well.
Trap findTrap(const QByteArray& bytes, int maximalAttributes);
Trap findTrap(const QString& text, int maximalAttributes);

} // namespace MODELKIT
