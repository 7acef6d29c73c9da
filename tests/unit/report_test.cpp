// SPDX-License-Identifier: MIT
// The entries of a reading report, kind by kind: kind, sentence and place.

#include "BinarySupport.h"
#include "ReportSupport.h"

#include "modelkit/ReadingReport.h"

#include <cmath>
#include <limits>

using namespace binary_support;
using MODELKIT::IMKObject;
using MODELKIT::ReadingReport;

namespace {

// The entries that reading the text into the record makes, with validation off.
template <class R>
QStringList saidOf(const QString& xml, R&& record)
{
    const ReadingReport report;
    record.SetValidate(false);
    EXPECT_TRUE(record.SetXmlString(xml, false));
    return lines(report);
}

template <class R>
QStringList saidOf(const char* xml)
{
    return saidOf(QString::fromUtf8(xml), R());
}

// The same for the content of a frame, big-endian.
template <class R>
QStringList saidOf(const QByteArray& content, R&& record)
{
    const ReadingReport report;
    record.SetValidate(false);
    QByteArray form = word(static_cast<std::uint32_t>(std::decay_t<R>::GetId())) + frame(content);
    EXPECT_TRUE(record.SetBinaryRepresentation(form));
    return lines(report);
}

template <class R>
QStringList saidOf(const QByteArray& content)
{
    return saidOf(content, R());
}

QStringList only(const char* line) { return {QString::fromUtf8(line)}; }

QString frequencyXml(const char* text)
{
    return QStringLiteral("<DF_Params><Frequency>%1</Frequency></DF_Params>").arg(QLatin1String(text));
}

} // namespace

TEST(Report, HasKindsWithFixedNumbers)
{
    EXPECT_EQ(ReadingReport::UnknownElement, 0);
    EXPECT_EQ(ReadingReport::UnknownTag, 1);
    EXPECT_EQ(ReadingReport::RepeatedMember, 2);
    EXPECT_EQ(ReadingReport::Attribute, 3);
    EXPECT_EQ(ReadingReport::NotANumber, 4);
    EXPECT_EQ(ReadingReport::WrappedNumber, 5);
    EXPECT_EQ(ReadingReport::LostDecimals, 6);
    EXPECT_EQ(ReadingReport::UnusualBoolean, 7);
    EXPECT_EQ(ReadingReport::BytesBehind, 8);
    EXPECT_EQ(ReadingReport::ReplacedPayload, 9);
    EXPECT_EQ(ReadingReport::IgnoredText, 10);
    EXPECT_EQ(ReadingReport::ElementInText, 11);
    EXPECT_EQ(ReadingReport::ReplacedCharacters, 12);
    EXPECT_EQ(ReadingReport::NotFinite, 13);
    EXPECT_EQ(ReadingReport::UnknownName, 14);
    EXPECT_EQ(ReadingReport::MissingMember, 15);
    EXPECT_EQ(ReadingReport::MissingPayload, 16);
    EXPECT_EQ(ReadingReport::Prefix, 17);
    EXPECT_EQ(ReadingReport::WrongLength, 18);
}

// --- payloads -------------------------------------------------------------------------------------

TEST(Report, TellsOfAReplacedPayload)
{
    EXPECT_EQ(saidOf<Fragment>("<Fragment>\n<OstraInterfacePort/>\n<DF_Params/>\n</Fragment>"),
              only("9 3:1 OstraInterfacePort came before and is replaced. /Fragment/DF_Params"));
    EXPECT_EQ(saidOf<Fragment>(entry(ostraInterfacePortTag, portEntry(5)) + entry(dfParamsTag, QByteArray())),
              only("9 offset 32 OstraInterfacePort came before and is replaced. /Fragment/DF_Params"));
}

TEST(Report, TellsOfAPayloadThatComesBack)
{
    EXPECT_EQ(
        saidOf<Fragment>("<Fragment>\n<DF_Params/>\n<OstraInterfacePort/>\n<DF_Params/></Fragment>"),
        QStringList(
            {QStringLiteral("9 3:1 DF_Params came before and is replaced. /Fragment/OstraInterfacePort"),
             QStringLiteral("2 4:1 DF_Params came before; the last one counts. /Fragment/DF_Params[2]"),
             QStringLiteral(
                 "9 4:1 OstraInterfacePort came before and is replaced. /Fragment/DF_Params[2]")}));
    EXPECT_EQ(saidOf<Fragment>("<Fragment>\n<DF_Params/>\n<DF_Params/></Fragment>"),
              only("2 3:1 DF_Params came before; the last one counts. /Fragment/DF_Params[2]"));
}

TEST(Report, TellsOfAMissingPayload)
{
    EXPECT_EQ(saidOf<PelLu300RouterMessage>("<PelLu300RouterMessage><Type>Event</Type>\n"
                                            "<Fragment><DF_Params/></Fragment>\n"
                                            "<Fragment></Fragment></PelLu300RouterMessage>"),
              only("16 3:1 Fragment has no payload and is not written under validation. "
                   "/PelLu300RouterMessage/Fragment[2]"));
    EXPECT_EQ(saidOf<PelLu300RouterMessage>(entry(typeTag, textPayload("Event"))
                                            + entry(fragmentTag, list(1, frame(QByteArray())))),
              only("16 offset 41 Fragment has no payload and is not written under validation. "
                   "/PelLu300RouterMessage/Fragment"));
    EXPECT_EQ(saidOf<Fragment>("<Fragment/>"),
              only("16 1:1 Fragment has no payload and is not written under validation. /Fragment"));
}

// --- members --------------------------------------------------------------------------------------

TEST(Report, TellsOfAMissingMandatoryMember)
{
    EXPECT_EQ(saidOf<PelLu300RouterInterfaceXml>("<PelLu300RouterInterfaceXml>\n"
                                                 "<PelLu300RouterMessage>\n<MessageID>1</MessageID>\n"
                                                 "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"),
              only("15 2:1 Type is missing and is written all the same. "
                   "/PelLu300RouterInterfaceXml/PelLu300RouterMessage"));
    EXPECT_EQ(saidOf<PelLu300RouterInterfaceXml>(entry(messageTag, entry(messageIdTag, word(0) + word(1)))),
              only("15 offset 16 Type is missing and is written all the same. "
                   "/PelLu300RouterInterfaceXml/PelLu300RouterMessage"));
    EXPECT_EQ(saidOf<PelLu300RouterInterfaceXml>("<PelLu300RouterInterfaceXml/>"), QStringList());
}

TEST(Report, ReportsNothingMissingInADocumentThatIsCutOff)
{
    const ReadingReport report;
    PelLu300RouterMessage message;
    EXPECT_FALSE(message.SetXmlString(QStringLiteral("<PelLu300RouterMessage><Fragment>"), false));
    EXPECT_EQ(lines(report), QStringList());
}

TEST(Report, TellsOfAnUnknownNameThatIsStoredAsTheInvalidValue)
{
    EXPECT_EQ(saidOf<MastershipState>("<MastershipState>\n<State>masterPresent</State></MastershipState>"),
              only("14 2:1 \"masterPresent\" is not a value of State; it was read as the invalid value. "
                   "/MastershipState/State"));
    EXPECT_EQ(saidOf<MastershipState>(entry(stateTag, textPayload("Pause"))),
              only("14 offset 8 \"Pause\" is not a value of State; it was read as the invalid value. "
                   "/MastershipState/State"));
}

TEST(Report, HoldsTheTextOfTheMember)
{
    const auto valuesIn = [](const QByteArray& xml) {
        testing_support::PelLu300RouterMessage message;
        const ReadingReport report;
        message.SetXmlBytes(xml);
        QStringList values;
        for (const auto& entry : report.GetEntries())
            values += entry.value.isNull() ? QStringLiteral("null") : entry.value;
        return values;
    };
    EXPECT_EQ(valuesIn("<PelLu300RouterMessage><Type>Replay</Type><MessageID unit='x'>many</MessageID>"
                       "<Priority>1</Priority></PelLu300RouterMessage>"),
              (QStringList{QStringLiteral("Replay"), QStringLiteral("null"), QStringLiteral("many"),
                           QStringLiteral("null")}));
    const QByteArray longType(1000, 'T');
    EXPECT_EQ(valuesIn("<PelLu300RouterMessage><Type>" + longType + "</Type></PelLu300RouterMessage>"),
              QStringList(QString::fromLatin1(longType.left(ReadingReport::maximalValueCharacters))));
}

TEST(Report, KnowsThatAnEmptyNameIsTheInvalidValue)
{
    EXPECT_EQ(saidOf<MastershipState>("<MastershipState><State/></MastershipState>"), QStringList());
    EXPECT_EQ(saidOf<MastershipState>(entry(stateTag, bytes("FFFFFFFF"))), QStringList());
    // But if the invalid value is an enumerator, the record writes its name instead.
    MastershipState state;
    state.SetInvalidState(MastershipState::MasterPresent);
    EXPECT_EQ(saidOf(QStringLiteral("<MastershipState><State/></MastershipState>"), state),
              only("14 1:18 \"\" is not a value of State; it was read as the invalid value. "
                   "/MastershipState/State"));
}

TEST(Report, LeavesAnUnknownNameToTheSetterThatRefusesIt)
{
    const ReadingReport report;
    MastershipState state;
    state.SetValidate(true);
    const QString xml = QStringLiteral("<MastershipState><State>Pause</State></MastershipState>");
    EXPECT_THROW(state.SetXmlString(xml, false), OutOfRangeException);
    EXPECT_EQ(lines(report), QStringList());
    // If the invalid value is an enumerator, the setter does not refuse it.
    state.SetInvalidState(MastershipState::MasterPresent);
    EXPECT_TRUE(state.SetXmlString(xml, false));
    EXPECT_EQ(lines(report),
              only("14 1:18 \"Pause\" is not a value of State; it was read as the invalid value. "
                   "/MastershipState/State"));
}

// --- markup ---------------------------------------------------------------------------------------

TEST(Report, TellsOfTextBetweenElements)
{
    EXPECT_EQ(
        saidOf<DF_Params>("<DF_Params>\n 1 <Frequency>2</Frequency>\n<![CDATA[<x>]]>\n</DF_Params>"),
        QStringList({QStringLiteral("10 1:1 The text \"1\" between elements was ignored. /DF_Params"),
                     QStringLiteral("10 1:1 The text \"<x>\" between elements was ignored. /DF_Params")}));
    EXPECT_EQ(saidOf<DF_Params>("<DF_Params> <!-- 1 --><?p 1?>&#10;<![CDATA[ ]]></DF_Params>"),
              QStringList());
}

TEST(Report, TellsOfElementsInsideATextOnce)
{
    EXPECT_EQ(saidOf<PelVtConnectServer>("<PelVtConnectServer><Address>a\n<b c='1'><d/></b>z</Address>"
                                         "</PelVtConnectServer>"),
              only("11 2:1 The element b inside a text was skipped. /PelVtConnectServer/Address/b"));
}

TEST(Report, TellsOfPrefixes)
{
    EXPECT_EQ(
        saidOf<PelLu300RouterMessage>("<p:PelLu300RouterMessage><q:Type>Event</q:Type>\n"
                                      "<r:Fragment><DF_Params/></r:Fragment></p:PelLu300RouterMessage>"),
        QStringList({QStringLiteral("17 1:1 The prefix p of PelLu300RouterMessage was left out. "
                                    "/PelLu300RouterMessage"),
                     QStringLiteral("17 1:26 The prefix q of Type was left out. "
                                    "/PelLu300RouterMessage/Type"),
                     QStringLiteral("17 2:1 The prefix r of Fragment was left out. "
                                    "/PelLu300RouterMessage/Fragment")}));
}

namespace {

// The elements of a derived class are read one by one through the virtual operation.
class OwnPorts : public PelVtConnectServer
{
};

} // namespace

TEST(Report, TellsAsMuchOfADerivedClass)
{
    EXPECT_EQ(saidOf<OwnPorts>(
                  "<p:PelVtConnectServer a='1'>x<Port>1</Port>\n<Port>2</Port></p:PelVtConnectServer>"),
              QStringList(
                  {QStringLiteral("17 1:1 The prefix p of PelVtConnectServer was left out. "
                                  "/PelVtConnectServer"),
                   QStringLiteral("3 1:1 The attribute a was ignored. /PelVtConnectServer"),
                   QStringLiteral("10 1:1 The text \"x\" between elements was ignored. /PelVtConnectServer"),
                   QStringLiteral("2 2:1 Port came before; the last one counts. "
                                  "/PelVtConnectServer/Port[2]")}));
}

// --- texts ----------------------------------------------------------------------------------------

TEST(Report, TellsOfBytesThatAreNoUtf8)
{
    const QStringList said = only("12 offset 8 In \"a\uFFFD\", bytes that are not valid UTF-8 were replaced. "
                                  "/PelVtConnectServer/Address");
    EXPECT_EQ(saidOf<PelVtConnectServer>(entry(addressTag, textPayload("a\xFF"))), said);
    for (const char* hex : {"C3", "80", "C0AF", "E08080", "EDA080", "EDB080", "EDA081EDB080", "F4908080"}) {
        PelVtConnectServer record;
        const QStringList lines = saidOf(entry(addressTag, textPayload(bytes(hex))), record);
        ASSERT_EQ(lines.size(), 1) << hex;
        EXPECT_TRUE(lines.first().startsWith(QStringLiteral("12 offset 8 In "))) << hex;
        EXPECT_TRUE(record.GetAddress().contains(QChar(QChar::ReplacementCharacter))) << hex;
    }
}

TEST(Report, KnowsEveryCharacter)
{
    for (const char* hex : {"", "00", "7F", "C280", "EFBFBD", "EFBFBE", "F0908080", "F48FBFBF"})
        EXPECT_EQ(saidOf<PelVtConnectServer>(entry(addressTag, textPayload(bytes(hex)))), QStringList())
            << hex;
    EXPECT_EQ(saidOf<PelVtConnectServer>(entry(addressTag, bytes("FFFFFFFF"))), QStringList());
    EXPECT_EQ(saidOf<PelVtConnectServer>(
                  "<PelVtConnectServer><Address>\u00e4\u65e5\uFFFD</Address></PelVtConnectServer>"),
              QStringList());
}

// In XML, malformed text makes the whole document invalid.
TEST(Report, IsEmptyWhenTheTextOfAnXmlDocumentIsMalformed)
{
    const ReadingReport report;
    PelVtConnectServer record;
    QString lone = QStringLiteral("<PelVtConnectServer a='1'><Address>x</Address></PelVtConnectServer>");
    lone.replace(QLatin1Char('x'), QChar(0xD800));
    EXPECT_FALSE(record.SetXmlString(lone, false));
    for (const char* declaration : {"", "<?xml version='1.0' encoding='US-ASCII'?>"})
        EXPECT_FALSE(
            record.SetXmlBytes(QByteArray(declaration)
                               + "<PelVtConnectServer a='1'><Address>\xE4</Address></PelVtConnectServer>"));
    EXPECT_EQ(lines(report), QStringList());
}

// --- numbers --------------------------------------------------------------------------------------

TEST(Report, TellsOfNumbersThatAreNotFinite)
{
    EXPECT_EQ(saidOf(frequencyXml("nan"), DF_Params()),
              only("13 1:12 \"nan\" is not a finite number; it was read as nan. /DF_Params/Frequency"));
    EXPECT_EQ(saidOf(frequencyXml("-inf"), DF_Params()),
              only("13 1:12 \"-inf\" is not a finite number; it was read as -inf. /DF_Params/Frequency"));
    EXPECT_EQ(saidOf<DF_Params>(entry(frequencyTag, textPayload("inf"))),
              only("13 offset 8 \"inf\" is not a finite number; it was read as inf. /DF_Params/Frequency"));
    EXPECT_EQ(saidOf(frequencyXml("1e400"), DF_Params()),
              only("4 1:12 \"1e400\" is not a number; it was read as inf. /DF_Params/Frequency"));
}

TEST(Report, TellsOfDecimalsThatAreNotWritten)
{
    for (const char* text : {"1.234", "-0.001", "0.004", "1e-5", "0.0150", "99999999999.999"})
        EXPECT_EQ(saidOf(frequencyXml(text), DF_Params()),
                  only("6 1:12 \"%1\" has more than the two decimals that are written. /DF_Params/Frequency")
                      .replaceInStrings(QStringLiteral("%1"), QLatin1String(text)));
}

TEST(Report, TellsOfDigitsThatANumberDoesNotKeep)
{
    const auto expectTaken = [](const char* text, const char* value) {
        EXPECT_EQ(saidOf(frequencyXml(text), DF_Params()),
                  QStringList(QStringLiteral("6 1:12 \"%1\" cannot be kept exactly; it was read as "
                                             "%2. /DF_Params/Frequency")
                                  .arg(QLatin1String(text), QLatin1String(value))));
    };
    expectTaken("98.50000000000000000001", "98.50");
    expectTaken("12345678901234567890", "12345678901234567168.00");
    expectTaken("70368744177664.01", "70368744177664.02");
    expectTaken("1e23", "99999999999999991611392.00");
}

TEST(Report, DoesNotMindTheSpellingOfNumbers)
{
    for (const char* text :
         {"0", "-0", "-0.00", "007", "+2.5", " 7\t", "1e3", "12.5e-1", "1.5000", ".5", "5.", "0e99", "1E+20",
          "12345678901234567168.00", "99999999999999991611392.00", "70368744177664.02"})
        EXPECT_EQ(saidOf(frequencyXml(text), DF_Params()), QStringList()) << text;
    for (const char* text : {"0", "-0", "007", "+7", " 7\n", "2147483647", "0000000000000000001"})
        EXPECT_EQ(saidOf(QStringLiteral("<OstraInterfacePort><Port>%1</Port></OstraInterfacePort>")
                             .arg(QLatin1String(text)),
                         OstraInterfacePort()),
                  QStringList())
            << text;
}

TEST(Report, TellsOfWholeNumbersThatDoNotFit)
{
    const auto said = [](const char* text) {
        return saidOf(QStringLiteral("<OstraInterfacePort><Port>%1</Port></OstraInterfacePort>")
                          .arg(QLatin1String(text)),
                      OstraInterfacePort());
    };
    EXPECT_EQ(said("4294967295"), only("4 1:21 \"4294967295\" is not a whole number up to 2147483647; it was "
                                       "read as 0. /OstraInterfacePort/Port"));
    EXPECT_EQ(said("2147483648"), only("4 1:21 \"2147483648\" is not a whole number up to 2147483647; it was "
                                       "read as 0. /OstraInterfacePort/Port"));
    EXPECT_EQ(said("-2147483648"),
              only("5 1:21 -2147483648 was read as 2147483648. /OstraInterfacePort/Port"));
}

TEST(Report, TellsOfWholeNumbersWhoseLowBitsWereTaken)
{
    const auto said = [](const char* hex) { return saidOf<OstraInterfacePort>(entry(portTag, bytes(hex))); };
    EXPECT_EQ(said("FFFFFFFFFFFFFFFF"),
              only("5 offset 8 -1 was read as 4294967295. /OstraInterfacePort/Port"));
    EXPECT_EQ(said("0000000100000007"),
              only("5 offset 8 4294967303 was read as 7. /OstraInterfacePort/Port"));
    // The binary form can write this number.
    EXPECT_EQ(said("00000000FFFFFFFF"), QStringList());
}

// --- lengths --------------------------------------------------------------------------------------

TEST(Report, TellsOfWrongLengthsThatCancelEachOtherOut)
{
    EXPECT_EQ(saidOf<PelVtConnectServer>(word(addressTag) + word(7) + textPayload("ab") + word(portTag)
                                         + word(7) + word(0) + word(5)),
              QStringList({QStringLiteral("18 offset 8 The entry announces 7 bytes and takes 6. "
                                          "/PelVtConnectServer/Address"),
                           QStringLiteral("18 offset 22 The entry announces 7 bytes and takes 8. "
                                          "/PelVtConnectServer/Port")}));
}

TEST(Report, TellsOfAWrongLengthOfAList)
{
    const QByteArray item = frame(entry(dfParamsTag, QByteArray()));
    EXPECT_EQ(saidOf<PelLu300RouterMessage>(word(fragmentTag) + word(17) + list(1, item) + word(typeTag)
                                            + word(8) + textPayload("Event")),
              QStringList({QStringLiteral("18 offset 8 The entry announces 17 bytes and takes 16. "
                                          "/PelLu300RouterMessage/Fragment"),
                           QStringLiteral("18 offset 32 The entry announces 8 bytes and takes 9. "
                                          "/PelLu300RouterMessage/Type")}));
}
