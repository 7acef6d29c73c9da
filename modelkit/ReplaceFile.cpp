// SPDX-License-Identifier: MIT
#include "modelkit/ReplaceFile.h"

#include "modelkit/Devices.h"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <cerrno>
#include <unistd.h>

namespace MODELKIT {

namespace {

// QSaveFile itself does not check whether everything has reached the disk.
bool synchronize(const QSaveFile& file, QString& reason)
{
    if (::fsync(file.handle()) == 0)
        return true;
    // Some file systems do not support it.
    if (errno == EINVAL || errno == ENOSYS || errno == EROFS)
        return true;
    reason = qt_error_string(errno);
    return false;
}

} // namespace

FileReplacement::FileReplacement() = default;
FileReplacement::~FileReplacement() = default;

bool FileReplacement::Refuse(const QString& reason, Failure& failure)
{
    failure = cannotWrite(QStringLiteral("file"), reason);
    m_file.reset();
    return false;
}

bool FileReplacement::Open(const QString& path, Failure& failure)
{
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile())
        return Refuse(QStringLiteral("it exists and is no regular file"), failure);
    m_file = std::make_unique<QSaveFile>(path);
    return m_file->open(QIODevice::WriteOnly) || Refuse(reasonOf(*m_file), failure);
}

bool FileReplacement::Write(const QByteArray& bytes, Failure& failure)
{
    if (!m_file)
        return Refuse(QStringLiteral("it is not open for writing"), failure);
    QString reason;
    return writeAll(*m_file, bytes, reason) || Refuse(reason, failure);
}

bool FileReplacement::Commit(Failure& failure)
{
    if (!m_file)
        return Refuse(QStringLiteral("it is not open for writing"), failure);
    QString reason;
    // commit() does not check what is written when it closes the file, so everything is flushed before.
    if (!flush(*m_file, reason) || !synchronize(*m_file, reason))
        return Refuse(reason, failure);
    if (!m_file->commit())
        return Refuse(reasonOf(*m_file), failure);
    m_file.reset();
    return true;
}

bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure)
{
    FileReplacement file;
    return file.Open(path, failure) && file.Write(bytes, failure) && file.Commit(failure);
}

} // namespace MODELKIT
