// SPDX-License-Identifier: MIT
// The binary form is the same on every kind of device, and the device is left as after ordinary calls.

#include "TestDevices.h"
#include "TestSupport.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>

using namespace testing_support;

namespace {

const char* const portFrame = "00000010 1F980517 00000008 0000000000001388";

OstraInterfacePort port()
{
    OstraInterfacePort record;
    record.SetPort(5000);
    return record;
}

// A fragment whose payload fails its check in the middle of the frame.
PelLu300RouterMessage messageWithBadPayload()
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(7));
    message.AppendFragment(fragment);
    message.SetValidate(true);
    return message;
}

// Has random access in memory but is not a QBuffer. It has room for so many bytes.
class Disk : public QIODevice
{
public:
    Disk() { open(QIODevice::ReadWrite | QIODevice::Unbuffered); }
    qint64 size() const override { return content.size(); }
    bool seek(qint64 position) override
    {
        ++seeks;
        return QIODevice::seek(position);
    }
    QByteArray content;
    int room = 1000;
    int writes = 0;
    int seeks = 0;

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* data, qint64 size) override
    {
        ++writes;
        const int taken = static_cast<int>(qMin<qint64>(size, room - pos()));
        content.replace(static_cast<int>(pos()), taken, data, taken);
        return taken;
    }
};

} // namespace

TEST(BinaryDevices, ASequentialDeviceGetsTheFrameInOnePiece)
{
    Drain pipe;
    QDataStream stream(&pipe);
    EXPECT_TRUE(port().GetBinary(stream, 0, false));
    EXPECT_EQ(pipe.written, bytes(portFrame));
    stream.setByteOrder(QDataStream::LittleEndian);
    EXPECT_TRUE(port().GetBinary(stream, 1, true));
    EXPECT_EQ(pipe.written.mid(20), bytes("01000000 10000000 1705981F 08000000 8813000000000000"));
}

TEST(BinaryDevices, ASequentialDeviceGetsNothingWhenACheckFailsHalfway)
{
    Drain pipe;
    QDataStream stream(&pipe);
    EXPECT_THROW(messageWithBadPayload().GetBinary(stream, 0, false), OutOfRangeException);
    EXPECT_TRUE(pipe.written.isEmpty());
}

TEST(BinaryDevices, AnAppendingFileAndBufferGetTheFrameAtTheirEnd)
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("frames")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("ab");
    file.close();
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Append));
    {
        QDataStream stream(&file);
        EXPECT_TRUE(port().GetBinary(stream, 0, false));
    }
    file.close();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "ab" + bytes(portFrame));

    QByteArray content("ab");
    {
        QDataStream stream(&content, QIODevice::WriteOnly | QIODevice::Append);
        EXPECT_TRUE(port().GetBinary(stream, 0, false));
    }
    EXPECT_EQ(content, "ab" + bytes(portFrame));
}

TEST(BinaryDevices, AFrameThatBeginsInsideABufferAndEndsBehindItsEndExtendsIt)
{
    QBuffer buffer;
    buffer.setData(QByteArray(25, 'x'));
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    buffer.seek(15);
    QDataStream stream(&buffer);
    EXPECT_TRUE(port().GetBinary(stream, 0, false));
    EXPECT_EQ(buffer.pos(), 35);
    EXPECT_EQ(buffer.data(), QByteArray(15, 'x') + bytes(portFrame));
}

TEST(BinaryDevices, AThrowHalfwayLeavesTheBeginningInABuffer)
{
    const QByteArray before(400, 'x');
    QBuffer buffer;
    buffer.setData(before);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    buffer.seek(100);
    QDataStream stream(&buffer);
    EXPECT_THROW(messageWithBadPayload().GetBinary(stream, 0, false), OutOfRangeException);
    const int position = static_cast<int>(buffer.pos());
    EXPECT_GT(position, 121);
    // Lengths that were not known yet are 0.
    EXPECT_EQ(buffer.data().left(100), before.left(100));
    EXPECT_EQ(buffer.data().mid(100, 4), bytes("00000000"));
    EXPECT_EQ(buffer.data().mid(104, 17), bytes("E1D9E008 00000009 00000005") + "Event");
    EXPECT_EQ(buffer.data().mid(position), before.mid(position));
}

TEST(BinaryDevices, AThrowHalfwayLeavesAFileAsItWas)
{
    const QByteArray before(400, 'x');
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(before);
    file.seek(100);
    QDataStream stream(&file);
    EXPECT_THROW(messageWithBadPayload().GetBinary(stream, 0, false), OutOfRangeException);
    EXPECT_EQ(file.pos(), 100);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
    file.seek(0);
    EXPECT_EQ(file.readAll(), before);
}

TEST(BinaryDevices, AFileGetsTheFrameAtItsPosition)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(QByteArray(25, 'x'));
    file.seek(15);
    QDataStream stream(&file);
    EXPECT_TRUE(port().GetBinary(stream, 0, false));
    EXPECT_EQ(file.pos(), 35);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
    file.seek(0);
    EXPECT_EQ(file.readAll(), QByteArray(15, 'x') + bytes(portFrame));
}

TEST(BinaryDevices, ADeviceThatCanSeekGetsTheFrameInOnePieceWithoutSeeking)
{
    Disk disk;
    QDataStream stream(&disk);
    EXPECT_TRUE(port().GetBinary(stream, 0, false));
    EXPECT_EQ(disk.content, bytes(portFrame));
    EXPECT_EQ(disk.writes, 1);
    EXPECT_EQ(disk.seeks, 0);
    EXPECT_EQ(disk.pos(), 20);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(BinaryDevices, ADeviceThatTakesOnlyAPartShowsItInTheStatus)
{
    for (int room = 0; room < 20; ++room) {
        SCOPED_TRACE(room);
        Disk disk;
        disk.room = room;
        QDataStream stream(&disk);
        port().GetBinary(stream, 0, false);
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
        EXPECT_EQ(disk.content, bytes(portFrame).left(room));
    }
}

TEST(BinaryDevices, ABufferInTextModeIsWrittenThroughTheStream)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly | QIODevice::Text));
    QDataStream stream(&buffer);
    EXPECT_TRUE(port().GetBinary(stream, 0, false));
    EXPECT_EQ(buffer.data(), bytes(portFrame));
}

TEST(BinaryDevices, AShortReadConsumesWhatIsThereAndNotesItInTheStatus)
{
    QByteArray frame = bytes(portFrame);
    frame.chop(3);
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(frame);
    QBuffer buffer(&frame);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    for (QIODevice* device : {static_cast<QIODevice*>(&buffer), static_cast<QIODevice*>(&file)}) {
        device->seek(4);
        QDataStream stream(device);
        OstraInterfacePort record;
        EXPECT_THROW(record.SetBinary(stream, 16), BinaryParsingException);
        EXPECT_EQ(device->pos(), frame.size());
        EXPECT_EQ(stream.status(), QDataStream::ReadPastEnd);
    }
}

TEST(BinaryDevices, AStreamWithABadStatusIsNotWrittenTo)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    stream.setStatus(QDataStream::WriteFailed);
    port().GetBinary(stream, 0, false);
    EXPECT_TRUE(content.isEmpty());
}

TEST(BinaryDevices, ABufferThatWritesInItsOwnWayIsAskedToWrite)
{
    RefusingBuffer buffer;
    QDataStream stream(&buffer);
    port().GetBinary(stream, 0, false);
    EXPECT_TRUE(buffer.data().isEmpty());
    EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
}

TEST(BinaryDevices, ACharacterPushedBackAtTheBeginningDoesNoHarmToWriting)
{
    QByteArray content;
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    buffer.ungetChar('x');
    QDataStream stream(&buffer);
    port().GetBinary(stream, 0, false);
    EXPECT_LE(content.size(), 20);
}

// Reads a character and puts another one in its place.
void exchangeNext(QBuffer& buffer, char character)
{
    char taken = 0;
    ASSERT_TRUE(buffer.getChar(&taken));
    buffer.ungetChar(character);
}

TEST(BinaryDevices, ACharacterPushedBackIsRead)
{
    for (int place = 0; place < 16; ++place) {
        SCOPED_TRACE(place);
        QByteArray entry = bytes("1F980517 00000008 0000000000001388");
        QByteArray read = entry + "rest";
        QBuffer buffer(&read);
        ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
        entry[place] = static_cast<char>(entry[place] ^ 1);
        // The characters in front of the changed one are pushed back unchanged.
        buffer.read(place + 1);
        for (int i = place; i >= 0; --i)
            buffer.ungetChar(entry[i]);
        ASSERT_EQ(buffer.pos(), 0);

        // The same bytes in a buffer without pushed back characters.
        QByteArray plain = entry + "rest";
        QBuffer plainBuffer(&plain);
        ASSERT_TRUE(plainBuffer.open(QIODevice::ReadOnly));
        OstraInterfacePort expected;
        QDataStream plainStream(&plainBuffer);
        QString expectedText;
        try {
            expected.SetBinary(plainStream, 16);
        } catch (const BinaryParsingException& exception) {
            expectedText = exception.GetText();
        }
        OstraInterfacePort record;
        QDataStream stream(&buffer);
        QString text;
        try {
            record.SetBinary(stream, 16);
        } catch (const BinaryParsingException& exception) {
            text = exception.GetText();
        }
        EXPECT_EQ(record.IsPortSet(), expected.IsPortSet());
        EXPECT_EQ(record.GetPort(), expected.GetPort());
        EXPECT_EQ(text, expectedText);
        EXPECT_EQ(buffer.pos(), plainBuffer.pos());
        EXPECT_EQ(buffer.readAll(), plainBuffer.readAll());
    }
}

TEST(BinaryDevices, ACharacterPushedBackBehindTheFrameStaysThere)
{
    QByteArray content = bytes("1F980517 00000008 0000000000001388") + "rest";
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    buffer.read(18);
    buffer.ungetChar('E');
    for (int i = 16; i >= 0; --i)
        buffer.ungetChar(content[i]);
    OstraInterfacePort record;
    QDataStream stream(&buffer);
    record.SetBinary(stream, 16);
    EXPECT_EQ(record.GetPort(), 5000U);
    EXPECT_EQ(buffer.readAll(), QByteArray("rEst"));
}

TEST(BinaryDevices, ACharacterPushedBackInTheSecondOfTwoFramesIsRead)
{
    const QByteArray entry = bytes("1F980517 00000008 0000000000001388");
    QByteArray content = entry + entry;
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    QDataStream stream(&buffer);
    OstraInterfacePort record;
    record.SetBinary(stream, 16);
    buffer.read(15);
    exchangeNext(buffer, '\x89');
    for (int i = 14; i >= 0; --i)
        buffer.ungetChar(entry[i]);
    record.SetBinary(stream, 16);
    EXPECT_EQ(record.GetPort(), 5001U);
    EXPECT_TRUE(buffer.atEnd());
}

// In a large frame, in the middle of a text and between unknown entries.
TEST(BinaryDevices, CharactersPushedBackFarInsideAFrameAreRead)
{
    PelVtConnectServer server;
    server.SetAddress(QString(200000, QLatin1Char('a')));
    server.SetPort(7);
    const QByteArray unknown = bytes("00000001 00000004 00000000");
    QByteArray content = frameOf(server).mid(4) + unknown;
    const int length = static_cast<int>(content.size());
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    const QByteArray taken = buffer.read(100000);
    buffer.ungetChar('b');
    for (int i = 99998; i >= 0; --i)
        buffer.ungetChar(taken[i]);
    QDataStream stream(&buffer);
    PelVtConnectServer record;
    record.SetBinary(stream, length);
    QString expected(200000, QLatin1Char('a'));
    expected[99999 - 12] = QLatin1Char('b');
    EXPECT_TRUE(record.GetAddress() == expected);
    EXPECT_EQ(record.GetPort(), 7U);
    EXPECT_TRUE(buffer.atEnd());
}

// Entries that reach over the end of the frame take the bytes behind it, pushed back or not.
TEST(BinaryDevices, AnEntryThatReachesOverTheEndOfTheFrameTakesTheBytesBehindIt)
{
    for (const bool pushBack : {false, true}) {
        SCOPED_TRACE(pushBack);
        QByteArray content = bytes("1F980517 00000008 0000000000001388") + "rest";
        QBuffer buffer(&content);
        ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
        if (pushBack) {
            buffer.read(16);
            buffer.ungetChar('\x89');
            for (int i = 14; i >= 0; --i)
                buffer.ungetChar(content[i]);
        }
        QDataStream stream(&buffer);
        OstraInterfacePort record;
        EXPECT_THROW(record.SetBinary(stream, 12), BinaryParsingException);
        EXPECT_EQ(record.GetPort(), pushBack ? 5001U : 5000U);
        EXPECT_EQ(buffer.readAll(), QByteArray("rest"));
        EXPECT_EQ(stream.status(), QDataStream::Ok);
    }
}

TEST(BinaryDevices, ManyUnknownEntriesInALargeFrameAreSkippedOneByOne)
{
    QByteArray content;
    for (int i = 0; i < 40000; ++i)
        content += bytes("00000001 00000002 0000");
    content += bytes("1F980517 00000008 0000000000001388");
    const int length = static_cast<int>(content.size());
    content += "rest";
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    QDataStream stream(&buffer);
    OstraInterfacePort record;
    record.SetBinary(stream, length);
    EXPECT_EQ(record.GetPort(), 5000U);
    EXPECT_EQ(buffer.readAll(), QByteArray("rest"));
}

TEST(BinaryDevices, ATransactionCanBeRolledBack)
{
    QByteArray frame = bytes("1F980517 00000008 0000");
    QDataStream stream(frame);
    stream.startTransaction();
    OstraInterfacePort record;
    EXPECT_THROW(record.SetBinary(stream, 16), BinaryParsingException);
    stream.rollbackTransaction();
    EXPECT_EQ(stream.device()->pos(), 0);
}

TEST(BinaryDevices, ADeviceThatCannotBeReadEndsInTheLengthError)
{
    QByteArray content;
    QDataStream stream(&content, QIODevice::WriteOnly);
    OstraInterfacePort record;
    EXPECT_THROW(record.SetBinary(stream, 16), BinaryParsingException);
    EXPECT_FALSE(record.IsPortSet());
}

TEST(BinaryDevices, ABufferOfTheCallersIsReadFromItsPosition)
{
    QBuffer buffer;
    buffer.setData(QByteArray("junk") + bytes(portFrame) + QByteArray("rest"));
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    buffer.seek(8);
    QDataStream stream(&buffer);
    OstraInterfacePort record;
    record.SetBinary(stream, 16);
    EXPECT_EQ(record.GetPort(), 5000U);
    EXPECT_EQ(buffer.pos(), 24);
    EXPECT_EQ(buffer.readAll(), QByteArray("rest"));
}

TEST(XmlWriting, AsksTheVirtualCheckWithoutFlag)
{
    class Counting : public OstraInterfacePort
    {
    public:
        using OstraInterfacePort::Check;
        void Check() const override { ++checks; }
        mutable int checks = 0;
    } record;
    record.SetValidate(true);
    xmlOf(record);
    EXPECT_EQ(record.checks, 1);
    record.SetValidate(false);
    xmlOf(record);
    EXPECT_EQ(record.checks, 1);
}
