// SPDX-License-Identifier: MIT
// Sockets of the system that are connected to each other. A test can give one end to a channel and do with
// the other one what no well-behaved peer does.
#pragma once

#include "EventLoop.h"

#include <QtCore/QByteArray>
#include <QtNetwork/QLocalSocket>
#include <QtNetwork/QTcpSocket>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace testing_support {

// A socket of the system.
class RawSocket
{
public:
    explicit RawSocket(int descriptor = -1) : m_descriptor(descriptor) {}
    RawSocket(RawSocket&& other) noexcept : m_descriptor(other.release()) {}
    RawSocket& operator=(RawSocket&& other) noexcept
    {
        std::swap(m_descriptor, other.m_descriptor);
        return *this;
    }
    ~RawSocket() { close(); }

    int descriptor() const { return m_descriptor; }
    int release() { return std::exchange(m_descriptor, -1); }

    void close()
    {
        if (m_descriptor >= 0) {
            EXPECT_EQ(::close(release()), 0);
        }
    }

    // What has arrived is lost, and the other end gets no orderly end of the connection.
    void reset()
    {
        setOption(SO_LINGER, linger{1, 0});
        close();
    }

    // How: SHUT_RD, SHUT_WR.
    void shutDown(int how) const { EXPECT_EQ(::shutdown(m_descriptor, how), 0); }

    template <class Value>
    void setOption(int name, const Value& value) const
    {
        EXPECT_EQ(::setsockopt(m_descriptor, SOL_SOCKET, name, &value, sizeof value), 0);
    }

    void send(const QByteArray& bytes) const
    {
        EXPECT_EQ(
            ::send(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL),
            bytes.size());
    }

    // Appends what has arrived so far.
    void receiveNow(QByteArray& bytes)
    {
        char block[1 << 16];
        while (true) {
            const ssize_t size = ::recv(m_descriptor, block, sizeof block, MSG_DONTWAIT);
            if (size == 0)
                m_hasEnded = true;
            if (size <= 0)
                return;
            bytes.append(block, static_cast<int>(size));
        }
    }

    // Whether the other end has ended what it sends.
    bool hasEnded() const { return m_hasEnded; }

private:
    int m_descriptor;
    bool m_hasEnded = false;
};

// Two ends that are connected over the network of this machine.
inline std::pair<RawSocket, RawSocket> connectedTcpSockets()
{
    const RawSocket listening(::socket(AF_INET, SOCK_STREAM, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* const general = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    EXPECT_EQ(::bind(listening.descriptor(), general, size), 0);
    EXPECT_EQ(::listen(listening.descriptor(), 1), 0);
    EXPECT_EQ(::getsockname(listening.descriptor(), general, &size), 0);
    RawSocket near(::socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_EQ(::connect(near.descriptor(), general, size), 0);
    return {std::move(near), RawSocket(::accept(listening.descriptor(), nullptr, nullptr))};
}

inline std::pair<RawSocket, RawSocket> connectedLocalSockets()
{
    int ends[2] = {-1, -1};
    EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    return {RawSocket(ends[0]), RawSocket(ends[1])};
}

template <class Socket>
std::pair<RawSocket, RawSocket> connectedSockets()
{
    return std::is_same_v<Socket, QTcpSocket> ? connectedTcpSockets() : connectedLocalSockets();
}

// Gives the descriptor to a socket of Qt.
template <class Socket>
void adopt(Socket& socket, RawSocket raw)
{
    ASSERT_TRUE(socket.setSocketDescriptor(raw.release()));
}

struct SocketName
{
    template <class Socket>
    static std::string GetName(int)
    {
        return std::is_same_v<Socket, QTcpSocket> ? "Tcp" : "Local";
    }
};

} // namespace testing_support
