// SPDX-License-Identifier: MIT
// What the tests of devices that deliver later share: limits with a waiting time, and a socket.
#pragma once

#include "TestSupport.h"

#include <cerrno>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace testing_support {

inline MODELKIT::Limits waiting(int milliseconds)
{
    MODELKIT::Limits limits;
    limits.waitingTime = milliseconds;
    return limits;
}

// One end of a socket, as a device that delivers what has arrived and can wait for more, like a network
// socket. The test writes to the other end.
class Socket : public QIODevice
{
public:
    Socket()
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        m_near = ends[0];
        m_far = ends[1];
        open(QIODevice::ReadOnly);
    }
    ~Socket() override
    {
        ::close(m_near);
        end();
    }

    bool isSequential() const override { return true; }

    bool waitForReadyRead(int milliseconds) override
    {
        ++waits;
        pollfd waited = {m_near, POLLIN, 0};
        if (::poll(&waited, 1, milliseconds) <= 0)
            return false;
        char byte = 0;
        return ::recv(m_near, &byte, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
    }

    void send(const QByteArray& content) const
    {
        EXPECT_EQ(::send(m_far, content.constData(), static_cast<size_t>(content.size()), 0), content.size());
    }
    void end()
    {
        if (m_far >= 0)
            ::close(m_far);
        m_far = -1;
    }

    int waits = 0;

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const ssize_t got = ::recv(m_near, data, static_cast<size_t>(size), MSG_DONTWAIT);
        if (got > 0)
            return got;
        if (got < 0 && errno == EAGAIN)
            return 0;
        setErrorString(text("The remote host closed the connection"));
        return -1;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    int m_near = -1;
    int m_far = -1;
};

} // namespace testing_support
