// SPDX-License-Identifier: MIT
// Compares the schema, which is written by hand, with the output of the records: every complete document is
// valid, and documents with mistakes are not.
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMap>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <limits>
#include <string>

using namespace testing_support;

namespace {

// Examples that show what reading tolerates but the schema does not.
constexpr const char* lenient[] = {"reply-from-a-newer-router.xml", "reply-release-mastership.xml",
                                   "request-annotated-by-hand.xml"};

// Documents by name.
using Documents = QMap<QString, QByteArray>;

// The complaints of xmllint about each document; empty for valid ones. Each begins with the name of the file.
QMap<QString, QString> complaints(const Documents& documents)
{
    const QTemporaryDir folder;
    QStringList arguments{QStringLiteral("--noout"), QStringLiteral("--nonet"), QStringLiteral("--schema"),
                          projectPath("schema/router.xsd")};
    QMap<QString, QString> fileNames;
    for (auto i = documents.cbegin(); i != documents.cend(); ++i) {
        const QString path =
            folder.filePath(QStringLiteral("%1.xml").arg(fileNames.size(), 4, 10, QLatin1Char('0')));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(i.value()) == i.value().size());
        fileNames.insert(i.key(), path);
        arguments.append(path);
    }
    QProcess lint;
    lint.setProcessChannelMode(QProcess::MergedChannels);
    lint.start(QStringLiteral("xmllint"), arguments);
    EXPECT_TRUE(lint.waitForStarted()) << "xmllint does not run; it is in the Debian package libxml2-utils";
    EXPECT_TRUE(lint.waitForFinished(60000)) << "xmllint does not end";
    const QStringList lines = QString::fromUtf8(lint.readAll()).split(QLatin1Char('\n'));

    QMap<QString, QString> found;
    for (auto i = fileNames.cbegin(); i != fileNames.cend(); ++i) {
        if (lines.contains(i.value() + QStringLiteral(" validates")))
            found.insert(i.key(), QString());
        else
            found.insert(i.key(),
                         QStringLiteral("xmllint: ") + lines.filter(i.value()).join(QLatin1Char('\n')));
    }
    return found;
}

void expectValid(const Documents& documents)
{
    ASSERT_FALSE(documents.isEmpty());
    auto found = complaints(documents);
    const auto all = found.size();
    for (auto i = found.begin(); i != found.end();)
        i = i.value().isEmpty() ? found.erase(i) : std::next(i);
    if (found.isEmpty())
        return;
    ADD_FAILURE() << "schema/router.xsd does not describe what the records write; edit it. " << found.size()
                  << " of " << all << " documents are refused, the first of them is "
                  << found.firstKey().toStdString() << ":\n"
                  << documents.value(found.firstKey()).constData() << "\n"
                  << found.first().toStdString();
}

Documents examples()
{
    Documents documents;
    const QDir folder(projectPath("examples/documents"));
    for (const QString& name : folder.entryList({QStringLiteral("*.xml")})) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        documents.insert(name, file.readAll());
    }
    return documents;
}

// The XML document with that message.
QByteArray around(const QByteArray& message)
{
    return "<PelLu300RouterInterfaceXml>" + message + "</PelLu300RouterInterfaceXml>";
}

QByteArray aroundFragment(const QByteArray& fragment)
{
    return around("<PelLu300RouterMessage><Type>Reply</Type>" + fragment + "</PelLu300RouterMessage>");
}

// The XML document with the element of a record, inside the elements of its owners.
QByteArray document(const QByteArray& element, const QString& className)
{
    if (className == RecordInfo::Document().GetName())
        return element;
    if (className == QLatin1String("PelLu300RouterMessage"))
        return around(element);
    if (className == QLatin1String("Fragment"))
        return aroundFragment(element);
    return aroundFragment("<Fragment>" + element + "</Fragment>");
}

// One of a few values of each kind, chosen by the number.
QVariant valueFor(const MemberInfo& member, int number)
{
    static const double decimals[] = {98.5e6,
                                      -0.001,
                                      1e23,
                                      std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::infinity(),
                                      -std::numeric_limits<double>::infinity()};
    static const uint numbers[] = {5000, 0, std::numeric_limits<uint>::max()};
    static const QString texts[] = {QStringLiteral("R&D <\"North\">"), empty(),
                                    QStringLiteral("\u6771\u4EAC ]]> \n")};
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return numbers[number % 3];
    case MemberInfo::Decimal:
        return decimals[number % 6];
    case MemberInfo::Boolean:
        return number % 2 == 0;
    case MemberInfo::Text:
        return texts[number % 3];
    default:
        return number % static_cast<int>(member.GetNames().size());
    }
}

// Sets every member. Each member of a choice gets its own list item.
void fill(MODELKIT::IMKObject& record, const RecordInfo& info, int number)
{
    for (const MemberInfo* member : info.GetMembers()) {
        if (member->GetKind() == MemberInfo::Record) {
            fill(member->EditRecord(record), *member->GetClass(), number);
        } else if (member->GetKind() == MemberInfo::List) {
            for (const MemberInfo* payload : member->GetClass()->GetMembers()) {
                const auto item = member->GetClass()->Create();
                fill(payload->EditRecord(*item), *payload->GetClass(), number);
                member->AppendItem(record, *item);
            }
        } else {
            member->SetValue(record, valueFor(*member, number));
        }
    }
}

TEST(Schema, takesTheExamples)
{
    Documents documents = examples();
    for (const char* name : lenient)
        EXPECT_EQ(documents.remove(QString::fromLatin1(name)), 1) << name;
    expectValid(documents);
}

TEST(Schema, takesTheExamplesAsTheyAreWrittenAgain)
{
    Documents documents = examples();
    for (auto i = documents.begin(); i != documents.end(); ++i) {
        PelLu300RouterInterfaceXml record;
        record.SetValidate(true);
        ASSERT_TRUE(record.SetXmlBytes(i.value())) << i.key().toStdString();
        i.value() = xmlOf(record).toUtf8();
    }
    expectValid(documents);
}

TEST(Schema, takesWhatConformingRecordsWrite)
{
    Documents documents;
    const QDir folder(projectPath("tests/conformance"));
    for (const QString& name : folder.entryList({QStringLiteral("*.json")})) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QJsonValue& each : QJsonDocument::fromJson(file.readAll()).array()) {
            const QJsonObject test = each.toObject();
            const QByteArray xml = test[QStringLiteral("xml")].toString().toUtf8();
            // Cases without output have no document, and those without validation may be incomplete.
            if (test[QStringLiteral("validation")].toBool() && !xml.isEmpty())
                documents.insert(name + QStringLiteral(": ") + test[QStringLiteral("name")].toString(),
                                 document(xml, test[QStringLiteral("record")].toString()));
        }
    }
    EXPECT_GT(documents.size(), 50);
    expectValid(documents);
}

TEST(Schema, takesEveryRecordWithEveryMemberSet)
{
    Documents documents;
    for (int number = 0; number < 6; ++number) {
        PelLu300RouterInterfaceXml record;
        record.SetValidate(true);
        fill(record, RecordInfo::Document(), number);
        const QByteArray xml = xmlOf(record).toUtf8();
        // Every class and every member must have its element.
        for (const RecordInfo* info : RecordInfo::All()) {
            EXPECT_TRUE(xml.contains('<' + info->GetName().toUtf8() + '>')) << info->GetName().toStdString();
            for (const MemberInfo* member : info->GetMembers())
                EXPECT_TRUE(xml.contains('<' + member->GetName().toUtf8() + '>'))
                    << member->GetName().toStdString();
        }
        documents.insert(QString::number(number), xml);
    }
    expectValid(documents);
}

TEST(Schema, takesEveryRecordWithAnyOneMemberAlone)
{
    Documents documents;
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers()) {
            if (member->GetClass() || info->GetName() == QLatin1String("PelLu300RouterMessage"))
                continue; // a message is complete with its type only
            for (int number = 0; number < 6; ++number) {
                const auto record = info->Create();
                member->SetValue(*record, valueFor(*member, number));
                documents.insert(info->GetName() + member->GetName() + QString::number(number),
                                 document(xmlOf(*record).toUtf8(), info->GetName()));
            }
        }
    EXPECT_TRUE(documents.contains(QStringLiteral("DF_ParamsFrequency0")));
    expectValid(documents);
}

struct Mistake
{
    const char* element;
    QByteArray document;
};

TEST(Schema, refusesMistakes)
{
    const QByteArray port = "<OstraInterfacePort><Port>1</Port></OstraInterfacePort>";
    const QVector<Mistake> mistakes{
        {"Message", "<Message/>"},
        {"PelLu300RouterMessage", "<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"},
        {"PelLu300RouterMessage", around("<PelLu300RouterMessage/><PelLu300RouterMessage/>")},
        {"PelLu300RouterInterfaceXml", around("text")},
        {"PelLu300RouterInterfaceXml", "<PelLu300RouterInterfaceXml version=\"1\"/>"},
        {"Transport", around("<Transport/>")},
        {"Type", around("<PelLu300RouterMessage><Type/></PelLu300RouterMessage>")},
        {"Type", around("<PelLu300RouterMessage><Type>request</Type></PelLu300RouterMessage>")},
        {"Type",
         around("<PelLu300RouterMessage><MessageID>1</MessageID><Type>Reply</Type></PelLu300RouterMessage>")},
        {"MessageID", aroundFragment("<MessageID>-1</MessageID>")},
        {"MessageID", aroundFragment("<MessageID>4294967296</MessageID>")},
        {"MessageID", aroundFragment("<MessageID>1</MessageID><MessageID>1</MessageID>")},
        {"MessageID", aroundFragment("<Fragment/><MessageID>1</MessageID>")},
        {"OstraInterfacePort", aroundFragment(port)},
        {"OstraInterfacePort", aroundFragment("<Fragment>" + port + port + "</Fragment>")},
        {"Nothing", aroundFragment("<Fragment><Nothing/></Fragment>")},
        {"Port", aroundFragment("<Fragment><RouterVtServerPort><Port/></RouterVtServerPort></Fragment>")},
        {"Address", aroundFragment("<Fragment><PelVtConnectServer><Port>1</Port><Address>a</Address>"
                                   "</PelVtConnectServer></Fragment>")},
        {"Success",
         aroundFragment(
             "<Fragment><AcquireMastership><Success>yes</Success></AcquireMastership></Fragment>")},
        {"Reason", aroundFragment("<Fragment><ReleaseMastership><Reason/></ReleaseMastership></Fragment>")},
        {"State",
         aroundFragment("<Fragment><MastershipState><State>Absent</State></MastershipState></Fragment>")},
        {"Bandwidth",
         aroundFragment("<Fragment><DF_Params><Bandwidth>wide</Bandwidth></DF_Params></Fragment>")},
        {"Frequency",
         aroundFragment("<Fragment><DF_Params><Bandwidth>1.00</Bandwidth><Frequency>1.00</Frequency>"
                        "</DF_Params></Fragment>")}};
    Documents documents;
    for (int i = 0; i < mistakes.size(); ++i)
        documents.insert(QString::number(i), mistakes.at(i).document);
    const Documents all = examples();
    for (const char* name : lenient)
        documents.insert(QString::fromLatin1(name), all.value(QString::fromLatin1(name)));

    const auto found = complaints(documents);
    for (auto i = found.cbegin(); i != found.cend(); ++i)
        EXPECT_TRUE(i.value().contains(QStringLiteral("Schemas validity error")))
            << "schema/router.xsd takes a mistake; edit it.\n"
            << documents.value(i.key()).constData() << "\n"
            << i.value().toStdString();
    for (int i = 0; i < mistakes.size(); ++i)
        EXPECT_TRUE(found.value(QString::number(i))
                        .contains(QStringLiteral("Element '%1'").arg(QLatin1String(mistakes.at(i).element))))
            << mistakes.at(i).document.constData() << "\n"
            << found.value(QString::number(i)).toStdString();
}

} // namespace
