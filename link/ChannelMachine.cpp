// SPDX-License-Identifier: MIT
#include "link/ChannelMachine.h"

#include "link/Failures.h"

#include <QtCore/QMetaMethod>

#include <algorithm>
#include <utility>

namespace ROUTERLINK {

using MODELKIT::Failure;
using ROUTERDOCUMENTS::Form;
using ROUTERDOCUMENTS::Validation;

namespace {

constexpr int blockSize = 1 << 16;
// Then other events have their turn, even if the device has always more.
constexpr qint64 usuallyAtOnce = 1 << 20;

Failure failed(const QString& text) { return {Failure::InputOutput, text, {}}; }

} // namespace

MessageChannel::Machine::Machine(MessageChannel& channel, QIODevice& device, const Flushing& flush,
                                 const ChannelOptions& options)
    : m_channel(channel), m_device(&device), m_flush(flush), m_options(options), m_reader(options.limits),
      m_queue(options.queueSize), m_form(&channel), m_formStream(&m_form), m_requests(channel),
      m_reading(channel, [this] { Guard(&Machine::ReadArrived); }),
      m_telling(channel, [this] { Guard(&Machine::TellDrained); }),
      m_closing(channel, [this] { Guard(&Machine::CloseAfterFailure); }),
      m_checking(channel, [this] { Guard(&Machine::CloseIfDeviceHasForgotten); })
{
    m_form.open(QIODevice::WriteOnly);
    // Reading is not done inside of the device's signals, because receivers of the channel's signals may
    // destroy the device.
    QObject::connect(&device, &QIODevice::readyRead, &channel, [this] { DataArrived(); });
    QObject::connect(&device, &QIODevice::bytesWritten, &channel, [this] { Guard(&Machine::Written); });
    QObject::connect(&device, &QIODevice::readChannelFinished, &channel, [this] {
        m_isEnding = true;
        m_reading.Schedule();
    });
    QObject::connect(&device, &QIODevice::aboutToClose, &channel, [this] { Guard(&Machine::DeviceEnds); });
    QObject::connect(&device, &QObject::destroyed, &channel, [this] { Guard(&Machine::DeviceIsGone); });
    WatchErrors();
    m_reading.Schedule();
}

MessageChannel::Machine::~Machine()
{
    isClosed = true;
    if (m_device)
        m_device->disconnect(&m_channel);
}

void MessageChannel::Machine::Guard(void (Machine::*action)())
{
    const QPointer<MessageChannel> alive(&m_channel);
    try {
        (this->*action)();
    } catch (...) {
        if (alive)
            FinishAfterException();
    }
}

// --- receiving --------------------------------------------------------------------------------

void MessageChannel::Machine::DataArrived()
{
    m_isPromised = true;
    m_reading.Schedule();
}

void MessageChannel::Machine::ReadArrived()
{
    if (isClosed)
        return;
    const QPointer<MessageChannel> alive(&m_channel);
    bool mayFollow = true;
    bool hasRead = false;
    // What the device keeps in its own buffer is read whole: otherwise a fast peer could make that grow.
    const qint64 most = std::max(usuallyAtOnce, m_device ? m_device->bytesAvailable() : 0);
    for (qint64 size = 0; mayFollow && size < most; size += blockSize) {
        mayFollow = ReadBlock();
        if (!alive || isClosed)
            return;
        hasRead = hasRead || mayFollow;
    }
    // A socket that learns that the peer has ended its direction of the connection sends nothing any more. So
    // replies leave before it looks.
    if (hasRead && m_flush && m_device && m_queue.Unsent() > 0)
        m_flush();
    if (!alive || isClosed)
        return;
    if (mayFollow)
        return m_reading.Schedule();
    if (!m_isEnding)
        return;
    m_reader.EndData();
    Deliver();
}

bool MessageChannel::Machine::ReadBlock()
{
    if (!m_device || !m_device->isReadable())
        return false;
    QByteArray block(blockSize, Qt::Uninitialized);
    const qint64 size = m_device->read(block.data(), blockSize);
    // Before it is connected, a socket also says that it cannot be read.
    const bool isPromised = std::exchange(m_isPromised, false);
    if (size < 0 && isPromised && !m_isEnding) {
        Finish(FailureOfDevice(QStringLiteral("read from")), Ending::Unwanted);
        return false;
    }
    if (size <= 0)
        return false;
    m_reader.AddData(block.constData(), size);
    return Deliver();
}

// Sockets have signals of this name, each with its own parameter.
void MessageChannel::Machine::WatchErrors()
{
    const QMetaObject& own = MessageChannel::staticMetaObject;
    const QMetaMethod check = own.method(own.indexOfSlot("CheckDevice()"));
    const QMetaObject& device = *m_device->metaObject();
    for (int i = 0; i < device.methodCount(); ++i) {
        const QMetaMethod method = device.method(i);
        if (method.methodType() == QMetaMethod::Signal && method.name() == "errorOccurred")
            QObject::connect(m_device, method, &m_channel, check);
    }
}

// Many errors change nothing, and of some the device tells more. But when a connection has not come about, a
// socket only drops what it was to send.
void MessageChannel::Machine::CloseIfDeviceHasForgotten()
{
    if (!isClosed && !m_isEnding && m_device && m_queue.Forgotten(*m_device) > 0)
        Finish(FailureOfDevice(QStringLiteral("write to")), Ending::Unwanted);
}

void MessageChannel::Machine::DeviceEnds()
{
    const QPointer<MessageChannel> alive(&m_channel);
    m_isEnding = true;
    m_isDeviceClosing = true;
    while (ReadBlock()) {
    }
    if (!alive || isClosed)
        return;
    m_reader.EndData();
    Deliver();
}

void MessageChannel::Machine::DeviceIsGone()
{
    Finish(failed(QStringLiteral("The device of the channel was destroyed.")), Ending::Unwanted);
}

bool MessageChannel::Machine::Deliver()
{
    const QPointer<MessageChannel> alive(&m_channel);
    Document document;
    document.SetValidate(m_options.validation == Validation::On);
    while (alive && !isClosed) {
        switch (m_reader.Next(document)) {
        case MessageReader::NeedMore:
            return true;
        case MessageReader::Ready:
            peerForm = m_reader.GetForm();
            Dispatch(document);
            break;
        case MessageReader::Refused:
            faultyBytes = m_reader.GetBytes();
            Q_EMIT m_channel.MessageRefused(Failure(m_reader.GetFailure()));
            if (alive)
                faultyBytes.clear();
            break;
        case MessageReader::Broken:
            faultyBytes = m_reader.GetUnreadBytes();
            Finish(m_reader.GetFailure(), Ending::Unwanted);
            return false;
        case MessageReader::Ended:
            Finish({}, m_isDeviceClosing ? Ending::Wanted : Ending::Unwanted);
            return false;
        }
    }
    return false;
}

void MessageChannel::Machine::Dispatch(const Document& document)
{
    using Message = PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
    const Message& message = document.GetPelLu300RouterMessage();
    if (!message.IsTypeSet() || message.GetType() != Message::Reply) {
        Q_EMIT m_channel.MessageReceived(document);
        return;
    }
    switch (m_requests.Take(message.GetMessageID(), document)) {
    case Requests::Expected:
        break;
    case Requests::Late:
        Q_EMIT m_channel.LateReply(document);
        break;
    case Requests::Unknown:
        Q_EMIT m_channel.UnexpectedReply(document);
        break;
    }
}

// --- sending ----------------------------------------------------------------------------------

Failure MessageChannel::Machine::Send(const Document& document)
{
    return guarded([&]() -> Failure {
        if (isClosed)
            return failed(QStringLiteral("The channel is closed."));
        if (!m_device || !m_device->isWritable())
            return failed(QStringLiteral("The device of the channel is not open for writing."));
        QByteArray bytes;
        const Failure failure = Encode(document, bytes);
        return failure.kind == Failure::None ? Queue(bytes) : failure;
    });
}

Failure MessageChannel::Machine::Encode(const Document& document, QByteArray& bytes)
{
    const Form form = m_options.form.value_or(peerForm.value_or(Form::Binary));
    if (m_options.validation == Validation::On)
        document.Check();
    if (form == Form::Xml) {
        bytes = document.GetXmlBytes(MODELKIT::XmlLayout::Compact);
    } else if (IsBinary(form)) {
        constexpr int usualLevel = -1;
        m_form.buffer().clear();
        m_form.seek(0);
        m_formStream.resetStatus();
        if (form == Form::Binary)
            document.GetBinaryRepresentation(m_formStream);
        else
            document.GetCompressedBinaryRepresentation(m_formStream, usualLevel);
        bytes = std::exchange(m_form.buffer(), QByteArray());
    } else {
        return {Failure::NotRepresentable,
                QStringLiteral("%1 is no form of messages on a connection.").arg(NameOf(form)),
                {}};
    }
    Failure failure = MODELKIT::IMKObject::GetLastFailure();
    // Receivers that read lines get the document at once.
    if (failure.kind == Failure::None && form == Form::Xml && !bytes.endsWith('\n'))
        bytes += '\n';
    return failure;
}

Failure MessageChannel::Machine::Queue(const QByteArray& bytes)
{
    switch (m_queue.Add(*m_device, bytes)) {
    case SendQueue::Taken:
        m_telling.Schedule();
        return {};
    case SendQueue::Full:
        return {
            Failure::InputTooLarge,
            QStringLiteral("The message of %1 bytes does not fit into the send queue: %2 of %3 bytes wait.")
                .arg(QString::number(bytes.size()), QString::number(GetQueuedBytes()),
                     QString::number(m_options.queueSize)),
            {}};
    case SendQueue::Failed:
        break;
    }
    m_writeFailure = FailureOfDevice(QStringLiteral("write to"));
    m_closing.Schedule();
    return m_writeFailure;
}

void MessageChannel::Machine::Written()
{
    if (isClosed || !m_device)
        return;
    if (m_queue.IsFlushing())
        return m_telling.Schedule();
    if (m_queue.Flush(*m_device))
        return TellDrained();
    m_writeFailure = FailureOfDevice(QStringLiteral("write to"));
    CloseAfterFailure();
}

void MessageChannel::Machine::TellDrained()
{
    if (!isClosed && m_queue.HasDrained())
        Q_EMIT m_channel.Drained();
}

PendingRequest* MessageChannel::Machine::Request(const Document& document, std::chrono::milliseconds timeout)
{
    using Message = PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage;
    Document request(document);
    Message& message = request.GetPelLu300RouterMessage();
    if (!message.IsTypeSet())
        message.SetType(Message::Request);
    if (message.GetType() != Message::Request)
        return m_requests.AddFailed(
            {Failure::Refused, QStringLiteral("A message of another type than Request gets no reply."), {}});
    if (!message.IsMessageIDSet())
        message.SetMessageID(m_requests.NextID());
    const unsigned int messageID = message.GetMessageID();
    if (m_requests.IsPending(messageID))
        return m_requests.AddFailed(
            {Failure::Refused,
             QStringLiteral("Another request with the MessageID %1 waits for its reply.").arg(messageID),
             {}});
    const Failure failure = Send(request);
    return failure.kind == Failure::None ? m_requests.Add(messageID, timeout) : m_requests.AddFailed(failure);
}

qint64 MessageChannel::Machine::GetQueuedBytes() const
{
    return m_device ? m_queue.Waiting(*m_device) : m_queue.Untaken();
}

// --- the end ----------------------------------------------------------------------------------

Failure MessageChannel::Machine::FailureOfDevice(const QString& doing) const
{
    const QString reason = m_device ? m_device->errorString() : QString();
    return failed(QStringLiteral("Cannot %1 the device of the channel: %2").arg(doing, reason));
}

void MessageChannel::Machine::FinishAfterException() noexcept
{
    const Failure failure = failureOfException();
    try {
        Finish(failure, Ending::Unwanted);
    } catch (...) {
        // The channel is closed. There is no memory to tell more, or a receiver of the signal has failed.
    }
}

void MessageChannel::Machine::CloseAfterFailure() { Finish(m_writeFailure, Ending::Unwanted); }

void MessageChannel::Machine::Finish(Failure failure, Ending ending)
{
    if (std::exchange(isClosed, true))
        return;
    // When the program wants it, the device still sends what it has taken, unless it ended before.
    qint64 unsent = m_queue.Unsent();
    if (ending == Ending::Wanted)
        unsent = m_queue.Untaken() + (m_isEnding && m_device ? m_queue.Forgotten(*m_device) : 0);
    if (m_device) {
        m_device->disconnect(&m_channel);
        if (m_device->isOpen() && !m_isDeviceClosing)
            m_device->close();
    }
    if (failure.kind == Failure::None && unsent > 0)
        failure = failed(QStringLiteral("The connection has ended before %1 bytes were sent.").arg(unsent));
    const QPointer<MessageChannel> alive(&m_channel);
    m_requests.FailAll(failure.kind == Failure::None
                           ? failed(QStringLiteral("The connection has ended before the reply came."))
                           : failure);
    if (alive)
        Q_EMIT m_channel.Closed(failure);
    if (alive)
        faultyBytes.clear();
}

} // namespace ROUTERLINK
