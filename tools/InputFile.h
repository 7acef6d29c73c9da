// SPDX-License-Identifier: MIT
/// \file
/// An input of the program as a device.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QString>

namespace routermsg {

/// A file, or standard input for "-". Reading returns what has arrived, without waiting for more.
///
/// Until forget() is called, it keeps the beginning of what was read, so that an input that holds no message
/// at all can be explained as a whole.
class InputFile : public QFile
{
public:
    /// Opens it.
    /// \throws Refusal when it cannot be opened.
    explicit InputFile(const QString& path);

    /// Whether more may arrive later.
    bool isStream() const { return QFile::isSequential(); }
    /// Always false. The descriptor of a pipe would otherwise be read directly, without readData().
    bool isSequential() const override { return false; }

    /// How many bytes were read.
    qint64 count() const { return m_count; }
    /// Everything that was read, if it is not too much to keep.
    bool hasAll() const { return m_isKeeping; }
    const QByteArray& beginning() const { return m_beginning; }
    void forget();

protected:
    qint64 readData(char* data, qint64 size) override;

private:
    QByteArray m_beginning;
    bool m_isKeeping = true;
    qint64 m_count = 0;
};

} // namespace routermsg
