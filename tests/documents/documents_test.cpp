// SPDX-License-Identifier: MIT
// The library of documents: every form from bytes, JSON, differences, the parts of the binary form.
#include "TestSupport.h"

#include "documents/Difference.h"
#include "documents/Dissection.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/JsonForm.h"
#include "documents/LargeJson.h"
#include "documents/Statistics.h"
#include "documents/Text.h"
#include "documents/Tree.h"
#include "documents/Values.h"

#include "modelkit/Limits.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <cmath>
#include <limits>

using namespace ROUTERDOCUMENTS;
using testing_support::DF_Params;
using testing_support::Fragment;
using testing_support::OstraInterfacePort;

namespace {

const QByteArray portXml = "<OstraInterfacePort><Port>7</Port></OstraInterfacePort>";
const QByteArray portJson = "{\n  \"OstraInterfacePort\": {\n    \"Port\": 7\n  }\n}\n";

std::unique_ptr<MODELKIT::IMKObject> port(unsigned int number)
{
    auto record = std::make_unique<OstraInterfacePort>();
    record->SetPort(number);
    return record;
}

// The error with which reading is refused.
DocumentError refusalOf(const QByteArray& bytes, const ReadingOptions& options = {})
{
    try {
        ReadDocument(bytes, options);
    } catch (const DocumentError& error) {
        return error;
    }
    return DocumentError(MODELKIT::Failure());
}

// Paths and values of all differences.
QStringList differences(const QByteArray& first, const QByteArray& second,
                        const IgnoredMembers& ignored = IgnoredMembers())
{
    QStringList lines;
    CompareRecords(*ReadDocument(first).record, *ReadDocument(second).record, ignored,
                   [&](const Difference& difference) {
                       lines += QStringLiteral("%1: %2 -> %3")
                                    .arg(difference.path.ToText(), difference.first, difference.second);
                   });
    return lines;
}

QByteArray message(const QByteArray& fragments)
{
    return R"({"PelLu300RouterMessage": {"Type": "Event", "Fragment": [)" + fragments + "]}}";
}

QVector<Part> partsOf(const QByteArray& form)
{
    QVector<Part> parts;
    DissectPlain(form, [&](const Part& part) { parts += part; });
    return parts;
}

} // namespace

// --- reading --------------------------------------------------------------------------------

TEST(Documents, AreReadInAnyForm)
{
    auto record = port(7);
    for (const Form form : {Form::Xml, Form::Binary, Form::Compressed, Form::Json}) {
        const QByteArray bytes = WriteDocument(*record, form);
        const Document document = ReadDocument(bytes);
        EXPECT_EQ(document.form, form) << NameOf(form).toStdString();
        EXPECT_EQ(document.size, bytes.size());
        EXPECT_EQ(document.info->GetName(), QStringLiteral("OstraInterfacePort"));
        EXPECT_EQ(dynamic_cast<OstraInterfacePort&>(*document.record).GetPort(), 7u);
    }
}

TEST(Documents, HaveTheBytesThatTheRecordItselfGives)
{
    auto record = port(7);
    EXPECT_EQ(WriteDocument(*record, Form::Xml), record->GetXmlBytes());
    EXPECT_EQ(WriteDocument(*record, Form::Binary), record->GetBinaryRepresentationAsQByteArray());
    EXPECT_EQ(WriteDocument(*record, Form::Json), portJson);
}

TEST(Documents, HaveTheFormOfTheirFirstBytes)
{
    const auto formOf = [](const char* hex) { return FormOfContent(QByteArray::fromHex(hex)); };
    // The first word is enough.
    EXPECT_EQ(FormOfContent("MKZ1"), Form::Compressed);
    EXPECT_EQ(FormOfContent(port(7)->GetBinaryRepresentationAsQByteArray().left(4)), Form::Binary);
    EXPECT_EQ(formOf("01020304"), Form::Binary);
    for (const char* wide : {"FEFF", "FFFE", "0000FEFF", "FFFE0000", "003C", "3C00", "0000003C", "3C000000"})
        EXPECT_EQ(formOf(wide), Form::Xml) << wide;
    for (const char* xml : {"", " <a/>", "\xEF\xBB\xBF<a/>", "MKZ", "text"})
        EXPECT_EQ(FormOfContent(xml), Form::Xml) << xml;
    for (const char* json : {"{", " \r\n\t[", "\xEF\xBB\xBF {"})
        EXPECT_EQ(FormOfContent(json), Form::Json) << json;
    // JSON in UTF-16.
    EXPECT_EQ(formOf("007B"), Form::Json);
    EXPECT_EQ(formOf("7B00"), Form::Json);
}

TEST(Documents, AreReadInTheFormThatIsNamed)
{
    const DocumentError error = refusalOf(portXml, {Form::Json});
    EXPECT_EQ(error.GetKind(), MODELKIT::Failure::NotWellFormed);
    EXPECT_EQ(error.GetPlace().line, 1);
}

TEST(Documents, ThatCannotBeReadSayWhatIsWrongAndWhere)
{
    const DocumentError xml = refusalOf("<OstraInterfacePort>\n<Port>7</OstraInterfacePort>");
    EXPECT_EQ(xml.GetKind(), MODELKIT::Failure::NotWellFormed);
    EXPECT_EQ(xml.GetPlace().line, 2);
    EXPECT_EQ(xml.GetPlace().file, QString());
    EXPECT_EQ(QString::fromUtf8(xml.what()), xml.GetText());

    QByteArray cut = port(7)->GetBinaryRepresentationAsQByteArray();
    cut.chop(1);
    EXPECT_EQ(refusalOf(cut).GetKind(), MODELKIT::Failure::NotABinaryForm);
}

TEST(Documents, AreCheckedWhenThatIsAskedFor)
{
    const QByteArray reply = R"({"PelLu300RouterMessage": {"MessageID": 1}})";
    EXPECT_NO_THROW(ReadDocument(reply));
    const DocumentError error = refusalOf(reply, {std::nullopt, Validation::On});
    EXPECT_EQ(error.GetKind(), MODELKIT::Failure::Refused);
    EXPECT_FALSE(error.GetText().isEmpty());
    EXPECT_TRUE(ReadDocument(portJson, {std::nullopt, Validation::On}).record->GetValidate());
}

TEST(Documents, NameTheEnumeratorThatMayHaveBeenMeant)
{
    const DocumentError error = refusalOf(
        "<PelLu300RouterMessage><Type>Replay</Type></PelLu300RouterMessage>", {std::nullopt, Validation::On});
    EXPECT_TRUE(error.GetText().endsWith(QStringLiteral(": \"Replay\". Did you mean Reply?")))
        << error.what();
}

TEST(Documents, ThatLackTheirDataAreNotWritten)
{
    Fragment record;
    record.SetValidate(true);
    try {
        WriteDocument(record, Form::Xml);
        FAIL();
    } catch (const DocumentError& error) {
        EXPECT_EQ(error.GetText(), QStringLiteral("Fragment holds no data."));
    }
}

TEST(Documents, KeepToTheLimits)
{
    MODELKIT::Limits limits;
    limits.inputSize = 20;
    const MODELKIT::LimitsInScope scope(limits);
    for (const QByteArray& bytes : {portXml, portJson})
        EXPECT_EQ(refusalOf(bytes).GetKind(), MODELKIT::Failure::InputTooLarge) << bytes.constData();
}

// --- JSON -----------------------------------------------------------------------------------

TEST(Documents, LoseNothingAsJson)
{
    const double third = 1.0 / 3;
    DF_Params record;
    record.SetFrequency(third);
    const auto same = FromJson(ToJson(record));
    EXPECT_EQ(dynamic_cast<DF_Params&>(*same).GetFrequency(), third);
    EXPECT_EQ(ToJson(*same), ToJson(record));
}

TEST(Documents, RefuseJsonWithThePathOfWhatIsWrong)
{
    const DocumentError unknown = refusalOf(message(R"({"DF_Params": {"Frequenzy": 1}})"));
    EXPECT_EQ(unknown.GetKind(), MODELKIT::Failure::Refused);
    EXPECT_EQ(unknown.GetPlace().path,
              QStringLiteral("$.PelLu300RouterMessage.Fragment[0].DF_Params.Frequenzy"));
    EXPECT_EQ(unknown.GetText(),
              QStringLiteral("DF_Params has no member \"Frequenzy\". Did you mean Frequency?"));

    const DocumentError twice = refusalOf("{\"OstraInterfacePort\": {\"Port\": 1,\n \"Port\": 2}}");
    EXPECT_EQ(twice.GetKind(), MODELKIT::Failure::NotWellFormed);
    EXPECT_EQ(twice.GetPlace().line, 2);
    EXPECT_EQ(twice.GetPlace().column, 2);
}

TEST(Documents, SpellNumbersOutThatJsonDoesNotHave)
{
    DF_Params record;
    record.SetFrequency(-std::numeric_limits<double>::infinity());
    record.SetBandwidth(-0.0);
    EXPECT_EQ(ToJsonLine(record), "{\"DF_Params\":{\"Frequency\":\"-Infinity\",\"Bandwidth\":-0.0}}\n");
}

TEST(Documents, CanBeListedAsJsonWithoutKeepingThem)
{
    QString text;
    LargeJson json([&](const QString& piece) { text += piece; });
    json.BeginList(QStringLiteral("ports"));
    json.AddItem(1);
    json.AddItem(QStringLiteral("\u202E"));
    json.EndList();
    json.Add(QStringLiteral("count"), 2);
    json.End();
    EXPECT_EQ(text, QStringLiteral("{\n  \"ports\": [\n    1,\n    \"\\u202e\"\n  ],\n  \"count\": 2\n}\n"));
}

// --- differences ----------------------------------------------------------------------------

TEST(Documents, AreComparedWhateverTheirForms)
{
    EXPECT_EQ(differences(portXml, port(7)->GetBinaryRepresentationAsQByteArray()), QStringList());
    EXPECT_EQ(differences(portXml, port(8)->GetBinaryRepresentationAsQByteArray()),
              QStringList(QStringLiteral("Port: 7 -> 8")));
    EXPECT_EQ(differences(portXml, R"({"AcquireMastership": {}})"),
              QStringList(QStringLiteral("(root): OstraInterfacePort -> AcquireMastership")));
}

TEST(Documents, HaveTheirItemsAligned)
{
    const QByteArray one = R"({"DF_Params": {"Frequency": 1}})";
    const QByteArray two = R"({"DF_Params": {"Frequency": 2}})";
    const QByteArray inserted = R"({"OstraInterfacePort": {"Port": 7}})";
    const QByteArray changed = R"({"DF_Params": {"Frequency": 3}})";
    EXPECT_EQ(differences(message(one + ',' + two), message(inserted + ',' + one + ',' + changed)),
              (QStringList{QStringLiteral("Fragment[1]:  -> {OstraInterfacePort: {Port: 7}}"),
                           QStringLiteral("Fragment[2->3]/DF_Params/Frequency: 2 -> 3")}));
}

TEST(Documents, HaveItemsThatMove)
{
    const QByteArray one = R"({"DF_Params": {"Frequency": 1}})";
    const QByteArray two = R"({"DF_Params": {"Frequency": 2}})";
    const QByteArray port = R"({"OstraInterfacePort": {"Port": 7}})";
    const auto moved =
        differences(message(port + ',' + one + ',' + two), message(one + ',' + two + ',' + port));
    const QString content = QStringLiteral("{OstraInterfacePort: {Port: 7}}");
    EXPECT_EQ(moved, QStringList(QStringLiteral("Fragment[1->3]: %1 -> %1").arg(content)));
    // A second one has no place to move to.
    EXPECT_EQ(differences(message(port + ',' + port + ',' + one + ',' + two),
                          message(one + ',' + two + ',' + port)),
              (QStringList{QStringLiteral("Fragment[1->3]: %1 -> %1").arg(content),
                           QStringLiteral("Fragment[2]: %1 -> ").arg(content)}));
}

TEST(Documents, HaveLongTextsShortenedToWhatDiffers)
{
    const auto shown = [](const QString& first, const QString& second) {
        const auto texts = QuotedWhereDifferent(first, second);
        return texts.first + QStringLiteral(" | ") + texts.second;
    };
    const QString many(80, QLatin1Char('m'));
    EXPECT_EQ(shown(many, many + QLatin1Char('x')),
              QStringLiteral("...\"%1\" | ...\"%1x\"").arg(many.left(20)));
    EXPECT_EQ(shown(many, QLatin1Char('x') + many.mid(1)),
              QStringLiteral("\"%1\" | \"x%2\"").arg(many, many.mid(1)));
    EXPECT_EQ(shown(many + many, many + QLatin1Char('x') + many),
              QStringLiteral("...\"%1%1\"... | ...\"%1x%1\"...").arg(many.left(20)));
    EXPECT_EQ(shown(many + QLatin1Char('a') + many, many + QLatin1Char('b') + many),
              QStringLiteral("...\"%1a%1\"... | ...\"%1b%1\"...").arg(many.left(20)));
    EXPECT_EQ(shown(QString(), QString()), QStringLiteral("\"\" | \"\""));
    // What differs is long itself.
    const QString other(100, QLatin1Char('o'));
    EXPECT_EQ(shown(many, other), QStringLiteral("\"%1\" | \"%2\"...\"%2\"").arg(many, other.left(40)));
    // Both units of a character stay together: here the first 20 characters end between them.
    const QString radio = QString::fromUtf8("\xF0\x9F\x93\xBB");
    EXPECT_EQ(shown(radio.repeated(50), radio.repeated(10) + QLatin1Char('-') + radio.repeated(40)),
              QStringLiteral("\"%1%2\"... | \"%1-%2\"...").arg(radio.repeated(10), radio.repeated(10)));
}

TEST(Documents, HaveDifferencesAsJson)
{
    QJsonArray all;
    CompareRecords(*port(7), *port(8), IgnoredMembers(),
                   [&](const Difference& difference) { all += DifferenceJson(difference); });
    EXPECT_EQ(QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact)),
              QStringLiteral("[{\"first\":7,\"firstPath\":\"Port\",\"kind\":\"changed\",\"second\":8,"
                             "\"secondPath\":\"Port\"}]"));
}

TEST(Documents, CanDifferInIgnoredMembers)
{
    const IgnoredMembers ignored({QStringLiteral("OstraInterfacePort/Port")});
    EXPECT_EQ(differences(portXml, port(8)->GetXmlBytes(), ignored), QStringList());
    try {
        IgnoredMembers({QStringLiteral("DF_Params/Frequenzy")});
        FAIL();
    } catch (const InvalidMemberPath& error) {
        EXPECT_TRUE(error.GetText().endsWith(QStringLiteral("Did you mean Frequency?"))) << error.what();
    }
}

// --- bytes ----------------------------------------------------------------------------------

TEST(Documents, AreDissectedIntoAllTheirBytes)
{
    const QByteArray form = port(7)->GetBinaryRepresentationAsQByteArray();
    const auto parts = partsOf(form);
    QStringList kinds;
    QByteArray bytes;
    for (const Part& part : parts) {
        EXPECT_EQ(part.offset, bytes.size());
        EXPECT_EQ(part.wrong, QString());
        bytes += part.bytes;
        kinds += NameOf(part.kind);
    }
    EXPECT_EQ(bytes, form);
    EXPECT_EQ(kinds.join(QLatin1Char(' ')), QStringLiteral("classId length tag length value"));
    EXPECT_EQ(parts.constLast().meaning, QStringLiteral("7"));
    EXPECT_EQ(parts.constLast().value, QJsonValue(7));
    EXPECT_EQ(parts.constLast().path, QStringLiteral("/OstraInterfacePort/Port"));
    EXPECT_EQ(QString::fromUtf8(QJsonDocument(PartJson(parts.constLast())).toJson(QJsonDocument::Compact)),
              QStringLiteral("{\"bytes\":\"00 00 00 00 00 00 00 07\",\"kind\":\"value\",\"offset\":16,"
                             "\"path\":\"/OstraInterfacePort/Port\",\"value\":7}"));
}

TEST(Documents, AreDissectedHoweverDamagedTheyAre)
{
    const QByteArray form = port(7)->GetBinaryRepresentationAsQByteArray();
    const auto parts = partsOf(form.left(form.size() - 3));
    EXPECT_EQ(parts.constLast().kind, Part::End);
    EXPECT_EQ(parts.constLast().wrong, QStringLiteral("The input ends here; 3 bytes are missing."));
}

TEST(Documents, AreDissectedInTheCompressedForm)
{
    auto record = port(7);
    const QByteArray plain = record->GetBinaryRepresentationAsQByteArray();
    const QByteArray form = record->GetCompressedBinaryRepresentationAsQByteArray(-1);
    QByteArray inside;
    QStringList kinds;
    const auto visit = [&](const Part& part) { kinds += NameOf(part.kind); };
    DissectCompressed(form, inside, visit);
    EXPECT_EQ(inside, plain);
    EXPECT_EQ(kinds.join(QLatin1Char(' ')), QStringLiteral("marker length length inflatedSize compressed"));

    // Forms that are too short must not make it read behind their bytes.
    kinds.clear();
    DissectCompressed(QByteArray(form.constData(), 5), inside, visit);
    EXPECT_EQ(inside, QByteArray());
    EXPECT_EQ(kinds.join(QLatin1Char(' ')), QStringLiteral("undecoded end"));
}

// --- statistics and values ------------------------------------------------------------------

TEST(Documents, AreCounted)
{
    Statistics statistics;
    statistics.Add(ReadDocument(portXml));
    statistics.Add(ReadDocument(portJson));
    statistics.AddUnreadable();
    EXPECT_EQ(statistics.GetDocuments(), 2);
    EXPECT_EQ(statistics.GetUnreadable(), 1);
    const auto tables = statistics.GetTables();
    ASSERT_EQ(tables.size(), 3);
    EXPECT_EQ(tables.at(0).rows.at(0).name, QStringLiteral("xml"));
    EXPECT_EQ(tables.at(0).rows.at(0).numbers,
              (QVector<double>{1, double(portXml.size()), double(portXml.size()), double(portXml.size()),
                               double(portXml.size())}));
    EXPECT_EQ(tables.at(1).rows.at(0).name, QStringLiteral("OstraInterfacePort"));
    EXPECT_EQ(tables.at(1).rows.at(0).numbers, QVector<double>{2});
    EXPECT_EQ(tables.at(2).rows.at(0).name, QStringLiteral("OstraInterfacePort/Port"));
    EXPECT_EQ(tables.at(2).rows.at(0).numbers, (QVector<double>{2, 7, 7}));
}

TEST(Documents, AreSummedUpInALine)
{
    const Document document = ReadDocument(message(R"({"DF_Params": {"Frequency": 1}})"));
    EXPECT_EQ(SummaryText(*document.record), QStringLiteral("{Type: Event (2), Fragment: [1]}"));
}

TEST(Documents, TellEveryMemberAsATree)
{
    EXPECT_EQ(QString::fromUtf8(QJsonDocument(TreeJson(*port(7))).toJson(QJsonDocument::Compact)),
              QStringLiteral(
                  "{\"members\":[{\"name\":\"Port\",\"set\":true,\"type\":\"unsigned integer\",\"value\":7}],"
                  "\"record\":\"OstraInterfacePort\"}"));
}
