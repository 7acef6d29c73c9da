// SPDX-License-Identifier: MIT
// The samples of docs/xml-form.md and docs/binary-form.md.

#include "ShownOnPage.h"

#include "modelkit/ReadingReport.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

using namespace testing_support;

namespace {

// Adds the members that are set in the record and in the records below.
void collectMembers(const MODELKIT::IMKObject& record, QSet<QString>& members)
{
    const RecordInfo& info = RecordInfo::Of(record);
    for (const MemberInfo* member : info.GetMembers()) {
        if (!member->IsSet(record))
            continue;
        members.insert(info.GetName() + QLatin1Char('/') + member->GetName());
        const bool isList = member->GetKind() == MemberInfo::List;
        for (int i = 0; isList && i < member->CountItems(record); ++i)
            collectMembers(member->GetItem(record, i), members);
        if (member->GetKind() == MemberInfo::Record)
            collectMembers(member->GetRecord(record), members);
    }
}

} // namespace

TEST(FormsPages, EveryRecordIsShownAsItIsWritten)
{
    QSet<QString> roots;
    QSet<QString> members;
    for (const QString& xml : blocksOf("docs/xml-form.md", QStringLiteral("xml"))) {
        const QString name = QRegularExpression(QStringLiteral("<(\\w+)")).match(xml).captured(1);
        const RecordInfo* const info = RecordInfo::Find(name);
        ASSERT_TRUE(info) << xml.toStdString();
        const std::unique_ptr<MODELKIT::IMKObject> record = info->Create();
        record->SetValidate(true);
        const MODELKIT::ReadingReport report;
        ASSERT_TRUE(record->SetXmlString(xml, true)) << xml.toStdString();
        EXPECT_TRUE(report.GetEntries().isEmpty()) << xml.toStdString();
        QString written = record->GetXmlString();
        written.remove(0, written.indexOf(QLatin1Char('\n')) + 1);
        EXPECT_EQ(written.trimmed(), xml.trimmed());
        roots.insert(name);
        collectMembers(*record, members);
    }
    for (const RecordInfo* info : RecordInfo::All()) {
        EXPECT_TRUE(roots.contains(info->GetName())) << info->GetName().toStdString() << " has no sample";
        if (info->IsChoice())
            continue;
        for (const MemberInfo* member : info->GetMembers())
            EXPECT_TRUE(members.contains(info->GetName() + QLatin1Char('/') + member->GetName()))
                << member->GetName().toStdString() << " of " << info->GetName().toStdString()
                << " is in no sample";
    }
}

TEST(FormsPages, ThePictureHasTheBytesOfTheFrame)
{
    QString drawn;
    const QString picture = pageText("docs/images/port-frame.svg");
    auto found = QRegularExpression(QStringLiteral("byte\"[^>]*>([0-9A-F]{2})<")).globalMatch(picture);
    while (found.hasNext())
        drawn += found.next().captured(1);
    OstraInterfacePort record;
    record.SetPort(5000);
    EXPECT_EQ(drawn.toLatin1(), record.GetBinaryRepresentationAsQByteArray().toHex().toUpper());
}
