// SPDX-License-Identifier: MIT
// The values of members as texts in XML, by kind: how they are written, and how good and bad input is read.

#include "XmlSupport.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

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

TEST(XmlMappingUnsigned, WhiteSpaceIsTreatedAsInTheStringConversion)
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

// Values of every magnitude, many of them exactly or nearly between two hundredths.
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

} // namespace
