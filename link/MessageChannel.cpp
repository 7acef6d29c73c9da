// SPDX-License-Identifier: MIT
#include "link/MessageChannel.h"

#include "link/ChannelMachine.h"

namespace ROUTERLINK {

using MODELKIT::Failure;

MessageChannel::MessageChannel(QIODevice& device, const ChannelOptions& options, QObject* parent)
    : MessageChannel(device, Flushing(), options, parent)
{}

MessageChannel::MessageChannel(QIODevice& device, const Flushing& flush, const ChannelOptions& options,
                               QObject* parent)
    : QObject(parent), m_machine(std::make_unique<Machine>(*this, device, flush, options))
{
    PELLU300ROUTERINTERFACEXML::RegisterRecordMetatypes();
    qRegisterMetaType<RequestResult>("ROUTERLINK::RequestResult");
}

MessageChannel::~MessageChannel() = default;

bool MessageChannel::Send(const Document& document)
{
    m_machine->sendFailure = m_machine->Send(document);
    return m_machine->sendFailure.kind == Failure::None;
}

const Failure& MessageChannel::GetSendFailure() const { return m_machine->sendFailure; }

PendingRequest* MessageChannel::Request(const Document& document, std::chrono::milliseconds timeout)
{
    return m_machine->Request(document, timeout);
}

qint64 MessageChannel::GetQueuedBytes() const { return m_machine->GetQueuedBytes(); }

std::optional<ROUTERDOCUMENTS::Form> MessageChannel::GetPeerForm() const { return m_machine->peerForm; }

QByteArray MessageChannel::GetFaultyBytes() const { return m_machine->faultyBytes; }

bool MessageChannel::IsClosed() const { return m_machine->isClosed; }

void MessageChannel::CheckDevice() { m_machine->CheckDevice(); }

void MessageChannel::Close() { m_machine->Close(); }

} // namespace ROUTERLINK
