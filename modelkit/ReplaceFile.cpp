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

bool ReplaceFile(const QString& path, const QByteArray& bytes, Failure& failure)
{
    const auto refuse = [&failure](const QString& reason) {
        failure = cannotWrite(QStringLiteral("file"), reason);
        return false;
    };
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile())
        return refuse(QStringLiteral("it exists and is no regular file"));
    QSaveFile file(path);
    QString reason;
    if (!file.open(QIODevice::WriteOnly))
        return refuse(reasonOf(file));
    // The file is removed unless it is committed. commit() does not check what is written when it closes the
    // file, so everything is flushed before.
    if (!writeAll(file, bytes, reason) || !flush(file, reason) || !synchronize(file, reason))
        return refuse(reason);
    return file.commit() || refuse(reasonOf(file));
}

} // namespace MODELKIT
