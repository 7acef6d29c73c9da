// SPDX-License-Identifier: MIT
// Operations on whole documents: failures are explained with their place, limits hold, nothing is lost.

#include "DocumentParts.h"
#include "LogSupport.h"
#include "ReportSupport.h"
#include "TestFolder.h"
#include "TestSupport.h"

#include "modelkit/LogSinks.h"
#include "modelkit/ReadingReport.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <optional>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;
using MODELKIT::Place;
using MODELKIT::ReadingReport;

namespace {

// A document with the content in the message. The content begins in line 3.
QString inMessageOnLines(const QString& content)
{
    return QStringLiteral(
               "<PelLu300RouterInterfaceXml>\n <PelLu300RouterMessage>\n%1</PelLu300RouterMessage>\n"
               "</PelLu300RouterInterfaceXml>")
        .arg(content);
}

PelLu300RouterInterfaceXml sample()
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    Fragment fragment;
    fragment.GetMastershipState().SetState(MastershipState::MasterPresent);
    fragment.GetMastershipState().SetMasterClientID(QStringLiteral("client"));
    message.AppendFragment(fragment);
    Fragment params;
    params.GetDF_Params().SetFrequency(1.5);
    message.AppendFragment(params);
    return document;
}

// Expects that reading the XML returns false for that reason, at that place, and logs one error.
void expectRefused(const QString& xml, Failure::Kind kind, const QString& sentence)
{
    PelLu300RouterInterfaceXml document;
    const Log log(document);
    EXPECT_FALSE(document.SetXmlString(xml, false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, kind);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(), sentence);
    log.expectOneError(sentence);
}

} // namespace

TEST(WholeDocumentFailure, ATagMismatchIsExplainedWithLineColumnAndPath)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlString(inMessageOnLines(QStringLiteral("  <Type>Reply</Typ>")), false));
    const Failure& failure = IMKObject::GetLastFailure();
    EXPECT_EQ(failure.kind, Failure::NotWellFormed);
    EXPECT_EQ(failure.place.line, 3);
    EXPECT_EQ(failure.place.column, 19);
    EXPECT_EQ(failure.place.path, QLatin1String(messagePath) + QLatin1String("/Type"));
    EXPECT_FALSE(failure.text.isEmpty());
}

TEST(WholeDocumentFailure, AnotherRootElementIsRefusedByName)
{
    expectRefused(QStringLiteral("<Fragment/>"), Failure::WrongRoot,
                  QStringLiteral("1:1: The root element is Fragment, expected is PelLu300RouterInterfaceXml. "
                                 "(in /Fragment)"));
}

TEST(WholeDocumentFailure, AnotherRootElementLeavesTheObjectUnchanged)
{
    PelLu300RouterInterfaceXml document = sample();
    EXPECT_FALSE(document.SetXmlString(QStringLiteral("<Fragment/>"), false));
    EXPECT_TRUE(document == sample());
}

TEST(WholeDocumentFailure, ADocumentTypeDeclarationIsRefused)
{
    PelLu300RouterInterfaceXml document = sample();
    EXPECT_FALSE(document.SetXmlString(
        QStringLiteral("<!DOCTYPE a [<!ENTITY b 'c'>]><PelLu300RouterInterfaceXml/>"), false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::DoctypeRefused);
    EXPECT_EQ(IMKObject::GetLastFailure().text,
              QStringLiteral("A document type declaration is not accepted."));
    EXPECT_TRUE(document == sample());
}

TEST(WholeDocumentFailure, EmptyInputIsNotWellFormed)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlString(QString(), false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
}

TEST(WholeDocumentFailure, ContentBehindTheRootIsNotWellFormed)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlString(QStringLiteral("<PelLu300RouterInterfaceXml/>x"), false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
}

TEST(WholeDocumentFailure, SuccessClearsTheLastFailure)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.SetXmlString(QString(), false));
    EXPECT_TRUE(document.SetXmlString(QStringLiteral("<PelLu300RouterInterfaceXml/>"), false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::None);
}

TEST(WholeDocumentFailure, AnExceptionCarriesThePlaceOfTheElementAndKeepsItsText)
{
    PelLu300RouterInterfaceXml document;
    const Log log(document);
    document.SetValidate(true);
    const QString xml =
        inMessageOnLines(QStringLiteral("  <Fragment><DF_Params/></Fragment>\n"
                                        "  <Fragment><MastershipState>\n"
                                        "    <State>Nobody</State></MastershipState></Fragment>"));
    const Place place =
        expectThrow<OutOfRangeException>(
            [&] { document.SetXmlString(xml, false); },
            QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"))
            .GetPlace();
    EXPECT_EQ(place.line, 5);
    EXPECT_EQ(place.column, 5);
    EXPECT_EQ(place.path, QLatin1String(messagePath) + QLatin1String("/Fragment[2]/MastershipState/State"));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::Refused);
    log.expectOneError(
        QStringLiteral("5:5: enum is not valid (classname=MastershipState,membername=m_state) (in ")
        + QLatin1String(messagePath) + QLatin1String("/Fragment[2]/MastershipState/State)"));
}

TEST(WholeDocumentFailure, ARefusedItemIsPlacedAtItsElement)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    const QString xml = inMessageOnLines(QStringLiteral("<Type>Reply</Type>\n<Fragment/>"));
    const Place place =
        thrownBy<IncompleteDefinitionException>([&] { document.SetXmlString(xml, false); }).GetPlace();
    EXPECT_EQ(place.ToString(), QStringLiteral("4:1"));
    EXPECT_EQ(place.path, QLatin1String(messagePath) + QLatin1String("/Fragment"));
}

TEST(WholeDocumentFailure, TheCheckAfterReadingIsMadeOnlyOnRequest)
{
    PelLu300RouterInterfaceXml document;
    const QString xml = inMessageOnLines(QString());
    EXPECT_TRUE(document.SetXmlString(xml, false));
    expectThrow<OutOfRangeException>([&] { document.SetXmlString(xml, true); },
                                     QStringLiteral("PelLu300RouterMessage: Please set Type properly."));
}

TEST(WholeDocumentFailure, AMissingFileIsNamed)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.LoadXml(QStringLiteral("no/such/file.xml")));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_TRUE(IMKObject::GetLastFailure().GetSentence().startsWith(
        QLatin1String("no/such/file.xml: The file cannot be read: ")));
    EXPECT_FALSE(document.LoadXml(static_cast<QFile*>(nullptr)));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
}

TEST(WholeDocumentFailure, AFileIsNamedInFrontOfThePosition)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("broken.xml"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<PelLu300RouterInterfaceXml>\n</Other>");
    file.close();
    PelLu300RouterInterfaceXml document;
    EXPECT_FALSE(document.LoadXml(path));
    EXPECT_TRUE(IMKObject::GetLastFailure().GetSentence().startsWith(path + QLatin1String(":2:")));
    EXPECT_TRUE(IMKObject::GetLastFailure().GetSentence().endsWith(
        QLatin1String("(in /PelLu300RouterInterfaceXml)")));
}

TEST(WholeDocumentFailure, BinaryErrorsCarryOffsetAndPath)
{
    PelLu300RouterInterfaceXml document = sample();
    QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
    // Makes the length of the name of the state too large by one.
    const int name = static_cast<int>(bytes.indexOf("MasterPresent"));
    ASSERT_GT(name, 0);
    bytes[name - 1] = static_cast<char>(bytes[name - 1] + 1);
    PelLu300RouterInterfaceXml read;
    const Place place =
        expectThrow<BinaryParsingException>(
            [&] { read.SetBinaryRepresentation(bytes); },
            QStringLiteral("MastershipState::SetBinary(...): Length error occurred during processing of "
                           "binary representation"))
            .GetPlace();
    EXPECT_EQ(place.path, QLatin1String(messagePath) + QLatin1String("/Fragment/MastershipState"));
    EXPECT_GT(place.offset, name);
    EXPECT_LE(place.offset, bytes.size());
}

TEST(WholeDocumentFailure, ABinaryValueThatIsRefusedIsPlacedAtItsEntry)
{
    PelLu300RouterInterfaceXml document = sample();
    QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
    const int name = static_cast<int>(bytes.indexOf("MasterPresent"));
    bytes[name] = 'm';
    PelLu300RouterInterfaceXml read;
    read.SetValidate(true);
    const Place place =
        thrownBy<OutOfRangeException>([&] { read.SetBinaryRepresentation(bytes); }).GetPlace();
    // In front of the name: tag, length and the number of its bytes.
    EXPECT_EQ(place.offset, name - 12);
    EXPECT_EQ(place.path, QLatin1String(messagePath) + QLatin1String("/Fragment/MastershipState/State"));
}

TEST(WholeDocumentFailure, ABinaryFormOfAnotherClassIsRefusedByNameAndLeavesTheStreamWhereItWas)
{
    QByteArray bytes = sample().GetBinaryRepresentationAsQByteArray();
    PelVtConnectServer server;
    QDataStream stream(bytes);
    EXPECT_FALSE(server.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::WrongClass);
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("offset 0: The binary form holds PelLu300RouterInterfaceXml, expected is "
                             "PelVtConnectServer."));
    PelLu300RouterInterfaceXml document;
    EXPECT_TRUE(document.SetBinaryRepresentation(stream));
    EXPECT_TRUE(document == sample());
    bytes[0] = 0;
    EXPECT_FALSE(document.SetBinaryRepresentation(bytes));
    EXPECT_EQ(
        IMKObject::GetLastFailure().text,
        QStringLiteral("The binary form holds class 0x0053499a, expected is PelLu300RouterInterfaceXml."));
}

TEST(WholeDocumentFailure, ABinaryFormCutOffAnywhereIsRefusedAndLeavesTheObjectUnchanged)
{
    for (const bool compressed : {false, true}) {
        PelLu300RouterInterfaceXml document = sample();
        const QByteArray bytes = compressed ? document.GetCompressedBinaryRepresentationAsQByteArray(6)
                                            : document.GetBinaryRepresentationAsQByteArray();
        for (int size = 0; size < bytes.size(); ++size) {
            QByteArray part = bytes.left(size);
            EXPECT_FALSE(document.SetBinaryRepresentation(part)) << size;
            EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm) << size;
            EXPECT_EQ(IMKObject::GetLastFailure().place.offset, size);
        }
        EXPECT_TRUE(document == sample());
    }
}

TEST(WholeDocumentFailure, EveryDamagedByteOfACompressedFormIsNoticedOrHarmless)
{
    PelLu300RouterInterfaceXml document = sample();
    const QByteArray bytes = document.GetCompressedBinaryRepresentationAsQByteArray(9);
    int refused = 0;
    for (int at = 0; at < bytes.size(); ++at) {
        QByteArray damaged = bytes;
        damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
        PelLu300RouterInterfaceXml read;
        try {
            if (!read.SetBinaryRepresentation(damaged))
                ++refused;
            else
                EXPECT_TRUE(read == document) << at;
        } catch (const MKException&) {
            ++refused;
        }
    }
    EXPECT_GT(refused, bytes.size() / 2);
}

TEST(WholeDocumentFailure, ACompressedFormInsideACompressedFormIsRefused)
{
    PelLu300RouterInterfaceXml document = sample();
    const QByteArray inner = document.GetCompressedBinaryRepresentationAsQByteArray(6);
    QByteArray pieces;
    {
        QDataStream stream(&pieces, QIODevice::WriteOnly);
        stream << qCompress(inner);
    }
    QByteArray outer;
    QDataStream stream(&outer, QIODevice::WriteOnly);
    stream << 0x4D4B5A31 << pieces;
    EXPECT_FALSE(document.SetBinaryRepresentation(outer));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotABinaryForm);
}

// --- saving

TEST(WholeDocumentSaving, AFileThatCannotBeWrittenIsNamedAndNothingIsLeftBehind)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("missing/folder.xml"));
    EXPECT_FALSE(sample().SaveXml(path));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_TRUE(IMKObject::GetLastFailure().GetSentence().startsWith(
        path + QLatin1String(": The file cannot be written: ")));
    EXPECT_TRUE(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).isEmpty());
}

TEST(WholeDocumentSaving, APathThatIsNoFileIsNotReplaced)
{
    QTemporaryDir folder;
    EXPECT_FALSE(sample().SaveXml(folder.path()));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_EQ(IMKObject::GetLastFailure().text,
              QStringLiteral("The file cannot be written: it exists and is no regular file."));
}

TEST(WholeDocumentSaving, ADiskThatIsFullLeavesTheOldFile)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    ASSERT_TRUE(sample().SaveXml(path));
    PelLu300RouterInterfaceXml large = sample();
    large.GetPelLu300RouterMessage().GetFragment()[0].GetMastershipState().SetMasterClientID(
        QString(100000, QLatin1Char('x')));
    bool saved = true;
    {
        const FileSizeLimit limit(50000);
        saved = large.SaveXml(path);
    }
    EXPECT_FALSE(saved);
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputOutput);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("document.xml")));
    PelLu300RouterInterfaceXml read;
    ASSERT_TRUE(read.LoadXml(path));
    EXPECT_TRUE(read == sample());
}

TEST(WholeDocumentSaving, TextThatXmlCannotCarryIsRefusedWithItsPlaceAndTheOldFileStays)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    ASSERT_TRUE(sample().SaveXml(path));
    const QString lone(QChar(0xD800));
    for (const QString& text : {QString(QChar(1)), QString(QChar(0)), QString(QChar(0xFFFE)), lone,
                                QStringLiteral("a") + lone + QStringLiteral("b")}) {
        PelLu300RouterInterfaceXml document = sample();
        document.GetPelLu300RouterMessage().GetFragment()[0].GetMastershipState().SetMasterClientID(text);
        EXPECT_FALSE(document.SaveXml(path));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotRepresentable);
        EXPECT_EQ(IMKObject::GetLastFailure().text,
                  QStringLiteral("A text holds a character that XML cannot carry."));
        EXPECT_EQ(IMKObject::GetLastFailure().place.file, path);
        EXPECT_EQ(IMKObject::GetLastFailure().place.path,
                  QLatin1String(messagePath) + QLatin1String("/Fragment/MastershipState/MasterClientID"));
        EXPECT_TRUE(document.GetXmlString().isNull());
    }
    PelLu300RouterInterfaceXml read;
    ASSERT_TRUE(read.LoadXml(path));
    EXPECT_TRUE(read == sample());
}

TEST(WholeDocumentSaving, WhiteSpaceAndCarriageReturnsSurviveTheRoundTrip)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    PelLu300RouterInterfaceXml document = sample();
    document.GetPelLu300RouterMessage().GetFragment()[0].GetMastershipState().SetMasterClientID(
        QStringLiteral(" a\rb\r\nc\td\n "));
    ASSERT_TRUE(document.SaveXml(path));
    PelLu300RouterInterfaceXml read;
    ASSERT_TRUE(read.LoadXml(path));
    EXPECT_TRUE(read == document);
    ASSERT_TRUE(read.SetXmlString(document.GetXmlString(), true));
    EXPECT_TRUE(read == document);
}

TEST(WholeDocumentSaving, AFileIsUtf8WithDeclarationAndIndentedByTwoBlanks)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("port.xml"));
    OstraInterfacePort port;
    port.SetPort(5000);
    ASSERT_TRUE(port.SaveXml(path));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<OstraInterfacePort>\n"
                                         "  <Port>5000</Port>\n</OstraInterfacePort>\n"));
}

TEST(WholeDocumentSaving, AnExceptionLeavesTheOldFile)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    ASSERT_TRUE(sample().SaveXml(path));
    PelLu300RouterInterfaceXml incomplete;
    incomplete.SetValidate(true);
    incomplete.GetPelLu300RouterMessage();
    EXPECT_THROW(incomplete.SaveXml(path), OutOfRangeException);
    PelLu300RouterInterfaceXml read;
    ASSERT_TRUE(read.LoadXml(path));
    EXPECT_TRUE(read == sample());
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("document.xml")));
}

// --- limits

TEST(WholeDocumentLimits, AreThoseDocumentedUntilChanged)
{
    EXPECT_EQ(Limits::Get().inputSize, 268435456);
    EXPECT_EQ(Limits::Get().inflatedSize, 268435456);
    EXPECT_EQ(Limits::Get().nestingDepth, 64);
    EXPECT_EQ(Limits::Get().listItems, 4000000);
}

TEST(WholeDocumentLimits, InputSizeHoldsAtAndNotAbove)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("document.xml"));
    PelLu300RouterInterfaceXml document = sample();
    ASSERT_TRUE(document.SaveXml(path));
    const QString xml = document.GetXmlString();
    QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
    std::optional<LimitsInScope> inScope;
    PelLu300RouterInterfaceXml read;
    const QString sentence = QStringLiteral("The input is larger than the limit of %1 bytes.");

    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = xml.size(); }));
    EXPECT_TRUE(read.SetXmlString(xml, false));
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = xml.size() - 1; }));
    EXPECT_FALSE(read.SetXmlString(xml, false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);
    EXPECT_EQ(IMKObject::GetLastFailure().text, sentence.arg(xml.size() - 1));

    const qint64 fileSize = QFile(path).size();
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = fileSize; }));
    EXPECT_TRUE(read.LoadXml(path));
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = fileSize - 1; }));
    EXPECT_FALSE(read.LoadXml(path));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);

    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = bytes.size(); }));
    EXPECT_TRUE(read.SetBinaryRepresentation(bytes));
    {
        QDataStream stream(bytes);
        EXPECT_TRUE(read.SetBinaryRepresentation(stream));
    }
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inputSize = bytes.size() - 1; }));
    EXPECT_FALSE(read.SetBinaryRepresentation(bytes));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);
    QDataStream stream(bytes);
    EXPECT_FALSE(read.SetBinaryRepresentation(stream));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InputTooLarge);
    EXPECT_TRUE(read == document);
}

TEST(WholeDocumentLimits, InflatedSizeHoldsAtAndNotAbove)
{
    PelLu300RouterInterfaceXml document = sample();
    document.GetPelLu300RouterMessage().GetFragment()[0].GetMastershipState().SetMasterClientID(
        QString(200000, QLatin1Char('x')));
    QByteArray compressed = document.GetCompressedBinaryRepresentationAsQByteArray(9);
    const qint64 size = document.GetBinaryRepresentationAsQByteArray().size();
    ASSERT_LT(compressed.size(), size / 10);
    std::optional<LimitsInScope> inScope;
    PelLu300RouterInterfaceXml read;
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inflatedSize = size; }));
    EXPECT_TRUE(read.SetBinaryRepresentation(compressed));
    EXPECT_TRUE(read == document);
    inScope.emplace(limitsWith([&](Limits& limits) { limits.inflatedSize = size - 1; }));
    EXPECT_FALSE(read.SetBinaryRepresentation(compressed));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::InflatedTooLarge);
    EXPECT_EQ(IMKObject::GetLastFailure().text,
              QStringLiteral("The inflated form is larger than the limit of %1 bytes.").arg(size - 1));
}

TEST(WholeDocumentLimits, NestingDepthHoldsAtAndNotAbove)
{
    const auto nested = [](int depth) {
        QString xml;
        for (int i = 1; i < depth; ++i)
            xml = QStringLiteral("<e%1>").arg(depth - i) + xml + QStringLiteral("</e%1>").arg(depth - i);
        return QStringLiteral("<PelLu300RouterInterfaceXml>%1</PelLu300RouterInterfaceXml>").arg(xml);
    };
    std::optional<LimitsInScope> inScope;
    inScope.emplace(limitsWith([](Limits& limits) { limits.nestingDepth = 10; }));
    PelLu300RouterInterfaceXml document;
    EXPECT_TRUE(document.SetXmlString(nested(9), false));
    EXPECT_TRUE(document.SetXmlString(nested(10), false));
    EXPECT_FALSE(document.SetXmlString(nested(11), false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NestedTooDeep);
    EXPECT_EQ(IMKObject::GetLastFailure().text,
              QStringLiteral("Elements are nested deeper than the limit of 10."));
    // The limit also holds inside a text.
    EXPECT_FALSE(
        document.SetXmlString(inMessageOnLines(QStringLiteral(
                                  "<Type><a><b><c><d><e><f><g><h></h></g></f></e></d></c></b></a></Type>")),
                              false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NestedTooDeep);
}

TEST(WholeDocumentLimits, ListItemsHoldAtAndNotAboveInEveryForm)
{
    PelLu300RouterInterfaceXml document = sample();
    const QString xml = document.GetXmlString();
    QByteArray bytes = document.GetBinaryRepresentationAsQByteArray();
    std::optional<LimitsInScope> inScope;
    PelLu300RouterInterfaceXml read;
    inScope.emplace(limitsWith([](Limits& limits) { limits.listItems = 2; }));
    EXPECT_TRUE(read.SetXmlString(xml, false));
    EXPECT_TRUE(read.SetBinaryRepresentation(bytes));
    inScope.emplace(limitsWith([](Limits& limits) { limits.listItems = 1; }));
    const QString text = QStringLiteral("A list holds more items than the limit of 1.");
    EXPECT_FALSE(read.SetXmlString(xml, false));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyItems);
    EXPECT_EQ(IMKObject::GetLastFailure().text, text);
    EXPECT_EQ(IMKObject::GetLastFailure().place.path,
              QLatin1String(messagePath) + QLatin1String("/Fragment[2]"));
    EXPECT_FALSE(read.SetBinaryRepresentation(bytes));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyItems);
    EXPECT_EQ(IMKObject::GetLastFailure().text, text);
}

TEST(WholeDocumentLimits, DoNotHoldForProcessXmlSetBinaryAndMerging)
{
    std::optional<LimitsInScope> inScope;
    inScope.emplace(limitsWith([](Limits& limits) {
        limits.listItems = 1;
        limits.nestingDepth = 1;
        limits.inputSize = 1;
    }));
    PelLu300RouterInterfaceXml read;
    readXml(read, xmlOf(sample()));
    EXPECT_TRUE(read == sample());
    PelLu300RouterInterfaceXml binary;
    readFrame(binary, frameOf(sample()));
    EXPECT_TRUE(binary == sample());
    PelLu300RouterInterfaceXml merged;
    EXPECT_TRUE(merged.MergeMKObject(sample()));
    EXPECT_TRUE(merged == sample());
}

// --- report

TEST(WholeDocumentReport, NamesEverythingThatXmlReadingAcceptsSilently)
{
    ReadingReport report;
    PelLu300RouterInterfaceXml document;
    const Log log(document);
    const QString xml = QStringLiteral("<PelLu300RouterInterfaceXml version='1'>\n"
                                       "<PelLu300RouterMessage>\n"
                                       "<Type>Reply</Type>\n"
                                       "<Type>Event</Type>\n"
                                       "<Unknown><Type>Request</Type></Unknown>\n"
                                       "<MessageID>x</MessageID>\n"
                                       "<Fragment><DF_Params>\n"
                                       "<Bandwidth unit='Hz'>1.234</Bandwidth>\n"
                                       "<Frequency>1 MHz</Frequency></DF_Params></Fragment>\n"
                                       "<Fragment><AcquireMastership>\n"
                                       "<Success>Yes</Success></AcquireMastership></Fragment>\n"
                                       "<Fragment><OstraInterfacePort>\n"
                                       "<Port>-1</Port></OstraInterfacePort></Fragment>\n"
                                       "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    ASSERT_TRUE(document.SetXmlString(xml, true));
    EXPECT_EQ(
        lines(report, PathShown::LastStep),
        QStringList({QStringLiteral("3 1:1 The attribute version was ignored. PelLu300RouterInterfaceXml"),
                     QStringLiteral("2 4:1 Type came before; the last one counts. Type[2]"),
                     QStringLiteral("0 5:1 The element Unknown is not known in PelLu300RouterMessage and was "
                                    "skipped. Unknown"),
                     QStringLiteral("4 6:1 \"x\" is not a whole number up to 2147483647; it was read as 0. "
                                    "MessageID"),
                     QStringLiteral("3 8:1 The attribute unit was ignored. Bandwidth"),
                     QStringLiteral("6 8:1 \"1.234\" has more than the two decimals that are written. "
                                    "Bandwidth"),
                     QStringLiteral("4 9:1 \"1 MHz\" is not a number; it was read as 0.00. Frequency"),
                     QStringLiteral("7 11:1 \"Yes\" was read as true. Success"),
                     QStringLiteral("5 13:1 -1 was read as 4294967295. Port")}));
    log.expectNothing();
}

TEST(WholeDocumentReport, NamesUnknownAndRepeatedBinaryEntriesWithOffsetAndPath)
{
    // Port, an unknown entry of two bytes, and Port again with bits above the 32nd.
    QByteArray form = bytes("7F012EB8 0000002A"
                            "1F980517 00000008 0000000000001388"
                            "DEADBEEF 00000002 0102"
                            "1F980517 00000008 0000000100000007");
    ReadingReport report;
    OstraInterfacePort port;
    ASSERT_TRUE(port.SetBinaryRepresentation(form));
    EXPECT_EQ(port.GetPort(), 7U);
    EXPECT_EQ(lines(report, PathShown::LastStep),
              QStringList({QStringLiteral("1 offset 24 The entry with tag 0xdeadbeef is not known in "
                                          "OstraInterfacePort and was skipped. OstraInterfacePort"),
                           QStringLiteral("2 offset 34 Port came before; the last one counts. Port"),
                           QStringLiteral("5 offset 34 4294967303 was read as 7. Port")}));
}

TEST(WholeDocumentReport, KnowsTheUsualTextsOfABoolean)
{
    for (const char* text : {"true", "TRUE", "false", "False", "0", "1"}) {
        ReadingReport report;
        AcquireMastership record;
        ASSERT_TRUE(
            record.SetXmlString(QStringLiteral("<AcquireMastership><Success>%1</Success></AcquireMastership>")
                                    .arg(QLatin1String(text)),
                                false));
        EXPECT_TRUE(report.GetEntries().isEmpty()) << text;
    }
}

TEST(WholeDocumentReport, CollectsOnlyWhileItExistsAndOnlyTheInnermostOne)
{
    const QString xml = QStringLiteral("<DF_Params a='1'/>");
    DF_Params record;
    ASSERT_TRUE(record.SetXmlString(xml, false));
    ReadingReport outer;
    EXPECT_TRUE(outer.GetEntries().isEmpty());
    {
        ReadingReport inner;
        ASSERT_TRUE(record.SetXmlString(xml, false));
        EXPECT_EQ(inner.GetEntries().size(), 1);
    }
    EXPECT_TRUE(outer.GetEntries().isEmpty());
    ASSERT_TRUE(record.SetXmlString(xml, false));
    EXPECT_EQ(outer.GetEntries().size(), 1);
    outer.Clear();
    EXPECT_TRUE(outer.GetEntries().isEmpty());
}

TEST(WholeDocumentReport, KeepsALimitedNumberOfEntriesAndCountsTheRest)
{
    QString xml = QStringLiteral("<DF_Params>");
    for (int i = 0; i < ReadingReport::maximalEntries + 5; ++i)
        xml += QLatin1String("<x/>");
    xml += QLatin1String("</DF_Params>");
    ReadingReport report;
    DF_Params record;
    ASSERT_TRUE(record.SetXmlString(xml, false));
    EXPECT_EQ(report.GetEntries().size(), ReadingReport::maximalEntries);
    EXPECT_EQ(report.GetDropped(), 5);
    EXPECT_EQ(report.GetEntries().last().place.path, QStringLiteral("/DF_Params/x[10000]"));
}

// --- merging

TEST(WholeDocumentMerging, TakesOverWhatIsSetInFullPrecisionAndAppendsLists)
{
    PelLu300RouterInterfaceXml one = sample();
    PelLu300RouterInterfaceXml two;
    two.GetPelLu300RouterMessage().SetMessageID(8);
    Fragment fragment;
    fragment.GetDF_Params().SetFrequency(1.0 / 3.0);
    two.GetPelLu300RouterMessage().AppendFragment(fragment);
    ASSERT_TRUE(one.MergeMKObject(two));
    const PelLu300RouterMessage& message = one.GetPelLu300RouterMessage();
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
    EXPECT_EQ(message.GetMessageID(), 8U);
    ASSERT_EQ(message.GetFragment().size(), 3);
    EXPECT_TRUE(message.GetFragment()[2] == fragment);
}

TEST(WholeDocumentMerging, AnotherClassIsRefusedByName)
{
    AcquireMastership one;
    ReleaseMastership two;
    two.SetSuccess(true);
    EXPECT_FALSE(one.MergeMKObject(two));
    EXPECT_FALSE(one.IsInitialized());
    EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
              QStringLiteral("A ReleaseMastership cannot be merged into a AcquireMastership."));
}

TEST(WholeDocumentMerging, MergingWithItselfDoublesTheList)
{
    PelLu300RouterInterfaceXml document = sample();
    ASSERT_TRUE(document.MergeMKObject(document));
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetFragment().size(), 4);
}

TEST(WholeDocumentMerging, IgnoresTheValidationFlagOfTheOther)
{
    PelLu300RouterMessage other;
    other.SetMessageID(5);
    other.SetValidate(true);
    PelLu300RouterMessage message;
    ASSERT_TRUE(message.MergeMKObject(other));
    EXPECT_EQ(message.GetMessageID(), 5U);
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_TRUE(other.GetValidate());
}

// --- log sinks

TEST(LogSinks, ADeviceGetsOneLinePerEntry)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    MODELKIT::Logger logger(std::make_shared<MODELKIT::DeviceLogSink>(buffer));
    logger.Log(MODELKIT::Logger::Info, QStringLiteral("one"));
    logger.Log(MODELKIT::Logger::Error, QString::fromUtf8("two\nl\303\274nes\033"));
    EXPECT_EQ(buffer.data(), QByteArray("INFO: one\nERROR: two l\303\274nes \n"));
}

TEST(LogSinks, ADeviceGetsNoCharacterThatMakesAnEntryLookLikeAnother)
{
    QBuffer buffer;
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    MODELKIT::DeviceLogSink sink(buffer);
    for (const int deceiving :
         {0x00,   0x09,   0x0A,   0x0D,   0x1B,   0x7F,   0x85,   0x9B,   0x2028, 0x2029, 0x061C,
          0x200E, 0x200F, 0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066, 0x2067, 0x2068, 0x2069}) {
        SCOPED_TRACE(deceiving);
        buffer.buffer().clear();
        buffer.seek(0);
        sink.Write(MODELKIT::Logger::Error, QLatin1Char('a') + QString(QChar(deceiving)) + QLatin1Char('b'));
        EXPECT_EQ(buffer.data(), QByteArray("ERROR: a b\n"));
    }
    for (const char* const harmless :
         {"\xC2\xA0", "\xE2\x80\xAF", "\xE2\x80\x90", "\xE2\x81\xAA", "\xF0\x9F\x98\x80"}) {
        buffer.buffer().clear();
        buffer.seek(0);
        sink.Write(MODELKIT::Logger::Info, QString::fromUtf8(harmless));
        EXPECT_EQ(buffer.data(), QByteArray("INFO: ") + harmless + '\n');
    }
    EXPECT_EQ(sink.GetLost(), 0);
}

TEST(LogSinks, AnEntryThatADeviceRefusesIsCounted)
{
    for (const QIODevice::OpenMode mode :
         {QIODevice::OpenMode(), QIODevice::OpenMode(QIODevice::Unbuffered)}) {
        QFile full(QStringLiteral("/dev/full"));
        ASSERT_TRUE(full.open(QIODevice::WriteOnly | mode));
        MODELKIT::DeviceLogSink sink(full);
        sink.Write(MODELKIT::Logger::Info, QStringLiteral("one"));
        sink.Write(MODELKIT::Logger::Info, QStringLiteral("two"));
        EXPECT_EQ(sink.GetLost(), 2);
    }
}

namespace {

QStringList caught;

void catchMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    caught
        << QStringLiteral("%1 %2 %3").arg(static_cast<int>(type)).arg(QLatin1String(context.category), text);
}

} // namespace

TEST(LogSinks, QtsLoggingGetsEntriesInACategory)
{
    caught.clear();
    const auto before = qInstallMessageHandler(catchMessage);
    MODELKIT::Logger logger(std::make_shared<MODELKIT::QtLogSink>());
    logger.Log(MODELKIT::Logger::Info, QStringLiteral("one"));
    logger.Log(MODELKIT::Logger::Warning, QStringLiteral("two"));
    logger.Log(MODELKIT::Logger::Error, QStringLiteral("three"));
    qInstallMessageHandler(before);
    EXPECT_EQ(caught,
              QStringList({QStringLiteral("%1 modelkit one").arg(static_cast<int>(QtInfoMsg)),
                           QStringLiteral("%1 modelkit two").arg(static_cast<int>(QtWarningMsg)),
                           QStringLiteral("%1 modelkit three").arg(static_cast<int>(QtCriticalMsg))}));
}
