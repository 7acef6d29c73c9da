// SPDX-License-Identifier: MIT
// A fragment that was read, copied or filled in place has one allocation for its own data and that of its
// payload. Payloads that were assigned from it or to it are independent of that, in whatever order the
// records change and end.

#include "FailingAllocator.h"
#include "TestSupport.h"

#include <memory>
#include <utility>

using namespace testing_support;

namespace {

using Document = PelLu300RouterInterfaceXml;
using Message = PelLu300RouterMessage;

Document documentOf(int fragments)
{
    Document document;
    Message& message = document.GetPelLu300RouterMessage();
    message.SetType(Message::Reply);
    for (int i = 0; i < fragments; ++i) {
        Fragment fragment;
        fragment.GetPelVtConnectServer().SetAddress(
            QStringLiteral("a server whose name is number %1").arg(i));
        fragment.GetPelVtConnectServer().SetPort(static_cast<unsigned int>(i));
        message.AppendFragment(fragment);
    }
    return document;
}

QVector<Fragment>& fragmentsOf(Document& document)
{
    return document.GetPelLu300RouterMessage().GetFragment();
}

// The ways in which a fragment gets its payload's data into its own memory.
struct Way
{
    const char* name;
    std::unique_ptr<Document> (*make)(Document original);
};

const Way ways[] = {
    {"read from the binary form",
     [](Document original) {
         auto document = std::make_unique<Document>();
         EXPECT_TRUE(document->SetBinaryRepresentation(original.GetBinaryRepresentationAsQByteArray()));
         return document;
     }},
    {"read from XML",
     [](Document original) {
         auto document = std::make_unique<Document>();
         EXPECT_TRUE(document->SetXmlString(original.GetXmlString(), false));
         return document;
     }},
    {"read by Qt's reader",
     [](Document original) {
         auto document = std::make_unique<Document>();
         readXml(*document, xmlOf(original));
         return document;
     }},
    {"filled in place",
     [](Document original) {
         auto document = std::make_unique<Document>();
         Message& message = document->GetPelLu300RouterMessage();
         message.SetType(Message::Reply);
         for (Fragment& fragment : fragmentsOf(original)) {
             PelVtConnectServer& source = fragment.GetPelVtConnectServer();
             PelVtConnectServer& server = message.AddFragment().GetPelVtConnectServer();
             server.SetAddress(source.GetAddress());
             server.SetPort(source.GetPort());
         }
         EXPECT_TRUE(*document == original);
         return document;
     }},
    {"copied", [](Document original) { return std::make_unique<Document>(original); }},
    {"detached",
     [](Document original) {
         auto document = std::make_unique<Document>();
         *document = original;
         fragmentsOf(*document);
         return document;
     }},
};

const QString address = QStringLiteral("a server whose name is number 0");

void expectPayload(PelVtConnectServer& server, unsigned int port)
{
    EXPECT_EQ(server.GetAddress(), address);
    EXPECT_EQ(server.GetPort(), port);
}

template <class Test>
void forEachWay(const Test& test)
{
    for (const Way& way : ways) {
        SCOPED_TRACE(way.name);
        test(way.make(documentOf(2)));
    }
}

TEST(InnerBlocks, APayloadThatWasAssignedOutlivesItsFragment)
{
    forEachWay([](std::unique_ptr<Document> document) {
        PelVtConnectServer server;
        server = std::as_const(fragmentsOf(*document)[0]).GetPelVtConnectServer();
        document.reset();
        expectPayload(server, 0);
        server.SetPort(7);
        expectPayload(server, 7);
    });
}

TEST(InnerBlocks, TheLastOfSeveralSharersOutlivesTheFragmentToo)
{
    forEachWay([](std::unique_ptr<Document> document) {
        auto first = std::make_unique<PelVtConnectServer>();
        *first = std::as_const(fragmentsOf(*document)[0]).GetPelVtConnectServer();
        PelVtConnectServer second;
        second = *first;
        document.reset();
        expectPayload(*first, 0);
        first.reset();
        expectPayload(second, 0);
    });
}

TEST(InnerBlocks, APayloadAndItsSharerChangeIndependently)
{
    forEachWay([](std::unique_ptr<Document> document) {
        PelVtConnectServer& inside = fragmentsOf(*document)[0].GetPelVtConnectServer();
        PelVtConnectServer outside;
        outside = inside;
        inside.SetPort(1);
        expectPayload(outside, 0);
        outside = inside;
        outside.SetPort(2);
        expectPayload(inside, 1);
        expectPayload(outside, 2);
    });
}

TEST(InnerBlocks, APayloadThatIsReplacedLeavesItsSharersAsTheyWere)
{
    forEachWay([](std::unique_ptr<Document> document) {
        Fragment& fragment = fragmentsOf(*document)[0];
        PelVtConnectServer outside;
        outside = std::as_const(fragment).GetPelVtConnectServer();
        PelVtConnectServer other;
        other.SetAddress(address);
        other.SetPort(9);
        fragment.SetPelVtConnectServer(other);
        expectPayload(outside, 0);
        expectPayload(fragment.GetPelVtConnectServer(), 9);
        fragment.ResetPelVtConnectServer();
        EXPECT_FALSE(fragment.GetPelVtConnectServer().AnyData());
        fragment.GetPelVtConnectServer().SetPort(3);
        document.reset();
        expectPayload(outside, 0);
    });
}

TEST(InnerBlocks, AFragmentThatIsReadAgainTakesEveryPayload)
{
    forEachWay([](std::unique_ptr<Document> document) {
        Fragment& fragment = fragmentsOf(*document)[0];
        Fragment other;
        other.GetDF_Params().SetBandwidth(4);
        readFrame(fragment, frameOf(other));
        EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
        EXPECT_EQ(fragment.GetDF_Params().GetBandwidth(), 4);
        expectPayload(const_cast<PelVtConnectServer&>(std::as_const(fragment).GetPelVtConnectServer()), 0);
        const Fragment copy(fragment);
        document.reset();
        EXPECT_EQ(copy.GetDF_Params().GetBandwidth(), 4);
        expectPayload(const_cast<PelVtConnectServer&>(copy.GetPelVtConnectServer()), 0);
    });
}

TEST(InnerBlocks, AnItemOfAListMayBeAppendedToIt)
{
    forEachWay([](std::unique_ptr<Document> document) {
        Message& message = document->GetPelLu300RouterMessage();
        for (int i = 0; i < 100; ++i)
            message.AppendFragment(std::as_const(message).GetFragment().at(i % 2));
        ASSERT_EQ(message.GetFragment().size(), 102);
        for (int i = 0; i < 102; ++i)
            EXPECT_EQ(message.GetFragment()[i].GetPelVtConnectServer().GetPort(),
                      static_cast<unsigned int>(i % 2));
    });
}

TEST(InnerBlocks, AFragmentWithoutEntriesIsInitialisedByReading)
{
    Fragment fragment;
    readFrame(fragment, bytes("00000000"));
    EXPECT_TRUE(fragment.IsInitialized());
    Fragment unknown;
    readFrame(unknown, bytes("00000008 12345678 00000000"));
    EXPECT_TRUE(unknown.IsInitialized());
    Fragment cutOff;
    EXPECT_THROW(readFrame(cutOff, bytes("00000002 1234")), BinaryParsingException);
    EXPECT_TRUE(cutOff.IsInitialized());
    for (const char* xml : {"<Fragment/>", "<Fragment><Unknown/></Fragment>", "<Fragment>"}) {
        SCOPED_TRACE(xml);
        Fragment read;
        readXml(read, QLatin1String(xml));
        EXPECT_TRUE(read.IsInitialized());
    }
}

TEST(InnerBlocks, APayloadThatIsHandedOutHasNoDataUntilItIsFilled)
{
    auto fragment = std::make_unique<Fragment>();
    const PelVtConnectServer& server = fragment->GetPelVtConnectServer();
    EXPECT_FALSE(server.IsInitialized());
    const auto copy = std::make_unique<Fragment>(*fragment);
    EXPECT_FALSE(server.IsInitialized());
    EXPECT_EQ(server.GetPort(), 0U);
    EXPECT_TRUE(server.IsInitialized());
    fragment.reset();
    EXPECT_FALSE(std::as_const(*copy).GetPelVtConnectServer().IsPortSet());
    EXPECT_EQ(copy->GetChoiceFragment(), Fragment::PelVtConnectServer);
}

TEST(InnerBlocks, APayloadThatIsHandedOutTakesTheDataOfAnotherOneFirst)
{
    auto fragment = std::make_unique<Fragment>();
    PelVtConnectServer& server = fragment->GetPelVtConnectServer();
    PelVtConnectServer other;
    other.SetAddress(address);
    server = other;
    other.SetPort(5);
    expectPayload(server, 0);
    fragment->Reset();
    EXPECT_FALSE(server.IsInitialized());
    server.SetAddress(address);
    server.SetPort(6);
    other = server;
    fragment.reset();
    expectPayload(other, 6);
}

TEST(InnerBlocks, APayloadThatIsResetReleasesItsText)
{
    QString text = QStringLiteral("a text that takes much memory %1").arg(1);
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(text);
    Fragment copy(fragment);
    fragment.Reset();
    EXPECT_FALSE(text.isDetached());
    copy.Reset();
    EXPECT_TRUE(text.isDetached());
}

TEST(InnerBlocks, OnlyThePayloadThatIsHandedOutFirstHasTheRoom)
{
    Fragment fragment;
    fragment.GetPelVtConnectServer();
    fragment.GetDF_Params().SetBandwidth(4);
    fragment.GetPelVtConnectServer().SetAddress(address);
    fragment.SetDefaultPelVtConnectServer(fragment.GetPelVtConnectServer());
    const Fragment copy(fragment);
    expectPayload(fragment.GetPelVtConnectServer(), 0);
    EXPECT_EQ(fragment.GetDF_Params().GetBandwidth(), 4);
    EXPECT_TRUE(copy.GetDF_Params() == fragment.GetDF_Params());
}

TEST(InnerBlocks, EachFragmentThatIsReadTakesOneAllocation)
{
    const auto reading = [](int fragments) {
        const QByteArray form = documentOf(fragments).GetBinaryRepresentationAsQByteArray();
        Document document;
        return allocationsIn([&] { EXPECT_TRUE(document.SetBinaryRepresentation(form)); });
    };
    EXPECT_EQ(reading(11) - reading(1), 10);
}

TEST(InnerBlocks, EachFragmentThatIsCopiedTakesOneAllocation)
{
    const auto copying = [](int fragments) {
        const Document original = documentOf(fragments);
        return allocationsIn([&] {
            Document copy(original);
            fragmentsOf(copy);
        });
    };
    EXPECT_EQ(copying(11) - copying(1), 10);
}

TEST(InnerBlocks, EachFragmentThatIsFilledInPlaceTakesOneAllocation)
{
    const auto filling = [](int fragments) {
        Message message;
        message.GetFragment().reserve(20);
        return allocationsIn([&] {
            for (int i = 0; i < fragments; ++i)
                message.AddFragment().GetPelVtConnectServer().SetPort(1);
        });
    };
    EXPECT_EQ(filling(11) - filling(1), 10);
}

} // namespace
