// SPDX-License-Identifier: MIT
#include "routerinterface/Messages.h"

#include "routerinterface/Enumerators.h"

#include <stdexcept>

namespace PELLU300ROUTERINTERFACEXML {

PelLu300RouterInterfaceXml MakeDocument(const PelLu300RouterMessage& message)
{
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message);
    return document;
}

PelLu300RouterMessage MakeReply(const PelLu300RouterMessage& request)
{
    using Message = PelLu300RouterMessage;
    if (request.GetType() != Message::Request) {
        const QString name = Enumerators<Message::Type>::NameOf(request.GetType());
        const QString text =
            name.isNull() ? QStringLiteral("Only a request can be replied to, but the message has no type.")
                          : QStringLiteral("Only a request can be replied to, but the message is of type %1.")
                                .arg(name);
        throw std::invalid_argument(text.toStdString());
    }
    PelLu300RouterMessage reply;
    reply.SetType(Message::Reply);
    if (request.IsMessageIDSet())
        reply.SetMessageID(request.GetMessageID());
    return reply;
}

PelLu300RouterInterfaceXml MakeReply(const PelLu300RouterInterfaceXml& request)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage() = MakeReply(request.GetPelLu300RouterMessage());
    return document;
}

const QVector<Fragment> FragmentsOf(const PelLu300RouterMessage& message) { return message.GetFragment(); }

const QVector<Fragment> FragmentsOf(const PelLu300RouterInterfaceXml& document)
{
    return FragmentsOf(document.GetPelLu300RouterMessage());
}

} // namespace PELLU300ROUTERINTERFACEXML
