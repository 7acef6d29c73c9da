// SPDX-License-Identifier: MIT
// Saving and loading whole documents by name, through any device, and as bytes.

#include "LogSupport.h"
#include "TestFolder.h"
#include "TestSupport.h"

#include "modelkit/ReadingReport.h"
#include "modelkit/ReplaceFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <stdexcept>

#include <sys/stat.h>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::XmlLayout;

namespace {

PelLu300RouterMessage sample()
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(text("\xC3\xA4\r\n<&>"));
    message.AppendFragment(fragment);
    return message;
}

const char* const compactXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?><PelLu300RouterMessage><Type>Event</Type>"
    "<Fragment><PelVtConnectServer><Address>\xC3\xA4&#13;\n&lt;&amp;&gt;</Address>"
    "</PelVtConnectServer></Fragment></PelLu300RouterMessage>\n";

const char* const indentedXml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PelLu300RouterMessage>\n"
                                "  <Type>Event</Type>\n  <Fragment>\n    <PelVtConnectServer>\n"
                                "      <Address>\xC3\xA4&#13;\n&lt;&amp;&gt;</Address>\n"
                                "    </PelVtConnectServer>\n  </Fragment>\n</PelLu300RouterMessage>\n";

void expectFailure(Failure::Kind kind, const QString& sentence)
{
    EXPECT_EQ(IMKObject::GetLastFailure().kind, kind);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
}

} // namespace

TEST(Saving, WritesTheBytesOfEachForm)
{
    const Folder folder;
    PelLu300RouterMessage message = sample();
    folder.write("old");
    ASSERT_TRUE(message.SaveBinary(folder.path()));
    EXPECT_EQ(folder.read(), message.GetBinaryRepresentationAsQByteArray());
    ASSERT_TRUE(message.SaveCompressed(folder.path()));
    EXPECT_EQ(folder.read(), message.GetCompressedBinaryRepresentationAsQByteArray(-1));
    ASSERT_TRUE(message.SaveCompressed(folder.path(), 0));
    EXPECT_EQ(folder.read(), message.GetCompressedBinaryRepresentationAsQByteArray(0));
    ASSERT_TRUE(message.SaveXml(folder.path()));
    EXPECT_EQ(folder.read(), QByteArray(indentedXml));
    ASSERT_TRUE(message.SaveCompactXml(folder.path()));
    EXPECT_EQ(folder.read(), QByteArray(compactXml));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
}

TEST(Saving, IsReadBack)
{
    const Folder folder;
    const PelLu300RouterMessage message = sample();
    PelLu300RouterMessage read;
    ASSERT_TRUE(message.SaveBinary(folder.path()));
    EXPECT_TRUE(read.LoadBinary(folder.path()));
    EXPECT_TRUE(read == message);
    read.Reset();
    ASSERT_TRUE(message.SaveCompressed(folder.path(), 9));
    EXPECT_TRUE(read.LoadBinary(folder.path()));
    EXPECT_TRUE(read == message);
    read.Reset();
    ASSERT_TRUE(message.SaveCompactXml(folder.path()));
    EXPECT_TRUE(read.LoadXml(folder.path()));
    EXPECT_TRUE(read == message);
}

TEST(Saving, LeavesTheOldFileWhenNothingCanBeSaved)
{
    const Folder folder;
    folder.write("old");
    const auto expectOld = [&folder] {
        EXPECT_EQ(folder.read(), QByteArray("old"));
        EXPECT_EQ(folder.entries(), QStringList(text("document")));
    };
    const QString prefix = folder.path() + text(": ");
    // Validation refuses it,
    PelLu300RouterMessage withoutType;
    withoutType.SetMessageID(1);
    withoutType.SetValidate(true);
    EXPECT_THROW(withoutType.SaveBinary(folder.path()), OutOfRangeException);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
    EXPECT_THROW(withoutType.SaveCompressed(folder.path()), OutOfRangeException);
    EXPECT_THROW(withoutType.SaveCompactXml(folder.path()), OutOfRangeException);
    expectOld();
    // or lets nothing of it be written,
    const Fragment empty;
    empty.SetValidate(true);
    const QString nothing =
        prefix + text("Nothing was written: Fragment lacks the data without which it is not valid.");
    EXPECT_FALSE(empty.SaveXml(folder.path()));
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_FALSE(empty.SaveCompactXml(folder.path()));
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_FALSE(empty.SaveBinary(folder.path()));
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_FALSE(empty.SaveCompressed(folder.path()));
    expectFailure(Failure::NothingToWrite, nothing);
    expectOld();
    // or the form cannot carry it.
    PelVtConnectServer server;
    server.SetAddress(QString(QChar(0xD800)));
    EXPECT_FALSE(server.SaveBinary(folder.path()));
    const QString surrogate = text("A text holds a character that the binary form cannot carry. "
                                   "(in /PelVtConnectServer/Address)");
    expectFailure(Failure::NotRepresentable, prefix + surrogate);
    EXPECT_FALSE(server.SaveCompressed(folder.path()));
    expectFailure(Failure::NotRepresentable, prefix + surrogate);
    expectOld();
    EXPECT_TRUE(server.GetBinaryRepresentationAsQByteArray().isEmpty());
    expectFailure(Failure::NotRepresentable, surrogate);
    EXPECT_TRUE(server.GetCompressedBinaryRepresentationAsQByteArray(1).isEmpty());
    expectFailure(Failure::NotRepresentable, surrogate);
    PelVtConnectServer other;
    other.SetPort(3);
    EXPECT_FALSE(other.MergeMKObject(server));
    expectFailure(Failure::NotRepresentable, surrogate);
    EXPECT_FALSE(other.IsAddressSet());
}

// The file is written in pieces, before it is known whether all of the document can be written.
TEST(Saving, OfLargeXmlDocumentsIsComplete)
{
    const Folder folder;
    folder.write("old");
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    Fragment fragment;
    for (const int size : {0, 1, 1000, 65535, 65536, 300000, 10}) {
        fragment.GetPelVtConnectServer().SetAddress(QString(size, QChar(0xE4)));
        message.AppendFragment(fragment);
    }
    for (int i = 0; i < 3000; ++i)
        message.AppendFragment(fragment);
    ASSERT_TRUE(message.SaveXml(folder.path()));
    EXPECT_TRUE(folder.read() == message.GetXmlBytes());
    ASSERT_TRUE(message.SaveCompactXml(folder.path()));
    EXPECT_TRUE(folder.read() == message.GetXmlBytes(XmlLayout::Compact));
    PelLu300RouterMessage read;
    ASSERT_TRUE(read.LoadXml(folder.path()));
    EXPECT_TRUE(read == message);
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(Saving, OfLargeXmlDocumentsLeavesTheOldFileOnFailure)
{
    const Folder folder;
    folder.write("old");
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString(300000, QLatin1Char('x')));
    message.AppendFragment(fragment);
    const QString nowhere = folder.path() + text("/document");
    EXPECT_FALSE(message.SaveXml(nowhere));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    fragment.GetPelVtConnectServer().SetAddress(QString(QChar(1)));
    message.AppendFragment(fragment);
    // What is wrong with the document comes first.
    for (const QString& path : {folder.path(), nowhere}) {
        EXPECT_FALSE(message.SaveXml(path));
        expectFailure(Failure::NotRepresentable,
                      path
                          + text(":11:7: A text holds a character that XML cannot carry. (in "
                                 "/PelLu300RouterMessage/Fragment[2]/PelVtConnectServer/Address)"));
        EXPECT_FALSE(message.SaveCompactXml(path));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotRepresentable);
    }
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(Saving, OfNothingUnderValidationIsReportedByEveryWritingOperation)
{
    Fragment empty;
    empty.SetValidate(true);
    const QString nothing =
        text("Nothing was written: Fragment lacks the data without which it is not valid.");
    EXPECT_TRUE(empty.GetXmlString().isNull());
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_TRUE(empty.GetCompactXmlString().isNull());
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_TRUE(empty.GetXmlBytes().isNull());
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_TRUE(empty.GetBinaryRepresentationAsQByteArray().isEmpty());
    expectFailure(Failure::NothingToWrite, nothing);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    empty.GetBinaryRepresentation(stream);
    expectFailure(Failure::NothingToWrite, nothing);
    empty.GetCompressedBinaryRepresentation(stream, 3);
    expectFailure(Failure::NothingToWrite, nothing);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
    EXPECT_TRUE(written.isEmpty());
}

TEST(Saving, ReplacesNoDevicePipeOrFolder)
{
    const Folder folder;
    const QString reason = text(": The file cannot be written: it exists and is no regular file.");
    EXPECT_FALSE(sample().SaveBinary(text("/dev/null")));
    expectFailure(Failure::InputOutput, text("/dev/null") + reason);
    EXPECT_FALSE(sample().SaveCompressed(QDir::tempPath()));
    expectFailure(Failure::InputOutput, QDir::tempPath() + reason);
    ASSERT_EQ(::mkfifo(folder.path().toLocal8Bit().constData(), 0600), 0);
    EXPECT_FALSE(sample().SaveBinary(folder.path()));
    expectFailure(Failure::InputOutput, folder.path() + reason);
    EXPECT_FALSE(sample().SaveBinary(folder.path() + text("/below")));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    Failure failure;
    EXPECT_FALSE(MODELKIT::ReplaceFile(folder.path(), "x", failure));
    EXPECT_EQ(failure.GetSentence(), text("The file cannot be written: it exists and is no regular file."));
}

TEST(Bytes, AreTheFileThatWouldBeSaved)
{
    const PelLu300RouterMessage message = sample();
    EXPECT_EQ(message.GetXmlBytes(), QByteArray(indentedXml));
    EXPECT_EQ(message.GetXmlBytes(XmlLayout::Compact), QByteArray(compactXml));
    EXPECT_EQ(message.GetCompactXmlString(),
              QString::fromUtf8(compactXml).replace(text(" encoding=\"UTF-8\""), QString()));
    for (const char* const xml : {indentedXml, compactXml}) {
        PelLu300RouterMessage read;
        EXPECT_TRUE(read.SetXmlBytes(xml));
        EXPECT_TRUE(read == message);
    }
    PelLu300RouterMessage withoutType;
    EXPECT_TRUE(withoutType.SetXmlBytes("<PelLu300RouterMessage/>"));
    EXPECT_THROW(withoutType.SetXmlBytes("<PelLu300RouterMessage/>", true), OutOfRangeException);
    EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(), text("1:1"));
}

TEST(Bytes, MayBeConstAndTemporary)
{
    PelLu300RouterMessage message = sample();
    PelLu300RouterMessage read;
    EXPECT_TRUE(read.SetBinaryRepresentation(message.GetBinaryRepresentationAsQByteArray()));
    EXPECT_TRUE(read == message);
    const QByteArray form = message.GetCompressedBinaryRepresentationAsQByteArray(1);
    read.Reset();
    EXPECT_TRUE(read.SetBinaryRepresentation(form));
    EXPECT_TRUE(read == message);
}

TEST(AnyDevice, IsReadFromItsPositionAndClosedAsItWas)
{
    PelLu300RouterMessage message = sample();
    QByteArray xml(compactXml);
    QBuffer closed(&xml);
    PelLu300RouterMessage read;
    EXPECT_TRUE(read.LoadXml(static_cast<QIODevice*>(&closed)));
    EXPECT_TRUE(read == message);
    EXPECT_FALSE(closed.isOpen());
    QByteArray form = "xx" + message.GetBinaryRepresentationAsQByteArray();
    QBuffer open(&form);
    ASSERT_TRUE(open.open(QIODevice::ReadOnly));
    open.seek(2);
    read.Reset();
    EXPECT_TRUE(read.LoadBinary(&open));
    EXPECT_TRUE(read == message);
    EXPECT_TRUE(open.isOpen());
    EXPECT_TRUE(open.atEnd());
}

TEST(AnyDevice, ThatIsNullIsReported)
{
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.LoadXml(nullptr));
    expectFailure(Failure::InputOutput, text("No file was given."));
    EXPECT_FALSE(message.LoadBinary(nullptr));
    expectFailure(Failure::InputOutput, text("No file was given."));
    EXPECT_FALSE(message.LoadXml(static_cast<QIODevice*>(nullptr)));
    EXPECT_FALSE(message.LoadBinary(static_cast<QFile*>(nullptr)));
    expectFailure(Failure::InputOutput, text("No file was given."));
    QDataStream stream;
    EXPECT_FALSE(message.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
}

TEST(AnyDevice, ThatIsOpenForWritingOnlyIsNoInput)
{
    const Folder folder;
    QFile file(folder.path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    PelLu300RouterMessage message;
    const QString reason = folder.path() + text(": The file cannot be read: it is not open for reading.");
    EXPECT_FALSE(message.LoadXml(&file));
    expectFailure(Failure::InputOutput, reason);
    EXPECT_FALSE(message.LoadBinary(&file));
    expectFailure(Failure::InputOutput, reason);
    QDataStream stream(&file);
    EXPECT_FALSE(message.SetBinaryRepresentation(stream));
    expectFailure(Failure::InputOutput, reason);
}

namespace {

// Delivers some bytes and then fails in the way of the test.
class Failing : public QIODevice
{
public:
    enum Way
    {
        Returns,
        Throws
    };

    Failing(const QByteArray& content, Way way, bool isSequential)
        : m_content(content), m_way(way), m_isSequential(isSequential)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return m_isSequential; }
    qint64 size() const override { return m_content.size() + 100; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 there = std::min<qint64>(size, m_content.size() - m_at);
        if (there == 0) {
            if (m_way == Throws)
                throw std::runtime_error("the cable is out");
            setErrorString(text("the cable is out"));
            return -1;
        }
        std::copy_n(m_content.constData() + m_at, there, data);
        m_at += there;
        return there;
    }
    qint64 writeData(const char*, qint64) override { throw std::runtime_error("the cable is out"); }

private:
    QByteArray m_content;
    Way m_way;
    bool m_isSequential;
    qint64 m_at = 0;
};

} // namespace

TEST(AnyDevice, ThatFailsIsNotTakenForTheEnd)
{
    const QByteArray form = sample().GetBinaryRepresentationAsQByteArray();
    const QString reason = text("The device cannot be read: the cable is out.");
    for (const bool isSequential : {false, true}) {
        for (const int size : {0, 4, 8, 20}) {
            SCOPED_TRACE(size);
            PelLu300RouterMessage message;
            Failing device(form.left(size), Failing::Returns, isSequential);
            QDataStream stream(&device);
            EXPECT_FALSE(message.SetBinaryRepresentation(stream));
            expectFailure(Failure::InputOutput, reason);
            EXPECT_FALSE(message.IsInitialized());
            Failing whole(form.left(size), Failing::Returns, isSequential);
            EXPECT_FALSE(message.LoadBinary(&whole));
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
            Failing xml(QByteArray(compactXml).left(size), Failing::Returns, isSequential);
            EXPECT_FALSE(message.LoadXml(&xml));
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
        }
    }
}

TEST(AnyDevice, ThatThrowsLeavesAFailureBehind)
{
    const QString sentence = text("The operation was interrupted by an exception.");
    PelLu300RouterMessage message = sample();
    Log log(message);
    const auto expectInterrupted = [&](const std::function<void(QIODevice&)>& operation) {
        log.clear();
        Failing device(QByteArray("<Pel"), Failing::Throws, true);
        EXPECT_THROW(operation(device), std::runtime_error);
        expectFailure(Failure::Interrupted, sentence);
        log.expectOneError(sentence);
    };
    expectInterrupted([&](QIODevice& device) { message.LoadXml(&device); });
    expectInterrupted([&](QIODevice& device) { message.LoadBinary(&device); });
    expectInterrupted([&](QIODevice& device) {
        QDataStream stream(&device);
        message.SetBinaryRepresentation(stream);
    });
    expectInterrupted([&](QIODevice& device) {
        device.close();
        device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        QDataStream stream(&device);
        message.GetBinaryRepresentation(stream);
    });
    expectInterrupted([&](QIODevice& device) {
        device.close();
        device.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
        QDataStream stream(&device);
        message.GetCompressedBinaryRepresentation(stream, 1);
    });
    // The next operation clears the failure.
    EXPECT_FALSE(message.GetXmlBytes().isEmpty());
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
}

namespace {

// Runs operations after the thread-local objects of the main thread have been destroyed.
struct AtExit
{
    ~AtExit()
    {
        OstraInterfacePort record;
        // The binary form is used because Qt 5 cannot read XML at this point.
        const bool isRead = record.SetBinaryRepresentation(QByteArray("none"));
        const MODELKIT::LimitsInScope inScope{MODELKIT::Limits()};
        const MODELKIT::ReadingReport report;
        if (isRead || !record.SetBinaryRepresentation(record.GetBinaryRepresentationAsQByteArray())
            || !report.GetEntries().isEmpty())
            std::abort();
    }
};

} // namespace

TEST(AtTheEndOfTheProgram, OperationsStillWork)
{
    // These objects of the thread are destroyed before. The test passes if the program ends normally.
    EXPECT_FALSE(OstraInterfacePort().LoadXml(text("/nowhere/%1").arg(1)));
    static const AtExit atExit;
    const MODELKIT::LimitsInScope inScope{MODELKIT::Limits()};
    const MODELKIT::ReadingReport report;
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
}

TEST(AnyDevice, ThatThrowsWhenItIsClosedInterrupts)
{
    struct Device : QBuffer
    {
        void close() override { throw std::runtime_error("it does not close"); }
    } device;
    device.setData("<OstraInterfacePort/>");
    OstraInterfacePort record;
    EXPECT_THROW(record.LoadXml(&device), std::runtime_error);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Interrupted);
}

TEST(AnyDevice, ThatIsOpenForReadingOnlyTakesNothing)
{
    QBuffer device;
    ASSERT_TRUE(device.open(QIODevice::ReadOnly));
    QDataStream stream(&device);
    sample().GetBinaryRepresentation(stream);
    expectFailure(Failure::InputOutput,
                  text("The binary form cannot be written: it is not open for writing."));
}

TEST(AnyDevice, MayUseOtherOperationsMeanwhile)
{
    struct Nosy : QBuffer
    {
        bool isInnerRead = true;
        qint64 readData(char* data, qint64 size) override
        {
            PelLu300RouterMessage other;
            isInnerRead = other.SetXmlBytes("no document");
            return QBuffer::readData(data, size);
        }
    } device;
    device.setData(compactXml);
    ASSERT_TRUE(device.open(QIODevice::ReadOnly));
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.LoadXml(&device));
    EXPECT_FALSE(device.isInnerRead);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
}
