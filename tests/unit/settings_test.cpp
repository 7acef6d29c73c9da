// SPDX-License-Identifier: MIT
// The validation flag and the logger: how and when they pass from an owner to the records that it owns.

#include "CheckingSupport.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;

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

// Lets two owners share the data of the first, which validates and has the logger.
template <class Owner>
void share(Owner& first, Owner& second, const LoggerPointer& logger)
{
    build(first);
    first.SetValidate(true);
    first.SetLogger(logger);
    second = first;
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

TYPED_TEST(SettingsOfOwners, SetBeforeThereIsAnyDataAreHandedDownWhenItIsCreated)
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
    TypeParam second;
    share(first, second, logger);
    // A const getter makes the record detach.
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
    TypeParam second;
    share(first, second, logger);
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

TEST(SettingsOfItems, AnAppendedItemGetsThemWithTheNextOperationOfItsOwner)
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
    // The entry does not contain a valid item, so reading ends with a length error.
    EXPECT_THROW(readBinary(document, once, 28), BinaryParsingException);
    document.Reset();
    const char* twice = "9B1A7AD8 00000018 61023A90 00000010 00000001 00000008 BE2DFF74 00000000"
                        "9B1A7AD8 00000018 61023A90 00000010 00000001 00000008 BE2DFF74 00000000";
    readBinary(document, twice, 64);
    // The second entry handed the settings down to the items of the first.
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
