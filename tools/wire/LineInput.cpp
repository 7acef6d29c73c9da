// SPDX-License-Identifier: MIT
#include "wire/LineInput.h"

#include "Finding.h"
#include "wire/WireLoop.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace routermsg {

namespace {

constexpr int inputBlock = 1 << 16;
constexpr int longestLine = 1 << 20;

Refusal refusalOfInput(const QString& text)
{
    return Refusal(Finding::ofFile(QStringLiteral("<stdin>"), text));
}

void requireShort(const QByteArray& line)
{
    if (line.size() > longestLine)
        throw refusalOfInput(QStringLiteral("A line is longer than %1 bytes.").arg(longestLine));
}

} // namespace

LineInput::LineInput(WireLoop& loop, const Receivers& receivers)
    : m_notifier(STDIN_FILENO, QSocketNotifier::Read), m_receivers(receivers)
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_notifier, loop.guarded([this] { read(); }));
}

void LineInput::stop()
{
    m_isOver = true;
    m_notifier.setEnabled(false);
}

void LineInput::read()
{
    std::array<char, inputBlock> block;
    const auto size = ::read(STDIN_FILENO, block.data(), block.size());
    if (size < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (size < 0) {
        stop();
        throw refusalOfInput(QStringLiteral("The input cannot be read: %1.")
                                 .arg(QString::fromLocal8Bit(std::strerror(errno))));
    }
    if (size > 0) {
        m_pending.append(block.data(), static_cast<int>(size));
        return tellLines();
    }
    // The last line needs no line break.
    if (!m_pending.isEmpty())
        m_pending += '\n';
    tellLines();
    if (m_isOver)
        return;
    stop();
    m_receivers.onEnd();
}

void LineInput::tellLines()
{
    int begin = 0;
    for (auto end = m_pending.indexOf('\n'); end >= 0 && !m_isOver; end = m_pending.indexOf('\n', begin)) {
        const QByteArray line = m_pending.mid(begin, end - begin);
        begin = static_cast<int>(end) + 1;
        requireShort(line);
        m_receivers.onLine(textOfLine(line));
    }
    m_pending.remove(0, begin);
    requireShort(m_pending);
}

} // namespace routermsg
