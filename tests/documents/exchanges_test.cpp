// SPDX-License-Identifier: MIT
// Recorded exchanges: writing them, and reading them as exchanges and as the messages inside.
#include "RecordingSupport.h"
#include "TestDevices.h"

#include "documents/DocumentCheck.h"
#include "documents/DocumentError.h"
#include "documents/Exchange.h"
#include "documents/JsonForm.h"

#include <QtCore/QTimeZone>

#include <memory>
#include <stdexcept>

using namespace recording_support;

namespace {

QDateTime someTime() { return QDateTime(QDate(2024, 5, 17), QTime(8, 30, 0, 250), Qt::UTC); }

Exchange exchange(Direction direction = Direction::Received)
{
    Exchange made;
    made.time = someTime();
    made.direction = direction;
    made.peer = QStringLiteral("127.0.0.1:4711");
    return made;
}

Exchange message(unsigned int number)
{
    Exchange made = exchange();
    made.form = Form::Binary;
    made.record = std::make_shared<PelLu300RouterInterfaceXml>(numbered(number));
    return made;
}

Exchange fault(const QString& text, const QByteArray& bytes)
{
    Exchange made = exchange(Direction::Sent);
    made.fault = text;
    made.bytes = bytes;
    return made;
}

Exchange event(ConnectionEvent what)
{
    Exchange made = exchange(Direction::ToServer);
    made.event = what;
    return made;
}

const char head[] = R"("time":"2024-05-17T08:30:00.250Z","direction":"received","peer":"127.0.0.1:4711")";

QByteArray lineOf(const QByteArray& rest) { return QByteArray("{") + head + "," + rest + "}\n"; }

// What reading the line throws, with its place: "1:90: text (in $.document)".
template <class Action>
QString errorOf(const Action& action)
{
    try {
        action();
    } catch (const DocumentError& error) {
        const MODELKIT::Place& place = error.GetPlace();
        return QStringLiteral("%1:%2: %3 (in %4)")
            .arg(QString::number(place.line), QString::number(place.column), error.GetText(), place.path);
    }
    return QStringLiteral("nothing");
}

QString errorOfExchange(const QByteArray& line)
{
    return errorOf([&] { ReadExchange(line); });
}

QString errorOfDocument(const QByteArray& line)
{
    return errorOf([&] { ReadDocument(line); });
}

} // namespace

TEST(Exchanges, AreLinesOfJson)
{
    EXPECT_EQ(ToExchangeLine(message(7)),
              lineOf(R"("form":"binary","document":)" + ToJsonLine(numbered(7)).trimmed()));
    EXPECT_EQ(ToExchangeLine(fault(QStringLiteral("No \"message\"."), QByteArray("\0\xFF", 2))),
              QByteArray(R"({"time":"2024-05-17T08:30:00.250Z","direction":"sent",)"
                         R"("peer":"127.0.0.1:4711","fault":"No \"message\".","bytes":"AP8="})"
                         "\n"));
    Exchange closed = event(ConnectionEvent::Closed);
    EXPECT_EQ(ToExchangeLine(closed),
              QByteArray(R"({"time":"2024-05-17T08:30:00.250Z","direction":"toServer",)"
                         R"("peer":"127.0.0.1:4711","event":"closed"})"
                         "\n"));
    closed.fault = QStringLiteral("Reset.");
    EXPECT_TRUE(ToExchangeLine(closed).endsWith(R"("event":"closed","fault":"Reset."})"
                                                "\n"));
}

TEST(Exchanges, AreWrittenInUtc)
{
    Exchange made = event(ConnectionEvent::Connected);
    made.time = QDateTime(QDate(2024, 5, 17), QTime(10, 30, 0, 250), QTimeZone(7200));
    EXPECT_TRUE(ToExchangeLine(made).contains(R"("time":"2024-05-17T08:30:00.250Z")"));
}

TEST(Exchanges, AreReadAsTheyWereWritten)
{
    for (const Direction direction :
         {Direction::Received, Direction::Sent, Direction::ToServer, Direction::ToClient})
        for (const Form form : allForms) {
            Exchange written = message(3);
            written.direction = direction;
            written.form = form;
            const Exchange read = ReadExchange(ToExchangeLine(written));
            EXPECT_EQ(read.time, written.time);
            EXPECT_EQ(read.direction, direction);
            EXPECT_EQ(read.peer, written.peer);
            EXPECT_EQ(read.form, form);
            ASSERT_TRUE(read.record);
            EXPECT_EQ(ToJsonLine(*read.record), ToJsonLine(*written.record));
            EXPECT_TRUE(read.fault.isNull());
            EXPECT_FALSE(read.event);
        }
    const Exchange faulty = ReadExchange(ToExchangeLine(fault(QStringLiteral("Bad."), "abc")));
    EXPECT_EQ(faulty.fault, QStringLiteral("Bad."));
    EXPECT_EQ(faulty.bytes, QByteArray("abc"));
    EXPECT_FALSE(faulty.form);
    EXPECT_FALSE(faulty.record);
    const Exchange closed = ReadExchange(ToExchangeLine(event(ConnectionEvent::Closed)));
    EXPECT_EQ(closed.event, ConnectionEvent::Closed);
    EXPECT_TRUE(closed.fault.isNull());
}

TEST(Exchanges, MustBeOneThing)
{
    Exchange nothing = exchange();
    EXPECT_THROW(ToExchangeLine(nothing), std::logic_error);
    Exchange formless = message(1);
    formless.form.reset();
    EXPECT_THROW(ToExchangeLine(formless), std::logic_error);
    Exchange both = message(1);
    both.event = ConnectionEvent::Closed;
    EXPECT_THROW(ToExchangeLine(both), std::logic_error);
}

TEST(Exchanges, AreAppendedToARecording)
{
    QByteArray content;
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    WriteExchange(buffer, event(ConnectionEvent::Connected));
    WriteExchange(buffer, message(1));
    EXPECT_EQ(content, ToExchangeLine(event(ConnectionEvent::Connected)) + ToExchangeLine(message(1)));
    Drain full(10);
    EXPECT_TRUE(errorOf([&] {
                    WriteExchange(full, message(1));
                }).startsWith(QStringLiteral("0:0: The exchange cannot be written: ")));
}

TEST(Exchanges, AreTheMessagesInside)
{
    const QByteArray line = ToExchangeLine(message(7));
    EXPECT_TRUE(IsExchange(line));
    EXPECT_FALSE(IsExchange(ToJsonLine(numbered(7))));
    EXPECT_FALSE(IsExchange("[1]"));
    EXPECT_FALSE(IsExchange("{"));
    const Document document = ReadDocument(line, {std::nullopt, Validation::On});
    EXPECT_EQ(ToJsonLine(*document.record), ToJsonLine(numbered(7)));
    EXPECT_EQ(document.form, Form::Json);
    EXPECT_TRUE(CheckDocument(line).errors.empty());
}

TEST(Exchanges, MayHaveTheirKeysInAnyOrder)
{
    const QByteArray document = ToJsonLine(numbered(2)).trimmed();
    const QByteArray line = "\xEF\xBB\xBF { \"document\" : " + document + ", \"form\":\"xml\"," + head + "}";
    EXPECT_EQ(ToJsonLine(*ReadDocument(line).record), ToJsonLine(numbered(2)));
    EXPECT_EQ(ReadExchange(line).form, Form::Xml);
}

TEST(Exchanges, PassOverEventsInRecordings)
{
    const QByteArray content = ToExchangeLine(event(ConnectionEvent::Connected)) + ToExchangeLine(message(1))
                               + inForm(Form::JsonLines, 2) + ToExchangeLine(event(ConnectionEvent::Closed))
                               + ToExchangeLine(message(3)) + ToExchangeLine(event(ConnectionEvent::Closed));
    for (const int piece : {1, 7, 100000}) {
        const Outcome outcome = readInPieces(content, piece);
        EXPECT_EQ(numbersIn(outcome), (QVector<unsigned int>{1, 2, 3}));
        EXPECT_TRUE(outcome.errors.isEmpty());
        ASSERT_EQ(outcome.messages.size(), 3);
        EXPECT_EQ(outcome.messages.at(0).line, 2);
        EXPECT_EQ(outcome.messages.at(0).number, 1);
        EXPECT_EQ(outcome.messages.at(2).line, 5);
        EXPECT_EQ(outcome.messages.at(2).number, 3);
    }
    EXPECT_TRUE(readAll(ToExchangeLine(event(ConnectionEvent::Closed))).lines.isEmpty());
}

TEST(Exchanges, AreFoundBehindWhatIsDamaged)
{
    const QByteArray content =
        "garbage\n" + ToExchangeLine(message(1)) + "{\"time\":\n" + ToExchangeLine(message(2));
    const Outcome outcome = readAll(content, {Form::JsonLines});
    EXPECT_EQ(numbersIn(outcome), (QVector<unsigned int>{1, 0, 2}));
}

TEST(Exchanges, TellTheirFaultInItsWords)
{
    const QByteArray line = ToExchangeLine(fault(QStringLiteral("It begins with \"hello\"."), "hello"));
    EXPECT_EQ(errorOfDocument(line), QStringLiteral("1:87: It begins with \"hello\". (in $.fault)"));
    const CheckedDocument checked = CheckDocument(line);
    ASSERT_EQ(checked.errors.size(), 1U);
    EXPECT_EQ(checked.errors.front().GetText(), QStringLiteral("It begins with \"hello\"."));
    const Outcome outcome = readAll(line + ToExchangeLine(message(2)));
    EXPECT_EQ(outcome.messages.size(), 2);
}

TEST(Exchanges, OfEventsAreNoDocument)
{
    EXPECT_EQ(errorOfDocument("\n" + ToExchangeLine(event(ConnectionEvent::Closed))),
              QStringLiteral("2:1: Here is an event of a connection, and no message. (in $)"));
}

TEST(Exchanges, TellPlacesInTheLine)
{
    const QByteArray wrong = lineOf(
        R"("form":"xml","document":{"PelLu300RouterInterfaceXml":{"PelLu300RouterMessage":{"Typ":1}}})");
    const auto column = wrong.indexOf("\"Typ\"") + 1;
    EXPECT_EQ(errorOfDocument(wrong),
              QStringLiteral("1:%1: PelLu300RouterMessage has no member \"Typ\". Did you mean Type? "
                             "(in $.document.PelLu300RouterInterfaceXml.PelLu300RouterMessage.Typ)")
                  .arg(column));
    EXPECT_EQ(errorOfExchange(wrong), errorOfDocument(wrong));
    // An error of the check, whose place is looked for.
    const QByteArray untyped = lineOf(
        R"("form":"xml","document":{"PelLu300RouterInterfaceXml":{"PelLu300RouterMessage":{"MessageID":1}}})");
    const auto check = [&] { ReadDocument(untyped, {Form::Json, Validation::On}); };
    EXPECT_TRUE(errorOf(check).endsWith(
        QStringLiteral("(in $.document.PelLu300RouterInterfaceXml.PelLu300RouterMessage)")))
        << errorOf(check).toStdString();
    EXPECT_TRUE(errorOf(check).startsWith(QStringLiteral("1:%1:").arg(untyped.indexOf("{\"MessageID") + 1)));
}

TEST(Exchanges, ListAllErrorsOfTheirDocument)
{
    const QByteArray wrong = lineOf(
        R"("form":"xml","document":{"PelLu300RouterInterfaceXml":{"PelLu300RouterMessage":{"Typ":1,"Type":"No"}}})");
    const CheckedDocument checked = CheckDocument(wrong);
    ASSERT_EQ(checked.errors.size(), 2U);
    EXPECT_EQ(checked.errors.at(1).GetPlace().path,
              QStringLiteral("$.document.PelLu300RouterInterfaceXml.PelLu300RouterMessage.Type"));
}

TEST(Exchanges, SayWhatIsWrongWithTheirKeys)
{
    const QByteArray document = R"("document":)" + ToJsonLine(numbered(1)).trimmed();
    const struct
    {
        QByteArray line;
        const char* error;
    } cases[] = {
        {R"({"time":"now"})", R"(1:9: "now" is no time like "2024-05-17T08:30:00.250Z". (in $.time))"},
        {R"({"time":"2024-05-17T08:30:00.250"})",
         R"(1:9: "2024-05-17T08:30:00.250" is no time like "2024-05-17T08:30:00.250Z". (in $.time))"},
        {R"({"time":7})", "1:9: The value is a number, expected is a string. (in $.time)"},
        {R"({"direction":"recieved"})",
         R"(1:14: "recieved" is none of received, sent, toServer and toClient. Did you mean received? (in $.direction))"},
        {R"({"form":"yaml"})",
         R"(1:9: "yaml" is none of xml, binary, compressed, json and jsonl. (in $.form))"},
        {R"({"event":"opened"})", R"(1:10: "opened" is none of connected and closed. (in $.event))"},
        {R"({"bytes":"a-b"})", "1:10: These bytes are not in base64. (in $.bytes)"},
        {R"({"peer":"a","per":"b"})", R"(1:13: An exchange has no key "per". Did you mean peer? (in $.per))"},
        {R"({"peer":"a","peer":"b"})", R"(1:13: The key "peer" comes twice in its object. (in $.peer))"},
        {R"({"peer":"a"})", R"(1:1: The exchange lacks the key "time". (in $))"},
        {QByteArray("{") + head + "}",
         "1:1: The exchange has no message, no faulty bytes and no event. (in $)"},
        {lineOf(document), "1:1: The exchange has a message, but does not tell its form. (in $)"},
        {lineOf(R"("form":"xml","event":"closed",)" + document),
         "1:1: The exchange is more than one of a message, faulty bytes and an event. (in $)"},
        {lineOf(R"("form":"xml","fault":"x",)" + document),
         "1:1: The exchange is more than one of a message, faulty bytes and an event. (in $)"},
        {lineOf(R"("fault":"x")"), "1:1: The exchange has a fault, but neither bytes nor an event. (in $)"},
        {lineOf(R"("bytes":"YQ==")"),
         "1:1: The exchange has bytes, but does not say what is wrong with them. (in $)"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(errorOfExchange(each.line), QString::fromUtf8(each.error)) << each.line.constData();
        EXPECT_EQ(errorOfDocument(each.line), QString::fromUtf8(each.error)) << each.line.constData();
    }
    EXPECT_EQ(errorOfExchange("[]"),
              QStringLiteral("1:1: The value is an array, expected is an exchange. (in $)"));
}

TEST(Exchanges, AreNotInsideEachOther)
{
    const QByteArray inner = ToExchangeLine(message(1)).trimmed();
    EXPECT_TRUE(errorOfDocument(lineOf(R"("form":"xml","document":)" + inner))
                    .contains(QStringLiteral("There is no record \"time\".")));
}

TEST(Exchanges, AreRefusedWhenSomethingStandsBehindThem)
{
    EXPECT_TRUE(errorOfExchange(ToExchangeLine(message(1)) + "1")
                    .contains(QStringLiteral("nothing may stand behind the value")));
}
