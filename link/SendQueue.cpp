// SPDX-License-Identifier: MIT
#include "link/SendQueue.h"

#include <QtCore/QIODevice>
#include <QtCore/QScopedValueRollback>

#include <algorithm>

namespace ROUTERLINK {

SendQueue::Outcome SendQueue::Add(QIODevice& device, const QByteArray& message)
{
    if (message.size() > m_limit - Waiting(device))
        return Full;
    m_messages.enqueue(message);
    m_untaken += message.size();
    m_wasUsed = true;
    return Flush(device) ? Taken : Failed;
}

bool SendQueue::Flush(QIODevice& device)
{
    // A device may emit signals while it is given bytes, and so cause the next call, or add a message.
    if (m_isFlushing)
        return true;
    const QScopedValueRollback<bool> flushing(m_isFlushing, true);
    qint64 now = 0;
    while (!m_messages.isEmpty()) {
        const QByteArray first = m_messages.head();
        now = device.write(first.constData() + m_taken, first.size() - m_taken);
        if (now <= 0)
            break;
        m_taken += now;
        m_untaken -= now;
        if (m_taken == first.size()) {
            m_messages.dequeue();
            m_taken = 0;
        }
    }
    m_unsent = Waiting(device);
    return now >= 0;
}

qint64 SendQueue::Waiting(const QIODevice& device) const { return m_untaken + device.bytesToWrite(); }

qint64 SendQueue::Forgotten(const QIODevice& device) const
{
    return std::max<qint64>(m_unsent - Waiting(device), 0);
}

bool SendQueue::HasDrained()
{
    if (!m_wasUsed || m_unsent > 0)
        return false;
    m_wasUsed = false;
    return true;
}

} // namespace ROUTERLINK
