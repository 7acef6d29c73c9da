// SPDX-License-Identifier: MIT
#include "InputFile.h"

#include "InputFiles.h"

#include <QtCore/QFileInfo>

#include <unistd.h>

#include <cerrno>

namespace routermsg {

InputFile::InputFile(const QString& path) : QFile(path)
{
    const bool isStandardInput = path == QLatin1String("-");
    if (!isStandardInput)
        refuseFolder(path);
    const auto mode = QIODevice::ReadOnly | QIODevice::Unbuffered;
    if (isStandardInput ? !open(STDIN_FILENO, mode) : !open(mode))
        refuseToRead(path, errorString());
}

void InputFile::forget()
{
    m_isKeeping = false;
    m_beginning = QByteArray();
}

qint64 InputFile::readData(char* data, qint64 size)
{
    // QFile waits until it has all bytes that were asked for, also from a pipe.
    ssize_t count = 0;
    do
        count = ::read(handle(), data, static_cast<std::size_t>(size));
    while (count < 0 && errno == EINTR);
    if (count < 0) {
        setErrorString(qt_error_string(errno));
        return -1;
    }
    m_count += count;
    constexpr qint64 most = qint64(1) << 20;
    if (m_isKeeping && m_beginning.size() + count > most)
        forget();
    if (m_isKeeping)
        m_beginning.append(data, static_cast<int>(count));
    return count;
}

} // namespace routermsg
