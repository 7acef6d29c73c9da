// SPDX-License-Identifier: MIT
/// \file
/// Where something happened in a document.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

/// A place in an XML document (line, column and path) or in a binary form (offset and path). Unknown
/// members keep their initial values.
struct MODELKIT_EXPORT Place
{
    /// The file, as the caller named it.
    QString file;
    /// Line and column, both counted from 1; 0 when unknown.
    qint64 line = 0;
    qint64 column = 0; ///< see line
    /// The offset in bytes from the beginning of the form; -1 when unknown. For a compressed form it is
    /// the offset in the plain form inside it, except when inflating fails: then it is the offset in the
    /// compressed form.
    qint64 offset = -1;
    /// The names of the elements from the root down, for example
    /// "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]/MastershipState/State". The second
    /// and later elements of the same name in one parent have their number.
    QString path;

    /// Whether nothing is known.
    bool IsEmpty() const;

    /// The place as the beginning of a message: "file:line:column", "file:line", "file: offset N" or the
    /// known part of it; without the path.
    QString ToString() const;

    /// One step of a path: the name, followed by \a number in brackets unless that is 1 or less.
    static QString Step(const QString& name, qint64 number);
};

} // namespace MODELKIT
