// SPDX-License-Identifier: MIT
// What a MessageChannel does. Not installed.
#pragma once

#include "link/Later.h"
#include "link/MessageChannel.h"
#include "link/MessageReader.h"
#include "link/Requests.h"
#include "link/SendQueue.h"

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QPointer>
#include <QtCore/QString>

namespace ROUTERLINK {

// Receivers of signals may destroy the channel, and with it the machine. Whatever emits a signal touches
// nothing afterwards unless the channel is still there.
class MessageChannel::Machine
{
public:
    Machine(MessageChannel& channel, QIODevice& device, const Flushing& flush, const ChannelOptions& options);
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;
    ~Machine();

    MODELKIT::Failure Send(const Document& document);
    PendingRequest* Request(const Document& document, std::chrono::milliseconds timeout);
    void Close() { Finish({}, Ending::Wanted); }
    // Some time after the device has told an error.
    void CheckDevice() { m_checking.Schedule(); }
    qint64 GetQueuedBytes() const;

    MODELKIT::Failure sendFailure;
    std::optional<ROUTERDOCUMENTS::Form> peerForm;
    bool isClosed = false;
    QByteArray faultyBytes;

private:
    enum class Ending
    {
        Wanted, // by the program
        Unwanted
    };

    // Lets no exception out.
    void Guard(void (Machine::*action)());

    void DataArrived();
    void ReadArrived();
    // False when nothing more can be read now.
    bool ReadBlock();
    void WatchErrors();
    void CloseIfDeviceHasForgotten();
    void DeviceEnds();
    void DeviceIsGone();
    // Tells the messages that are whole. False when the channel is closed or destroyed.
    bool Deliver();
    void Dispatch(const Document& document);

    void Written();
    void TellDrained();
    MODELKIT::Failure Encode(const Document& document, QByteArray& bytes);
    MODELKIT::Failure Queue(const QByteArray& bytes);
    MODELKIT::Failure FailureOfDevice(const QString& doing) const;
    void CloseAfterFailure();
    // For the exception that is being handled.
    void FinishAfterException() noexcept;
    void Finish(MODELKIT::Failure failure, Ending ending);

    MessageChannel& m_channel;
    QPointer<QIODevice> m_device;
    // Has the device send what it has taken. May be empty.
    const Flushing m_flush;
    const ChannelOptions m_options;
    MessageReader m_reader;
    SendQueue m_queue;
    // For the binary forms of messages. Making these takes more than half as long as writing a small message.
    QBuffer m_form;
    QDataStream m_formStream;
    Requests m_requests;
    Later m_reading;
    Later m_telling;
    Later m_closing;
    Later m_checking;
    // Whether the device has said that there are data, which were not read yet.
    bool m_isPromised = false;
    // Whether no more data will come.
    bool m_isEnding = false;
    // Whether the program closes the device.
    bool m_isDeviceClosing = false;
    // Why the device does not take any more.
    MODELKIT::Failure m_writeFailure;
};

} // namespace ROUTERLINK
