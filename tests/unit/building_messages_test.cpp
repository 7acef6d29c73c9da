// SPDX-License-Identifier: MIT
// Short ways to build messages, and to go through their fragments.

#include "LifecycleSupport.h"

#include "routerinterface/Messages.h"

#include <stdexcept>

using namespace testing_support;
using Message = PelLu300RouterMessage;
using Document = PelLu300RouterInterfaceXml;

namespace {

// What std::invalid_argument says that the statement throws.
template <class Statement>
std::string refusal(const Statement& statement)
{
    try {
        statement();
    } catch (const std::invalid_argument& exception) {
        return exception.what();
    }
    return "nothing was thrown";
}

} // namespace

TEST(BuildingMessages, ARequestHasTypeAndPayloads)
{
    const Message none = MakeRequest();
    EXPECT_EQ(none.GetType(), Message::Request);
    EXPECT_FALSE(none.IsMessageIDSet());
    EXPECT_FALSE(none.IsFragmentSet());

    const Message two = MakeRequest(acquired(true), ostraPort(5000));
    EXPECT_EQ(two.GetType(), Message::Request);
    EXPECT_FALSE(two.IsMessageIDSet());
    ASSERT_EQ(two.GetFragment().size(), 2);
    EXPECT_TRUE(two.GetFragment()[0].GetAcquireMastership().GetSuccess());
    EXPECT_EQ(two.GetFragment()[1].GetOstraInterfacePort().GetPort(), 5000U);

    const Message numbered = MakeRequest(7, acquired(true));
    EXPECT_EQ(numbered.GetMessageID(), 7U);
    EXPECT_EQ(numbered.GetFragment().size(), 1);
    EXPECT_EQ(MakeRequest(4294967295U).GetMessageID(), 4294967295U);
}

TEST(BuildingMessages, AnEventHasNoNumber)
{
    const Message event = MakeEvent(mastership("client"));
    EXPECT_EQ(event.GetType(), Message::Event);
    EXPECT_FALSE(event.IsMessageIDSet());
    EXPECT_EQ(event.GetFragment().size(), 1);
    EXPECT_EQ(MakeMessage(Message::Reply).GetType(), Message::Reply);
}

TEST(BuildingMessages, AReplyHasTheNumberOfItsRequest)
{
    const Message reply = MakeReply(MakeRequest(7, acquired(false)));
    EXPECT_EQ(reply.GetType(), Message::Reply);
    EXPECT_EQ(reply.GetMessageID(), 7U);
    EXPECT_FALSE(reply.IsFragmentSet());
    EXPECT_FALSE(MakeReply(MakeRequest()).IsMessageIDSet());

    const Message withPayloads = MakeReply(MakeRequest(8), acquired(true), ostraPort(5000));
    EXPECT_EQ(withPayloads.GetMessageID(), 8U);
    EXPECT_TRUE(withPayloads == [] {
        Message expected;
        expected.SetType(Message::Reply);
        expected.SetMessageID(8);
        AppendPayload(expected, acquired(true));
        AppendPayload(expected, ostraPort(5000));
        return expected;
    }());
}

TEST(BuildingMessages, AReplyHasNoSettingsOfItsRequest)
{
    const Message request = MakeRequest(7);
    request.SetValidate(true);
    request.SetLogger(std::make_shared<MODELKIT::Logger>());
    const Message reply = MakeReply(request);
    EXPECT_FALSE(reply.GetValidate());
    EXPECT_EQ(reply.GetLogger(), nullptr);
}

TEST(BuildingMessages, ADocumentIsRepliedToByADocument)
{
    const Document request = MakeDocument(MakeRequest(7));
    const Document reply = MakeReply(request, acquired(true));
    EXPECT_TRUE(reply == MakeDocument(MakeReply(MakeRequest(7), acquired(true))));
    EXPECT_TRUE(reply.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(MakeReply(request) == MakeDocument(MakeReply(MakeRequest(7))));
}

TEST(BuildingMessages, OnlyARequestIsRepliedTo)
{
    EXPECT_EQ(refusal([] { MakeReply(MakeEvent()); }),
              "Only a request can be replied to, but the message is of type Event.");
    EXPECT_EQ(refusal([] { MakeReply(MakeReply(MakeRequest(7))); }),
              "Only a request can be replied to, but the message is of type Reply.");
    EXPECT_EQ(refusal([] { MakeReply(Message()); }),
              "Only a request can be replied to, but the message has no type.");
    EXPECT_EQ(refusal([] { MakeReply(Document()); }),
              "Only a request can be replied to, but the message has no type.");
    Message wrong;
    wrong.SetType(static_cast<Message::Type>(9));
    EXPECT_EQ(refusal([&wrong] { MakeReply(wrong); }),
              "Only a request can be replied to, but the message has no type.");
}

TEST(BuildingMessages, ADocumentSharesNothingWithTheMessageThatWasPassed)
{
    Message message = MakeRequest(7);
    Document document = MakeDocument(message);
    message.SetMessageID(8);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetMessageID(), 7U);
}

TEST(Fragments, AreGoneThroughWithoutMarkingTheListAsSet)
{
    Message message;
    for (const Fragment& fragment : FragmentsOf(message))
        FAIL() << fragment.GetChoiceFragment();
    EXPECT_FALSE(message.IsFragmentSet());
}

TEST(Fragments, AreThoseOfTheMessageThemselves)
{
    Message message;
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    const Fragment* expected = message.GetFragment().constData();
    for (const Fragment& fragment : FragmentsOf(message))
        EXPECT_EQ(&fragment, expected++);
    EXPECT_EQ(message.GetFragment().constData() + 2, expected);

    const Document document = MakeDocument(message);
    EXPECT_EQ(FragmentsOf(document).size(), 2);
    EXPECT_TRUE(FragmentsOf(Document()).isEmpty());
}

TEST(Fragments, StayWhileTheMessageChangesOrEnds)
{
    QVector<unsigned int> ports;
    Message message;
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    for (const Fragment& fragment : FragmentsOf(message)) {
        ports.append(fragment.GetOstraInterfacePort().GetPort());
        message.AppendFragment(withPort(3));
        message.GetFragment()[1].GetOstraInterfacePort().SetPort(9);
    }
    for (const Fragment& fragment : FragmentsOf(MakeRequest(ostraPort(4))))
        ports.append(fragment.GetOstraInterfacePort().GetPort());
    EXPECT_EQ(ports, (QVector<unsigned int>{1, 2, 4}));
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1, 9, 3, 3}));
}
