// SPDX-License-Identifier: MIT
// A server with a thousand clients at once.
#include "ChannelSupport.h"
#include "EventLoop.h"

#include <QtNetwork/QTcpServer>
#include <QtNetwork/QTcpSocket>

#include <memory>
#include <vector>

#include <sys/resource.h>

using namespace link_support;
using namespace std::chrono_literals;

namespace {

constexpr int clientCount = 1000;

// Whether the process may have so many open files.
bool mayOpen(rlim_t files)
{
    rlimit limit{};
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &limit), 0);
    if (limit.rlim_cur >= files)
        return true;
    if (limit.rlim_max < files)
        return false;
    limit.rlim_cur = files;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

// Answers all requests of all clients.
class Server
{
public:
    Server()
    {
        EXPECT_TRUE(m_listening.listen(QHostAddress::LocalHost)) << m_listening.errorString().toStdString();
        QObject::connect(&m_listening, &QTcpServer::newConnection, [this] {
            while (QTcpSocket* const socket = m_listening.nextPendingConnection())
                accept(*socket);
        });
    }

    quint16 port() const { return m_listening.serverPort(); }

    int clients = 0;
    int closed = 0;

private:
    void accept(QTcpSocket& socket)
    {
        ++clients;
        auto* const channel = new MessageChannel(socket, {}, &socket);
        QObject::connect(channel, &MessageChannel::MessageReceived,
                         [channel](const PelLu300RouterInterfaceXml& request) {
                             EXPECT_TRUE(channel->Send(reply(numberOf(request))));
                         });
        QObject::connect(channel, &MessageChannel::Closed, [this, &socket](const Failure& failure) {
            EXPECT_EQ(failure.kind, Failure::None) << failure.text.toStdString();
            ++closed;
            socket.deleteLater();
        });
    }

    QTcpServer m_listening;
};

struct Client
{
    Client(quint16 port, Form form) : channel(socket, {form})
    {
        socket.connectToHost(QHostAddress::LocalHost, port);
    }

    QTcpSocket socket;
    MessageChannel channel;
};

} // namespace

TEST(MessageChannel, ServesAThousandClientsAtOnce)
{
    constexpr rlim_t others = 100;
    if (!mayOpen(2 * rlim_t(clientCount) + others))
        GTEST_SKIP() << "This user may not open as many files as the test has sockets.";
    Server server;
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < clientCount; ++i) {
        clients.push_back(std::make_unique<Client>(server.port(), wireForms[i % 3]));
        // The system keeps only a few connections that the server has not accepted yet.
        waitUntil([&] {
            return server.clients == i + 1 && clients.back()->socket.state() == QTcpSocket::ConnectedState;
        });
    }
    for (int round = 1; round <= 3; ++round) {
        std::vector<std::unique_ptr<Result>> results;
        for (int i = 0; i < clientCount; ++i)
            results.push_back(std::make_unique<Result>(
                clients[std::size_t(i)]->channel.Request(numbered(unsigned(round * 10000 + i)), 1h)));
        int finished = 0;
        waitUntil([&] {
            while (finished < clientCount && results[std::size_t(finished)]->count > 0)
                ++finished;
            return finished == clientCount;
        });
        for (int i = 0; i < clientCount; ++i) {
            const RequestResult& result = results[std::size_t(i)]->result;
            ASSERT_EQ(result.outcome, RequestResult::Replied) << result.failure.text.toStdString();
            EXPECT_EQ(result.reply, reply(unsigned(round * 10000 + i)));
            EXPECT_EQ(clients[std::size_t(i)]->channel.GetPeerForm(), wireForms[i % 3]);
        }
    }
    EXPECT_EQ(server.clients, clientCount);
    clients.clear();
    waitUntil([&] { return server.closed == clientCount; });
}
