// SPDX-License-Identifier: MIT
// The limits of reading: any value is safe, no limit can be switched off by accident, and limits can be set
// for a scope.

#include "TestSupport.h"

#include "modelkit/Limits.h"

#include <QtCore/QBuffer>

#include <limits>
#include <memory>
#include <thread>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::IMKObject;
using MODELKIT::Limits;
using MODELKIT::LimitsInScope;

namespace {

const char* const xml =
    "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment a='1' b='2'>"
    "<OstraInterfacePort><Port>5</Port></OstraInterfacePort></Fragment>"
    "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";

PelLu300RouterInterfaceXml sample()
{
    PelLu300RouterInterfaceXml document;
    EXPECT_TRUE(document.SetXmlString(QString::fromLatin1(xml), false));
    return document;
}

// The results of reading every form under changed limits.
template <class Change>
QList<Failure::Kind> kindsUnder(const Change& change)
{
    PelLu300RouterInterfaceXml document = sample();
    const QByteArray binary = document.GetBinaryRepresentationAsQByteArray();
    const QByteArray compressed = document.GetCompressedBinaryRepresentationAsQByteArray(9);
    Limits limits;
    change(limits);
    const LimitsInScope inScope(limits);
    QList<Failure::Kind> kinds;
    const auto note = [&](bool isRead) {
        EXPECT_EQ(isRead, IMKObject::GetLastFailure().kind == Failure::None);
        kinds += IMKObject::GetLastFailure().kind;
    };
    note(document.SetXmlString(QString::fromLatin1(xml), false));
    QByteArray bytes(xml);
    QBuffer buffer(&bytes);
    note(document.LoadXml(&buffer));
    note(document.SetBinaryRepresentation(binary));
    QDataStream stream(binary);
    note(document.SetBinaryRepresentation(stream));
    note(document.SetBinaryRepresentation(compressed));
    return kinds;
}

constexpr Failure::Kind none = Failure::None;
const QList<Failure::Kind> allRead = {none, none, none, none, none};

} // namespace

TEST(Limits, AreWhatTheDocumentationSaysAtFirst)
{
    const Limits limits;
    EXPECT_EQ(limits.inputSize, 268435456);
    EXPECT_EQ(limits.inflatedSize, 268435456);
    EXPECT_EQ(limits.nestingDepth, 64);
    EXPECT_EQ(limits.attributes, 256);
    EXPECT_EQ(limits.listItems, 4000000);
    EXPECT_EQ(limits.waitingTime, 30000);
    EXPECT_EQ(Limits::anySize, std::numeric_limits<qint64>::max());
    EXPECT_EQ(Limits::anyNumber, std::numeric_limits<int>::max());
}

TEST(Limits, OfAnySizeAndNumberAdmitEverything)
{
    EXPECT_EQ(kindsUnder([](Limits& limits) {
                  limits.inputSize = limits.inflatedSize = Limits::anySize;
                  limits.nestingDepth = limits.attributes = limits.listItems = limits.waitingTime =
                      Limits::anyNumber;
              }),
              allRead);
    // Values just below these must not overflow.
    for (int below = 1; below < 80; ++below)
        EXPECT_EQ(kindsUnder([below](Limits& limits) {
                      limits.inputSize = limits.inflatedSize = Limits::anySize - below;
                      limits.nestingDepth = limits.attributes = limits.listItems = limits.waitingTime =
                          Limits::anyNumber - below;
                  }),
                  allRead);
    EXPECT_EQ(kindsUnder([](Limits& limits) {
                  limits.inputSize = limits.inflatedSize = std::numeric_limits<int>::max();
              }),
              allRead);
}

TEST(Limits, BelowZeroAdmitAsLittleAsZero)
{
    using F = Failure;
    for (const int value : {0, -1, -64, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.inputSize = value; }),
                  (QList<F::Kind>{F::InputTooLarge, F::InputTooLarge, F::InputTooLarge, F::InputTooLarge,
                                  F::InputTooLarge}));
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.inflatedSize = value; }),
                  (QList<F::Kind>{none, none, none, none, F::InflatedTooLarge}));
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.nestingDepth = value; }),
                  (QList<F::Kind>{F::NestedTooDeep, F::NestedTooDeep, none, none, none}));
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.attributes = value; }),
                  (QList<F::Kind>{F::TooManyAttributes, F::TooManyAttributes, none, none, none}));
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.listItems = value; }),
                  (QList<F::Kind>{F::TooManyItems, F::TooManyItems, F::TooManyItems, F::TooManyItems,
                                  F::TooManyItems}));
        EXPECT_EQ(kindsUnder([value](Limits& limits) { limits.waitingTime = value; }), allRead);
    }
    EXPECT_EQ(
        kindsUnder([](Limits& limits) { limits.inputSize = std::numeric_limits<qint64>::min(); }).first(),
        F::InputTooLarge);
}

TEST(Limits, AdmitExactlyTheirNumber)
{
    const auto size = static_cast<qint64>(QByteArray(xml).size());
    EXPECT_EQ(kindsUnder([size](Limits& limits) { limits.inputSize = size; }), allRead);
    EXPECT_EQ(kindsUnder([size](Limits& limits) { limits.inputSize = size - 1; }).mid(0, 2),
              (QList<Failure::Kind>{Failure::InputTooLarge, Failure::InputTooLarge}));
    EXPECT_EQ(kindsUnder([](Limits& limits) {
                  limits.nestingDepth = 5;
                  limits.attributes = 2;
                  limits.listItems = 1;
              }),
              allRead);
    EXPECT_EQ(kindsUnder([](Limits& limits) { limits.nestingDepth = 4; }).first(), Failure::NestedTooDeep);
    EXPECT_EQ(kindsUnder([](Limits& limits) { limits.attributes = 1; }).first(), Failure::TooManyAttributes);
}

TEST(Limits, OfTheInputDoNotCountInflatedBytes)
{
    PelVtConnectServer server;
    server.SetAddress(QString(100000, QLatin1Char('x')));
    const QByteArray compressed = server.GetCompressedBinaryRepresentationAsQByteArray(9);
    Limits limits;
    limits.inputSize = compressed.size();
    const LimitsInScope inScope(limits);
    PelVtConnectServer read;
    EXPECT_TRUE(read.SetBinaryRepresentation(compressed));
    EXPECT_TRUE(read == server);
}

TEST(LimitsInScope, HoldForTheThreadAndTheTimeOfTheObject)
{
    const Limits program = Limits::Get();
    Limits narrow;
    narrow.inputSize = 5;
    narrow.listItems = -7;
    {
        const LimitsInScope outer(narrow);
        EXPECT_EQ(Limits::Get().inputSize, 5);
        EXPECT_EQ(Limits::Get().listItems, 0);
        Limits wide;
        wide.inputSize = 50;
        {
            const LimitsInScope inner(wide);
            EXPECT_EQ(Limits::Get().inputSize, 50);
        }
        EXPECT_EQ(Limits::Get().inputSize, 5);
        qint64 elsewhere = 0;
        std::thread([&elsewhere] { elsewhere = Limits::Get().inputSize; }).join();
        EXPECT_EQ(elsewhere, program.inputSize);
        // Changing the limits of the program does not change those of the scope.
        Limits changed = program;
        changed.inputSize = 500;
        Limits::Set(changed);
        EXPECT_EQ(Limits::Get().inputSize, 5);
    }
    EXPECT_EQ(Limits::Get().inputSize, 500);
    Limits::Set(program);
    EXPECT_EQ(Limits::Get().inputSize, program.inputSize);
}

TEST(LimitsInScope, MayEndInAnyOrderAndInAnyThread)
{
    const Limits program = Limits::Get();
    Limits narrow;
    narrow.inputSize = 5;
    auto first = std::make_unique<LimitsInScope>(narrow);
    narrow.inputSize = 6;
    auto second = std::make_unique<LimitsInScope>(narrow);
    narrow.inputSize = 7;
    auto third = std::make_unique<LimitsInScope>(narrow);
    first.reset();
    EXPECT_EQ(Limits::Get().inputSize, 7);
    std::thread([&third] { third.reset(); }).join();
    EXPECT_EQ(Limits::Get().inputSize, 6);
    second.reset();
    EXPECT_EQ(Limits::Get().inputSize, program.inputSize);
    // A scope object that outlives its thread.
    std::unique_ptr<LimitsInScope> orphan;
    std::thread([&orphan, &narrow] { orphan = std::make_unique<LimitsInScope>(narrow); }).join();
    orphan.reset();
    EXPECT_EQ(Limits::Get().inputSize, program.inputSize);
}
