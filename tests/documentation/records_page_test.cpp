// SPDX-License-Identifier: MIT
// The samples of docs/records.md.

#include "PageSamples.h"
#include "Said.h"

#include "documents/JsonForm.h"
#include "routerinterface/RecordInfo.h"

using namespace testing_support;

TEST(RecordsPage, AReceiverAsksForTheChoice)
{
    const Said said;
    const PelLu300RouterInterfaceXml document = [] {
        PelLu300RouterInterfaceXml received = sample();
        Fragment other;
        other.GetDF_Params();
        received.GetPelLu300RouterMessage().AppendFragment(other);
        return received;
    }();
    QVector<unsigned int> ports;
    {
        PelLu300RouterMessage message;
        //! [filling an item in its place]
        message.AddFragment().GetDF_Params().SetFrequency(98.5e6);
        //! [filling an item in its place]
        EXPECT_EQ(message.GetFragment()[0].GetDF_Params().GetFrequency(), 98.5e6);
    }
    const auto connectTo = [&ports](unsigned int number) { ports.append(number); };
    //! [asking for the choice]
    const PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    for (const Fragment& fragment : message.GetFragment()) {
        switch (fragment.GetChoiceFragment()) {
        case Fragment::OstraInterfacePort:
            connectTo(fragment.GetOstraInterfacePort().GetPort());
            break;
        default:
            qInfo() << fragment.ChoiceFragmentToName(fragment.GetChoiceFragment());
        }
    }
    //! [asking for the choice]
    EXPECT_EQ(ports, QVector<unsigned int>{5000});
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("\"DF_Params\"")));
}

TEST(RecordsPage, RecordInfoDescribesAnyRecord)
{
    const Said said;
    DF_Params record;
    record.SetFrequency(98.5e6);
    //! [working on any record]
    const RecordInfo& info = RecordInfo::Of(record);
    for (const MemberInfo* member : info.GetMembers())
        if (member->IsSet(record) && member->GetKind() == MemberInfo::Decimal)
            qInfo() << member->GetName() << member->GetValue(record).toDouble();
    //! [working on any record]
    EXPECT_EQ(said.texts(), QStringList(QStringLiteral("\"Frequency\" 9.85e+07")));
}

//! [refusing what is no value]
void edit(MODELKIT::IMKObject& record, const MemberInfo& member, const QVariant& typed)
{
    try {
        member.SetValue(record, typed);
    } catch (const OutOfRangeException& exception) {
        qWarning() << exception.GetText();
        if (!exception.GetClosest().isEmpty())
            qWarning() << "Did you mean" << exception.GetClosest();
    }
}
//! [refusing what is no value]

TEST(RecordsPage, AnEditorSaysWhatMayHaveBeenMeant)
{
    const Said said;
    MastershipState record;
    edit(record, *RecordInfo::Of(record).FindMember(QStringLiteral("State")), QStringLiteral("MasterPresnt"));
    EXPECT_FALSE(record.IsStateSet());
    ASSERT_EQ(said.texts().size(), 2);
    EXPECT_EQ(said.texts().at(1), QStringLiteral("Did you mean \"MasterPresent\""));
}

TEST(RecordsPage, ANullStringIsNoEmptyOne)
{
    PelVtConnectServer null;
    null.SetAddress(QString());
    PelVtConnectServer empty;
    empty.SetAddress(QStringLiteral(""));
    EXPECT_THROW(null.Check(), OutOfRangeException);
    EXPECT_NO_THROW(empty.Check());
    EXPECT_TRUE(null == empty);

    PelVtConnectServer read;
    readXml(read, xmlOf(null));
    EXPECT_TRUE(read.IsAddressSet());
    EXPECT_FALSE(read.GetAddress().isNull());
    EXPECT_EQ(xmlOf(null), xmlOf(empty));
    EXPECT_EQ(frameOf(null), bytes("0000000C 2AC271EC 00000004 FFFFFFFF"));
    EXPECT_EQ(frameOf(empty), bytes("0000000C 2AC271EC 00000004 00000000"));
    EXPECT_TRUE(ROUTERDOCUMENTS::ToJson(null).contains("null"));
    EXPECT_TRUE(ROUTERDOCUMENTS::ToJson(empty).contains("\"\""));

    EXPECT_TRUE(PelVtConnectServer().GetAddress().isNull());
    null.SetValidate(true);
    empty.SetValidate(true);
    EXPECT_THROW(null.SetAddress(QString()), OutOfRangeException);
    EXPECT_NO_THROW(empty.SetAddress(QStringLiteral("")));
}

TEST(RecordsPage, ARecordHasADataBlockFromTheFirstAccessOn)
{
    DF_Params record;
    EXPECT_FALSE(record.IsInitialized());
    record.GetFrequency();
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.IsFrequencySet());
}

TEST(RecordsPage, TheFlagOfACheckHasNoEffect)
{
    PelLu300RouterMessage incomplete;
    EXPECT_THROW(incomplete.Check(true), OutOfRangeException);
    EXPECT_THROW(incomplete.Check(false), OutOfRangeException);
    const PelLu300RouterInterfaceXml complete = sample();
    EXPECT_NO_THROW(complete.Check(true));
    EXPECT_NO_THROW(complete.Check(false));
}
