// SPDX-License-Identifier: MIT
/// \file
/// A connection on which messages are sent, and requests wait for their replies.
#pragma once

#include "documents/Forms.h"
#include "link/MessageChannel.h"
#include "wire/Connecting.h"
#include "wire/Endpoint.h"
#include "wire/Outgoing.h"
#include "wire/Parting.h"
#include "wire/Watcher.h"

#include <QtNetwork/QTcpSocket>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace routermsg {

class WireLoop;

/// How messages are sent and what is told about those that come.
struct ConversationOptions
{
    /// The form of messages that are sent; without one, as the channel chooses.
    std::optional<ROUTERDOCUMENTS::Form> form = std::nullopt;
    /// How long each reply may take.
    std::chrono::milliseconds wait{5000};
};

/// The connection of one client. All functions are called from inside the loop, which gets the exceptions
/// that they throw.
class Conversation
{
public:
    struct Receivers
    {
        /// The connection is there.
        std::function<void()> onConnected;
        /// All that comes and goes, also events.
        ExchangeReceiver onExchange;
        /// A reply that belongs to no request which waits. \param isLate whether the request has waited too
        /// long
        std::function<void(const ROUTERDOCUMENTS::Exchange& reply, bool isLate)> onStrayReply;
        /// The connection has ended, for the reason; null when the other end has closed it, close() was
        /// called, or the fault was told as an exchange.
        std::function<void(const QString& fault)> onClosed;
        /// All that was sent has been passed on to the system.
        std::function<void()> onDrained = [] {};
    };

    /// Begins to connect.
    Conversation(const Endpoint& server, const ConversationOptions& options, const Receivers& receivers,
                 WireLoop& loop);
    Conversation(const Conversation&) = delete;
    Conversation& operator=(const Conversation&) = delete;
    ~Conversation();

    /// Sends a message. If it is a request, \a onResult is told what has become of it.
    /// \throws Refusal when it cannot be sent.
    void send(const OutgoingMessage& message,
              const std::function<void(const ROUTERLINK::RequestResult&)>& onResult);
    /// Ends the connection when all messages have arrived. What comes until then is still told. A Refusal
    /// ends the loop when the other end takes nothing for too long.
    void close();
    /// The program ends, and with it the connection. For when the loop has ended.
    void leave() const;
    /// How many bytes wait to be passed on to the system.
    qint64 queuedBytes() const { return m_channel ? m_channel->GetQueuedBytes() : 0; }
    /// Whether nothing can be sent any more.
    bool isOver() const { return m_isOver || (m_channel && m_channel->IsClosed()); }

private:
    void begin();
    void receive(const PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml& document);
    ROUTERDOCUMENTS::Exchange
    received(const PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml& document) const;
    void tellSent(const OutgoingMessage& message);
    void tellFault(const MODELKIT::Failure& failure);
    void end(const MODELKIT::Failure& failure);

    const Endpoint m_server;
    const ConversationOptions m_options;
    const Receivers m_receivers;
    WireLoop& m_loop;
    QTcpSocket m_socket;
    std::unique_ptr<ROUTERLINK::MessageChannel> m_channel;
    std::unique_ptr<Parting> m_parting;
    QString m_peer;
    // Tell of requests that the end of the connection has failed.
    std::vector<std::function<void()>> m_failed;
    bool m_isClosing = false;
    bool m_isOver = false;
};

} // namespace routermsg
