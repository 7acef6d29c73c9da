// SPDX-License-Identifier: MIT
// Messages that wait until a device takes them. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QQueue>
#include <QtCore/QtGlobal>

class QIODevice;

namespace ROUTERLINK {

// A device may take only a part of what is written. What it has taken but not passed on yet also counts as
// waiting.
class SendQueue
{
public:
    enum Outcome
    {
        Taken,
        Full,  // there is no room for the message; nothing of it was taken
        Failed // the device has failed
    };

    // Size: in bytes, of all that waits.
    explicit SendQueue(qint64 size) : m_limit(size) {}

    Outcome Add(QIODevice& device, const QByteArray& message);
    // Gives the device what it takes. False when it has failed.
    bool Flush(QIODevice& device);
    // Whether the device is being given bytes at the moment.
    bool IsFlushing() const { return m_isFlushing; }

    qint64 Waiting(const QIODevice& device) const;
    // What the device has not taken.
    qint64 Untaken() const { return m_untaken; }
    // What has not been passed on, as the device has said when it was last written or had passed something
    // on. A device that has lost its connection forgets what it has taken.
    qint64 Unsent() const { return m_unsent; }
    // What the device had taken and has neither passed on nor has any more.
    qint64 Forgotten(const QIODevice& device) const;
    // Whether all messages were passed on since the last call that has said so. False if there were none.
    bool HasDrained();

private:
    const qint64 m_limit;
    QQueue<QByteArray> m_messages;
    // How much of the first message the device has taken.
    qint64 m_taken = 0;
    qint64 m_untaken = 0;
    qint64 m_unsent = 0;
    bool m_isFlushing = false;
    bool m_wasUsed = false;
};

} // namespace ROUTERLINK
