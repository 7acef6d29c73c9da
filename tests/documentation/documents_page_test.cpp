// SPDX-License-Identifier: MIT
// The samples of docs/documents.md.

#include "Said.h"
#include "TestSupport.h"

//! [what is included]
#include "documents/Condition.h"
#include "documents/Difference.h"
#include "documents/Dissection.h"
#include "documents/Document.h"
#include "documents/DocumentCheck.h"
#include "documents/DocumentError.h"
#include "documents/FoundMembers.h"
#include "documents/JsonForm.h"
#include "documents/LargeJson.h"
#include "documents/Statistics.h"
#include "documents/Text.h"
#include "documents/Tree.h"
#include "documents/Values.h"

using namespace ROUTERDOCUMENTS;
//! [what is included]

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>

using namespace testing_support;

namespace {

using testing_support::Said;

const char request[] =
    "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Request</Type><MessageID>7</MessageID>"
    "<Fragment><DF_Params><Frequency>98500000.00</Frequency></DF_Params></Fragment>"
    "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";

QByteArray requestWith(const char* before, const char* after)
{
    return QByteArray(request).replace(before, after);
}

class DocumentsPage : public ::testing::Test
{
protected:
    // Expects that the page shows the output of a sample, indented as code.
    static void expectOnPage(const QString& text = Said::texts().join(QLatin1Char('\n')))
    {
        QFile page(projectPath("docs/documents.md"));
        ASSERT_TRUE(page.open(QIODevice::ReadOnly));
        QString indented;
        for (const QString& line : text.trimmed().split(QLatin1Char('\n')))
            indented += QStringLiteral("    ") + line + QLatin1Char('\n');
        EXPECT_TRUE(
            QString::fromUtf8(page.readAll()).contains(QLatin1String("\n\n") + indented + QLatin1Char('\n')))
            << "docs/documents.md must say:\n"
            << indented.toStdString();
        Said::texts().clear();
    }

    QByteArray bytes = request;
    const Said said;
};

} // namespace

TEST_F(DocumentsPage, ReadsAndWritesAnyForm)
{
    //! [reading any form and writing another]
    const Document document = ReadDocument(bytes);
    qInfo().noquote() << document.info->GetName() << NameOf(document.form) << document.size;
    const QByteArray compressed = WriteDocument(*document.record, Form::Compressed);
    //! [reading any form and writing another]
    expectOnPage();
    EXPECT_EQ(ReadDocument(compressed).form, Form::Compressed);

    //! [reading with the record's own class]
    const auto* router =
        dynamic_cast<PELLU300ROUTERINTERFACEXML::PelLu300RouterInterfaceXml*>(document.record.get());
    //! [reading with the record's own class]
    EXPECT_NE(router, nullptr);
}

TEST_F(DocumentsPage, TellsWhatIsWrong)
{
    bytes = requestWith("Request", "Replay");
    //! [telling what is wrong]
    try {
        ReadDocument(bytes, {Form::Xml, Validation::On});
    } catch (const DocumentError& error) {
        const MODELKIT::Place& place = error.GetPlace();
        qInfo().noquote() << place.line << place.column << Printable(error.GetText());
    }
    //! [telling what is wrong]
    expectOnPage();
}

TEST_F(DocumentsPage, ListsAllThatIsWrong)
{
    bytes = "{\"PelLu300RouterInterfaceXml\": {\"PelLu300RouterMessage\": {\n"
            "  \"Type\": \"Replay\",\n"
            "  \"MessageId\": 7,\n"
            "  \"Success\": 1\n"
            "}}}\n";
    //! [listing all errors]
    CheckingOptions options;
    options.maximalErrors = 2;
    const CheckedDocument checked = CheckDocument(bytes, options);
    for (const DocumentError& error : checked.errors)
        qInfo().noquote() << error.GetPlace().line << Printable(error.GetText());
    qInfo() << checked.unlistedErrors << "more";
    //! [listing all errors]
    expectOnPage();
}

TEST_F(DocumentsPage, GoesToJsonAndBack)
{
    const Document document = ReadDocument(bytes);
    //! [JSON both ways]
    const QByteArray json = ToJson(*document.record);
    const std::unique_ptr<MODELKIT::IMKObject> copy = FromJson(json, Validation::On);
    //! [JSON both ways]
    expectOnPage(QString::fromUtf8(json));
    EXPECT_EQ(ToJson(*copy), json);
}

TEST_F(DocumentsPage, FindsDifferences)
{
    const Document first = ReadDocument(bytes);
    const Document second =
        ReadDocument(requestWith("<Fragment>", "<Fragment><AcquireMastership/></Fragment><Fragment>")
                         .replace("98500000", "99100000")
                         .replace(">7<", ">8<"));
    //! [finding differences]
    const IgnoredMembers ignored({"MessageID"});
    CompareRecords(*first.record, *second.record, ignored, [](const Difference& difference) {
        qInfo().noquote() << NameOf(difference.kind) << difference.path.ToText() + ':' << difference.first
                          << "->" << difference.second;
    });
    //! [finding differences]
    expectOnPage();
}

TEST_F(DocumentsPage, ShowsMembers)
{
    const Document document =
        ReadDocument("<PelVtConnectServer><Address>a&#9;b</Address></PelVtConnectServer>");
    //! [going over the members of any record]
    for (const auto* member : document.info->GetMembers())
        qInfo().noquote() << member->GetName() << TypeName(*member) << MemberText(*document.record, *member);
    //! [going over the members of any record]
    expectOnPage();
    //! [a record as a tree]
    const QJsonDocument tree(TreeJson(*document.record));
    qInfo().noquote() << ShowableJson(QString::fromUtf8(tree.toJson()));
    //! [a record as a tree]
    expectOnPage();
}

TEST_F(DocumentsPage, FindsMembers)
{
    const Document document = ReadDocument(bytes);
    //! [looking for members]
    const PathPattern frequency(QStringLiteral("DF_Params/Frequency"));
    const Condition isHigh(QStringLiteral("Type=Request and DF_Params/Frequency>98e6"));
    if (isHigh.Holds(*document.record))
        FindMembers(*document.record, frequency, [](const FoundMember& found) {
            qInfo().noquote() << found.path.ToText() << found.ToText();
            return true;
        });
    //! [looking for members]
    expectOnPage();
}

TEST_F(DocumentsPage, RefusesWrongConditions)
{
    //! [a wrong condition]
    try {
        const Condition condition(QStringLiteral("Type=Replay"));
    } catch (const InvalidCondition& error) {
        qInfo().noquote() << error.GetText();
    }
    //! [a wrong condition]
    expectOnPage();
}

TEST_F(DocumentsPage, ExplainsBytes)
{
    const QByteArray form = WriteDocument(
        *ReadDocument("<OstraInterfacePort><Port>7</Port></OstraInterfacePort>").record, Form::Binary);
    //! [explaining every byte]
    DissectPlain(form, [](const Part& part) {
        qInfo().noquote() << part.offset << part.bytes.toHex(' ') << "-" << part.meaning + part.wrong;
    });
    //! [explaining every byte]
    expectOnPage();
}

TEST_F(DocumentsPage, CountsDocuments)
{
    const QList<QByteArray> recordings = {bytes, requestWith("Request", "Event"), "no document"};
    //! [counting what documents hold]
    Statistics statistics;
    for (const QByteArray& recording : recordings) {
        try {
            statistics.Add(ReadDocument(recording));
        } catch (const DocumentError&) {
            statistics.AddUnreadable();
        }
    }
    for (const StatisticsTable& table : statistics.GetTables()) {
        qInfo().noquote() << table.title << table.columns.join(' ');
        for (const StatisticsTable::Row& row : table.rows)
            if (row.numbers.first() > 0)
                qInfo().noquote() << " " << row.name << row.numbers.first();
    }
    //! [counting what documents hold]
    expectOnPage();
}

TEST_F(DocumentsPage, WritesLargeResults)
{
    const Document first = ReadDocument(bytes);
    const Document second = ReadDocument(requestWith(">7<", ">8<"));
    QString text;
    //! [writing results while they are found]
    LargeJson json([&text](const QString& piece) { text += piece; });
    json.BeginList("differences");
    CompareRecords(*first.record, *second.record, IgnoredMembers(),
                   [&json](const Difference& difference) { json.AddItem(DifferenceJson(difference)); });
    json.EndList();
    json.End();
    //! [writing results while they are found]
    expectOnPage(text);
}
