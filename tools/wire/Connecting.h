// SPDX-License-Identifier: MIT
/// \file
/// Sockets of commands: connecting and listening, and what is said when that fails.
#pragma once

#include "Arguments.h"
#include "Finding.h"
#include "wire/Endpoint.h"

#include <QtNetwork/QAbstractSocket>

#include <chrono>
#include <functional>

class QTcpServer;
class QTcpSocket;

namespace routermsg {

class Session;
class WireLoop;

/// How long to wait.
/// @{
/// \param text what is waited for, in a sentence that ends with the usual time
OptionTable waitOption(const QString& text);
/// \throws UsageError
std::chrono::milliseconds waitOf(const Arguments& arguments, std::chrono::milliseconds otherwise);
/// How long the other end may take to accept a connection and to take what is sent: as long as a reply, but
/// at least five seconds.
std::chrono::milliseconds patienceOf(std::chrono::milliseconds wait);
/// "5s" or "250ms"
QString textOf(std::chrono::milliseconds time);
/// @}

/// Why the socket has failed; null when it has not, or the other end has just closed the connection.
QString faultOf(const QAbstractSocket& socket);

/// That the other end cannot be reached, or that the connection was lost.
Finding connectionFinding(const Endpoint& endpoint, const QString& text);

/// Connects the socket from inside the loop, and then calls \a onConnected. A Refusal ends the loop when that
/// fails, or takes longer.
void connectSocket(QTcpSocket& socket, const Endpoint& endpoint, std::chrono::milliseconds longest,
                   WireLoop& loop, const std::function<void()>& onConnected);

/// Listens, and tells the port on standard error. When clients cannot be accepted, for example because too
/// many files are open, it says so and tries again later.
/// \throws Refusal
void listenAt(QTcpServer& server, const Endpoint& endpoint, Session& session, WireLoop& loop);

} // namespace routermsg
