// SPDX-License-Identifier: MIT
#include "Output.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace routermsg {

OutputError::OutputError(const QString& name, int error)
    : m_error(error),
      m_text(name.toUtf8() + ": " + QByteArray::fromStdString(std::system_category().message(error)))
{}

bool OutputError::isBrokenPipe() const noexcept { return m_error == EPIPE; }

namespace {

constexpr int muchToKeep = 1 << 16;

bool wantsColours(Colour colour, bool isTerminal)
{
    if (colour != Colour::Auto)
        return colour == Colour::Always;
    return isTerminal && qgetenv("NO_COLOR").isEmpty() && qgetenv("TERM") != "dumb";
}

const char* codeOf(Style style)
{
    switch (style) {
    case Style::Plain:
        break;
    case Style::Good:
    case Style::Added:
        return "32";
    case Style::Error:
        return "1;31";
    case Style::Removed:
        return "31";
    case Style::Warning:
        return "1;35";
    case Style::Place:
        return "1";
    case Style::Name:
        return "36";
    case Style::Value:
        return "33";
    case Style::Faint:
        return "2";
    }
    return "";
}

// Until a descriptor that another program has set not to block takes bytes again.
void waitFor(int descriptor)
{
    pollfd waiting{descriptor, POLLOUT, 0};
    poll(&waiting, 1, -1);
}

} // namespace

int writeAll(int descriptor, const QByteArray& bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const auto size =
            ::write(descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (size < 0 && errno == EAGAIN)
            waitFor(descriptor);
        else if (size < 0 && errno != EINTR)
            return errno;
        written += std::max<qint64>(size, 0);
    }
    return 0;
}

Output::Output(int descriptor, const QString& name, Colour colour)
    : m_descriptor(descriptor), m_name(name), m_isTerminal(isatty(descriptor) == 1),
      m_hasColours(wantsColours(colour, m_isTerminal))
{}

Output::~Output()
{
    try {
        flush();
    } catch (const OutputError&) {
        // A caller who wants to know of errors flushes before.
    }
}

void Output::write(const QString& text) { writeBytes(text.toUtf8()); }

void Output::writeLine(const QString& line) { write(line + QLatin1Char('\n')); }

void Output::writeBytes(const QByteArray& bytes)
{
    m_kept += bytes;
    if (m_kept.size() >= muchToKeep || (m_isTerminal && m_kept.endsWith('\n')))
        flush();
}

void Output::flush()
{
    if (m_kept.isEmpty())
        return;
    int error = 0;
    const auto writeKept = [this, &error] { error = writeAll(m_descriptor, std::exchange(m_kept, {})); };
    if (m_aside)
        m_aside(writeKept);
    else
        writeKept();
    if (error != 0)
        throw OutputError(m_name, error);
}

int Output::width() const
{
    constexpr int usual = 80;
    if (!m_isTerminal)
        return 0;
    winsize size{};
    return ioctl(m_descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : usual;
}

QString Output::paint(Style style, const QString& text) const
{
    if (!m_hasColours || style == Style::Plain || text.isEmpty())
        return text;
    return QStringLiteral("\033[%1m%2\033[0m").arg(QLatin1String(codeOf(style)), text);
}

} // namespace routermsg
