// SPDX-License-Identifier: MIT
/// \file
/// Messages to send, from files and from words.
///
/// A request is one word of the shell with words of the command `new`, separated by blanks; dots may stand
/// between names. 'DF_Params.Frequency=100e6' is 'Request DF_Params Frequency=100e6', because a message
/// without a type is a request. A value with blanks stands in double quotes: 'PelVtConnectServer
/// Address="host name"'.
#pragma once

#include "CommandTables.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <vector>

namespace routermsg {

using OutgoingMessage = std::shared_ptr<PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml>;

/// The words in a request, as the command `new` takes them.
/// \throws UsageError for a quote without its end.
QStringList wordsOf(const QString& request);

/// The message that a request stands for, which is valid.
/// \throws UsageError when a word is not understood, Refusal when the message is not valid.
OutgoingMessage messageOf(const QString& request);

/// What a request can begin with, and what can follow.
QStringList offeredRequests();

/// Whether the argument is a request. Everything else is a file: "-", what has a slash or the ending of a
/// form, and what does not begin with a word of `new`.
bool isRequest(const QString& argument);

/// The row of the arguments.
OptionTable outgoingArgument();

/// The messages of all files and requests, in their order. All are read before the first one is returned.
/// \throws UsageError, Refusal when one of them cannot be read.
std::vector<OutgoingMessage> outgoingMessages(const QStringList& arguments);

} // namespace routermsg
