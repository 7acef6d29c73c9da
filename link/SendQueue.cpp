// SPDX-License-Identifier: MIT
#include "link/SendQueue.h"

#include <QtCore/QIODevice>
#include <QtCore/QScopedValueRollback>

#include <algorithm>

namespace ROUTERLINK {

SendQueue::Outcome SendQueue::Add(QIODevice& device, const QByteArray& message)
{
    if (message.size() > m_size - Waiting(device))
        return Full;
    m_bytes.Append(message.constData(), message.size());
    m_wasUsed = true;
    return Flush(device) ? Taken : Failed;
}

bool SendQueue::Flush(QIODevice& device)
{
    constexpr qint64 most = 1 << 20;
    // A device may report what it has written, and so cause the next call, while it is given more.
    if (m_isFlushing)
        return true;
    const QScopedValueRollback<bool> flushing(m_isFlushing, true);
    qint64 taken = 0;
    do {
        taken = m_bytes.Size() > 0 ? device.write(m_bytes.Data(), std::min(m_bytes.Size(), most)) : 0;
        m_bytes.Drop(std::max<qint64>(taken, 0));
    } while (taken > 0);
    m_unsent = Waiting(device);
    return taken == 0;
}

qint64 SendQueue::Waiting(const QIODevice& device) const { return m_bytes.Size() + device.bytesToWrite(); }

bool SendQueue::HasDrained(const QIODevice& device)
{
    m_unsent = Waiting(device);
    if (!m_wasUsed || m_unsent > 0)
        return false;
    m_wasUsed = false;
    return true;
}

} // namespace ROUTERLINK
