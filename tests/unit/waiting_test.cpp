// SPDX-License-Identifier: MIT
// Devices that deliver later: the library waits for the rest of a document no longer than the limits say, and
// reading too early loses nothing.

#include "TestSupport.h"
#include "WaitingSupport.h"

#include "modelkit/LogSinks.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QProcess>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::LimitsInScope;

TEST(Waiting, AFormThatHasArrivedInPartIsNotWholeYet)
{
    const QByteArray form = portForm();
    const LimitsInScope atOnce(waiting(0));
    for (int size = 0; size < form.size(); ++size) {
        SCOPED_TRACE(size);
        Socket connection;
        connection.send(form.left(size));
        QDataStream stream(&connection);
        OstraInterfacePort record;
        record.SetPort(7);
        EXPECT_FALSE(record.SetBinaryRepresentation(stream));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("Only %1 bytes of the binary form have arrived.").arg(size));
        EXPECT_EQ(stream.status(), QDataStream::Ok);
        EXPECT_EQ(record.GetPort(), 7U);
        EXPECT_EQ(connection.waits, 0);
        connection.send(form.mid(size) + form);
        EXPECT_TRUE(record.SetBinaryRepresentation(stream));
        EXPECT_EQ(record.GetPort(), 5000U);
        EXPECT_TRUE(record.SetBinaryRepresentation(stream));
        EXPECT_FALSE(record.SetBinaryRepresentation(stream));
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("Only 0 bytes of the binary form have arrived."));
    }
}

TEST(Waiting, EndsWhenTheTimeIsOver)
{
    const LimitsInScope shortly(waiting(30));
    Socket connection;
    connection.send(portForm().left(10));
    QDataStream stream(&connection);
    OstraInterfacePort record;
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
    EXPECT_GE(connection.waits, 1);
    EXPECT_FALSE(record.IsInitialized());
    // The waiting time is for the whole operation, even if a few bytes arrive again and again.
    const QByteArray rest = portForm().mid(10);
    std::thread sender([&] {
        for (const char byte : rest) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            connection.send(QByteArray(1, byte));
        }
    });
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
    sender.join();
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(record.GetPort(), 5000U);
}

TEST(Waiting, TakesWhatArrivesMeanwhile)
{
    Socket connection;
    std::thread sender([&] {
        for (const char byte : portForm()) {
            connection.send(QByteArray(1, byte));
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    });
    QDataStream stream(&connection);
    OstraInterfacePort record;
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    sender.join();
    EXPECT_EQ(record.GetPort(), 5000U);
}

TEST(Waiting, AConnectionThatEndedIsReportedWithItsReason)
{
    Socket connection;
    connection.send(portForm().left(10));
    connection.end();
    QDataStream stream(&connection);
    OstraInterfacePort record;
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              text("The device cannot be read: The remote host closed the connection."));
    EXPECT_EQ(stream.status(), QDataStream::ReadPastEnd);
}

TEST(Waiting, AStreamsOwnTransactionIsLeftToTheStream)
{
    const LimitsInScope atOnce(waiting(0));
    Socket connection;
    connection.send(portForm().left(20));
    QDataStream stream(&connection);
    OstraInterfacePort record;
    stream.startTransaction();
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
    EXPECT_FALSE(stream.commitTransaction());
    connection.send(portForm().mid(20));
    stream.startTransaction();
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_TRUE(stream.commitTransaction());
    EXPECT_EQ(record.GetPort(), 5000U);
}

TEST(Waiting, ADocumentGoesToTheEndOfTheConnection)
{
    const QByteArray xml = "<OstraInterfacePort><Port>5000</Port></OstraInterfacePort>";
    {
        Socket connection;
        connection.send(xml);
        const LimitsInScope atOnce(waiting(0));
        OstraInterfacePort record;
        EXPECT_FALSE(record.LoadXml(&connection));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("The end of the document has not arrived."));
        EXPECT_FALSE(record.IsInitialized());
        connection.end();
        EXPECT_TRUE(record.LoadXml(&connection));
        EXPECT_EQ(record.GetPort(), 5000U);
    }
    {
        Socket connection;
        connection.send(portForm());
        connection.end();
        OstraInterfacePort record;
        EXPECT_TRUE(record.LoadBinary(&connection));
        EXPECT_EQ(record.GetPort(), 5000U);
    }
    // If a document is cut off, the reason is the failure of the connection; otherwise it is the mistake in
    // the document.
    const auto kindOf = [](const QByteArray& content) {
        Socket connection;
        connection.send(content);
        connection.end();
        OstraInterfacePort record;
        EXPECT_FALSE(record.LoadXml(&connection));
        return IMKObject::GetLastFailure().kind;
    };
    EXPECT_EQ(kindOf(xml.left(30)), Failure::InputOutput);
    EXPECT_EQ(kindOf(xml.left(30) + "\xC3"), Failure::InputOutput);
    EXPECT_EQ(kindOf(xml + "x"), Failure::NotWellFormed);
    EXPECT_EQ(kindOf("<OstraInterfacePort></x>"), Failure::NotWellFormed);
}

TEST(Waiting, AFormThatIsCutOffInMemoryIsPutBack)
{
    QByteArray content = portForm().left(20);
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    QDataStream stream(&buffer);
    OstraInterfacePort record;
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
    EXPECT_EQ(stream.status(), QDataStream::ReadPastEnd);
    EXPECT_EQ(buffer.pos(), 0);
    buffer.buffer() += portForm().mid(20);
    stream.resetStatus();
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(record.GetPort(), 5000U);
}

namespace {

// Delivers pieces with pauses, in which it has no bytes. Like many devices it cannot wait. It may report its
// end.
class QuietDevice : public QIODevice
{
public:
    explicit QuietDevice(const QList<QByteArray>& pieces, bool tellsItsEnd = false)
        : m_pieces(pieces), m_tellsItsEnd(tellsItsEnd)
    {
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return true; }

    // Lets the next piece arrive.
    void goOn() { m_isPausing = false; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        if (m_pieces.isEmpty())
            return m_tellsItsEnd ? -1 : 0;
        if (m_isPausing)
            return 0;
        QByteArray& piece = m_pieces.first();
        const QByteArray part = piece.left(static_cast<int>(size));
        std::copy(part.begin(), part.end(), data);
        piece.remove(0, part.size());
        if (piece.isEmpty()) {
            m_pieces.removeFirst();
            m_isPausing = !m_pieces.isEmpty();
        }
        return part.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QList<QByteArray> m_pieces;
    bool m_tellsItsEnd;
    bool m_isPausing = false;
};

} // namespace

TEST(Waiting, ADeviceThatIsQuietInTheMiddleOfAFormHasNotEnded)
{
    const QByteArray form = portForm();
    for (int size = 1; size < form.size(); ++size) {
        SCOPED_TRACE(size);
        QuietDevice device({form.left(size), form.mid(size) + "rest"});
        QDataStream stream(&device);
        OstraInterfacePort record;
        record.SetPort(7);
        for (int attempt = 0; attempt < 3; ++attempt) {
            EXPECT_FALSE(record.SetBinaryRepresentation(stream));
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
            EXPECT_EQ(record.GetPort(), 7U);
            EXPECT_EQ(stream.status(), QDataStream::Ok);
        }
        device.goOn();
        EXPECT_TRUE(record.SetBinaryRepresentation(stream));
        EXPECT_EQ(record.GetPort(), 5000U);
        EXPECT_EQ(device.read(10), QByteArray("rest"));
    }
}

TEST(Waiting, ADocumentWithoutItsEndIsNotWholeYet)
{
    const QByteArray xml = "<OstraInterfacePort><Port>5000</Port><!--\xC3\xA4--></OstraInterfacePort>";
    for (int size = 1; size < xml.size(); ++size) {
        SCOPED_TRACE(size);
        QuietDevice device({xml.left(size), xml.mid(size)});
        OstraInterfacePort record;
        record.SetPort(7);
        EXPECT_FALSE(record.LoadXml(&device));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
        EXPECT_EQ(record.GetPort(), 7U);
        device.goOn();
        EXPECT_TRUE(record.LoadXml(&device)) << IMKObject::GetLastFailure().GetSentence().toStdString();
        EXPECT_EQ(record.GetPort(), 5000U);
        // The same for a binary form at the end of the device.
        const QByteArray form = portForm();
        const int half = std::min(size, static_cast<int>(form.size()) - 1);
        QuietDevice binary({form.left(half), form.mid(half)});
        record.SetPort(7);
        EXPECT_FALSE(record.LoadBinary(&binary));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
        EXPECT_EQ(record.GetPort(), 7U);
        binary.goOn();
        EXPECT_TRUE(record.LoadBinary(&binary));
        EXPECT_EQ(record.GetPort(), 5000U);
    }
    // A document that no further bytes can make right is refused at once.
    OstraInterfacePort record;
    QuietDevice wrong({QByteArray("<OstraInterfacePort></x>"), QByteArray("more")});
    EXPECT_FALSE(record.LoadXml(&wrong));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    QuietDevice trap({QByteArray("<!DOCTYPE x><OstraInterfacePort>"), QByteArray("more")});
    EXPECT_FALSE(record.LoadXml(&trap));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
}

TEST(Waiting, AMistakeThatMoreBytesCannotMendIsReportedAtOnce)
{
    const auto kindOf = [](const QByteArray& content) {
        QuietDevice device({content, QByteArray("more")});
        OstraInterfacePort record;
        EXPECT_FALSE(record.LoadXml(&device));
        return IMKObject::GetLastFailure().kind;
    };
    EXPECT_EQ(kindOf("<?xml version='1.0' encoding='ISO-2022-JP'?><Ostra"), Failure::EncodingRefused);
    EXPECT_EQ(kindOf("<OstraInterfacePort>\xFF"), Failure::NotWellFormed);
    EXPECT_EQ(kindOf("<OstraInterfacePort>\xFF<Port>"), Failure::NotWellFormed);
    EXPECT_EQ(kindOf("<OstraInterfacePort>\xC3<Port>"), Failure::NotWellFormed);
    EXPECT_EQ(kindOf("<OstraInterfacePort/>\xFF"), Failure::NotWellFormed);
    EXPECT_EQ(kindOf("\xEF\xBB\xBF\xEF\xBB\xBF<Ostra"), Failure::NotWellFormed);
}

TEST(Waiting, ACharacterThatIsCutOffIsWaitedFor)
{
    // The character may also be behind the root element. Wide characters are cut at every byte.
    QByteArray wide;
    for (const QChar character :
         text("<OstraInterfacePort><Port>5000</Port><!--\xF0\x9F\x98\x80--></OstraInterfacePort>\n")) {
        wide += static_cast<char>(character.unicode() >> 8);
        wide += static_cast<char>(character.unicode() & 0xFF);
    }
    for (int size = 1; size < wide.size(); ++size) {
        // The document is complete without the white space behind the root.
        if (size == wide.size() - 2)
            continue;
        SCOPED_TRACE(size);
        QuietDevice device({wide.left(size), wide.mid(size)});
        OstraInterfacePort record;
        EXPECT_FALSE(record.LoadXml(&device));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
        EXPECT_FALSE(record.IsInitialized());
        device.goOn();
        EXPECT_TRUE(record.LoadXml(&device)) << IMKObject::GetLastFailure().GetSentence().toStdString();
        EXPECT_EQ(record.GetPort(), 5000U);
    }
}

TEST(Waiting, ADeviceThatTellsItsEndBreaksOff)
{
    QuietDevice device({portForm().left(20)}, true);
    QDataStream stream(&device);
    OstraInterfacePort record;
    EXPECT_FALSE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              text("The device cannot be read: the device gives no reason."));
    QuietDevice xml({QByteArray("<OstraInterfacePort/>")}, true);
    EXPECT_TRUE(record.LoadXml(&xml));
}

TEST(Waiting, AFormOfAnotherClassCanBeReadByAnother)
{
    QuietDevice device({portForm()});
    QDataStream stream(&device);
    DF_Params other;
    EXPECT_FALSE(other.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::WrongClass);
    OstraInterfacePort record;
    EXPECT_TRUE(record.SetBinaryRepresentation(stream));
    EXPECT_EQ(record.GetPort(), 5000U);
}

TEST(Waiting, AProcessIsWaitedForAndItsFailureIsReported)
{
    OstraInterfacePort record;
    QProcess process;
    process.start(text("/bin/sh"), {text("-c"), text("printf '<OstraInterfacePort>'; sleep 0.05; "
                                                     "printf '<Port>5</Port></OstraInterfacePort>'")});
    EXPECT_TRUE(record.LoadXml(&process)) << IMKObject::GetLastFailure().GetSentence().toStdString();
    EXPECT_EQ(record.GetPort(), 5U);
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished());
    process.start(text("/bin/sh"), {text("-c"), text("printf '<OstraInterfacePort>'; sleep 0.05")});
    EXPECT_FALSE(record.LoadXml(&process));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_TRUE(process.state() == QProcess::NotRunning || process.waitForFinished());
    process.start(text("/nowhere/program"), QStringList());
    EXPECT_FALSE(record.LoadXml(&process));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
}

TEST(Waiting, WhatIsPutBackDoesNotDependOnTheLogSink)
{
    struct Busy : MODELKIT::LogSink
    {
        void Write(MODELKIT::Logger::Level, const QString&) override
        {
            OstraInterfacePort other;
            EXPECT_TRUE(other.SetBinaryRepresentation(portForm()));
        }
    };
    QuietDevice device({portForm().left(10), portForm().mid(10)});
    OstraInterfacePort record;
    record.SetLogger(std::make_shared<MODELKIT::Logger>(std::make_shared<Busy>()));
    EXPECT_FALSE(record.LoadBinary(&device));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWholeYet);
    device.goOn();
    EXPECT_TRUE(record.LoadBinary(&device));
    EXPECT_EQ(record.GetPort(), 5000U);
}
