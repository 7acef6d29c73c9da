// SPDX-License-Identifier: MIT
/// \file
/// The files that the program reads.
#pragma once

#include "documents/Document.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace routermsg {

/// The whole content of a file, or of standard input for "-".
/// \throws Refusal when it cannot be read or is larger than Limits::inputSize.
QByteArray readInput(const QString& path);

/// Reads a document whose root may be any record.
/// \param name the name of the file in messages
/// \throws Refusal with the text of the library.
ROUTERDOCUMENTS::Document parse(const QByteArray& bytes, const QString& name,
                                const ROUTERDOCUMENTS::ReadingOptions& options = {});

} // namespace routermsg
