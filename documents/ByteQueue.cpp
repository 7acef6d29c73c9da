// SPDX-License-Identifier: MIT
#include "documents/ByteQueue.h"

#include <utility>

namespace ROUTERDOCUMENTS {

QByteArray& ByteQueue::Tail()
{
    // What is used goes when it is the larger part.
    if (m_begin >= Size() && m_begin > 0) {
        m_bytes.remove(0, static_cast<int>(m_begin));
        m_begin = 0;
    }
    return m_bytes;
}

void ByteQueue::Drop(qint64 size)
{
    m_begin += size;
    if (Size() > 0 || m_bytes.capacity() <= 2 * block)
        return;
    m_bytes = QByteArray();
    m_begin = 0;
}

QByteArray ByteQueue::Take(qint64 size)
{
    const auto begin = static_cast<int>(m_begin);
    const auto length = static_cast<int>(size);
    if (size < block) {
        m_begin += size;
        return QByteArray(m_bytes.constData() + begin, length);
    }
    // A large message is not copied; what little follows it is.
    QByteArray rest = m_bytes.mid(begin + length);
    m_bytes.truncate(begin + length);
    m_bytes.remove(0, begin);
    m_begin = 0;
    return std::exchange(m_bytes, std::move(rest));
}

void ByteQueue::Return(const QByteArray& bytes)
{
    if (bytes.size() < block) {
        m_begin -= bytes.size();
        return;
    }
    m_bytes.remove(0, static_cast<int>(m_begin));
    m_bytes.prepend(bytes);
    m_begin = 0;
}

} // namespace ROUTERDOCUMENTS
