// SPDX-License-Identifier: MIT
// The samples of docs/recordings.md.

#include "Said.h"
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/Exchange.h"
#include "documents/Recording.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <memory>

using namespace testing_support;
using namespace ROUTERDOCUMENTS;

namespace {

PelLu300RouterInterfaceXml event(unsigned int number)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    document.GetPelLu300RouterMessage().SetMessageID(number);
    return document;
}

class RecordingsPage : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(file.open(QIODevice::ReadWrite)); }

    // Appends the bytes, and begins to read at the first one.
    void write(const QByteArray& content)
    {
        ASSERT_EQ(file.write(content), content.size());
        ASSERT_TRUE(file.seek(0));
    }

    QTemporaryDir folder;
    QFile file{folder.filePath(QStringLiteral("recording"))};
    const Said said;
};

} // namespace

TEST_F(RecordingsPage, ReadsEveryMessage)
{
    PelLu300RouterInterfaceXml first = event(1);
    PelLu300RouterInterfaceXml second = event(2);
    write(WriteMessage(first, Form::Binary) + WriteMessage(second, Form::Xml));
    //! [reading every message]
    RecordingReader reader(file);
    RecordedMessage message;
    while (reader.ReadNext(message)) {
        const Document document = ReadDocument(message.bytes, {message.form});
        qInfo().noquote() << message.number << NameOf(message.form) << document.info->GetName();
    }
    //! [reading every message]
    EXPECT_EQ(said.texts(),
              QStringList({"1 binary PelLu300RouterInterfaceXml", "2 xml PelLu300RouterInterfaceXml"}));
}

TEST_F(RecordingsPage, ReadsBareFrames)
{
    QByteArray frames;
    QDataStream stream(&frames, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    OstraInterfacePort record;
    record.SetPort(5000);
    record.GetBinary(stream, 0, false);
    record.GetBinary(stream, 0, false);
    write(frames);
    //! [reading bare frames]
    const auto* port = PELLU300ROUTERINTERFACEXML::RecordInfo::Find("OstraInterfacePort");
    const FrameFormat format{false, QDataStream::LittleEndian};
    RecordingReader reader(file, {std::nullopt, format});
    RecordedMessage message;
    while (reader.ReadNext(message)) {
        const ReadingOptions options{message.form, Validation::On, message.frame, port};
        const Document document = ReadDocument(message.bytes, options);
        qInfo().noquote() << message.number << message.offset << document.info->GetName();
    }
    //! [reading bare frames]
    EXPECT_EQ(said.texts(), QStringList({"1 0 OstraInterfacePort", "2 20 OstraInterfacePort"}));
}

TEST_F(RecordingsPage, GoesOnBehindWhatIsNoMessage)
{
    PelLu300RouterInterfaceXml document = event(1);
    const QByteArray line = WriteMessage(document, Form::JsonLines);
    write(line + "12:30 link down\n" + line);
    //! [going on behind errors]
    const auto onMessage = [](const RecordedMessage& message) {
        qInfo().noquote() << "line" << message.line << NameOf(message.form);
    };
    const auto onError = [](const DocumentError& error) {
        qInfo().noquote() << "line" << error.GetPlace().line << error.GetText();
    };
    const qint64 count = ForEachMessage(file, {}, onMessage, onError);
    qInfo() << count << "messages";
    //! [going on behind errors]
    EXPECT_EQ(said.texts(),
              QStringList({"line 1 json", "line 2 No message begins here; 16 bytes are passed over.",
                           "line 3 json", "2 messages"}));
}

TEST_F(RecordingsPage, AppendsMessages)
{
    //! [appending messages]
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    for (unsigned int number = 1; number <= 3; ++number) {
        document.GetPelLu300RouterMessage().SetMessageID(number);
        AppendMessage(file, document, Form::JsonLines);
    }
    //! [appending messages]
    ASSERT_TRUE(file.seek(0));
    const QByteArray lines = file.readAll();
    EXPECT_EQ(lines.count('\n'), 3);
    EXPECT_TRUE(lines.startsWith("{\"PelLu300RouterInterfaceXml\":"));
}

TEST_F(RecordingsPage, CopiesMessages)
{
    PelLu300RouterInterfaceXml document = event(1);
    const QByteArray line = WriteMessage(document, Form::JsonLines);
    write(line + "<DF_Params><Frequency>");
    //! [copying messages]
    QByteArray copy;
    const auto copyMessage = [&copy](const RecordedMessage& message) {
        ReadDocument(message.bytes, {message.form});
        copy += message.bytes + LineBreakBehind(message);
    };
    const auto leaveOut = [](const DocumentError& error) {
        qInfo().noquote() << "left out:" << error.GetPlace().line << error.GetText();
    };
    ForEachMessage(file, {}, copyMessage, leaveOut);
    //! [copying messages]
    EXPECT_EQ(copy, line);
    EXPECT_EQ(said.texts(), QStringList("left out: 2 Premature end of document."));
}

TEST_F(RecordingsPage, NothingOfAZeroedStretchIsTakenForSpace)
{
    PelLu300RouterInterfaceXml document = event(1);
    const QByteArray form = WriteMessage(document, Form::Binary);
    write(form + QByteArray(4096, '\0') + form);
    qint64 offset = -1;
    const qint64 count = ForEachMessage(
        file, {}, [](const RecordedMessage&) {},
        [&offset](const DocumentError& error) { offset = error.GetPlace().offset; });
    EXPECT_EQ(count, 2);
    EXPECT_EQ(offset, form.size());
}

TEST_F(RecordingsPage, RecordsExchanges)
{
    const PelLu300RouterInterfaceXml request = event(1);
    //! [writing an exchange]
    Exchange received;
    received.peer = QStringLiteral("127.0.0.1:4711");
    received.time = QDateTime(QDate(2024, 5, 17), QTime(8, 30, 0, 250), Qt::UTC);
    received.form = Form::Binary;
    received.record = std::make_shared<PelLu300RouterInterfaceXml>(request);
    WriteExchange(file, received);
    //! [writing an exchange]
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(
        file.readAll(),
        QByteArray(
            R"({"time":"2024-05-17T08:30:00.250Z","direction":"received",)"
            R"("peer":"127.0.0.1:4711","form":"binary","document":)"
            R"({"PelLu300RouterInterfaceXml":{"PelLu300RouterMessage":{"Type":"Event","MessageID":1}}}})"
            "\n"));
    ASSERT_TRUE(file.seek(0));
    //! [reading exchanges]
    RecordingReader reader(file);
    for (RecordedMessage message; reader.ReadNext(message);) {
        const Exchange exchange = ReadExchange(message.bytes);
        qInfo().noquote() << exchange.time.toString(Qt::ISODateWithMs) << NameOf(exchange.direction)
                          << (exchange.record ? NameOf(*exchange.form) : exchange.fault);
    }
    //! [reading exchanges]
    EXPECT_EQ(said.texts(), QStringList("2024-05-17T08:30:00.250Z received binary"));
}
