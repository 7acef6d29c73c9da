// SPDX-License-Identifier: MIT
/// \file
/// The files of two folders that belong together.
#pragma once

#include "Finding.h"

#include <QtCore/QString>
#include <QtCore/QVector>

namespace routermsg {

/// Two files to compare.
struct FilePair
{
    /// The name in its folder, without the ending when the two have different ones; empty for files that were
    /// named one by one.
    QString name;
    /// The paths; empty where the folder has no such file.
    QString first;
    QString second;

    bool isComplete() const { return !first.isEmpty() && !second.isEmpty(); }
};

struct PairList
{
    QVector<FilePair> pairs;
    /// What could not be read in the folders.
    QVector<Finding> problems;
    /// Whether a folder could be read as a whole. Otherwise the files that it seems to lack may be there.
    /// @{
    bool isFirstWhole = true;
    bool isSecondWhole = true;
    /// @}
};

/// Two files are one pair. In two folders those files are a pair, also in the folders below, that have the
/// same name, or else the same name but for the ending. A file and a folder: the file of the same name in the
/// folder.
PairList pairsOf(const QString& first, const QString& second);

} // namespace routermsg
