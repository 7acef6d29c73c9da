// SPDX-License-Identifier: MIT
// Changing members by their paths: where a change is made, and what is said about wrong ones.
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/RecordEdits.h"

#include <QtCore/QStringList>

using namespace ROUTERDOCUMENTS;

namespace {

const QByteArray message = R"({"PelLu300RouterMessage": {"Type": "Reply", "Fragment": [
    {"DF_Params": {"Frequency": 1}}, {"AcquireMastership": {"Success": false}}, {"DF_Params": {}}, {}]}})";

struct Result
{
    // The record; of a message as above only the fragments.
    QString json;
    QStringList unused;
};

Result changed(const QStringList& changes, const QStringList& unset = {}, const QByteArray& json = message)
{
    RecordEdits edits;
    for (const QString& path : unset)
        edits.Unset(path);
    for (const QString& change : changes)
        edits.Set(change);
    const Document document = ReadDocument(json);
    edits.Apply(*document.record);
    QString text = QString::fromUtf8(ToJsonLine(*document.record)).trimmed();
    const QString begin = R"({"PelLu300RouterMessage":{"Type":"Reply","Fragment":[)";
    if (text.startsWith(begin))
        text = text.mid(begin.size()).chopped(3);
    return {text, edits.GetUnused()};
}

QString json(const QStringList& changes, const QStringList& unset = {})
{
    const Result result = changed(changes, unset);
    EXPECT_EQ(result.unused, QStringList());
    return result.json;
}

const QString first = R"({"DF_Params":{"Frequency":1}})";
const QString second = R"({"AcquireMastership":{"Success":false}})";
const QString third = R"({"DF_Params":{}})";

QString joined(const QStringList& parts) { return parts.join(QLatin1Char(',')); }

QString refusalOf(const QString& change)
{
    try {
        RecordEdits().Set(change);
    } catch (const InvalidEdit& error) {
        return error.GetText();
    } catch (const InvalidMemberPath& error) {
        return error.GetText();
    }
    return QString();
}

QString refusalOfUnset(const QString& path)
{
    try {
        RecordEdits().Unset(path);
    } catch (const InvalidEdit& error) {
        return error.GetText();
    } catch (const InvalidMemberPath& error) {
        return error.GetText();
    }
    return QString();
}

} // namespace

TEST(RecordEdits, SetValuesOfEveryKind)
{
    EXPECT_EQ(changed({"Type=Event", "MessageID=4294967295", "Success=true", "Frequency=98.5e6"}).json,
              "{\"PelLu300RouterMessage\":{\"Type\":\"Event\",\"MessageID\":4294967295,\"Fragment\":["
              "{\"DF_Params\":{\"Frequency\":98500000}},{\"AcquireMastership\":{\"Success\":true}},"
              "{\"DF_Params\":{\"Frequency\":98500000}},{}]}}");
    EXPECT_EQ(changed({"MasterClientID="}, {}, R"({"MastershipState": {}})").json,
              "{\"MastershipState\":{\"MasterClientID\":\"\"}}");
    EXPECT_EQ(changed({"MasterClientID=a=b"}, {}, R"({"MastershipState": {}})").json,
              "{\"MastershipState\":{\"MasterClientID\":\"a=b\"}}");
}

TEST(RecordEdits, AreMadeWhereverThePathLeads)
{
    EXPECT_EQ(json({"Frequency=2"}),
              joined({R"({"DF_Params":{"Frequency":2}})", second, R"({"DF_Params":{"Frequency":2}})", "{}"}));
    EXPECT_EQ(json({"Fragment[3]/DF_Params/Frequency=2"}),
              joined({first, second, R"({"DF_Params":{"Frequency":2}})", "{}"}));
    EXPECT_EQ(json({"Fragment[*]/DF_Params/Bandwidth=2"}),
              joined({R"({"DF_Params":{"Frequency":1,"Bandwidth":2}})", second,
                      R"({"DF_Params":{"Bandwidth":2}})", "{}"}));
}

TEST(RecordEdits, AreMadeInOrder)
{
    EXPECT_EQ(json({"Frequency=2", "Fragment[1]/DF_Params/Frequency=3"}),
              joined({R"({"DF_Params":{"Frequency":3}})", second, R"({"DF_Params":{"Frequency":2}})", "{}"}));
}

TEST(RecordEdits, AppendItems)
{
    EXPECT_EQ(json({"Fragment[+]/DF_Params/Frequency=2", "Fragment[+]/ReleaseMastership"}),
              joined({first, second, third, "{}", R"({"DF_Params":{"Frequency":2}})",
                      R"({"ReleaseMastership":{}})"}));
    EXPECT_EQ(json({"Fragment[+]/DF_Params/Frequency=2", "Fragment[last]/DF_Params/Bandwidth=3"}),
              joined({first, second, third, "{}", R"({"DF_Params":{"Frequency":2,"Bandwidth":3}})"}));
    EXPECT_EQ(json({"Fragment[+]"}), joined({first, second, third, "{}", "{}"}));
}

TEST(RecordEdits, MakeRecordsOnTheWay)
{
    EXPECT_EQ(
        changed({"MessageID=7", "Fragment[+]/AcquireMastership"}, {}, R"({"PelLu300RouterInterfaceXml": {}})")
            .json,
        "{\"PelLu300RouterInterfaceXml\":{\"PelLu300RouterMessage\":{\"MessageID\":7,\"Fragment\":["
        "{\"AcquireMastership\":{}}]}}}");
    const Result unused = changed({"Frequency=7"}, {}, R"({"PelLu300RouterInterfaceXml": {}})");
    EXPECT_EQ(unused.json, "{\"PelLu300RouterInterfaceXml\":{}}");
    EXPECT_EQ(unused.unused, QStringList("Frequency=7"));
}

TEST(RecordEdits, MakePayloadsOnlyWhereThePathNamesTheFragment)
{
    EXPECT_EQ(json({"Fragment[4]/OstraInterfacePort/Port=1"}),
              joined({first, second, third, R"({"OstraInterfacePort":{"Port":1}})"}));
    EXPECT_EQ(json({"Fragment[last]/AcquireMastership"}),
              joined({first, second, third, R"({"AcquireMastership":{}})"}));
    const QString whole = joined({first, second, third, "{}"});
    for (const char* change : {"OstraInterfacePort/Port=1", "Fragment/OstraInterfacePort/Port=1", "Port=1",
                               "Fragment[2]/OstraInterfacePort/Port=1", "Fragment[5]/DF_Params/Frequency=1",
                               "Fragment[5]", "OstraInterfacePort"}) {
        const Result result = changed({change});
        EXPECT_EQ(result.json, whole) << change;
        EXPECT_EQ(result.unused, QStringList(change));
    }
}

TEST(RecordEdits, MakeThePayloadOfAFragmentThatIsTheRoot)
{
    EXPECT_EQ(changed({"DF_Params/Frequency=1"}, {}, R"({"Fragment": {}})").json,
              "{\"Fragment\":{\"DF_Params\":{\"Frequency\":1}}}");
    EXPECT_EQ(changed({"Frequency=1"}, {}, R"({"Fragment": {}})").unused, QStringList("Frequency=1"));
    EXPECT_EQ(changed({"/Fragment/DF_Params"}, {}, R"({"Fragment": {}})").json,
              "{\"Fragment\":{\"DF_Params\":{}}}");
    EXPECT_EQ(changed({"/DF_Params/Frequency=1"}, {}, R"({"DF_Params": {}})").json,
              "{\"DF_Params\":{\"Frequency\":1}}");
    EXPECT_EQ(changed({"DF_Params/Frequency=1"}, {}, R"({"DF_Params": {}})").json,
              "{\"DF_Params\":{\"Frequency\":1}}");
}

TEST(RecordEdits, UnsetMembersFirst)
{
    EXPECT_EQ(json({}, {"Frequency", "Success"}),
              joined({third, R"({"AcquireMastership":{}})", third, "{}"}));
    EXPECT_EQ(json({}, {"Fragment[2]"}), joined({first, third, "{}"}));
    EXPECT_EQ(json({}, {"Fragment[last]", "Fragment[last]"}), joined({first, second}));
    EXPECT_EQ(json({}, {"Fragment[2]/AcquireMastership"}), joined({first, "{}", third, "{}"}));
    EXPECT_EQ(json({"Fragment[2]/DF_Params/Frequency=2"}, {"Fragment[2]/AcquireMastership"}),
              joined({first, R"({"DF_Params":{"Frequency":2}})", third, "{}"}));
    EXPECT_EQ(json({"Fragment[+]/DF_Params/Frequency=2"}, {"Fragment"}), R"({"DF_Params":{"Frequency":2}})");
    EXPECT_EQ(changed({}, {"MessageID"}).unused, QStringList("MessageID"));
    EXPECT_EQ(changed({}, {"Fragment[5]"}).unused, QStringList("Fragment[5]"));
    EXPECT_EQ(changed({}, {"PelLu300RouterMessage"},
                      R"({"PelLu300RouterInterfaceXml": {"PelLu300RouterMessage": {}}})")
                  .json,
              "{\"PelLu300RouterInterfaceXml\":{}}");
}

TEST(RecordEdits, AreUsedWhenOneOfSeveralRecordsHasAPlace)
{
    RecordEdits edits;
    edits.Set("Frequency=1");
    edits.Set("Port=1");
    EXPECT_FALSE(edits.Apply(*ReadDocument(R"({"AcquireMastership": {}})").record));
    EXPECT_TRUE(edits.Apply(*ReadDocument(R"({"OstraInterfacePort": {}})").record));
    EXPECT_EQ(edits.GetUnused(), QStringList("Frequency=1"));
    EXPECT_TRUE(edits.Apply(*ReadDocument(R"({"DF_Params": {}})").record));
    EXPECT_EQ(edits.GetUnused(), QStringList());
}

TEST(RecordEdits, ApplyTheValidationOfTheRecord)
{
    RecordEdits edits;
    edits.Set("Fragment[+]");
    const Document document = ReadDocument(message);
    document.record->SetValidate(true);
    EXPECT_THROW(edits.Apply(*document.record), IncompleteDefinitionException);
}

TEST(RecordEdits, SayWhatIsWrong)
{
    EXPECT_EQ(refusalOf("Type=Replay"),
              "Type: \"Replay\" is no value of Type: it must be one of Request, Reply "
              "and Event. Did you mean Reply?");
    EXPECT_EQ(refusalOf("Fragment[1]/DF_Params/Frequency=x"),
              "Fragment[1]/DF_Params/Frequency: \"x\" is no value of Frequency: it must be a number such as "
              "98.5e6.");
    EXPECT_EQ(refusalOf("MessageID=-1"),
              "MessageID: \"-1\" is no value of MessageID: it must be a whole number from 0 to 4294967295.");
    EXPECT_EQ(refusalOf("MessageID="),
              "MessageID: \"\" is no value of MessageID: it must be a whole number from 0 to 4294967295.");
    EXPECT_EQ(refusalOf("Typ=Reply"),
              "The member \"Typ\" in the path \"Typ\" does not exist. Did you mean Type?");
    EXPECT_EQ(refusalOf("MessageID"), "\"MessageID\" needs a value: MessageID=...");
    EXPECT_EQ(refusalOf("DF_Params=1"),
              "\"DF_Params\" is a record and has no value of its own. Set one of its members.");
    EXPECT_EQ(refusalOf("/PelLu300RouterInterfaceXml"),
              "\"/PelLu300RouterInterfaceXml\" is the whole document.");
    EXPECT_EQ(refusalOfUnset("PelLu300RouterInterfaceXml"),
              "\"PelLu300RouterInterfaceXml\" is the whole document.");
    EXPECT_EQ(refusalOfUnset("Fragment[+]"), "\"Fragment[+]\" is a new item, so there is nothing to unset.");
    EXPECT_EQ(refusalOfUnset("Typ"),
              "The member \"Typ\" in the path \"Typ\" does not exist. Did you mean Type?");
}
