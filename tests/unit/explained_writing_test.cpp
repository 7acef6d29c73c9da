// SPDX-License-Identifier: MIT
// The explanation of failed checking, merging, writing and saving: the whole sentence, the path of the
// record, and one entry in the log.

#include "ChildProcess.h"
#include "DocumentParts.h"
#include "ExplainedSupport.h"
#include "LogSupport.h"
#include "TestDevices.h"
#include "TestFolder.h"

#include <QtCore/QFile>
#include <QtCore/QSaveFile>

#include <functional>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Place;

// --- the place of what checking and writing throw --------------------------------------------------

namespace {

PelVtConnectServer badServer()
{
    PelVtConnectServer server;
    server.SetAddress(QString());
    return server;
}

MastershipState badState()
{
    MastershipState state;
    state.SetState(static_cast<MastershipState::State>(99));
    return state;
}

Fragment badFragment()
{
    Fragment fragment;
    fragment.SetPelVtConnectServer(badServer());
    return fragment;
}

// The third of four fragments holds a bad server.
PelLu300RouterMessage badMessage()
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    Fragment good;
    good.GetDF_Params();
    message.AppendFragment(good);
    message.AppendFragment(good);
    message.AppendFragment(badFragment());
    message.AppendFragment(badFragment());
    return message;
}

PelLu300RouterInterfaceXml badDocument()
{
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(badMessage());
    return document;
}

const char* const badAddress = "PelVtConnectServer: Please set Address properly.";
const char* const badType = "PelLu300RouterMessage: Please set Type properly.";

// Expects the path in the exception. The operation is not one on a whole document, so it must neither log the
// failure nor change the last one.
template <class Operation>
void expectPath(const IMKObject& record, const QString& message, const QString& path,
                const Operation& operation)
{
    const Log log(record);
    OstraInterfacePort other;
    EXPECT_FALSE(other.SetXmlString(QString(), false));
    const Place place = expectThrow<OutOfRangeException>(operation, message).GetPlace();
    EXPECT_EQ(place.path, path);
    EXPECT_EQ(place.ToString(), QString());
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
    log.expectNothing();
}

// Expects the path in every operation that writes under validation.
void expectPathInWriting(IMKObject& record, const char* message, const char* path)
{
    SCOPED_TRACE(path);
    record.SetValidate(true);
    expectPath(record, text(message), text(path), [&] { xmlOf(record); });
    expectPath(record, text(message), text(path), [&] { frameOf(record); });
    const QString place = text(" (in %1)").arg(text(path));
    const QString sentence = text(message) + place;
    expectThrown<OutOfRangeException>(record, sentence, [&] { record.GetXmlString(); });
    expectThrown<OutOfRangeException>(record, sentence,
                                      [&] { record.GetBinaryRepresentationAsQByteArray(); });
    expectThrown<OutOfRangeException>(record, sentence,
                                      [&] { record.GetCompressedBinaryRepresentationAsQByteArray(9); });
    const Folder folder;
    expectThrown<OutOfRangeException>(record, folder.path() + text(": ") + sentence,
                                      [&] { record.SaveXml(folder.path()); });
    EXPECT_TRUE(folder.entries().isEmpty());
}

void expectPathInChecking(const IMKObject& record, const char* message, const char* path)
{
    SCOPED_TRACE(path);
    for (const bool flag : {false, true})
        expectPath(record, text(message), text(path), [&] { record.Check(flag); });
    expectPath(record, text(message), text(path), [&] { record.Check(); });
}

} // namespace

TEST(ExplainedChecking, ARecordIsNamedByItsClass)
{
    expectPathInChecking(badServer(), badAddress, "/PelVtConnectServer");
    expectPathInChecking(badState(), "MastershipState: Please set State properly.", "/MastershipState");
    expectPathInChecking(PelLu300RouterMessage(), badType, "/PelLu300RouterMessage");
}

TEST(ExplainedChecking, ANestedRecordIsNamedBelowItsOwner)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage();
    expectPathInChecking(document, badType, messagePath);
}

TEST(ExplainedChecking, WhatBelongsToNoDocumentHasNoLine)
{
    const Place place = thrownBy<OutOfRangeException>([] { badServer().Check(); }).GetPlace();
    EXPECT_EQ(place.line, 0);
    EXPECT_EQ(place.column, 0);
    EXPECT_EQ(place.offset, -1);
    EXPECT_TRUE(place.file.isEmpty());
}

TEST(ExplainedWriting, ARecordIsNamedByItsClass)
{
    PelVtConnectServer server = badServer();
    expectPathInWriting(server, badAddress, "/PelVtConnectServer");
    MastershipState state = badState();
    expectPathInWriting(state, "MastershipState: Please set State properly.", "/MastershipState");
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    expectPathInWriting(message, badType, "/PelLu300RouterMessage");
}

TEST(ExplainedWriting, APayloadIsNamedBelowEveryOwner)
{
    Fragment fragment = badFragment();
    expectPathInWriting(fragment, badAddress, "/Fragment/PelVtConnectServer");
    Fragment withState;
    withState.SetMastershipState(badState());
    expectPathInWriting(withState, "MastershipState: Please set State properly.",
                        "/Fragment/MastershipState");
    PelLu300RouterMessage message = badMessage();
    expectPathInWriting(message, badAddress, "/PelLu300RouterMessage/Fragment[3]/PelVtConnectServer");
    PelLu300RouterInterfaceXml document = badDocument();
    expectPathInWriting(document, badAddress,
                        "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[3]/PelVtConnectServer");
}

TEST(ExplainedWriting, TheFirstItemCarriesNoNumber)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    message.AppendFragment(badFragment());
    expectPathInWriting(message, badAddress, "/PelLu300RouterMessage/Fragment/PelVtConnectServer");
}

TEST(ExplainedWriting, ANestedRecordIsNamedBelowItsOwner)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage();
    expectPathInWriting(document, badType, messagePath);
}

TEST(ExplainedWriting, AStreamOnAFileNamesTheFile)
{
    PelLu300RouterInterfaceXml document = badDocument();
    document.SetValidate(true);
    const Folder folder;
    QFile file(folder.path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QDataStream stream(&file);
    const QString sentence = folder.path() + text(": ") + text(badAddress) + text(" (in ") + text(messagePath)
                             + text("/Fragment[3]/PelVtConnectServer)");
    expectThrown<OutOfRangeException>(document, sentence, [&] { document.GetBinaryRepresentation(stream); });
}

TEST(ExplainedChecking, AfterReadingFindsLineAndColumnOfTheRecord)
{
    PelLu300RouterInterfaceXml document;
    expectThrown<OutOfRangeException>(
        document, text("3:2: %1 (in %2)").arg(text(badType), text(messagePath)), [&] {
            document.SetXmlString(
                text(
                    "<PelLu300RouterInterfaceXml>\r\r <PelLu300RouterMessage/></PelLu300RouterInterfaceXml>"),
                true);
        });
}

TEST(ExplainedMerging, WhatIsRefusedIsNamedByItsPath)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrown<OutOfRangeException>(
        document,
        text("enum is not valid (classname=MastershipState,membername=m_state) (in "
             "%1/Fragment[2]/MastershipState/State)")
            .arg(text(messagePath)),
        [&] {
            PelLu300RouterInterfaceXml other;
            Fragment good;
            good.GetDF_Params();
            Fragment bad;
            bad.SetMastershipState(badState());
            other.GetPelLu300RouterMessage().AppendFragment(good);
            other.GetPelLu300RouterMessage().AppendFragment(bad);
            document.MergeMKObject(other);
        });
}

namespace {

// A class whose check only calls that of its base.
template <class R>
class Checked : public R
{
public:
    void Check(bool flag) const override
    {
        ++checks;
        R::Check(flag);
    }
    void Check() const override { R::Check(); }

    mutable int checks = 0;
};

} // namespace

TEST(ExplainedDerived, ACheckOfItsOwnDoesNotDoubleThePath)
{
    Checked<PelVtConnectServer> server;
    server.SetAddress(QString());
    expectPathInChecking(server, badAddress, "/PelVtConnectServer");
    expectPathInWriting(server, badAddress, "/PelVtConnectServer");
    EXPECT_GT(server.checks, 6);

    Checked<PelLu300RouterInterfaceXml> document;
    document.SetPelLu300RouterMessage(badMessage());
    expectPathInWriting(document, badAddress,
                        "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[3]/PelVtConnectServer");
    document.GetPelLu300RouterMessage().ResetType();
    expectPathInChecking(document, badType, messagePath);
    expectPathInWriting(document, badType, messagePath);
    EXPECT_GT(document.checks, 12);
}

TEST(ExplainedDerived, AreReadAndPlacedAsTheirBase)
{
    Checked<PelLu300RouterInterfaceXml> document;
    document.SetValidate(true);
    expectThrown<OutOfRangeException>(
        document,
        text("1:52: enum is not valid (classname=PelLu300RouterMessage,membername=m_type) (in %1/Type)")
            .arg(text(messagePath)),
        [&] { document.SetXmlString(inMessage(text("<Type>No</Type>")), false); });
    expectThrown<OutOfRangeException>(document,
                                      text("1:29: %1 (in %2)").arg(text(badType), text(messagePath)),
                                      [&] { document.SetXmlString(inMessage(QString()), true); });
    EXPECT_EQ(document.checks, 1);
}

// --- devices that do not take what is written -------------------------------------------------------

namespace {

enum class Kind
{
    Plain,
    Compressed
};

void write(const IMKObject& record, QDataStream& stream, Kind kind)
{
    if (kind == Kind::Plain)
        record.GetBinaryRepresentation(stream);
    else
        record.GetCompressedBinaryRepresentation(stream, 9);
}

void expectWritingFails(QDataStream& stream, Kind kind, const QString& sentence)
{
    PelLu300RouterInterfaceXml document = sample();
    expectFailure(document, Failure::InputOutput, sentence, [&] {
        write(document, stream, kind);
        return IMKObject::GetLastFailure().kind == Failure::None;
    });
}

} // namespace

TEST(ExplainedDevices, ARefusalIsReportedInTheWordsOfTheDevice)
{
    for (const Kind kind : {Kind::Plain, Kind::Compressed}) {
        RefusingBuffer device;
        QDataStream stream(&device);
        expectWritingFails(stream, kind, text("The binary form cannot be written: The device is tired."));
        EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
    }
}

TEST(ExplainedDevices, AFullOneIsReported)
{
    if (!QFile::exists(text("/dev/full")))
        GTEST_SKIP() << "This machine has no device that is always full.";
    for (const Kind kind : {Kind::Plain, Kind::Compressed}) {
        QFile file(text("/dev/full"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        expectWritingFails(stream, kind,
                           text("/dev/full: The binary form cannot be written: No space left on device."));
    }
}

TEST(ExplainedDevices, AStreamWithoutOneIsReported)
{
    for (const Kind kind : {Kind::Plain, Kind::Compressed}) {
        QDataStream stream;
        expectWritingFails(stream, kind, text("The binary form cannot be written: No device."));
    }
}

TEST(ExplainedDevices, OneThatTakesEverythingIsNoFailure)
{
    const Folder folder;
    for (const Kind kind : {Kind::Plain, Kind::Compressed}) {
        PelLu300RouterInterfaceXml document = sample();
        const Log log(document);
        QFile file(folder.path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        write(document, stream, kind);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
        log.expectNothing();
        // The file is still open, but everything must have been written.
        PelLu300RouterInterfaceXml read;
        QFile other(folder.path());
        EXPECT_TRUE(read.LoadBinary(&other));
        EXPECT_TRUE(read == sample());
    }
}

// --- saving a binary file as the documentation tells ------------------------------------------------

namespace {

bool saveBinary(const IMKObject& document, const QString& path)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        QDataStream stream(&file);
        document.GetBinaryRepresentation(stream);
        if (IMKObject::GetLastFailure().kind == Failure::None)
            return file.commit();
    }
    return false;
}

} // namespace

TEST(SavingABinaryFile, ReplacesTheOldOneByTheNewAtOnce)
{
    const Folder folder;
    folder.write("old");
    QFile old(folder.path());
    ASSERT_TRUE(old.open(QIODevice::ReadOnly));
    {
        QSaveFile file(folder.path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        sample().GetBinaryRepresentation(stream);
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
        EXPECT_EQ(folder.read(), QByteArray("old"));
        EXPECT_TRUE(file.commit());
    }
    EXPECT_EQ(folder.read(), bytes(sampleForm));
    // A program that had opened the old file can still read all of it.
    EXPECT_EQ(old.readAll(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(SavingABinaryFile, MakesANewOne)
{
    const Folder folder;
    EXPECT_TRUE(saveBinary(sample(), folder.path()));
    EXPECT_EQ(folder.read(), bytes(sampleForm));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(SavingABinaryFile, AnExceptionLeavesTheOldOne)
{
    const Folder folder;
    folder.write("old");
    const PelLu300RouterInterfaceXml document = badDocument();
    document.SetValidate(true);
    EXPECT_THROW(saveBinary(document, folder.path()), OutOfRangeException);
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(SavingABinaryFile, ARecordThatValidationDoesNotWriteLeavesTheOldOne)
{
    const Folder folder;
    folder.write("old");
    const Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_FALSE(saveBinary(fragment, folder.path()));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NothingToWrite);
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(SavingABinaryFile, AFullDiskLeavesTheOldOneAndIsReported)
{
    const Folder folder;
    folder.write("old");
    PelLu300RouterInterfaceXml large = sample();
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString(100000, QLatin1Char('x')));
    large.GetPelLu300RouterMessage().AppendFragment(fragment);
    const Log log(large);
    bool saved = true;
    {
        const FileSizeLimit limit(50000);
        saved = saveBinary(large, folder.path());
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    const QString sentence = IMKObject::GetLastFailure().GetSentence();
    EXPECT_TRUE(sentence.startsWith(folder.path() + text(": The binary form cannot be written: ")));
    log.expectOneError(sentence);
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

// --- without permission -----------------------------------------------------------------------------

namespace {

// The result of operation() when a user without privileges runs it; none where root cannot give up
// privileges.
std::optional<QString> unprivileged(const std::function<QString()>& operation)
{
    constexpr int noOtherUser = 77;
    const ChildEnd end = runInChild([&operation](QByteArray& said) {
        constexpr unsigned int nobody = 65534;
        if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0))
            return noOtherUser;
        said = operation().toUtf8();
        return 0;
    });
    if (end.status == noOtherUser)
        return std::nullopt;
    EXPECT_EQ(end.status, 0) << ::testing::PrintToString(end);
    return QString::fromUtf8(end.said);
}

// Kind, sentence and log entries of a failure in one text.
QString told(bool result, const Log& log)
{
    const Failure& failure = IMKObject::GetLastFailure();
    if (result)
        return text("no failure");
    log.expectOneError(failure.GetSentence());
    if (::testing::Test::HasFailure())
        return text("not logged");
    return failure.kind == Failure::InputOutput ? failure.GetSentence() : text("another kind");
}

int setMode(const QString& path, mode_t mode) { return chmod(QFile::encodeName(path).constData(), mode); }

} // namespace

TEST(WithoutPermission, AFileIsNotRead)
{
    const Folder folder;
    ASSERT_EQ(setMode(folder.folder(), 0755), 0);
    const QString path = folder.write("<PelLu300RouterInterfaceXml/>");
    ASSERT_EQ(setMode(path, 0000), 0);
    const QString sentence = path + text(": The file cannot be read: Permission denied.");
    const std::optional<QString> fromXml = unprivileged([&] {
        PelLu300RouterInterfaceXml document;
        const Log log(document);
        return told(document.LoadXml(path), log);
    });
    if (!fromXml)
        GTEST_SKIP() << "Root cannot give up its privileges on this machine.";
    EXPECT_EQ(fromXml, sentence);
    EXPECT_EQ(unprivileged([&] {
                  PelLu300RouterInterfaceXml document;
                  const Log log(document);
                  QFile file(path);
                  return told(document.LoadBinary(&file), log);
              }),
              sentence);
}

TEST(WithoutPermission, AFileIsNotReplaced)
{
    const Folder folder;
    ASSERT_EQ(setMode(folder.folder(), 0777), 0);
    const QString path = folder.write("old");
    ASSERT_EQ(setMode(path, 0444), 0);
    const std::optional<QString> sentence = unprivileged([&] {
        const PelLu300RouterInterfaceXml document = sample();
        const Log log(document);
        return told(document.SaveXml(path), log);
    });
    if (!sentence)
        GTEST_SKIP() << "Root cannot give up its privileges on this machine.";
    EXPECT_EQ(sentence,
              path + text(": The file cannot be written: Existing file %1 is not writable.").arg(path));
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}

TEST(WithoutPermission, NothingIsSavedIntoOrLoadedFromAFolder)
{
    const Folder folder;
    const QString path = folder.write("old");
    ASSERT_EQ(setMode(path, 0666), 0);
    ASSERT_EQ(setMode(folder.folder(), 0000), 0);
    const std::optional<QString> saved = unprivileged([&] {
        const PelLu300RouterInterfaceXml document = sample();
        const Log log(document);
        return told(document.SaveXml(path), log);
    });
    const std::optional<QString> loaded = unprivileged([&] {
        PelLu300RouterInterfaceXml document;
        const Log log(document);
        return told(document.LoadXml(path), log);
    });
    ASSERT_EQ(setMode(folder.folder(), 0700), 0);
    if (!saved)
        GTEST_SKIP() << "Root cannot give up its privileges on this machine.";
    EXPECT_EQ(saved, path + text(": The file cannot be written: Permission denied."));
    EXPECT_EQ(loaded, path + text(": The file cannot be read: Permission denied."));
    EXPECT_EQ(folder.read(), QByteArray("old"));
    EXPECT_EQ(folder.entries(), QStringList(text("document")));
}
