// SPDX-License-Identifier: MIT
// Channels in several threads, connected by sockets of the system.
#include "ChannelSupport.h"
#include "SocketSupport.h"

#include <QtCore/QEventLoop>

#include <functional>
#include <thread>
#include <utility>
#include <vector>

using namespace link_support;
using namespace std::chrono_literals;

// The libraries of Qt are not compiled for the thread sanitizer, which therefore knows nothing of their
// locks.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }

namespace {

constexpr unsigned int requests = 300;

// Answers each request, with an event before each answer, until the peer ends the connection.
template <class Socket>
void serve(RawSocket end)
{
    // Sockets of a thread need its event loop from the beginning.
    QEventLoop loop;
    Socket socket;
    adopt(socket, std::move(end));
    MessageChannel channel(socket);
    unsigned int received = 0;
    QObject::connect(&channel, &MessageChannel::MessageReceived,
                     [&](const PelLu300RouterInterfaceXml& request) {
                         ++received;
                         EXPECT_TRUE(channel.Send(event(numberOf(request))));
                         EXPECT_TRUE(channel.Send(reply(numberOf(request))));
                     });
    QObject::connect(&channel, &MessageChannel::Closed, [&loop](const Failure& failure) {
        EXPECT_EQ(failure.kind, Failure::None) << failure.text.toStdString();
        loop.quit();
    });
    loop.exec();
    EXPECT_EQ(received, requests);
}

// Asks, a few requests at a time, and ends the connection after the last reply.
template <class Socket>
void ask(RawSocket end, Form form)
{
    QEventLoop loop;
    Socket socket;
    adopt(socket, std::move(end));
    MessageChannel channel(socket, {form});
    unsigned int asked = 0;
    unsigned int replies = 0;
    unsigned int events = 0;
    QObject::connect(&channel, &MessageChannel::MessageReceived, [&events] { ++events; });
    QObject::connect(&channel, &MessageChannel::Closed, &loop, &QEventLoop::quit);
    const std::function<void()> askNext = [&] {
        const unsigned int number = ++asked;
        QObject::connect(channel.Request(numbered(number), 1h), &PendingRequest::Finished,
                         [&, number](const RequestResult& result) {
                             EXPECT_EQ(result.outcome, RequestResult::Replied)
                                 << result.failure.text.toStdString();
                             EXPECT_EQ(result.reply, reply(number));
                             EXPECT_EQ(channel.GetPeerForm(), form);
                             if (++replies == requests)
                                 channel.Close();
                             else if (asked < requests)
                                 askNext();
                         });
    };
    constexpr int atOnce = 10;
    for (int i = 0; i < atOnce; ++i)
        askNext();
    loop.exec();
    EXPECT_EQ(replies, requests);
    EXPECT_EQ(events, requests);
}

template <class Socket>
struct SocketThreads : ::testing::Test
{
};

using BothSockets = ::testing::Types<QTcpSocket, QLocalSocket>;
TYPED_TEST_SUITE(SocketThreads, BothSockets, SocketName);

} // namespace

TYPED_TEST(SocketThreads, TalkToEachOtherInEveryForm)
{
    std::vector<std::thread> threads;
    for (const Form form : wireForms) {
        auto ends = connectedSockets<TypeParam>();
        threads.emplace_back(serve<TypeParam>, std::move(ends.first));
        threads.emplace_back(ask<TypeParam>, std::move(ends.second), form);
    }
    for (std::thread& thread : threads)
        thread.join();
}
