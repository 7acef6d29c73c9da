// SPDX-License-Identifier: MIT
// Channels that are connected to each other, and what happens when devices and peers fail.
#include "ChannelSupport.h"
#include "EventLoop.h"
#include "PipeDevice.h"

#include "link/MessageChannel.h"

#include <QtCore/QProcess>
#include <QtCore/QThread>
#include <QtCore/QVariant>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <random>
#include <stdexcept>
#include <vector>

using namespace link_support;
using namespace std::chrono_literals;

namespace {

struct TwoChannels : ::testing::Test
{
    TwoChannels() { PipeEnd::connectEnds(nearEnd, farEnd); }

    // Reads what was sent, without a channel.
    static QByteArray arrivedAt(PipeEnd& end)
    {
        settle();
        return end.readAll();
    }

    PipeEnd nearEnd;
    PipeEnd farEnd;
};

} // namespace

// --- sending and receiving --------------------------------------------------------------------

TEST_F(TwoChannels, PassMessagesInBothDirections)
{
    MessageChannel left(nearEnd);
    MessageChannel right(farEnd);
    const Diary leftDiary(left);
    const Diary rightDiary(right);
    for (unsigned int number = 1; number <= 100; ++number) {
        ASSERT_TRUE(left.Send(numbered(number)));
        ASSERT_TRUE(right.Send(event(number)));
    }
    EXPECT_EQ(leftDiary.lines, QStringList()) << "nothing happens before the event loop runs";
    settle();
    QStringList expected;
    for (int number = 1; number <= 100; ++number)
        expected += QStringLiteral("received %1").arg(number);
    EXPECT_EQ(leftDiary.lines, expected);
    EXPECT_EQ(rightDiary.lines, expected);
    EXPECT_GE(leftDiary.drained, 1);
    EXPECT_EQ(left.GetQueuedBytes(), 0);
    left.Close();
    settle();
    EXPECT_EQ(leftDiary.lines, expected + QStringList("closed"));
    EXPECT_EQ(rightDiary.lines, expected + QStringList("closed"));
    EXPECT_TRUE(left.IsClosed());
    EXPECT_TRUE(right.IsClosed());
    EXPECT_FALSE(farEnd.isOpen());
}

TEST_F(TwoChannels, ReadWhatHadArrivedBefore)
{
    ASSERT_EQ(farEnd.write(binary(1)), binary(1).size());
    settle();
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    settle();
    EXPECT_EQ(diary.lines, QStringList("received 1"));
}

TEST_F(TwoChannels, AnswerInTheFormOfThePeer)
{
    MessageChannel channel(nearEnd);
    EXPECT_FALSE(channel.GetPeerForm());
    ASSERT_TRUE(channel.Send(event(1)));
    EXPECT_EQ(ROUTERDOCUMENTS::FormOfContent(arrivedAt(farEnd)), Form::Binary);
    for (const Form form : wireForms) {
        farEnd.write(inForm(form, 7));
        settle();
        EXPECT_EQ(channel.GetPeerForm(), form);
        ASSERT_TRUE(channel.Send(event(1)));
        const QByteArray bytes = arrivedAt(farEnd);
        EXPECT_EQ(ROUTERDOCUMENTS::FormOfContent(bytes), form);
        if (form == Form::Xml) {
            EXPECT_TRUE(bytes.endsWith("</PelLu300RouterInterfaceXml>\n"));
            EXPECT_EQ(bytes.count('\n'), 1) << "one line";
        }
    }
}

TEST_F(TwoChannels, SendInTheChosenForm)
{
    for (const Form form : wireForms) {
        MessageChannel channel(nearEnd, {form});
        farEnd.write(inForm(form == Form::Xml ? Form::Binary : Form::Xml, 7));
        settle();
        ASSERT_TRUE(channel.Send(event(1)));
        EXPECT_EQ(ROUTERDOCUMENTS::FormOfContent(arrivedAt(farEnd)), form);
    }
    MessageChannel channel(nearEnd, {Form::Json});
    EXPECT_FALSE(channel.Send(event(1)));
    EXPECT_EQ(channel.GetSendFailure().text, text("json is no form of messages on a connection."));
    EXPECT_TRUE(arrivedAt(farEnd).isEmpty());
}

TEST_F(TwoChannels, RefuseDocumentsThatCannotBeSent)
{
    ChannelOptions options;
    options.validation = ROUTERDOCUMENTS::Validation::On;
    MessageChannel channel(nearEnd, options);
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetMessageID(1);
    EXPECT_FALSE(channel.Send(document));
    EXPECT_EQ(channel.GetSendFailure().kind, Failure::Refused);
    EXPECT_EQ(channel.GetSendFailure().text, text("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_TRUE(channel.Send(event(1)));
    EXPECT_EQ(channel.GetSendFailure().kind, Failure::None);

    MessageChannel xmlChannel(nearEnd, {Form::Xml});
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString(QChar(1)));
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    EXPECT_FALSE(xmlChannel.Send(document));
    EXPECT_EQ(xmlChannel.GetSendFailure().kind, Failure::NotRepresentable);
    EXPECT_EQ(arrivedAt(farEnd).size(), binary(1).size() - 2) << "only the event, whose type is shorter";
}

TEST_F(TwoChannels, GoOnBehindAMessageThatIsRefused)
{
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    farEnd.write(binary(1) + binaryWithWrongEntry() + xml(2));
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 1", "refused", "received 2"}));
    EXPECT_TRUE(diary.refusals.value(0).contains("Length error"));
}

TEST_F(TwoChannels, GiveTheBytesThatCannotBeReadWhileTheyTellOfThem)
{
    MessageChannel client(nearEnd);
    QVector<QByteArray> faulty;
    const auto note = [&] { faulty += client.GetFaultyBytes(); };
    QObject::connect(&client, &MessageChannel::MessageRefused, &client, note);
    QObject::connect(&client, &MessageChannel::Closed, &client, note);
    const QByteArray wrong = binaryWithWrongEntry();
    farEnd.write(binary(1) + wrong + binary(2) + "no message");
    waitUntil([&] { return client.IsClosed(); });
    EXPECT_EQ(faulty, (QVector<QByteArray>{wrong, "no message"}));
    EXPECT_TRUE(client.GetFaultyBytes().isEmpty());
}

TEST_F(TwoChannels, CloseWhereNobodyKnowsWhatFollows)
{
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    farEnd.write(binary(1) + "GET / HTTP/1.1\r\n\r\n" + binary(2));
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 1", "broken"}));
    EXPECT_EQ(diary.closing.kind, Failure::NotWellFormed);
    EXPECT_FALSE(nearEnd.isOpen());
    EXPECT_FALSE(channel.Send(event(1)));
    EXPECT_EQ(channel.GetSendFailure().text, text("The channel is closed."));
    channel.Close();
    EXPECT_EQ(diary.lines.size(), 2) << "only once";
}

// --- requests ---------------------------------------------------------------------------------

TEST_F(TwoChannels, MatchRepliesToRequests)
{
    MessageChannel client(nearEnd);
    MessageChannel server(farEnd);
    const Diary clientDiary(client);
    QVector<PelLu300RouterInterfaceXml> asked;
    QObject::connect(&server, &MessageChannel::MessageReceived,
                     [&asked](const PelLu300RouterInterfaceXml& request) { asked += request; });
    PelLu300RouterInterfaceXml unnumbered;
    unnumbered.GetPelLu300RouterMessage();
    const Result first(client.Request(unnumbered, 1h));
    const Result second(client.Request(numbered(first.messageID + 5), 1h));
    const Result third(client.Request(unnumbered, 1h));
    EXPECT_NE(first.messageID, third.messageID);
    settle();
    ASSERT_EQ(asked.size(), 3);
    EXPECT_EQ(asked.at(0), numbered(first.messageID)) << "type and number were set";
    ASSERT_TRUE(server.Send(reply(third.messageID)));
    ASSERT_TRUE(server.Send(event(first.messageID)));
    ASSERT_TRUE(server.Send(reply(second.messageID)));
    settle();
    EXPECT_EQ(first.count, 0);
    EXPECT_EQ(second.count, 1);
    EXPECT_EQ(second.result.outcome, RequestResult::Replied);
    EXPECT_EQ(second.result.reply, reply(second.messageID));
    EXPECT_EQ(second.result.failure.kind, Failure::None);
    EXPECT_EQ(third.result.reply, reply(third.messageID));
    EXPECT_EQ(clientDiary.lines, QStringList({QStringLiteral("received %1").arg(first.messageID)}));
    EXPECT_EQ(client.findChildren<PendingRequest*>().size(), 1) << "the others were deleted";

    ASSERT_TRUE(server.Send(reply(second.messageID)));
    ASSERT_TRUE(server.Send(reply(999)));
    settle();
    EXPECT_EQ(clientDiary.lines.mid(1),
              QStringList({QStringLiteral("unexpected %1").arg(second.messageID), "unexpected 999"}));
    EXPECT_EQ(second.count, 1);
}

TEST_F(TwoChannels, TellTimeOutsAndLateReplies)
{
    MessageChannel client(nearEnd);
    const Diary diary(client);
    const Result patient(client.Request(numbered(1), 1h));
    const Result hasty(client.Request(numbered(2), 5ms));
    const Result none(client.Request(numbered(3), -1ms));
    EXPECT_EQ(none.count, 0) << "not before the event loop runs";
    waitUntil([&] { return hasty.count + none.count == 2; });
    EXPECT_EQ(hasty.result.outcome, RequestResult::TimedOut);
    EXPECT_EQ(hasty.result.failure.kind, Failure::NotWholeYet);
    EXPECT_EQ(hasty.result.failure.text, text("No reply to the request 2 has come within 5 ms."));
    farEnd.write(reply(2).GetXmlBytes());
    settle();
    EXPECT_EQ(diary.lines, QStringList("late 2"));

    // Asked again with the same number, the reply is welcome.
    const Result again(client.Request(numbered(3), 1h));
    PelLu300RouterInterfaceXml three = reply(3);
    farEnd.write(three.GetXmlBytes());
    farEnd.write(three.GetXmlBytes());
    settle();
    EXPECT_EQ(again.result.outcome, RequestResult::Replied);
    EXPECT_EQ(diary.lines, QStringList({"late 2", "unexpected 3"}));
    EXPECT_EQ(patient.count, 0);
}

TEST_F(TwoChannels, ForgetRequestsThatAreDeleted)
{
    MessageChannel client(nearEnd);
    const Diary diary(client);
    delete client.Request(numbered(1), 1ms);
    PendingRequest* const refused = client.Request(event(2), 1h);
    const Result stillTold(client.Request(event(3), 1h));
    delete refused;
    farEnd.write(reply(1).GetXmlBytes());
    waitUntil([&] { return !diary.lines.isEmpty(); });
    EXPECT_EQ(diary.lines, QStringList("late 1"));
    EXPECT_EQ(stillTold.count, 1);
}

TEST_F(TwoChannels, FailRequestsThatCannotBeSent)
{
    MessageChannel client(nearEnd);
    const Result waiting(client.Request(numbered(1), 1h));
    const Result same(client.Request(numbered(1), 1h));
    const Result noRequest(client.Request(event(2), 1h));
    EXPECT_EQ(same.count + noRequest.count, 0) << "not before the event loop runs";
    settle();
    EXPECT_EQ(same.result.outcome, RequestResult::Failed);
    EXPECT_EQ(same.result.failure.text, text("Another request with the MessageID 1 waits for its reply."));
    EXPECT_EQ(noRequest.result.failure.kind, Failure::Refused);
    EXPECT_EQ(waiting.count, 0);
    client.Close();
    EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
    EXPECT_EQ(waiting.result.failure.text, text("The connection has ended before the reply came."));
    const Result afterwards(client.Request(numbered(4), 1h));
    settle();
    EXPECT_EQ(afterwards.result.failure.text, text("The channel is closed."));
    EXPECT_EQ(client.findChildren<PendingRequest*>().size(), 0);
}

TEST_F(TwoChannels, FailRequestsWhenTheChannelIsDestroyed)
{
    auto client = std::make_unique<MessageChannel>(nearEnd);
    const Result waiting(client->Request(numbered(1), 1h));
    const Result unsent(client->Request(event(1), 1h));
    client.reset();
    EXPECT_EQ(waiting.count + unsent.count, 2);
    EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
    EXPECT_TRUE(nearEnd.isOpen());
}

TEST_F(TwoChannels, FinishRequestsThatAreMadeWhileTheChannelIsDestroyed)
{
    auto* const client = new MessageChannel(nearEnd);
    int finished = 0;
    // Makes another request for each that fails, as a program does that tries again.
    const std::function<void()> request = [&] {
        QObject::connect(client->Request(numbered(1), 1h), &PendingRequest::Finished,
                         [&](const RequestResult& result) {
                             EXPECT_EQ(result.outcome, RequestResult::Failed);
                             if (++finished == 1)
                                 request();
                         });
    };
    request();
    delete client;
    EXPECT_EQ(finished, 1);
    settle();
    EXPECT_EQ(finished, 2);
}

// --- slow and failing devices -----------------------------------------------------------------

TEST_F(TwoChannels, SendEverythingThroughADeviceThatTakesLittle)
{
    nearEnd.taken = 3;
    nearEnd.passed = 2;
    MessageChannel left(nearEnd);
    MessageChannel right(farEnd);
    const Diary leftDiary(left);
    const Diary diary(right);
    for (unsigned int number = 1; number <= 20; ++number)
        ASSERT_TRUE(left.Send(numbered(number)));
    waitUntil([&] { return diary.lines.size() == 20; });
    EXPECT_EQ(diary.lines.constLast(), "received 20");
    settle();
    EXPECT_EQ(leftDiary.drained, 1) << "everything at once";
}

TEST_F(TwoChannels, BoundWhatWaitsForASlowPeer)
{
    const qint64 size = binary(1).size();
    nearEnd.passed = 0;
    ChannelOptions options;
    options.queueSize = 10 * size;
    MessageChannel channel(nearEnd, options);
    const Diary diary(channel);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(channel.Send(numbered(1)));
    EXPECT_EQ(channel.GetQueuedBytes(), 10 * size);
    EXPECT_FALSE(channel.Send(numbered(1)));
    EXPECT_EQ(channel.GetSendFailure().kind, Failure::InputTooLarge);
    const Result request(channel.Request(numbered(2), 1h));
    settle();
    EXPECT_EQ(request.result.outcome, RequestResult::Failed);
    EXPECT_EQ(request.result.failure.kind, Failure::InputTooLarge);
    EXPECT_EQ(diary.drained, 0);
    EXPECT_FALSE(channel.IsClosed());

    nearEnd.passed = 7;
    nearEnd.resume();
    waitUntil([&] { return diary.drained > 0; });
    EXPECT_EQ(channel.GetQueuedBytes(), 0);
    EXPECT_EQ(arrivedAt(farEnd), binary(1).repeated(10)) << "nothing of the refused one";
    EXPECT_TRUE(channel.Send(numbered(1)));
}

TEST_F(TwoChannels, TellWhatWasNotSentWhenThePeerVanishes)
{
    nearEnd.passed = 0;
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    const Result waiting(channel.Request(numbered(1), 1h));
    settle();
    farEnd.vanish();
    settle();
    EXPECT_EQ(diary.lines, QStringList("broken"));
    EXPECT_EQ(diary.closing.kind, Failure::InputOutput);
    EXPECT_EQ(diary.closing.text,
              QStringLiteral("The connection has ended before %1 bytes were sent.").arg(binary(1).size()));
    EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
    EXPECT_EQ(waiting.result.failure.text, diary.closing.text);
}

TEST_F(TwoChannels, TellWhatIsMissingWhenThePeerVanishesInsideAMessage)
{
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    farEnd.write(xml(1) + binary(2).chopped(3));
    settle();
    farEnd.vanish();
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 1", "broken"}));
    EXPECT_EQ(diary.closing.text, text("The binary form is cut off; 3 bytes are missing."));
}

TEST_F(TwoChannels, ReadEverythingBeforeTheDeviceIsClosed)
{
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    QObject::connect(&nearEnd, &QIODevice::readyRead, [this] { nearEnd.close(); });
    farEnd.write(binary(1).repeated(3));
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 1", "received 1", "received 1", "closed"}));
}

TEST_F(TwoChannels, CloseWhenTheDeviceFails)
{
    {
        MessageChannel channel(nearEnd);
        const Diary diary(channel);
        settle();
        nearEnd.failsReading = true;
        farEnd.write("x");
        settle();
        EXPECT_EQ(diary.lines, QStringList("broken"));
        EXPECT_EQ(diary.closing.kind, Failure::InputOutput);
        EXPECT_TRUE(diary.closing.text.contains("The cable is loose"));
    }
    PipeEnd written;
    PipeEnd other;
    PipeEnd::connectEnds(written, other);
    written.failsAfter = 10;
    written.taken = 10;
    MessageChannel channel(written);
    const Diary diary(channel);
    ASSERT_TRUE(channel.Send(event(1)));
    const Result waiting(channel.Request(numbered(2), 1h));
    settle();
    EXPECT_EQ(diary.lines, QStringList("broken"));
    EXPECT_TRUE(diary.closing.text.contains("The cable is cut")) << diary.closing.text.toStdString();
    EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
    EXPECT_FALSE(channel.Send(event(1)));
}

TEST_F(TwoChannels, TellAtOnceThatADeviceTakesNothing)
{
    nearEnd.failsAfter = 0;
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    EXPECT_FALSE(channel.Send(event(1)));
    EXPECT_TRUE(channel.GetSendFailure().text.contains("The cable is cut"));
    EXPECT_EQ(diary.lines, QStringList()) << "not inside of Send()";
    settle();
    EXPECT_EQ(diary.lines, QStringList("broken"));

    PipeEnd closed;
    closed.close();
    MessageChannel unopened(closed);
    EXPECT_FALSE(unopened.Send(event(1)));
    EXPECT_EQ(unopened.GetSendFailure().text, text("The device of the channel is not open for writing."));
    EXPECT_FALSE(unopened.IsClosed()) << "it may still be opened";
}

TEST_F(TwoChannels, SurviveThatTheDeviceIsDestroyed)
{
    auto device = std::make_unique<QBuffer>();
    ASSERT_TRUE(device->open(QIODevice::ReadWrite));
    MessageChannel channel(*device);
    const Diary diary(channel);
    device.reset();
    EXPECT_TRUE(diary.isClosed());
    EXPECT_FALSE(channel.Send(event(1)));
    EXPECT_EQ(channel.GetQueuedBytes(), 0);
}

// --- what receivers of signals may do ----------------------------------------------------------

TEST_F(TwoChannels, MayBeDestroyedByReceiversOfTheirSignals)
{
    auto channel = std::make_unique<MessageChannel>(nearEnd);
    int received = 0;
    QObject::connect(channel.get(), &MessageChannel::MessageReceived, [&] {
        ++received;
        channel.reset();
    });
    farEnd.write(binary(1).repeated(3));
    settle();
    EXPECT_EQ(received, 1);
    EXPECT_EQ(channel, nullptr);

    auto closing = std::make_unique<MessageChannel>(nearEnd);
    const Result waiting(closing->Request(numbered(1), 1h));
    QObject::connect(closing.get(), &MessageChannel::Closed, [&] { closing.reset(); });
    farEnd.write("garbage");
    settle();
    EXPECT_EQ(closing, nullptr);
    EXPECT_EQ(waiting.count, 1);
}

TEST_F(TwoChannels, LetNoExceptionOfReceiversOut)
{
    for (const bool isLast : {false, true}) {
        PipeEnd one;
        PipeEnd other;
        PipeEnd::connectEnds(one, other);
        MessageChannel channel(one);
        const Diary diary(channel);
        const Result waiting(channel.Request(numbered(1), 1h));
        if (isLast)
            QObject::connect(&channel, &MessageChannel::Closed, [] { throw 7; });
        QObject::connect(&channel, &MessageChannel::MessageReceived,
                         [] { throw std::runtime_error("bad luck"); });
        other.write(binary(2).repeated(2));
        settle();
        EXPECT_EQ(diary.lines, QStringList({"received 2", "broken"}));
        EXPECT_EQ(diary.closing.kind, Failure::Interrupted);
        EXPECT_TRUE(diary.closing.text.contains("bad luck")) << diary.closing.text.toStdString();
        EXPECT_EQ(waiting.result.outcome, RequestResult::Failed);
        EXPECT_FALSE(one.isOpen());
    }
}

TEST_F(TwoChannels, MayBeClosedByReceiversOfTheirSignals)
{
    MessageChannel channel(nearEnd);
    const Diary diary(channel);
    QObject::connect(&channel, &MessageChannel::MessageReceived, [&channel] { channel.Close(); });
    farEnd.write(binary(1).repeated(3));
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 1", "closed"}));
}

TEST_F(TwoChannels, ServeReceiversThatWaitForAReply)
{
    MessageChannel client(nearEnd);
    MessageChannel server(farEnd);
    QObject::connect(&server, &MessageChannel::MessageReceived,
                     [&server](const PelLu300RouterInterfaceXml& request) {
                         EXPECT_TRUE(server.Send(reply(numberOf(request))));
                     });
    int replies = 0;
    QObject::connect(&client, &MessageChannel::MessageReceived, [&] {
        const Result result(client.Request(PelLu300RouterInterfaceXml(), 1h));
        waitUntil([&result] { return result.count > 0; });
        replies += result.result.outcome == RequestResult::Replied;
    });
    ASSERT_TRUE(server.Send(event(1)));
    ASSERT_TRUE(server.Send(event(2)));
    waitUntil([&replies] { return replies == 2; });
}

TEST(MessageChannel, LetsOtherEventsHaveTheirTurn)
{
    // Has always more messages.
    class Endless : public QIODevice
    {
    public:
        Endless() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }
        bool isSequential() const override { return true; }

    protected:
        qint64 readData(char* data, qint64 size) override
        {
            const QByteArray message = binary(1);
            const auto given = std::min<qint64>(size, message.size());
            std::memcpy(data, message.constData(), static_cast<std::size_t>(given));
            return given;
        }
        qint64 writeData(const char*, qint64 size) override { return size; }
    };
    Endless device;
    MessageChannel channel(device);
    int received = 0;
    QObject::connect(&channel, &MessageChannel::MessageReceived, [&received] { ++received; });
    waitUntil([&received] { return received > 0; });
    const int before = received;
    waitUntil([&] { return received > before; });
    channel.Close();
    EXPECT_TRUE(channel.IsClosed());
}

TEST_F(TwoChannels, TakeMessagesWhileADeviceIsWritten)
{
    // Tells what it has written before it returns.
    class Direct : public PipeEnd
    {
    protected:
        qint64 writeData(const char* data, qint64 size) override
        {
            const qint64 now = PipeEnd::writeData(data, std::min<qint64>(size, 20));
            Q_EMIT bytesWritten(0);
            Q_EMIT channelBytesWritten(0, now);
            return now;
        }
    };
    Direct direct;
    PipeEnd::connectEnds(direct, farEnd);
    MessageChannel sender(direct);
    MessageChannel receiver(farEnd);
    const Diary diary(receiver);
    const Diary senderDiary(sender);
    unsigned int sent = 0;
    QObject::connect(&direct, &QIODevice::channelBytesWritten, [&] {
        if (sent < 5) {
            ++sent;
            EXPECT_TRUE(sender.Send(event(sent)));
        }
    });
    EXPECT_TRUE(sender.Send(event(0)));
    settle();
    EXPECT_EQ(diary.lines, QStringList({"received 0", "received 1", "received 2", "received 3", "received 4",
                                        "received 5"}));
    EXPECT_EQ(senderDiary.drained, 1);
}

// --- everything together ----------------------------------------------------------------------

TEST_F(TwoChannels, LoseNothingWhateverTheDevicesTakeAndPass)
{
    for (unsigned int seed = 1; seed <= 30; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&random](int limit) {
            return std::uniform_int_distribution<int>(0, limit - 1)(random);
        };
        PipeEnd one;
        PipeEnd other;
        PipeEnd::connectEnds(one, other);
        for (PipeEnd* end : {&one, &other}) {
            end->taken = 1 + below(1 << below(9));
            end->passed = 1 + below(1 << below(9));
        }
        const Form form = wireForms[below(3)];
        MessageChannel client(one, {form});
        MessageChannel server(other);
        const Diary diary(client);
        QObject::connect(&server, &MessageChannel::MessageReceived,
                         [&](const PelLu300RouterInterfaceXml& request) {
                             EXPECT_TRUE(server.Send(event(numberOf(request))));
                             EXPECT_TRUE(server.Send(reply(numberOf(request))));
                             EXPECT_EQ(server.GetPeerForm(), form);
                         });
        std::vector<std::unique_ptr<Result>> results;
        QStringList events;
        const int count = 1 + below(20);
        for (int i = 0; i < count; ++i) {
            results.push_back(std::make_unique<Result>(client.Request(numbered(unsigned(i) + 1), 1h)));
            events += QStringLiteral("received %1").arg(i + 1);
        }
        waitUntil([&] { return results.back()->count > 0; });
        EXPECT_EQ(diary.lines, events) << "seed " << seed;
        for (const auto& result : results)
            EXPECT_EQ(result->result.reply, reply(result->messageID)) << "seed " << seed;
    }
}

TEST(MessageChannel, WorksWithTheProcessesOfTheSystem)
{
    QProcess echo;
    echo.start(QStringLiteral("cat"), QStringList());
    ASSERT_TRUE(echo.waitForStarted());
    MessageChannel channel(echo, {Form::Xml});
    const Diary diary(channel);
    ASSERT_TRUE(channel.Send(event(1)));
    ASSERT_TRUE(channel.Send(event(2)));
    waitUntil([&] { return diary.lines.size() == 2; });
    EXPECT_EQ(diary.lines, QStringList({"received 1", "received 2"}));
    echo.closeWriteChannel();
    waitUntil([&] { return diary.isClosed(); });
    EXPECT_EQ(diary.closing.kind, Failure::None) << diary.closing.text.toStdString();
}

// The libraries of Qt are not compiled for the thread sanitizer, which therefore knows nothing of their
// locks.
extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_options() { return "ignore_noninstrumented_modules=1"; }

// --- threads ----------------------------------------------------------------------------------

template <class R>
class RecordMetatype : public ::testing::Test
{
};
TYPED_TEST_SUITE(RecordMetatype, AllRecords, RecordName);

TYPED_TEST(RecordMetatype, IsRegisteredByName)
{
    RegisterRecordMetatypes();
    const QVariant value = QVariant::fromValue(TypeParam());
    EXPECT_EQ(QByteArray(value.typeName()),
              "PELLU300ROUTERINTERFACEXML::" + TypeParam().GetObjectName().toLatin1());
    EXPECT_EQ(value.value<TypeParam>(), TypeParam());
}

TEST(MessageChannel, SendsRecordsToAnotherThread)
{
    QThread thread;
    PipeEnd nearEnd;
    PipeEnd farEnd;
    PipeEnd::connectEnds(nearEnd, farEnd);
    auto* const channel = new MessageChannel(nearEnd);
    auto* const receiver = new QObject;
    receiver->moveToThread(&thread);
    // Shows the thread sanitizer that what a receiver gets was written before.
    std::atomic<int> emitted{0};
    int handled = 0;
    std::atomic<unsigned int> sum{0};
    std::atomic<bool> isClosed{false};
    QObject::connect(channel, &MessageChannel::MessageReceived, receiver,
                     [&](const PelLu300RouterInterfaceXml& document) {
                         ++handled;
                         while (emitted < handled)
                             QThread::yieldCurrentThread();
                         EXPECT_EQ(QThread::currentThread(), &thread);
                         PelLu300RouterInterfaceXml copy(document);
                         copy.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Reply);
                         sum += numberOf(copy);
                     });
    QObject::connect(channel, &MessageChannel::MessageReceived, [&emitted] { ++emitted; });
    QObject::connect(channel, &MessageChannel::Closed, receiver,
                     [&](const Failure& failure) { isClosed = failure.kind == Failure::NotWellFormed; });
    thread.start();
    for (unsigned int number = 1; number <= 100; ++number)
        farEnd.write(inForm(wireForms[number % 3], number));
    farEnd.write("garbage");
    waitUntil([&isClosed] { return isClosed.load(); });
    EXPECT_EQ(sum, 5050U);
    delete channel;
    thread.quit();
    thread.wait();
    delete receiver;
}
