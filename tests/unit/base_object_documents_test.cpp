// SPDX-License-Identifier: MIT
// The operations of the base object on whole documents: both forms, from and to strings, bytes, streams and
// files, and merging.

#include "BaseObjectSupport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QIODevice>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <climits>

namespace {

using namespace testing_support;
using MODELKIT::Logger;
using MODELKIT::ObjectTypes;

TYPED_TEST_SUITE(BaseObjectOfRecord, RecordsWithSamples, );

// --- whole documents: built on the object's own operations ------------------------------------

TEST(BaseObjectDocument, XmlIsWrittenByGetXmlAlone)
{
    Note note;
    note.text = QStringLiteral("a < b");
    const QString xml = note.GetXmlString();
    EXPECT_TRUE(xml.startsWith(QLatin1String("<?xml version=\"1.0\""))) << xml.toStdString();
    EXPECT_TRUE(xml.contains(QLatin1String("<Note>a &lt; b</Note>"))) << xml.toStdString();
    EXPECT_EQ(note.calls, Calls{"GetXml"});
}

TEST(BaseObjectDocument, XmlIsReadByResetAndProcessXml)
{
    Note note;
    EXPECT_TRUE(note.SetXmlString(QStringLiteral("<Note>text</Note>"), false));
    EXPECT_EQ(note.text, QStringLiteral("text"));
    EXPECT_EQ(note.calls, (Calls{"Reset", "ProcessXml"}));
}

TEST(BaseObjectDocument, CheckIsCalledAfterReadingWhenAskedFor)
{
    Note note;
    EXPECT_TRUE(note.SetXmlString(QStringLiteral("<Note>text</Note>"), true));
    EXPECT_EQ(note.calls, (Calls{"Reset", "ProcessXml", "Check()"}));
    note.refuses = true;
    expectThrow<IncompleteDefinitionException>(
        [&note] { note.SetXmlString(QStringLiteral("<Note>kept</Note>"), true); }, QStringLiteral("refused"));
    EXPECT_EQ(note.text, QStringLiteral("kept"));
}

TEST(BaseObjectDocument, WhatCannotBeReadIsNotChecked)
{
    Note note;
    note.refuses = true;
    EXPECT_FALSE(note.SetXmlString(QStringLiteral("<Other/>"), true));
    EXPECT_FALSE(note.SetXmlString(QStringLiteral("<Note>"), true));
}

TEST(BaseObjectDocument, TheBinaryFormIsTheFrameWithTheTypeCodeAsId)
{
    Note note(ObjectTypes::Settings);
    note.text = QStringLiteral("abc");
    EXPECT_EQ(note.GetBinaryRepresentationAsQByteArray(), bytes("00000003 00000003 616263"));
    EXPECT_EQ(note.calls, Calls{"GetBinary"});
}

TEST(BaseObjectDocument, TheBinaryFormIsReadByResetAndSetBinary)
{
    Note note(ObjectTypes::Settings);
    QByteArray form = bytes("00000003 00000003 616263");
    EXPECT_TRUE(note.SetBinaryRepresentation(form));
    EXPECT_EQ(note.text, QStringLiteral("abc"));
    EXPECT_EQ(note.calls, (Calls{"Reset", "SetBinary"}));
}

// --- whole documents: XML ---------------------------------------------------------------------

// The document without its declaration, whose encoding depends on the way of writing.
QString bodyOf(const QString& document)
{
    EXPECT_TRUE(document.startsWith(QLatin1String("<?xml version=\"1.0\""))) << document.toStdString();
    const auto end = document.indexOf(QLatin1String("?>\n"));
    EXPECT_GT(end, 0);
    return document.mid(end + 3).trimmed();
}

TYPED_TEST(BaseObjectOfRecord, GetXmlStringGivesADocumentIndentedByTwoBlanks)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_EQ(bodyOf(record.GetXmlString()), TestFixture::xml());
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReadsWhatGetXmlStringGives)
{
    TypeParam source = TestFixture::Expected::make();
    TypeParam record;
    EXPECT_TRUE(record.SetXmlString(source.GetXmlString(), true));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReadsDocumentsWithAndWithoutDeclaration)
{
    for (const char* prolog : {"", "<?xml version=\"1.0\"?>", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n",
                               "<!-- comment --><?target data?>\n"}) {
        TypeParam record;
        EXPECT_TRUE(record.SetXmlString(
            QLatin1String(prolog) + TestFixture::xml() + QStringLiteral("\n<!-- end -->\n"), false))
            << prolog;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringReplacesTheContent)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.SetXmlString(TestFixture::xml(), false));
    TestFixture::expectSample(record);
    EXPECT_TRUE(record.SetXmlString(TestFixture::emptyElement(), false));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringRefusesAnotherRootElementAndChangesNothing)
{
    TypeParam record = TestFixture::Expected::make();
    for (const QString& document :
         {QStringLiteral("<Other>") + TestFixture::xml() + QStringLiteral("</Other>"),
          QStringLiteral("<Other/>"), TestFixture::emptyElement().toLower(),
          QStringLiteral("<Prefixed") + TestFixture::emptyElement().mid(1)}) {
        EXPECT_FALSE(record.SetXmlString(document, false)) << document.toStdString();
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, SetXmlStringRefusesTextThatIsNoDocument)
{
    const QString xml = TestFixture::xml();
    for (const QString& document :
         {QString(), empty(), QStringLiteral("text"), QStringLiteral("<?xml version=\"1.0\"?>"),
          xml.left(xml.size() - 1), xml + QStringLiteral("<more/>"), xml + QStringLiteral("text"),
          xml + xml}) {
        TypeParam record;
        EXPECT_FALSE(record.SetXmlString(document, false)) << document.toStdString();
    }
}

TYPED_TEST(BaseObjectOfRecord, SaveXmlWritesUtf8AndLoadXmlReadsIt)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    EXPECT_TRUE(TestFixture::Expected::make().SaveXml(path));

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    file.close();
    EXPECT_TRUE(written.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n")) << written.constData();
    EXPECT_EQ(bodyOf(QString::fromUtf8(written)), TestFixture::xml());

    TypeParam record;
    EXPECT_TRUE(record.LoadXml(path));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlReplacesTheContent)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("empty.xml"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::emptyElement().toUtf8());
    file.close();
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.LoadXml(path));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlOfAFileObjectReadsClosedAndOpenFiles)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("skipped" + QByteArray(TestFixture::Expected::xml));
    file.close();

    TypeParam fromOpen;
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    ASSERT_TRUE(file.seek(7));
    EXPECT_TRUE(fromOpen.LoadXml(&file));
    EXPECT_TRUE(file.isOpen());
    TestFixture::expectSample(fromOpen);
    file.close();

    TypeParam fromClosed;
    EXPECT_FALSE(fromClosed.LoadXml(&file)) << "the file does not begin with a document";
    EXPECT_FALSE(file.isOpen());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::Expected::xml);
    file.close();
    EXPECT_TRUE(fromClosed.LoadXml(&file));
    EXPECT_FALSE(file.isOpen());
    TestFixture::expectSample(fromClosed);
}

TYPED_TEST(BaseObjectOfRecord, LoadXmlOfWhatCannotBeReadChangesNothing)
{
    const QTemporaryDir directory;
    TypeParam record = TestFixture::Expected::make();
    QFile missing(directory.filePath(QStringLiteral("missing.xml")));
    EXPECT_FALSE(record.LoadXml(missing.fileName()));
    EXPECT_FALSE(record.LoadXml(&missing));
    EXPECT_FALSE(record.LoadXml(directory.path()));
    EXPECT_FALSE(record.LoadXml(static_cast<QFile*>(nullptr)));
    TestFixture::expectSample(record);
}

TEST(BaseObjectDocument, XmlThatBreaksOffIsRefusedButWhatWasReadStays)
{
    PelVtConnectServer server;
    server.SetPort(1);
    EXPECT_FALSE(server.SetXmlString(QStringLiteral("<PelVtConnectServer><Address>a</Address><Port"), true));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("a"));
    EXPECT_FALSE(server.IsPortSet());
}

TEST(BaseObjectDocument, SetXmlStringChecksOnlyWhenAskedFor)
{
    PelLu300RouterMessage message;
    EXPECT_TRUE(message.SetXmlString(QStringLiteral("<PelLu300RouterMessage/>"), false));
    expectThrow<OutOfRangeException>(
        [&message] { message.SetXmlString(QStringLiteral("<PelLu300RouterMessage/>"), true); },
        QStringLiteral("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_TRUE(message.SetXmlString(
        QStringLiteral("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"), true));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
}

TEST(BaseObjectDocument, WhatReadingThrowsPassesThrough)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    const QString xml = QStringLiteral("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Wrong</Type>"
                                       "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    const QString text =
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
    expectThrow<OutOfRangeException>([&] { document.SetXmlString(xml, false); }, text);

    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("wrong.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(xml.toUtf8());
    file.close();
    expectThrow<OutOfRangeException>([&] { document.LoadXml(file.fileName()); }, text);
    expectThrow<OutOfRangeException>([&] { document.LoadXml(&file); }, text);
}

TEST(BaseObjectDocument, WhatWritingThrowsPassesThroughAndLeavesAnExistingFile)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("kept.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("as it was");
    file.close();

    PelLu300RouterMessage message;
    message.SetValidate(true);
    const QString text = QStringLiteral("PelLu300RouterMessage: Please set Type properly.");
    expectThrow<OutOfRangeException>([&] { message.GetXmlString(); }, text);
    expectThrow<OutOfRangeException>([&] { message.SaveXml(file.fileName()); }, text);
    expectThrow<OutOfRangeException>([&] { message.GetBinaryRepresentationAsQByteArray(); }, text);
    expectThrow<OutOfRangeException>([&] { message.GetCompressedBinaryRepresentationAsQByteArray(9); }, text);

    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("as it was"));
    EXPECT_EQ(QDir(directory.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList(QStringLiteral("kept.xml")));
}

TEST(BaseObjectDocument, SaveXmlReplacesAnExistingFileAsAWhole)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("replaced.xml")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(100000, 'x'));
    file.close();
    EXPECT_TRUE(Sample<AcquireMastership>::make().SaveXml(file.fileName()));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(bodyOf(QString::fromUtf8(file.readAll())), QString::fromUtf8(Sample<AcquireMastership>::xml));
}

TEST(BaseObjectDocument, SaveXmlToAPlaceThatIsNotThereIsRefused)
{
    const QTemporaryDir directory;
    EXPECT_FALSE(AcquireMastership().SaveXml(directory.filePath(QStringLiteral("missing/document.xml"))));
    EXPECT_FALSE(AcquireMastership().SaveXml(QString()));
    EXPECT_FALSE(AcquireMastership().SaveXml(directory.path()));
}

TEST(BaseObjectDocument, GetXmlStringOfTextThatXmlCannotCarryIsNull)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("bell \u0007"));
    EXPECT_TRUE(server.GetXmlString().isNull());
}

TEST(BaseObjectDocument, SaveXmlRefusesTextThatXmlCannotCarry)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("document.xml"));
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("bell \u0007"));
    EXPECT_FALSE(server.SaveXml(path));
    EXPECT_FALSE(QFile::exists(path));
}

// --- whole documents: binary ------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsTheFrameWithTheClassIdInBigEndianOrder)
{
    EXPECT_EQ(TestFixture::Expected::make().GetBinaryRepresentationAsQByteArray(), TestFixture::binary());
    QByteArray streamed;
    QDataStream stream(&streamed, QIODevice::WriteOnly);
    TestFixture::Expected::make().GetBinaryRepresentation(stream);
    EXPECT_EQ(streamed, TestFixture::binary());
    EXPECT_EQ(stream.device()->pos(), streamed.size());
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsReadFromBytes)
{
    QByteArray form = TestFixture::binary();
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    TestFixture::expectSample(record);
    EXPECT_EQ(form, TestFixture::binary());
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormIsReadFromAStreamThatIsLeftBehindIt)
{
    QDataStream stream(bytes("AA") + TestFixture::binary() + TestFixture::binary() + bytes("BB"));
    stream.device()->seek(1);
    TypeParam first;
    EXPECT_TRUE(first.SetBinaryRepresentation(stream));
    TypeParam second;
    EXPECT_TRUE(second.SetBinaryRepresentation(stream));
    TestFixture::expectSample(first);
    TestFixture::expectSample(second);
    quint8 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xBB);
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormFollowsTheByteOrderOfTheStream)
{
    QByteArray form;
    QDataStream out(&form, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    TestFixture::Expected::make().GetBinaryRepresentation(out);
    QByteArray id = form.left(4);
    std::reverse(id.begin(), id.end());
    EXPECT_EQ(id, TestFixture::binary().left(4));
    EXPECT_EQ(out.byteOrder(), QDataStream::LittleEndian);

    QDataStream in(form);
    in.setByteOrder(QDataStream::LittleEndian);
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(in));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, ReadingTheBinaryFormReplacesTheContent)
{
    TypeParam record = TestFixture::Expected::make();
    QByteArray form = TestFixture::emptyBinary();
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(BaseObjectOfRecord, BytesOfAnotherClassOrNoFormAreRefusedAndChangeNothing)
{
    TypeParam record = TestFixture::Expected::make();
    for (const QByteArray& wrong :
         {QByteArray(), TestFixture::binary().left(3), TestFixture::binary().left(7),
          bytes("00000000 00000000"), bytes("FFFFFFFF 00000000"), TestFixture::binary().mid(4),
          QByteArray(TestFixture::Expected::xml)}) {
        QByteArray form = wrong;
        EXPECT_FALSE(record.SetBinaryRepresentation(form)) << wrong.toHex().constData();
        QDataStream stream(wrong);
        EXPECT_FALSE(record.SetBinaryRepresentation(stream)) << wrong.toHex().constData();
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, TheBinaryFormOfEveryOtherClassIsRefused)
{
    const QByteArrayList forms{bytes(Sample<OstraInterfacePort>::binary),
                               bytes(Sample<RouterVtServerPort>::binary),
                               bytes(Sample<PelVtConnectServer>::binary),
                               bytes(Sample<MastershipState>::binary),
                               bytes(Sample<AcquireMastership>::binary),
                               bytes(Sample<ReleaseMastership>::binary),
                               bytes(Sample<DF_Params>::binary),
                               bytes(Sample<Fragment>::binary),
                               bytes(Sample<PelLu300RouterMessage>::binary),
                               bytes(Sample<PelLu300RouterInterfaceXml>::binary)};
    int accepted = 0;
    for (QByteArray form : forms) {
        TypeParam record;
        const bool isOwn = form == TestFixture::binary();
        EXPECT_EQ(record.SetBinaryRepresentation(form), isOwn);
        EXPECT_EQ(record.AnyData(), isOwn);
        accepted += isOwn ? 1 : 0;
    }
    EXPECT_EQ(accepted, 1);
}

TYPED_TEST(BaseObjectOfRecord, ABinaryFormThatBreaksOffIsRefusedAndChangesNothing)
{
    const QByteArray form = TestFixture::binary();
    TypeParam record = TestFixture::Expected::make();
    for (const int size : {4, 7, 8, 9, static_cast<int>(form.size()) - 1}) {
        QByteArray cut = form.left(size);
        EXPECT_FALSE(record.SetBinaryRepresentation(cut)) << size;
        QDataStream stream(cut);
        EXPECT_FALSE(record.SetBinaryRepresentation(stream)) << size;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, WhatReadingABinaryFormThrowsPassesThrough)
{
    // The announced bytes are there but hold only half the header of an entry.
    QByteArray form = TestFixture::binary().left(4) + bytes("00000004 00000000");
    TypeParam record;
    expectThrow<BinaryParsingException>(
        [&] { record.SetBinaryRepresentation(form); },
        TestFixture::name()
            + QStringLiteral(
                "::SetBinary(...): Length error occurred during processing of binary representation"));
}

TYPED_TEST(BaseObjectOfRecord, BytesBehindTheBinaryFormAreIgnored)
{
    QByteArray form = TestFixture::binary() + bytes("BB");
    TypeParam record;
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, TheCompressedFormIsReadFromBytes)
{
    for (const int level : {-1, 0, 1, 9}) {
        QByteArray form = TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(level);
        EXPECT_NE(form, TestFixture::binary()) << level;
        TypeParam record;
        EXPECT_TRUE(record.SetBinaryRepresentation(form)) << level;
        TestFixture::expectSample(record);
    }
}

TYPED_TEST(BaseObjectOfRecord, TheCompressedFormIsReadFromAStreamThatIsLeftBehindIt)
{
    for (const QDataStream::ByteOrder order : {QDataStream::BigEndian, QDataStream::LittleEndian}) {
        QByteArray form;
        QDataStream out(&form, QIODevice::WriteOnly);
        out.setByteOrder(order);
        TestFixture::Expected::make().GetCompressedBinaryRepresentation(out, 9);
        TestFixture::Expected::make().GetCompressedBinaryRepresentation(out, 0);
        out << quint8(0xBB);

        QDataStream in(form);
        in.setByteOrder(order);
        TypeParam first;
        EXPECT_TRUE(first.SetBinaryRepresentation(in));
        TypeParam second;
        EXPECT_TRUE(second.SetBinaryRepresentation(in));
        TestFixture::expectSample(first);
        TestFixture::expectSample(second);
        quint8 behind = 0;
        in >> behind;
        EXPECT_EQ(behind, 0xBB);
    }
}

TYPED_TEST(BaseObjectOfRecord, ACompressedFormThatIsDamagedIsRefusedAndChangesNothing)
{
    const QByteArray form = TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(9);
    TypeParam record = TestFixture::Expected::make();
    QByteArray cut = form.left(form.size() - 4);
    EXPECT_FALSE(record.SetBinaryRepresentation(cut));
    QByteArray flipped = form;
    flipped[flipped.size() - 1] = static_cast<char>(flipped.at(flipped.size() - 1) ^ 1);
    EXPECT_FALSE(record.SetBinaryRepresentation(flipped));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, LoadBinaryReadsPlainAndCompressedFiles)
{
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral("document.bin")));
    for (const QByteArray& form :
         {TestFixture::binary(),
          TestFixture::Expected::make().GetCompressedBinaryRepresentationAsQByteArray(9)}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(form);
        file.close();

        TypeParam fromClosed;
        EXPECT_TRUE(fromClosed.LoadBinary(&file));
        EXPECT_FALSE(file.isOpen());
        TestFixture::expectSample(fromClosed);

        TypeParam fromOpen;
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        EXPECT_TRUE(fromOpen.LoadBinary(&file));
        EXPECT_TRUE(file.isOpen());
        TestFixture::expectSample(fromOpen);
        file.close();
    }
}

TYPED_TEST(BaseObjectOfRecord, LoadBinaryOfWhatCannotBeReadChangesNothing)
{
    const QTemporaryDir directory;
    TypeParam record = TestFixture::Expected::make();
    QFile file(directory.filePath(QStringLiteral("document.bin")));
    EXPECT_FALSE(record.LoadBinary(&file));
    EXPECT_FALSE(record.LoadBinary(nullptr));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(TestFixture::Expected::xml);
    file.close();
    EXPECT_FALSE(record.LoadBinary(&file));
    TestFixture::expectSample(record);
}

TEST(BaseObjectDocument, CompressionLevelsAreClamped)
{
    PelVtConnectServer server;
    server.SetAddress(QString(20000, QLatin1Char('a')));
    const auto compressed = [&server](int level) {
        return server.GetCompressedBinaryRepresentationAsQByteArray(level);
    };
    EXPECT_EQ(compressed(-100), compressed(-1));
    EXPECT_EQ(compressed(10), compressed(9));
    EXPECT_EQ(compressed(INT_MAX), compressed(9));
    EXPECT_GT(compressed(0).size(), 20000);
    EXPECT_LT(compressed(1).size(), 1000);
    EXPECT_LT(compressed(-1).size(), 1000);
    EXPECT_LE(compressed(9).size(), compressed(1).size());
}

TEST(BaseObjectDocument, BothBinaryFormsAreEmptyWhenValidationLetsNothingBeWritten)
{
    Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_TRUE(fragment.GetBinaryRepresentationAsQByteArray().isEmpty());
    EXPECT_TRUE(fragment.GetCompressedBinaryRepresentationAsQByteArray(9).isEmpty());
}

// --- merging ----------------------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, MergingIntoAnEmptyRecordGivesTheOther)
{
    TypeParam record;
    EXPECT_TRUE(record.MergeMKObject(TestFixture::Expected::make()));
    TestFixture::expectSample(record);
}

TYPED_TEST(BaseObjectOfRecord, MergingAnEmptyRecordChangesNothing)
{
    TypeParam record = TestFixture::Expected::make();
    EXPECT_TRUE(record.MergeMKObject(TypeParam()));
    TestFixture::expectSample(record);
}

template <class Record, class Other>
void expectMergeIsRefused()
{
    if (std::is_same_v<Record, Other>)
        return;
    Record record = Sample<Record>::make();
    const QByteArray before = frameOf(record);
    EXPECT_FALSE(record.MergeMKObject(Sample<Other>::make())) << Sample<Other>::name;
    EXPECT_EQ(frameOf(record), before) << Sample<Other>::name;
}

template <class Record, class... Others>
void expectMergeOfOthersIsRefused(::testing::Types<Others...>)
{
    (expectMergeIsRefused<Record, Others>(), ...);
}

TYPED_TEST(BaseObjectOfRecord, MergingAnObjectOfAnotherClassIsRefusedAndChangesNothing)
{
    expectMergeOfOthersIsRefused<TypeParam>(RecordsWithSamples());
    TypeParam record = TestFixture::Expected::make();
    EXPECT_FALSE(record.MergeMKObject(Note()));
    TestFixture::expectSample(record);
}

TEST(BaseObjectMerge, MembersThatTheOtherHasSetReplaceTheOwn)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("kept"));
    server.SetPort(1);
    PelVtConnectServer other;
    other.SetPort(2);
    EXPECT_TRUE(server.MergeMKObject(other));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("kept"));
    EXPECT_EQ(server.GetPort(), 2U);
    EXPECT_FALSE(other.IsAddressSet());
    EXPECT_EQ(other.GetPort(), 2U);
}

TEST(BaseObjectMerge, ListsAreAppended)
{
    auto message = Sample<PelLu300RouterMessage>::make();
    auto other = PelLu300RouterMessage();
    other.SetType(PelLu300RouterMessage::Event);
    Fragment server;
    server.SetPelVtConnectServer(Sample<PelVtConnectServer>::make());
    other.AppendFragment(server);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 7U);
    ASSERT_EQ(message.GetFragment().size(), 3);
    EXPECT_EQ(message.GetFragment().at(0).GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_EQ(message.GetFragment().at(1).GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_EQ(message.GetFragment().at(2).GetChoiceFragment(), Fragment::PelVtConnectServer);
}

TEST(BaseObjectMerge, AMemberThatTheOtherHasNotSetKeepsItsValueInAMessage)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    PelLu300RouterMessage other;
    other.SetMessageID(9);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
    EXPECT_EQ(message.GetMessageID(), 9U);

    PelLu300RouterMessage untyped;
    EXPECT_TRUE(untyped.MergeMKObject(other));
    EXPECT_FALSE(untyped.IsTypeSet());

    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message);
    PelLu300RouterInterfaceXml otherDocument;
    otherDocument.SetPelLu300RouterMessage(other);
    EXPECT_TRUE(document.MergeMKObject(otherDocument));
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetType(), PelLu300RouterMessage::Reply);
}

TEST(BaseObjectMerge, ValuesAreTakenOverExactly)
{
    DF_Params other;
    other.SetFrequency(0.001953125);
    DF_Params params;
    EXPECT_TRUE(params.MergeMKObject(other));
    EXPECT_EQ(params.GetFrequency(), 0.001953125);
}

TEST(BaseObjectMerge, TheSettingsOfBothStay)
{
    PelVtConnectServer server;
    const auto logger = std::make_shared<Logger>();
    server.SetLogger(logger);
    PelVtConnectServer other = Sample<PelVtConnectServer>::make();
    other.SetValidate(true);
    EXPECT_TRUE(server.MergeMKObject(other));
    EXPECT_FALSE(server.GetValidate());
    EXPECT_EQ(server.GetLogger(), logger);
    EXPECT_TRUE(other.GetValidate());
    EXPECT_EQ(other.GetLogger(), nullptr);
}

TEST(BaseObjectMerge, AnIncompleteObjectIsMergedUnderValidation)
{
    PelLu300RouterMessage message = Sample<PelLu300RouterMessage>::make();
    PelLu300RouterMessage other;
    other.SetMessageID(9);
    other.SetValidate(true);
    EXPECT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetMessageID(), 9U);
}

TEST(BaseObjectMerge, AnObjectMergedIntoItselfStaysAsItIsButForItsLists)
{
    PelVtConnectServer server = Sample<PelVtConnectServer>::make();
    EXPECT_TRUE(server.MergeMKObject(server));
    EXPECT_TRUE(server == Sample<PelVtConnectServer>::make());
    PelLu300RouterMessage message = Sample<PelLu300RouterMessage>::make();
    EXPECT_TRUE(message.MergeMKObject(message));
    EXPECT_EQ(message.GetFragment().size(), 4);
}

} // namespace
