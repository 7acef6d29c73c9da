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
        throw std::invalid_argument("Only a request can be replied to, but the message "
                                    + (name.isNull() ? "has no type" : "is of type " + name.toStdString())
                                    + '.');
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
