// SPDX-License-Identifier: MIT
/// \file
/// What of a recording is sent again.
#pragma once

#include "documents/Exchange.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <vector>

namespace routermsg {

struct PlayedItem
{
    /// As it is sent.
    QByteArray bytes;
    /// The message, or a fault.
    ROUTERDOCUMENTS::Exchange exchange;
    /// Whether the recording tells when it was sent.
    bool isTimed = false;
};

/// The recorded exchanges to send.
enum class Played
{
    /// Those of a client: with the direction `sent` or `toServer`.
    Sent,
    /// The others, for example what `listen` has recorded.
    Received
};

/// The messages and faulty bytes with the direction, as the recording tells; if it does not tell, all
/// messages. A message is sent in the form that it had, and in the binary form if it is only there as JSON.
/// \param path a file, or "-" for standard input
/// \throws Refusal when anything in the recording cannot be read, or all
/// exchanges in it have the other direction.
std::vector<PlayedItem> playedItems(const QString& path, Played played);

} // namespace routermsg
