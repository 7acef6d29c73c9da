// SPDX-License-Identifier: MIT
/// \file
/// Messages over any connection: a socket, a serial port, the pipes of a process.
#pragma once

#include "documents/Forms.h"
#include "documents/Validation.h"
#include "link/Export.h"
#include "link/PendingRequest.h"

#include "modelkit/Failure.h"
#include "modelkit/Limits.h"
#include "routerinterface/RecordMetatypes.h"

#include <QtCore/QMetaType>
#include <QtCore/QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

class QIODevice;

namespace ROUTERLINK {

/// How a channel works.
struct ChannelOptions
{
    /// The form in which messages are sent: XML, binary or compressed. Without a value it is the form of the
    /// message that was received last, and binary until one was received.
    std::optional<ROUTERDOCUMENTS::Form> form = std::nullopt;
    /// With Validation::On, messages are checked when they are received and before they are sent.
    ROUTERDOCUMENTS::Validation validation = ROUTERDOCUMENTS::Validation::Off;
    /// Apply to each message received; see MessageReader.
    MODELKIT::Limits limits = MODELKIT::Limits::Get();
    /// How many bytes may wait to be sent, in the channel and in the device together.
    qint64 queueSize = qint64(16) << 20;
};

/// Sends and receives messages over a device, for example a `QTcpSocket`, `QLocalSocket`, `QSslSocket`,
/// `QSerialPort` or `QProcess`. It recognises the form of each message that it receives; see MessageReader
/// for what the bytes of a connection may be.
///
/// It works in any thread with an event loop. Channel and device must be in the same thread, and only this
/// thread may call them. The channel reads only from the event loop, so no signal is emitted inside of a call
/// of yours, except by Close() and the destructor. Receivers of its signals may call it, delete it, and run
/// an event loop of their own.
///
/// A connection ends once, with the signal Closed(): when the peer has ended it, nobody can tell where its
/// next message begins, the device fails, or Close() is called. The device is then closed, too.
///
/// All failures are told by signals and results. No exception leaves a slot of the channel.
///
/// \code
/// ROUTERLINK::MessageChannel channel(socket);
/// QObject::connect(&channel, &ROUTERLINK::MessageChannel::MessageReceived, [](const auto& event) {
/// show(event); }); auto* request = channel.Request(document, std::chrono::seconds(5));
/// QObject::connect(request, &ROUTERLINK::PendingRequest::Finished,
///                  [](const ROUTERLINK::RequestResult& result) { handle(result); });
/// \endcode
class ROUTERLINK_EXPORT MessageChannel : public QObject
{
    Q_OBJECT

public:
    /// What is sent and received.
    using Document = PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml;

    /// The device need not be connected yet, but nothing can be sent before it is open. What it has received
    /// already is read as well. When the connection does not come about and messages wait for it, the channel
    /// closes.
    /// \param device is not owned. If it is destroyed before the channel, the channel closes.
    /// \param options how the channel works
    /// \param parent its owner; may be null
    explicit MessageChannel(QIODevice& device, const ChannelOptions& options = {}, QObject* parent = nullptr);
    /// The same for a device with a function `flush()`, as sockets and serial ports have one. It is called
    /// when messages that came were answered, before the device looks for more: sockets that learn that the
    /// peer has ended its direction of the connection send nothing any more, and the answers would be lost.
    /// \param device, options, parent as above
    template <class Device, class = decltype(std::declval<Device&>().flush())>
    explicit MessageChannel(Device& device, const ChannelOptions& options = {}, QObject* parent = nullptr)
        : MessageChannel(device, Flushing([&device] { device.flush(); }), options, parent)
    {}
    /// Requests that wait finish as failed. The device stays open; what it has not taken yet is not sent.
    ~MessageChannel() override;

    /// Puts the message into the send queue, and passes on as much as the device takes.
    /// \return false, with the reason in GetSendFailure(), when the message is not sent: the channel is
    /// closed, the device is not open for writing or fails, the document is refused by its check or cannot be
    /// written in the form, or there is no room in the queue (Failure::InputTooLarge; wait for Drained()).
    bool Send(const Document& document);
    /// Why the last call of Send() has failed; of kind Failure::None if it has not.
    const MODELKIT::Failure& GetSendFailure() const;

    /// Sends a request and waits for its reply: the first message of type Reply with the same MessageID. That
    /// is told by the returned object only, not by MessageReceived().
    /// \param document a request. If it has no type, that is set. If it has no MessageID, it gets one that no
    /// waiting request has.
    /// \param timeout how long the reply may take.
    /// \return never null. It belongs to the channel and is deleted after it has finished. If the request
    /// cannot be sent, it finishes as failed; so it does when its type is another one and when another
    /// request waits with its MessageID.
    PendingRequest* Request(const Document& document, std::chrono::milliseconds timeout);

    /// How many bytes wait to be sent, in the channel and in the device together.
    qint64 GetQueuedBytes() const;
    /// The form of the message that was received last, if any was.
    std::optional<ROUTERDOCUMENTS::Form> GetPeerForm() const;
    /// The bytes that could not be read, for receivers of two signals. While MessageRefused() is emitted,
    /// those of the message; while Closed() is emitted, those behind which nobody can tell where a message
    /// begins, as far as they have been read. Otherwise empty.
    QByteArray GetFaultyBytes() const;
    /// Whether Closed() was emitted.
    bool IsClosed() const;

    /// Ends the connection. Messages that have arrived but were not read are lost. Sockets still send what
    /// they have taken; to be sure that everything was passed on, wait for Drained() first. Requests that
    /// wait finish as failed. Has no effect when the channel is closed.
    void Close();

Q_SIGNALS:
    /// A message has come that is not the reply to a request of this channel: a request, an event, or one
    /// without a type.
    void MessageReceived(const PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml& document);
    /// The content of a message cannot be read. The connection goes on behind it.
    void MessageRefused(const MODELKIT::Failure& failure);
    /// A reply has come that no request of this channel has waited for.
    void UnexpectedReply(const PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml& reply);
    /// A reply has come to a request that had finished without it or was deleted.
    void LateReply(const PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml& reply);
    /// All messages that were put into the send queue have been passed on.
    void Drained();
    /// The connection has ended; the last signal of the channel. The failure has the kind Failure::None when
    /// Close() was called, or the peer has ended the connection between two messages, and nothing is known to
    /// be lost.
    void Closed(const MODELKIT::Failure& failure);

private:
    Q_SLOT void CheckDevice();

    class Machine;
    using Flushing = std::function<void()>;
    MessageChannel(QIODevice& device, const Flushing& flush, const ChannelOptions& options, QObject* parent);

    std::unique_ptr<Machine> m_machine;
};

} // namespace ROUTERLINK
