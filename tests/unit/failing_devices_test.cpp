// SPDX-License-Identifier: MIT
// Whole documents are written to devices that fail in some call. Whichever call it is, and whether it fails
// once or all following calls do, the failure is reported with the device's own reason.

#include "LogSupport.h"
#include "TestFolder.h"
#include "TestSupport.h"

#include <QtCore/QIODevice>

#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstring>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;

namespace {

// How a device fails.
struct Fault
{
    enum Call
    {
        Write,      // nothing is taken
        ShortWrite, // one byte is left over
        Seek
    };

    Call call = Write;
    // The number of the failing call, from 1.
    int at = 0;
    // Whether all later calls fail too. Otherwise they succeed, and the first success clears the error
    // string.
    bool isLasting = false;
};

const char* const faultNames[] = {"write", "short write", "seek"};

// Keeps what is written, and can seek. It is not a QBuffer, so the library cannot use its memory directly.
class FailingDevice : public QIODevice
{
public:
    explicit FailingDevice(const Fault& fault) : m_fault(fault)
    {
        open(QIODevice::ReadWrite | QIODevice::Unbuffered);
    }

    bool hasFailed() const { return m_hasFailed; }
    qint64 size() const override { return content.size(); }

    bool seek(qint64 position) override
    {
        // The base class also calls this with the current position.
        if (position != pos() && fails(Fault::Seek))
            return false;
        return QIODevice::seek(position);
    }

    QByteArray content;

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 read = std::clamp<qint64>(content.size() - pos(), 0, size);
        std::memcpy(data, content.constData() + pos(), static_cast<std::size_t>(read));
        return read;
    }

    qint64 writeData(const char* data, qint64 size) override
    {
        if (fails(Fault::Write))
            return -1;
        if (fails(Fault::ShortWrite))
            --size;
        content.replace(static_cast<int>(pos()), static_cast<int>(size),
                        QByteArray(data, static_cast<int>(size)));
        return size;
    }

private:
    bool fails(Fault::Call call)
    {
        m_calls += call == m_fault.call;
        const bool isNow =
            call == m_fault.call && (m_fault.isLasting ? m_calls >= m_fault.at : m_calls == m_fault.at);
        m_hasFailed = m_hasFailed || isNow;
        setErrorString(isNow ? QStringLiteral("The tape is torn") : QString());
        return isNow;
    }

    Fault m_fault;
    int m_calls = 0;
    bool m_hasFailed = false;
};

PelLu300RouterMessage sample()
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QStringLiteral("router"));
    fragment.GetPelVtConnectServer().SetPort(5000);
    message.AppendFragment(fragment);
    message.AppendFragment(fragment);
    return message;
}

// Writes the sample to a device with that fault, behind four existing bytes. Returns false if the call that
// was to fail was never made.
template <class Write>
bool tryWith(const Fault& fault, const QByteArray& form, const Write& write)
{
    SCOPED_TRACE(::testing::Message() << faultNames[fault.call] << " number " << fault.at
                                      << (fault.isLasting ? " and all that follow" : ""));
    PelLu300RouterMessage message = sample();
    const Log log(message);
    FailingDevice device(fault);
    device.content = "head";
    device.QIODevice::seek(4);
    QDataStream stream(&device);
    write(message, stream);

    const Failure failure = IMKObject::GetLastFailure();
    // If a device takes only a part, the library may try again with the rest.
    const bool mayRecover = fault.call == Fault::ShortWrite && !fault.isLasting;
    if (!device.hasFailed() || (mayRecover && failure.kind == Failure::None)) {
        EXPECT_EQ(failure.kind, Failure::None);
        EXPECT_EQ(stream.status(), QDataStream::Ok);
        EXPECT_EQ(device.content, "head" + form);
        log.expectNothing();
        return device.hasFailed();
    }
    const QString sentence = QStringLiteral("The binary form cannot be written: The tape is torn.");
    EXPECT_EQ(failure.kind, Failure::InputOutput);
    EXPECT_EQ(failure.GetSentence(), sentence);
    EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
    log.expectOneError(sentence);
    EXPECT_TRUE(message == sample());
    return true;
}

// Lets each of the calls fail in turn. Returns how many calls there were.
template <class Write>
int tryEveryCall(Fault::Call call, bool isLasting, const QByteArray& form, const Write& write)
{
    Fault fault;
    fault.call = call;
    fault.isLasting = isLasting;
    fault.at = 1;
    while (fault.at < 1000 && tryWith(fault, form, write))
        ++fault.at;
    return fault.at - 1;
}

template <class Write>
void tryEveryFault(const QByteArray& form, const Write& write)
{
    for (const bool isLasting : {false, true}) {
        // Every way of writing must write. It need not seek.
        EXPECT_GT(tryEveryCall(Fault::Write, isLasting, form, write), 0);
        EXPECT_GT(tryEveryCall(Fault::ShortWrite, isLasting, form, write), 0);
        tryEveryCall(Fault::Seek, isLasting, form, write);
    }
}

// Writes the sample to a file that has room for so many bytes only.
template <class File>
void tryFile(const QString& path, int room, QIODevice::OpenMode mode)
{
    SCOPED_TRACE(::testing::Message() << room << " bytes, mode " << static_cast<int>(mode));
    const QByteArray form = sample().GetBinaryRepresentationAsQByteArray();
    File file(path);
    ASSERT_TRUE(file.open(mode));
    QDataStream stream(&file);
    {
        const FileSizeLimit limit(room);
        sample().GetBinaryRepresentation(stream);
    }
    if (room < form.size()) {
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  path + QStringLiteral(": The binary form cannot be written: File too large."));
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
    } else {
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
        EXPECT_EQ(stream.status(), QDataStream::Ok);
        EXPECT_EQ(file.pos(), form.size());
    }
}

} // namespace

TEST(FailingFile, EverySizeThatIsTooLargeIsReportedWithAndWithoutBuffer)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("message.bin"));
    const int size = static_cast<int>(sample().GetBinaryRepresentationAsQByteArray().size());
    for (int room = 0; room <= size; ++room) {
        tryFile<QFile>(path, room, QIODevice::WriteOnly);
        tryFile<QFile>(path, room, QIODevice::WriteOnly | QIODevice::Unbuffered);
        tryFile<QSaveFile>(path, room, QIODevice::WriteOnly);
    }
}

TEST(FailingDevice, EveryFailingCallOfAPlainFormIsReported)
{
    tryEveryFault(sample().GetBinaryRepresentationAsQByteArray(),
                  [](const PelLu300RouterMessage& message, QDataStream& stream) {
                      message.GetBinaryRepresentation(stream);
                  });
}

TEST(FailingDevice, EveryFailingCallOfACompressedFormIsReported)
{
    tryEveryFault(sample().GetCompressedBinaryRepresentationAsQByteArray(9),
                  [](const PelLu300RouterMessage& message, QDataStream& stream) {
                      message.GetCompressedBinaryRepresentation(stream, 9);
                  });
}

TEST(FailingDevice, AStreamThatHasFailedBeforeIsReported)
{
    FailingDevice device(Fault{});
    QDataStream stream(&device);
    stream.setStatus(QDataStream::WriteFailed);
    sample().GetBinaryRepresentation(stream);
    EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
}

TEST(FailingDevice, ADeviceThatCannotBeWrittenToIsReported)
{
    for (const bool isCompressed : {false, true}) {
        FailingDevice device(Fault{});
        device.close();
        ASSERT_TRUE(device.open(QIODevice::ReadOnly));
        QDataStream stream(&device);
        if (isCompressed)
            sample().GetCompressedBinaryRepresentation(stream, -1);
        else
            sample().GetBinaryRepresentation(stream);
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
        EXPECT_TRUE(device.content.isEmpty());
    }
}
