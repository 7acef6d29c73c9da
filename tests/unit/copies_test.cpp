// SPDX-License-Identifier: MIT
// A copy has no logger at any depth and keeps none alive. It has the validation flag of its source and hands
// it down. Detaching a shared block is different: all records in it keep their settings.

#include "TestSupport.h"

#include <memory>
#include <utility>
#include <vector>

using namespace testing_support;
using MODELKIT::Logger;

namespace {

using Message = PelLu300RouterMessage;
using Document = PelLu300RouterInterfaceXml;
using LoggerPointer = std::shared_ptr<Logger>;

Fragment fragment(const LoggerPointer& logger)
{
    Fragment record;
    DF_Params standard;
    standard.SetBandwidth(1);
    record.SetDefaultDF_Params(standard);
    record.GetDefaultDF_Params().SetLogger(logger);
    record.GetPelVtConnectServer().SetAddress(QStringLiteral("a"));
    record.GetOstraInterfacePort().SetPort(1);
    record.SetLogger(logger);
    return record;
}

// Fills the message and gives loggers to all its records, including the defaults.
void fill(Message& message, const LoggerPointer& logger)
{
    message.SetType(Message::Event);
    message.AppendFragment(fragment(logger));
    message.AppendFragment(fragment(logger));
    message.SetDefaultFragment(fragment(logger));
    message.GetDefaultFragment().SetLogger(logger);
    message.GetDefaultFragment().SetValidate(true);
    message.SetLogger(logger);
}

template <class Record>
void expectNoLogger(const Record& record)
{
    EXPECT_EQ(record.GetLogger(), nullptr);
}

void expectNone(const Fragment& fragment, bool validate)
{
    EXPECT_EQ(fragment.GetLogger(), nullptr);
    EXPECT_EQ(fragment.GetValidate(), validate);
    for (const MODELKIT::IMKObject* payload : payloadsOf(fragment)) {
        SCOPED_TRACE(payload->GetObjectName().toStdString());
        EXPECT_EQ(payload->GetLogger(), nullptr);
        EXPECT_EQ(payload->GetValidate(), validate);
    }
    expectNoLogger(fragment.GetDefaultDF_Params());
}

void expectNone(const Message& message, bool validate)
{
    EXPECT_EQ(message.GetLogger(), nullptr);
    EXPECT_EQ(message.GetValidate(), validate);
    for (const Fragment& item : message.GetFragment())
        expectNone(item, validate);
    // Settings are not handed down to defaults: a default keeps its flag, but has no logger.
    expectNone(message.GetDefaultFragment(), message.GetDefaultFragment().GetValidate());
}

// The copy does not keep the logger alive when the source releases it.
template <class Record>
void expectNotKept(Record& source, Record& copy, LoggerPointer& logger)
{
    const std::weak_ptr<Logger> watched = logger;
    logger.reset();
    EXPECT_FALSE(watched.expired());
    source = Record();
    source.ResetLogger();
    EXPECT_TRUE(watched.expired());
    static_cast<void>(copy.IsInitialized());
}

} // namespace

TEST(Copies, OfAFragmentHaveNoLogger)
{
    for (const bool validate : {false, true}) {
        auto logger = std::make_shared<Logger>();
        Fragment source = fragment(nullptr);
        source.SetLogger(logger);
        source.GetDefaultDF_Params().SetLogger(logger);
        source.SetValidate(validate);
        source.GetDF_Params().SetValidate(!validate);
        Fragment copy(source);
        expectNone(copy, validate);
        EXPECT_EQ(source.GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_EQ(source.GetDefaultDF_Params().GetLogger(), logger);
        EXPECT_EQ(std::as_const(source).GetDF_Params().GetValidate(), !validate);
        expectNotKept(source, copy, logger);
    }
}

TEST(Copies, OfAFragmentThatSharesItsDataHaveNoLogger)
{
    auto logger = std::make_shared<Logger>();
    Fragment source = fragment(nullptr);
    source.SetLogger(logger);
    Fragment sharing;
    sharing = source;
    Fragment copy(sharing);
    expectNone(copy, false);
    EXPECT_EQ(std::as_const(source).GetPelVtConnectServer().GetLogger(), logger);
}

TEST(Copies, OfAMessageHaveNoLogger)
{
    for (const bool validate : {false, true}) {
        auto logger = std::make_shared<Logger>();
        Message source;
        fill(source, logger);
        source.SetValidate(validate);
        Message copy(source);
        expectNone(copy, validate);
        EXPECT_TRUE(copy.GetDefaultFragment().GetValidate());
        EXPECT_TRUE(copy.GetDefaultFragment().GetDF_Params().GetValidate());
        EXPECT_EQ(std::as_const(source).GetFragment().at(1).GetOstraInterfacePort().GetLogger(), logger);
        EXPECT_EQ(source.GetDefaultFragment().GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_TRUE(copy == source);
        expectNotKept(source, copy, logger);
    }
}

TEST(Copies, OfADocumentHaveNoLogger)
{
    for (const bool validate : {false, true}) {
        auto logger = std::make_shared<Logger>();
        Document source;
        fill(source.GetPelLu300RouterMessage(), logger);
        Message standard;
        fill(standard, logger);
        source.SetDefaultPelLu300RouterMessage(standard);
        standard = Message();
        standard.ResetLogger();
        source.SetLogger(logger);
        source.SetValidate(validate);
        Document copy(source);
        EXPECT_EQ(copy.GetLogger(), nullptr);
        EXPECT_EQ(copy.GetValidate(), validate);
        expectNone(std::as_const(copy).GetPelLu300RouterMessage(), validate);
        expectNone(copy.GetDefaultPelLu300RouterMessage(), false);
        const Message& before = std::as_const(source).GetPelLu300RouterMessage();
        EXPECT_EQ(before.GetFragment().at(0).GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_TRUE(copy == source);
        expectNotKept(source, copy, logger);
    }
}

TEST(Copies, InAListHaveNoLogger)
{
    auto logger = std::make_shared<Logger>();
    Message message;
    {
        const Fragment item = fragment(logger);
        message.AppendFragment(item);
        expectNone(std::as_const(message).GetFragment().at(0), false);
        EXPECT_EQ(item.GetPelVtConnectServer().GetLogger(), logger);
    }
    const std::weak_ptr<Logger> watched = logger;
    logger.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(Copies, OfTheDefaultItemHaveNoLogger)
{
    const auto logger = std::make_shared<Logger>();
    Message message;
    message.SetDefaultFragment(fragment(logger));
    message.GetDefaultFragment().SetLogger(logger);
    message.ResetToDefault();
    ASSERT_EQ(std::as_const(message).GetFragment().size(), 1);
    expectNone(std::as_const(message).GetFragment().at(0), false);
    EXPECT_EQ(message.GetDefaultFragment().GetPelVtConnectServer().GetLogger(), logger);
}

TEST(Copies, ThatAContainerMakesHaveNoLogger)
{
    const auto logger = std::make_shared<Logger>();
    QVector<Fragment> list;
    list.append(fragment(nullptr));
    list[0].SetLogger(logger);
    QVector<Fragment> copy = list;
    copy[0].GetDF_Params();
    expectNone(copy.at(0), false);
    EXPECT_EQ(list.at(0).GetOstraInterfacePort().GetLogger(), logger);
}

// --- sharing ------------------------------------------------------------------------------------

TEST(Sharing, AListThatIsTakenOutAndChangedLeavesTheMessagesLoggers)
{
    const auto logger = std::make_shared<Logger>();
    Message message;
    fill(message, logger);
    message.GetFragment()[1].GetDF_Params().SetValidate(true);
    // Whether the message or the other list is changed first, the items of the message keep their settings.
    for (const bool messageFirst : {true, false}) {
        SCOPED_TRACE(messageFirst);
        QVector<Fragment> taken = std::as_const(message).GetFragment();
        if (messageFirst)
            message.GetFragment()[0].GetDF_Params();
        taken[0].GetDF_Params();
        if (!messageFirst)
            message.GetFragment()[0].GetDF_Params();
        const QVector<Fragment>& items = std::as_const(message).GetFragment();
        EXPECT_EQ(items.at(0).GetLogger(), logger);
        EXPECT_EQ(items.at(1).GetLogger(), logger);
        EXPECT_EQ(items.at(1).GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_TRUE(items.at(1).GetDF_Params().GetValidate());
    }
}

TEST(Sharing, DetachingKeepsTheSettingsOfDefaults)
{
    const auto logger = std::make_shared<Logger>();
    Message source;
    fill(source, logger);
    source.GetDefaultFragment().GetDefaultDF_Params().SetLogger(logger);
    Document document;
    document.SetDefaultPelLu300RouterMessage(source);
    document.GetDefaultPelLu300RouterMessage().SetValidate(true);
    document.GetDefaultPelLu300RouterMessage().SetLogger(logger);
    Document sharing;
    sharing = document;
    static_cast<void>(sharing.IsInitialized());
    for (const Document* each : {&document, &sharing}) {
        const Message& standard = each->GetDefaultPelLu300RouterMessage();
        EXPECT_EQ(standard.GetLogger(), logger);
        EXPECT_TRUE(standard.GetValidate());
        EXPECT_EQ(standard.GetDefaultFragment().GetLogger(), logger);
        EXPECT_EQ(standard.GetDefaultFragment().GetDefaultDF_Params().GetLogger(), logger);
        EXPECT_EQ(standard.GetFragment().at(0).GetPelVtConnectServer().GetLogger(), logger);
    }
}

TEST(Sharing, DetachingACopiedMessageKeepsTheLaterSettingsOfItsItems)
{
    const auto logger = std::make_shared<Logger>();
    Message source;
    fill(source, std::make_shared<Logger>());
    Message copy(source);
    copy.GetFragment()[1].SetLogger(logger);
    copy.GetFragment()[1].GetPelVtConnectServer().SetValidate(true);
    Message sharing;
    sharing = copy;
    static_cast<void>(copy.IsInitialized());
    for (const Message* each : {&copy, &sharing}) {
        EXPECT_EQ(each->GetFragment().at(0).GetLogger(), nullptr);
        EXPECT_EQ(each->GetFragment().at(1).GetLogger(), logger);
        EXPECT_EQ(each->GetFragment().at(1).GetOstraInterfacePort().GetLogger(), logger);
        EXPECT_TRUE(each->GetFragment().at(1).GetPelVtConnectServer().GetValidate());
    }
}
