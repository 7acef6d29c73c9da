// SPDX-License-Identifier: MIT
#include "documents/Arrivals.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <cstring>
#include <utility>

namespace ROUTERDOCUMENTS {

namespace {

constexpr int block = 1 << 16;

} // namespace

Arrivals::~Arrivals()
{
    if (m_hasOpened)
        m_device.close();
}

bool Arrivals::Open(QString& reason)
{
    if (!m_device.isOpen()) {
        m_hasOpened = m_device.open(QIODevice::ReadOnly);
        reason = m_device.errorString();
    } else {
        reason = QStringLiteral("it is not open for reading");
    }
    return m_device.isReadable();
}

Arrivals::Outcome Arrivals::Fetch(MODELKIT::Intake& intake)
{
    // What is used goes when it is the larger part, so that every byte moves only once on average.
    if (m_begin >= Size() && m_begin > 0) {
        m_bytes.remove(0, static_cast<int>(m_begin));
        m_begin = 0;
    }
    if (m_bytes.capacity() < block)
        m_bytes.reserve(2 * block);
    return intake.TakeArrived(block, m_bytes);
}

void Arrivals::Drop(qint64 size, TextUnits units)
{
    CountLines(size, units);
    m_begin += size;
    m_offset += size;
}

QByteArray Arrivals::Take(qint64 size, TextUnits units)
{
    CountLines(size, units);
    m_offset += size;
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

void Arrivals::CountLines(qint64 size, TextUnits units)
{
    const char* const end = Data() + size;
    if (m_line == 0 || size < units.size) {
        m_last = size > 0 ? end[-1] : m_last;
        return;
    }
    // Most texts have no carriage returns.
    if (units.size == 1 && m_last != '\r'
        && std::memchr(Data(), '\r', static_cast<std::size_t>(size)) == nullptr) {
        m_line += std::count(Data(), end, '\n');
        m_last = end[-1];
        return;
    }
    for (const char* at = Data(); end - at >= units.size; at += units.size) {
        const auto character = static_cast<char>(characterAt(at, units));
        // A line feed behind a carriage return belongs to it.
        m_line += character == '\r' || (character == '\n' && m_last != '\r');
        m_last = character;
    }
}

} // namespace ROUTERDOCUMENTS
