// SPDX-License-Identifier: MIT
/// \file
/// Short ways to build messages, and to go through their fragments.
#pragma once

#include "routerinterface/Export.h"
#include "routerinterface/Payloads.h"
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QVector>

#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {

/// A document with the message. Its settings are those of a new document.
ROUTERINTERFACE_EXPORT PelLu300RouterInterfaceXml MakeDocument(const PelLu300RouterMessage& message);

/// A reply to the request: a new message of type Reply with the same MessageID, if the request has one.
/// \throws std::invalid_argument when the message is no request.
ROUTERINTERFACE_EXPORT PelLu300RouterMessage MakeReply(const PelLu300RouterMessage& request);

/// A document with the reply to the request in another one.
/// \throws std::invalid_argument when the message in the document is no request.
ROUTERINTERFACE_EXPORT PelLu300RouterInterfaceXml MakeReply(const PelLu300RouterInterfaceXml& request);

/// A reply to \a request with payloads, \a first and the other \a payloads, each in a fragment.
template <class First, class... Payloads>
PelLu300RouterMessage MakeReply(const PelLu300RouterMessage& request, const First& first,
                                const Payloads&... payloads)
{
    PelLu300RouterMessage message = MakeReply(request);
    AppendPayload(message, first);
    (AppendPayload(message, payloads), ...);
    return message;
}

/// A reply to \a request with payloads, \a first and the other \a payloads, each in a fragment.
template <class First, class... Payloads>
PelLu300RouterInterfaceXml MakeReply(const PelLu300RouterInterfaceXml& request, const First& first,
                                     const Payloads&... payloads)
{
    PelLu300RouterInterfaceXml document = MakeReply(request);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    AppendPayload(message, first);
    (AppendPayload(message, payloads), ...);
    return document;
}

/// A message of that \a type with the \a payloads, each in a fragment, and without a MessageID.
template <class... Payloads>
PelLu300RouterMessage MakeMessage(PelLu300RouterMessage::Type type, const Payloads&... payloads)
{
    PelLu300RouterMessage message;
    message.SetType(type);
    (AppendPayload(message, payloads), ...);
    return message;
}

/// A request with the payloads, each in a fragment. It has no MessageID; whoever sends it can give it one.
template <class... Payloads, std::enable_if_t<(machinery::isPayload<Payloads> && ...), int> = 0>
PelLu300RouterMessage MakeRequest(const Payloads&... payloads)
{
    return MakeMessage(PelLu300RouterMessage::Request, payloads...);
}

/// The same with a \a messageID and the \a payloads.
template <class... Payloads, std::enable_if_t<(machinery::isPayload<Payloads> && ...), int> = 0>
PelLu300RouterMessage MakeRequest(unsigned int messageID, const Payloads&... payloads)
{
    PelLu300RouterMessage message = MakeRequest(payloads...);
    message.SetMessageID(messageID);
    return message;
}

/// An event with the payloads, each in a fragment, and without a MessageID.
template <class... Payloads>
PelLu300RouterMessage MakeEvent(const Payloads&... payloads)
{
    return MakeMessage(PelLu300RouterMessage::Event, payloads...);
}

/// The fragments of a message as they are now. Unlike the getter of a message that is not const, this marks
/// nothing as set and copies no item. The list may be used after the message has changed or ended.
///
/// \code
/// for (const Fragment& fragment : FragmentsOf(message))
///     qInfo() << fragment;
/// \endcode
ROUTERINTERFACE_EXPORT const QVector<Fragment> FragmentsOf(const PelLu300RouterMessage& message);

/// The fragments of the message in a document.
ROUTERINTERFACE_EXPORT const QVector<Fragment> FragmentsOf(const PelLu300RouterInterfaceXml& document);

} // namespace PELLU300ROUTERINTERFACEXML
