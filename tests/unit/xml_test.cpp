// SPDX-License-Identifier: MIT
// The XML form: text forms of all kinds of members, what is written and when, and how input of every
// quality is read.
#include "TestSupport.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace testing_support;

namespace {

// The literal element name of each class.
QString elementName(const OstraInterfacePort&) { return text("OstraInterfacePort"); }
QString elementName(const RouterVtServerPort&) { return text("RouterVtServerPort"); }
QString elementName(const PelVtConnectServer&) { return text("PelVtConnectServer"); }
QString elementName(const MastershipState&) { return text("MastershipState"); }
QString elementName(const AcquireMastership&) { return text("AcquireMastership"); }
QString elementName(const ReleaseMastership&) { return text("ReleaseMastership"); }
QString elementName(const DF_Params&) { return text("DF_Params"); }
QString elementName(const Fragment&) { return text("Fragment"); }
QString elementName(const PelLu300RouterMessage&) { return text("PelLu300RouterMessage"); }
QString elementName(const PelLu300RouterInterfaceXml&) { return text("PelLu300RouterInterfaceXml"); }

// What a record writes while no member is set and validation is off.
template <class R>
QString emptyElement(const R& record)
{
    return QLatin1Char('<') + elementName(record) + QLatin1String("/>");
}
QString emptyElement(const PelLu300RouterMessage&)
{
    return text("<PelLu300RouterMessage><Type></Type></PelLu300RouterMessage>");
}

// Gives a record content, and with it what it needs to be written under validation.
void fill(OstraInterfacePort& record) { record.SetPort(1); }
void fill(RouterVtServerPort& record) { record.SetPort(1); }
void fill(PelVtConnectServer& record) { record.SetPort(1); }
void fill(MastershipState& record) { record.SetState(MastershipState::MasterPresent); }
void fill(AcquireMastership& record) { record.SetSuccess(true); }
void fill(ReleaseMastership& record) { record.SetSuccess(true); }
void fill(DF_Params& record) { record.SetFrequency(1.0); }
void fill(Fragment& record) { record.GetOstraInterfacePort().SetPort(1); }
void fill(PelLu300RouterMessage& record) { record.SetType(PelLu300RouterMessage::Event); }
void fill(PelLu300RouterInterfaceXml& record)
{
    record.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
}

PelLu300RouterMessage messageOfType(PelLu300RouterMessage::Type type)
{
    PelLu300RouterMessage message;
    message.SetType(type);
    return message;
}

// --- text forms: unsigned ---------------------------------------------------------------------

TEST(XmlMappingUnsigned, IsWrittenInPlainDecimalDigits)
{
    const std::vector<std::pair<unsigned int, const char*>> forms{
        {0U, "0"},
        {7U, "7"},
        {5000U, "5000"},
        {2147483647U, "2147483647"},
        {2147483648U, "2147483648"},
        {4294967295U, "4294967295"},
    };
    for (const auto& form : forms) {
        OstraInterfacePort ostra;
        ostra.SetPort(form.first);
        EXPECT_EQ(xmlOf(ostra), text("<OstraInterfacePort><Port>") + text(form.second)
                                    + text("</Port></OstraInterfacePort>"));
        RouterVtServerPort router;
        router.SetPort(form.first);
        EXPECT_EQ(xmlOf(router), text("<RouterVtServerPort><Port>") + text(form.second)
                                     + text("</Port></RouterVtServerPort>"));
        PelVtConnectServer server;
        server.SetPort(form.first);
        EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer><Port>") + text(form.second)
                                     + text("</Port></PelVtConnectServer>"));
        PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
        message.SetMessageID(form.first);
        EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type>Reply</Type><MessageID>")
                                      + text(form.second) + text("</MessageID></PelLu300RouterMessage>"));
    }
}

TEST(XmlMappingUnsigned, IsReadAsASignedDecimalNumberAndAnythingElseIsZero)
{
    const std::vector<std::pair<const char*, unsigned int>> forms{
        {"0", 0U},
        {"5000", 5000U},
        {"007", 7U},
        {"+7", 7U},
        {" 42 ", 42U},
        {"\n\t42\n", 42U},
        {"2147483647", 2147483647U},
        {"2147483648", 0U},
        {"4294967295", 0U},
        {"99999999999999999999", 0U},
        {"-1", 4294967295U},
        {"-2147483648", 2147483648U},
        {"-2147483649", 0U},
        {"", 0U},
        {" ", 0U},
        {"abc", 0U},
        {"12abc", 0U},
        {"4 2", 0U},
        {"1,000", 0U},
        {"1.0", 0U},
        {"1e3", 0U},
        {"0x10", 0U},
        {"--1", 0U},
    };
    for (const auto& form : forms) {
        SCOPED_TRACE(form.first);
        OstraInterfacePort ostra;
        ostra.SetPort(9);
        readXml(ostra,
                text("<OstraInterfacePort><Port>") + text(form.first) + text("</Port></OstraInterfacePort>"));
        EXPECT_EQ(ostra.GetPort(), form.second);
        EXPECT_TRUE(ostra.IsPortSet());
        RouterVtServerPort router;
        router.SetPort(9);
        readXml(router,
                text("<RouterVtServerPort><Port>") + text(form.first) + text("</Port></RouterVtServerPort>"));
        EXPECT_EQ(router.GetPort(), form.second);
        EXPECT_TRUE(router.IsPortSet());
        PelVtConnectServer server;
        server.SetPort(9);
        readXml(server,
                text("<PelVtConnectServer><Port>") + text(form.first) + text("</Port></PelVtConnectServer>"));
        EXPECT_EQ(server.GetPort(), form.second);
        EXPECT_TRUE(server.IsPortSet());
        PelLu300RouterMessage message;
        message.SetMessageID(9);
        readXml(message, text("<PelLu300RouterMessage><MessageID>") + text(form.first)
                             + text("</MessageID></PelLu300RouterMessage>"));
        EXPECT_EQ(message.GetMessageID(), form.second);
        EXPECT_TRUE(message.IsMessageIDSet());
    }
}

TEST(XmlMappingUnsigned, MalformedTextMarksTheMemberSet)
{
    OstraInterfacePort record;
    record.SetValidate(true);
    readXml(record, text("<OstraInterfacePort><Port>abc</Port></OstraInterfacePort>"));
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_EQ(record.GetPort(), 0U);
}

TEST(XmlMappingUnsigned, WhiteSpaceOfAllKindsCountsAsTheStringConversionCountsIt)
{
    for (const ushort space :
         {ushort(0x20), ushort(0x09), ushort(0x0A), ushort(0xA0), ushort(0x2003), ushort(0x3000)}) {
        const QString number = QString(QChar(space)) + text("42") + QString(QChar(space));
        OstraInterfacePort record;
        readXml(record, text("<OstraInterfacePort><Port>") + number + text("</Port></OstraInterfacePort>"));
        EXPECT_EQ(record.GetPort(), static_cast<unsigned int>(number.toInt())) << space;
        DF_Params params;
        readXml(params, text("<DF_Params><Bandwidth>") + number + text("</Bandwidth></DF_Params>"));
        EXPECT_EQ(params.GetBandwidth(), number.toDouble()) << space;
    }
}

// --- text forms: double -----------------------------------------------------------------------

TEST(XmlMappingDouble, IsWrittenWithExactlyTwoDecimals)
{
    const std::vector<std::pair<double, const char*>> forms{
        {0.0, "0.00"},
        {2.5, "2.50"},
        {0.004, "0.00"},
        {0.006, "0.01"},
        {-1.0, "-1.00"},
        {1234567.891, "1234567.89"},
        {1234.5678, "1234.57"},
        {2.004, "2.00"},
        {99.999, "100.00"},
        {433920000.0, "433920000.00"},
        {1e15, "1000000000000000.00"},
        {1e-300, "0.00"},
        {std::numeric_limits<double>::infinity(), "inf"},
        {-std::numeric_limits<double>::infinity(), "-inf"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
    };
    for (const auto& form : forms) {
        DF_Params record;
        record.SetFrequency(form.first);
        EXPECT_EQ(xmlOf(record),
                  text("<DF_Params><Frequency>") + text(form.second) + text("</Frequency></DF_Params>"));
    }
}

TEST(XmlMappingDouble, IsWrittenInEveryMemberAsTheStringPatternFillsIt)
{
    for (const double value :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), 1e300, -1e300, -0.001, 0.005, 0.125, -0.0, 1.0 / 3.0,
          std::numeric_limits<double>::max(), std::numeric_limits<double>::denorm_min()}) {
        const QString filled = text("%1").arg(value, 0, 'f', 2);
        DF_Params record;
        record.SetFrequency(value);
        record.SetDemodulationFrequency(value);
        record.SetBandwidth(value);
        record.SetPanoramaSpan(value);
        EXPECT_EQ(xmlOf(record),
                  text("<DF_Params><Frequency>") + filled + text("</Frequency><DemodulationFrequency>")
                      + filled + text("</DemodulationFrequency><Bandwidth>") + filled
                      + text("</Bandwidth><PanoramaSpan>") + filled + text("</PanoramaSpan></DF_Params>"));
    }
}

TEST(XmlMappingDouble, HasNoExponentHoweverLarge)
{
    DF_Params record;
    record.SetPanoramaSpan(1e300);
    const QString xml = xmlOf(record);
    const QString digits = xml.mid(25, xml.size() - 25 - 27);
    EXPECT_EQ(xml, text("<DF_Params><PanoramaSpan>") + digits + text("</PanoramaSpan></DF_Params>"));
    EXPECT_EQ(digits.size(), 304);
    EXPECT_TRUE(digits.startsWith(QLatin1Char('1')));
    EXPECT_TRUE(digits.endsWith(QLatin1String(".00")));
    EXPECT_FALSE(digits.contains(QLatin1Char('e'), Qt::CaseInsensitive));
}

TEST(XmlMappingDouble, IsReadAsADecimalNumberAndAnythingElseIsZero)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<const char*, double>> forms{
        {"2.50", 2.5},     {"1.23456", 1.23456}, {"-0.25", -0.25},    {".5", 0.5},     {"5.", 5.0},
        {"+2.5", 2.5},     {"1e3", 1000.0},      {"1E-2", 0.01},      {" 2.5 ", 2.5},  {"\n2.5\t", 2.5},
        {"inf", infinity}, {"-inf", -infinity},  {"1e999", infinity}, {"", 0.0},       {" ", 0.0},
        {"abc", 0.0},      {"2.5x", 0.0},        {"2,5", 0.0},        {"2.5 Hz", 0.0}, {"1 000", 0.0},
        {"0x10", 0.0},     {"1.2.3", 0.0},
    };
    for (const auto& form : forms) {
        SCOPED_TRACE(form.first);
        DF_Params record;
        record.SetValidate(true);
        record.SetFrequency(9.0);
        readXml(record,
                text("<DF_Params><Frequency>%1</Frequency><DemodulationFrequency>%1</DemodulationFrequency>"
                     "<Bandwidth>%1</Bandwidth><PanoramaSpan>%1</PanoramaSpan></DF_Params>")
                    .arg(text(form.first)));
        EXPECT_EQ(record.GetFrequency(), form.second);
        EXPECT_EQ(record.GetDemodulationFrequency(), form.second);
        EXPECT_EQ(record.GetBandwidth(), form.second);
        EXPECT_EQ(record.GetPanoramaSpan(), form.second);
        EXPECT_TRUE(record.IsFrequencySet());
        EXPECT_TRUE(record.IsDemodulationFrequencySet());
        EXPECT_TRUE(record.IsBandwidthSet());
        EXPECT_TRUE(record.IsPanoramaSpanSet());
    }
}

// Values of every magnitude, among them many that stand exactly or nearly between two hundredths.
std::vector<double> manyDoubles()
{
    std::mt19937_64 random(20240611);
    std::vector<double> values;
    for (int i = 0; i < 4000; ++i) {
        const std::uint64_t bits = random();
        double anything = 0.0;
        std::memcpy(&anything, &bits, sizeof anything);
        values.push_back(anything);
        const double sign = (bits & 1U) != 0 ? -1.0 : 1.0;
        const double whole = std::ldexp(1.0, static_cast<int>(random() % 55));
        const double eighths = sign * (std::floor(whole) + static_cast<double>(random() % 8) / 8.0);
        const double thousandths = sign * (std::floor(whole) + static_cast<double>(random() % 1000) / 1000.0);
        const double small = sign * static_cast<double>(random() % 1000) / 20000.0;
        for (const double value : {eighths, thousandths, small}) {
            values.push_back(value);
            values.push_back(std::nextafter(value, 1e308));
            values.push_back(std::nextafter(value, -1e308));
        }
    }
    return values;
}

TEST(XmlMappingDouble, OfAnyMagnitudeIsWrittenAsTheStringPatternFillsIt)
{
    for (const double value : manyDoubles()) {
        DF_Params record;
        record.SetBandwidth(value);
        ASSERT_EQ(xmlOf(record), text("<DF_Params><Bandwidth>") + text("%1").arg(value, 0, 'f', 2)
                                     + text("</Bandwidth></DF_Params>"));
    }
}

TEST(XmlMappingDouble, AnyTextIsReadAsTheStringConversionReadsIt)
{
    std::mt19937 random(7);
    const QString alphabet = text("0123456789012345678901234567890123456789..--++eE ,xnafi");
    for (int i = 0; i < 20000; ++i) {
        QString input;
        for (auto length = random() % 14; length > 0; --length)
            input += alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.size()))];
        DF_Params record;
        readXml(record, text("<DF_Params><Bandwidth>") + input + text("</Bandwidth></DF_Params>"));
        const double converted = input.toDouble();
        ASSERT_TRUE(record.GetBandwidth() == converted
                    || (std::isnan(converted) && std::isnan(record.GetBandwidth())))
            << input.toStdString();
        ASSERT_EQ(std::signbit(record.GetBandwidth()), std::signbit(converted)) << input.toStdString();
        OstraInterfacePort port;
        readXml(port, text("<OstraInterfacePort><Port>") + input + text("</Port></OstraInterfacePort>"));
        ASSERT_EQ(port.GetPort(), static_cast<unsigned int>(input.toInt())) << input.toStdString();
    }
}

TEST(XmlMappingUnsigned, OfAnySizeIsWrittenAndReadAsTheStringConversionsDo)
{
    std::mt19937 random(11);
    for (int i = 0; i < 20000; ++i) {
        const unsigned int value = static_cast<unsigned int>(random()) >> (random() % 32);
        OstraInterfacePort source;
        source.SetPort(value);
        const QString xml = xmlOf(source);
        ASSERT_EQ(xml, text("<OstraInterfacePort><Port>") + text("%1").arg(value)
                           + text("</Port></OstraInterfacePort>"));
        OstraInterfacePort target;
        readXml(target, xml);
        ASSERT_EQ(target.GetPort(), value > 2147483647U ? 0U : value);
    }
}

TEST(XmlMappingDouble, ReadsItsOwnNotANumber)
{
    DF_Params record;
    readXml(record, text("<DF_Params><Bandwidth>nan</Bandwidth></DF_Params>"));
    EXPECT_TRUE(std::isnan(record.GetBandwidth()));
    EXPECT_TRUE(record.IsBandwidthSet());
}

TEST(XmlMappingDouble, ComesBackRoundedToHundredths)
{
    DF_Params source;
    source.SetFrequency(1234567.891);
    source.SetBandwidth(0.004);
    DF_Params target;
    readXml(target, xmlOf(source));
    EXPECT_EQ(target.GetFrequency(), 1234567.89);
    EXPECT_EQ(target.GetBandwidth(), 0.0);
    EXPECT_TRUE(target.IsBandwidthSet());
}

// --- text forms: bool -------------------------------------------------------------------------

template <class R>
class XmlMappingBool : public ::testing::Test
{
protected:
    static QString element(const char* success)
    {
        return QLatin1Char('<') + elementName(R()) + text("><Success>") + text(success) + text("</Success></")
               + elementName(R()) + QLatin1Char('>');
    }
};
TYPED_TEST_SUITE(XmlMappingBool, SuccessRecords, RecordName);

TYPED_TEST(XmlMappingBool, IsWrittenAsTrueOrFalse)
{
    TypeParam record;
    record.SetSuccess(true);
    EXPECT_EQ(xmlOf(record), this->element("true"));
    record.SetSuccess(false);
    EXPECT_EQ(xmlOf(record), this->element("false"));
}

TYPED_TEST(XmlMappingBool, IsFalseOnlyForFalseAndZeroWhateverTheCase)
{
    const std::vector<std::pair<const char*, bool>> forms{
        {"false", false}, {"FALSE", false}, {"False", false}, {"fAlSe", false}, {"0", false},
        {"true", true},   {"TRUE", true},   {"True", true},   {"1", true},      {"no", true},
        {"yes", true},    {"x", true},      {"00", true},     {"0.0", true},    {"-0", true},
        {" ", true},      {" false", true}, {"false ", true}, {"\n0\n", true},
    };
    for (const bool validate : {false, true})
        for (const auto& form : forms) {
            TypeParam record;
            record.SetValidate(validate);
            record.SetSuccess(!form.second);
            readXml(record, this->element(form.first));
            EXPECT_EQ(record.GetSuccess(), form.second) << form.first;
            EXPECT_TRUE(record.IsSuccessSet());
        }
}

TYPED_TEST(XmlMappingBool, EmptyTextIsFalseWithoutValidation)
{
    for (const char* nothing : {"", "<!-- none -->", "<x>true</x>", "<![CDATA[]]>"}) {
        TypeParam record;
        record.SetDefaultSuccess(true);
        readXml(record, this->element(nothing));
        EXPECT_FALSE(record.GetSuccess()) << nothing;
        EXPECT_TRUE(record.IsSuccessSet()) << nothing;
    }
}

TYPED_TEST(XmlMappingBool, EmptyTextIsAnErrorUnderValidationAndLeavesTheMemberAsItWas)
{
    for (const char* nothing : {"", "<!-- none -->", "<x>true</x>"}) {
        TypeParam record;
        record.SetValidate(true);
        record.SetDefaultSuccess(true);
        const QString message = text("Please set a value or a default for the boolean 'Success' in '")
                                + elementName(record) + text("'.");
        expectThrow<InvalidXmlException>([&] { readXml(record, this->element(nothing)); }, message);
        EXPECT_FALSE(record.IsSuccessSet());
        record.SetSuccess(true);
        expectThrow<InvalidXmlException>([&] { readXml(record, this->element(nothing)); }, message);
        EXPECT_TRUE(record.IsSuccessSet());
        EXPECT_TRUE(record.GetSuccess());
    }
}

TYPED_TEST(XmlMappingBool, TheErrorComesAfterTheElementHasBeenConsumed)
{
    TypeParam record;
    record.SetValidate(true);
    QXmlStreamReader reader(this->element(""));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_THROW(record.ProcessXml(reader), InvalidXmlException);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Success"));
}

// --- text forms: string -----------------------------------------------------------------------

TEST(XmlMappingString, IsWrittenAsItStandsAndEscapedByTheWriter)
{
    PelVtConnectServer record;
    record.SetAddress(text("  <a> & \"b\" 'c'\tüßΩ中\xF0\x9F\x98\x80\n "));
    EXPECT_EQ(xmlOf(record), text("<PelVtConnectServer><Address>  &lt;a&gt; &amp; &quot;b&quot; 'c'\tüßΩ中"
                                  "\xF0\x9F\x98\x80\n </Address></PelVtConnectServer>"));
    MastershipState state;
    state.SetMasterClientID(text("a<b"));
    EXPECT_EQ(xmlOf(state),
              text("<MastershipState><MasterClientID>a&lt;b</MasterClientID></MastershipState>"));
}

TEST(XmlMappingString, IsReadAsItStands)
{
    const std::vector<std::pair<const char*, const char*>> forms{
        {"router.example", "router.example"},
        {"  a  b  ", "  a  b  "},
        {"\n\ta\n", "\n\ta\n"},
        {" ", " "},
        {"a\r\nb", "a\nb"},
        {"&lt;a&gt; &amp; &quot;b&quot; &apos;c&apos;", "<a> & \"b\" 'c'"},
        {"&#65;&#x263A;", "A\xE2\x98\xBA"},
        {"<![CDATA[<a> & ]]>", "<a> & "},
        {"x<![CDATA[]]>y<![CDATA[z]]>", "xyz"},
        {"a<!-- comment -->b", "ab"},
        {"a<?target data?>b", "ab"},
        {"Zürich \xF0\x9F\x98\x80", "Zürich \xF0\x9F\x98\x80"},
        {"a<b>c</b>d", "ad"},
        {"a<Address>c</Address>d", "ad"},
    };
    for (const auto& form : forms) {
        PelVtConnectServer server;
        readXml(server, text("<PelVtConnectServer><Address>") + text(form.first)
                            + text("</Address></PelVtConnectServer>"));
        EXPECT_EQ(server.GetAddress(), text(form.second)) << form.first;
        EXPECT_TRUE(server.IsAddressSet());
        MastershipState state;
        readXml(state, text("<MastershipState><MasterClientID>") + text(form.first)
                           + text("</MasterClientID></MastershipState>"));
        EXPECT_EQ(state.GetMasterClientID(), text(form.second)) << form.first;
        EXPECT_TRUE(state.IsMasterClientIDSet());
    }
}

TEST(XmlMappingString, EntitiesDeclaredByTheDocumentAreReplaced)
{
    PelVtConnectServer record;
    readXml(
        record,
        text("<!DOCTYPE PelVtConnectServer [<!ENTITY host \"router7\"><!ENTITY port \"5000\">]>"
             "<PelVtConnectServer><Address>a-&host;-b</Address><Port>&port;</Port></PelVtConnectServer>"));
    EXPECT_EQ(record.GetAddress(), text("a-router7-b"));
    EXPECT_EQ(record.GetPort(), 5000U);
}

TEST(XmlMappingString, EmptyTextIsEmptyButNotNull)
{
    for (const bool validate : {false, true})
        for (const char* element : {"<Address/>", "<Address></Address>", "<Address><!-- none --></Address>",
                                    "<Address><x>a</x></Address>"}) {
            PelVtConnectServer server;
            server.SetValidate(validate);
            readXml(server, text("<PelVtConnectServer>") + text(element) + text("</PelVtConnectServer>"));
            EXPECT_TRUE(server.IsAddressSet()) << element;
            EXPECT_FALSE(server.GetAddress().isNull()) << element;
            EXPECT_TRUE(server.GetAddress().isEmpty()) << element;
        }
    MastershipState state;
    state.SetValidate(true);
    readXml(state, text("<MastershipState><MasterClientID/></MastershipState>"));
    EXPECT_TRUE(state.IsMasterClientIDSet());
    EXPECT_FALSE(state.GetMasterClientID().isNull());
    EXPECT_TRUE(state.GetMasterClientID().isEmpty());
}

TEST(XmlMappingString, EmptyAndNullTextsAreWrittenAsAnElementWithoutText)
{
    PelVtConnectServer record;
    record.SetAddress(empty());
    EXPECT_EQ(xmlOf(record), text("<PelVtConnectServer><Address></Address></PelVtConnectServer>"));
    record.SetAddress(QString());
    EXPECT_EQ(xmlOf(record), text("<PelVtConnectServer><Address></Address></PelVtConnectServer>"));
    record.ResetAddress();
    EXPECT_EQ(xmlOf(record), text("<PelVtConnectServer/>"));
}

TEST(XmlMappingString, AnUnsetStringWithADefaultIsNotWritten)
{
    MastershipState record;
    record.SetDefaultMasterClientID(text("x"));
    record.Reset();
    EXPECT_EQ(xmlOf(record), text("<MastershipState/>"));
}

// --- text forms: enumerated -------------------------------------------------------------------

TEST(XmlMappingEnumerated, IsWrittenByName)
{
    EXPECT_EQ(xmlOf(messageOfType(PelLu300RouterMessage::Request)),
              text("<PelLu300RouterMessage><Type>Request</Type></PelLu300RouterMessage>"));
    EXPECT_EQ(xmlOf(messageOfType(PelLu300RouterMessage::Reply)),
              text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
    EXPECT_EQ(xmlOf(messageOfType(PelLu300RouterMessage::Event)),
              text("<PelLu300RouterMessage><Type>Event</Type></PelLu300RouterMessage>"));
    MastershipState state;
    state.SetState(MastershipState::NoMasterPresent);
    EXPECT_EQ(xmlOf(state), text("<MastershipState><State>NoMasterPresent</State></MastershipState>"));
    state.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(state), text("<MastershipState><State>MasterPresent</State></MastershipState>"));
    state.SetState(MastershipState::RouterIsMaster);
    EXPECT_EQ(xmlOf(state), text("<MastershipState><State>RouterIsMaster</State></MastershipState>"));
}

TEST(XmlMappingEnumerated, AValueWithoutANameIsWrittenAsAnElementWithoutText)
{
    MastershipState state;
    for (const int value : {-1, 3, 1000}) {
        state.SetState(static_cast<MastershipState::State>(value));
        EXPECT_EQ(xmlOf(state), text("<MastershipState><State></State></MastershipState>"));
        EXPECT_EQ(xmlOf(messageOfType(static_cast<PelLu300RouterMessage::Type>(value))),
                  text("<PelLu300RouterMessage><Type></Type></PelLu300RouterMessage>"));
    }
}

TEST(XmlMappingEnumerated, IsReadByItsExactName)
{
    for (const bool validate : {false, true}) {
        PelLu300RouterMessage message;
        message.SetValidate(validate);
        readXml(message, text("<PelLu300RouterMessage><Type>Request</Type></PelLu300RouterMessage>"));
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Request);
        EXPECT_TRUE(message.IsTypeSet());
        readXml(message, text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
        readXml(message, text("<PelLu300RouterMessage><Type>Event</Type></PelLu300RouterMessage>"));
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
        MastershipState state;
        state.SetValidate(validate);
        readXml(state, text("<MastershipState><State>NoMasterPresent</State></MastershipState>"));
        EXPECT_EQ(state.GetState(), MastershipState::NoMasterPresent);
        EXPECT_TRUE(state.IsStateSet());
        readXml(state, text("<MastershipState><State>MasterPresent</State></MastershipState>"));
        EXPECT_EQ(state.GetState(), MastershipState::MasterPresent);
        readXml(state, text("<MastershipState><State>RouterIsMaster</State></MastershipState>"));
        EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);
    }
}

TEST(XmlMappingEnumerated, AnUnknownNameStoresTheInvalidValueWithoutValidation)
{
    for (const char* name :
         {"request", "REQUEST", " Request", "Request ", "Requests", "0", "1", "", "-1", "x"}) {
        PelLu300RouterMessage message;
        message.SetType(PelLu300RouterMessage::Event);
        readXml(message,
                text("<PelLu300RouterMessage><Type>") + text(name) + text("</Type></PelLu300RouterMessage>"));
        EXPECT_EQ(static_cast<int>(message.GetType()), -1) << name;
        EXPECT_TRUE(message.IsTypeSet());
    }
    for (const char* name : {"masterpresent", " MasterPresent", "Request", "", "2"}) {
        MastershipState state;
        state.SetState(MastershipState::RouterIsMaster);
        readXml(state, text("<MastershipState><State>") + text(name) + text("</State></MastershipState>"));
        EXPECT_EQ(static_cast<int>(state.GetState()), -1) << name;
        EXPECT_TRUE(state.IsStateSet());
    }
}

TEST(XmlMappingEnumerated, AnUnknownNameStoresTheInvalidValueThatTheRecordWasGiven)
{
    PelLu300RouterMessage message;
    message.SetInvalidType(PelLu300RouterMessage::Reply);
    message.SetValidate(true);
    readXml(message, text("<PelLu300RouterMessage><Type>Unknown</Type></PelLu300RouterMessage>"));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
    EXPECT_TRUE(message.IsTypeSet());
    MastershipState state;
    state.SetInvalidState(static_cast<MastershipState::State>(77));
    readXml(state, text("<MastershipState><State>Unknown</State></MastershipState>"));
    EXPECT_EQ(static_cast<int>(state.GetState()), 77);
}

TEST(XmlMappingEnumerated, AnUnknownNameIsRefusedUnderValidationAndLeavesTheMemberAsItWas)
{
    for (const char* name : {"request", "", "3"}) {
        PelLu300RouterMessage message;
        message.SetValidate(true);
        const QString xml =
            text("<PelLu300RouterMessage><Type>") + text(name) + text("</Type></PelLu300RouterMessage>");
        const QString messageText =
            text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
        expectThrow<OutOfRangeException>([&] { readXml(message, xml); }, messageText);
        EXPECT_FALSE(message.IsTypeSet());
        message.SetType(PelLu300RouterMessage::Event);
        expectThrow<OutOfRangeException>([&] { readXml(message, xml); }, messageText);
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    }
    MastershipState state;
    state.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readXml(state, text("<MastershipState><State>Absent</State></MastershipState>")); },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
    EXPECT_FALSE(state.IsStateSet());
}

// --- writing ----------------------------------------------------------------------------------

template <class R>
class XmlMappingOfEveryRecord : public ::testing::Test
{
};
TYPED_TEST_SUITE(XmlMappingOfEveryRecord, AllRecords, RecordName);

TYPED_TEST(XmlMappingOfEveryRecord, TheElementIsNamedAfterTheRecord)
{
    TypeParam record;
    EXPECT_EQ(record.GetObjectName(), elementName(record));
    EXPECT_EQ(xmlOf(record), emptyElement(record));
}

TYPED_TEST(XmlMappingOfEveryRecord, WritingGivesTheRecordItsData)
{
    TypeParam record;
    xmlOf(record);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
}

TYPED_TEST(XmlMappingOfEveryRecord, IsWrittenAtTheWritersPositionWithoutStartingOrEndingADocument)
{
    TypeParam record;
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(text("outer"));
    record.GetXml(writer);
    record.GetXml(writer);
    writer.writeTextElement(text("after"), text("x"));
    writer.writeEndElement();
    EXPECT_EQ(xml, text("<outer>") + emptyElement(record) + emptyElement(record)
                       + text("<after>x</after></outer>"));
}

TYPED_TEST(XmlMappingOfEveryRecord, ARenamedRecordWritesItsNewName)
{
    struct Renamed : TypeParam
    {
        Renamed() { this->SetObjectName(text("Other")); }
    };
    Renamed record;
    QString expected = emptyElement(static_cast<const TypeParam&>(record));
    expected.replace(elementName(static_cast<const TypeParam&>(record)), text("Other"));
    EXPECT_EQ(xmlOf(record), expected);
}

TYPED_TEST(XmlMappingOfEveryRecord, WithoutItsDataNothingIsWrittenUnderValidation)
{
    struct WithoutData : TypeParam
    {
        bool HasData() const override { return false; }
    };
    WithoutData record;
    fill(record);
    record.SetValidate(true);
    EXPECT_EQ(xmlOf(record), QString());
    record.SetValidate(false);
    EXPECT_NE(xmlOf(record), QString());
}

TYPED_TEST(XmlMappingOfEveryRecord, IsCheckedBeforeAnythingIsWritten)
{
    struct Checked : TypeParam
    {
        using TypeParam::Check;
        void Check(bool flag) const override
        {
            ++checks;
            EXPECT_FALSE(flag);
            EXPECT_EQ(*output, text("<outer>"));
            TypeParam::Check(flag);
        }
        const QString* output = nullptr;
        mutable int checks = 0;
    };
    Checked record;
    fill(record);
    record.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(text("outer"));
    writer.writeCharacters(QString());
    record.output = &xml;
    record.GetXml(writer);
    EXPECT_GE(record.checks, 1);
    EXPECT_GT(xml.size(), 7);
}

TYPED_TEST(XmlMappingOfEveryRecord, AFailingCheckLetsNothingBeWritten)
{
    struct Refused : TypeParam
    {
        using TypeParam::Check;
        void Check(bool) const override { throw OutOfRangeException(text("refused")); }
    };
    Refused record;
    fill(record);
    QString xml;
    QXmlStreamWriter writer(&xml);
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { record.GetXml(writer); }, text("refused"));
    EXPECT_EQ(xml, QString());
    record.SetValidate(false);
    EXPECT_NO_THROW(record.GetXml(writer));
    EXPECT_NE(xml, QString());
}

TEST(XmlMappingWriting, MembersStandInDeclarationOrderWhateverTheOrderOfSetting)
{
    PelVtConnectServer server;
    server.SetPort(5000);
    server.SetAddress(text("10.0.0.7"));
    EXPECT_EQ(xmlOf(server),
              text("<PelVtConnectServer><Address>10.0.0.7</Address><Port>5000</Port></PelVtConnectServer>"));
    MastershipState state;
    state.SetMasterClientID(text("c"));
    state.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(state),
              text("<MastershipState><State>MasterPresent</State><MasterClientID>c</MasterClientID>"
                   "</MastershipState>"));
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(1));
    message.SetMessageID(7);
    message.SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(
        xmlOf(message),
        text("<PelLu300RouterMessage><Type>Event</Type><MessageID>7</MessageID><Fragment><OstraInterfacePort>"
             "<Port>1</Port></OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, OnlyMembersThatAreSetAreWritten)
{
    for (int members = 0; members < 16; ++members) {
        DF_Params record;
        record.SetDefaultFrequency(8.0);
        record.Reset();
        QString expected = members == 0 ? text("<DF_Params/>") : text("<DF_Params>");
        if (members & 8)
            record.SetPanoramaSpan(4.0);
        if (members & 4)
            record.SetBandwidth(3.0);
        if (members & 2)
            record.SetDemodulationFrequency(2.0);
        if (members & 1)
            record.SetFrequency(1.0);
        if (members & 1)
            expected += text("<Frequency>1.00</Frequency>");
        if (members & 2)
            expected += text("<DemodulationFrequency>2.00</DemodulationFrequency>");
        if (members & 4)
            expected += text("<Bandwidth>3.00</Bandwidth>");
        if (members & 8)
            expected += text("<PanoramaSpan>4.00</PanoramaSpan>");
        if (members != 0)
            expected += text("</DF_Params>");
        EXPECT_EQ(xmlOf(record), expected);
    }
}

TEST(XmlMappingWriting, AMemberThatWasResetIsLeftOut)
{
    PelVtConnectServer server;
    server.SetAddress(text("a"));
    server.SetPort(1);
    server.ResetPort();
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer><Address>a</Address></PelVtConnectServer>"));
    server.ResetAddress();
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer/>"));
    MastershipState state;
    state.SetState(MastershipState::MasterPresent);
    state.ResetState();
    EXPECT_EQ(xmlOf(state), text("<MastershipState/>"));
    AcquireMastership acquire;
    acquire.SetSuccess(true);
    acquire.ResetSuccess();
    EXPECT_EQ(xmlOf(acquire), text("<AcquireMastership/>"));
}

TEST(XmlMappingWriting, TheTypeOfAMessageIsWrittenEvenWhenItIsNotSet)
{
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type></Type><MessageID>7</MessageID></PelLu300RouterMessage>"));
    message.SetDefaultType(PelLu300RouterMessage::Reply);
    message.Reset();
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, EachPayloadIsWrittenInsideItsFragment)
{
    Fragment fragment;
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.GetMastershipState().SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><MastershipState><State>MasterPresent</State></MastershipState>"
                   "</Fragment>"));
    fragment.GetAcquireMastership().SetSuccess(true);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><AcquireMastership><Success>true</Success></AcquireMastership>"
                                    "</Fragment>"));
    fragment.GetReleaseMastership().SetSuccess(false);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><ReleaseMastership><Success>false</Success></ReleaseMastership>"
                   "</Fragment>"));
    fragment.GetOstraInterfacePort().SetPort(1);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"));
    fragment.GetPelVtConnectServer().SetAddress(text("a"));
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><PelVtConnectServer><Address>a</Address></PelVtConnectServer>"
                                    "</Fragment>"));
    fragment.GetRouterVtServerPort().SetPort(2);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><RouterVtServerPort><Port>2</Port></RouterVtServerPort></Fragment>"));
    fragment.GetDF_Params();
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><DF_Params/></Fragment>"));
}

TEST(XmlMappingWriting, AFragmentWithoutChoiceOrWithItsPayloadResetWritesNoPayload)
{
    Fragment fragment = withPort(1);
    fragment.ResetOstraInterfacePort();
    ASSERT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.SetValidate(false);
    fragment = withPort(1);
    fragment.ResetChoiceFragment();
    ASSERT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
}

TEST(XmlMappingWriting, AListStandsWithoutWrapperInItsOrder)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    for (const unsigned int port : {3U, 1U, 2U})
        message.AppendFragment(withPort(port));
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>"
                   "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
                   "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                   "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
                   "</PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, AListGoesByItsItemsAndNotByItsFlag)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    QVector<Fragment>& list = message.GetFragment();
    ASSERT_TRUE(message.IsFragmentSet());
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
    message.ResetFragment();
    list.append(withPort(4));
    ASSERT_FALSE(message.IsFragmentSet());
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Reply</Type><Fragment><OstraInterfacePort><Port>4</Port>"
                   "</OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, TheMessageOfADocumentIsWrittenOnlyWhileItIsSet)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(1);
    EXPECT_EQ(
        xmlOf(document),
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><MessageID>1</MessageID>"
             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
    document.ResetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
}

TEST(XmlMappingWriting, LeavesTheRecordAsItWas)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    message.AppendFragment(withPort(4));
    const PelLu300RouterMessage before(message);
    EXPECT_EQ(xmlOf(message), xmlOf(message));
    EXPECT_TRUE(message == before);
    EXPECT_FALSE(message.IsMessageIDSet());
}

// --- writing under validation -----------------------------------------------------------------

TEST(XmlMappingValidation, RecordsThatAlwaysHoldTheirDataAreWrittenEvenWhenEmpty)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
    DF_Params params;
    params.SetValidate(true);
    EXPECT_EQ(xmlOf(params), text("<DF_Params/>"));
    MastershipState state;
    state.SetValidate(true);
    EXPECT_EQ(xmlOf(state), text("<MastershipState/>"));
    PelVtConnectServer server;
    server.SetValidate(true);
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer/>"));
}

TEST(XmlMappingValidation, AFragmentWithoutChoiceVanishes)
{
    Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(fragment), QString());
    fragment.GetDF_Params();
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><DF_Params/></Fragment>"));
}

TEST(XmlMappingValidation, AListItemWithoutDataVanishesFromItsMessage)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Event);
    message.AppendFragment(Fragment());
    message.AppendFragment(withPort(1));
    message.AppendFragment(Fragment());
    message.SetValidate(true);
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Event</Type><Fragment><OstraInterfacePort><Port>1"
                   "</Port></OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
    EXPECT_EQ(message.GetFragment().size(), 3);
}

TEST(XmlMappingValidation, AMessageWithoutTypeThrowsAndNothingIsWritten)
{
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    message.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { message.GetXml(writer); },
                                     text("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(xml, QString());
}

TEST(XmlMappingValidation, ADocumentIsCheckedAsAWholeBeforeItIsWritten)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetMessageID(7);
    document.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { document.GetXml(writer); },
                                     text("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(xml, QString());
}

TEST(XmlMappingValidation, AFailingPayloadLeavesTheElementsAroundItOpen)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.AppendFragment(withPort(1));
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    message.AppendFragment(fragment);
    message.AppendFragment(withPort(2));
    document.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { document.GetXml(writer); },
                                     text("MastershipState: Please set State properly."));
    EXPECT_TRUE(
        xml.startsWith(text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment>"
                            "<OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment")));
    // Three elements are open: the document's, the message's and the second fragment's.
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeTextElement(text("behind"), text("x"));
    EXPECT_EQ(xml, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment>"
                        "<OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment/>"
                        "</PelLu300RouterMessage></PelLu300RouterInterfaceXml><behind>x</behind>"));
}

TEST(XmlMappingValidation, ThePayloadThatFailsHasWrittenNothingItself)
{
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString());
    fragment.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { fragment.GetXml(writer); },
                                     text("PelVtConnectServer: Please set Address properly."));
    writer.writeEndElement();
    EXPECT_EQ(xml, text("<Fragment/>"));
}

TEST(XmlMappingValidation, WithoutItInvalidContentIsWrittenUnchecked)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    fragment.GetMastershipState().SetMasterClientID(QString());
    message.AppendFragment(fragment);
    message.AppendFragment(Fragment());
    EXPECT_EQ(xmlOf(document),
              text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type></"
                   "Type><Fragment><MastershipState><State>"
                   "</State><MasterClientID></MasterClientID></MastershipState></Fragment><Fragment/>"
                   "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
}

// --- reading ----------------------------------------------------------------------------------

TYPED_TEST(XmlMappingOfEveryRecord, AnEmptyElementSetsNothing)
{
    TypeParam record;
    readXml(record, QLatin1Char('<') + elementName(record) + text("/>"));
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record == TypeParam());
}

TYPED_TEST(XmlMappingOfEveryRecord, AttributesAreAcceptedAndNotKept)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    QString withAttributes = xml;
    withAttributes.replace(0, elementName(source).size() + 1,
                           QLatin1Char('<') + elementName(source)
                               + text(" version=\"1.0\" Port=\"9\" Type=\"Reply\""));
    ASSERT_NE(withAttributes, xml);
    TypeParam target;
    readXml(target, withAttributes);
    EXPECT_TRUE(target == source);
    EXPECT_EQ(xmlOf(target), xml);
}

TYPED_TEST(XmlMappingOfEveryRecord, UnknownElementsAreSkippedWithAllTheyContain)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    const QString unknown =
        text("<Unknown a=\"b\">text<Type>Reply</Type><Port>9</Port><Fragment><OstraInterfacePort/></Fragment>"
             "<Success>x</Success><State>MasterPresent</State><!-- c --><?p i?><![CDATA[<Port>]]></Unknown>");
    const auto behindStart = elementName(source).size() + 2;
    QString first = xml;
    first.insert(behindStart, unknown);
    QString last = xml;
    last.insert(xml.size() - elementName(source).size() - 3, unknown);
    for (const bool validate : {false, true})
        for (const QString& input : {first, last}) {
            TypeParam target;
            target.SetValidate(validate);
            readXml(target, input);
            EXPECT_TRUE(target == source);
            EXPECT_EQ(xmlOf(target), xml);
        }
}

TYPED_TEST(XmlMappingOfEveryRecord, TextBetweenTheChildElementsIsIgnored)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.insert(elementName(source).size() + 2, text("\n  7 <!-- 8 --><![CDATA[9]]><?p i?>\n  "));
    TypeParam target;
    readXml(target, xml);
    EXPECT_TRUE(target == source);
}

TYPED_TEST(XmlMappingOfEveryRecord, TheReaderIsLeftOnTheEndOfTheRecordsElement)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    QXmlStreamReader reader(text("<list>") + xml + xml + text("<after/></list>"));
    ASSERT_TRUE(reader.readNextStartElement());
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(reader.readNextStartElement());
        TypeParam target;
        target.ProcessXml(reader);
        EXPECT_TRUE(target == source);
        EXPECT_TRUE(reader.isEndElement());
        EXPECT_EQ(reader.name().toString(), elementName(source));
    }
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_EQ(reader.name().toString(), text("after"));
}

TYPED_TEST(XmlMappingOfEveryRecord, TheNameOfTheElementItselfIsNotAsked)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.replace(elementName(source), text("Anything"));
    if (xml.contains(text("<Anything>"))) {
        TypeParam target;
        readXml(target, xml);
        EXPECT_TRUE(target == source);
    } else {
        ADD_FAILURE() << "the record wrote no element of its name";
    }
}

TYPED_TEST(XmlMappingOfEveryRecord, AnElementNestedInOneOfItsOwnNameIsUnknown)
{
    TypeParam source;
    fill(source);
    const QString xml = xmlOf(source);
    const QString inner = QLatin1Char('<') + elementName(source) + text("><Port>9</Port></")
                          + elementName(source) + QLatin1Char('>');
    QString nested = xml;
    nested.insert(elementName(source).size() + 2, inner);
    TypeParam target;
    readXml(target, nested);
    EXPECT_TRUE(target == source);
}

TEST(XmlMappingReading, ChildElementsMayComeInAnyOrder)
{
    DF_Params params;
    readXml(params,
            text("<DF_Params><PanoramaSpan>4</PanoramaSpan><Frequency>1</Frequency><Bandwidth>3</Bandwidth>"
                 "<DemodulationFrequency>2</DemodulationFrequency></DF_Params>"));
    EXPECT_EQ(xmlOf(params),
              text("<DF_Params><Frequency>1.00</Frequency><DemodulationFrequency>2.00</DemodulationFrequency>"
                   "<Bandwidth>3.00</Bandwidth><PanoramaSpan>4.00</PanoramaSpan></DF_Params>"));
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort>"
                 "</Fragment><MessageID>7</MessageID><Fragment><OstraInterfacePort><Port>2</Port>"
                 "</OstraInterfacePort></Fragment><Type>Event</Type></PelLu300RouterMessage>"));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 7U);
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1, 2}));
}

TEST(XmlMappingReading, MembersWithoutAnElementKeepValueAndFlag)
{
    PelVtConnectServer server;
    server.SetAddress(text("a"));
    readXml(server, text("<PelVtConnectServer><Port>5</Port></PelVtConnectServer>"));
    EXPECT_EQ(server.GetAddress(), text("a"));
    EXPECT_TRUE(server.IsAddressSet());
    EXPECT_EQ(server.GetPort(), 5U);
    MastershipState state;
    readXml(state, text("<MastershipState><MasterClientID>c</MasterClientID></MastershipState>"));
    EXPECT_FALSE(state.IsStateSet());
}

TEST(XmlMappingReading, TheLastOfSeveralElementsOfAMemberCounts)
{
    OstraInterfacePort record;
    readXml(record,
            text("<OstraInterfacePort><Port>1</Port><Port>2</Port><Port>3</Port></OstraInterfacePort>"));
    EXPECT_EQ(record.GetPort(), 3U);
}

TEST(XmlMappingReading, NamesAreComparedExactlyAndCaseCounts)
{
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><type>Event</type><TYPE>Event</TYPE><messageID>1</messageID>"
                 "<MessageId>1</MessageId><fragment><OstraInterfacePort/></fragment><Types>Event</Types>"
                 "<Typ>Event</Typ></PelLu300RouterMessage>"));
    EXPECT_FALSE(message.AnyData());
    EXPECT_FALSE(message.IsFragmentSet());
    OstraInterfacePort port;
    readXml(port, text("<OstraInterfacePort><port>1</port><PORT>1</PORT></OstraInterfacePort>"));
    EXPECT_FALSE(port.IsPortSet());
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><ostraInterfacePort/><Ostra/><m_ostraInterfacePort/><DFParams/></Fragment>"));
    EXPECT_FALSE(fragment.AnyData());
    PelLu300RouterInterfaceXml document;
    readXml(document, text("<PelLu300RouterInterfaceXml><Message><Type>Event</Type></Message>"
                           "<pelLu300RouterMessage><Type>Event</Type></pelLu300RouterMessage>"
                           "</PelLu300RouterInterfaceXml>"));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
}

TEST(XmlMappingReading, MembersOfOtherRecordsAreUnknown)
{
    AcquireMastership record;
    readXml(record,
            text("<AcquireMastership><Port>1</Port><State>MasterPresent</State><ReleaseMastership><Success>1"
                 "</Success></ReleaseMastership></AcquireMastership>"));
    EXPECT_FALSE(record.AnyData());
}

TEST(XmlMappingReading, AnUnknownElementIsLeftEarlyOnANestedOneOfTheSameName)
{
    PelVtConnectServer record;
    readXml(record, text("<PelVtConnectServer><X><Address>skipped</Address><X><Port>5</Port></X>"
                         "<Address>read</Address></X></PelVtConnectServer>"));
    EXPECT_EQ(record.GetPort(), 5U);
    EXPECT_EQ(record.GetAddress(), text("read"));
    PelVtConnectServer skipping;
    readXml(skipping, text("<PelVtConnectServer><X><Y><Port>5</Port></Y><Address>skipped</Address></X>"
                           "</PelVtConnectServer>"));
    EXPECT_FALSE(skipping.AnyData());
}

TEST(XmlMappingReading, AfterAnEarlyStopTheRecordIsReadToItsOwnEnd)
{
    QXmlStreamReader reader(
        text("<PelLu300RouterMessage><X>a<X><X/></X>b</X><MessageID>7</MessageID>"
             "<Fragment><X><X><OstraInterfacePort><Port>1</Port></OstraInterfacePort></X></X>"
             "</Fragment><Type>Event</Type></PelLu300RouterMessage>"));
    ASSERT_TRUE(reader.readNextStartElement());
    PelLu300RouterMessage message;
    message.ProcessXml(reader);
    EXPECT_EQ(message.GetMessageID(), 7U);
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1}));
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("PelLu300RouterMessage"));
    reader.readNext();
    EXPECT_TRUE(reader.isEndDocument());
    EXPECT_FALSE(reader.hasError());
}

// --- nested records and lists -----------------------------------------------------------------

TEST(XmlMappingNested, EachPayloadElementSelectsAndFillsItsPayload)
{
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><MastershipState><State>MasterPresent</State><MasterClientID>c</MasterClientID>"
                 "</MastershipState></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::MastershipState);
    EXPECT_TRUE(fragment.IsMastershipStateSet());
    EXPECT_EQ(std::as_const(fragment).GetMastershipState().GetState(), MastershipState::MasterPresent);
    readXml(fragment,
            text("<Fragment><AcquireMastership><Success>1</Success></AcquireMastership></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_TRUE(fragment.IsAcquireMastershipSet());
    EXPECT_TRUE(std::as_const(fragment).GetAcquireMastership().GetSuccess());
    readXml(fragment,
            text("<Fragment><ReleaseMastership><Success>1</Success></ReleaseMastership></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::ReleaseMastership);
    EXPECT_TRUE(fragment.IsReleaseMastershipSet());
    EXPECT_TRUE(std::as_const(fragment).GetReleaseMastership().GetSuccess());
    readXml(fragment, text("<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(std::as_const(fragment).GetOstraInterfacePort().GetPort(), 1U);
    readXml(fragment, text("<Fragment><PelVtConnectServer><Port>2</Port></PelVtConnectServer></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::PelVtConnectServer);
    EXPECT_TRUE(fragment.IsPelVtConnectServerSet());
    EXPECT_EQ(std::as_const(fragment).GetPelVtConnectServer().GetPort(), 2U);
    readXml(fragment, text("<Fragment><RouterVtServerPort><Port>3</Port></RouterVtServerPort></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::RouterVtServerPort);
    EXPECT_TRUE(fragment.IsRouterVtServerPortSet());
    EXPECT_EQ(std::as_const(fragment).GetRouterVtServerPort().GetPort(), 3U);
    readXml(fragment, text("<Fragment><DF_Params><Bandwidth>4</Bandwidth></DF_Params></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(fragment.IsDF_ParamsSet());
    EXPECT_EQ(std::as_const(fragment).GetDF_Params().GetBandwidth(), 4.0);
    // The choice moves; what was read before stays set.
    EXPECT_TRUE(fragment.IsMastershipStateSet());
    EXPECT_TRUE(fragment.IsRouterVtServerPortSet());
}

TEST(XmlMappingNested, OfSeveralPayloadsInAFragmentTheLastIsChosenAndTheOthersStaySet)
{
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort><DF_Params><Bandwidth>2"
                 "</Bandwidth></DF_Params></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><DF_Params><Bandwidth>2.00</Bandwidth></DF_Params></Fragment>"));
}

TEST(XmlMappingNested, AnElementMetASecondTimeIsReadIntoTheSameRecord)
{
    Fragment fragment;
    readXml(fragment,
            text("<Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port></PelVtConnectServer>"
                 "<DF_Params/><PelVtConnectServer><Port>2</Port></PelVtConnectServer></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::PelVtConnectServer);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><PelVtConnectServer><Address>a</Address><Port>2</Port>"
                                    "</PelVtConnectServer></Fragment>"));
}

TEST(XmlMappingNested, ASecondMessageElementOverwritesMembersAndAppendsFragments)
{
    PelLu300RouterInterfaceXml document;
    readXml(
        document,
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Request</Type><MessageID>7</MessageID>"
             "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment></"
             "PelLu300RouterMessage>"
             "<PelLu300RouterMessage><Type>Event</Type><Fragment><OstraInterfacePort><Port>2</Port>"
             "</OstraInterfacePort></Fragment></PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(
        xmlOf(document),
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><MessageID>7</MessageID>"
             "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
             "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
}

TEST(XmlMappingNested, AnEmptyMessageElementSetsTheMessage)
{
    PelLu300RouterInterfaceXml document;
    readXml(document,
            text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage/></PelLu300RouterInterfaceXml>"));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(document.AnyData());
}

TEST(XmlMappingNested, ListItemsAreReadInDocumentOrderBehindThoseThatAreThere)
{
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(9));
    readXml(message, text("<PelLu300RouterMessage>"
                          "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
                          "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                          "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
                          "</PelLu300RouterMessage>"));
    EXPECT_TRUE(message.IsFragmentSet());
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{9, 3, 1, 2}));
}

TEST(XmlMappingNested, AListItemKeepsNothingOfTheItemReadBefore)
{
    PelLu300RouterMessage message;
    readXml(message,
            text("<PelLu300RouterMessage><Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port>"
                 "</PelVtConnectServer></Fragment><Fragment><PelVtConnectServer><Port>2</Port>"
                 "</PelVtConnectServer></Fragment><Fragment/></PelLu300RouterMessage>"));
    ASSERT_EQ(message.GetFragment().size(), 3);
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type></"
                                   "Type><Fragment><PelVtConnectServer><Address>a</Address><Port>1</Port>"
                                   "</PelVtConnectServer></Fragment><Fragment><PelVtConnectServer><Port>2</"
                                   "Port></PelVtConnectServer>"
                                   "</Fragment><Fragment/></PelLu300RouterMessage>"));
}

TEST(XmlMappingNested, ADefaultItemPlaysNoPartInReading)
{
    PelLu300RouterMessage message;
    message.SetDefaultFragment(withPort(9));
    readXml(message, text("<PelLu300RouterMessage><Fragment/></PelLu300RouterMessage>"));
    ASSERT_EQ(message.GetFragment().size(), 1);
    EXPECT_FALSE(message.GetFragment()[0].AnyData());
}

TEST(XmlMappingNested, AnItemWithoutUsablePayloadIsRefusedUnderValidation)
{
    for (const char* item : {"<Fragment/>", "<Fragment>text</Fragment>", "<Fragment><Unknown/></Fragment>",
                             "<Fragment><dF_Params/></Fragment>"}) {
        PelLu300RouterMessage message;
        message.SetValidate(true);
        expectThrow<IncompleteDefinitionException>(
            [&] {
                readXml(message,
                        text("<PelLu300RouterMessage><Type>Event</Type><Fragment><DF_Params/></Fragment>")
                            + text(item) + text("<Fragment><DF_Params/></Fragment></PelLu300RouterMessage>"));
            },
            text("PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
        EXPECT_EQ(message.GetFragment().size(), 1) << item;
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    }
}

TEST(XmlMappingNested, AFailedPayloadMovesTheChoiceButIsNotFlagged)
{
    Fragment fragment = withPort(1);
    fragment.SetValidate(true);
    EXPECT_THROW(
        readXml(fragment, text("<Fragment><AcquireMastership><Success/></AcquireMastership></Fragment>")),
        InvalidXmlException);
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_FALSE(fragment.IsAcquireMastershipSet());
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
}

TEST(XmlMappingNested, AFailedMessageIsNotFlaggedAndKeepsWhatWasReadBefore)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><MessageID>7</MessageID>"
                         "<Fragment><DF_Params/></Fragment><Type>Unknown</Type></PelLu300RouterMessage>"
                         "</PelLu300RouterInterfaceXml>"));
        },
        text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(std::as_const(document).GetPelLu300RouterMessage().GetMessageID(), 7U);
    EXPECT_EQ(std::as_const(document).GetPelLu300RouterMessage().GetFragment().size(), 1);
}

TEST(XmlMappingNested, FailuresOfPayloadsPassThroughTheWholeDocument)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Reply</Type><Fragment>"
                         "<ReleaseMastership><Success></Success></ReleaseMastership></Fragment>"
                         "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
        },
        text("Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'."));
    EXPECT_TRUE(std::as_const(document).GetPelLu300RouterMessage().GetFragment().isEmpty());
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(document,
                    text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Fragment><MastershipState>"
                         "<State>Absent</State></MastershipState></Fragment></PelLu300RouterMessage>"
                         "</PelLu300RouterInterfaceXml>"));
        },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
}

TEST(XmlMappingNested, ReadingRunsNoCheck)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    EXPECT_NO_THROW(
        readXml(document, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><MessageID>7"
                               "</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>")));
    EXPECT_THROW(document.Check(), OutOfRangeException);
}

// --- the reader's state -----------------------------------------------------------------------

TYPED_TEST(XmlMappingOfEveryRecord, AReaderThatHasNotBegunIsLeftAsItIs)
{
    TypeParam source;
    fill(source);
    QXmlStreamReader reader(xmlOf(source));
    TypeParam target;
    target.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::NoToken);
    EXPECT_FALSE(target.AnyData());
    ASSERT_TRUE(reader.readNextStartElement());
    target.ProcessXml(reader);
    EXPECT_TRUE(target == source);
}

TYPED_TEST(XmlMappingOfEveryRecord, AReaderOnAnyOtherTokenIsLeftAsItIs)
{
    TypeParam source;
    fill(source);
    QXmlStreamReader reader(text("<list>text<!-- c --><?p i?>") + xmlOf(source) + text("</list>"));
    QXmlStreamReader::TokenType tokens[] = {QXmlStreamReader::StartDocument, QXmlStreamReader::StartElement,
                                            QXmlStreamReader::Characters, QXmlStreamReader::Comment,
                                            QXmlStreamReader::ProcessingInstruction};
    for (const auto token : tokens) {
        ASSERT_EQ(reader.readNext(), token);
        if (token == QXmlStreamReader::StartElement)
            continue;
        TypeParam target;
        target.ProcessXml(reader);
        EXPECT_EQ(reader.tokenType(), token);
        EXPECT_FALSE(target.AnyData());
    }
    ASSERT_TRUE(reader.readNextStartElement());
    TypeParam target;
    target.ProcessXml(reader);
    EXPECT_TRUE(target == source);
    ASSERT_TRUE(reader.isEndElement());
    TypeParam onEnd;
    onEnd.ProcessXml(reader);
    EXPECT_EQ(reader.tokenType(), QXmlStreamReader::EndElement);
    EXPECT_FALSE(onEnd.AnyData());
}

TYPED_TEST(XmlMappingOfEveryRecord, AReaderAtItsEndIsLeftAsItIs)
{
    for (const char* input : {"", "no XML", "<a/>", "<a"}) {
        QXmlStreamReader reader(text(input));
        while (!reader.atEnd())
            reader.readNext();
        TypeParam record;
        record.ProcessXml(reader);
        EXPECT_TRUE(reader.atEnd()) << input;
        EXPECT_FALSE(record.AnyData()) << input;
    }
}

TEST(XmlMappingReaderState, EveryBeginningOfADocumentIsReadToItsEndAndKeepsWhatWasComplete)
{
    const QString whole =
        text("<PelLu300RouterInterfaceXml version=\"1\"><Unknown><PelLu300RouterMessage/></Unknown>"
             "<PelLu300RouterMessage><MessageID>7</MessageID><Fragment><OstraInterfacePort><Port>1</Port>"
             "</OstraInterfacePort></Fragment><Fragment><X><X/></"
             "X><PelVtConnectServer><Address>a&amp;<![CDATA[b]]>"
             "</Address></PelVtConnectServer></Fragment><Type>Event</Type></PelLu300RouterMessage>"
             "</PelLu300RouterInterfaceXml>");
    const auto behindFirstItem = whole.indexOf(text("<Fragment><X>"));
    for (auto size = text("<PelLu300RouterInterfaceXml version=\"1\">").size(); size < whole.size(); ++size) {
        QXmlStreamReader reader(whole.left(size));
        ASSERT_TRUE(reader.readNextStartElement());
        PelLu300RouterInterfaceXml document;
        document.ProcessXml(reader);
        EXPECT_TRUE(reader.atEnd()) << size;
        EXPECT_EQ(reader.error(), QXmlStreamReader::PrematureEndOfDocumentError) << size;
        const PelLu300RouterMessage& message = std::as_const(document).GetPelLu300RouterMessage();
        if (size >= behindFirstItem) {
            EXPECT_EQ(message.GetMessageID(), 7U) << size;
            EXPECT_GE(message.GetFragment().size(), 1) << size;
            EXPECT_EQ(message.GetFragment()[0].GetOstraInterfacePort().GetPort(), 1U) << size;
        }
        EXPECT_LE(message.GetFragment().size(), 2) << size;
    }
}

TEST(XmlMappingReaderState, InputThatIsNotWellFormedEndsTheReadingWithTheErrorInTheReader)
{
    for (const char* input : {"<PelVtConnectServer><Port>5</Port></Wrong>",
                              "<PelVtConnectServer><Port>5</Port><X></Y></PelVtConnectServer>",
                              "<PelVtConnectServer><Port>5</Port>&undeclared;</PelVtConnectServer>",
                              "<PelVtConnectServer><Port>5</Port><Address>a</Adress></PelVtConnectServer>"}) {
        QXmlStreamReader reader(text(input));
        ASSERT_TRUE(reader.readNextStartElement());
        PelVtConnectServer record;
        record.SetValidate(true);
        EXPECT_NO_THROW(record.ProcessXml(reader)) << input;
        EXPECT_TRUE(reader.hasError()) << input;
        EXPECT_TRUE(reader.atEnd()) << input;
        EXPECT_EQ(record.GetPort(), 5U) << input;
    }
}

TEST(XmlMappingReaderState, ADeeplyNestedUnknownElementIsSkipped)
{
    QString open;
    QString close;
    for (int level = 0; level < 500; ++level) {
        const QString name = text("X%1").arg(level);
        open += QLatin1Char('<') + name + QLatin1Char('>');
        close.prepend(text("</") + name + QLatin1Char('>'));
    }
    OstraInterfacePort record;
    readXml(record, text("<OstraInterfacePort>") + open + text("<Port>1</Port>") + close
                        + text("<Port>2</Port></OstraInterfacePort>"));
    EXPECT_EQ(record.GetPort(), 2U);
    OstraInterfacePort unset;
    readXml(unset, text("<OstraInterfacePort>") + open + text("<Port>1</Port>") + close
                       + text("</OstraInterfacePort>"));
    EXPECT_FALSE(unset.IsPortSet());
}

// --- derived classes --------------------------------------------------------------------------

// Notes the child elements for which the walk calls it, and reads one of its own.
template <class R>
class Extended : public R
{
public:
    QStringList visited;
    QString note;

protected:
    void ProcessXmlStartElement(QXmlStreamReader& reader) override
    {
        EXPECT_TRUE(reader.isStartElement());
        visited.append(reader.name().toString());
        if (visited.last() == text("Note"))
            note = this->GetTextValue(reader);
        else
            R::ProcessXmlStartElement(reader);
    }
};

TYPED_TEST(XmlMappingOfEveryRecord, TheWalkCallsTheReadingOperationOfADerivedClassOncePerChildElement)
{
    TypeParam source;
    fill(source);
    QString xml = xmlOf(source);
    xml.insert(elementName(source).size() + 2,
               text("<Unknown><Note>skipped</Note></Unknown><Note>a<b>c</b>d</Note>"));
    xml.insert(xml.size() - elementName(source).size() - 3, text("<Last/>"));
    Extended<TypeParam> target;
    readXml(target, xml);
    EXPECT_EQ(target.note, text("ad"));
    ASSERT_EQ(target.visited.size(), 4);
    EXPECT_EQ(target.visited[0], text("Unknown"));
    EXPECT_EQ(target.visited[1], text("Note"));
    EXPECT_EQ(target.visited[3], text("Last"));
    EXPECT_TRUE(static_cast<const TypeParam&>(target) == source);
}

TEST(XmlMappingDerived, TheWalkVisitsEveryFragmentOfAMessage)
{
    Extended<PelLu300RouterMessage> message;
    readXml(message,
            text("<PelLu300RouterMessage><Type>Event</Type><Fragment><DF_Params/></Fragment><Fragment/>"
                 "<MessageID>7</MessageID></PelLu300RouterMessage>"));
    EXPECT_EQ(message.visited,
              (QStringList{text("Type"), text("Fragment"), text("Fragment"), text("MessageID")}));
    EXPECT_EQ(message.GetFragment().size(), 2);
}

// Makes the reading operation callable for a single child element.
template <class R>
struct ChildReader : R
{
    using R::ProcessXmlStartElement;
};

TYPED_TEST(XmlMappingOfEveryRecord, ASingleUnknownChildElementIsConsumedToItsEnd)
{
    QXmlStreamReader reader(text("<outer><Unknown><a>1</a></Unknown><after/></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<TypeParam> record;
    record.ProcessXmlStartElement(reader);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Unknown"));
}

TEST(XmlMappingDerived, ASingleKnownChildElementIsConsumedToItsEnd)
{
    QXmlStreamReader reader(text("<outer><Port>7</Port><Fragment><DF_Params/></Fragment></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<OstraInterfacePort> port;
    port.ProcessXmlStartElement(reader);
    EXPECT_EQ(port.GetPort(), 7U);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Port"));
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<PelLu300RouterMessage> message;
    message.ProcessXmlStartElement(reader);
    EXPECT_EQ(message.GetFragment().size(), 1);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), text("Fragment"));
}

TEST(XmlMappingDerived, AnUnknownChildElementIsLeftOnANestedStartOfTheSameName)
{
    QXmlStreamReader reader(text("<outer><X><a/><X></X></X></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    ChildReader<OstraInterfacePort> record;
    record.ProcessXmlStartElement(reader);
    EXPECT_TRUE(reader.isStartElement());
    EXPECT_EQ(reader.name().toString(), text("X"));
}

// --- both ways --------------------------------------------------------------------------------

TEST(XmlMappingRoundTrip, AWholeDocumentComesBackEqual)
{
    PelLu300RouterInterfaceXml source;
    source.SetValidate(true);
    PelLu300RouterMessage& message = source.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(2147483647);
    Fragment fragment;
    fragment.GetMastershipState().SetState(MastershipState::RouterIsMaster);
    fragment.GetMastershipState().SetMasterClientID(text("Zürich <7>"));
    message.AppendFragment(fragment);
    fragment.GetDF_Params().SetFrequency(433.92);
    message.AppendFragment(fragment);
    fragment.GetPelVtConnectServer().SetAddress(empty());
    message.AppendFragment(fragment);
    PelLu300RouterInterfaceXml target;
    target.SetValidate(true);
    readXml(target, xmlOf(source));
    EXPECT_TRUE(target == source);
    EXPECT_EQ(xmlOf(target), xmlOf(source));
}

} // namespace
