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

/// The messages and faulty bytes that a client has sent, as the recording tells; if it does not tell, all
/// messages. A message is sent in the form that it had, and in the binary form if it is only there as JSON.
/// \param path a file, or "-" for standard input
/// \throws Refusal when anything in the recording cannot be read.
std::vector<PlayedItem> playedItems(const QString& path);

} // namespace routermsg
