// SPDX-License-Identifier: MIT
/// \file
/// Replacing a file without the risk of losing it.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

class QSaveFile;

namespace MODELKIT {

/// Writes a file piece by piece. An existing file is replaced atomically by Commit(), once the new one is
/// completely written and has reached the disk. Without it the old file is unchanged, and no temporary file
/// remains.
///
/// All operations return false, with the reason in \a failure, when they fail. Then nothing can be committed.
class MODELKIT_EXPORT FileReplacement
{
public:
    FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    ~FileReplacement();

    /// Begins. A device, a pipe or a folder is not replaced.
    bool Open(const QString& path, Failure& failure);
    /// Appends the bytes.
    bool Write(const QByteArray& bytes, Failure& failure);
    /// Replaces the file.
    bool Commit(Failure& failure);

private:
    bool Refuse(const QString& reason, Failure& failure);

    std::unique_ptr<QSaveFile> m_file;
};

/// Writes a file that holds exactly those bytes, with the guarantees of FileReplacement.
/// \returns false, with the reason in \a failure, when the file cannot be written.
MODELKIT_EXPORT bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure);

} // namespace MODELKIT
