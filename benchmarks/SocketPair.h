// SPDX-License-Identifier: MIT
// Messages through a pair of sockets in one event loop, for all contenders alike.
#pragma once

#include "Require.h"
#include "Results.h"
#include "Suite.h"

#include <QtCore/QByteArray>
#include <QtNetwork/QLocalSocket>

#include <functional>
#include <memory>

namespace benchmarks {

// One end of a connection, as a contender uses it.
class Contact
{
public:
    virtual ~Contact() = default;
    // Sends the canonical message with one fragment.
    virtual void send() = 0;
    // Called for each message that was received and is right.
    std::function<void()> received;
};

// Makes the end that uses the socket, which it must not own.
using MakeEnd = std::function<std::unique_ptr<Contact>(QLocalSocket& socket)>;

// So many messages are sent, and all received.
Prepare streaming(const MakeEnd& make);
// One message is sent and answered by another one.
Prepare answering(const MakeEnd& make);

} // namespace benchmarks
