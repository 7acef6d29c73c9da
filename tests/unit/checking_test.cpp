// SPDX-License-Identifier: MIT
// Checking: the message texts, when they arise, in which order, and how far a check reaches.

#include "CheckingSupport.h"

#include "routerinterface/machinery/Checking.h"

#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;

// --- Check() of every record ------------------------------------------------------------------

template <class R>
class CheckOfEveryRecord : public ::testing::Test
{
};
TYPED_TEST_SUITE(CheckOfEveryRecord, AllRecords, RecordName);

TYPED_TEST(CheckOfEveryRecord, WithoutArgumentIsTheOneWithFalse)
{
    struct Noting : TypeParam
    {
        using TypeParam::Check;
        void Check(bool flag) const override { flags.push_back(flag); }
        mutable std::vector<bool> flags;
    };
    Noting record;
    static_cast<const IMKObject&>(record).Check();
    EXPECT_EQ(record.flags, std::vector<bool>{false});
    record.TypeParam::Check();
    EXPECT_EQ(record.flags, (std::vector<bool>{false, false}));
}

TYPED_TEST(CheckOfEveryRecord, PassesWhileNothingIsSetExceptForAMessage)
{
    constexpr bool isMessage = std::is_same_v<TypeParam, PelLu300RouterMessage>;
    for (const bool validate : {false, true})
        for (const bool flag : {false, true}) {
            TypeParam record;
            record.SetValidate(validate);
            if (isMessage)
                expectThrow<OutOfRangeException>([&] { record.Check(flag); },
                                                 text("PelLu300RouterMessage: Please set Type properly."));
            else
                EXPECT_NO_THROW(record.Check(flag));
            EXPECT_TRUE(record.IsInitialized());
            EXPECT_FALSE(record.AnyData());
        }
}

TYPED_TEST(CheckOfEveryRecord, HandsFlagAndLoggerToTheRecordItselfBeforeAnythingElse)
{
    struct Noting : Opened<TypeParam>
    {
        void SetValidate(bool validate) const override
        {
            calls.append(validate ? text("validate on") : text("validate off"));
            TypeParam::SetValidate(validate);
        }
        void SetLogger(LoggerPointer given) const override
        {
            calls.append(given == expected ? text("logger") : text("other logger"));
            TypeParam::SetLogger(given);
        }
        mutable QStringList calls;
        LoggerPointer expected = std::make_shared<Logger>();
    };
    const std::vector<std::function<void(Noting&)>> operations{
        [](Noting& record) { record.TypeParam::Check(true); },
        [](Noting& record) { record.TypeParam::Check(); },
        [](Noting& record) { xmlOf(record); },
        [](Noting& record) { frameOf(record); },
        [](Noting& record) { readBinary(record, "", 0); },
        [](Noting& record) { readUnknownChild(record); },
    };
    for (const bool validate : {false, true})
        for (const auto& operation : operations) {
            Noting record;
            record.SetValidate(validate);
            record.SetLogger(record.expected);
            record.calls.clear();
            try {
                operation(record);
            } catch (const OutOfRangeException&) {
                // The check of a message without type fails after it has handed the settings down.
            }
            ASSERT_GE(record.calls.size(), 2);
            EXPECT_EQ(record.calls[0], validate ? text("validate on") : text("validate off"));
            EXPECT_EQ(record.calls[1], text("logger"));
        }
}

TYPED_TEST(CheckOfEveryRecord, CreatingTheDataHandsFlagAndLoggerOn)
{
    struct Noting : TypeParam
    {
        void SetValidate(bool validate) const override
        {
            calls.append(text("validate"));
            TypeParam::SetValidate(validate);
        }
        void SetLogger(LoggerPointer given) const override
        {
            calls.append(text("logger"));
            TypeParam::SetLogger(given);
        }
        mutable QStringList calls;
    };
    Noting record;
    record.ResetToDefault();
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_EQ(record.calls.mid(0, 2), (QStringList{text("validate"), text("logger")}));
}

TYPED_TEST(CheckOfEveryRecord, SettingFlagAndLoggerCreatesNoData)
{
    TypeParam record;
    const auto logger = std::make_shared<Logger>();
    record.SetValidate(true);
    record.SetLogger(logger);
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_TRUE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), logger);
    record.ResetLogger();
    EXPECT_EQ(record.GetLogger(), nullptr);
    record.SetValidate(false);
    EXPECT_FALSE(record.GetValidate());
}

TYPED_TEST(CheckOfEveryRecord, ANewRecordHasNeitherFlagNorLogger)
{
    const TypeParam record;
    EXPECT_FALSE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), nullptr);
}

TYPED_TEST(CheckOfEveryRecord, ACopyHasTheFlagButNotTheLogger)
{
    for (const bool validate : {false, true}) {
        TypeParam source;
        source.ResetToDefault();
        source.SetValidate(validate);
        source.SetLogger(std::make_shared<Logger>());
        const TypeParam copy(source);
        EXPECT_EQ(copy.GetValidate(), validate);
        EXPECT_EQ(copy.GetLogger(), nullptr);
        EXPECT_NE(source.GetLogger(), nullptr);
    }
}

TYPED_TEST(CheckOfEveryRecord, AssignmentKeepsFlagAndLogger)
{
    TypeParam source;
    source.ResetToDefault();
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    TypeParam target;
    const auto logger = std::make_shared<Logger>();
    target.SetLogger(logger);
    target = source;
    EXPECT_FALSE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), logger);
}

TYPED_TEST(CheckOfEveryRecord, TheLoggerIsReleasedWithTheRecord)
{
    std::weak_ptr<Logger> watched;
    {
        TypeParam record;
        record.ResetToDefault();
        const auto logger = std::make_shared<Logger>();
        watched = logger;
        record.SetLogger(logger);
    }
    EXPECT_TRUE(watched.expired());
}

TYPED_TEST(CheckOfEveryRecord, ABinaryLengthThatDisagreesIsReportedWithTheRecordsName)
{
    const QString named = TypeParam().GetObjectName();
    for (const bool validate : {false, true})
        for (const auto& input : std::vector<std::pair<const char*, int>>{
                 {"", -1}, {"", 1}, {"", 8}, {"00000007 00000000", 7}, {"00000007 00000000", 9}}) {
            TypeParam record;
            record.SetValidate(validate);
            expectThrow<BinaryParsingException>([&] { readBinary(record, input.first, input.second); },
                                                named
                                                    + text("::SetBinary(...): Length error occurred during "
                                                           "processing of binary representation"));
            Renamed<TypeParam> renamed;
            renamed.SetValidate(validate);
            expectThrow<BinaryParsingException>([&] { readBinary(renamed, input.first, input.second); },
                                                text("Other::SetBinary(...): Length error occurred during "
                                                     "processing of binary representation"));
        }
}

TEST(MessageTexts, TheLengthErrorOfEachRecord)
{
    const auto expectLengthError = [](IMKObject&& record, const char* message) {
        expectThrow<BinaryParsingException>([&] { readBinary(record, "", -1); }, text(message));
    };
    expectLengthError(PelLu300RouterInterfaceXml(),
                      "PelLu300RouterInterfaceXml::SetBinary(...): Length error occurred during processing "
                      "of binary representation");
    expectLengthError(PelLu300RouterMessage(), "PelLu300RouterMessage::SetBinary(...): Length error occurred "
                                               "during processing of binary representation");
    expectLengthError(
        Fragment(),
        "Fragment::SetBinary(...): Length error occurred during processing of binary representation");
    expectLengthError(
        MastershipState(),
        "MastershipState::SetBinary(...): Length error occurred during processing of binary representation");
    expectLengthError(AcquireMastership(), "AcquireMastership::SetBinary(...): Length error occurred during "
                                           "processing of binary representation");
    expectLengthError(ReleaseMastership(), "ReleaseMastership::SetBinary(...): Length error occurred during "
                                           "processing of binary representation");
    expectLengthError(OstraInterfacePort(), "OstraInterfacePort::SetBinary(...): Length error occurred "
                                            "during processing of binary representation");
    expectLengthError(PelVtConnectServer(), "PelVtConnectServer::SetBinary(...): Length error occurred "
                                            "during processing of binary representation");
    expectLengthError(RouterVtServerPort(), "RouterVtServerPort::SetBinary(...): Length error occurred "
                                            "during processing of binary representation");
    expectLengthError(
        DF_Params(),
        "DF_Params::SetBinary(...): Length error occurred during processing of binary representation");
}

TEST(MessageTexts, MembersReadBeforeALengthErrorKeepTheirNewValues)
{
    OstraInterfacePort record;
    record.SetPort(1);
    EXPECT_THROW(readBinary(record, "1F980517 00000008 0000000000001388", 17), BinaryParsingException);
    EXPECT_EQ(record.GetPort(), 5000U);
}

// --- members that are not set properly --------------------------------------------------------

TEST(MessageTexts, StateOutOfRangeFailsTheCheckWhateverTheFlag)
{
    for (const bool validate : {false, true})
        for (const int value : {-1, 3, 1000, std::numeric_limits<int>::min()}) {
            MastershipState record;
            record.SetState(state(value));
            record.SetValidate(validate);
            for (const bool flag : {false, true})
                expectThrow<OutOfRangeException>([&] { record.Check(flag); },
                                                 text("MastershipState: Please set State properly."));
            EXPECT_EQ(record.GetState(), state(value));
            EXPECT_TRUE(record.IsStateSet());
        }
}

TEST(MessageTexts, StateThatIsUnsetOrInRangePassesTheCheck)
{
    MastershipState record;
    record.SetDefaultState(state(7));
    record.Reset();
    ASSERT_EQ(record.GetState(), state(7));
    EXPECT_NO_THROW(record.Check());
    for (const int value : {0, 1, 2}) {
        record.SetState(state(value));
        EXPECT_NO_THROW(record.Check());
    }
    record.SetState(state(3));
    record.ResetState();
    EXPECT_NO_THROW(record.Check());
}

TEST(MessageTexts, TheInvalidStateOfARecordDoesNotMatterInTheCheck)
{
    MastershipState record;
    record.SetInvalidState(MastershipState::MasterPresent);
    record.SetState(MastershipState::MasterPresent);
    EXPECT_NO_THROW(record.Check());
}

TEST(MessageTexts, ANullClientIdFailsTheCheckWhateverTheFlag)
{
    for (const bool validate : {false, true}) {
        MastershipState record;
        record.SetMasterClientID(QString());
        ASSERT_TRUE(record.IsMasterClientIDSet());
        record.SetValidate(validate);
        for (const bool flag : {false, true})
            expectThrow<OutOfRangeException>([&] { record.Check(flag); },
                                             text("MastershipState: Please set MasterClientID properly."));
        record.SetMasterClientID(empty());
        EXPECT_NO_THROW(record.Check());
    }
}

TEST(MessageTexts, ANullAddressFailsTheCheckWhateverTheFlag)
{
    for (const bool validate : {false, true}) {
        PelVtConnectServer record;
        record.SetAddress(QString());
        record.SetValidate(validate);
        for (const bool flag : {false, true})
            expectThrow<OutOfRangeException>([&] { record.Check(flag); },
                                             text("PelVtConnectServer: Please set Address properly."));
        record.SetAddress(empty());
        EXPECT_NO_THROW(record.Check());
        record.ResetAddress();
        EXPECT_NO_THROW(record.Check());
    }
}

TEST(MessageTexts, ATypeThatIsUnsetOrOutOfRangeFailsTheCheckWhateverTheFlag)
{
    const QString message = text("PelLu300RouterMessage: Please set Type properly.");
    for (const bool validate : {false, true})
        for (const bool flag : {false, true}) {
            PelLu300RouterMessage record;
            record.SetMessageID(7);
            record.SetValidate(validate);
            expectThrow<OutOfRangeException>([&] { record.Check(flag); }, message);
            record.SetValidate(false);
            for (const int value : {-1, 3, 1000}) {
                record.SetType(type(value));
                record.SetValidate(validate);
                expectThrow<OutOfRangeException>([&] { record.Check(flag); }, message);
                record.SetValidate(false);
            }
            // A default does not help.
            record.SetDefaultType(PelLu300RouterMessage::Event);
            record.ResetType();
            expectThrow<OutOfRangeException>([&] { record.Check(flag); }, message);
            for (const int value : {0, 1, 2}) {
                record.SetType(type(value));
                EXPECT_NO_THROW(record.Check(flag));
            }
        }
}

TEST(MessageTexts, ANullTextIsRefusedBySettersOnlyUnderValidation)
{
    MastershipState mastership;
    mastership.SetMasterClientID(text("before"));
    mastership.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { mastership.SetMasterClientID(QString()); },
                                     text("MastershipState: Please set MasterClientID properly."));
    EXPECT_EQ(mastership.GetMasterClientID(), text("before"));
    mastership.ResetMasterClientID();
    EXPECT_THROW(mastership.SetMasterClientID(QString()), OutOfRangeException);
    EXPECT_FALSE(mastership.IsMasterClientIDSet());
    EXPECT_NO_THROW(mastership.SetMasterClientID(empty()));
    mastership.SetValidate(false);
    EXPECT_NO_THROW(mastership.SetMasterClientID(QString()));
    EXPECT_TRUE(mastership.IsMasterClientIDSet());

    PelVtConnectServer server;
    server.SetAddress(text("before"));
    server.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { server.SetAddress(QString()); },
                                     text("PelVtConnectServer: Please set Address properly."));
    EXPECT_EQ(server.GetAddress(), text("before"));
    EXPECT_TRUE(server.IsAddressSet());
    server.ResetAddress();
    EXPECT_THROW(server.SetAddress(QString()), OutOfRangeException);
    EXPECT_FALSE(server.IsAddressSet());
    EXPECT_NO_THROW(server.SetAddress(empty()));
    server.SetValidate(false);
    EXPECT_NO_THROW(server.SetAddress(QString()));
    EXPECT_TRUE(server.IsAddressSet());
}

// --- enumerators out of range -----------------------------------------------------------------

TEST(MessageTexts, AStateOutOfRangeIsRefusedByTheSetterOnlyUnderValidation)
{
    for (const int value : {-1, 3, 1000}) {
        MastershipState record;
        record.SetValidate(true);
        const QString message = text("enum is not valid (classname=MastershipState,membername=m_state)");
        expectThrow<OutOfRangeException>([&] { record.SetState(state(value)); }, message);
        EXPECT_FALSE(record.IsStateSet());
        record.SetState(MastershipState::MasterPresent);
        expectThrow<OutOfRangeException>([&] { record.SetState(state(value)); }, message);
        EXPECT_EQ(record.GetState(), MastershipState::MasterPresent);
        record.SetValidate(false);
        EXPECT_NO_THROW(record.SetState(state(value)));
        EXPECT_EQ(record.GetState(), state(value));
        EXPECT_TRUE(record.IsStateSet());
    }
}

TEST(MessageTexts, ATypeOutOfRangeIsRefusedByTheSetterOnlyUnderValidation)
{
    for (const int value : {-1, 3, 1000}) {
        PelLu300RouterMessage record;
        record.SetValidate(true);
        const QString message = text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
        expectThrow<OutOfRangeException>([&] { record.SetType(type(value)); }, message);
        EXPECT_FALSE(record.IsTypeSet());
        record.SetType(PelLu300RouterMessage::Reply);
        expectThrow<OutOfRangeException>([&] { record.SetType(type(value)); }, message);
        EXPECT_EQ(record.GetType(), PelLu300RouterMessage::Reply);
        record.SetValidate(false);
        EXPECT_NO_THROW(record.SetType(type(value)));
        EXPECT_EQ(record.GetType(), type(value));
        EXPECT_TRUE(record.IsTypeSet());
    }
}

TEST(MessageTexts, AnUnknownEnumeratorNameInBinaryInputIsRefusedOnlyUnderValidation)
{
    const char* stateEntry = "4264F498 00000007 00000003 616263";
    MastershipState mastership;
    mastership.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readBinary(mastership, stateEntry, 15); },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
    EXPECT_FALSE(mastership.IsStateSet());
    mastership.SetValidate(false);
    EXPECT_NO_THROW(readBinary(mastership, stateEntry, 15));
    EXPECT_EQ(mastership.GetState(), state(-1));
    EXPECT_TRUE(mastership.IsStateSet());

    const char* typeEntry = "E1D9E008 00000007 00000003 616263";
    PelLu300RouterMessage message;
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readBinary(message, typeEntry, 15); },
        text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(message.IsTypeSet());
    message.SetValidate(false);
    EXPECT_NO_THROW(readBinary(message, typeEntry, 15));
    EXPECT_EQ(message.GetType(), type(-1));
    EXPECT_TRUE(message.IsTypeSet());
}

TEST(MessageTexts, AnEnumeratedDefaultOutOfRangeIsRefusedWhenItIsAppliedUnderValidation)
{
    MastershipState mastership;
    mastership.SetDefaultState(state(3));
    mastership.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { mastership.ResetToDefault(); },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
    PelLu300RouterMessage message;
    message.SetDefaultType(type(3));
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { message.ResetToDefault(); },
        text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
}

// --- choices without their data ---------------------------------------------------------------

// The payloads of a fragment always count as having their data, so the rule about an incomplete choice never
// applies to it. It is tested with a choice whose payloads can lack their data.
class PayloadThatNeedsItsPort : public OstraInterfacePort
{
public:
    bool HasData() const override { return IsPortSet(); }
};

} // namespace

// The choice below needs these functions, but hands no settings down.
template <>
QLatin1String machinery::Walks<PayloadThatNeedsItsPort>::className()
{
    return QLatin1String("OstraInterfacePort");
}
template <>
void machinery::Walks<PayloadThatNeedsItsPort>::applySettings(const PayloadThatNeedsItsPort&, bool,
                                                              const MODELKIT::HeldLogger&)
{}
template <>
std::size_t machinery::Walks<PayloadThatNeedsItsPort>::innerSize()
{
    return 0;
}
template <>
void machinery::Walks<PayloadThatNeedsItsPort>::copyInner(const PayloadThatNeedsItsPort&,
                                                          const PayloadThatNeedsItsPort&)
{}
template <>
void machinery::Walks<PayloadThatNeedsItsPort>::leaveInner(std::byte*, std::size_t)
{}

namespace {

class ChoiceOfPayloads
{
public:
    enum Choice : int
    {
        None = -1,
        First = 0,
        Second = 1
    };

    struct Data : machinery::ChoiceBlock<Choice>
    {
        template <int Index>
        struct Member
        {
            using Slot = machinery::Nested<PayloadThatNeedsItsPort>;
            static constexpr int index = Index;
            static Slot slot(const Data& data) { return Slot(data, Index); }
            static QString fieldName()
            {
                return Index == 0 ? text("m_mastershipState") : text("m_dF_Params");
            }
        };
        using Members = machinery::MemberList<machinery::ListHead, Member<0>, Member<1>>;
    };

    QString GetObjectName() const { return name; }
    bool GetValidate() const { return validate; }
    void SetValidate(bool) const {}
    LoggerPointer GetLogger() const { return nullptr; }
    void SetLogger(const LoggerPointer&) const {}
    bool OwnValidate() const { return validate; }
    const MODELKIT::HeldLogger& OwnLogger() const { return logger; }
    void ApplySettings(bool, const MODELKIT::HeldLogger&) const {}

    void check() const { machinery::Walks<ChoiceOfPayloads>::applyRules(*this); }

    QString name = text("Fragment");
    bool validate = true;
    MODELKIT::HeldLogger logger;
    mutable MODELKIT::BlockPointer<Data> m_data{new Data};
};

TEST(MessageTexts, AnUnsetChoiceWithoutItsDataFailsTheCheckUnderValidation)
{
    ChoiceOfPayloads record;
    record.m_data->choice = ChoiceOfPayloads::First;
    expectThrow<IncompleteDefinitionException>(
        [&] { record.check(); }, text("Fragment:Check failed. The mandatory member m_mastershipState is not "
                                      "set or mandatory data of the member "
                                      "is not set."));
    record.m_data->choice = ChoiceOfPayloads::Second;
    expectThrow<IncompleteDefinitionException>([&] { record.check(); },
                                               text("Fragment:Check failed. The mandatory member m_dF_Params "
                                                    "is not set or mandatory data of the member is "
                                                    "not set."));
    record.name = text("Other");
    expectThrow<IncompleteDefinitionException>([&] { record.check(); },
                                               text("Other:Check failed. The mandatory member m_dF_Params is "
                                                    "not set or mandatory data of the member is not "
                                                    "set."));
    record.validate = false;
    EXPECT_NO_THROW(record.check());
}

TEST(MessageTexts, AChoiceThatIsSetOrHasItsDataOrIsNotMadePassesTheCheck)
{
    ChoiceOfPayloads record;
    EXPECT_NO_THROW(record.check());
    record.m_data->choice = ChoiceOfPayloads::First;
    EXPECT_THROW(record.check(), IncompleteDefinitionException);
    record.m_data->set.set(ChoiceOfPayloads::First);
    EXPECT_NO_THROW(record.check());
    record.m_data->set.clear(ChoiceOfPayloads::First);
    machinery::nestedRecord<ChoiceOfPayloads::Data::Member<0>>(*record.m_data).SetPort(1);
    EXPECT_NO_THROW(record.check());
    record.m_data->choice = ChoiceOfPayloads::Second;
    EXPECT_THROW(record.check(), IncompleteDefinitionException);
}

TEST(MessageTexts, AFragmentPassesTheCheckWhateverIsChosenSetOrReset)
{
    for (const bool validate : {false, true})
        for (int choice = 0; choice < 7; ++choice) {
            Fragment fragment;
            fragment.SetValidate(validate);
            fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(choice));
            EXPECT_NO_THROW(fragment.Check());
            fragment.ResetMastershipState();
            fragment.ResetAcquireMastership();
            fragment.ResetReleaseMastership();
            fragment.ResetOstraInterfacePort();
            fragment.ResetPelVtConnectServer();
            fragment.ResetRouterVtServerPort();
            fragment.ResetDF_Params();
            ASSERT_EQ(static_cast<int>(fragment.GetChoiceFragment()), choice);
            EXPECT_NO_THROW(fragment.Check());
            EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
        }
}

TEST(MessageTexts, AFragmentIsNotCheckedIntoItsPayload)
{
    Fragment fragment;
    fragment.GetMastershipState().SetState(state(3));
    for (const bool validate : {false, true}) {
        fragment.SetValidate(validate);
        EXPECT_NO_THROW(fragment.Check());
        EXPECT_NO_THROW(fragment.Check(true));
    }
    // The rules of the payload are applied when it is written.
    expectThrow<OutOfRangeException>([&] { xmlOf(fragment); },
                                     text("MastershipState: Please set State properly."));
    expectThrow<OutOfRangeException>([&] { frameOf(fragment); },
                                     text("MastershipState: Please set State properly."));
}

// --- items without data -----------------------------------------------------------------------

TEST(MessageTexts, AnItemWithoutDataIsRefusedOnlyUnderValidation)
{
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(1));
    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { message.AppendFragment(Fragment()); },
        text("PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
    Fragment withoutChoice = withPort(2);
    withoutChoice.ResetChoiceFragment();
    EXPECT_THROW(message.AppendFragment(withoutChoice), IncompleteDefinitionException);
    EXPECT_EQ(message.GetFragment().size(), 1);
    EXPECT_NO_THROW(message.AppendFragment(withPort(2)));
    EXPECT_EQ(message.GetFragment().size(), 2);
    message.SetValidate(false);
    EXPECT_NO_THROW(message.AppendFragment(Fragment()));
    EXPECT_EQ(message.GetFragment().size(), 3);
}

TEST(MessageTexts, ARefusedItemLeavesTheListUnset)
{
    PelLu300RouterMessage message;
    message.SetValidate(true);
    EXPECT_THROW(message.AppendFragment(Fragment()), IncompleteDefinitionException);
    EXPECT_FALSE(message.IsFragmentSet());
    EXPECT_FALSE(message.AnyData());
}

TEST(MessageTexts, TheFlagOfTheMessageAndNotOfTheItemDecidesAboutAppending)
{
    PelLu300RouterMessage message;
    Fragment item;
    item.SetValidate(true);
    EXPECT_NO_THROW(message.AppendFragment(item));
    item.SetValidate(false);
    message.SetValidate(true);
    EXPECT_THROW(message.AppendFragment(item), IncompleteDefinitionException);
}

TEST(MessageTexts, AnItemWithoutDataInBinaryInputIsRefusedOnlyUnderValidation)
{
    const char* list = "61023A90 00000008 00000001 00000000";
    PelLu300RouterMessage message;
    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { readBinary(message, list, 16); },
        text("PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
    EXPECT_TRUE(message.GetFragment().isEmpty());
    message.SetValidate(false);
    EXPECT_NO_THROW(readBinary(message, list, 16));
    EXPECT_EQ(message.GetFragment().size(), 1);
}

// --- the invalid choice -----------------------------------------------------------------------

TEST(MessageTexts, TheInvalidChoiceIsRefusedWhateverTheFlag)
{
    for (const bool validate : {false, true}) {
        Fragment fragment = withPort(1);
        fragment.SetValidate(validate);
        expectThrow<OutOfRangeException>(
            [&] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); },
            text("Invalid enum value set in 'Fragment'."));
        EXPECT_FALSE(fragment.AnyData());
        EXPECT_FALSE(fragment.IsOstraInterfacePortSet());
        for (int choice = 0; choice < 7; ++choice)
            EXPECT_NO_THROW(fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(choice)));
    }
}

// --- empty truth values -----------------------------------------------------------------------

TEST(MessageTexts, AnEmptyBooleanIsRefusedOnlyUnderValidation)
{
    AcquireMastership acquire;
    acquire.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] { readXml(acquire, text("<AcquireMastership><Success/></AcquireMastership>")); },
        text("Please set a value or a default for the boolean 'Success' in 'AcquireMastership'."));
    EXPECT_FALSE(acquire.IsSuccessSet());
    acquire.SetValidate(false);
    EXPECT_NO_THROW(readXml(acquire, text("<AcquireMastership><Success/></AcquireMastership>")));
    EXPECT_TRUE(acquire.IsSuccessSet());
    EXPECT_FALSE(acquire.GetSuccess());

    ReleaseMastership release;
    release.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] { readXml(release, text("<ReleaseMastership><Success></Success></ReleaseMastership>")); },
        text("Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'."));
    EXPECT_FALSE(release.IsSuccessSet());
}

// --- the object name in the texts -------------------------------------------------------------

TEST(MessageTexts, FollowTheObjectNameOfARenamedRecord)
{
    Renamed<MastershipState> mastership;
    mastership.SetState(state(3));
    expectThrow<OutOfRangeException>([&] { mastership.Check(); }, text("Other: Please set State properly."));
    mastership.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { mastership.SetMasterClientID(QString()); },
                                     text("Other: Please set MasterClientID properly."));

    Renamed<PelVtConnectServer> server;
    server.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { server.SetAddress(QString()); },
                                     text("Other: Please set Address properly."));

    Renamed<PelLu300RouterMessage> message;
    expectThrow<OutOfRangeException>([&] { message.Check(); }, text("Other: Please set Type properly."));
    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { message.AppendFragment(Fragment()); },
        text("Other: Tried to append not completely defined or invalid item Fragment."));

    Renamed<Fragment> fragment;
    expectThrow<OutOfRangeException>([&] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); },
                                     text("Invalid enum value set in 'Other'."));

    Renamed<AcquireMastership> acquire;
    acquire.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] { readXml(acquire, text("<AcquireMastership><Success/></AcquireMastership>")); },
        text("Please set a value or a default for the boolean 'Success' in 'Other'."));
}

TEST(MessageTexts, OfSettersOfEnumeratedMembersNameTheClassWhateverTheObjectName)
{
    Renamed<MastershipState> mastership;
    mastership.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { mastership.SetState(state(3)); },
        text("enum is not valid (classname=MastershipState,membername=m_state)"));
    Renamed<PelLu300RouterMessage> message;
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { message.SetType(type(3)); },
        text("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
}

// --- order and reach of the check -------------------------------------------------------------

TEST(CheckOrder, TheFirstBrokenRuleInMemberOrderEndsTheCheck)
{
    MastershipState record;
    record.SetMasterClientID(QString());
    record.SetState(state(3));
    expectThrow<OutOfRangeException>([&] { record.Check(); },
                                     text("MastershipState: Please set State properly."));
    record.SetState(MastershipState::MasterPresent);
    expectThrow<OutOfRangeException>([&] { record.Check(); },
                                     text("MastershipState: Please set MasterClientID properly."));
}

TEST(CheckOrder, OfADocumentReachesItsMessageOnlyWhileTheMessageIsSet)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_NO_THROW(document.Check());
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    for (const bool flag : {false, true})
        expectThrow<OutOfRangeException>([&] { document.Check(flag); },
                                         text("PelLu300RouterMessage: Please set Type properly."));
    document.ResetPelLu300RouterMessage();
    message.SetMessageID(7);
    ASSERT_FALSE(document.IsPelLu300RouterMessageSet());
    EXPECT_NO_THROW(document.Check());
}

TEST(CheckOrder, RecordsWithoutRulesPassWithAnyValue)
{
    for (const bool validate : {false, true}) {
        OstraInterfacePort ostra;
        RouterVtServerPort router;
        AcquireMastership acquire;
        ReleaseMastership release;
        DF_Params params;
        for (const IMKObject* record :
             {static_cast<const IMKObject*>(&ostra), static_cast<const IMKObject*>(&router),
              static_cast<const IMKObject*>(&acquire), static_cast<const IMKObject*>(&release),
              static_cast<const IMKObject*>(&params)})
            record->SetValidate(validate);
        for (const unsigned int port : {0U, 65536U, 4294967295U}) {
            ostra.SetPort(port);
            router.SetPort(port);
            EXPECT_NO_THROW(ostra.Check());
            EXPECT_NO_THROW(router.Check());
        }
        for (const bool success : {false, true}) {
            acquire.SetSuccess(success);
            release.SetSuccess(success);
            EXPECT_NO_THROW(acquire.Check());
            EXPECT_NO_THROW(release.Check());
        }
        for (const double value :
             {0.0, -1.0, 1e300, std::numeric_limits<double>::quiet_NaN(),
              std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
            params.SetFrequency(value);
            params.SetDemodulationFrequency(value);
            params.SetBandwidth(value);
            params.SetPanoramaSpan(value);
            EXPECT_NO_THROW(params.Check());
        }
    }
}

TEST(CheckOrder, OutputIsCheckedOnlyUnderValidation)
{
    MastershipState record;
    record.SetState(state(3));
    EXPECT_NO_THROW(xmlOf(record));
    EXPECT_NO_THROW(frameOf(record));
    record.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << qint32(1);
    expectThrow<OutOfRangeException>([&] { record.GetBinary(stream, 5, true); },
                                     text("MastershipState: Please set State properly."));
    EXPECT_EQ(written, bytes("00000001"));
    expectThrow<OutOfRangeException>([&] { xmlOf(record); },
                                     text("MastershipState: Please set State properly."));
}

TEST(CheckOrder, AFailingCheckHasHandedTheSettingsDownAndChangedNoMember)
{
    Opened<PelLu300RouterInterfaceXml> document;
    document.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    const auto logger = std::make_shared<Logger>();
    document.SetLogger(logger);
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetLogger(nullptr);
    message.SetValidate(true);
    EXPECT_THROW(document.Check(), OutOfRangeException);
    EXPECT_EQ(message.GetLogger(), logger);
    EXPECT_FALSE(message.GetValidate());
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_EQ(message.GetFragment().size(), 1);
}

// --- validity of single values ----------------------------------------------------------------

TEST(CheckedValues, ValidityIsAnsweredWhateverTheFlag)
{
    for (const bool validate : {false, true}) {
        MastershipState mastership;
        mastership.SetValidate(validate);
        for (const int value : {0, 1, 2})
            EXPECT_TRUE(mastership.IsValidState(state(value)));
        for (const int value : {-1, 3})
            EXPECT_FALSE(mastership.IsValidState(state(value)));
        EXPECT_FALSE(mastership.IsValidMasterClientID(QString()));
        EXPECT_TRUE(mastership.IsValidMasterClientID(empty()));
        PelLu300RouterMessage message;
        message.SetValidate(validate);
        for (const int value : {0, 1, 2})
            EXPECT_TRUE(message.IsValidType(type(value)));
        for (const int value : {-1, 3})
            EXPECT_FALSE(message.IsValidType(type(value)));
        EXPECT_TRUE(message.IsValidMessageID(4294967295U));
        EXPECT_TRUE(message.IsValidFragment(QVector<Fragment>()));
        EXPECT_TRUE(message.IsValidFragment(QVector<Fragment>{Fragment()}));
        PelVtConnectServer server;
        server.SetValidate(validate);
        EXPECT_FALSE(server.IsValidAddress(QString()));
        EXPECT_TRUE(server.IsValidAddress(empty()));
        EXPECT_TRUE(server.IsValidPort(4294967295U));
        EXPECT_TRUE(OstraInterfacePort().IsValidPort(4294967295U));
        EXPECT_TRUE(RouterVtServerPort().IsValidPort(0U));
        EXPECT_TRUE(AcquireMastership().IsValidSuccess(false));
        EXPECT_TRUE(ReleaseMastership().IsValidSuccess(true));
        const double nan = std::numeric_limits<double>::quiet_NaN();
        EXPECT_TRUE(DF_Params().IsValidFrequency(nan));
        EXPECT_TRUE(DF_Params().IsValidDemodulationFrequency(nan));
        EXPECT_TRUE(DF_Params().IsValidBandwidth(-std::numeric_limits<double>::infinity()));
        EXPECT_TRUE(DF_Params().IsValidPanoramaSpan(-1.0));
        const Fragment fragment;
        fragment.SetValidate(validate);
        EXPECT_FALSE(fragment.IsValidChoiceFragment(static_cast<Fragment::ChoiceFragment>(-1)));
        EXPECT_TRUE(fragment.IsValidChoiceFragment(static_cast<Fragment::ChoiceFragment>(9)));
        EXPECT_TRUE(fragment.IsValidDF_Params(DF_Params()));
        PelLu300RouterInterfaceXml document;
        EXPECT_TRUE(document.IsValidPelLu300RouterMessage(PelLu300RouterMessage()));
    }
}

} // namespace
