// SPDX-License-Identifier: MIT
#include "wire/Conversation.h"

#include "wire/WireLoop.h"

#include <limits>
#include <utility>

namespace routermsg {

using namespace ROUTERDOCUMENTS;
using MODELKIT::Failure;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;
using PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
using ROUTERLINK::MessageChannel;
using ROUTERLINK::PendingRequest;
using ROUTERLINK::RequestResult;

Conversation::Conversation(const Endpoint& server, const ConversationOptions& options,
                           const Receivers& receivers, WireLoop& loop)
    : m_server(server), m_options(options), m_receivers(receivers), m_loop(loop)
{
    connectSocket(m_socket, server, patienceOf(options.wait), loop, [this] { begin(); });
}

// The socket, which goes first, tells nothing any more.
Conversation::~Conversation()
{
    if (m_channel)
        m_channel->disconnect();
    m_socket.disconnect();
}

void Conversation::begin()
{
    m_peer = peerOf(m_socket);
    ROUTERLINK::ChannelOptions options;
    options.form = m_options.form;
    options.validation = Validation::On;
    // Who sends decides how much waits.
    options.queueSize = std::numeric_limits<qint64>::max();
    m_channel = std::make_unique<MessageChannel>(m_socket, options);
    MessageChannel* const channel = m_channel.get();
    const auto stray = [this](bool isLate) {
        return m_loop.guarded([this, isLate](const PelLu300RouterInterfaceXml& reply) {
            const Exchange exchange = received(reply);
            m_receivers.onExchange(exchange);
            m_receivers.onStrayReply(exchange, isLate);
        });
    };
    QObject::connect(
        channel, &MessageChannel::MessageReceived, channel,
        m_loop.guarded([this](const PelLu300RouterInterfaceXml& document) { receive(document); }));
    QObject::connect(channel, &MessageChannel::UnexpectedReply, channel, stray(false));
    QObject::connect(channel, &MessageChannel::LateReply, channel, stray(true));
    QObject::connect(channel, &MessageChannel::MessageRefused, channel,
                     m_loop.guarded([this](const Failure& failure) { tellFault(failure); }));
    QObject::connect(channel, &MessageChannel::Drained, channel, m_loop.guarded(m_receivers.onDrained));
    QObject::connect(channel, &MessageChannel::Closed, channel,
                     m_loop.guarded([this](const Failure& failure) { end(failure); }));
    m_parting = std::make_unique<Parting>(
        m_socket, [this] { return queuedBytes(); }, m_server, patienceOf(m_options.wait), m_loop);
    m_receivers.onExchange(eventNow(ConnectionEvent::Connected, Direction::Sent, m_peer));
    m_receivers.onConnected();
}

void Conversation::send(const OutgoingMessage& message,
                        const std::function<void(const RequestResult&)>& onResult)
{
    PelLu300RouterMessage& content = message->GetPelLu300RouterMessage();
    const bool isRequest = content.IsTypeSet() && content.GetType() == PelLu300RouterMessage::Request;
    if (!isRequest) {
        if (!m_channel->Send(*message))
            throw Refusal(connectionFinding(m_server, m_channel->GetSendFailure().GetSentence()));
        return tellSent(message);
    }
    PendingRequest* const request = m_channel->Request(*message, m_options.wait);
    // A request that was not sent has the number 0.
    const bool isSent =
        request->GetMessageID() != 0 || (content.IsMessageIDSet() && content.GetMessageID() == 0);
    if (isSent)
        content.SetMessageID(request->GetMessageID());
    // A reply is told as what has come before it is told as a result.
    QObject::connect(request, &PendingRequest::Finished, m_channel.get(),
                     m_loop.guarded([this, onResult](const RequestResult& result) {
                         if (result.outcome == RequestResult::Replied)
                             receive(result.reply);
                         // Why the connection has ended is told first.
                         if (m_channel->IsClosed() && !m_isOver)
                             m_failed.emplace_back([onResult, result] { onResult(result); });
                         else
                             onResult(result);
                     }));
    if (isSent)
        tellSent(message);
}

void Conversation::close()
{
    if (!std::exchange(m_isClosing, true) && !m_isOver)
        m_parting->begin([this] { m_channel->Close(); });
}

void Conversation::leave() const
{
    if (m_channel && !isOver())
        m_receivers.onExchange(eventNow(ConnectionEvent::Closed, Direction::Sent, m_peer));
}

Exchange Conversation::received(const PelLu300RouterInterfaceXml& document) const
{
    Exchange exchange = exchangeNow(Direction::Received, m_peer);
    exchange.form = m_channel->GetPeerForm();
    exchange.record = std::make_shared<PelLu300RouterInterfaceXml>(document);
    return exchange;
}

void Conversation::receive(const PelLu300RouterInterfaceXml& document)
{
    m_receivers.onExchange(received(document));
}

void Conversation::tellSent(const OutgoingMessage& message)
{
    Exchange exchange = exchangeNow(Direction::Sent, m_peer);
    exchange.form = m_options.form.value_or(m_channel->GetPeerForm().value_or(Form::Binary));
    exchange.record = message;
    m_receivers.onExchange(exchange);
}

void Conversation::tellFault(const Failure& failure)
{
    Exchange exchange = exchangeNow(Direction::Received, m_peer);
    exchange.fault = failure.GetSentence();
    exchange.bytes = m_channel->GetFaultyBytes();
    m_receivers.onExchange(exchange);
}

void Conversation::end(const Failure& failure)
{
    m_isOver = true;
    const QString fault = m_parting->wasReset() ? resetAfterSending() : faultOf(m_socket);
    const bool isUnreadable = !m_channel->GetFaultyBytes().isEmpty();
    if (isUnreadable)
        tellFault(failure);
    const QString reason = !fault.isNull()                 ? fault
                           : failure.kind == Failure::None ? QString()
                                                           : failure.GetSentence();
    const bool isOwn = m_isClosing || isUnreadable;
    m_receivers.onExchange(eventNow(ConnectionEvent::Closed, isOwn ? Direction::Sent : Direction::Received,
                                    m_peer, isUnreadable ? QString() : reason));
    for (const auto& tell : std::exchange(m_failed, {}))
        tell();
    m_receivers.onClosed(isUnreadable ? QString() : reason);
}

} // namespace routermsg
