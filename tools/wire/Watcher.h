// SPDX-License-Identifier: MIT
/// \file
/// The messages in bytes that go over a connection.
#pragma once

#include "documents/Exchange.h"
#include "link/MessageReader.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

class QIODevice;

namespace routermsg {

/// Receives what came or went on a connection.
using ExchangeReceiver = std::function<void(const ROUTERDOCUMENTS::Exchange&)>;

/// An exchange that happens now.
ROUTERDOCUMENTS::Exchange exchangeNow(ROUTERDOCUMENTS::Direction direction, const QString& peer);
/// An event that happens now. \param fault why a connection has ended; null for no reason
ROUTERDOCUMENTS::Exchange eventNow(ROUTERDOCUMENTS::ConnectionEvent event,
                                   ROUTERDOCUMENTS::Direction direction, const QString& peer,
                                   const QString& fault = QString());

/// Watches one direction of a connection, and tells what goes over it. Messages that are not valid and bytes
/// that nobody can understand are told as faults. None is left out but those between messages.
class Watcher
{
public:
    Watcher(ROUTERDOCUMENTS::Direction direction, const QString& peer, const ExchangeReceiver& receiver)
        : m_direction(direction), m_peer(peer), m_receiver(receiver)
    {}

    /// What a socket should take in before it is read.
    static constexpr qint64 mostUnread = 1 << 20;

    void add(const QByteArray& bytes);
    /// Adds all that has arrived at a device.
    void addArrived(QIODevice& device);
    /// No more bytes follow. What is missing is told.
    void end();

private:
    void readOn();
    // About the last message, whose end is certain.
    void tellRefused(const QString& text);
    void tellFault(const QString& text, const QByteArray& bytes);

    ROUTERDOCUMENTS::Direction m_direction;
    QString m_peer;
    ExchangeReceiver m_receiver;
    ROUTERLINK::MessageReader m_reader;
    bool m_isBroken = false;
};

} // namespace routermsg
