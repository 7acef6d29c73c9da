// SPDX-License-Identifier: MIT
#include "documents/Arrivals.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace ROUTERDOCUMENTS {

namespace {

// How many UTF-16 units the UTF-8 has.
qint64 unitsIn(const char* begin, const char* end)
{
    const auto followers = std::count_if(begin, end, [](char c) { return (c & 0xC0) == 0x80; });
    const auto pairs = std::count_if(begin, end, [](char c) { return (c & 0xF8) == 0xF0; });
    return end - begin - followers + pairs;
}

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
    constexpr int block = ByteQueue::block;
    QByteArray& tail = m_bytes.Tail();
    if (tail.capacity() < block)
        tail.reserve(2 * block);
    return intake.TakeArrived(block, tail);
}

void Arrivals::Drop(qint64 size, TextUnits units)
{
    CountLines(size, units);
    m_bytes.Drop(size);
    m_offset += size;
}

QByteArray Arrivals::Take(qint64 size, TextUnits units)
{
    CountLines(size, units);
    m_offset += size;
    return m_bytes.Take(size);
}

void Arrivals::Return(const QByteArray& bytes)
{
    m_offset -= bytes.size();
    m_bytes.Return(bytes);
}

void Arrivals::CountLines(qint64 size, TextUnits units)
{
    if (size == 0)
        return;
    const char* const begin = Data();
    const char* const end = begin + size;
    if (m_line == 0 || size < units.size) {
        m_last = end[-1];
        return;
    }
    // Most texts have no carriage returns.
    if (units.size == 1 && m_last != '\r'
        && std::memchr(begin, '\r', static_cast<std::size_t>(size)) == nullptr) {
        const qint64 lines = std::count(begin, end, '\n');
        const char* const line =
            lines == 0
                ? begin
                : std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(begin), '\n').base();
        m_column = (lines == 0 ? m_column : 1) + unitsIn(line, end);
        m_line += lines;
        m_last = end[-1];
        return;
    }
    for (const char* at = begin; end - at >= units.size; at += units.size) {
        const auto character = static_cast<char>(characterAt(at, units));
        const bool isBreak = character == '\r' || character == '\n';
        // A line feed behind a carriage return belongs to it.
        m_line += character == '\r' || (character == '\n' && m_last != '\r');
        m_column = isBreak ? 1 : m_column + (units.size > 1 ? 1 : unitsIn(at, at + 1));
        m_last = character;
    }
}

} // namespace ROUTERDOCUMENTS
