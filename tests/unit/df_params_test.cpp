// SPDX-License-Identifier: MIT
// DF_Params, the tuning of a direction-finding measurement.

#include "TestSupport.h"

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

const double notANumber = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

// One of the four members: its name and accessors, and the beginning of its entry.
struct Member
{
    const char* name;
    const char* tag;
    double (DF_Params::*get)() const;
    void (DF_Params::*set)(double);
    bool (DF_Params::*isSet)() const;
    void (DF_Params::*reset)();
    const double& (DF_Params::*getDefault)() const;
    void (DF_Params::*setDefault)(const double&);
    bool (DF_Params::*isValid)(const double&) const;
};

// In the order in which they are written.
const Member members[] = {
    {"Frequency", "A97DB5BE", &DF_Params::GetFrequency, &DF_Params::SetFrequency, &DF_Params::IsFrequencySet,
     &DF_Params::ResetFrequency, &DF_Params::GetDefaultFrequency, &DF_Params::SetDefaultFrequency,
     &DF_Params::IsValidFrequency},
    {"DemodulationFrequency", "5255927F", &DF_Params::GetDemodulationFrequency,
     &DF_Params::SetDemodulationFrequency, &DF_Params::IsDemodulationFrequencySet,
     &DF_Params::ResetDemodulationFrequency, &DF_Params::GetDefaultDemodulationFrequency,
     &DF_Params::SetDefaultDemodulationFrequency, &DF_Params::IsValidDemodulationFrequency},
    {"Bandwidth", "104A95AB", &DF_Params::GetBandwidth, &DF_Params::SetBandwidth, &DF_Params::IsBandwidthSet,
     &DF_Params::ResetBandwidth, &DF_Params::GetDefaultBandwidth, &DF_Params::SetDefaultBandwidth,
     &DF_Params::IsValidBandwidth},
    {"PanoramaSpan", "7029D96C", &DF_Params::GetPanoramaSpan, &DF_Params::SetPanoramaSpan,
     &DF_Params::IsPanoramaSpanSet, &DF_Params::ResetPanoramaSpan, &DF_Params::GetDefaultPanoramaSpan,
     &DF_Params::SetDefaultPanoramaSpan, &DF_Params::IsValidPanoramaSpan},
};

// The element of the record with one child element.
QString elementWith(const char* member, const QString& text)
{
    return QStringLiteral("<DF_Params><") + QLatin1String(member) + QStringLiteral(">") + text
           + QStringLiteral("</") + QLatin1String(member) + QStringLiteral("></DF_Params>");
}

// The written text of a value, taken out of the element.
QString writtenText(const Member& member, double value)
{
    DF_Params record;
    (record.*member.set)(value);
    QXmlStreamReader reader(xmlOf(record));
    reader.readNextStartElement();
    reader.readNextStartElement();
    EXPECT_EQ(reader.name().toString(), QLatin1String(member.name));
    return reader.readElementText();
}

TEST(DfParams, NameAndIdAreThoseOfTheClass)
{
    EXPECT_EQ(DF_Params().GetObjectName(), QStringLiteral("DF_Params"));
    EXPECT_EQ(DF_Params::GetId(), -236055652LL);
    EXPECT_EQ(static_cast<unsigned long long>(DF_Params::GetId()), 0xFFFFFFFFF1EE139CULL);
}

TEST(DfParams, ANewRecordIsAllZeroHoldsNoDataAndPassesTheCheck)
{
    DF_Params record;
    EXPECT_FALSE(record.IsInitialized());
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        EXPECT_FALSE((record.*member.isSet)());
        EXPECT_EQ((record.*member.get)(), 0.0);
        EXPECT_FALSE(std::signbit((record.*member.get)()));
        EXPECT_EQ((record.*member.getDefault)(), 0.0);
        EXPECT_FALSE((record.*member.isSet)());
    }
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record.HasData());
    EXPECT_NO_THROW(record.Check());
    record.SetValidate(true);
    EXPECT_NO_THROW(record.Check());
    EXPECT_NO_THROW(record.Check(true));
}

TEST(DfParams, EveryDoubleIsValid)
{
    const DF_Params record;
    for (const Member& member : members)
        for (const double value : {0.0, -0.0, -1.0, 1e300, -1e300, notANumber, infinity, -infinity})
            EXPECT_TRUE((record.*member.isValid)(value)) << member.name << ' ' << value;
}

TEST(DfParams, EveryDoubleIsStoredMarkedAndPassesTheCheckWithAndWithoutValidation)
{
    for (const bool validate : {false, true})
        for (const Member& member : members)
            for (const double value : {0.0, -1.0, 1e300, infinity, -infinity, notANumber}) {
                SCOPED_TRACE(std::string(member.name) + ' ' + std::to_string(value));
                DF_Params record;
                record.SetValidate(validate);
                EXPECT_NO_THROW((record.*member.set)(value));
                EXPECT_TRUE((record.*member.isSet)());
                EXPECT_TRUE(record.AnyData());
                const double stored = (record.*member.get)();
                EXPECT_TRUE(stored == value || (std::isnan(stored) && std::isnan(value)));
                EXPECT_NO_THROW(record.Check());
                EXPECT_NO_THROW(record.Check(true));
            }
}

TEST(DfParams, SettingAMemberMarksThatOneOnly)
{
    for (const Member& member : members) {
        DF_Params record;
        (record.*member.set)(3.0);
        for (const Member& other : members) {
            SCOPED_TRACE(std::string(member.name) + ' ' + other.name);
            EXPECT_EQ((record.*other.isSet)(), &other == &member);
            EXPECT_EQ((record.*other.get)(), &other == &member ? 3.0 : 0.0);
        }
    }
}

TEST(DfParams, ADefaultTakesEffectAtResets)
{
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        DF_Params record;
        (record.*member.setDefault)(5.5);
        EXPECT_EQ((record.*member.get)(), 0.0);
        EXPECT_FALSE((record.*member.isSet)());
        EXPECT_EQ((record.*member.getDefault)(), 5.5);
        (record.*member.reset)();
        EXPECT_EQ((record.*member.get)(), 5.5);
        EXPECT_FALSE((record.*member.isSet)());
        (record.*member.set)(6.5);
        record.Reset();
        EXPECT_EQ((record.*member.get)(), 5.5);
        EXPECT_FALSE((record.*member.isSet)());
        EXPECT_FALSE(record.AnyData());
    }
}

TEST(DfParams, ResetToDefaultSetsExactlyTheMembersWithADefault)
{
    DF_Params record;
    record.SetDefaultBandwidth(5.0);
    record.SetFrequency(7.0);
    record.ResetToDefault();
    EXPECT_EQ(record.GetFrequency(), 0.0);
    EXPECT_FALSE(record.IsFrequencySet());
    EXPECT_EQ(record.GetBandwidth(), 5.0);
    EXPECT_TRUE(record.IsBandwidthSet());
    EXPECT_FALSE(record.IsDemodulationFrequencySet());
    EXPECT_FALSE(record.IsPanoramaSpanSet());
}

TEST(DfParams, AnyDataIsTrueForEachMemberThatIsSet)
{
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        DF_Params record;
        (record.*member.set)(0.0);
        EXPECT_TRUE(record.AnyData());
        (record.*member.reset)();
        EXPECT_FALSE(record.AnyData());
    }
}

TEST(DfParams, EqualityComparesNumbers)
{
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        DF_Params a;
        DF_Params b;
        (a.*member.set)(1.0);
        EXPECT_TRUE(a != b);
        (b.*member.set)(1.004);
        EXPECT_TRUE(a != b);
        (b.*member.set)(1.0);
        EXPECT_TRUE(a == b);
        (a.*member.set)(0.0);
        (b.*member.set)(-0.0);
        EXPECT_TRUE(a == b);
        (a.*member.set)(notANumber);
        (b.*member.set)(notANumber);
        EXPECT_TRUE(a != b);
        EXPECT_FALSE(a == a);
    }
}

// --- XML ----------------------------------------------------------------------------------------

TEST(DfParams, AnUnsetRecordIsAnEmptyElementWithAndWithoutValidation)
{
    const DF_Params record;
    EXPECT_EQ(xmlOf(record), QStringLiteral("<DF_Params/>"));
    record.SetValidate(true);
    EXPECT_EQ(xmlOf(record), QStringLiteral("<DF_Params/>"));
}

TEST(DfParams, ItsMembersAreWrittenInOrderWhicheverIsSetFirst)
{
    DF_Params record;
    record.SetPanoramaSpan(4.0);
    record.SetBandwidth(3.0);
    record.SetDemodulationFrequency(2.0);
    record.SetFrequency(1.0);
    EXPECT_EQ(xmlOf(record), QStringLiteral("<DF_Params><Frequency>1.00</Frequency>"
                                            "<DemodulationFrequency>2.00</DemodulationFrequency>"
                                            "<Bandwidth>3.00</Bandwidth>"
                                            "<PanoramaSpan>4.00</PanoramaSpan></DF_Params>"));
    record.ResetDemodulationFrequency();
    record.ResetFrequency();
    EXPECT_EQ(xmlOf(record), QStringLiteral("<DF_Params><Bandwidth>3.00</Bandwidth>"
                                            "<PanoramaSpan>4.00</PanoramaSpan></DF_Params>"));
}

TEST(DfParams, ValuesAreWrittenInFixedNotationWithTwoDecimals)
{
    const std::pair<double, const char*> texts[] = {{2.5, "2.50"},
                                                    {0.0, "0.00"},
                                                    {0.004, "0.00"},
                                                    {0.006, "0.01"},
                                                    {1234567.891, "1234567.89"},
                                                    {1234.5678, "1234.57"},
                                                    {-1.0, "-1.00"},
                                                    {-2.346, "-2.35"},
                                                    {2.004, "2.00"},
                                                    {99.999, "100.00"},
                                                    {1e15, "1000000000000000.00"},
                                                    {1e22, "10000000000000000000000.00"}};
    for (const Member& member : members)
        for (const auto& [value, text] : texts)
            EXPECT_EQ(writtenText(member, value), QLatin1String(text)) << member.name;
}

TEST(DfParams, AHugeValueIsWrittenInFullWithoutExponent)
{
    DF_Params record;
    record.SetPanoramaSpan(1e300);
    const QString text = writtenText(members[3], 1e300);
    EXPECT_EQ(text.size(), 304);
    EXPECT_TRUE(text.startsWith(QLatin1String("1000000000000000")));
    EXPECT_TRUE(text.endsWith(QLatin1String(".00")));
    EXPECT_FALSE(text.contains(QLatin1Char('e'), Qt::CaseInsensitive));
    EXPECT_EQ(xmlOf(record), elementWith("PanoramaSpan", text));
}

TEST(DfParams, TheTextIsTheOneThatFillingAPatternGives)
{
    for (const double value : {-0.001, -0.0, 0.005, 0.015, 0.125, -0.125, 1e300, -1e300, 1e-300, 4.9e-324,
                               1.7976931348623157e308, infinity, -infinity, notANumber}) {
        const QString expected = QStringLiteral("%1").arg(value, 0, 'f', 2);
        EXPECT_EQ(writtenText(members[0], value), expected);
    }
}

TEST(DfParams, EveryMemberIsReadByItsName)
{
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        DF_Params record;
        record.SetValidate(true);
        readXml(record, elementWith(member.name, QStringLiteral("12.25")));
        for (const Member& other : members) {
            EXPECT_EQ((record.*other.isSet)(), &other == &member);
            EXPECT_EQ((record.*other.get)(), &other == &member ? 12.25 : 0.0);
        }
    }
}

TEST(DfParams, ATextThatIsNoNumberStoresZeroAndMarksTheMember)
{
    for (const bool validate : {false, true})
        for (const Member& member : members)
            for (const char* const text : {"abc", "", "1,5", "1.5 MHz", "0x10"}) {
                SCOPED_TRACE(std::string(member.name) + ' ' + text);
                DF_Params record;
                record.SetValidate(validate);
                (record.*member.set)(9.0);
                readXml(record, elementWith(member.name, QLatin1String(text)));
                EXPECT_EQ((record.*member.get)(), 0.0);
                EXPECT_TRUE((record.*member.isSet)());
            }
}

TEST(DfParams, NumbersAreReadWithAllTheirDigitsAndWithExponents)
{
    const std::pair<const char*, double> texts[] = {{"1234.5678", 1234.5678}, {"-0.5", -0.5},   {"+3", 3.0},
                                                    {"1e3", 1000.0},          {"2.5E-1", 0.25}, {".5", 0.5}};
    for (const auto& [text, value] : texts) {
        SCOPED_TRACE(text);
        DF_Params record;
        readXml(record, elementWith("Bandwidth", QLatin1String(text)));
        EXPECT_EQ(record.GetBandwidth(), value);
    }
}

TEST(DfParams, AValueComesBackFromXmlRoundedToHundredths)
{
    DF_Params record;
    record.SetFrequency(1234567.891);
    record.SetBandwidth(0.004);
    DF_Params back;
    readXml(back, xmlOf(record));
    EXPECT_EQ(back.GetFrequency(), 1234567.89);
    EXPECT_TRUE(back.IsFrequencySet());
    EXPECT_EQ(back.GetBandwidth(), 0.0);
    EXPECT_TRUE(back.IsBandwidthSet());
    EXPECT_FALSE(back.IsPanoramaSpanSet());
}

TEST(DfParams, OtherElementsAreSkippedAndChildrenComeInAnyOrder)
{
    DF_Params record;
    readXml(record,
            QStringLiteral("<DF_Params><PanoramaSpan>4</PanoramaSpan><frequency>9</frequency>"
                           "<Other><Bandwidth>8</Bandwidth></Other><Frequency>1</Frequency></DF_Params>"));
    EXPECT_EQ(record.GetPanoramaSpan(), 4.0);
    EXPECT_EQ(record.GetFrequency(), 1.0);
    EXPECT_FALSE(record.IsBandwidthSet());
    EXPECT_FALSE(record.IsDemodulationFrequencySet());
}

TEST(DfParams, MembersWithoutAnElementKeepTheirValues)
{
    DF_Params record;
    record.SetBandwidth(8.0);
    readXml(record, elementWith("Frequency", QStringLiteral("1")));
    EXPECT_EQ(record.GetBandwidth(), 8.0);
    EXPECT_TRUE(record.IsBandwidthSet());
}

// --- binary form --------------------------------------------------------------------------------

TEST(DfParams, AnUnsetRecordIsAnEmptyFrame) { EXPECT_EQ(frameOf(DF_Params()), bytes("00000000")); }

TEST(DfParams, ADoubleTravelsAsTextWithTwoDecimals)
{
    for (const Member& member : members) {
        SCOPED_TRACE(member.name);
        DF_Params record;
        (record.*member.set)(1234.5678);
        const std::string frame =
            std::string("00000013") + member.tag + "0000000B" + "00000007" + "313233342E3537";
        EXPECT_EQ(frameOf(record), bytes(frame.c_str()));
        DF_Params back;
        readFrame(back, bytes(frame.c_str()));
        EXPECT_EQ((back.*member.get)(), 1234.57);
        EXPECT_TRUE((back.*member.isSet)());
    }
    DF_Params record;
    record.SetFrequency(2.004);
    EXPECT_EQ(frameOf(record), bytes("00000010 A97DB5BE 00000008 00000004 322E3030"));
}

TEST(DfParams, ItsMembersAreFramedInOrder)
{
    DF_Params record;
    record.SetPanoramaSpan(4.0);
    record.SetBandwidth(3.0);
    record.SetDemodulationFrequency(2.0);
    record.SetFrequency(1.0);
    EXPECT_EQ(frameOf(record), bytes("00000040"
                                     "A97DB5BE 00000008 00000004 312E3030"
                                     "5255927F 00000008 00000004 322E3030"
                                     "104A95AB 00000008 00000004 332E3030"
                                     "7029D96C 00000008 00000004 342E3030"));
    record.ResetFrequency();
    record.ResetBandwidth();
    EXPECT_EQ(frameOf(record), bytes("00000020"
                                     "5255927F 00000008 00000004 322E3030"
                                     "7029D96C 00000008 00000004 342E3030"));
}

TEST(DfParams, EntriesAreReadInAnyOrderAndUnknownOnesAreSkipped)
{
    DF_Params record;
    record.SetDemodulationFrequency(9.0);
    readFrame(record, bytes("00000029"
                            "7029D96C 00000008 00000004 342E3030"
                            "01020304 00000001 FF"
                            "A97DB5BE 00000008 00000004 312E3030"));
    EXPECT_EQ(record.GetPanoramaSpan(), 4.0);
    EXPECT_EQ(record.GetFrequency(), 1.0);
    EXPECT_EQ(record.GetDemodulationFrequency(), 9.0);
    EXPECT_FALSE(record.IsBandwidthSet());
}

TEST(DfParams, APayloadThatIsNoNumberReadsAsZeroAndMarksTheMember)
{
    // "abc", an empty text and a null text.
    for (const char* const frame :
         {"0000000F 104A95AB 00000007 00000003 616263", "0000000C 104A95AB 00000004 00000000",
          "0000000C 104A95AB 00000004 FFFFFFFF"}) {
        SCOPED_TRACE(frame);
        DF_Params record;
        record.SetValidate(true);
        record.SetBandwidth(9.0);
        readFrame(record, bytes(frame));
        EXPECT_EQ(record.GetBandwidth(), 0.0);
        EXPECT_TRUE(record.IsBandwidthSet());
    }
}

TEST(DfParams, APayloadIsReadWithAllItsDigits)
{
    DF_Params record;
    readFrame(record, bytes("00000015 104A95AB 0000000D 00000009 313233342E35363738"));
    EXPECT_EQ(record.GetBandwidth(), 1234.5678);
}

TEST(DfParams, ALengthErrorCarriesItsNameAndKeepsWhatWasRead)
{
    for (const char* const frame :
         {"0000000F A97DB5BE 00000008 00000004 312E3030", "00000011 A97DB5BE 00000008 00000004 312E3030",
          "00000011 A97DB5BE 00000008 00000004 312E3030 00"}) {
        SCOPED_TRACE(frame);
        DF_Params record;
        expectThrow<BinaryParsingException>([&] { readFrame(record, bytes(frame)); },
                                            QStringLiteral("DF_Params::SetBinary(...): Length error occurred "
                                                           "during processing of binary representation"));
        EXPECT_EQ(record.GetFrequency(), 1.0);
        EXPECT_TRUE(record.IsFrequencySet());
    }
}

} // namespace
