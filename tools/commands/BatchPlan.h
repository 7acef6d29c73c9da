// SPDX-License-Identifier: MIT
/// \file
/// Which files of a folder are converted into which others.
#pragma once

#include "Finding.h"
#include "documents/Forms.h"

#include <QtCore/QString>
#include <QtCore/QVector>

namespace routermsg {

struct BatchFile
{
    QString input;
    QString output;
    /// Why it is not converted; empty if it is.
    QString obstacle = {};
};

struct BatchPlan
{
    /// In the order of their names.
    QVector<BatchFile> files;
    /// What cannot be read in the folder.
    QVector<Finding> problems;
};

/// Each file has its output in the same place below the other folder, with the ending of the form. Files
/// below an other folder that is in the folder are left out. No output is that of two files, or another file
/// of the folder.
BatchPlan planOf(const QString& folder, const QString& outFolder, ROUTERDOCUMENTS::Form form);

} // namespace routermsg
