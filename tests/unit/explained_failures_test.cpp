// SPDX-License-Identifier: MIT
// The explanation of a failed reading of a whole document: the whole sentence, the exact place, and one entry
// in the log.

#include "DocumentParts.h"
#include "ExplainedSupport.h"
#include "LogSupport.h"
#include "TestFolder.h"

#include "modelkit/ReadingReport.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>

#include <functional>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;
using MODELKIT::ReadingReport;

// --- attributes -----------------------------------------------------------------------------------

namespace {

const char* const tooMany = "An element has more attributes than the limit of 256.";

QString tooManyAt(const char* position, const char* path)
{
    return text("%1: %2 (in %3)").arg(text(position), text(tooMany), text(path));
}

} // namespace

TEST(ExplainedAttributes, TheLimitIs256UntilItIsChanged) { EXPECT_EQ(Limits::Get().attributes, 256); }

TEST(ExplainedAttributes, AsManyAsTheLimitAreAccepted)
{
    expectRead(inRoot(text("<x") + attributes(256) + text("/>")));
    expectRead(inRoot(text("<x") + attributes(256) + text("></x>")));
    expectRead(text("<PelLu300RouterInterfaceXml") + attributes(256) + text("/>"));
}

TEST(ExplainedAttributes, OneMoreIsRefusedWhereItsTagBegins)
{
    expectRefused(inRoot(text("\n  <x") + attributes(257) + text("/>")), Failure::TooManyAttributes,
                  tooManyAt("2:3", rootPath));
    expectRefused(inMessage(text("\n<Type") + attributes(257) + text(">Reply</Type>")),
                  Failure::TooManyAttributes, tooManyAt("2:1", messagePath));
}

TEST(ExplainedAttributes, OnTheRootTheyLeaveNoPath)
{
    expectRefused(text("\n<PelLu300RouterInterfaceXml") + attributes(257) + text("/>"),
                  Failure::TooManyAttributes,
                  text("2:1: An element has more attributes than the limit of 256."));
}

// U+1F600 counts as two: columns count UTF-16 units.
TEST(ExplainedAttributes, CharactersOfSeveralBytesInFrontCountAsInAString)
{
    expectRefused(inRoot(text("\n\u00E4\u20AC\U0001F600<x") + attributes(257) + text("/>")),
                  Failure::TooManyAttributes, tooManyAt("2:5", rootPath));
}

TEST(ExplainedAttributes, TheLimitHoldsAtAndNotAboveInUtf16)
{
    for (const ByteOrder order : {ByteOrder::Big, ByteOrder::Little}) {
        const QString before = text("\n\u00E4\u20AC\U0001F600<x");
        expectFileRefused(utf16(inRoot(before + attributes(257) + text("/>")), order, Mark::With),
                          Failure::TooManyAttributes, tooManyAt("2:5", rootPath));
        const Folder folder;
        PelLu300RouterInterfaceXml document;
        EXPECT_TRUE(document.LoadXml(
            folder.write(utf16(inRoot(before + attributes(256) + text("/>")), order, Mark::With))));
    }
}

TEST(ExplainedAttributes, TheLimitHoldsInEncodingsOfOneByte)
{
    expectFileRefused("<?xml version='1.0' encoding='ISO-8859-1'?>\n<PelLu300RouterInterfaceXml>\xE4\xF6<x"
                          + attributes(257).toLatin1() + "/></PelLu300RouterInterfaceXml>",
                      Failure::TooManyAttributes, tooManyAt("2:31", rootPath));
}

TEST(ExplainedAttributes, AByteOrderMarkDoesNotCount)
{
    expectFileRefused("\xEF\xBB\xBF" + inRoot(text("<x") + attributes(257) + text("/>")).toUtf8(),
                      Failure::TooManyAttributes, tooManyAt("1:29", rootPath));
}

TEST(ExplainedAttributes, AreCountedBehindSignsInQuotes)
{
    const QString quoted = text("<x q='a>b=c\"=' r=\"a>b=c'=/>\"");
    expectRead(inRoot(quoted + attributes(254) + text("/>")));
    expectRefused(inRoot(quoted + attributes(255) + text("/>")), Failure::TooManyAttributes,
                  tooManyAt("1:29", rootPath));
}

TEST(ExplainedAttributes, AreCountedWithBlanksAroundTheSign)
{
    const QString spaced = text("<x\n\t") + attributes(257).replace(text("="), text(" \n= "));
    expectRefused(inRoot(spaced + text("/>")), Failure::TooManyAttributes, tooManyAt("1:29", rootPath));
}

// If "<" were allowed in a value, it would hide the attributes behind it.
TEST(ExplainedAttributes, AnOpeningBracketInQuotesIsNotWellFormed)
{
    expectNotWellFormed(inRoot(text("<x q='<'") + attributes(300) + text("/>")), text("1:35"),
                        text(rootPath));
}

TEST(ExplainedAttributes, LookAlikesInCommentsCdataAndInstructionsAreSkipped)
{
    const QString alike = text("<x") + attributes(300) + text("/>");
    for (const QString& content :
         {text("<!-- %1 -->").arg(alike), text("<!--%1- -> ->-->").arg(alike),
          text("<![CDATA[%1]] >]]>").arg(alike), text("<?x %1? >?>").arg(alike), alike.toHtmlEscaped()}) {
        expectRead(inRoot(content));
        expectRead(inMessage(text("<Type>Re") + content + text("</Type>")));
        // Attributes behind the look-alikes are counted.
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.SetXmlString(inRoot(content + alike), false));
        EXPECT_EQ(IMKObject::GetLastFailure().GetSentence(),
                  text("1:%1: %2 (in %3)")
                      .arg(QString::number(29 + content.size()), text(tooMany), text(rootPath)));
    }
    expectRead(text("<?xml version='1.0'?><!--%1--><?x %1?>").arg(alike) + inRoot(QString()));
}

TEST(ExplainedAttributes, EqualSignsInATextAreNotCounted)
{
    expectRead(inRoot(text("='").repeated(1000)));
    expectRead(inMessage(text("<x a=''>") + text(" a=''").repeated(1000) + text("</x>")));
}

TEST(ExplainedAttributes, OfSeveralElementsAreNotAddedUp)
{
    expectRead(inRoot((text("<x") + attributes(200) + text("/>")).repeated(10)));
}

TEST(ExplainedAttributes, ALimitOfZeroRefusesAll)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.attributes = 0; }));
    expectRead(inRoot(QString()));
    expectRefused(
        inRoot(text("<x a=''/>")), Failure::TooManyAttributes,
        text("1:29: An element has more attributes than the limit of 0. (in %1)").arg(text(rootPath)));
}

// The text is scanned before a reader sees it.
TEST(ExplainedAttributes, AreReportedBeforeAnythingElseAndLeaveTheRecordUnchanged)
{
    const QString tag = text("<x") + attributes(257) + text("/>");
    PelLu300RouterInterfaceXml document = sample();
    expectFailure(document, Failure::TooManyAttributes,
                  text("1:11: An element has more attributes than the limit of 256. (in /Fragment)"), [&] {
                      return document.SetXmlString(text("<Fragment>") + tag + text("</Fragment>"), true);
                  });
    EXPECT_TRUE(document == sample());
    EXPECT_FALSE(document.SetXmlString(inRoot(text("</y>") + tag), true));
    EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyAttributes);
    EXPECT_EQ(IMKObject::GetLastFailure().place.ToString(), text("1:33"));
    EXPECT_TRUE(document == sample());
}

TEST(ExplainedAttributes, DoNotCountForProcessXml)
{
    OstraInterfacePort port;
    readXml(port,
            text("<OstraInterfacePort") + attributes(300) + text("><Port>7</Port></OstraInterfacePort>"));
    EXPECT_EQ(port.GetPort(), 7U);
}

// --- document type declarations -------------------------------------------------------------------

namespace {

const char* const noDoctype = "A document type declaration is not accepted.";

} // namespace

TEST(ExplainedDoctype, IsRefusedWhereItBegins)
{
    const QString doctype = text("<!DOCTYPE x [<!ENTITY e 'f'>]>") + inRoot(QString());
    expectRefused(doctype, Failure::DoctypeRefused, text("1:1: ") + text(noDoctype));
    expectRefused(text("<?xml version='1.0' encoding='UTF-8'?>\n<!-- \u00E4 <!DOCTYPE y> -->\n<?z?>\n  ")
                      + doctype,
                  Failure::DoctypeRefused, text("4:3: ") + text(noDoctype));
    expectRefused(text("<!--\u00E4\U0001F600-->") + doctype, Failure::DoctypeRefused,
                  text("1:11: ") + text(noDoctype));
    // A declaration that does not end.
    expectRefused(text("\n<!DOCTYPE"), Failure::DoctypeRefused, text("2:1: ") + text(noDoctype));
}

TEST(ExplainedDoctype, IsRefusedWhereItBeginsInUtf16)
{
    for (const ByteOrder order : {ByteOrder::Big, ByteOrder::Little})
        expectFileRefused(utf16(text("<?xml version='1.0' encoding='UTF-16'?>\r\n<!--\u20AC--> <!DOCTYPE x>")
                                    + inRoot(QString()),
                                order, Mark::With),
                          Failure::DoctypeRefused, text("2:10: ") + text(noDoctype));
}

TEST(ExplainedDoctype, LeavesTheRecordUnchanged)
{
    PelLu300RouterInterfaceXml document = sample();
    expectFailure(document, Failure::DoctypeRefused, text("1:1: ") + text(noDoctype),
                  [&] { return document.SetXmlString(text("<!DOCTYPE x>") + inRoot(QString()), true); });
    EXPECT_TRUE(document == sample());
}

TEST(ExplainedDoctype, LookAlikesInCommentsCdataAndInstructionsAreSkipped)
{
    const QString alike = text("<!DOCTYPE x [<!ENTITY e 'f'>]>");
    expectRead(text("<!--%1--><?x %1?>").arg(alike) + inRoot(QString())
               + text("<!--%1--><?x %1?>").arg(alike));
    for (const char* const content : {"<!--%1-->", "<![CDATA[%1]]>", "<?x %1?>"}) {
        PelLu300RouterInterfaceXml document;
        ASSERT_TRUE(document.SetXmlString(
            inMessage(text("<Type>Re") + text(content).arg(alike) + text("</Type><MessageID>7</MessageID>")),
            false));
        EXPECT_EQ(document.GetPelLu300RouterMessage().GetMessageID(), 7U);
    }
}

// Some readers accept UTF-16 without a byte order mark, so the limit must hold there too.
TEST(ExplainedAttributes, AreCountedInUtf16WithoutAByteOrderMark)
{
    // One byte of this character is the code of an apostrophe.
    QString xml = QStringLiteral("<PelLu300RouterInterfaceXml a='") + QChar(0x2700) + QStringLiteral("'");
    for (int i = 0; i < 300; ++i)
        xml += QStringLiteral(" a%1=''").arg(i);
    xml += QStringLiteral("/>");
    QTemporaryDir folder;
    for (const bool isBigEndian : {false, true}) {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(isBigEndian ? QDataStream::BigEndian : QDataStream::LittleEndian);
        for (const QChar character : xml)
            stream << static_cast<quint16>(character.unicode());
        QFile file(folder.filePath(QStringLiteral("utf16.xml")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(document.LoadXml(file.fileName()));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::TooManyAttributes);
        EXPECT_EQ(IMKObject::GetLastFailure().place.line, 1);
        EXPECT_EQ(IMKObject::GetLastFailure().place.column, 1);
    }
}

TEST(ExplainedDoctype, InsideOrBehindTheRootIsRefusedAndItsEntitiesAreNotFollowed)
{
    const QString declared = text("<!DOCTYPE x [<!ENTITY e 'Reply'>]>");
    for (const QString& xml : {inMessage(declared + text("<Type>&e;</Type>")), inRoot(declared),
                               inRoot(QString()) + declared, inRoot(QString()) + text("\n<!DOCTYPE x>")}) {
        PelLu300RouterInterfaceXml document;
        const Log log(document);
        EXPECT_FALSE(document.SetXmlString(xml, false)) << xml.toStdString();
        EXPECT_TRUE(IMKObject::GetLastFailure().kind == Failure::NotWellFormed
                    || IMKObject::GetLastFailure().kind == Failure::DoctypeRefused);
        log.expectOneError(IMKObject::GetLastFailure().GetSentence());
        EXPECT_FALSE(document.GetPelLu300RouterMessage().IsTypeSet());
    }
}

// --- prefixes -------------------------------------------------------------------------------------

TEST(ExplainedPrefixes, AreLeftOutOfNamesWhetherDeclaredOrNot)
{
    for (const char* const declaration : {" xmlns:p='u' xmlns='v'", ""}) {
        PelLu300RouterInterfaceXml document;
        ASSERT_TRUE(document.SetXmlString(text("<p:PelLu300RouterInterfaceXml%1><p:PelLu300RouterMessage>"
                                               "<p:Type>Reply</p:Type><MessageID>7</MessageID>"
                                               "</p:PelLu300RouterMessage></p:PelLu300RouterInterfaceXml>")
                                              .arg(text(declaration)),
                                          true));
        EXPECT_TRUE(document == sample());
    }
}

TEST(ExplainedPrefixes, AreLeftOutOfPaths)
{
    expectRefused(
        text("<p:Fragment/>"), Failure::WrongRoot,
        text("1:1: The root element is Fragment, expected is PelLu300RouterInterfaceXml. (in /Fragment)"));
    expectNotWellFormed(inRoot(text("<p:x/><q:x></y>")), text("1:43"), text(rootPath) + text("/x[2]"));
}

TEST(ExplainedPrefixes, OfStartAndEndTagMustBeTheSame)
{
    expectNotWellFormed(inRoot(text("<p:x></q:x>")), text("1:39"), text(rootPath) + text("/x"));
}

TEST(ExplainedPrefixes, MakeDifferentAttributesOfOneName)
{
    expectRead(inRoot(text("<x p:a='' q:a='' a=''/>")));
    expectNotWellFormed(inRoot(text("<x p:a='' p:a=''/>")), text("1:46"), text(rootPath));
}

TEST(ExplainedPrefixes, AreDeclaredByAttributesLikeOthers)
{
    ReadingReport report;
    PelLu300RouterInterfaceXml document;
    ASSERT_TRUE(document.SetXmlString(text("<PelLu300RouterInterfaceXml xmlns:p='u' p:a=''/>"), false));
    ASSERT_EQ(report.GetEntries().size(), 2);
    EXPECT_EQ(report.GetEntries().at(0).text, text("The attribute xmlns:p was ignored."));
    EXPECT_EQ(report.GetEntries().at(1).text, text("The attribute p:a was ignored."));

    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.attributes = 1; }));
    expectRefused(
        inRoot(text("<x xmlns:p='u' xmlns='v'/>")), Failure::TooManyAttributes,
        text("1:29: An element has more attributes than the limit of 1. (in %1)").arg(text(rootPath)));
}

// --- a document that breaks off or exceeds a limit where a record would complain --------------------

TEST(ExplainedLimits, NestingIsReportedInsteadOfAMissingText)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.nestingDepth = 5; }));
    // The record would refuse the truth value, which has no text.
    expectRefused(
        inMessage(text(
            "\n<Fragment><AcquireMastership><Success><a>true</a></Success></AcquireMastership></Fragment>")),
        Failure::NestedTooDeep,
        text("2:41: Elements are nested deeper than the limit of 5. (in "
             "%1/Fragment/AcquireMastership/Success/a)")
            .arg(text(messagePath)),
        true);
}

TEST(ExplainedLimits, NestingIsReportedInsteadOfAnItemWithoutData)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.nestingDepth = 3; }));
    expectRefused(inMessage(text("\n<Type>Reply</Type><Fragment>\n <Unknown/></Fragment>")),
                  Failure::NestedTooDeep,
                  text("3:11: Elements are nested deeper than the limit of 3. (in %1/Fragment/Unknown)")
                      .arg(text(messagePath)),
                  true);
}

TEST(ExplainedLimits, TheNumberOfItemsIsReportedInsteadOfAnItemWithoutData)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.listItems = 1; }));
    expectRefused(
        inMessage(text("<Type>Reply</Type>\n<Fragment><DF_Params/></Fragment>\n<Fragment></Fragment>")),
        Failure::TooManyItems,
        text("3:10: A list holds more items than the limit of 1. (in %1/Fragment[2])").arg(text(messagePath)),
        true);

    // Two items: one with an empty payload, one without a payload.
    QByteArray form = bytes("8553499A 00000024 9B1A7AD8 0000001C 61023A90 00000014 00000002"
                            "00000008 BE2DFF74 00000000 00000000");
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectFailure(document, Failure::TooManyItems,
                  text("offset 40: A list holds more items than the limit of 1. (in %1/Fragment[2])")
                      .arg(text(messagePath)),
                  [&] { return document.SetBinaryRepresentation(form); });
}

TEST(ExplainedLimits, AnEarlierExceptionIsReportedFirst)
{
    const LimitsInScope inScope(limitsWith([](Limits& limits) { limits.nestingDepth = 3; }));
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrown<OutOfRangeException>(
        document,
        text("1:52: enum is not valid (classname=PelLu300RouterMessage,membername=m_type) (in %1/Type)")
            .arg(text(messagePath)),
        [&] { document.SetXmlString(inMessage(text("<Type>No</Type><a><b/></a>")), true); });
}

TEST(ExplainedLimits, ADocumentCutOffIsReportedInsteadOfMissingData)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    for (const char* const begin :
         {"<Type>", "<Type>Rep", "<Fragment>", "<Fragment><AcquireMastership><Success>",
          "<Fragment><MastershipState><State>Master", "<Fragment><AcquireMastership><Success></Other>"}) {
        SCOPED_TRACE(begin);
        const Log log(document);
        EXPECT_FALSE(document.SetXmlString(
            text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage>") + text(begin), true));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        log.expectOneError(IMKObject::GetLastFailure().GetSentence());
    }
}

// --- reports --------------------------------------------------------------------------------------

namespace {

// Unknown elements inside two elements with the same name of 4000 characters. Skipping the first stops at the
// second, so that the elements inside are reported one by one.
QString belowLongNames(int count)
{
    const QString name(4000, QLatin1Char('n'));
    return text("<DF_Params>\n<%1><%1>%2</%1></%1></DF_Params>").arg(name, text("<x/>").repeated(count));
}

} // namespace

TEST(ExplainedReport, PathsTogetherHaveALimitAndTheEntriesBehindAreCounted)
{
    EXPECT_EQ(ReadingReport::maximalPathCharacters, 8388608);
    ReadingReport report;
    DF_Params record;
    const Log log(record);
    ASSERT_TRUE(record.SetXmlString(belowLongNames(1100), false));
    log.expectNothing();
    // The long name itself has a path of 4011 characters. The others have 8014 and their number in
    // brackets: 1045 of them make 8379790 characters, one more would make 8387810 and exceed the limit.
    EXPECT_EQ(report.GetEntries().size(), 1046);
    EXPECT_EQ(report.GetDropped(), 55);
    EXPECT_EQ(report.GetEntries().first().place.ToString(), text("2:1"));
    EXPECT_TRUE(report.GetEntries().last().place.path.endsWith(text("n/x[1045]")));
    EXPECT_EQ(report.GetEntries().last().place.ToString(), text("2:%1").arg(8005 + 4 * 1044));
}

TEST(ExplainedReport, TheLimitOfPathsIsOneForEachDocument)
{
    ReadingReport report;
    DF_Params record;
    ASSERT_TRUE(record.SetXmlString(belowLongNames(1000), false));
    ASSERT_TRUE(record.SetXmlString(belowLongNames(1000), false));
    EXPECT_EQ(report.GetEntries().size(), 2002);
    EXPECT_EQ(report.GetDropped(), 0);
}

TEST(ExplainedReport, ADocumentThatIsNotWellFormedLeavesNoEntries)
{
    ReadingReport report;
    PelLu300RouterInterfaceXml document;
    EXPECT_TRUE(document.SetXmlString(inMessage(text("<Type>Event</Type><y/>")), false));
    EXPECT_FALSE(document.SetXmlString(inMessage(text("\n<x/>\r <x/>\r\n<Type>")), false));
    ASSERT_EQ(report.GetEntries().size(), 1);
    EXPECT_EQ(report.GetEntries().at(0).place.path, text(messagePath) + text("/y"));
}

TEST(ExplainedReport, EntriesAreKeptAndPlacedAlsoWhenARecordRefuses)
{
    ReadingReport report;
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    const QString xml = inMessage(text("\n<x/>\r <x/>\r\n<Type>No</Type>"));
    EXPECT_THROW(document.SetXmlString(xml, false), OutOfRangeException);
    ASSERT_EQ(report.GetEntries().size(), 2);
    EXPECT_EQ(report.GetEntries().at(0).place.ToString(), text("2:1"));
    EXPECT_EQ(report.GetEntries().at(1).place.ToString(), text("3:2"));
    EXPECT_EQ(report.GetEntries().at(1).place.path, text(messagePath) + text("/x[2]"));
}

// --- compressed forms -----------------------------------------------------------------------------

namespace {

// The compressed form, in one piece.
QByteArray compressed(const QByteArray& plain) { return compressedForm(sized(qCompress(plain, 9))); }

// Expects the failure from a byte array, a stream and a file, and an unchanged record.
void expectFormRefused(QByteArray form, Failure::Kind kind, const QString& sentence)
{
    PelLu300RouterInterfaceXml document = sample();
    expectFailure(document, kind, sentence, [&] { return document.SetBinaryRepresentation(form); });
    QDataStream stream(form);
    expectFailure(document, kind, sentence, [&] { return document.SetBinaryRepresentation(stream); });
    EXPECT_EQ(stream.device()->pos(), 0);
    const Folder folder;
    QFile file(folder.write(form));
    expectFailure(document, kind, folder.path() + text(": ") + sentence,
                  [&] { return document.LoadBinary(&file); });
    EXPECT_FALSE(file.isOpen());
    EXPECT_TRUE(document == sample());
}

} // namespace

TEST(ExplainedForms, TheSampleIsReadInBothForms)
{
    PelLu300RouterInterfaceXml document;
    QByteArray form = compressed(bytes(sampleForm));
    EXPECT_TRUE(document.SetBinaryRepresentation(form));
    EXPECT_TRUE(document == sample());
    EXPECT_EQ(document.GetBinaryRepresentationAsQByteArray(), bytes(sampleForm));
}

TEST(ExplainedForms, ACompressedFormInsideACompressedFormIsRefused)
{
    expectFormRefused(compressed(compressed(bytes(sampleForm))), Failure::NotABinaryForm,
                      text("The compressed form holds another compressed form."));
}

TEST(ExplainedForms, AnotherClassInsideACompressedFormIsNamed)
{
    expectFormRefused(
        compressed(bytes("0BBAB464 00000000")), Failure::WrongClass,
        text("offset 0: The binary form holds class 0x0bbab464, expected is PelLu300RouterInterfaceXml."));
    OstraInterfacePort port;
    port.SetPort(5000);
    expectFormRefused(
        port.GetCompressedBinaryRepresentationAsQByteArray(9), Failure::WrongClass,
        text("offset 0: The binary form holds OstraInterfacePort, expected is PelLu300RouterInterfaceXml."));
}

TEST(ExplainedForms, AFormCutOffInsideACompressedFormIsPlacedInside)
{
    expectFormRefused(compressed(bytes(sampleForm).left(20)), Failure::NotABinaryForm,
                      text("offset 20: The binary form is cut off."));
    expectFormRefused(compressed(bytes("85534")), Failure::NotABinaryForm,
                      text("offset 3: The binary form is cut off."));
}

TEST(ExplainedForms, ANegativeLengthIsRefused)
{
    expectFormRefused(bytes("8553499A 80000000"), Failure::NotABinaryForm,
                      text("offset 0: The binary form has a negative length."));
    expectFormRefused(compressed(bytes("8553499A FFFFFFFF")), Failure::NotABinaryForm,
                      text("offset 0: The binary form has a negative length."));
}

TEST(ExplainedForms, AStreamOnAFileNamesTheFile)
{
    const Folder folder;
    QFile file(folder.write(bytes(sampleForm).left(9)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    QDataStream stream(&file);
    PelLu300RouterInterfaceXml document;
    expectFailure(document, Failure::NotABinaryForm,
                  folder.path() + text(": offset 9: The binary form is cut off."),
                  [&] { return document.SetBinaryRepresentation(stream); });
}

// --- lines and columns ------------------------------------------------------------------------------

namespace {

// A document with a mismatched tag behind two line ends and three columns of text.
QString mismatch(const char* lineEnd)
{
    return text("<PelLu300RouterInterfaceXml>") + text(lineEnd) + text(lineEnd)
           + text("\u00E4\u20AC <x></y>");
}

// A document with a value that the record refuses at that place.
QString refusal(const char* lineEnd)
{
    return text("<PelLu300RouterInterfaceXml>") + text(lineEnd)
           + text("<PelLu300RouterMessage><MessageID>1</MessageID>") + text(lineEnd)
           + text("\u00E4\u20AC <Type>No</Type></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
}

const char* const lineEnds[] = {"\n", "\r", "\r\n"};

void expectPlaces(const std::function<bool(PelLu300RouterInterfaceXml&, const QString&)>& read)
{
    for (const char* const lineEnd : lineEnds) {
        SCOPED_TRACE(QByteArray(lineEnd).toHex().constData());
        PelLu300RouterInterfaceXml document;
        EXPECT_FALSE(read(document, mismatch(lineEnd)));
        EXPECT_EQ(IMKObject::GetLastFailure().kind, Failure::NotWellFormed);
        EXPECT_EQ(IMKObject::GetLastFailure().place.line, 3);
        // Behind the name of the end tag.
        EXPECT_EQ(IMKObject::GetLastFailure().place.column, 10);
        EXPECT_EQ(IMKObject::GetLastFailure().place.path, text(rootPath) + text("/x"));

        document.SetValidate(true);
        EXPECT_THROW(read(document, refusal(lineEnd)), OutOfRangeException);
        EXPECT_EQ(IMKObject::GetLastFailure().place.line, 3);
        EXPECT_EQ(IMKObject::GetLastFailure().place.column, 4);
        EXPECT_EQ(IMKObject::GetLastFailure().place.path, text(messagePath) + text("/Type"));

        document.SetValidate(false);
        ReadingReport report;
        EXPECT_TRUE(read(document, refusal(lineEnd).replace(text("Type>"), text("x>"))));
        ASSERT_EQ(report.GetEntries().size(), 3);
        EXPECT_EQ(report.GetEntries().at(0).kind, ReadingReport::IgnoredText);
        EXPECT_EQ(report.GetEntries().at(0).place.line, 2);
        EXPECT_EQ(report.GetEntries().at(0).place.path, text(messagePath));
        EXPECT_EQ(report.GetEntries().at(1).kind, ReadingReport::UnknownElement);
        EXPECT_EQ(report.GetEntries().at(1).place.line, 3);
        EXPECT_EQ(report.GetEntries().at(1).place.column, 4);
        EXPECT_EQ(report.GetEntries().at(2).kind, ReadingReport::MissingMember);
        EXPECT_EQ(report.GetEntries().at(2).place.line, 2);
        EXPECT_EQ(report.GetEntries().at(2).place.path, text(messagePath));
    }
}

} // namespace

TEST(ExplainedPlaces, OfAStringKnowEveryLineEnd)
{
    expectPlaces([](PelLu300RouterInterfaceXml& document, const QString& xml) {
        return document.SetXmlString(xml, false);
    });
}

TEST(ExplainedPlaces, OfAFileInUtf8KnowEveryLineEnd)
{
    for (const char* const mark : {"", "\xEF\xBB\xBF"}) {
        expectPlaces([mark](PelLu300RouterInterfaceXml& document, const QString& xml) {
            const Folder folder;
            return document.LoadXml(folder.write(mark + xml.toUtf8()));
        });
    }
}

TEST(ExplainedPlaces, OfAFileInUtf16KnowEveryLineEnd)
{
    for (const ByteOrder order : {ByteOrder::Big, ByteOrder::Little}) {
        expectPlaces([order](PelLu300RouterInterfaceXml& document, const QString& xml) {
            const Folder folder;
            return document.LoadXml(folder.write(utf16(xml, order, Mark::With)));
        });
    }
}

TEST(ExplainedPlaces, OfAFileThatDeclaresItsEncodingKnowEveryLineEnd)
{
    for (const char* const encoding : {"ISO-8859-1", "iso-8859-1", "ISO-8859-15", "windows-1252"}) {
        SCOPED_TRACE(encoding);
        expectPlaces([encoding](PelLu300RouterInterfaceXml& document, QString xml) {
            // The declaration becomes the first line. Not all these encodings have the euro sign.
            xml.replace(QChar(0x20AC), QChar(0xFC));
            xml.remove(xml.indexOf(QLatin1Char('>')) + 1, xml.contains(text("\r\n")) ? 2 : 1);
            xml.prepend(text("<?xml version=\"1.0\" encoding=\"%1\"?>\n").arg(text(encoding)));
            const Folder folder;
            return document.LoadXml(folder.write(xml.toLatin1()));
        });
    }
}

TEST(ExplainedPlaces, OfAFileNameTheFile)
{
    const Folder folder;
    const QString path = folder.write(refusal("\r").toUtf8());
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrown<OutOfRangeException>(
        document,
        path + text(":3:4: enum is not valid (classname=PelLu300RouterMessage,membername=m_type) (in ")
            + text(messagePath) + text("/Type)"),
        [&] { document.LoadXml(path); });
}
