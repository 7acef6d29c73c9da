// SPDX-License-Identifier: MIT
/// \file
/// The files that the program reads.
#pragma once

#include "documents/Document.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// How messages call a file: "<stdin>" for "-", otherwise as it was given.
QString inputName(const QString& path);

/// The whole content of a file, or of standard input for "-".
/// \throws Refusal when it cannot be read or is larger than Limits::inputSize.
QByteArray readInput(const QString& path);

/// Reads a document whose root may be any record.
/// \param path a file, or "-" for standard input
/// \throws Refusal with the library's own text.
ROUTERDOCUMENTS::Document load(const QString& path, const ROUTERDOCUMENTS::ReadingOptions& options = {});
/// As above, from bytes.
/// \param name how messages call them
ROUTERDOCUMENTS::Document parse(const QByteArray& bytes, const QString& name,
                                const ROUTERDOCUMENTS::ReadingOptions& options = {});

/// All files among the paths: files as given, of folders and the folders in them those whose ending
/// stands for a form, in the order of their names. What is hidden is left out, links to folders too. A
/// folder without such a file is left among them: readInput() says what is wrong with it.
QStringList filesAmong(const QStringList& paths);

} // namespace routermsg
