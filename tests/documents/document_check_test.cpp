// SPDX-License-Identifier: MIT
// CheckDocument() finds everything that is wrong with a document.
#include "TestSupport.h"

#include "documents/DocumentCheck.h"

#include "modelkit/Limits.h"
#include "modelkit/XmlPlaces.h"

#include <QtCore/QStringList>

#include <vector>

using namespace ROUTERDOCUMENTS;
using MODELKIT::Failure;
using MODELKIT::ReadingReport;

namespace {

const QString messagePath = QStringLiteral("/PelLu300RouterInterfaceXml/PelLu300RouterMessage");

// A line of a document, and what a record says about it; nothing if it is right.
struct Line
{
    QByteArray xml;
    QString refusal = {};
};

const std::vector<Line> fragments = {
    {"<Fragment><MastershipState><State>Nobody</State></MastershipState></Fragment>",
     QStringLiteral(
         "enum is not valid (classname=MastershipState,membername=m_state): \"Nobody\". Possible are "
         "NoMasterPresent, MasterPresent and RouterIsMaster.")},
    {"<Fragment><MastershipState><State>MasterPresent</State></MastershipState></Fragment>"},
    {"<Fragment><MastershipState><State/></MastershipState></Fragment>",
     QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state): \"\". Possible are "
                    "NoMasterPresent, MasterPresent and RouterIsMaster.")},
    {"<Fragment><AcquireMastership><Success></Success></AcquireMastership></Fragment>",
     QStringLiteral("Please set a value or a default for the boolean 'Success' in 'AcquireMastership'.")},
    {"<Fragment><Unknown/></Fragment>",
     QStringLiteral(
         "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.")},
    {"<Fragment><MastershipState><State>masterpresent</State></MastershipState></Fragment>",
     QStringLiteral(
         "enum is not valid (classname=MastershipState,membername=m_state): \"masterpresent\". Did you "
         "mean MasterPresent?")},
};

const Line noType = {"", QStringLiteral("PelLu300RouterMessage: Please set Type properly.")};
const Line wrongType = {
    "<Type>1</Type>",
    QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type): \"1\". "
                   "Possible are Request (number 0), Reply (number 1) and Event (number 2).")};
const Line goodType = {"<Type>Reply</Type>"};

QByteArray documentOf(const std::vector<Line>& lines)
{
    QByteArray xml = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage>\n";
    for (const Line& line : lines)
        xml += line.xml + '\n';
    return xml + "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
}

QStringList refusalsIn(const std::vector<Line>& lines)
{
    QStringList texts;
    for (const Line& line : lines)
        if (!line.refusal.isNull())
            texts += line.refusal;
    return texts;
}

QStringList textsOf(const CheckedDocument& checked)
{
    QStringList texts;
    for (const DocumentError& error : checked.errors)
        texts += error.GetText();
    return texts;
}

DocumentError firstError(const QByteArray& bytes)
{
    try {
        ReadDocument(bytes, {std::nullopt, Validation::On});
    } catch (const DocumentError& error) {
        return error;
    }
    return DocumentError(Failure());
}

// The documents with any of the fragments behind the line.
template <class Test>
void forEachDocument(const Line& first, const Test& test)
{
    for (unsigned int chosen = 0; chosen < 1U << fragments.size(); ++chosen) {
        std::vector<Line> lines = {first};
        for (std::size_t i = 0; i < fragments.size(); ++i)
            if (chosen & (1U << i))
                lines.push_back(fragments[i]);
        test(lines);
    }
}

// A fragment in JSON, and what is wrong with it; nothing if it is right.
struct Item
{
    QByteArray json;
    QStringList refusals = {};
};

const std::vector<Item> items = {
    {"{\"DF_Params\": {\"Frequency\": 1, \"Bandwidth\": \"NaN\"}}"},
    {"{\"MastershipState\": {\"State\": \"masterpresent\", \"MasterClientID\": null}}",
     {QStringLiteral(
          "\"masterpresent\" is none of NoMasterPresent, MasterPresent and RouterIsMaster. Did you "
          "mean MasterPresent?"),
      QStringLiteral("MastershipState: Please set MasterClientID properly.")}},
    {"{\"PelVtConnectServer\": {\"Port\": 4294967296, \"Prot\": {\"Port\": [true, null]}, \"Port\": 1}}",
     {QStringLiteral("4294967296 is no whole number from 0 to 4294967295."),
      QStringLiteral("PelVtConnectServer has no member \"Prot\". Did you mean Port?"),
      QStringLiteral("The key \"Port\" comes twice in its object.")}},
    {"{}",
     {QStringLiteral(
         "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.")}},
    {"[{\"DF_Params\": 1}]", {QStringLiteral("The value is an array, expected is an object.")}},
    {"{\"AcquireMastership\": {\"Success\": 1}, \"DF_Params\": {}}",
     {QStringLiteral("The value is a number, expected is a truth value."),
      QStringLiteral("Fragment carries one of its members at a time; here are AcquireMastership and "
                     "DF_Params.")}},
};

QByteArray jsonOf(const QByteArray& before, const std::vector<Item>& chosen)
{
    QByteArray json = "{\"PelLu300RouterInterfaceXml\": {\"PelLu300RouterMessage\": {" + before
                      + "\"MessageID\": 1, \"Fragment\": [";
    for (const Item& item : chosen)
        json += (json.endsWith('[') ? "\n" : ",\n") + item.json;
    return json + "]}}}";
}

// JSON documents with any of the items, and what is wrong with them.
template <class Test>
void forEachJson(const Test& test)
{
    for (const bool hasType : {true, false})
        for (unsigned int chosen = 0; chosen < 1U << items.size(); ++chosen) {
            std::vector<Item> of;
            QStringList refusals;
            if (!hasType)
                refusals += noType.refusal;
            for (std::size_t i = 0; i < items.size(); ++i)
                if (chosen & (1U << i)) {
                    of.push_back(items[i]);
                    refusals += items[i].refusals;
                }
            test(jsonOf(hasType ? "\"Type\": \"Reply\", " : "", of), refusals);
        }
}

QByteArray binaryOf(const QByteArray& xml, Form form = Form::Binary)
{
    return WriteDocument(*ReadDocument(xml).record, form);
}

} // namespace

TEST(DocumentCheckTest, FindsEveryRefusalInTheOrderOfTheDocument)
{
    for (const Line& type : {noType, wrongType, goodType})
        forEachDocument(type, [](const std::vector<Line>& lines) {
            const QByteArray xml = documentOf(lines);
            const CheckedDocument checked = CheckDocument(xml);
            EXPECT_EQ(textsOf(checked), refusalsIn(lines)) << xml.constData();
            EXPECT_EQ(checked.unlistedErrors, 0);
            EXPECT_NE(checked.document.record, nullptr);
        });
}

TEST(DocumentCheckTest, ListsTheErrorOfReadingWithItsTextAndPlace)
{
    for (const Line& type : {noType, wrongType, goodType})
        forEachDocument(type, [](const std::vector<Line>& lines) {
            const QByteArray xml = documentOf(lines);
            const DocumentError first = firstError(xml);
            int listed = 0;
            for (const DocumentError& error : CheckDocument(xml).errors)
                listed += error.GetText() == first.GetText()
                                  && error.GetPlace().ToString() == first.GetPlace().ToString()
                                  && error.GetPlace().path == first.GetPlace().path
                              ? 1
                              : 0;
            EXPECT_EQ(listed, first.GetText().isEmpty() ? 0 : 1) << xml.constData();
        });
}

TEST(DocumentCheckTest, NamesTheLineOfEveryError)
{
    const CheckedDocument checked =
        CheckDocument(documentOf({noType, fragments[0], fragments[3], fragments[4]}));
    ASSERT_EQ(checked.errors.size(), 4U);
    EXPECT_EQ(checked.errors[0].GetPlace().line, 1);
    EXPECT_EQ(checked.errors[0].GetPlace().path, messagePath);
    EXPECT_EQ(checked.errors[1].GetPlace().line, 3);
    EXPECT_EQ(checked.errors[1].GetPlace().path,
              messagePath + QStringLiteral("/Fragment/MastershipState/State"));
    EXPECT_EQ(checked.errors[2].GetPlace().line, 4);
    EXPECT_EQ(checked.errors[2].GetPlace().column, 30);
    EXPECT_EQ(checked.errors[3].GetPlace().line, 5);
    EXPECT_EQ(checked.errors[3].GetPlace().path, messagePath + QStringLiteral("/Fragment[3]"));
}

// In the binary form a boolean cannot be empty, and the invalid enumerator has no text.
TEST(DocumentCheckTest, FindsEveryRefusalInBinaryForms)
{
    for (const Form form : {Form::Binary, Form::Compressed})
        forEachDocument(wrongType, [form](const std::vector<Line>& lines) {
            int wrong = 0;
            for (const Line& line : lines)
                wrong += line.refusal.isNull() || line.xml.contains("Success") ? 0 : 1;
            const QByteArray bytes = binaryOf(documentOf(lines), form);
            const CheckedDocument checked = CheckDocument(bytes);
            ASSERT_EQ(static_cast<int>(checked.errors.size()), wrong) << bytes.toHex().constData();
            EXPECT_EQ(checked.errors[0].GetText(), firstError(bytes).GetText());
            EXPECT_EQ(checked.errors[0].GetPlace().offset, firstError(bytes).GetPlace().offset);
            qint64 offset = 0;
            for (const DocumentError& error : checked.errors) {
                EXPECT_GT(error.GetPlace().offset, offset);
                offset = error.GetPlace().offset;
            }
        });
}

TEST(DocumentCheckTest, FindsNullTextsInBinaryForms)
{
    testing_support::Fragment fragment;
    testing_support::MastershipState state;
    state.SetMasterClientID(QString());
    fragment.SetMastershipState(state);
    const CheckedDocument checked = CheckDocument(WriteDocument(fragment, Form::Binary));
    ASSERT_EQ(checked.errors.size(), 1U);
    EXPECT_EQ(checked.errors[0].GetText(),
              QStringLiteral("MastershipState: Please set MasterClientID properly."));
    EXPECT_EQ(checked.errors[0].GetPlace().offset, 16);
}

// What came again has a number in its path, but not in the record.
TEST(DocumentCheckTest, CountsWhatComesAgainOnce)
{
    const Line typeAgain = {"<Type>Reply</Type><Type>1</Type>", wrongType.refusal};
    const Line stateAgain = {"<Fragment><MastershipState><State>MasterPresent</State></MastershipState>"
                             "<MastershipState><State>Nobody</State></MastershipState></Fragment>",
                             fragments[0].refusal};
    const QByteArray xml = documentOf({typeAgain, stateAgain, fragments[4]});
    EXPECT_EQ(textsOf(CheckDocument(xml)), refusalsIn({typeAgain, stateAgain, fragments[4]}));
    const std::vector<DocumentError> errors = CheckDocument(xml).errors;
    EXPECT_EQ(errors.at(0).GetPlace().column, 19);
    EXPECT_EQ(errors.at(1).GetPlace().line, 3);
}

TEST(DocumentCheckTest, TellsNothingWrongWhenTheReportIsFull)
{
    const QByteArray unusual = QByteArray("<a/>").repeated(ReadingReport::maximalEntries);
    const CheckedDocument checked =
        CheckDocument(documentOf({wrongType, {unusual}, fragments[0], fragments[2]}));
    EXPECT_GT(checked.dropped, 0);
    EXPECT_EQ(textsOf(checked), QStringList(wrongType.refusal));
}

TEST(DocumentCheckTest, ListsNoMoreErrorsThanWanted)
{
    const std::vector<Line> lines(50, fragments[0]);
    const CheckedDocument usual = CheckDocument(documentOf(lines));
    EXPECT_EQ(usual.errors.size(), 20U);
    EXPECT_EQ(usual.unlistedErrors, 31);
    const CheckedDocument few = CheckDocument(documentOf(lines), {std::nullopt, 1});
    EXPECT_EQ(textsOf(few), QStringList(noType.refusal));
    EXPECT_EQ(few.unlistedErrors, 50);
    const CheckedDocument all = CheckDocument(documentOf(lines), {std::nullopt, 0});
    EXPECT_EQ(all.errors.size(), 51U);
    EXPECT_EQ(all.unlistedErrors, 0);
}

TEST(DocumentCheckTest, EndsWhereNothingCanBeRead)
{
    const QByteArray xml = documentOf({wrongType, fragments[0], fragments[2]});
    const CheckedDocument torn = CheckDocument(xml.left(xml.size() - 3));
    ASSERT_EQ(torn.errors.size(), 4U);
    EXPECT_EQ(textsOf(torn).mid(0, 3), refusalsIn({wrongType, fragments[0], fragments[2]}));
    EXPECT_EQ(torn.errors[3].GetKind(), Failure::NotWellFormed);
    EXPECT_EQ(torn.document.record, nullptr);

    QByteArray binary = binaryOf(xml);
    const auto lastLength = binary.size() - 5;
    binary[lastLength] = 77;
    const CheckedDocument broken = CheckDocument(binary);
    ASSERT_FALSE(broken.errors.empty());
    EXPECT_TRUE(broken.errors.back().GetText().contains(QStringLiteral("Length error")));
}

TEST(DocumentCheckTest, ListsAnErrorThatEndsReadingOnce)
{
    for (const QByteArray& bytes : {QByteArray("<DF_Params>"), QByteArray("\x7F\x01\x2E\xB8\0\0\0\x09", 8),
                                    QByteArray("{\"DF_Params\": {\"Frequencyy\": 1}}")}) {
        const CheckedDocument checked = CheckDocument(bytes);
        EXPECT_EQ(checked.errors.size(), 1U) << bytes.constData();
        EXPECT_EQ(checked.document.record, nullptr);
    }
}

TEST(DocumentCheckTest, KeepsErrorsApartFromWhatIsAccepted)
{
    const auto kindsIn = [](const std::vector<Line>& lines) {
        QVector<int> kinds;
        for (const ReadingReport::Entry& entry : CheckDocument(documentOf(lines)).accepted)
            kinds += entry.kind;
        return kinds;
    };
    const Line unusual = {"<MessageID unit='none'>many</MessageID>"};
    const QVector<int> expected = {ReadingReport::Attribute, ReadingReport::NotANumber};
    EXPECT_EQ(kindsIn({goodType, unusual}), expected);
    EXPECT_EQ(kindsIn({noType, unusual, fragments[0], fragments[2], fragments[3]}), expected);
}

TEST(DocumentCheckTest, ReportsOfTheCallerGetNothing)
{
    const ReadingReport report;
    CheckDocument(documentOf({noType, fragments[0]}));
    EXPECT_TRUE(report.GetEntries().isEmpty());
}

TEST(DocumentCheckTest, PlacesInXmlAreFoundTogether)
{
    const QByteArray xml = "<a>\n<b/>\n<c><b/></c>\n<b/></a>";
    const QStringList paths = {QStringLiteral("/a/b[2]"), QStringLiteral("/a/nothing"),
                               QStringLiteral("/a/c/b"), QStringLiteral("/a/b"), QStringLiteral("/a/b[2]")};
    const QVector<MODELKIT::Place> places = MODELKIT::FindInXml(xml, paths);
    ASSERT_EQ(places.size(), paths.size());
    for (int i = 0; i < paths.size(); ++i) {
        EXPECT_EQ(places.at(i).path, paths.at(i));
        EXPECT_EQ(places.at(i).line, MODELKIT::FindInXml(xml, paths.at(i)).line);
        EXPECT_EQ(places.at(i).column, MODELKIT::FindInXml(xml, paths.at(i)).column);
    }
    EXPECT_EQ(places.at(0).line, 4);
    EXPECT_EQ(places.at(1).line, 0);
}

TEST(DocumentCheckTest, FindsEveryErrorInJsonInTheOrderOfTheDocument)
{
    forEachJson([](const QByteArray& json, const QStringList& refusals) {
        const CheckedDocument checked = CheckDocument(json);
        EXPECT_EQ(textsOf(checked), refusals) << json.constData();
        for (const DocumentError& error : checked.errors) {
            EXPECT_GT(error.GetPlace().line, 0) << json.constData();
            EXPECT_GT(error.GetPlace().column, 0) << json.constData();
            EXPECT_TRUE(error.GetPlace().path.startsWith(QStringLiteral("$."))) << json.constData();
        }
    });
}

TEST(DocumentCheckTest, ListsTheErrorOfReadingJsonWithItsTextAndPlace)
{
    forEachJson([](const QByteArray& json, const QStringList&) {
        const DocumentError first = firstError(json);
        int listed = 0;
        for (const DocumentError& error : CheckDocument(json).errors)
            listed += error.GetText() == first.GetText() && error.GetKind() == first.GetKind()
                              && error.GetPlace().ToString() == first.GetPlace().ToString()
                              && error.GetPlace().path == first.GetPlace().path
                          ? 1
                          : 0;
        EXPECT_EQ(listed, first.GetText().isEmpty() ? 0 : 1) << json.constData();
    });
}

TEST(DocumentCheckTest, EndsWhereATextIsNoJson)
{
    const QByteArray json = jsonOf("", {items[1], items[2]});
    for (int size = 0; size < json.size(); ++size) {
        const CheckedDocument checked = CheckDocument(json.left(size), {Form::Json});
        ASSERT_FALSE(checked.errors.empty()) << size;
        EXPECT_EQ(checked.errors.back().GetKind(), Failure::NotWellFormed) << size;
        EXPECT_EQ(checked.document.record, nullptr);
        // That the type is missing is certain where its record ends.
        const bool hasWholeMessage = size > json.size() - 3;
        QStringList before = items[1].refusals + items[2].refusals;
        if (hasWholeMessage)
            before.prepend(noType.refusal);
        while (before.size() >= static_cast<int>(checked.errors.size()))
            before.removeLast();
        EXPECT_EQ(textsOf(checked).mid(0, static_cast<int>(checked.errors.size()) - 1), before) << size;
    }
}

TEST(DocumentCheckTest, GivesAJsonDocumentThatOnlyTheRulesRefuse)
{
    const CheckedDocument refused = CheckDocument(jsonOf("", {items[0], items[3]}));
    ASSERT_EQ(refused.errors.size(), 2U);
    EXPECT_NE(refused.document.record, nullptr);
    EXPECT_EQ(CheckDocument(jsonOf("", {items[2]})).document.record, nullptr);
}

TEST(DocumentCheckTest, ReportsWhatIsRoundedInJsonWithErrors)
{
    const CheckedDocument checked = CheckDocument(
        jsonOf("", {{"{\"DF_Params\": {\"Frequency\": 0.12345678901234567890, \"Bandwidth\": true}}"}}));
    EXPECT_EQ(checked.errors.size(), 2U);
    ASSERT_EQ(checked.accepted.size(), 1);
    EXPECT_EQ(checked.accepted.constFirst().kind, ReadingReport::LostDecimals);
}

TEST(DocumentCheckTest, CountsTheErrorsOfJsonThatItDoesNotList)
{
    constexpr int many = CheckingOptions::mostErrorsOfJson + 5;
    const std::vector<Item> wrong(many, items[4]);
    const CheckedDocument usual = CheckDocument(jsonOf("", wrong));
    EXPECT_EQ(usual.errors.size(), 20U);
    EXPECT_EQ(usual.unlistedErrors, many + 1 - 20);
    // It is found last and stands first.
    EXPECT_EQ(usual.errors.front().GetText(), noType.refusal);
    const CheckedDocument all = CheckDocument(jsonOf("", wrong), {std::nullopt, 0});
    EXPECT_EQ(all.errors.size(), static_cast<std::size_t>(CheckingOptions::mostErrorsOfJson));
    EXPECT_EQ(all.unlistedErrors, 6);
}

TEST(DocumentCheckTest, EndsAtALimitOfJson)
{
    MODELKIT::Limits limits;
    limits.listItems = 2;
    const MODELKIT::LimitsInScope inScope(limits);
    const CheckedDocument checked = CheckDocument(jsonOf("", {items[4], items[0], items[0], items[4]}));
    ASSERT_EQ(checked.errors.size(), 2U);
    EXPECT_EQ(checked.errors.front().GetText(), items[4].refusals.constFirst());
    EXPECT_EQ(checked.errors.back().GetKind(), Failure::TooManyItems);
}

TEST(DocumentCheckTest, FindsEveryRefusalInFrontOfTheEndOfXml)
{
    forEachDocument(wrongType, [](const std::vector<Line>& lines) {
        const QByteArray whole = documentOf(lines);
        for (const QByteArray& end : {QByteArray("</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"),
                                      QByteArray("/PelLu300RouterInterfaceXml>")}) {
            const CheckedDocument checked = CheckDocument(whole.left(whole.size() - end.size()));
            ASSERT_FALSE(checked.errors.empty());
            EXPECT_EQ(textsOf(checked).mid(0, static_cast<int>(checked.errors.size()) - 1),
                      refusalsIn(lines));
            EXPECT_EQ(checked.errors.back().GetKind(), Failure::NotWellFormed);
        }
    });
}

// The elements that are open may have held what is missing. Every beginning of a document is tried.
TEST(DocumentCheckTest, TellsNothingAboutElementsWithoutEnd)
{
    const std::vector<Line> lines = {wrongType, fragments[0], fragments[2], fragments[3], fragments[4]};
    const QByteArray xml = documentOf(lines);
    const QStringList refusals = refusalsIn(lines);
    for (int size = 1; size < xml.size(); ++size) {
        // With a byte order mark, which is no character of the text.
        const CheckedDocument checked = CheckDocument("\xEF\xBB\xBF" + xml.left(size), {Form::Xml});
        ASSERT_FALSE(checked.errors.empty()) << size;
        EXPECT_EQ(checked.errors.back().GetKind(), Failure::NotWellFormed) << size;
        const QStringList before = textsOf(checked).mid(0, static_cast<int>(checked.errors.size()) - 1);
        EXPECT_EQ(before, refusals.mid(0, before.size())) << size;
        // The end tag of the message is there.
        if (size > xml.size() - 10) {
            EXPECT_EQ(before, refusals);
        }
    }
}
