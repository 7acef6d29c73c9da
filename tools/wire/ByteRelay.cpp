// SPDX-License-Identifier: MIT
#include "wire/ByteRelay.h"

#include <QtCore/QObject>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <system_error>
#include <unistd.h>

namespace routermsg {

namespace {

constexpr int blockSize = 1 << 16;

bool isTryAgain(int error) { return error == EAGAIN || error == EWOULDBLOCK || error == EINTR; }

} // namespace

WireEnd::WireEnd(int descriptor)
    : m_descriptor(descriptor), m_readable(descriptor, QSocketNotifier::Read),
      m_writable(descriptor, QSocketNotifier::Write)
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    const int flags = fcntl(descriptor, F_GETFL);
    if (flags >= 0 && fcntl(descriptor, F_SETFL, flags | O_NONBLOCK) >= 0)
        return;
    const int error = errno;
    ::close(descriptor);
    throw std::system_error(error, std::generic_category());
}

WireEnd::~WireEnd()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
    ::close(m_descriptor);
}

void WireEnd::stop()
{
    m_readable.setEnabled(false);
    m_writable.setEnabled(false);
}

void WireEnd::resetAtEnd()
{
    linger noTime = {};
    noTime.l_onoff = 1;
    setsockopt(m_descriptor, SOL_SOCKET, SO_LINGER, &noTime, sizeof noTime);
}

BytePump::BytePump(WireEnd& source, WireEnd& target, const Receivers& receivers)
    : m_source(source), m_target(target), m_receivers(receivers)
{
    QObject::connect(&source.readable(), &QSocketNotifier::activated, &source.readable(), [this] { read(); });
    QObject::connect(&target.writable(), &QSocketNotifier::activated, &target.writable(),
                     [this] { write(); });
    source.readable().setEnabled(true);
}

void BytePump::read()
{
    m_block.resize(blockSize);
    const auto size = ::recv(m_source.descriptor(), m_block.data(), blockSize, 0);
    const int error = errno;
    if (size < 0 && isTryAgain(error))
        return;
    m_source.readable().setEnabled(false);
    if (size < 0)
        return fail(error, true);
    if (size == 0)
        return finish();
    m_block.resize(static_cast<int>(size));
    m_taken = 0;
    // What the receiver does may take long or fail.
    const int writeError = passOn();
    m_receivers.onBytes(m_block);
    continueAfter(writeError);
}

void BytePump::write() { continueAfter(passOn()); }

int BytePump::passOn()
{
    const auto size = ::send(m_target.descriptor(), m_block.constData() + m_taken,
                             static_cast<std::size_t>(m_block.size() - m_taken), MSG_NOSIGNAL);
    if (size < 0)
        return isTryAgain(errno) ? 0 : errno;
    m_taken += size;
    return 0;
}

void BytePump::continueAfter(int writeError)
{
    const bool isAllTaken = m_taken == m_block.size();
    m_target.writable().setEnabled(writeError == 0 && !isAllTaken);
    if (writeError != 0)
        return fail(writeError, false);
    m_source.readable().setEnabled(isAllTaken);
}

void BytePump::finish()
{
    m_isOver = true;
    ::shutdown(m_target.descriptor(), SHUT_WR);
    m_receivers.onEnd();
}

void BytePump::fail(int error, bool isSource)
{
    m_isOver = true;
    m_receivers.onFault(QString::fromLocal8Bit(std::strerror(error)) + QLatin1Char('.'), isSource);
}

} // namespace routermsg
