// SPDX-License-Identifier: MIT
// Records, enumerators, places and failures for qDebug(), streams and GoogleTest.

#include "LifecycleSupport.h"

#include "routerinterface/Printing.h"

#include <QtCore/QDebug>

#include <cmath>
#include <limits>
#include <sstream>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::Place;

namespace {

template <class T>
QString streamed(const T& value)
{
    std::ostringstream stream;
    stream << value;
    return QString::fromStdString(stream.str());
}

template <class T>
QString debugged(const T& value)
{
    QString text;
    QDebug(&text).nospace() << value;
    return text;
}

// Expects the text in all ways.
template <class T>
void expectPrinted(const T& value, const QString& expected)
{
    EXPECT_EQ(streamed(value), expected);
    EXPECT_EQ(debugged(value), expected);
    EXPECT_EQ(QString::fromStdString(::testing::PrintToString(value)), expected);
}

QString addressText(const QString& address)
{
    PelVtConnectServer server;
    server.SetAddress(address);
    return Describe(server).section(QLatin1String("Address: "), 1);
}

QString frequencyText(double frequency)
{
    return Describe(params(frequency)).section(QLatin1String("Frequency: "), 1);
}

template <class R>
class EveryRecordPrinted : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordPrinted, AllRecords, RecordName);

} // namespace

TYPED_TEST(EveryRecordPrinted, WithoutMembersItIsItsName)
{
    expectPrinted(TypeParam(), TypeParam().GetObjectName() + QLatin1String(" (nothing is set)"));
}

TEST(Printing, EveryMemberThatIsSetIsShownByItsName)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        SCOPED_TRACE(Member::name);
        typename Member::Owner record;
        Member::set(record, Member::first());
        const QString name = QString::fromLatin1(Member::name).section(QLatin1String("::"), 1);
        const QStringList lines = Describe(record).split(QLatin1Char('\n'));
        EXPECT_EQ(lines[0], record.GetObjectName());
        ASSERT_GE(lines.size(), 2);
        EXPECT_TRUE(lines[1].startsWith(QLatin1String("  ") + name)) << lines[1].toStdString();
    });
}

TEST(Printing, NestedRecordsAndItemsAreIndented)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    message.AppendFragment(fragment("192.0.2.1"));
    message.AddFragment();
    message.AddFragment().GetAcquireMastership().SetSuccess(false);
    expectPrinted(document, text("PelLu300RouterInterfaceXml\n"
                                 "  PelLu300RouterMessage\n"
                                 "    Type: Reply\n"
                                 "    MessageID: 7\n"
                                 "    Fragment[1]\n"
                                 "      PelVtConnectServer\n"
                                 "        Address: \"192.0.2.1\"\n"
                                 "    Fragment[2] (nothing is set)\n"
                                 "    Fragment[3]\n"
                                 "      AcquireMastership\n"
                                 "        Success: false"));
}

TEST(Printing, ItChangesNothing)
{
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message(7));
    const PelLu300RouterInterfaceXml before(document);
    Describe(document);
    EXPECT_TRUE(document == before);
    const PelLu300RouterMessage empty;
    Describe(empty);
    EXPECT_FALSE(empty.IsFragmentSet());
}

TEST(Printing, AnEmptyListThatIsSetSaysSo)
{
    PelLu300RouterMessage message;
    message.GetFragment();
    EXPECT_EQ(Describe(message), text("PelLu300RouterMessage\n  Fragment: no items"));
}

TEST(Printing, APayloadThatIsSelectedButNotSetIsNamed)
{
    Fragment fragment;
    fragment.GetDF_Params();
    fragment.ResetDF_Params();
    EXPECT_EQ(Describe(fragment), text("Fragment (DF_Params is selected, but not set)"));
}

TEST(Printing, OnlyTheSelectedPayloadIsShown)
{
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(1);
    fragment.GetRouterVtServerPort().SetPort(2);
    EXPECT_EQ(Describe(fragment), text("Fragment\n  RouterVtServerPort\n    Port: 2"));
}

TEST(Printing, ALongListIsCutOff)
{
    PelLu300RouterMessage message;
    for (unsigned int i = 0; i < 100; ++i)
        message.AppendFragment(withPort(i));
    EXPECT_TRUE(Describe(message).endsWith(text("Port: 99")));
    message.AppendFragment(withPort(100));
    EXPECT_TRUE(Describe(message).endsWith(text("Port: 99\n  ... (101 items)")));
}

TEST(Printing, TextsAreQuotedEscapedAndCutOff)
{
    EXPECT_EQ(addressText(empty()), text("\"\""));
    EXPECT_EQ(addressText(QString()), text("null"));
    EXPECT_EQ(addressText(text("a\"b\\c\nd\re\tf\x01g")), text("\"a\\\"b\\\\c\\nd\\re\\tf\\u0001g\""));
    EXPECT_EQ(addressText(text("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80")),
              text("\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\""));
    const QString longest(200, QLatin1Char('x'));
    EXPECT_EQ(addressText(longest), QLatin1Char('"') + longest + QLatin1Char('"'));
    EXPECT_EQ(addressText(longest + QLatin1Char('y')),
              QLatin1Char('"') + longest + text("\"... (201 characters)"));
    // The cut would go through a pair of surrogates.
    const QString before(199, QLatin1Char('x'));
    EXPECT_EQ(addressText(before + text("\xF0\x9F\x98\x80z")),
              QLatin1Char('"') + before + text("\"... (202 characters)"));
}

TEST(Printing, NumbersHaveAllTheirDigits)
{
    EXPECT_EQ(frequencyText(98.5e6), text("98500000"));
    EXPECT_EQ(frequencyText(0.1), text("0.1"));
    EXPECT_EQ(frequencyText(0.1 + 0.2), text("0.30000000000000004"));
    EXPECT_EQ(frequencyText(std::numeric_limits<double>::quiet_NaN()), text("nan"));
    EXPECT_EQ(frequencyText(-std::numeric_limits<double>::infinity()), text("-inf"));
    EXPECT_EQ(Describe(ostraPort(4294967295U)), text("OstraInterfacePort\n  Port: 4294967295"));
}

TEST(Printing, EnumeratorsAreShownByName)
{
    expectPrinted(PelLu300RouterMessage::Event, text("Event"));
    expectPrinted(MastershipState::RouterIsMaster, text("RouterIsMaster"));
    expectPrinted(Fragment::DF_Params, text("DF_Params"));
    expectPrinted(static_cast<PelLu300RouterMessage::Type>(9), text("9 (no enumerator)"));

    MastershipState state;
    state.SetState(static_cast<MastershipState::State>(-1));
    EXPECT_EQ(Describe(state), text("MastershipState\n  State: -1 (no enumerator)"));
}

TEST(Printing, DerivedAndRenamedRecordsAreShownAsTheirClass)
{
    Opened<OstraInterfacePort> port;
    port.SetPort(1);
    port.SetObjectName(text("Renamed"));
    expectPrinted(port, text("OstraInterfacePort\n  Port: 1"));
}

TEST(Printing, ListsOfRecordsAreShown)
{
    const QVector<OstraInterfacePort> ports{ostraPort(1)};
    EXPECT_EQ(::testing::PrintToString(ports), "{ OstraInterfacePort\n  Port: 1 }");
}

TEST(Printing, TheSettingsOfTheStreamStay)
{
    QString text;
    QDebug debug(&text);
    debug << ostraPort(1) << QStringLiteral("quoted") << 2;
    EXPECT_EQ(text.trimmed(), QStringLiteral("OstraInterfacePort\n  Port: 1 \"quoted\" 2"));
}

// --- places and failures -----------------------------------------------------------------------------

TEST(Printing, PlacesHaveTheirPath)
{
    Place place;
    expectPrinted(place, text("unknown place"));
    place.path = text("/DF_Params");
    expectPrinted(place, text("in /DF_Params"));
    place.file = text("request.xml");
    place.line = 4;
    place.column = 5;
    expectPrinted(place, text("request.xml:4:5 (in /DF_Params)"));
    place.path.clear();
    expectPrinted(place, text("request.xml:4:5"));
}

TEST(Printing, FailuresAreTheirSentence)
{
    Failure failure;
    expectPrinted(failure, text("no failure"));
    DF_Params record;
    EXPECT_FALSE(record.SetXmlString(text("<Fragment/>"), false));
    failure = MODELKIT::IMKObject::GetLastFailure();
    expectPrinted(failure, failure.GetSentence());
}
