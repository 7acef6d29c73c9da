// SPDX-License-Identifier: MIT
// Devices that behave worse than a buffer.
#pragma once

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QIODevice>

#include <algorithm>
#include <cstring>
#include <utility>

namespace testing_support {

// Can only be read forwards.
class ForwardDevice : public QIODevice
{
public:
    explicit ForwardDevice(QByteArray content) : m_content(std::move(content))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return left() + QIODevice::bytesAvailable(); }

    // The number of bytes that have not been read.
    qint64 left() const { return m_content.size() - m_taken; }

protected:
    qint64 readData(char* to, qint64 count) override
    {
        const qint64 taken = std::min(count, left());
        std::memcpy(to, m_content.constData() + m_taken, static_cast<std::size_t>(taken));
        m_taken += taken;
        return taken;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    qint64 m_taken = 0;
};

// Can only be written forwards, and has room for so many bytes.
class Drain : public QIODevice
{
public:
    explicit Drain(qint64 room = 1 << 30) : m_room(room)
    {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

    QByteArray written;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        if (written.size() + size > m_room)
            return -1;
        written.append(data, static_cast<int>(size));
        return size;
    }

private:
    qint64 m_room;
};

// A buffer that is open for writing but refuses every byte, with a reason.
class RefusingBuffer : public QBuffer
{
public:
    RefusingBuffer()
    {
        open(QIODevice::WriteOnly);
        setErrorString(QStringLiteral("The device is tired"));
    }

protected:
    qint64 writeData(const char*, qint64) override { return -1; }
};

} // namespace testing_support
