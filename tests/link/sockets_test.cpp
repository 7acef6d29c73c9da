// SPDX-License-Identifier: MIT
// Channels on sockets of the system, with peers that are slow, end only one direction, or vanish.
#include "ChannelSupport.h"
#include "SocketSupport.h"

#include <QtNetwork/QTcpServer>

#include <limits>
#include <memory>
#include <vector>

using namespace link_support;
using namespace std::chrono_literals;

namespace {

// A channel on a socket, and the other end of the connection.
template <class Socket>
struct Sockets : ::testing::Test
{
    Sockets()
    {
        auto ends = connectedSockets<Socket>();
        peer = std::move(ends.second);
        // Both ends hold little, so that a few messages fill them.
        constexpr int fewBytes = 4096;
        ends.first.setOption(SO_SNDBUF, fewBytes);
        peer.setOption(SO_RCVBUF, fewBytes);
        adopt(socket, std::move(ends.first));
    }

    // Reads until the connection has ended, or so many bytes have come.
    void receive(QByteArray& bytes, int size = std::numeric_limits<int>::max())
    {
        waitUntil([&] {
            peer.receiveNow(bytes);
            return bytes.size() >= size || peer.hasEnded();
        });
    }

    // Sends events until the queue is full and the system takes no more. Returns how many.
    static int fill(MessageChannel& channel)
    {
        int sent = 0;
        for (int before = -1; sent > before; settle())
            for (before = sent; channel.Send(event(1)); ++sent) {
            }
        EXPECT_EQ(channel.GetSendFailure().kind, Failure::InputTooLarge);
        return sent;
    }

    RawSocket peer;
    Socket socket;
};

using BothSockets = ::testing::Types<QTcpSocket, QLocalSocket>;
TYPED_TEST_SUITE(Sockets, BothSockets, SocketName);

QByteArray inForm(Form form, const PelLu300RouterInterfaceXml& document)
{
    PelLu300RouterInterfaceXml copy(document);
    return ROUTERDOCUMENTS::WriteDocument(copy, form);
}

QByteArray binaryEvents(int count) { return inForm(Form::Binary, event(1)).repeated(count); }

ChannelOptions withQueue(qint64 size)
{
    ChannelOptions options;
    options.queueSize = size;
    return options;
}

quint16 unusedPort()
{
    QTcpServer server;
    EXPECT_TRUE(server.listen(QHostAddress::LocalHost));
    return server.serverPort();
}

QString unsent(qint64 bytes)
{
    return QStringLiteral("The connection has ended before %1 bytes were sent.").arg(bytes);
}

void answerAll(MessageChannel& channel)
{
    QObject::connect(&channel, &MessageChannel::MessageReceived,
                     [&channel](const PelLu300RouterInterfaceXml& request) {
                         EXPECT_TRUE(channel.Send(reply(numberOf(request))))
                             << channel.GetSendFailure().text.toStdString();
                     });
}

} // namespace

TYPED_TEST(Sockets, PassMessagesInAllFormsInBothDirections)
{
    TypeParam other;
    adopt(other, std::move(this->peer));
    MessageChannel server(other);
    answerAll(server);
    for (const Form form : wireForms) {
        MessageChannel client(this->socket, {form});
        std::vector<std::unique_ptr<Result>> results;
        for (unsigned int number = 1; number <= 300; ++number)
            results.push_back(std::make_unique<Result>(client.Request(numbered(number), 1h)));
        waitUntil([&] { return results.back()->count > 0; });
        for (const auto& result : results)
            EXPECT_EQ(result->result.reply, reply(result->messageID)) << NameOf(form).toStdString();
        EXPECT_EQ(server.GetPeerForm(), form);
        EXPECT_EQ(client.GetPeerForm(), form);
    }
}

TEST(MessageChannel, ClosesWhenNoConnectionComesAbout)
{
    QTcpSocket socket;
    MessageChannel channel(socket);
    const Diary diary(channel);
    socket.connectToHost(QStringLiteral("127.0.0.1"), unusedPort());
    const Result request(channel.Request(numbered(1), 1h));
    waitUntil([&] { return diary.isClosed(); });
    EXPECT_EQ(diary.closing.kind, Failure::InputOutput);
    // The versions of Qt tell it in different ways.
    EXPECT_TRUE(diary.closing.text.contains("Connection refused")
                || diary.closing.text == unsent(binary(1).size()))
        << diary.closing.text.toStdString();
    EXPECT_EQ(request.result.outcome, RequestResult::Failed);
    EXPECT_EQ(request.result.failure.text, diary.closing.text);
}

TYPED_TEST(Sockets, ReadFromASenderOfSingleBytes)
{
    MessageChannel channel(this->socket);
    const Diary diary(channel);
    int arrivals = 0;
    QObject::connect(&this->socket, &QIODevice::readyRead, [&arrivals] { ++arrivals; });
    unsigned int number = 0;
    for (const Form form : wireForms) {
        ++number;
        for (const char byte : link_support::inForm(form, number).trimmed()) {
            EXPECT_EQ(diary.lines.size(), int(number) - 1);
            const int before = arrivals;
            this->peer.send(QByteArray(1, byte));
            waitUntil([&] { return arrivals > before; });
        }
        waitUntil([&] { return diary.lines.size() == int(number); });
        EXPECT_EQ(diary.lines.constLast(), QStringLiteral("received %1").arg(number));
    }
}

TYPED_TEST(Sockets, BoundWhatWaitsForASlowReader)
{
    constexpr qint64 queueSize = 10000;
    MessageChannel channel(this->socket, withQueue(queueSize));
    const Diary diary(channel);
    const int sent = this->fill(channel);
    // While the system took everything.
    const int drainedBefore = diary.drained;
    const QByteArray expected = binaryEvents(sent);
    EXPECT_GT(expected.size(), queueSize) << "the system has taken some";
    EXPECT_LE(channel.GetQueuedBytes(), queueSize);
    EXPECT_GT(channel.GetQueuedBytes(), queueSize - 100);
    EXPECT_FALSE(channel.IsClosed());

    QByteArray received;
    this->receive(received, int(expected.size()));
    waitUntil([&] { return diary.drained > drainedBefore; });
    EXPECT_EQ(diary.drained, drainedBefore + 1);
    EXPECT_EQ(channel.GetQueuedBytes(), 0);
    EXPECT_TRUE(channel.Send(event(1)));
    this->receive(received, int(expected.size()) + 1);
    EXPECT_EQ(received, expected + binaryEvents(1)) << "all messages that were taken, and nothing else";
}

// --- the end of the connection ----------------------------------------------------------------

TYPED_TEST(Sockets, AnswerAPeerThatHasEndedItsDirection)
{
    MessageChannel channel(this->socket);
    const Diary diary(channel);
    answerAll(channel);
    this->peer.send(binary(1) + xml(2));
    this->peer.shutDown(SHUT_WR);
    QByteArray replies;
    this->receive(replies);
    EXPECT_TRUE(replies.startsWith(inForm(Form::Binary, reply(1))));
    EXPECT_TRUE(
        replies.endsWith("<MessageID>2</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>\n"));
    EXPECT_EQ(diary.lines, QStringList({"received 1", "received 2", "closed"}))
        << diary.closing.text.toStdString();
}

TYPED_TEST(Sockets, TellHowMuchIsNotSentToAPeerThatHasEndedItsDirection)
{
    MessageChannel channel(this->socket, withQueue(10000));
    const Diary diary(channel);
    const int sent = this->fill(channel);
    this->peer.shutDown(SHUT_WR);
    waitUntil([&] { return diary.isClosed(); });
    QByteArray received;
    this->receive(received);
    const QByteArray all = binaryEvents(sent);
    EXPECT_TRUE(all.startsWith(received));
    EXPECT_EQ(diary.closing.text, unsent(all.size() - received.size()));
}

TYPED_TEST(Sockets, ReadFromAPeerThatReadsNoMore)
{
    MessageChannel channel(this->socket);
    const Diary diary(channel);
    this->peer.send(binary(1));
    this->peer.shutDown(SHUT_RD);
    waitUntil([&] { return !diary.lines.isEmpty(); });
    EXPECT_EQ(diary.lines.first(), "received 1");
    EXPECT_TRUE(channel.Send(event(1)));
    if (std::is_same_v<TypeParam, QTcpSocket>) {
        // Nothing on the network tells the other end.
        this->peer.send(binary(2));
        waitUntil([&] { return diary.lines.size() == 2; });
        EXPECT_EQ(diary.lines.last(), "received 2");
        return;
    }
    waitUntil([&] { return diary.isClosed(); });
    EXPECT_EQ(diary.closing.text, unsent(binaryEvents(1).size()));
}

TYPED_TEST(Sockets, FailRequestsWhenThePeerVanishes)
{
    MessageChannel channel(this->socket);
    const Diary diary(channel);
    this->peer.send(binary(1));
    const Result waiting(channel.Request(numbered(7), 1h));
    QByteArray request;
    waitUntil([&] {
        this->peer.receiveNow(request);
        return request == binary(7) && !diary.lines.isEmpty();
    });
    this->peer.reset();
    waitUntil([&] { return diary.isClosed(); });
    EXPECT_EQ(diary.lines, QStringList({"received 1", "closed"}));
    EXPECT_EQ(waiting.count, 1);
    EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
    EXPECT_EQ(waiting.result.failure.text, text("The connection has ended before the reply came."));
    EXPECT_FALSE(channel.Send(event(1)));
}

TYPED_TEST(Sockets, TellThatThePeerHasVanishedInsideAMessage)
{
    for (const Form form : wireForms) {
        auto ends = connectedSockets<TypeParam>();
        TypeParam near;
        adopt(near, std::move(ends.first));
        MessageChannel channel(near);
        const Diary diary(channel);
        ends.second.send(binary(1) + link_support::inForm(form, 2).trimmed().chopped(5));
        waitUntil([&] { return !diary.lines.isEmpty(); });
        ends.second.reset();
        waitUntil([&] { return diary.isClosed(); });
        EXPECT_EQ(diary.lines, QStringList({"received 1", "broken"}));
        EXPECT_TRUE(diary.closing.text.contains("is cut off")) << diary.closing.text.toStdString();
    }
}

TYPED_TEST(Sockets, TellHowMuchIsNotSentWhenThePeerVanishes)
{
    MessageChannel channel(this->socket, withQueue(10000));
    const Diary diary(channel);
    this->fill(channel);
    const qint64 waiting = channel.GetQueuedBytes();
    EXPECT_GT(waiting, 0);
    this->peer.reset();
    waitUntil([&] { return diary.isClosed(); });
    EXPECT_EQ(diary.lines, QStringList("broken"));
    EXPECT_EQ(diary.closing.kind, Failure::InputOutput);
    EXPECT_EQ(diary.closing.text, unsent(waiting));
}
