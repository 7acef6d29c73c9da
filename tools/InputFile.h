// SPDX-License-Identifier: MIT
/// \file
/// An input of the program as a device.
#pragma once

#include "modelkit/Devices.h"

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QIODevice>
#include <QtCore/QString>

namespace routermsg {

/// The name of an input in messages: "<stdin>" for "-", otherwise as given.
QString inputName(const QString& path);

/// A file, or standard input for "-". Reading returns what has arrived, without waiting for more.
///
/// Until forget() is called, it keeps the beginning of what was read, so that an input that holds no message
/// at all can be explained as a whole. isSequential() is false even for a stream: reading waits by itself, so
/// that users need not wait for more at the end.
class InputFile : public QIODevice
{
public:
    /// Opens it.
    /// \throws Refusal when it cannot be opened.
    explicit InputFile(const QString& path);

    /// Whether more may arrive later.
    bool isStream() const { return m_file.isSequential(); }

    /// Appends what has arrived, at most that many bytes. False at the end.
    /// \throws Refusal when it cannot be read.
    bool take(qint64 most, QByteArray& bytes);
    /// \throws Refusal always: why reading it as a device failed.
    [[noreturn]] void refuse() const;

    /// How many bytes were read.
    qint64 count() const { return m_count; }
    /// Whether beginning() is everything that was read.
    bool hasAll() const { return m_isKeeping && m_beginning.size() == m_count; }
    /// The first mebibyte of what was read, or nothing after forget().
    const QByteArray& beginning() const { return m_beginning; }
    void forget();
    /// The first bytes, however much was read.
    const QByteArray& head() const { return m_head; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    MODELKIT::Intake::Outcome takeArrived(qint64 most, QByteArray& bytes);

    const QString m_name;
    QFile m_file;
    MODELKIT::Intake m_intake;
    QByteArray m_beginning;
    QByteArray m_head;
    bool m_isKeeping = true;
    qint64 m_count = 0;
};

} // namespace routermsg
