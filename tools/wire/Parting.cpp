// SPDX-License-Identifier: MIT
#include "wire/Parting.h"

#include "wire/Connecting.h"
#include "wire/WireLoop.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QSocketNotifier>
#include <QtNetwork/QTcpSocket>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <linux/sockios.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <utility>

namespace routermsg {

namespace {

// The system does not tell when something has arrived.
constexpr int partingStep = 20;
// Most programs close a connection as soon as they learn that nothing more comes.
constexpr qint64 timeToClose = 500;

} // namespace

QString resetAfterSending()
{
    return QStringLiteral("The other end has reset the connection and may not have read everything.");
}

Parting::Parting(QTcpSocket& socket, const Unsent& unsent, const Endpoint& server,
                 std::chrono::milliseconds patience, WireLoop& loop)
    : m_socket(socket), m_unsent(unsent), m_server(server), m_patience(patience)
{
    QObject::connect(&m_timer, &QTimer::timeout, this, loop.guarded([this] { step(); }));
}

void Parting::watch()
{
    if (m_timer.isActive())
        return;
    m_progress.start();
    m_timer.start(partingStep);
}

void Parting::begin(const std::function<void()>& onArrived)
{
    m_onArrived = onArrived;
    QCoreApplication::instance()->installEventFilter(this);
    watch();
    step();
}

// A socket of Qt tells a reset as the usual end of a connection, so the system is asked before the socket is.
bool Parting::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() != QEvent::SockAct)
        return false;
    const auto* const notifier = qobject_cast<QSocketNotifier*>(object);
    if (!notifier || static_cast<qintptr>(notifier->socket()) != m_socket.socketDescriptor())
        return false;
    int error = 0;
    socklen_t size = sizeof error;
    if (getsockopt(static_cast<int>(m_socket.socketDescriptor()), SOL_SOCKET, SO_ERROR, &error, &size) == 0
        && error != 0)
        m_wasReset = true;
    return false;
}

void Parting::step()
{
    if (m_socket.state() != QAbstractSocket::ConnectedState)
        return m_timer.stop();
    const qint64 unsent = m_unsent();
    if (m_onArrived && unsent == 0 && !std::exchange(m_isOwnDirectionOver, true))
        endOwnDirection();
    const qint64 missing = unsent + onTheWay();
    if (missing != std::exchange(m_missing, missing))
        m_progress.restart();
    if (missing > 0 && m_progress.hasExpired(m_patience.count()))
        throw Refusal(connectionFinding(
            m_server, QStringLiteral("The other end has taken nothing for %1; it lacks %2 bytes.")
                          .arg(textOf(m_patience))
                          .arg(missing)));
    if (missing > 0 || !m_isOwnDirectionOver)
        return;
    if (!m_arrived.isValid())
        m_arrived.start();
    if (m_arrived.hasExpired(timeToClose)) {
        m_timer.stop();
        m_onArrived();
    }
}

// What the system has taken and the other end has not confirmed.
qint64 Parting::onTheWay() const
{
    int size = 0;
    if (ioctl(static_cast<int>(m_socket.socketDescriptor()), SIOCOUTQ, &size) != 0)
        throw Refusal(
            connectionFinding(m_server, QStringLiteral("Nobody can tell whether everything has arrived: %1.")
                                            .arg(QString::fromLocal8Bit(std::strerror(errno)))));
    // The system counts the end of the own direction as a byte.
    return std::max(0, m_isOwnDirectionOver ? size - 1 : size);
}

void Parting::endOwnDirection()
{
    // When the connection has ended already, the socket tells it.
    if (::shutdown(static_cast<int>(m_socket.socketDescriptor()), SHUT_WR) != 0 && errno != ENOTCONN)
        throw Refusal(connectionFinding(m_server, QStringLiteral("The connection cannot be ended: %1.")
                                                      .arg(QString::fromLocal8Bit(std::strerror(errno)))));
}

} // namespace routermsg
