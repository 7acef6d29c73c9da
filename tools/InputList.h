// SPDX-License-Identifier: MIT
/// \file
/// The inputs that files and folders on the command line stand for.
#pragma once

#include "Finding.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

/// What the program is going to read.
struct InputList
{
    /// Files, and "-" for standard input.
    QStringList files;
    /// What was found in folders and cannot be read, in the order of the search.
    QVector<Finding> problems;
};

/// A folder stands for all files in it and below it whose ending belongs to a form, in the order of their
/// names, without hidden ones. Links to folders, pipes, sockets and devices are passed over: reading them
/// could take forever. A problem is what a user would expect to be read: folders and links that cannot be
/// opened, names that are not UTF-8, and a folder on the command line without any file to read.
/// @{
InputList inputsAmong(const QStringList& paths);
/// The same for one folder, which may be without files.
InputList inputsIn(const QString& folder);
/// The problem of a folder without any file to read.
Finding nothingIn(const QString& folder);
/// @}

} // namespace routermsg
