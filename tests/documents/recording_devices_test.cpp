// SPDX-License-Identifier: MIT
// Recordings on devices: pipes and sockets that stay open, devices that deliver later, end early or fail.
#include "RecordingSupport.h"
#include "unit/WaitingSupport.h"

#include <QtCore/QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

using namespace recording_support;

namespace {

DocumentError refusalOf(RecordingReader& reader)
{
    try {
        RecordedMessage message;
        reader.ReadNext(message);
    } catch (const DocumentError& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return DocumentError(Failure());
}

// The two ends of a pipe; one of them as a file, buffered or not.
class Pipe
{
public:
    explicit Pipe(QIODevice::OpenMode mode = QIODevice::ReadOnly)
    {
        int ends[2] = {-1, -1};
        EXPECT_EQ(::pipe(ends), 0);
        EXPECT_TRUE(file.open(ends[0], mode, QFileDevice::AutoCloseHandle));
        m_far = ends[1];
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() { end(); }

    void send(const QByteArray& content) const
    {
        EXPECT_EQ(::write(m_far, content.constData(), static_cast<size_t>(content.size())), content.size());
    }
    void end()
    {
        if (m_far >= 0)
            ::close(m_far);
        m_far = -1;
    }

    QFile file;

private:
    int m_far = -1;
};

// Gives its content and then fails.
class TornTape : public QIODevice
{
public:
    TornTape(const QByteArray& content, bool isSequential) : m_content(content), m_isSequential(isSequential)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }
    bool isSequential() const override { return m_isSequential; }
    qint64 size() const override { return m_isSequential ? 0 : m_content.size() + 1000; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        if (m_content.isEmpty()) {
            setErrorString(QStringLiteral("The tape is torn"));
            return -1;
        }
        const qint64 given = std::min<qint64>(size, m_content.size());
        std::copy_n(m_content.constData(), given, data);
        m_content.remove(0, static_cast<int>(given));
        return given;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    bool m_isSequential;
};

} // namespace

TEST(RecordingOnADevice, IsReadFromAPipeThatStaysOpenMessageByMessage)
{
    for (const auto mode :
         {QIODevice::OpenMode(QIODevice::ReadOnly), QIODevice::ReadOnly | QIODevice::Unbuffered}) {
        Pipe pipe(mode);
        RecordingReader reader(pipe.file);
        RecordedMessage message;
        unsigned int number = 0;
        // Without the line break, so that nothing at all is behind the message.
        for (const Form form : allForms)
            for (const bool isBroken : {false, true}) {
                const QByteArray whole = inForm(form, ++number);
                pipe.send(isBroken ? whole : whole.trimmed());
                ASSERT_TRUE(reader.ReadNext(message));
                EXPECT_EQ(numberIn(message), number);
            }
        pipe.send(inForm(Form::Xml, 98) + inForm(Form::Binary, 99));
        for (const unsigned int expected : {98U, 99U}) {
            ASSERT_TRUE(reader.ReadNext(message));
            EXPECT_EQ(numberIn(message), expected);
        }
        pipe.end();
        EXPECT_FALSE(reader.ReadNext(message));
        EXPECT_FALSE(reader.ReadNext(message));
    }
}

TEST(RecordingOnADevice, BeginsWithWhatAFileHasBuffered)
{
    Pipe pipe;
    pipe.send("#" + inForm(Form::Binary, 1) + inForm(Form::Xml, 2));
    pipe.end();
    char mark = 0;
    ASSERT_TRUE(pipe.file.getChar(&mark));
    EXPECT_EQ(numbersIn(readAll(pipe.file)), QVector<unsigned int>({1, 2}));
}

TEST(RecordingOnADevice, IsReadFromASocketMessageByMessage)
{
    for (const int milliseconds : {0, 30000}) {
        const LimitsInScope inScope(waiting(milliseconds));
        Socket socket;
        RecordingReader reader(socket);
        RecordedMessage message;
        for (const Form form : allForms) {
            socket.send(inForm(form, 7).trimmed());
            ASSERT_TRUE(reader.ReadNext(message));
            EXPECT_EQ(numberIn(message), 7U);
        }
    }
}

TEST(RecordingOnADevice, LosesNothingByReadingTooEarly)
{
    const LimitsInScope inScope(waiting(0));
    for (const Form form : allForms) {
        Socket socket;
        RecordingReader reader(socket);
        RecordedMessage message;
        EXPECT_EQ(refusalOf(reader).GetKind(), Failure::NotWholeYet);
        const QByteArray bytes = inForm(form, 5).trimmed();
        for (int i = 0; i < bytes.size(); ++i) {
            const DocumentError error = refusalOf(reader);
            EXPECT_EQ(error.GetKind(), Failure::NotWholeYet);
            EXPECT_EQ(error.GetPlace().offset, 0);
            socket.send(bytes.mid(i, 1));
        }
        ASSERT_TRUE(reader.ReadNext(message));
        EXPECT_EQ(message.bytes, bytes);
        EXPECT_EQ(message.number, 1);
    }
}

TEST(RecordingOnADevice, KeepsWhatItKnowsOfJunkWhileItWaits)
{
    const LimitsInScope inScope(waiting(0));
    Socket socket;
    RecordingReader reader(socket);
    RecordedMessage message;
    for (const char* const part : {"junk", " and more", "\n<PelLu300Router"}) {
        socket.send(part);
        EXPECT_EQ(refusalOf(reader).GetKind(), Failure::NotWholeYet);
    }
    socket.send("InterfaceXml/>");
    EXPECT_EQ(refusalOf(reader).GetText(), "No message begins here; 14 bytes are passed over.");
    ASSERT_TRUE(reader.ReadNext(message));
    EXPECT_EQ(message.bytes, "<PelLu300RouterInterfaceXml/>");
}

TEST(RecordingOnADevice, StopsGoingThroughItWhenNothingMoreArrives)
{
    const LimitsInScope inScope(waiting(0));
    Socket socket;
    socket.send(inForm(Form::Xml, 1) + inForm(Form::Binary, 2).left(20));
    const Outcome outcome = readAll(socket);
    EXPECT_EQ(outcome.messages.size(), 1);
    ASSERT_EQ(outcome.errors.size(), 1);
    EXPECT_EQ(outcome.errors.first().GetKind(), Failure::NotWholeYet);
}

TEST(RecordingOnADevice, EndsWithTheReasonWhenTheDeviceFails)
{
    for (const bool isSequential : {true, false})
        for (const Form form : allForms)
            for (const bool isWhole : {true, false}) {
                const QByteArray second = inForm(form, 2);
                TornTape tape(inForm(form, 1) + (isWhole ? second : second.chopped(5)), isSequential);
                RecordingReader reader(tape);
                RecordedMessage message;
                EXPECT_TRUE(reader.ReadNext(message));
                if (isWhole) {
                    EXPECT_TRUE(reader.ReadNext(message));
                }
                const DocumentError error = refusalOf(reader);
                EXPECT_EQ(error.GetKind(), Failure::InputOutput);
                EXPECT_EQ(error.GetText(), "The device cannot be read: The tape is torn.");
                EXPECT_FALSE(reader.ReadNext(message));
            }
}

TEST(RecordingOnADevice, TellsWhyAFileCannotBeRead)
{
    QFile missing(QStringLiteral("/nonexistent/recording"));
    const Outcome none = readAll(missing);
    ASSERT_EQ(none.errors.size(), 1);
    EXPECT_EQ(none.errors.first().GetText(), "The file cannot be read: No such file or directory.");

    QBuffer writing;
    ASSERT_TRUE(writing.open(QIODevice::WriteOnly));
    EXPECT_EQ(readAll(writing).errors.first().GetText(),
              "The device cannot be read: it is not open for reading.");

    // A folder can be opened, but not read.
    QFile folder;
    const int descriptor = ::open("/", O_RDONLY);
    ASSERT_GE(descriptor, 0);
    if (folder.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        EXPECT_EQ(readAll(folder).errors.first().GetKind(), Failure::InputOutput);
    else
        ::close(descriptor);
}

TEST(RecordingOnADevice, OpensAFileAndClosesIt)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("recording")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    PelLu300RouterInterfaceXml document = numbered(1);
    for (const Form form : allForms)
        AppendMessage(file, document, form);
    file.close();
    EXPECT_EQ(readAll(file).messages.size(), 5);
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(readAll(file).messages.size(), 5);
    EXPECT_TRUE(file.isOpen());
}

TEST(RecordingOnADevice, FindsWhatAFileHasGotSinceItsEnd)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("recording"));
    QFile writing(path);
    ASSERT_TRUE(writing.open(QIODevice::WriteOnly));
    QFile reading(path);
    RecordingReader reader(reading);
    RecordedMessage message;
    for (unsigned int number = 1; number <= 3; ++number) {
        EXPECT_FALSE(reader.ReadNext(message));
        PelLu300RouterInterfaceXml document = numbered(number);
        AppendMessage(writing, document, Form::JsonLines);
        ASSERT_TRUE(reader.ReadNext(message));
        EXPECT_EQ(numberIn(message), number);
    }
}

TEST(RecordingOnADevice, CountsOffsetsFromWhereReadingBegan)
{
    QByteArray content = "12345" + inForm(Form::Binary, 1);
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
    ASSERT_TRUE(buffer.seek(5));
    const Outcome outcome = readAll(buffer);
    ASSERT_EQ(outcome.messages.size(), 1);
    EXPECT_EQ(outcome.messages.first().offset, 0);
}
