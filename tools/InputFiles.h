// SPDX-License-Identifier: MIT
/// \file
/// The files that the program reads.
#pragma once

#include "documents/Document.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// The name of a file in messages: "<stdin>" for "-", otherwise as given.
QString inputName(const QString& path);

/// \throws Refusal always: the file cannot be read.
[[noreturn]] void refuseToRead(const QString& path, const QString& reason);
/// \throws Refusal when the path is a folder.
void refuseFolder(const QString& path);

/// The whole content of a file, or of standard input for "-".
/// \throws Refusal when it cannot be read or is larger than Limits::inputSize.
QByteArray readInput(const QString& path);

/// Reads a document whose root may be any record.
/// \param path a file, or "-" for standard input
/// \throws Refusal with the text of the library.
ROUTERDOCUMENTS::Document load(const QString& path, const ROUTERDOCUMENTS::ReadingOptions& options = {});
/// As above, from bytes.
/// \param name the name of the file in messages
ROUTERDOCUMENTS::Document parse(const QByteArray& bytes, const QString& name,
                                const ROUTERDOCUMENTS::ReadingOptions& options = {});

/// The files that the paths stand for. A folder stands for all files in it and below it whose ending belongs
/// to a form, in the order of their names, without hidden files and without links to folders. A folder
/// without such files stays in the list: readInput() says what is wrong with it.
QStringList filesAmong(const QStringList& paths);

} // namespace routermsg
