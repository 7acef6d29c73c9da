// SPDX-License-Identifier: MIT
// Conditions: which records fit them, and what is said about texts that are none. Finding members by paths.
#include "TestSupport.h"

#include "documents/Condition.h"
#include "documents/Document.h"
#include "documents/FoundMembers.h"

#include "routerinterface/MastershipState.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <limits>

using namespace ROUTERDOCUMENTS;
using testing_support::DF_Params;

namespace {

const QByteArray message =
    R"({"PelLu300RouterMessage": {"Type": "Reply", "MessageID": 4294967295, "Fragment": [
    {"DF_Params": {"Frequency": 98500000, "Bandwidth": 15000}},
    {"AcquireMastership": {"Success": false}},
    {"DF_Params": {"Frequency": 87.5}},
    {"MastershipState": {"State": null, "MasterClientID": "R&D \"North\""}},
    {"PelVtConnectServer": {"Address": null, "Port": 5000}},
    {}]}})";

bool holds(const QString& condition, const QByteArray& json = message)
{
    return Condition(condition).Holds(*ReadDocument(json).record);
}

QString refusalOf(const QString& condition)
{
    try {
        const Condition parsed(condition);
    } catch (const InvalidCondition& error) {
        const QString beginning = QStringLiteral("The condition ");
        EXPECT_TRUE(error.GetText().startsWith(beginning));
        return QStringLiteral("%1: %2").arg(QString::number(error.GetColumn()),
                                            error.GetText().section(QStringLiteral(": "), 1));
    }
    return QString();
}

#define EXPECT_HOLDS(condition) EXPECT_TRUE(holds(QStringLiteral(condition)))
#define EXPECT_FAILS(condition) EXPECT_FALSE(holds(QStringLiteral(condition)))

} // namespace

// --- paths

TEST(Conditions, OfAPathAloneAskWhetherItIsSet)
{
    EXPECT_HOLDS("Type");
    EXPECT_HOLDS("DF_Params");
    EXPECT_HOLDS("DF_Params/Bandwidth");
    EXPECT_HOLDS("Fragment[3]/DF_Params");
    EXPECT_FAILS("Fragment[3]/DF_Params/Bandwidth");
    EXPECT_FAILS("Fragment[2]/DF_Params");
    EXPECT_FAILS("ReleaseMastership");
    EXPECT_FAILS("PanoramaSpan");
    EXPECT_HOLDS("Fragment[6]");
    EXPECT_FAILS("Fragment[7]");
    EXPECT_HOLDS("AcquireMastership/Success");
}

TEST(Conditions, CanAskForTheClassOfTheRoot)
{
    EXPECT_HOLDS("/PelLu300RouterMessage");
    EXPECT_FAILS("/PelLu300RouterInterfaceXml");
    EXPECT_FAILS("PelLu300RouterInterfaceXml");
    EXPECT_HOLDS("PelLu300RouterMessage");
    EXPECT_TRUE(holds("PelLu300RouterInterfaceXml", R"({"PelLu300RouterInterfaceXml": {}})"));
    EXPECT_FALSE(holds("PelLu300RouterMessage", R"({"PelLu300RouterInterfaceXml": {}})"));
}

TEST(Conditions, OfAListAskWhetherItHasItems)
{
    EXPECT_HOLDS("Fragment");
    EXPECT_FALSE(holds("Fragment", R"({"PelLu300RouterMessage": {"Fragment": []}})"));
}

TEST(Conditions, AreTrueIfAnyOfSeveralValuesFits)
{
    EXPECT_HOLDS("Frequency=87.5");
    EXPECT_HOLDS("Frequency>98e6");
    EXPECT_HOLDS("Frequency!=87.5");
    EXPECT_FAILS("Frequency>98.5e6");
    EXPECT_FAILS("Fragment[1]/DF_Params/Frequency=87.5");
    EXPECT_HOLDS("Fragment[*]/DF_Params/Frequency=87.5");
}

TEST(Conditions, ComparingWhatIsNotSetAreFalse)
{
    EXPECT_FAILS("PanoramaSpan=0");
    EXPECT_FAILS("PanoramaSpan!=0");
    EXPECT_HOLDS("not PanoramaSpan=0");
}

// --- values

TEST(Conditions, CompareUnsignedNumbersExactly)
{
    EXPECT_HOLDS("MessageID=4294967295");
    EXPECT_HOLDS("MessageID=4294967295.0");
    EXPECT_HOLDS("MessageID=4.294967295e9");
    EXPECT_FAILS("MessageID!=4294967295");
    EXPECT_FAILS("MessageID=4294967294");
    EXPECT_HOLDS("MessageID>4294967294.5");
    EXPECT_HOLDS("MessageID<4294967296");
    EXPECT_HOLDS("MessageID>-1");
    EXPECT_FAILS("MessageID=-1");
    EXPECT_HOLDS("MessageID<inf");
    EXPECT_FAILS("MessageID=nan");
    EXPECT_HOLDS("MessageID<=4294967295 and MessageID>=4294967295");
    EXPECT_FAILS("MessageID<4294967295 or MessageID>4294967295");
}

TEST(Conditions, CompareDecimalsThatAreNoNumbers)
{
    const auto fits = [](const QString& condition, double value) {
        DF_Params record;
        record.SetFrequency(value);
        return Condition(condition).Holds(record);
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(fits("Frequency=nan", nan));
    EXPECT_TRUE(fits("Frequency<=nan", nan));
    EXPECT_TRUE(fits("Frequency>=nan", nan));
    EXPECT_FALSE(fits("Frequency!=nan", nan));
    EXPECT_FALSE(fits("Frequency<nan", nan));
    EXPECT_FALSE(fits("Frequency=1", nan));
    EXPECT_TRUE(fits("Frequency!=1", nan));
    EXPECT_FALSE(fits("Frequency<1 or Frequency>=1", nan));
    EXPECT_FALSE(fits("Frequency=nan", 1));
    EXPECT_TRUE(fits("Frequency=inf", infinity));
    EXPECT_TRUE(fits("Frequency>1e300", infinity));
    EXPECT_TRUE(fits("Frequency=-inf", -infinity));
    EXPECT_TRUE(fits("Frequency=0.1", 0.1));
    EXPECT_FALSE(fits("Frequency=1", 1.0000000000000002));
}

TEST(Conditions, CompareEnumeratorsByName)
{
    EXPECT_HOLDS("Type=Reply");
    EXPECT_HOLDS("Type=\"Reply\"");
    EXPECT_HOLDS("Type!=Request");
    EXPECT_FAILS("Type=Event");
    EXPECT_FAILS("Type=null");
    EXPECT_HOLDS("Type!=null");
}

TEST(Conditions, KnowEnumerationsWithoutEnumerator)
{
    PELLU300ROUTERINTERFACEXML::MastershipState record;
    PELLU300ROUTERINTERFACEXML::RecordInfo::Of(record).FindMember("State")->SetValue(record, 17);
    EXPECT_TRUE(Condition("State").Holds(record));
    EXPECT_TRUE(Condition("State=null").Holds(record));
    EXPECT_FALSE(Condition("State!=null").Holds(record));
    EXPECT_TRUE(Condition("State!=MasterPresent").Holds(record));
}

TEST(Conditions, CompareTruthValues)
{
    EXPECT_HOLDS("Success=false");
    EXPECT_FAILS("Success=true");
    EXPECT_HOLDS("Success!=true");
}

TEST(Conditions, CompareTexts)
{
    EXPECT_HOLDS("MasterClientID='R&D \"North\"'");
    EXPECT_HOLDS("MasterClientID=\"R&D \\\"North\\\"\"");
    EXPECT_HOLDS("MasterClientID=\"\\u0052&D \\\"North\\\"\"");
    EXPECT_HOLDS("MasterClientID~North");
    EXPECT_HOLDS("MasterClientID~'D \"'");
    EXPECT_HOLDS("MasterClientID~R&D");
    EXPECT_HOLDS("MasterClientID~''");
    EXPECT_FAILS("MasterClientID~north");
    EXPECT_HOLDS("MasterClientID>R");
    EXPECT_HOLDS("MasterClientID<S");
    EXPECT_FAILS("MasterClientID<=R");
    EXPECT_HOLDS("MasterClientID!=''");
}

TEST(Conditions, DistinguishNullTextsFromOthers)
{
    EXPECT_HOLDS("Address=null");
    EXPECT_FAILS("Address!=null");
    EXPECT_FAILS("Address=\"null\"");
    EXPECT_FAILS("Address=''");
    EXPECT_HOLDS("Address!=''");
    EXPECT_FAILS("Address~''");
    EXPECT_FAILS("Address<a");
    EXPECT_FAILS("Address>=''");
    EXPECT_FAILS("MasterClientID=null");
    EXPECT_HOLDS("MasterClientID!=null");
}

// --- and, or, not

TEST(Conditions, BindAndMoreTightlyThanOr)
{
    EXPECT_HOLDS("Type or PanoramaSpan and PanoramaSpan");
    EXPECT_FAILS("(Type or PanoramaSpan) and PanoramaSpan");
    EXPECT_HOLDS("not PanoramaSpan and Type");
    EXPECT_FAILS("not (PanoramaSpan or Type)");
    EXPECT_HOLDS("not not Type");
    EXPECT_FAILS("PanoramaSpan or PanoramaSpan or PanoramaSpan");
    EXPECT_HOLDS("PanoramaSpan or PanoramaSpan or Type");
    EXPECT_FAILS("Type and Type and PanoramaSpan");
}

TEST(Conditions, NeedNoBlanks)
{
    EXPECT_HOLDS("Type=Reply and(Frequency>98e6)and not(PanoramaSpan)");
    EXPECT_HOLDS("  Type  =  Reply  ");
    EXPECT_HOLDS("Type\n=\tReply");
}

TEST(Conditions, WorkOnAnyRecord)
{
    const Condition condition("Port>=5000 and Port<=5002");
    EXPECT_TRUE(condition.Holds(*ReadDocument(R"({"OstraInterfacePort": {"Port": 5002}})").record));
    EXPECT_FALSE(condition.Holds(*ReadDocument(R"({"OstraInterfacePort": {"Port": 5003}})").record));
    EXPECT_TRUE(condition.Holds(*ReadDocument(message).record));
}

TEST(Conditions, CanBeCopied)
{
    Condition condition("Type=Event");
    condition = Condition("Type=Reply");
    const Condition copy = condition;
    EXPECT_TRUE(copy.Holds(*ReadDocument(message).record));
}

// --- mistakes

TEST(Conditions, SayWhatIsWrongAndWhere)
{
    EXPECT_EQ(refusalOf(""), "1: Expected a path, \"not\" or \"(\", but found the end.");
    EXPECT_EQ(refusalOf("Type=Reply and"), "15: Expected a path, \"not\" or \"(\", but found the end.");
    EXPECT_EQ(refusalOf("Type=Reply and or"), "16: Expected a path, \"not\" or \"(\", but found \"or\".");
    EXPECT_EQ(refusalOf("\"Type\"=Reply"), "1: Expected a path, \"not\" or \"(\", but found \"Type\".");
    EXPECT_EQ(refusalOf("Type=Reply und Type"),
              "12: Expected \"and\", \"or\" or the end, but found \"und\". Did you mean and?");
    EXPECT_EQ(refusalOf("Type=Reply AND Type"),
              "12: Expected \"and\", \"or\" or the end, but found \"AND\". Did you mean and?");
    EXPECT_EQ(refusalOf("Type Reply"), "6: Expected \"and\", \"or\" or the end, but found \"Reply\".");
    EXPECT_EQ(refusalOf("Type=Reply=Reply"), "11: There is no member in front of =.");
    EXPECT_EQ(refusalOf("=Reply"), "1: Expected a path, \"not\" or \"(\", but found \"=\".");
    EXPECT_EQ(refusalOf("(Type"), "1: This parenthesis is not closed.");
    EXPECT_EQ(refusalOf("Type)"), "5: There is no parenthesis that this one closes.");
    EXPECT_EQ(refusalOf("(Type=Reply Type)"), "13: Expected \"and\", \"or\" or \")\", but found \"Type\".");
    EXPECT_EQ(refusalOf("()"), "2: Expected a path, \"not\" or \"(\", but found \")\".");
    EXPECT_EQ(refusalOf("Type=Reply and DF_Params/Frequenzy>98e6"),
              "16: The member \"Frequenzy\" in the path \"DF_Params/Frequenzy\" does not exist. Did you mean "
              "Frequency?");
    EXPECT_EQ(refusalOf("Fragment[2->3]/DF_Params"),
              "1: \"Fragment[2->3]\" in the path \"Fragment[2->3]/DF_Params\" is not understood. It has the "
              "numbers of an item in two records. Write one of them, as in Fragment[2].");
}

TEST(Conditions, SayWhichValuesAndOperatorsArePossible)
{
    EXPECT_EQ(refusalOf("Type=Replay"),
              "6: \"Replay\" is no value of Type: it must be one of Request, Reply and "
              "Event. Did you mean Reply?");
    EXPECT_EQ(refusalOf("Success = yes"), "11: \"yes\" is no value of Success: it must be true or false.");
    EXPECT_EQ(refusalOf("MessageID=x"),
              "11: \"x\" is no value of MessageID: it must be a whole number from 0 to 4294967295.");
    EXPECT_EQ(refusalOf("Frequency>98,5"),
              "11: \"98,5\" is no value of Frequency: it must be a number such as 98.5e6.");
    EXPECT_EQ(refusalOf("Type>Reply"),
              "5: Type is of the type enumeration, which can only be compared with = and !=.");
    EXPECT_EQ(refusalOf("Success<true"),
              "8: Success is of the type boolean, which can only be compared with = and !=.");
    EXPECT_EQ(refusalOf("MessageID~7"), "10: ~ is for texts, but MessageID is of the type unsigned integer.");
    EXPECT_EQ(refusalOf("Address<null"),
              "8: null can only be compared with = and !=. In quotes it is a text.");
    EXPECT_EQ(refusalOf("Type==Reply"),
              "5: There is no operator ==. The operators are =, !=, <, <=, >, >= and ~.");
    EXPECT_EQ(refusalOf("Type="), "6: Expected a value, but found the end.");
    EXPECT_EQ(refusalOf("Type=(Reply)"), "6: Expected a value, but found \"(\".");
    EXPECT_EQ(refusalOf("Address=not"),
              "9: Expected a value, but found \"not\". A text that is such a word needs quotes.");
    EXPECT_EQ(
        refusalOf("DF_Params=1"),
        "10: DF_Params is a record and has no value of its own. Compare one of its members, or write only "
        "the path to ask whether it is set.");
    EXPECT_EQ(refusalOf("/PelLu300RouterInterfaceXml=1").section(' ', 0, 1),
              "28: /PelLu300RouterInterfaceXml");
}

TEST(Conditions, SayWhatIsWrongWithTextsInQuotes)
{
    EXPECT_EQ(refusalOf("Address='a"), "9: The text in quotes does not end. Write \\' for a quote in it.");
    EXPECT_EQ(refusalOf("Address=\"a\\\""),
              "9: The text in quotes does not end. Write \\\" for a quote in it.");
    const QString rule = " Those of JSON are possible, such as \\n and \\u00e4; \\\\ is a backslash.";
    EXPECT_EQ(refusalOf("Address='a\\x'"), "11: There is no escape \\x." + rule);
    for (const char* digits : {"", "12", "12g4", "+123", " 123"})
        EXPECT_EQ(refusalOf(QStringLiteral("Address='\\u%1'").arg(digits)),
                  "10: There is no escape \\u." + rule);
    EXPECT_EQ(refusalOf("Address='\\"), "10: There is no escape \\." + rule);
}

TEST(Conditions, KnowTheEscapesOfJson)
{
    const QByteArray json = R"({"PelVtConnectServer": {"Address": "\b\f\n\r\t\"'\\/\u00e4"}})";
    EXPECT_TRUE(holds(R"(Address="\b\f\n\r\t\"\'\\\/\u00E4")", json));
}

TEST(Conditions, AreNotNestedTooDeeply)
{
    const auto nested = [](int depth) { return QString(depth, '(') + "Type" + QString(depth, ')'); };
    EXPECT_EQ(refusalOf(nested(99)), QString());
    EXPECT_EQ(refusalOf(nested(100)), "101: The condition is nested more than 100 times.");
    EXPECT_EQ(refusalOf(nested(1000000)), "101: The condition is nested more than 100 times.");
    EXPECT_EQ(refusalOf(QStringLiteral("not ").repeated(100000)),
              "401: The condition is nested more than 100 times.");
    EXPECT_EQ(refusalOf("Address=" + QString(1000000, '[')), QString());
    EXPECT_EQ(refusalOf(QStringLiteral("Type or ").repeated(10000) + "Type"), QString());
}

// --- finding members

TEST(FoundMembers, HaveTheirPathsAndValues)
{
    const auto found = [](const QString& path) {
        QStringList lines;
        FindMembers(*ReadDocument(message).record, PathPattern(path), [&](const FoundMember& member) {
            lines += member.path.ToText() + "=" + member.ToText();
            return true;
        });
        return lines;
    };
    EXPECT_EQ(found("Frequency"), (QStringList{"Fragment[1]/DF_Params/Frequency=98500000",
                                               "Fragment[3]/DF_Params/Frequency=87.5"}));
    EXPECT_EQ(found("Type"), QStringList("Type=Reply"));
    EXPECT_EQ(found("Address"), QStringList("Fragment[5]/PelVtConnectServer/Address="));
    EXPECT_EQ(found("MasterClientID"),
              QStringList("Fragment[4]/MastershipState/MasterClientID=R&D \"North\""));
    EXPECT_EQ(found("Fragment[2]"), QStringList("Fragment[2]={AcquireMastership: {Success: false}}"));
    EXPECT_EQ(found("AcquireMastership"), QStringList("Fragment[2]/AcquireMastership={Success: false}"));
    EXPECT_EQ(found("/PelLu300RouterMessage"),
              QStringList("PelLu300RouterMessage={Type: Reply (1), MessageID: 4294967295, Fragment: [6]}"));
    EXPECT_EQ(found("PanoramaSpan"), QStringList());
}

TEST(FoundMembers, EndWhereTheVisitorSaysSo)
{
    int visited = 0;
    FindMembers(*ReadDocument(message).record, PathPattern("Fragment"), [&](const FoundMember& member) {
        EXPECT_EQ(member.item, visited);
        return ++visited < 3;
    });
    EXPECT_EQ(visited, 3);
}

TEST(FoundMembers, HaveValuesForPrograms)
{
    QList<QJsonValue> values;
    for (const char* path : {"MessageID", "Address", "Success", "AcquireMastership"})
        FindMembers(*ReadDocument(message).record, PathPattern(path), [&](const FoundMember& member) {
            values += member.ToJson();
            return true;
        });
    EXPECT_EQ(values,
              (QList<QJsonValue>{4294967295.0, QJsonValue(), false, QJsonObject{{"Success", false}}}));
}
