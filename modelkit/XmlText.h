// SPDX-License-Identifier: MIT
// XML as text, looked at without reading it. Not installed.
#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

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
Trap findTrap(const QString& text, int maximalAttributes);

} // namespace MODELKIT
