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
    /// Nothing is opened yet.
    FileReplacement();
    /// Not copied: it replaces one file.
    FileReplacement(const FileReplacement&) = delete;
    /// Not copied: it replaces one file.
    FileReplacement& operator=(const FileReplacement&) = delete;
    /// Without Commit() the old file stays as it is.
    ~FileReplacement();

    /// Begins to write a new file for \a path. A device, a pipe or a folder is not replaced.
    /// \param failure receives the reason if this fails.
    bool Open(const QString& path, Failure& failure);
    /// Appends the bytes. Only after Open().
    /// \param failure receives the reason if this fails.
    bool Write(const QByteArray& bytes, Failure& failure);
    /// Replaces the file. The bytes have reached the disk when it returns true.
    /// \param failure receives the reason if this fails; the old file is unchanged then.
    bool Commit(Failure& failure);

private:
    bool Refuse(const QString& reason, Failure& failure);

    std::unique_ptr<QSaveFile> m_file;
};

/// Writes the file \a path, so that it holds exactly those bytes, with the guarantees of FileReplacement.
/// \returns false, with the reason in \a failure, when the file cannot be written.
MODELKIT_EXPORT bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure);

} // namespace MODELKIT
