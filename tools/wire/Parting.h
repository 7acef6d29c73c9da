// SPDX-License-Identifier: MIT
/// \file
/// The end of a connection from this side.
#pragma once

#include "wire/Endpoint.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <chrono>
#include <functional>
#include <limits>

class QTcpSocket;

namespace routermsg {

class WireLoop;

/// What is said when the other end resets a connection on which everything was sent.
QString resetAfterSending();

/// Ends a connection so that nothing is lost that was sent. When a socket is closed while something unread
/// has come, the system resets the connection, and what was still on the way is lost. So only the own
/// direction is ended; the socket is closed by the other end, or when the system knows that everything has
/// arrived there.
class Parting : public QObject
{
public:
    /// How many bytes wait to be passed on to the system.
    using Unsent = std::function<qint64()>;

    /// \param socket is connected
    /// \param patience how long the other end may take nothing
    Parting(QTcpSocket& socket, const Unsent& unsent, const Endpoint& server,
            std::chrono::milliseconds patience, WireLoop& loop);

    /// From now on a Refusal ends the loop when the other end takes nothing for too long.
    void watch();
    /// Nothing more is sent. \a onArrived is called when everything has arrived and the other end does not
    /// close the connection itself.
    void begin(const std::function<void()>& onArrived);
    /// Whether the other end has reset the connection after begin().
    bool wasReset() const { return m_wasReset; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void step();
    qint64 onTheWay() const;
    void endOwnDirection();

    QTcpSocket& m_socket;
    const Unsent m_unsent;
    const Endpoint m_server;
    const std::chrono::milliseconds m_patience;
    std::function<void()> m_onArrived;
    QTimer m_timer;
    qint64 m_missing = std::numeric_limits<qint64>::max();
    // Since something was taken.
    QElapsedTimer m_progress;
    QElapsedTimer m_arrived;
    bool m_isOwnDirectionOver = false;
    bool m_wasReset = false;
};

} // namespace routermsg
