// SPDX-License-Identifier: MIT
/// \file
/// The ends of connections on the command line and in messages.
#pragma once

#include "CommandTables.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

class QTcpSocket;

namespace routermsg {

class Arguments;

struct Endpoint
{
    QString host;
    quint16 port = 0;

    /// "localhost:4711" or "[::1]:4711"
    QString toText() const;
};

/// \name Rows of tables
/// @{
/// The program to connect to.
OptionTable serverArgument();
/// Where to listen. \param name of the argument
OptionTable listenArgument(const QString& name);
/// @}

/// \throws UsageError
/// @{
/// "HOST:PORT"; an IPv6 address stands in brackets.
Endpoint serverOf(const Arguments& arguments);
/// "[HOST:]PORT". Without a host it is 127.0.0.1. The port 0 stands for any free one.
Endpoint listenOf(const Arguments& arguments, const char* name);
/// @}

/// The other end of a connected socket; "unknown peer" when it has gone already.
/// @{
QString peerOf(const QTcpSocket& socket);
QString peerOfDescriptor(int descriptor);
/// @}

} // namespace routermsg
