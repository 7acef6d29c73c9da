// SPDX-License-Identifier: MIT
#include "simulator/Interruption.h"

#include <QtCore/QSocketNotifier>

#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace ROUTERSIM {

namespace {

// A signal handler may write to a pipe, and do little else.
int pipeEnds[2] = {-1, -1};

extern "C" void interrupted(int)
{
    const int before = errno;
    const char byte = 0;
    // A full pipe has bytes enough.
    static_cast<void>(!::write(pipeEnds[1], &byte, 1));
    errno = before;
}

} // namespace

bool onInterruption(QObject& context, const std::function<void()>& action)
{
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0)
        return false;
    auto* const notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, &context);
    QObject::connect(notifier, &QSocketNotifier::activated, &context, [notifier, action] {
        notifier->setEnabled(false);
        action();
    });
    struct sigaction handler = {};
    handler.sa_handler = interrupted;
    handler.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    return ::sigaction(SIGINT, &handler, nullptr) == 0 && ::sigaction(SIGTERM, &handler, nullptr) == 0;
}

} // namespace ROUTERSIM
