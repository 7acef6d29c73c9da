// SPDX-License-Identifier: MIT
// Two records that share a block by assignment can be used from two threads, each record from one: whatever a
// thread does with its record, the other record keeps its content. These tests also run under the thread
// sanitizer.

#include "TestSupport.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

// For each record class: content for every member and default, its XML, a change as deep down as possible,
// and the XML afterwards.
template <class R>
struct Sample;

template <class R>
struct PortSample
{
    static void fill(R& record)
    {
        record.SetDefaultPort(80);
        record.SetPort(5000);
    }
    static QString filledXml(const char* name)
    {
        return QStringLiteral("<%1><Port>5000</Port></%1>").arg(QLatin1String(name));
    }
    static void change(R& record) { record.SetPort(record.GetPort() + record.GetDefaultPort()); }
    static QString changedXml(const char* name)
    {
        return QStringLiteral("<%1><Port>5080</Port></%1>").arg(QLatin1String(name));
    }
};

template <>
struct Sample<OstraInterfacePort> : PortSample<OstraInterfacePort>
{
    static QString filled() { return filledXml("OstraInterfacePort"); }
    static QString changed() { return changedXml("OstraInterfacePort"); }
};

template <>
struct Sample<RouterVtServerPort> : PortSample<RouterVtServerPort>
{
    static QString filled() { return filledXml("RouterVtServerPort"); }
    static QString changed() { return changedXml("RouterVtServerPort"); }
};

template <>
struct Sample<PelVtConnectServer>
{
    static void fill(PelVtConnectServer& record)
    {
        record.SetDefaultAddress(QStringLiteral("default"));
        record.SetAddress(QStringLiteral("host"));
        record.SetPort(1);
    }
    static QString filled()
    {
        return QStringLiteral(
            "<PelVtConnectServer><Address>host</Address><Port>1</Port></PelVtConnectServer>");
    }
    static void change(PelVtConnectServer& record)
    {
        record.SetAddress(record.GetAddress() + record.GetDefaultAddress());
        record.ResetPort();
    }
    static QString changed()
    {
        return QStringLiteral("<PelVtConnectServer><Address>hostdefault</Address></PelVtConnectServer>");
    }
};

template <>
struct Sample<MastershipState>
{
    static void fill(MastershipState& record)
    {
        record.SetDefaultMasterClientID(QStringLiteral("default"));
        record.SetDefaultState(MastershipState::RouterIsMaster);
        record.SetMasterClientID(QStringLiteral("client"));
        record.SetState(MastershipState::MasterPresent);
    }
    static QString filled()
    {
        return QStringLiteral("<MastershipState><State>MasterPresent</State>"
                              "<MasterClientID>client</MasterClientID></MastershipState>");
    }
    static void change(MastershipState& record) { record.ResetToDefault(); }
    static QString changed()
    {
        return QStringLiteral("<MastershipState><State>RouterIsMaster</State>"
                              "<MasterClientID>default</MasterClientID></MastershipState>");
    }
};

template <class R>
struct SuccessSample
{
    static void fill(R& record)
    {
        record.SetDefaultSuccess(false);
        record.SetSuccess(true);
    }
    static QString filledXml(const char* name)
    {
        return QStringLiteral("<%1><Success>true</Success></%1>").arg(QLatin1String(name));
    }
    static void change(R& record) { record.SetSuccess(!record.GetSuccess()); }
    static QString changedXml(const char* name)
    {
        return QStringLiteral("<%1><Success>false</Success></%1>").arg(QLatin1String(name));
    }
};

template <>
struct Sample<AcquireMastership> : SuccessSample<AcquireMastership>
{
    static QString filled() { return filledXml("AcquireMastership"); }
    static QString changed() { return changedXml("AcquireMastership"); }
};

template <>
struct Sample<ReleaseMastership> : SuccessSample<ReleaseMastership>
{
    static QString filled() { return filledXml("ReleaseMastership"); }
    static QString changed() { return changedXml("ReleaseMastership"); }
};

template <>
struct Sample<DF_Params>
{
    static void fill(DF_Params& record)
    {
        record.SetDefaultBandwidth(4.0);
        record.SetFrequency(1.0);
        record.SetBandwidth(2.0);
    }
    static QString filled()
    {
        return QStringLiteral(
            "<DF_Params><Frequency>1.00</Frequency><Bandwidth>2.00</Bandwidth></DF_Params>");
    }
    static void change(DF_Params& record)
    {
        record.ResetFrequency();
        record.SetBandwidth(record.GetBandwidth() + record.GetDefaultBandwidth());
    }
    static QString changed() { return QStringLiteral("<DF_Params><Bandwidth>6.00</Bandwidth></DF_Params>"); }
};

template <>
struct Sample<Fragment>
{
    static void fill(Fragment& record)
    {
        DF_Params byDefault;
        Sample<DF_Params>::fill(byDefault);
        record.SetDefaultDF_Params(byDefault);
        Sample<AcquireMastership>::fill(record.GetAcquireMastership());
        Sample<MastershipState>::fill(record.GetMastershipState());
        Sample<PelVtConnectServer>::fill(record.GetPelVtConnectServer());
    }
    static QString filled()
    {
        return QStringLiteral("<Fragment>") + Sample<PelVtConnectServer>::filled()
               + QStringLiteral("</Fragment>");
    }
    static void change(Fragment& record)
    {
        Sample<PelVtConnectServer>::change(record.GetPelVtConnectServer());
        Sample<MastershipState>::change(record.GetMastershipState());
    }
    static QString changed()
    {
        return QStringLiteral("<Fragment>") + Sample<MastershipState>::changed()
               + QStringLiteral("</Fragment>");
    }
};

template <>
struct Sample<PelLu300RouterMessage>
{
    static void fill(PelLu300RouterMessage& record)
    {
        record.SetType(PelLu300RouterMessage::Event);
        record.SetMessageID(7);
        Fragment item;
        Sample<Fragment>::fill(item);
        record.SetFragment(QVector<Fragment>{item, item});
        record.SetDefaultFragment(item);
    }
    static QString filled()
    {
        return QStringLiteral("<PelLu300RouterMessage><Type>Event</Type><MessageID>7</MessageID>")
               + Sample<Fragment>::filled() + Sample<Fragment>::filled()
               + QStringLiteral("</PelLu300RouterMessage>");
    }
    static void change(PelLu300RouterMessage& record)
    {
        record.SetMessageID(record.GetMessageID() + 1);
        Sample<Fragment>::change(record.GetFragment()[1]);
        record.AppendFragment(record.GetDefaultFragment());
    }
    static QString changed()
    {
        return QStringLiteral("<PelLu300RouterMessage><Type>Event</Type><MessageID>8</MessageID>")
               + Sample<Fragment>::filled() + Sample<Fragment>::changed() + Sample<Fragment>::filled()
               + QStringLiteral("</PelLu300RouterMessage>");
    }
};

template <>
struct Sample<PelLu300RouterInterfaceXml>
{
    static void fill(PelLu300RouterInterfaceXml& record)
    {
        Sample<PelLu300RouterMessage>::fill(record.GetPelLu300RouterMessage());
        record.SetDefaultPelLu300RouterMessage(record.GetPelLu300RouterMessage());
    }
    static QString filled()
    {
        return QStringLiteral("<PelLu300RouterInterfaceXml>") + Sample<PelLu300RouterMessage>::filled()
               + QStringLiteral("</PelLu300RouterInterfaceXml>");
    }
    static void change(PelLu300RouterInterfaceXml& record)
    {
        Sample<PelLu300RouterMessage>::change(record.GetPelLu300RouterMessage());
    }
    static QString changed()
    {
        return QStringLiteral("<PelLu300RouterInterfaceXml>") + Sample<PelLu300RouterMessage>::changed()
               + QStringLiteral("</PelLu300RouterInterfaceXml>");
    }
};

// What a thread does with its record, and the XML of the record afterwards. The XML is null if the thread
// destroys the record.
template <class R>
struct Action
{
    const char* name;
    std::function<void(std::unique_ptr<R>&)> run;
    QString written;
};

template <class R>
std::vector<Action<R>> actions()
{
    using Pointer = std::unique_ptr<R>;
    const QString filled = Sample<R>::filled();
    const QString none = xmlOf(R());
    return {
        {"ask", [](Pointer& record) { static_cast<void>(record->IsInitialized() && record->AnyData()); },
         filled},
        {"write",
         [](Pointer& record) {
             xmlOf(*record);
             frameOf(*record);
         },
         filled},
        {"check", [](Pointer& record) { record->Check(); }, filled},
        {"compare", [](Pointer& record) { static_cast<void>(*record == R()); }, filled},
        {"copy", [](Pointer& record) { R copy(*record); }, filled},
        {"share further",
         [](Pointer& record) {
             R other;
             other = *record;
             Sample<R>::change(other);
         },
         filled},
        {"settings",
         [](Pointer& record) {
             record->SetValidate(true);
             record->SetLogger(std::make_shared<MODELKIT::Logger>());
         },
         filled},
        {"change", [](Pointer& record) { Sample<R>::change(*record); }, Sample<R>::changed()},
        {"reset", [](Pointer& record) { record->Reset(); }, QString()},
        {"assign an empty record", [](Pointer& record) { *record = R(); }, none},
        {"destroy", [](Pointer& record) { record.reset(); }, QString()},
    };
}

// Runs the tasks at the same time, each in its own thread.
void runTogether(const std::vector<std::function<void()>>& tasks)
{
    std::atomic<std::size_t> ready{0};
    std::vector<std::thread> threads;
    for (const auto& task : tasks)
        threads.emplace_back([&] {
            ++ready;
            while (ready < tasks.size())
                std::this_thread::yield();
            task();
        });
    for (std::thread& thread : threads)
        thread.join();
}

template <class R>
using Records = std::vector<std::unique_ptr<R>>;

constexpr int sharedPairs = 20;

template <class R>
std::unique_ptr<R> filledRecord(const std::shared_ptr<MODELKIT::Logger>& logger)
{
    auto record = std::make_unique<R>();
    record->SetLogger(logger);
    Sample<R>::fill(*record);
    return record;
}

// Several lists of records. Records at the same index share a block.
template <class R, std::size_t Holders>
std::array<Records<R>, Holders> sharers()
{
    const auto logger = std::make_shared<MODELKIT::Logger>();
    std::array<Records<R>, Holders> all;
    for (int i = 0; i < sharedPairs; ++i) {
        all[0].push_back(filledRecord<R>(logger));
        for (std::size_t holder = 1; holder < Holders; ++holder) {
            all[holder].push_back(std::make_unique<R>());
            *all[holder].back() = *all[0].back();
        }
    }
    return all;
}

template <class R>
void expectWritten(const Records<R>& records, const Action<R>& action)
{
    if (action.written.isNull())
        return;
    for (const auto& record : records)
        ASSERT_EQ(xmlOf(*record), action.written) << action.name;
}

template <class R>
std::function<void()> task(const Action<R>& action, Records<R>& records)
{
    return [&] {
        for (auto& record : records)
            action.run(record);
    };
}

template <class R>
class SharedBlockThreads : public ::testing::Test
{
};
TYPED_TEST_SUITE(SharedBlockThreads, RecordsWithSamples, RecordName);

TYPED_TEST(SharedBlockThreads, TwoSharersMayDoAnythingAtTheSameTime)
{
    const auto all = actions<TypeParam>();
    for (const auto& first : all)
        for (const auto& second : all) {
            SCOPED_TRACE(std::string(first.name) + " and " + second.name);
            auto records = sharers<TypeParam, 2>();
            runTogether({task(first, records[0]), task(second, records[1])});
            expectWritten(records[0], first);
            expectWritten(records[1], second);
        }
}

TYPED_TEST(SharedBlockThreads, TwoSharersThatHaveDetachedButStillShareNestedBlocksMayDoAnything)
{
    const auto all = actions<TypeParam>();
    for (const auto& first : all)
        for (const auto& second : all) {
            SCOPED_TRACE(std::string(first.name) + " and " + second.name);
            auto records = sharers<TypeParam, 2>();
            for (const auto& record : records[1])
                static_cast<void>(record->IsInitialized());
            runTogether({task(first, records[0]), task(second, records[1])});
            expectWritten(records[0], first);
            expectWritten(records[1], second);
        }
}

TYPED_TEST(SharedBlockThreads, TheLastOfThreeSharersTakesTheBlockOver)
{
    const auto all = actions<TypeParam>();
    for (const auto& action : all) {
        SCOPED_TRACE(action.name);
        auto records = sharers<TypeParam, 3>();
        const auto& change = all[7];
        ASSERT_STREQ(change.name, "change");
        runTogether({task(action, records[0]), task(action, records[1]), task(change, records[2])});
        expectWritten(records[0], action);
        expectWritten(records[1], action);
        expectWritten(records[2], change);
    }
}

TYPED_TEST(SharedBlockThreads, EachThreadMayAssignItsOwnRecordsToAndFro)
{
    auto records = sharers<TypeParam, 2>();
    const auto work = [](Records<TypeParam>& own) {
        return [&own] {
            for (std::size_t i = 1; i < own.size(); ++i) {
                *own[i - 1] = *own[i];
                *own[i] = TypeParam();
                Sample<TypeParam>::change(*own[i - 1]);
                *own[i] = *own[i - 1];
            }
        };
    };
    runTogether({work(records[0]), work(records[1])});
    for (const auto& own : records)
        for (const auto& record : own)
            EXPECT_TRUE(record->IsInitialized());
    EXPECT_EQ(xmlOf(*records[0].front()), Sample<TypeParam>::changed());
    EXPECT_EQ(xmlOf(*records[1].front()), Sample<TypeParam>::changed());
}

TYPED_TEST(SharedBlockThreads, ARecordMayBeHandedToAnotherThreadByAssignment)
{
    TypeParam source;
    Sample<TypeParam>::fill(source);
    for (int i = 0; i < sharedPairs; ++i) {
        auto handedOver = std::make_unique<TypeParam>();
        *handedOver = source;
        QString written;
        std::thread reader([&written, record = std::move(handedOver)]() mutable {
            written = xmlOf(*record);
            record.reset();
        });
        Sample<TypeParam>::fill(source);
        source.Reset();
        Sample<TypeParam>::fill(source);
        reader.join();
        EXPECT_EQ(written, Sample<TypeParam>::filled());
        EXPECT_EQ(xmlOf(source), Sample<TypeParam>::filled());
    }
}

// The data of both are in one allocation.
TEST(InnerBlockThreads, APayloadOfAFragmentThatWasReadMayOutliveItInAnotherThread)
{
    Fragment source;
    Sample<PelVtConnectServer>::fill(source.GetPelVtConnectServer());
    const QByteArray frame = frameOf(source);
    for (int i = 0; i < sharedPairs; ++i) {
        auto fragment = std::make_unique<Fragment>();
        readFrame(*fragment, frame);
        auto handedOver = std::make_unique<PelVtConnectServer>();
        *handedOver = std::as_const(*fragment).GetPelVtConnectServer();
        QString written;
        std::thread reader([&written, record = std::move(handedOver)]() mutable {
            written = xmlOf(*record);
            record.reset();
        });
        fragment.reset();
        reader.join();
        EXPECT_EQ(written, Sample<PelVtConnectServer>::filled());
    }
}

// The items of a list that two messages were given are the same, until one of the messages is used.
TEST(ListThreads, MessagesWithTheSameItemsAreComparedAndWrittenInDifferentThreads)
{
    Fragment item;
    Sample<PelVtConnectServer>::fill(item.GetPelVtConnectServer());
    for (int i = 0; i < sharedPairs; ++i) {
        QVector<Fragment> list(3);
        for (Fragment& shared : list)
            shared = item;
        PelLu300RouterMessage first;
        first.SetType(PelLu300RouterMessage::Event);
        PelLu300RouterMessage second(first);
        PelLu300RouterMessage third(first);
        first.SetFragment(list);
        second.SetFragment(list);
        third.SetFragment(list);
        list.clear();
        const PelLu300RouterMessage like(first);
        const PelLu300RouterMessage alsoLike(first);
        bool isFirstEqual = false;
        bool isSecondEqual = false;
        QString written;
        runTogether({[&] { isFirstEqual = first == like; }, [&] { isSecondEqual = alsoLike == second; },
                     [&] { written = xmlOf(third); }});
        EXPECT_TRUE(isFirstEqual);
        EXPECT_TRUE(isSecondEqual);
        EXPECT_EQ(written, xmlOf(like));
    }
}

} // namespace
