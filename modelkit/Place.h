// SPDX-License-Identifier: MIT
/// \file
/// Where something happened in a document.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

/// A place in an XML document (line, column and path) or in a binary form (offset and path). What is
/// not known is left at its initial value.
struct MODELKIT_EXPORT Place
{
    /// The file, as the caller named it.
    QString file;
    /// Line and column, both from 1; 0 when unknown.
    qint64 line = 0;
    qint64 column = 0; ///< see line
    /// The number of bytes before the place, from the beginning of the form; -1 when unknown. In a
    /// compressed form it counts the bytes of the form inside; only when inflating it fails the bytes of
    /// the compressed form itself.
    qint64 offset = -1;
    /// The names of the elements from the root down, for example
    /// "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]/MastershipState/State". An
    /// element that is not the first of its name below its parent carries its number, from 2.
    QString path;

    /// Whether nothing is known.
    bool IsEmpty() const;

    /// The place in front of a message: "file:line:column", "file: offset N" or what of them is
    /// known; without the path.
    QString ToString() const;

    /// One step of a path: the name, with its number among those of the same name when that is not 1.
    static QString Step(const QString& name, qint64 number);
};

} // namespace MODELKIT
