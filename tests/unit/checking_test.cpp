// SPDX-License-Identifier: MIT
// Checking and diagnostics: the message texts and when they arise, and how validation flag and logger
// travel from an owner to the records that it owns.
#include "TestSupport.h"

#include "routerinterface/machinery/Checking.h"

#include <array>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;

namespace {

using LoggerPointer = std::shared_ptr<Logger>;

// Names the instances for a record itself and for a class derived from it, which is read by another way.
struct RecordOrDerived
{
    template <class R>
    static std::string GetName(int instance)
    {
        return instance == 0 ? "Record" : "Derived";
    }
};

template <class R>
class Renamed : public R
{
public:
    Renamed() { this->SetObjectName(text("Other")); }
};

void readBinary(IMKObject& record, const char* hex, int length)
{
    QDataStream stream(bytes(hex));
    record.SetBinary(stream, length);
}

// Reads one child element that no record knows.
template <class R>
void readUnknownChild(Opened<R>& record)
{
    QXmlStreamReader reader(text("<outer><Unknown/></outer>"));
    ASSERT_TRUE(reader.readNextStartElement());
    ASSERT_TRUE(reader.readNextStartElement());
    record.ProcessXmlStartElement(reader);
}

MastershipState::State state(int value) { return static_cast<MastershipState::State>(value); }
PelLu300RouterMessage::Type type(int value) { return static_cast<PelLu300RouterMessage::Type>(value); }

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
                // A message without type; its settings have been handed on before.
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

// Message G.
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

// --- messages A -------------------------------------------------------------------------------

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

TEST(MessageTexts, TheInvalidStateOfARecordPlaysNoPartInTheCheck)
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
            // A default does not make up for it.
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

// --- messages B -------------------------------------------------------------------------------

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

// --- messages C -------------------------------------------------------------------------------

// Every payload of a fragment always counts as holding its data, so that the rule about an incomplete
// choice never fires there. It is tested on a choice whose payloads can lack their data.
class PayloadThatNeedsItsPort : public OstraInterfacePort
{
public:
    bool HasData() const override { return IsPortSet(); }
};

} // namespace

// The choice below hands nothing down.
template <>
QLatin1String machinery::Walks<PayloadThatNeedsItsPort>::className()
{
    return QLatin1String("OstraInterfacePort");
}
template <>
void machinery::Walks<PayloadThatNeedsItsPort>::applySettings(const PayloadThatNeedsItsPort&, bool,
                                                              const LoggerPointer&)
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
    const LoggerPointer& OwnLogger() const { return logger; }
    void ApplySettings(bool, const LoggerPointer&) const {}
    static void ShareLogger(LoggerPointer&, const LoggerPointer&) {}

    void check() const
    {
        machinery::Walks<ChoiceOfPayloads>::applyRules(*this);
    }

    QString name = text("Fragment");
    bool validate = true;
    LoggerPointer logger;
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
    // The payload's own rules are applied when it writes itself.
    expectThrow<OutOfRangeException>([&] { xmlOf(fragment); },
                                     text("MastershipState: Please set State properly."));
    expectThrow<OutOfRangeException>([&] { frameOf(fragment); },
                                     text("MastershipState: Please set State properly."));
}

// --- message D --------------------------------------------------------------------------------

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

// --- message E --------------------------------------------------------------------------------

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

// --- message F --------------------------------------------------------------------------------

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

// --- propagation: what an owner owns ----------------------------------------------------------

std::vector<const IMKObject*> ownedBy(const Fragment& fragment)
{
    const auto payloads = payloadsOf(fragment);
    return {payloads.begin(), payloads.end()};
}

std::vector<const IMKObject*> ownedBy(const PelLu300RouterMessage& message)
{
    std::vector<const IMKObject*> owned;
    for (const Fragment& item : message.GetFragment()) {
        owned.push_back(&item);
        for (const IMKObject* payload : payloadsOf(item))
            owned.push_back(payload);
    }
    return owned;
}

std::vector<const IMKObject*> ownedBy(const PelLu300RouterInterfaceXml& document)
{
    std::vector<const IMKObject*> owned{&document.GetPelLu300RouterMessage()};
    for (const IMKObject* below : ownedBy(document.GetPelLu300RouterMessage()))
        owned.push_back(below);
    return owned;
}

// Owners that pass every check, with several records below them.
void build(Fragment& fragment) { fragment.GetOstraInterfacePort().SetPort(1); }
void build(PelLu300RouterMessage& message)
{
    message.SetType(PelLu300RouterMessage::Event);
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    message.AppendFragment(withPort(3));
}
void build(PelLu300RouterInterfaceXml& document) { build(document.GetPelLu300RouterMessage()); }

template <class Owner>
void expectSettings(const Owner& owner, bool validate, const LoggerPointer& logger)
{
    std::size_t position = 0;
    for (const IMKObject* owned : ownedBy(owner)) {
        EXPECT_EQ(owned->GetValidate(), validate) << position;
        EXPECT_EQ(owned->GetLogger(), logger) << position;
        ++position;
    }
    EXPECT_GE(position, 1U);
}

template <class Owner>
class SettingsOfOwners : public ::testing::Test
{
};
using Owners = ::testing::Types<Fragment, PelLu300RouterMessage, PelLu300RouterInterfaceXml>;
TYPED_TEST_SUITE(SettingsOfOwners, Owners, RecordName);

TYPED_TEST(SettingsOfOwners, ReachEveryRecordBelowAlsoThoseNotChosen)
{
    TypeParam owner;
    build(owner);
    const auto logger = std::make_shared<Logger>();
    owner.SetValidate(true);
    owner.SetLogger(logger);
    expectSettings(owner, true, logger);
    owner.SetValidate(false);
    owner.SetLogger(nullptr);
    expectSettings(owner, false, nullptr);
}

TYPED_TEST(SettingsOfOwners, ReachRecordsThatWereTouchedBefore)
{
    TypeParam owner;
    build(owner);
    for (const IMKObject* owned : ownedBy(owner)) {
        owned->SetValidate(true);
        owned->SetLogger(std::make_shared<Logger>());
    }
    owner.SetValidate(false);
    owner.SetLogger(nullptr);
    expectSettings(owner, false, nullptr);
}

TYPED_TEST(SettingsOfOwners, SetBeforeThereIsAnyDataAreLearntWhenItIsCreated)
{
    TypeParam owner;
    const auto logger = std::make_shared<Logger>();
    owner.SetValidate(true);
    owner.SetLogger(logger);
    ASSERT_FALSE(owner.IsInitialized());
    for (const IMKObject* owned : ownedBy(owner)) {
        EXPECT_TRUE(owned->GetValidate());
        EXPECT_EQ(owned->GetLogger(), logger);
    }
    EXPECT_TRUE(owner.IsInitialized());
}

TYPED_TEST(SettingsOfOwners, OfOneHolderOfSharedDataDoNotTouchTheOther)
{
    const auto before = std::make_shared<Logger>();
    const auto after = std::make_shared<Logger>();
    TypeParam first;
    build(first);
    first.SetLogger(before);
    TypeParam second;
    second = first;
    second.SetValidate(true);
    expectSettings(first, false, before);
    second = first;
    second.SetLogger(after);
    expectSettings(first, false, before);
    expectSettings(second, false, after);
}

TYPED_TEST(SettingsOfOwners, SurviveTheSeparationOfSharedData)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam first;
    build(first);
    first.SetValidate(true);
    first.SetLogger(logger);
    TypeParam second;
    second = first;
    // A reading access gives the accessing record data of its own.
    expectSettings(second, true, logger);
    expectSettings(first, true, logger);
    TypeParam third;
    third = first;
    expectSettings(first, true, logger);
    expectSettings(third, true, logger);
}

TYPED_TEST(SettingsOfOwners, AreReappliedToTheCopyOnlyByAnOperation)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam first;
    build(first);
    first.SetValidate(true);
    first.SetLogger(logger);
    TypeParam second;
    second = first;
    second.Check();
    expectSettings(second, false, nullptr);
    expectSettings(first, true, logger);
}

TYPED_TEST(SettingsOfOwners, ResettingTheLoggerReachesTheRecordsBelowWithTheNextOperation)
{
    TypeParam owner;
    build(owner);
    const auto logger = std::make_shared<Logger>();
    owner.SetLogger(logger);
    owner.ResetLogger();
    EXPECT_EQ(owner.GetLogger(), nullptr);
    expectSettings(owner, false, logger);
    owner.Check();
    expectSettings(owner, false, nullptr);
}

TYPED_TEST(SettingsOfOwners, AreNotReappliedByQuestionsAndSetters)
{
    TypeParam owner;
    build(owner);
    const auto own = std::make_shared<Logger>();
    const auto byHand = std::make_shared<Logger>();
    owner.SetLogger(own);
    for (const IMKObject* owned : ownedBy(owner)) {
        owned->SetValidate(true);
        owned->SetLogger(byHand);
    }
    owner.HasData();
    owner.AnyData();
    owner.IsInitialized();
    EXPECT_TRUE(owner == owner);
    const TypeParam copy(owner);
    expectSettings(owner, true, byHand);
}

TYPED_TEST(SettingsOfOwners, AreNotReappliedByReadingAnElementWithoutChildren)
{
    TypeParam owner;
    build(owner);
    const auto byHand = std::make_shared<Logger>();
    for (const IMKObject* owned : ownedBy(owner)) {
        owned->SetValidate(true);
        owned->SetLogger(byHand);
    }
    readXml(owner, text("<any attribute=\"1\">text</any>"));
    expectSettings(owner, true, byHand);
    readXml(owner, text("<any><Unknown/></any>"));
    expectSettings(owner, false, nullptr);
}

// Every operation that begins by handing the settings down.
struct Operation
{
    const char* name;
    std::function<void(Opened<Fragment>&)> onFragment;
    std::function<void(Opened<PelLu300RouterMessage>&)> onMessage;
    std::function<void(Opened<PelLu300RouterInterfaceXml>&)> onDocument;
};

template <class Apply>
Operation operation(const char* name, Apply apply)
{
    return {name, apply, apply, apply};
}

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.name; }

std::vector<Operation> operations()
{
    return {
        operation("Check", [](auto& record) { record.Check(); }),
        operation("CheckWithFlag", [](auto& record) { record.Check(true); }),
        operation("GetXml", [](auto& record) { EXPECT_NE(xmlOf(record), QString()); }),
        operation("GetBinary", [](auto& record) { EXPECT_NE(frameOf(record), QByteArray()); }),
        operation("SetBinary", [](auto& record) { readBinary(record, "", 0); }),
        operation("SetBinaryThatFails",
                  [](auto& record) { EXPECT_THROW(readBinary(record, "", -1), BinaryParsingException); }),
        operation("ProcessXmlStartElement", [](auto& record) { readUnknownChild(record); }),
        operation("ProcessXml", [](auto& record) { readXml(record, text("<any><Unknown/></any>")); }),
    };
}

class SettingsAreReappliedBy : public ::testing::TestWithParam<Operation>
{
protected:
    template <class Owner, class Apply>
    static void check(const Apply& apply)
    {
        for (const bool validate : {false, true}) {
            Opened<Owner> owner;
            build(static_cast<Owner&>(owner));
            const auto own = validate ? std::make_shared<Logger>() : LoggerPointer();
            const auto byHand = validate ? LoggerPointer() : std::make_shared<Logger>();
            owner.SetValidate(validate);
            owner.SetLogger(own);
            for (const IMKObject* owned : ownedBy(owner)) {
                owned->SetValidate(!validate);
                owned->SetLogger(byHand);
            }
            apply(owner);
            EXPECT_EQ(owner.GetValidate(), validate);
            EXPECT_EQ(owner.GetLogger(), own);
            expectSettings(static_cast<const Owner&>(owner), validate, own);
        }
    }
};

TEST_P(SettingsAreReappliedBy, TheFragmentToAllItsPayloads) { check<Fragment>(GetParam().onFragment); }
TEST_P(SettingsAreReappliedBy, TheMessageToAllItsItemsAndTheirPayloads)
{
    check<PelLu300RouterMessage>(GetParam().onMessage);
}
TEST_P(SettingsAreReappliedBy, TheDocumentToEverythingBelow)
{
    check<PelLu300RouterInterfaceXml>(GetParam().onDocument);
}

INSTANTIATE_TEST_SUITE_P(EachOperation, SettingsAreReappliedBy, ::testing::ValuesIn(operations()),
                         [](const auto& of) { return std::string(of.param.name); });

TEST(SettingsOfMembers, SurviveAssignmentIntoTheMember)
{
    const auto logger = std::make_shared<Logger>();
    const auto foreign = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    document.SetLogger(logger);
    PelLu300RouterMessage message;
    build(message);
    message.SetLogger(foreign);
    document.SetPelLu300RouterMessage(message);
    const PelLu300RouterMessage& member = std::as_const(document).GetPelLu300RouterMessage();
    EXPECT_TRUE(member.GetValidate());
    EXPECT_EQ(member.GetLogger(), logger);
    document.Check();
    expectSettings(document, true, logger);
    expectSettings(message, false, foreign);
    EXPECT_FALSE(message.GetValidate());
    EXPECT_EQ(message.GetLogger(), foreign);
}

TEST(SettingsOfMembers, SurviveAssignmentOfAPayload)
{
    const auto logger = std::make_shared<Logger>();
    Fragment fragment;
    fragment.SetValidate(true);
    fragment.SetLogger(logger);
    DF_Params params;
    params.SetFrequency(1.0);
    fragment.SetDF_Params(params);
    EXPECT_TRUE(std::as_const(fragment).GetDF_Params().GetValidate());
    EXPECT_EQ(std::as_const(fragment).GetDF_Params().GetLogger(), logger);
    EXPECT_FALSE(params.GetValidate());
    EXPECT_EQ(params.GetLogger(), nullptr);
}

TEST(SettingsOfMembers, OfAPayloadTakeEffectInItsSetters)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_THROW(fragment.GetMastershipState().SetState(state(3)), OutOfRangeException);
    EXPECT_THROW(fragment.GetPelVtConnectServer().SetAddress(QString()), OutOfRangeException);
    EXPECT_THROW(document.GetPelLu300RouterMessage().AppendFragment(Fragment()),
                 IncompleteDefinitionException);
    document.SetValidate(false);
    EXPECT_NO_THROW(document.GetPelLu300RouterMessage().AppendFragment(Fragment()));
}

TEST(SettingsOfItems, AnAppendedItemLearnsThemWithTheNextOperationOfItsOwner)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    document.SetValidate(true);
    document.SetLogger(logger);
    Fragment item = withPort(1);
    item.SetLogger(std::make_shared<Logger>());
    message.AppendFragment(item);
    EXPECT_FALSE(std::as_const(message).GetFragment()[0].GetValidate());
    EXPECT_EQ(std::as_const(message).GetFragment()[0].GetLogger(), nullptr);
    message.Check();
    expectSettings(document, true, logger);
    EXPECT_FALSE(item.GetValidate());
}

TEST(SettingsOfItems, AnAppendedItemBringsItsOwnFlag)
{
    PelLu300RouterMessage message;
    Fragment item = withPort(1);
    item.SetValidate(true);
    message.AppendFragment(item);
    EXPECT_TRUE(std::as_const(message).GetFragment()[0].GetValidate());
}

TEST(SettingsOfItems, AListThatTheCallerSharesIsNotTouched)
{
    const auto logger = std::make_shared<Logger>();
    QVector<Fragment> list{withPort(1), withPort(2)};
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    message.SetFragment(list);
    message.SetValidate(true);
    message.SetLogger(logger);
    const QVector<Fragment> handedOut = std::as_const(message).GetFragment();
    expectSettings(message, true, logger);
    for (const Fragment& item : std::as_const(list)) {
        EXPECT_FALSE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), nullptr);
    }
    message.SetValidate(false);
    message.SetLogger(nullptr);
    for (const Fragment& item : handedOut) {
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), logger);
    }
    expectSettings(message, false, nullptr);
}

TEST(SettingsOfItems, SurviveTheSeparationOfAListThatIsShared)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    message.SetLogger(logger);
    {
        const QVector<Fragment> handedOut = std::as_const(message).GetFragment();
        message.SetValidate(true);
        expectSettings(message, true, logger);
    }
    const QVector<Fragment> handedOut = std::as_const(message).GetFragment();
    message.AppendFragment(withPort(3));
    ASSERT_EQ(std::as_const(message).GetFragment().size(), 3);
    EXPECT_EQ(handedOut.size(), 2);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(std::as_const(message).GetFragment()[i].GetLogger(), logger);
        EXPECT_TRUE(std::as_const(message).GetFragment()[i].GetValidate());
    }
    EXPECT_EQ(std::as_const(message).GetFragment()[2].GetLogger(), nullptr);
}

TEST(SettingsOfItems, SurviveTheGrowthOfTheList)
{
    const auto logger = std::make_shared<Logger>();
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(0));
    message.SetLogger(logger);
    for (unsigned int port = 1; port < 100; ++port)
        message.AppendFragment(withPort(port));
    EXPECT_EQ(std::as_const(message).GetFragment()[0].GetLogger(), logger);
    EXPECT_EQ(std::as_const(message).GetFragment()[1].GetLogger(), nullptr);
}

// --- settings while a message is read ---------------------------------------------------------

std::vector<bool> itemsWithLogger(const PelLu300RouterMessage& message, const LoggerPointer& logger)
{
    std::vector<bool> with;
    for (const Fragment& item : message.GetFragment()) {
        with.push_back(item.GetLogger() == logger);
        EXPECT_TRUE(item.GetLogger() == logger || item.GetLogger() == nullptr);
    }
    return with;
}

const char* const threeItems = "<Fragment><DF_Params/></Fragment><Fragment><OstraInterfacePort/></Fragment>"
                               "<Fragment><DF_Params/></Fragment>";

template <class Message>
class SettingsWhileReading : public ::testing::Test
{
};
using Messages = ::testing::Types<PelLu300RouterMessage, Opened<PelLu300RouterMessage>>;
TYPED_TEST_SUITE(SettingsWhileReading, Messages, RecordOrDerived);

TYPED_TEST(SettingsWhileReading, ItemsReadEarlierHaveTheLoggerAndTheLastGetsItWithTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam message;
    message.SetType(PelLu300RouterMessage::Event);
    message.SetValidate(true);
    message.SetLogger(logger);
    readXml(message, text("<PelLu300RouterMessage>") + text(threeItems) + text("</PelLu300RouterMessage>"));
    EXPECT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{true, true, false}));
    for (const Fragment& item : std::as_const(message).GetFragment())
        EXPECT_TRUE(item.GetValidate());
    const Fragment& first = std::as_const(message).GetFragment()[0];
    for (const IMKObject* payload : payloadsOf(first))
        EXPECT_EQ(payload->GetLogger(), logger);
    const Fragment& last = std::as_const(message).GetFragment()[2];
    for (const IMKObject* payload : payloadsOf(last))
        EXPECT_EQ(payload->GetLogger(), nullptr);
    message.Check();
    expectSettings(message, true, logger);
}

TYPED_TEST(SettingsWhileReading, AnyFurtherChildElementHandsThemToTheLastItem)
{
    const auto logger = std::make_shared<Logger>();
    for (const char* further : {"<Unknown/>", "<MessageID>1</MessageID>", "<Type>Event</Type>"}) {
        TypeParam message;
        message.SetLogger(logger);
        readXml(message, text("<PelLu300RouterMessage>") + text(threeItems) + text(further)
                             + text("</PelLu300RouterMessage>"));
        EXPECT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{true, true, true})) << further;
    }
}

TYPED_TEST(SettingsWhileReading, ItemsThatWereThereGetThemWithTheFirstChildElement)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam message;
    message.SetLogger(logger);
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    ASSERT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{false, false}));
    readXml(message, text("<PelLu300RouterMessage>") + text(threeItems) + text("</PelLu300RouterMessage>"));
    EXPECT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{true, true, true, true, false}));
}

TYPED_TEST(SettingsWhileReading, ItemsReadFromBinaryInputGetTheLoggerWithTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam message;
    message.SetType(PelLu300RouterMessage::Event);
    message.SetValidate(true);
    message.SetLogger(logger);
    message.AppendFragment(withPort(1));
    readBinary(message, "61023A90 0000001C 00000002 00000008 BE2DFF74 00000000 00000008 BE2DFF74 00000000",
               36);
    EXPECT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{true, false, false}));
    EXPECT_TRUE(std::as_const(message).GetFragment()[1].GetValidate());
    EXPECT_TRUE(std::as_const(message).GetFragment()[2].GetValidate());
    message.Check();
    expectSettings(message, true, logger);
}

template <class Document>
class SettingsWhileReadingADocument : public ::testing::Test
{
};
using Documents = ::testing::Types<PelLu300RouterInterfaceXml, Opened<PelLu300RouterInterfaceXml>>;
TYPED_TEST_SUITE(SettingsWhileReadingADocument, Documents, RecordOrDerived);

TYPED_TEST(SettingsWhileReadingADocument, TheLastItemGetsTheLoggerWithTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam document;
    document.SetValidate(true);
    document.SetLogger(logger);
    readXml(document, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type>")
                          + text(threeItems) + text("</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
    const PelLu300RouterMessage& message = std::as_const(document).GetPelLu300RouterMessage();
    EXPECT_EQ(message.GetLogger(), logger);
    EXPECT_TRUE(message.GetValidate());
    EXPECT_EQ(itemsWithLogger(message, logger), (std::vector<bool>{true, true, false}));
    document.Check();
    expectSettings(document, true, logger);
}

TYPED_TEST(SettingsWhileReadingADocument, AnElementBehindTheMessageHandsThemToTheLastItem)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam document;
    document.SetLogger(logger);
    readXml(document, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage>") + text(threeItems)
                          + text("</PelLu300RouterMessage><Unknown/></PelLu300RouterInterfaceXml>"));
    EXPECT_EQ(itemsWithLogger(std::as_const(document).GetPelLu300RouterMessage(), logger),
              (std::vector<bool>{true, true, true}));
}

TYPED_TEST(SettingsWhileReadingADocument, ASecondMessageElementHandsThemToTheItemsOfTheFirst)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam document;
    document.SetLogger(logger);
    readXml(document,
            text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage>") + text(threeItems)
                + text("</PelLu300RouterMessage><PelLu300RouterMessage><Fragment/></PelLu300RouterMessage>"
                       "</PelLu300RouterInterfaceXml>"));
    EXPECT_EQ(itemsWithLogger(std::as_const(document).GetPelLu300RouterMessage(), logger),
              (std::vector<bool>{true, true, true, false}));
}

TYPED_TEST(SettingsWhileReadingADocument, ItemsReadFromBinaryInputGetTheLoggerWithTheNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    TypeParam document;
    document.SetLogger(logger);
    const char* once = "9B1A7AD8 00000014 61023A90 0000000C 00000001 00000004 00000000";
    // The entry is no well-formed item, so that it ends in a length error.
    EXPECT_THROW(readBinary(document, once, 28), BinaryParsingException);
    document.Reset();
    const char* twice = "9B1A7AD8 00000018 61023A90 00000010 00000001 00000008 BE2DFF74 00000000"
                        "9B1A7AD8 00000018 61023A90 00000010 00000001 00000008 BE2DFF74 00000000";
    readBinary(document, twice, 64);
    // The second entry began an operation of the message.
    EXPECT_EQ(itemsWithLogger(std::as_const(document).GetPelLu300RouterMessage(), logger),
              (std::vector<bool>{true, false}));
}

TYPED_TEST(SettingsWhileReadingADocument, TheFlagOfTheDocumentDecidesWhatItsMessageAccepts)
{
    const QString xml =
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Fragment><AcquireMastership><Success/>"
             "</AcquireMastership></Fragment></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    TypeParam lenient;
    lenient.GetPelLu300RouterMessage().SetValidate(true);
    EXPECT_NO_THROW(readXml(lenient, xml));
    EXPECT_EQ(lenient.GetPelLu300RouterMessage().GetFragment().size(), 1);
    TypeParam strict;
    strict.SetValidate(true);
    strict.GetPelLu300RouterMessage().SetValidate(false);
    EXPECT_THROW(readXml(strict, xml), InvalidXmlException);
    EXPECT_EQ(strict.GetPelLu300RouterMessage().GetFragment().size(), 0);
}

TEST(SettingsWhileReadingAFragment, ReachThePayloadBeforeItIsRead)
{
    const QString xml = text("<Fragment><MastershipState><State>Absent</State></MastershipState></Fragment>");
    Fragment lenient;
    lenient.GetMastershipState().SetValidate(true);
    EXPECT_NO_THROW(readXml(lenient, xml));
    Fragment strict;
    strict.SetValidate(true);
    strict.GetMastershipState().SetValidate(false);
    EXPECT_THROW(readXml(strict, xml), OutOfRangeException);
}

// --- the logger -------------------------------------------------------------------------------

class CountingSink : public MODELKIT::LogSink
{
public:
    void Write(Logger::Level, const QString&) override { ++entries; }
    int entries = 0;
};

TEST(RecordsAndTheLogger, NoRecordWritesAnEntry)
{
    const auto sink = std::make_shared<CountingSink>();
    const auto logger = std::make_shared<Logger>(sink);
    logger->Log(Logger::Info, text("the sink counts"));
    ASSERT_EQ(sink->entries, 1);
    for (const bool validate : {false, true}) {
        Opened<PelLu300RouterInterfaceXml> document;
        document.SetLogger(logger);
        document.SetValidate(validate);
        const auto attempt = [](const std::function<void()>& action) {
            try {
                action();
            } catch (const MKException&) {
                return;
            }
        };
        attempt([&] {
            readXml(
                document,
                text("<PelLu300RouterInterfaceXml "
                     "a=\"1\"><Unknown/><PelLu300RouterMessage><type/><MessageID>abc"
                     "</MessageID><Fragment><X/><DF_Params><Frequency>x</Frequency></DF_Params></Fragment>"
                     "<Fragment><AcquireMastership><Success/></AcquireMastership></Fragment><Fragment/>"
                     "<Type>Unknown</Type></PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
        });
        attempt([&] { document.Check(); });
        attempt([&] { xmlOf(document); });
        attempt([&] { frameOf(document); });
        attempt([&] { readBinary(document, "9B1A7AD8 00000008 01020304 00000000", 16); });
        attempt([&] { readBinary(document, "00", 5); });
        attempt([&] { readUnknownChild(document); });
        attempt([&] { document.GetPelLu300RouterMessage().AppendFragment(Fragment()); });
        attempt([&] { document.GetPelLu300RouterMessage().SetType(type(3)); });
        Fragment fragment;
        fragment.SetLogger(logger);
        fragment.SetValidate(validate);
        attempt([&] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); });
        attempt([&] { fragment.GetMastershipState().SetState(state(3)); });
        attempt([&] { fragment.GetMastershipState().SetMasterClientID(QString()); });
        attempt([&] { fragment.GetPelVtConnectServer().SetAddress(QString()); });
        attempt([&] { fragment.GetPelVtConnectServer().Check(); });
        attempt([&] { xmlOf(fragment); });
    }
    EXPECT_EQ(sink->entries, 1);
}

TEST(RecordsAndTheLogger, ThePayloadsOwnTheLoggerToo)
{
    std::weak_ptr<Logger> watched;
    Fragment fragment;
    fragment.GetDF_Params();
    {
        const auto logger = std::make_shared<Logger>();
        watched = logger;
        fragment.SetLogger(logger);
    }
    fragment.ResetLogger();
    EXPECT_FALSE(watched.expired());
    fragment.Check();
    EXPECT_TRUE(watched.expired());
}

} // namespace
