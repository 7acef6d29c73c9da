// SPDX-License-Identifier: MIT
// Whole documents through devices that cannot seek: pipes, sockets, and devices that deliver small pieces.

#include "LogSupport.h"
#include "TestDevices.h"
#include "TestSupport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <functional>
#include <thread>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;

namespace {

PelLu300RouterMessage sample()
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(5000);
    message.AppendFragment(fragment);
    return message;
}

const char* const sampleXml =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>"
    "<Fragment><OstraInterfacePort><Port>5000</Port></OstraInterfacePort></Fragment>"
    "</PelLu300RouterMessage>\n";

QByteArray sampleForm()
{
    return bytes("EAC09D5A 00000049 E1D9E008 00000009 00000005 5265706C79"
                 "EF193DE9 00000008 0000000000000007"
                 "61023A90 00000020 00000001"
                 "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388");
}

QByteArray compressedSample() { return sample().GetCompressedBinaryRepresentationAsQByteArray(9); }

// A message of some hundred kilobytes, more than a pipe holds at once.
PelLu300RouterMessage largeSample()
{
    PelLu300RouterMessage message = sample();
    Fragment fragment;
    for (unsigned int i = 0; i < 10000; ++i) {
        fragment.GetOstraInterfacePort().SetPort(i);
        message.AppendFragment(fragment);
    }
    return message;
}

// --- pipes and sockets ----------------------------------------------------------------------------

void pause() { std::this_thread::sleep_for(std::chrono::microseconds(200)); }

// Writes all of the bytes in pieces, with pauses.
void deliver(int descriptor, const QByteArray& content, int piece)
{
    for (int at = 0; at < static_cast<int>(content.size());) {
        const int size = std::min(piece, static_cast<int>(content.size()) - at);
        const ssize_t written = ::write(descriptor, content.constData() + at, static_cast<std::size_t>(size));
        if (written < 0)
            return;
        at += static_cast<int>(written);
        pause();
    }
}

enum class Kind
{
    Pipe,
    Socket
};

// The two ends of a connection, one to write to and one to read from.
class Connection
{
public:
    explicit Connection(Kind kind)
    {
        // Writing to a closed end must fail instead of ending the process.
        std::signal(SIGPIPE, SIG_IGN);
        int ends[2] = {-1, -1};
        EXPECT_EQ(kind == Kind::Pipe ? ::pipe(ends) : ::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        m_reading = ends[0];
        m_writing = ends[1];
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection()
    {
        if (m_writer.joinable())
            m_writer.join();
        closeReading();
        closeWriting();
    }

    int reading() const { return m_reading; }
    int writing() const { return m_writing; }

    // Delivers the content from another thread, and then closes the connection.
    void feed(const QByteArray& content, int piece = 7)
    {
        m_writer = std::thread([this, content, piece] {
            deliver(m_writing, content, piece);
            closeWriting();
        });
    }

    void closeReading() { close(m_reading); }
    void closeWriting() { close(m_writing); }

private:
    static void close(int& descriptor)
    {
        if (descriptor >= 0)
            ::close(descriptor);
        descriptor = -1;
    }

    int m_reading = -1;
    int m_writing = -1;
    std::thread m_writer;
};

struct Reading : QFile
{
    explicit Reading(const Connection& connection, QIODevice::OpenMode mode = QIODevice::ReadOnly)
    {
        EXPECT_TRUE(open(connection.reading(), mode, QFileDevice::DontCloseHandle));
        EXPECT_TRUE(isSequential());
    }
};

struct Writing : QFile
{
    explicit Writing(const Connection& connection)
    {
        EXPECT_TRUE(open(connection.writing(), QIODevice::WriteOnly | QIODevice::Unbuffered,
                         QFileDevice::DontCloseHandle));
        EXPECT_TRUE(isSequential());
    }
};

// A named pipe in a temporary folder.
class Fifo
{
public:
    Fifo() : m_path(m_folder.filePath(QStringLiteral("pipe")))
    {
        EXPECT_EQ(::mkfifo(m_path.toLocal8Bit().constData(), 0600), 0);
    }
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;
    ~Fifo()
    {
        if (m_writer.joinable())
            m_writer.join();
    }

    const QString& path() const { return m_path; }

    bool isThereAlone() const
    {
        struct stat status = {};
        return ::stat(m_path.toLocal8Bit().constData(), &status) == 0 && S_ISFIFO(status.st_mode)
               && QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
                      == QStringList(QStringLiteral("pipe"));
    }

    void feed(const QByteArray& content)
    {
        m_writer = std::thread([this, content] {
            const int descriptor = ::open(m_path.toLocal8Bit().constData(), O_WRONLY);
            deliver(descriptor, content, 7);
            ::close(descriptor);
        });
    }

private:
    QTemporaryDir m_folder;
    QString m_path;
    std::thread m_writer;
};

// --- devices written by hand ----------------------------------------------------------------------

// Delivers one byte at a time. The reader must wait for each, as for a socket.
class Trickle : public QIODevice
{
public:
    explicit Trickle(const QByteArray& content) : m_content(content)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_ready + QIODevice::bytesAvailable(); }
    bool waitForReadyRead(int) override
    {
        m_ready = m_at < static_cast<int>(m_content.size()) ? 1 : 0;
        return m_ready > 0;
    }
    int left() const { return static_cast<int>(m_content.size()) - m_at; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        if (size < 1 || m_ready == 0)
            return 0;
        *data = m_content.at(m_at++);
        m_ready = 0;
        return 1;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    int m_at = 0;
    int m_ready = 0;
};

class SequentialReading : public ::testing::TestWithParam<Kind>
{
};

} // namespace

// --- reading from pipes and sockets ---------------------------------------------------------------

INSTANTIATE_TEST_SUITE_P(Connections, SequentialReading, ::testing::Values(Kind::Pipe, Kind::Socket),
                         [](const ::testing::TestParamInfo<Kind>& parameter) {
                             return parameter.param == Kind::Pipe ? "Pipe" : "Socket";
                         });

TEST_P(SequentialReading, LoadXmlReadsWhatComesInSmallPieces)
{
    Connection connection(GetParam());
    connection.feed(sampleXml);
    Reading file(connection);
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.LoadXml(&file));
    EXPECT_TRUE(message == sample());
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
    EXPECT_TRUE(file.isOpen());
}

TEST_P(SequentialReading, LoadBinaryReadsPlainAndCompressedForms)
{
    for (const QByteArray& form : {sampleForm(), compressedSample()}) {
        Connection connection(GetParam());
        connection.feed(form);
        Reading file(connection);
        PelLu300RouterMessage message;
        EXPECT_TRUE(message.LoadBinary(&file));
        EXPECT_TRUE(message == sample());
    }
}

TEST_P(SequentialReading, AStreamIsReadInPlainAndCompressedFormWithAndWithoutBuffer)
{
    for (const QByteArray& form : {sampleForm(), compressedSample()}) {
        for (const auto mode :
             {QIODevice::OpenMode(QIODevice::ReadOnly), QIODevice::ReadOnly | QIODevice::Unbuffered}) {
            Connection connection(GetParam());
            connection.feed(form, 3);
            Reading file(connection, mode);
            QDataStream stream(&file);
            PelLu300RouterMessage message;
            EXPECT_TRUE(message.SetBinaryRepresentation(stream));
            EXPECT_TRUE(message == sample());
            EXPECT_EQ(stream.status(), QDataStream::Ok);
        }
    }
}

TEST_P(SequentialReading, ADocumentLargerThanTheConnectionHoldsIsReadInEveryForm)
{
    const PelLu300RouterMessage large = largeSample();
    PelLu300RouterMessage source(large);
    {
        Connection connection(GetParam());
        connection.feed(source.GetXmlString().toUtf8(), 60000);
        Reading file(connection);
        PelLu300RouterMessage message;
        EXPECT_TRUE(message.LoadXml(&file));
        EXPECT_TRUE(message == large);
    }
    for (const QByteArray& form : {source.GetBinaryRepresentationAsQByteArray(),
                                   source.GetCompressedBinaryRepresentationAsQByteArray(0)}) {
        ASSERT_GT(form.size(), 200000);
        Connection connection(GetParam());
        connection.feed(form, 60000);
        Reading file(connection);
        QDataStream stream(&file);
        PelLu300RouterMessage message;
        EXPECT_TRUE(message.SetBinaryRepresentation(stream));
        EXPECT_TRUE(message == large);
    }
}

TEST_P(SequentialReading, FormsOneAfterTheOtherOnOneStreamAreReadInTheirOrder)
{
    Connection connection(GetParam());
    connection.feed(sampleForm() + compressedSample() + portForm() + sampleForm() + "rest");
    Reading file(connection);
    QDataStream stream(&file);
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.SetBinaryRepresentation(stream));
    EXPECT_TRUE(message == sample());
    PelLu300RouterMessage fromCompressed;
    EXPECT_TRUE(fromCompressed.SetBinaryRepresentation(stream));
    EXPECT_TRUE(fromCompressed == sample());
    OstraInterfacePort port;
    EXPECT_TRUE(port.SetBinaryRepresentation(stream));
    EXPECT_EQ(port.GetPort(), 5000U);
    PelLu300RouterMessage last;
    EXPECT_TRUE(last.SetBinaryRepresentation(stream));
    EXPECT_TRUE(last == sample());
    EXPECT_EQ(file.readAll(), QByteArray("rest"));
}

TEST_P(SequentialReading, ReadingBehindTheLastFormFails)
{
    Connection connection(GetParam());
    connection.feed(portForm());
    Reading file(connection);
    QDataStream stream(&file);
    OstraInterfacePort port;
    ASSERT_TRUE(port.SetBinaryRepresentation(stream));
    EXPECT_FALSE(port.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("offset 0: The binary form is cut off."));
    EXPECT_EQ(port.GetPort(), 5000U);
}

TEST_P(SequentialReading, ABinaryFormThatEndsTooEarlyIsCutOffAndChangesNothing)
{
    for (const QByteArray& form : {sampleForm(), compressedSample()}) {
        for (const int size : {0, 1, 7, 8, 9, 40, static_cast<int>(form.size()) - 1}) {
            Connection connection(GetParam());
            connection.feed(form.left(size));
            Reading file(connection);
            QDataStream stream(&file);
            PelLu300RouterMessage message = sample();
            const Log log(message);
            EXPECT_FALSE(message.SetBinaryRepresentation(stream));
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
            const QString sentence = QStringLiteral("offset %1: The binary form is cut off.").arg(size);
            EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
            log.expectOneError(sentence);
            EXPECT_TRUE(message == sample());
        }
    }
}

TEST_P(SequentialReading, ABinaryFileThatEndsTooEarlyIsCutOff)
{
    Connection connection(GetParam());
    connection.feed(sampleForm().left(50));
    Reading file(connection);
    PelLu300RouterMessage message = sample();
    EXPECT_FALSE(message.LoadBinary(&file));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
    EXPECT_EQ(IMKObject::GetLastFailure().place.offset, 50);
    EXPECT_TRUE(message == sample());
}

TEST_P(SequentialReading, XmlThatEndsTooEarlyIsNotWellFormed)
{
    Connection connection(GetParam());
    connection.feed(QByteArray(sampleXml).left(100));
    Reading file(connection);
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.LoadXml(&file));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    EXPECT_EQ(IMKObject::GetLastFailure().place.line, 2);
    EXPECT_EQ(IMKObject::GetLastFailure().place.path, QStringLiteral("/PelLu300RouterMessage/MessageID"));
}

TEST_P(SequentialReading, AConnectionThatIsClosedAtOnceIsNoDocument)
{
    PelLu300RouterMessage message = sample();
    {
        Connection connection(GetParam());
        connection.closeWriting();
        Reading file(connection);
        EXPECT_FALSE(message.LoadXml(&file));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    }
    Connection connection(GetParam());
    connection.closeWriting();
    Reading file(connection);
    EXPECT_FALSE(message.LoadBinary(&file));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
    EXPECT_TRUE(message == sample());
}

// Without a buffer, no byte behind the form is requested, because the other side may wait for an answer.
TEST_P(SequentialReading, AFormIsReadWhileTheConnectionStaysOpen)
{
    for (const QByteArray& form : {sampleForm(), compressedSample()}) {
        Connection connection(GetParam());
        deliver(connection.writing(), form, 1000);
        Reading file(connection, QIODevice::ReadOnly | QIODevice::Unbuffered);
        QDataStream stream(&file);
        PelLu300RouterMessage message;
        EXPECT_TRUE(message.SetBinaryRepresentation(stream));
        EXPECT_TRUE(message == sample());
    }
}

TEST_P(SequentialReading, AnotherClassIsRefusedByNameWithoutWaitingForItsContent)
{
    Connection connection(GetParam());
    deliver(connection.writing(), sampleForm().left(8), 1000);
    Reading file(connection, QIODevice::ReadOnly | QIODevice::Unbuffered);
    QDataStream stream(&file);
    PelVtConnectServer server;
    EXPECT_FALSE(server.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::WrongClass);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("offset 0: The binary form holds PelLu300RouterMessage, expected is "
                             "PelVtConnectServer."));
}

TEST_P(SequentialReading, AFormThatAnnouncesMoreThanAdmittedIsRefusedWithoutWaitingForIt)
{
    Connection connection(GetParam());
    deliver(connection.writing(), bytes("EAC09D5A 7FFFFFFF"), 1000);
    Reading file(connection, QIODevice::ReadOnly | QIODevice::Unbuffered);
    QDataStream stream(&file);
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);
    EXPECT_EQ(IMKObject::GetLastFailure().text,
              QStringLiteral("The input is larger than the limit of 268435456 bytes."));
}

TEST_P(SequentialReading, AnEndlessDocumentIsRefusedAtTheLimit)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.inputSize = 1000; }));
    for (const bool isXml : {true, false}) {
        Connection connection(GetParam());
        deliver(connection.writing(), QByteArray(1001, ' '), 1001);
        Reading file(connection, QIODevice::ReadOnly | QIODevice::Unbuffered);
        PelLu300RouterMessage message;
        EXPECT_FALSE(isXml ? message.LoadXml(&file) : message.LoadBinary(&file));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);
        EXPECT_EQ(IMKObject::GetLastFailure().text,
                  QStringLiteral("The input is larger than the limit of 1000 bytes."));
    }
}

TEST_P(SequentialReading, ADescriptorThatDoesNotWaitIsAnErrorOfInput)
{
    Connection connection(GetParam());
    ASSERT_EQ(::fcntl(connection.reading(), F_SETFL, O_NONBLOCK), 0);
    Reading file(connection);
    PelLu300RouterMessage message = sample();
    EXPECT_FALSE(message.LoadXml(&file));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_TRUE(IMKObject::GetLastFailure().text.startsWith(QLatin1String("The file cannot be read: ")));
    EXPECT_TRUE(message == sample());
}

// --- named pipes ----------------------------------------------------------------------------------

TEST(NamedPipe, LoadXmlReadsItByItsPath)
{
    Fifo fifo;
    fifo.feed(sampleXml);
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.LoadXml(fifo.path()));
    EXPECT_TRUE(message == sample());
}

TEST(NamedPipe, LoadXmlAndLoadBinaryOpenAndCloseIt)
{
    for (const QByteArray& content : {QByteArray(sampleXml), sampleForm(), compressedSample()}) {
        Fifo fifo;
        fifo.feed(content);
        QFile file(fifo.path());
        PelLu300RouterMessage message;
        EXPECT_TRUE(content.startsWith('<') ? message.LoadXml(&file) : message.LoadBinary(&file));
        EXPECT_TRUE(message == sample());
        EXPECT_FALSE(file.isOpen());
    }
}

TEST(NamedPipe, AFailureNamesIt)
{
    Fifo fifo;
    fifo.feed("<PelLu300RouterMessage>\n</Other>");
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.LoadXml(fifo.path()));
    EXPECT_TRUE(IMKObject::GetLastFailure().GetSentence().startsWith(fifo.path() + QLatin1String(":2:")));
}

TEST(NamedPipe, SaveXmlRefusesToReplaceIt)
{
    const Fifo fifo;
    PelLu300RouterMessage message = sample();
    const Log log(message);
    EXPECT_FALSE(message.SaveXml(fifo.path()));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    const QString sentence =
        fifo.path() + QStringLiteral(": The file cannot be written: it exists and is no regular file.");
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
    log.expectOneError(sentence);
    EXPECT_TRUE(fifo.isThereAlone());
    EXPECT_TRUE(message == sample());
}

TEST(NamedPipe, SaveXmlRefusesADeviceToo)
{
    EXPECT_FALSE(sample().SaveXml(QStringLiteral("/dev/null")));
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("/dev/null: The file cannot be written: it exists and is no regular file."));
}

// --- a device that delivers one byte at a time ----------------------------------------------------

TEST(TricklingDevice, IsReadInPlainAndCompressedForm)
{
    for (const QByteArray& form : {sampleForm(), compressedSample()}) {
        Trickle device(form + "rest");
        QDataStream stream(&device);
        PelLu300RouterMessage message;
        EXPECT_TRUE(message.SetBinaryRepresentation(stream));
        EXPECT_TRUE(message == sample());
        EXPECT_EQ(device.left(), 4);
    }
}

TEST(TricklingDevice, LeavesTheStreamInOrder)
{
    Trickle device(sampleForm());
    QDataStream stream(&device);
    PelLu300RouterMessage message;
    ASSERT_TRUE(message.SetBinaryRepresentation(stream));
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TEST(TricklingDevice, IsReadInTheByteOrderOfTheStream)
{
    Trickle device(bytes("B82E017F 10000000 1705981F 08000000 8813000000000000"));
    QDataStream stream(&device);
    stream.setByteOrder(QDataStream::LittleEndian);
    OstraInterfacePort port;
    EXPECT_TRUE(port.SetBinaryRepresentation(stream));
    EXPECT_EQ(port.GetPort(), 5000U);
}

TEST(TricklingDevice, GivesFormsOneAfterTheOther)
{
    Trickle device(sampleForm() + portForm() + compressedSample());
    QDataStream stream(&device);
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.SetBinaryRepresentation(stream));
    OstraInterfacePort port;
    EXPECT_TRUE(port.SetBinaryRepresentation(stream));
    EXPECT_EQ(port.GetPort(), 5000U);
    PelLu300RouterMessage second;
    EXPECT_TRUE(second.SetBinaryRepresentation(stream));
    EXPECT_TRUE(second == sample());
    EXPECT_EQ(device.left(), 0);
}

// The device does not report its end, so more bytes could come.
TEST(TricklingDevice, ThatHasNoMoreIsNotWholeYet)
{
    for (const int size : {0, 5, 8, 60}) {
        Trickle device(sampleForm().left(size));
        QDataStream stream(&device);
        PelLu300RouterMessage message = sample();
        EXPECT_FALSE(message.SetBinaryRepresentation(stream));
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  QStringLiteral("Only %1 bytes of the binary form have arrived.").arg(size));
        EXPECT_TRUE(message == sample());
        EXPECT_EQ(device.bytesAvailable(), size);
    }
}

TEST(TricklingDevice, ThatAnnouncesMuchAndHasNoMoreIsNotWholeYet)
{
    Trickle device(bytes("EAC09D5A 0FFFFFF0") + QByteArray(100, '\0'));
    QDataStream stream(&device);
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("Only 108 bytes of the binary form have arrived."));
}

// --- writing --------------------------------------------------------------------------------------

TEST(SequentialWriting, APlainFormCanBeWrittenToAPipeAndReadBack)
{
    for (const Kind kind : {Kind::Pipe, Kind::Socket}) {
        for (PelLu300RouterMessage message : {sample(), largeSample()}) {
            Connection connection(kind);
            bool isWritten = false;
            std::thread writer([&] {
                Writing file(connection);
                QDataStream stream(&file);
                message.GetBinaryRepresentation(stream);
                isWritten = stream.status() == QDataStream::Ok;
                connection.closeWriting();
            });
            Reading file(connection);
            QDataStream stream(&file);
            PelLu300RouterMessage read;
            EXPECT_TRUE(read.SetBinaryRepresentation(stream));
            EXPECT_TRUE(file.readAll().isEmpty());
            writer.join();
            EXPECT_TRUE(isWritten);
            EXPECT_TRUE(read == message);
        }
    }
}

TEST(SequentialWriting, ACompressedFormCanBeWrittenToAPipeAndReadBack)
{
    for (const Kind kind : {Kind::Pipe, Kind::Socket}) {
        for (const int level : {-1, 0, 9}) {
            PelLu300RouterMessage message = largeSample();
            Connection connection(kind);
            bool isWritten = false;
            std::thread writer([&] {
                Writing file(connection);
                QDataStream stream(&file);
                message.GetCompressedBinaryRepresentation(stream, level);
                isWritten = stream.status() == QDataStream::Ok;
                connection.closeWriting();
            });
            Reading file(connection);
            PelLu300RouterMessage read;
            EXPECT_TRUE(read.LoadBinary(&file));
            writer.join();
            EXPECT_TRUE(isWritten);
            EXPECT_TRUE(read == message);
        }
    }
}

TEST(SequentialWriting, ADeviceThatCannotSeekGetsTheSameBytesAsAByteArray)
{
    PelLu300RouterMessage message = sample();
    Drain plain;
    QDataStream plainStream(&plain);
    message.GetBinaryRepresentation(plainStream);
    EXPECT_EQ(plain.written, sampleForm());
    Drain packed;
    QDataStream packedStream(&packed);
    message.GetCompressedBinaryRepresentation(packedStream, 9);
    EXPECT_EQ(packed.written, compressedSample());
}

TEST(SequentialWriting, FormsOneAfterTheOtherOnOneStreamAreReadBackInTheirOrder)
{
    Drain device;
    QDataStream out(&device);
    OstraInterfacePort port;
    port.SetPort(5000);
    sample().GetBinaryRepresentation(out);
    port.GetCompressedBinaryRepresentation(out, 9);
    sample().GetCompressedBinaryRepresentation(out, 0);
    Trickle source(device.written);
    QDataStream in(&source);
    PelLu300RouterMessage first;
    EXPECT_TRUE(first.SetBinaryRepresentation(in));
    EXPECT_TRUE(first == sample());
    OstraInterfacePort second;
    EXPECT_TRUE(second.SetBinaryRepresentation(in));
    EXPECT_EQ(second.GetPort(), 5000U);
    PelLu300RouterMessage third;
    EXPECT_TRUE(third.SetBinaryRepresentation(in));
    EXPECT_TRUE(third == sample());
}

TEST(SequentialWriting, NothingIsWrittenWhenACheckFails)
{
    PelLu300RouterMessage message;
    message.SetValidate(true);
    for (const bool compressed : {false, true}) {
        Drain device;
        QDataStream stream(&device);
        if (compressed)
            EXPECT_THROW(message.GetCompressedBinaryRepresentation(stream, 9), OutOfRangeException);
        else
            EXPECT_THROW(message.GetBinaryRepresentation(stream), OutOfRangeException);
        EXPECT_TRUE(device.written.isEmpty());
    }
}

TEST(SequentialWriting, ADeviceThatTakesNoMoreIsAFailureThatIsExplained)
{
    for (const bool compressed : {false, true}) {
        PelLu300RouterMessage message = sample();
        const Log log(message);
        Drain device(20);
        QDataStream stream(&device);
        if (compressed)
            message.GetCompressedBinaryRepresentation(stream, 9);
        else
            message.GetBinaryRepresentation(stream);
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
        EXPECT_FALSE(IMKObject::GetLastFailure().text.isEmpty());
        log.expectOneError(IMKObject::GetLastFailure().GetSentence());
    }
}

TEST(SequentialWriting, AConnectionThatTheReaderHasClosedIsAFailureThatIsExplained)
{
    for (const Kind kind : {Kind::Pipe, Kind::Socket}) {
        Connection connection(kind);
        connection.closeReading();
        Writing file(connection);
        QDataStream stream(&file);
        PelLu300RouterMessage message = sample();
        message.GetBinaryRepresentation(stream);
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
        EXPECT_TRUE(message == sample());
    }
}
