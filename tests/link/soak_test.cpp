// SPDX-License-Identifier: MIT
// Many messages over channels, with memory that stays as it is. SOAK_MESSAGES sets how many; scripts/soak.sh
// sends a million.
#include "ChannelSupport.h"
#include "SocketSupport.h"

#include <QtCore/QFile>

#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <malloc.h>

using namespace link_support;
using namespace std::chrono_literals;

namespace {

// What the process has of memory, in bytes.
struct Memory
{
    qint64 heap = 0;
    qint64 resident = 0;
};

Memory memoryNow()
{
    Memory memory;
    const auto heap = mallinfo2();
    // Large blocks are not part of the arenas.
    memory.heap = qint64(heap.uordblks) + qint64(heap.hblkhd);
    QFile statistics(QStringLiteral("/proc/self/statm"));
    EXPECT_TRUE(statistics.open(QIODevice::ReadOnly));
    memory.resident = statistics.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
    return memory;
}

// Not so with sanitizers, which have their own allocator.
bool isHeapCounted()
{
    constexpr int size = 1 << 20;
    const qint64 before = memoryNow().heap;
    const QByteArray block(size, 'x');
    return memoryNow().heap >= before + block.size();
}

qint64 messagesToPass()
{
    constexpr qint64 few = 15000;
    const QByteArray wanted = qgetenv("SOAK_MESSAGES");
    bool isNumber = false;
    const qint64 number = wanted.toLongLong(&isNumber);
    EXPECT_TRUE(wanted.isEmpty() || (isNumber && number >= 1000)) << "SOAK_MESSAGES is a number from 1000 on";
    return isNumber ? number : few;
}

// A client that asks, some requests at a time, and a server that answers with an event and a reply.
class Pair
{
public:
    explicit Pair(Form form)
    {
        auto ends = connectedLocalSockets();
        adopt(m_clientSocket, std::move(ends.first));
        adopt(m_serverSocket, std::move(ends.second));
        m_client = std::make_unique<MessageChannel>(m_clientSocket, ChannelOptions{form});
        m_server = std::make_unique<MessageChannel>(m_serverSocket);
        QObject::connect(m_server.get(), &MessageChannel::MessageReceived,
                         [this](const PelLu300RouterInterfaceXml& request) { answer(request); });
        QObject::connect(m_client.get(), &MessageChannel::MessageReceived, [this] { ++events; });
        constexpr int atOnce = 20;
        for (int i = 0; i < atOnce; ++i)
            ask();
    }

    bool isAsking = true;
    qint64 asked = 0;
    qint64 requests = 0;
    qint64 events = 0;
    qint64 replies = 0;

private:
    void ask()
    {
        PelLu300RouterInterfaceXml request;
        PelLu300RouterMessage& message = request.GetPelLu300RouterMessage();
        for (int i = int(asked++ % 5); i > 0; --i) {
            Fragment fragment;
            fragment.GetPelVtConnectServer().SetAddress(QStringLiteral("192.0.2.%1").arg(i));
            fragment.GetPelVtConnectServer().SetPort(5600);
            message.AppendFragment(fragment);
        }
        const auto fragments = message.GetFragment().size();
        QObject::connect(
            m_client->Request(request, 1h), &PendingRequest::Finished,
            [this, fragments](const RequestResult& result) {
                ASSERT_EQ(result.outcome, RequestResult::Replied) << result.failure.text.toStdString();
                ASSERT_EQ(result.reply.GetPelLu300RouterMessage().GetFragment().size(), fragments);
                ++replies;
                if (isAsking)
                    ask();
            });
    }

    void answer(const PelLu300RouterInterfaceXml& request)
    {
        ++requests;
        PelLu300RouterInterfaceXml answer(request);
        answer.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Reply);
        EXPECT_TRUE(m_server->Send(event(numberOf(request))));
        EXPECT_TRUE(m_server->Send(answer));
    }

    QLocalSocket m_clientSocket;
    QLocalSocket m_serverSocket;
    std::unique_ptr<MessageChannel> m_client;
    std::unique_ptr<MessageChannel> m_server;
};

} // namespace

TEST(Soak, NeedsTheSameMemoryFromTheTenthPartToTheEnd)
{
    const bool isCounted = isHeapCounted();
    const qint64 toPass = messagesToPass();
    std::vector<std::unique_ptr<Pair>> pairs;
    for (const Form form : wireForms)
        pairs.push_back(std::make_unique<Pair>(form));
    std::vector<Memory> tenths;
    qint64 passed = 0;
    while (tenths.size() < 10 && !::testing::Test::HasFailure()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        passed = 0;
        for (const auto& pair : pairs)
            passed += pair->requests + pair->events + pair->replies;
        if (passed * 10 >= toPass * (qint64(tenths.size()) + 1))
            tenths.push_back(memoryNow());
    }
    ASSERT_EQ(tenths.size(), 10U);
    for (const auto& pair : pairs)
        pair->isAsking = false;
    for (const auto& pair : pairs) {
        waitUntil([&pair] { return pair->replies == pair->asked; });
        EXPECT_EQ(pair->requests, pair->asked);
        EXPECT_EQ(pair->events, pair->asked);
        EXPECT_GT(pair->asked, toPass / 20) << "none is left behind";
    }
    std::cout << passed << " messages\n";
    for (const Memory& memory : tenths)
        std::cout << "heap " << memory.heap << ", resident " << memory.resident << " bytes\n";
    if (!isCounted)
        GTEST_SKIP() << "The memory is not counted here, because another allocator is used.";
    constexpr qint64 buffers = 100000;
    constexpr qint64 pages = 1 << 20;
    EXPECT_LE(tenths.back().heap, tenths.front().heap + buffers);
    EXPECT_LE(tenths.back().resident, tenths.front().resident + pages);
}
