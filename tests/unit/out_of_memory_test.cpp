// SPDX-License-Identifier: MIT
// If memory runs out in the middle of an operation on a record, the record and those that share its block
// stay as they were.

#include "FailingAllocator.h"
#include "LifecycleSupport.h"

#include <functional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

TEST(EveryMember, AFailedAllocationLeavesItUnset)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const auto value = Member::first();
        long successes = 0;
        for (;; ++successes) {
            Owner record;
            if (!failsOutOfMemory(successes, [&] { Member::set(record, value); })) {
                EXPECT_TRUE(Member::isSet(record));
                EXPECT_TRUE(same(Member::get(record), value));
                break;
            }
            SCOPED_TRACE(successes);
            EXPECT_FALSE(Member::isSet(record));
            EXPECT_FALSE(record.AnyData());
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
        }
        EXPECT_GT(successes, 0);
    });
}

TEST(EveryMember, AFailedAllocationLeavesTheOldDefault)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const auto value = Member::firstDefault();
        long successes = 0;
        for (;; ++successes) {
            Owner record;
            if (!failsOutOfMemory(successes, [&] { Member::setDefault(record, value); })) {
                EXPECT_TRUE(same(Member::getDefault(record), value));
                break;
            }
            SCOPED_TRACE(successes);
            EXPECT_TRUE(same(Member::getDefault(record), Member::initialDefault()));
            record.ResetToDefault();
            EXPECT_FALSE(Member::isSet(record));
        }
        EXPECT_GT(successes, 0);
    });
}

// --- construction -------------------------------------------------------------------------------

template <class R>
class EveryRecordLifecycle : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordLifecycle, RecordsWithSamples, RecordName);

// --- running out of memory ----------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, AFailedAllocationOfTheFirstBlockLeavesTheRecordEmpty)
{
    TypeParam record;
    EXPECT_TRUE(failsOutOfMemory(0, [&] { place(record); }));
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    place(record);
    EXPECT_TRUE(record.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, AFailedCopyLeavesTheSource)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    long successes = 0;
    while (failsOutOfMemory(successes, [&] { TypeParam copy(source); })) {
        SCOPED_TRACE(successes);
        EXPECT_EQ(place(source), before);
        expectFilled(source);
        ++successes;
    }
    EXPECT_GT(successes, 0);
    TypeParam copy(source);
    expectFilled(copy);
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachLeavesBothSharersAsTheyWere)
{
    auto operations = plainOperations<TypeParam>();
    for (const auto& change : changingOperations<TypeParam>())
        if (change.name != std::string("ResetToDefault"))
            operations.push_back(change);
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        for (const bool targetFails : {true, false}) {
            long successes = 0;
            for (;; ++successes) {
                TypeParam source;
                fill(source);
                TypeParam target;
                target = source;
                if (!failsOutOfMemory(successes, [&] { operation.run(targetFails ? target : source); })) {
                    expectFilled(targetFails ? source : target);
                    break;
                }
                SCOPED_TRACE(successes);
                expectFilled(source);
                expectFilled(target);
                if (this->HasFailure())
                    return;
            }
            EXPECT_GT(successes, 0);
        }
    }
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachStopsWritingAndReading)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    QXmlStreamReader reader(QStringLiteral("<a/>"));
    ASSERT_TRUE(reader.readNextStartElement());
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::ReadWrite);
    const std::vector<Operation<TypeParam>> operations{
        {"GetXml", [&](TypeParam& record) { record.GetXml(writer); }},
        {"GetBinary", [&](TypeParam& record) { record.GetBinary(stream, 1, true); }},
        {"SetBinary", [&](TypeParam& record) { record.SetBinary(stream, 0); }},
        {"ProcessXml", [&](TypeParam& record) { record.ProcessXml(reader); }},
    };
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        TypeParam source;
        fill(source);
        TypeParam target;
        target = source;
        EXPECT_TRUE(failsOutOfMemory(0, [&] { operation.run(target); }));
        EXPECT_EQ(xml, QString());
        EXPECT_EQ(frame.size(), 0);
        expectFilled(source);
        expectFilled(target);
    }
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachLeavesTheBlockShared)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam target;
    target = source;
    EXPECT_TRUE(failsOutOfMemory(0, [&] { static_cast<void>(target.IsInitialized()); }));
    // The block is still shared: the source detaches from it and leaves it to the target.
    EXPECT_NE(place(source), before);
    EXPECT_EQ(place(target), before);
}

// The content of a record as text, without creating anything in the record.
template <class R>
QString contentOf(const R& record)
{
    if (!record.IsInitialized())
        return QStringLiteral("empty");
    R copy(record);
    QString content = xmlOf(copy);
    if constexpr (std::is_same_v<R, Fragment>)
        content += QString::number(copy.GetChoiceFragment());
    Of<R>::Members::forEach([&](auto member) { content += QString::number(member.isSet(copy)); });
    return content;
}

// Changes that may run out of memory half-way, on an empty and on a filled record.
template <class R>
void expectAllOrNothing(const std::function<void(R&)>& prepare, const std::function<void(R&)>& change)
{
    for (const bool isEmpty : {true, false}) {
        SCOPED_TRACE(isEmpty ? "empty" : "prepared");
        long successes = 0;
        for (;; ++successes) {
            R record;
            if (!isEmpty)
                prepare(record);
            const QString before = contentOf(record);
            if (!failsOutOfMemory(successes, [&] { change(record); })) {
                EXPECT_TRUE(record.IsInitialized());
                break;
            }
            EXPECT_EQ(contentOf(record), before) << "after " << successes << " allocations";
        }
        EXPECT_GT(successes, 0);
    }
}

TEST(OutOfMemory, AFailedHandingOutOfAMemberSelectsAndMarksNothing)
{
    const auto prepare = [](Fragment& record) { record.SetAcquireMastership(acquired(true)); };
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetDF_Params(); });
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetMastershipState(); });
    expectAllOrNothing<Fragment>(prepare,
                                 [](Fragment& record) { std::as_const(record).GetPelVtConnectServer(); });
    expectAllOrNothing<Fragment>(prepare,
                                 [](Fragment& record) { record.SetOstraInterfacePort(ostraPort(1)); });
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetDefaultDF_Params(); });
    expectAllOrNothing<Fragment>(
        prepare, [](Fragment& record) { record.SetDefaultPelVtConnectServer(server("one")); });
    expectAllOrNothing<PelLu300RouterInterfaceXml>(
        [](PelLu300RouterInterfaceXml& record) { record.SetDefaultPelLu300RouterMessage(message(1)); },
        [](PelLu300RouterInterfaceXml& record) { record.GetPelLu300RouterMessage(); });
}

TEST(OutOfMemory, AFailedChangeOfAMessageLeavesItAsItWas)
{
    const QVector<Fragment> items{fragment("a"), fragment("b")};
    const auto prepare = [&items](PelLu300RouterMessage& record) {
        record.SetFragment(items);
        record.ResetFragment();
        record.SetFragment(items);
    };
    expectAllOrNothing<PelLu300RouterMessage>(
        prepare, [](PelLu300RouterMessage& record) { record.SetDefaultFragment(Fragment()); });
    const Fragment item = fragment("c");
    expectAllOrNothing<PelLu300RouterMessage>(
        prepare, [&item](PelLu300RouterMessage& record) { record.AppendFragment(item); });
}

TEST(OutOfMemory, AFailedAddLeavesTheMessageEmpty)
{
    PelLu300RouterMessage record;
    EXPECT_TRUE(failsOutOfMemory(0, [&record] { record.AddFragment(); }));
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(failsOutOfMemory(1, [&record] { record.AddFragment(); }));
    EXPECT_EQ(record.GetFragment().size(), 1);
}

TEST(OutOfMemory, AFailedInitChoiceLeavesTheChoiceAndEveryPayload)
{
    const auto prepare = [](Fragment& record) {
        record.SetAcquireMastership(acquired(true));
        record.SetDefaultDF_Params(params(2));
        record.SetDefaultPelVtConnectServer(server("one"));
    };
    for (const auto choice : {Fragment::DF_Params, Fragment::MastershipState, Fragment::AcquireMastership})
        expectAllOrNothing<Fragment>(prepare, [choice](Fragment& record) { record.InitChoice(choice); });
}

TEST(OutOfMemory, AFailedResetLeavesEveryMember)
{
    const auto prepare = [](Fragment& record) {
        record.SetAcquireMastership(acquired(true));
        record.SetDefaultDF_Params(params(2));
        record.SetDefaultPelVtConnectServer(server("one"));
    };
    long successes = 0;
    for (;; ++successes) {
        Fragment record;
        prepare(record);
        const QString before = contentOf(record);
        if (!failsOutOfMemory(successes, [&] { record.Reset(); })) {
            EXPECT_FALSE(record.AnyData());
            break;
        }
        EXPECT_EQ(contentOf(record), before);
    }
    EXPECT_GT(successes, 0);
    Fragment record;
    record.SetDefaultDF_Params(params(2));
    record.GetAcquireMastership();
    EXPECT_TRUE(failsOutOfMemory(0, [&] { record.ResetDF_Params(); }));
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::AcquireMastership);
}

TEST(OutOfMemory, APayloadThatCannotBeMadeIsNotSelectedByReading)
{
    for (const bool asXml : {true, false}) {
        SCOPED_TRACE(asXml);
        Fragment record;
        record.SetAcquireMastership(acquired(true));
        bool hasFailed = false;
        for (long successes = 0;; ++successes) {
            Fragment target(record);
            QXmlStreamReader reader(QStringLiteral("<Fragment><DF_Params/></Fragment>"));
            ASSERT_TRUE(reader.readNextStartElement());
            const QByteArray entry = bytes("BE2DFF74 00000000");
            QDataStream stream(entry);
            const auto read = [&] {
                if (asXml)
                    target.ProcessXml(reader);
                else
                    target.SetBinary(stream, 8);
            };
            if (!failsOutOfMemory(successes, read)) {
                EXPECT_EQ(target.GetChoiceFragment(), Fragment::DF_Params);
                break;
            }
            hasFailed = true;
            // If the payload has been created, it is also selected.
            const Fragment& view = target;
            const bool isThere = !failsOutOfMemory(0, [&view] { view.GetDF_Params(); });
            EXPECT_EQ(target.GetChoiceFragment(),
                      isThere ? Fragment::DF_Params : Fragment::AcquireMastership);
        }
        EXPECT_TRUE(hasFailed);
    }
}

TEST(MessageLifecycle, AFailedAppendLeavesTheListAsItWas)
{
    const Fragment item = fragment("new");
    for (const bool sharedList : {false, true}) {
        SCOPED_TRACE(sharedList);
        long successes = 0;
        for (;; ++successes) {
            PelLu300RouterMessage record;
            record.AppendFragment(fragment("one"));
            record.AppendFragment(fragment("two"));
            const QVector<Fragment> kept =
                sharedList ? std::as_const(record).GetFragment() : QVector<Fragment>();
            const QVector<Fragment>& list = std::as_const(record).GetFragment();
            if (!failsOutOfMemory(successes, [&] { record.AppendFragment(item); })) {
                ASSERT_EQ(list.size(), 3);
                EXPECT_TRUE(list.at(2) == item);
                break;
            }
            SCOPED_TRACE(successes);
            ASSERT_EQ(list.size(), 2);
            EXPECT_TRUE(list.at(0) == fragment("one"));
            EXPECT_TRUE(list.at(1) == fragment("two"));
        }
        EXPECT_GT(successes, 0);
    }
}

} // namespace
