// SPDX-License-Identifier: MIT
// The description of all records.
#include "MemberByName.h"
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include <set>
#include <stdexcept>
#include <typeinfo>

using namespace testing_support;

namespace {

QStringList namesOf(const QVector<const RecordInfo*>& classes)
{
    QStringList names;
    for (const RecordInfo* info : classes)
        names.append(info->GetName());
    return names;
}

TEST(RecordInfo, namesAllClassesOwnersFirst)
{
    EXPECT_EQ(
        namesOf(RecordInfo::All()),
        (QStringList{"PelLu300RouterInterfaceXml", "PelLu300RouterMessage", "Fragment"} + payloadNames()));
    EXPECT_EQ(&RecordInfo::Document(), RecordInfo::All().first());
}

TEST(RecordInfo, findsAClassByNameFrameIdAndRecord)
{
    const RecordInfo* const params = RecordInfo::Find(QStringLiteral("DF_Params"));
    ASSERT_NE(params, nullptr);
    EXPECT_EQ(params->GetId(), DF_Params::id);
    EXPECT_EQ(RecordInfo::FindByFrameId(params->GetFrameId()), params);
    EXPECT_EQ(&RecordInfo::Of(DF_Params()), params);
}

TEST(RecordInfo, knowsNoOtherClass)
{
    EXPECT_EQ(RecordInfo::Find(QStringLiteral("df_params")), nullptr);
    EXPECT_EQ(RecordInfo::FindByFrameId(1), nullptr);
    EXPECT_EQ(RecordInfo::Document().FindMember(QStringLiteral("Fragment")), nullptr);
    EXPECT_EQ(RecordInfo::Document().FindMember(0x61023A90U), nullptr);
}

TEST(RecordInfo, tellsKindTagAndNamesOfMembers)
{
    const MemberInfo& type = member("PelLu300RouterMessage", "Type");
    EXPECT_EQ(type.GetKind(), MemberInfo::Enumeration);
    EXPECT_EQ(type.GetBinaryTag(), 0xE1D9E008U);
    EXPECT_TRUE(type.IsMandatory());
    EXPECT_EQ(type.GetNames(), (QStringList{"Request", "Reply", "Event"}));
    EXPECT_EQ(type.GetClass(), nullptr);

    EXPECT_EQ(member("PelLu300RouterMessage", "MessageID").GetKind(), MemberInfo::UnsignedInteger);
    EXPECT_FALSE(member("PelLu300RouterMessage", "MessageID").IsMandatory());
    EXPECT_EQ(member("DF_Params", "Bandwidth").GetKind(), MemberInfo::Decimal);
    EXPECT_EQ(member("AcquireMastership", "Success").GetKind(), MemberInfo::Boolean);
    EXPECT_EQ(member("PelVtConnectServer", "Address").GetKind(), MemberInfo::Text);
    EXPECT_EQ(member("MastershipState", "State").GetKind(), MemberInfo::Enumeration);
    EXPECT_FALSE(member("MastershipState", "State").IsMandatory());
    EXPECT_EQ(member("Fragment", "DF_Params").GetKind(), MemberInfo::Record);
    EXPECT_EQ(member("Fragment", "DF_Params").GetClass(), RecordInfo::Find(QStringLiteral("DF_Params")));
    EXPECT_EQ(member("PelLu300RouterMessage", "Fragment").GetKind(), MemberInfo::List);
    EXPECT_EQ(member("PelLu300RouterMessage", "Fragment").GetClass(),
              RecordInfo::Find(QStringLiteral("Fragment")));
}

TEST(RecordInfo, tellsTheTagsOfAllPayloads)
{
    EXPECT_EQ(RecordInfo::Find(QStringLiteral("Fragment"))->GetMembers().size(), payloadCount)
        << "The rows of tests/PayloadRecords.h must be those of routerinterface/Fragment.cpp.";
#define EXPECT_TAG(Name, value, tag, id) EXPECT_EQ(member("Fragment", #Name).GetBinaryTag(), tag);
    PAYLOAD_RECORDS(EXPECT_TAG)
#undef EXPECT_TAG
}

TEST(RecordInfo, onlyFragmentIsAChoice)
{
    for (const RecordInfo* info : RecordInfo::All())
        EXPECT_EQ(info->IsChoice(), info->GetName() == QLatin1String("Fragment"))
            << info->GetName().toStdString();
}

TEST(RecordInfo, binaryTagsAreUniqueWithinAClass)
{
    for (const RecordInfo* info : RecordInfo::All()) {
        std::set<std::uint32_t> tags;
        for (const MemberInfo* each : info->GetMembers()) {
            EXPECT_TRUE(tags.insert(each->GetBinaryTag()).second) << each->GetName().toStdString();
            EXPECT_EQ(info->FindMember(each->GetBinaryTag()), each);
            EXPECT_EQ(info->FindMember(each->GetName()), each);
        }
    }
}

TEST(RecordInfo, createsNewRecords)
{
    for (const RecordInfo* info : RecordInfo::All()) {
        const auto record = info->Create();
        EXPECT_EQ(&RecordInfo::Of(*record), info);
        EXPECT_FALSE(record->GetValidate());
        for (const MemberInfo* each : info->GetMembers())
            EXPECT_FALSE(each->IsSet(*record)) << each->GetName().toStdString();
    }
}

TEST(RecordInfo, readsAndWritesValuesAsTheAccessorsDo)
{
    MastershipState state;
    member("MastershipState", "State").SetValue(state, 2);
    member("MastershipState", "MasterClientID").SetValue(state, QStringLiteral("client"));
    EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);
    EXPECT_EQ(state.GetMasterClientID(), QStringLiteral("client"));
    EXPECT_EQ(member("MastershipState", "State").GetValue(state), QVariant(2));
    EXPECT_EQ(member("MastershipState", "MasterClientID").GetValue(state),
              QVariant(QStringLiteral("client")));
    EXPECT_TRUE(member("MastershipState", "State").IsSet(state));

    DF_Params params;
    member("DF_Params", "Frequency").SetValue(params, 98500000.125);
    EXPECT_EQ(params.GetFrequency(), 98500000.125);
    EXPECT_EQ(member("DF_Params", "Frequency").GetValue(params), QVariant(98500000.125));

    OstraInterfacePort port;
    member("OstraInterfacePort", "Port").SetValue(port, 4294967295U);
    EXPECT_EQ(port.GetPort(), 4294967295U);
    EXPECT_EQ(member("OstraInterfacePort", "Port").GetValue(port), QVariant(4294967295U));

    AcquireMastership acquire;
    member("AcquireMastership", "Success").SetValue(acquire, true);
    EXPECT_TRUE(acquire.GetSuccess());
    EXPECT_EQ(member("AcquireMastership", "Success").GetValue(acquire), QVariant(true));
}

TEST(RecordInfo, nullTextStaysNull)
{
    PelVtConnectServer server;
    member("PelVtConnectServer", "Address").SetValue(server, QString());
    EXPECT_TRUE(member("PelVtConnectServer", "Address").IsSet(server));
    EXPECT_TRUE(member("PelVtConnectServer", "Address").GetValue(server).toString().isNull());
}

TEST(RecordInfo, settingObeysTheRulesOfTheSetter)
{
    MastershipState state;
    state.SetValidate(true);
    try {
        member("MastershipState", "State").SetValue(state, 3);
        FAIL() << "nothing thrown";
    } catch (const OutOfRangeException& exception) {
        EXPECT_EQ(exception.GetText(),
                  QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    }
    EXPECT_FALSE(state.IsStateSet());
}

TEST(RecordInfo, handsOutNestedRecords)
{
    Fragment fragment;
    const MemberInfo& params = member("Fragment", "DF_Params");
    EXPECT_FALSE(dynamic_cast<const DF_Params&>(params.GetRecord(fragment)).IsFrequencySet());
    EXPECT_FALSE(params.IsSet(fragment));
    dynamic_cast<DF_Params&>(params.EditRecord(fragment)).SetFrequency(1);
    EXPECT_TRUE(params.IsSet(fragment));
    EXPECT_EQ(fragment.GetDF_Params().GetFrequency(), 1);
}

TEST(RecordInfo, inAChoiceOnlyTheChosenMemberIsSet)
{
    Fragment fragment;
    fragment.SetOstraInterfacePort(OstraInterfacePort());
    fragment.SetDF_Params(DF_Params());
    EXPECT_FALSE(member("Fragment", "OstraInterfacePort").IsSet(fragment));
    EXPECT_TRUE(member("Fragment", "DF_Params").IsSet(fragment));
}

TEST(RecordInfo, appendsAndCountsItems)
{
    PelLu300RouterMessage message;
    const MemberInfo& list = member("PelLu300RouterMessage", "Fragment");
    EXPECT_EQ(list.CountItems(message), 0);
    EXPECT_FALSE(list.IsSet(message));
    Fragment fragment;
    fragment.SetAcquireMastership(AcquireMastership());
    list.AppendItem(message, Fragment());
    list.AppendItem(message, fragment);
    EXPECT_TRUE(list.IsSet(message));
    ASSERT_EQ(list.CountItems(message), 2);
    EXPECT_TRUE(dynamic_cast<const Fragment&>(list.GetItem(message, 1)) == fragment);

    message.SetValidate(true);
    EXPECT_THROW(list.AppendItem(message, Fragment()), IncompleteDefinitionException);
    EXPECT_EQ(list.CountItems(message), 2);
}

TEST(RecordInfo, listSetByItsRecordButEmptyIsSet)
{
    PelLu300RouterMessage message;
    message.SetFragment(QVector<Fragment>());
    EXPECT_TRUE(member("PelLu300RouterMessage", "Fragment").IsSet(message));
}

TEST(RecordInfo, assignsAsTheClassDoes)
{
    const RecordInfo& info = *RecordInfo::Find(QStringLiteral("Fragment"));
    Fragment source = withPort(7);
    source.GetDF_Params().SetFrequency(1);
    source.SetValidate(true);
    Fragment target = withPort(8);
    info.Assign(target, source);
    EXPECT_EQ(target, source);
    EXPECT_FALSE(target.GetValidate());
    target.GetDF_Params().SetFrequency(2);
    EXPECT_EQ(source.GetDF_Params().GetFrequency(), 1);
    // What the choice keeps unseen is assigned, too.
    target.GetOstraInterfacePort();
    EXPECT_EQ(target, withPort(7));
    info.Assign(target, target);
    EXPECT_EQ(target, withPort(7));
}

TEST(RecordInfo, assignsOnlyWithinAClass)
{
    const RecordInfo& info = *RecordInfo::Find(QStringLiteral("Fragment"));
    Fragment fragment = withPort(7);
    OstraInterfacePort port;
    EXPECT_THROW(info.Assign(fragment, port), std::bad_cast);
    EXPECT_THROW(info.Assign(port, fragment), std::bad_cast);
    EXPECT_EQ(fragment, withPort(7));
    EXPECT_FALSE(port.IsPortSet());
}

TEST(RecordInfo, refusesRecordsOfAnotherClass)
{
    DF_Params params;
    EXPECT_THROW(member("MastershipState", "State").IsSet(params), std::bad_cast);
    EXPECT_THROW(member("MastershipState", "State").GetValue(params), std::bad_cast);
    EXPECT_THROW(member("MastershipState", "State").SetValue(params, 1), std::bad_cast);
    PelLu300RouterMessage message;
    EXPECT_THROW(member("PelLu300RouterMessage", "Fragment").AppendItem(message, params), std::bad_cast);
    EXPECT_EQ(message.GetFragment().size(), 0);
}

TEST(RecordInfo, refusesOperationsOfAnotherKind)
{
    Fragment fragment;
    const MemberInfo& nested = member("Fragment", "DF_Params");
    EXPECT_THROW(nested.GetValue(fragment), std::logic_error);
    EXPECT_THROW(nested.SetValue(fragment, 1), std::logic_error);
    EXPECT_THROW(nested.CountItems(fragment), std::logic_error);
    EXPECT_THROW(nested.GetItem(fragment, 0), std::logic_error);
    EXPECT_THROW(nested.AppendItem(fragment, fragment), std::logic_error);
    OstraInterfacePort port;
    EXPECT_THROW(member("OstraInterfacePort", "Port").GetRecord(port), std::logic_error);
    EXPECT_THROW(member("OstraInterfacePort", "Port").EditRecord(port), std::logic_error);
    EXPECT_FALSE(port.IsPortSet());
}

TEST(RecordInfoOf, GoesByTheClassAndNotByTheName)
{
    struct Renamed : PelLu300RouterMessage
    {
        Renamed() { SetObjectName(QStringLiteral("MyMessage")); }
    };
    EXPECT_EQ(&RecordInfo::Of(Renamed()), RecordInfo::Find(QStringLiteral("PelLu300RouterMessage")));
    struct Misnamed : DF_Params
    {
        Misnamed() { SetObjectName(QStringLiteral("Fragment")); }
    };
    EXPECT_EQ(&RecordInfo::Of(Misnamed()), RecordInfo::Find(QStringLiteral("DF_Params")));
    struct Foreign : MODELKIT::IMKObject
    {
        Foreign() { SetObjectName(QStringLiteral("Fragment")); }
        bool HasData() const override { return true; }
        void Reset() override {}
        void Check(bool) const override {}
        void Check() const override {}
        void GetXml(QXmlStreamWriter&) const override {}
        bool GetBinary(QDataStream&, int, bool) const override { return false; }
        void SetBinary(QDataStream&, int) override {}
        void ProcessXmlStartElement(QXmlStreamReader&) override {}
    };
    EXPECT_THROW(RecordInfo::Of(Foreign()), std::bad_cast);
}

} // namespace
