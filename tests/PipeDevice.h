// SPDX-License-Identifier: MIT
// Two devices in memory that are connected to each other and behave as badly as sockets can: they take and
// deliver a few bytes at a time, stop, fail, and end in the middle. Everything happens when the event loop
// runs.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QIODevice>
#include <QtCore/QPointer>
#include <QtCore/QString>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace testing_support {

class PipeEnd : public QIODevice
{
public:
    PipeEnd() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }
    ~PipeEnd() override
    {
        if (isOpen())
            close();
    }

    static void connectEnds(PipeEnd& one, PipeEnd& other)
    {
        one.m_far = &other;
        other.m_far = &one;
    }

    // How many bytes it holds until they are passed on, and how many are passed on at a time. With 0 nothing
    // is.
    qint64 taken = std::numeric_limits<int>::max();
    qint64 passed = std::numeric_limits<int>::max();
    // How many bytes are passed on before the device fails.
    qint64 failsAfter = std::numeric_limits<qint64>::max();
    bool failsReading = false;

    // Passes on more, after `passed` was changed.
    void resume() { schedulePassing(); }

    // What the far end hears when this one is gone: whatever has arrived, and the end.
    void vanish()
    {
        if (m_far)
            m_far->endLater();
        m_far = nullptr;
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_arrived.size() + QIODevice::bytesAvailable(); }
    qint64 bytesToWrite() const override { return m_outgoing.size(); }

    void close() override
    {
        QIODevice::close();
        if (m_outgoing.isEmpty())
            vanish();
        m_isClosing = true;
    }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        if (failsReading) {
            setErrorString(QStringLiteral("The cable is loose"));
            return -1;
        }
        const qint64 given = std::min<qint64>(size, m_arrived.size());
        std::memcpy(data, m_arrived.constData(), static_cast<std::size_t>(given));
        m_arrived.remove(0, static_cast<int>(given));
        return given;
    }

    qint64 writeData(const char* data, qint64 size) override
    {
        if (m_passedInAll >= failsAfter) {
            setErrorString(QStringLiteral("The cable is cut"));
            return -1;
        }
        const qint64 now = std::min(size, taken - m_outgoing.size());
        m_outgoing.append(data, static_cast<int>(now));
        schedulePassing();
        return now;
    }

private:
    void schedulePassing()
    {
        if (std::exchange(m_isScheduled, true))
            return;
        QMetaObject::invokeMethod(
            this, [this] { pass(); }, Qt::QueuedConnection);
    }

    void pass()
    {
        m_isScheduled = false;
        const qint64 now = std::min({qint64(m_outgoing.size()), passed, failsAfter - m_passedInAll});
        if (now > 0) {
            m_passedInAll += now;
            if (m_far)
                m_far->arrive(m_outgoing.left(static_cast<int>(now)));
            m_outgoing.remove(0, static_cast<int>(now));
            if (!m_outgoing.isEmpty())
                schedulePassing();
            const QPointer<PipeEnd> alive(this);
            Q_EMIT bytesWritten(now);
            if (!alive)
                return;
        }
        if (m_isClosing && m_outgoing.isEmpty())
            vanish();
    }

    void arrive(const QByteArray& bytes)
    {
        m_arrived += bytes;
        Q_EMIT readyRead();
    }

    void endLater()
    {
        m_far = nullptr;
        QMetaObject::invokeMethod(
            this, [this] { Q_EMIT readChannelFinished(); }, Qt::QueuedConnection);
    }

    QPointer<PipeEnd> m_far;
    QByteArray m_outgoing;
    QByteArray m_arrived;
    qint64 m_passedInAll = 0;
    bool m_isScheduled = false;
    bool m_isClosing = false;
};

} // namespace testing_support
