// SPDX-License-Identifier: MIT
// What in a document must not be given to an XML reader. Not installed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

// Markup that must not be given to a reader, because the reader's work on it grows with the square of the
// size, or without bound.
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

// The first document type declaration, or the first tag with more than maximalAttributes attributes. Markup
// that is not well-formed may hide them, but the reader stops there as well.
Trap findTrap(const QString& text, int maximalAttributes);

} // namespace MODELKIT
