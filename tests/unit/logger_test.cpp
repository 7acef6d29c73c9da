// SPDX-License-Identifier: MIT
// The logger and its sink.

#include "modelkit/Logger.h"

#include "TestSupport.h"

#include <atomic>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using MODELKIT::Logger;
using MODELKIT::LogSink;
using namespace testing_support;

static_assert(!std::is_copy_constructible_v<Logger> && !std::is_copy_assignable_v<Logger>);
static_assert(!std::is_copy_constructible_v<LogSink> && !std::is_copy_assignable_v<LogSink>);
static_assert(std::has_virtual_destructor_v<Logger> && std::has_virtual_destructor_v<LogSink>);
static_assert(std::is_abstract_v<LogSink>);
static_assert(!std::is_convertible_v<std::shared_ptr<LogSink>, Logger>);
static_assert(std::is_same_v<std::underlying_type_t<Logger::Level>, int>);
static_assert(Logger::Info == 0 && Logger::Warning == 1 && Logger::Error == 2);

class CollectingSink : public LogSink
{
public:
    void Write(Logger::Level level, const QString& text) override { entries.emplace_back(level, text); }

    std::vector<std::pair<Logger::Level, QString>> entries;
};

class ThrowingSink : public LogSink
{
public:
    void Write(Logger::Level, const QString& text) override
    {
        ++calls;
        if (text == QLatin1String("throw"))
            throw std::runtime_error("the sink is full");
    }

    int calls = 0;
};

// Notices when two threads write at once.
class GuardedSink : public LogSink
{
public:
    void Write(Logger::Level, const QString&) override
    {
        if (m_inside.exchange(true))
            ++overlaps;
        std::this_thread::yield();
        ++entries;
        m_inside = false;
    }

    std::atomic<int> overlaps{0};
    int entries = 0;

private:
    std::atomic<bool> m_inside{false};
};

TEST(LoggerTest, LevelNamesAreInTheOrderOfTheLevels)
{
    const QStringList& names = Logger::GetLevelNames();
    ASSERT_EQ(names.size(), 3);
    EXPECT_EQ(names.at(Logger::Info), QStringLiteral("INFO"));
    EXPECT_EQ(names.at(Logger::Warning), QStringLiteral("WARNING"));
    EXPECT_EQ(names.at(Logger::Error), QStringLiteral("ERROR"));
}

TEST(LoggerTest, LevelNamesAreOneConstantList)
{
    EXPECT_EQ(&Logger::GetLevelNames(), &Logger::GetLevelNames());
}

TEST(LoggerTest, EntriesReachTheSinkInOrderAndUnchanged)
{
    const auto sink = std::make_shared<CollectingSink>();
    Logger logger(sink);
    logger.Log(Logger::Warning, QStringLiteral("first %1 \u00FC\n"));
    logger.Log(Logger::Info, QString());
    logger.Log(Logger::Error, QStringLiteral("third"));

    ASSERT_EQ(sink->entries.size(), 3U);
    EXPECT_EQ(sink->entries[0].first, Logger::Warning);
    EXPECT_EQ(sink->entries[0].second, QStringLiteral("first %1 \u00FC\n"));
    EXPECT_EQ(sink->entries[1].first, Logger::Info);
    EXPECT_TRUE(sink->entries[1].second.isNull());
    EXPECT_EQ(sink->entries[2].first, Logger::Error);
    EXPECT_EQ(sink->entries[2].second, QStringLiteral("third"));
}

TEST(LoggerTest, ALoggerWithoutASinkDropsItsEntries)
{
    Logger withoutArgument;
    Logger withNone(nullptr);
    EXPECT_NO_THROW(withoutArgument.Log(Logger::Error, QStringLiteral("dropped")));
    EXPECT_NO_THROW(withNone.Log(Logger::Error, QStringLiteral("dropped")));
}

TEST(LoggerTest, TheLoggerKeepsItsSinkAlive)
{
    auto sink = std::make_shared<CollectingSink>();
    const std::weak_ptr<CollectingSink> watched = sink;
    {
        Logger logger(sink);
        sink.reset();
        EXPECT_FALSE(watched.expired());
    }
    EXPECT_TRUE(watched.expired());
}

TEST(LoggerTest, SeveralLoggersMayShareASink)
{
    const auto sink = std::make_shared<CollectingSink>();
    Logger one(sink);
    Logger other(sink);
    one.Log(Logger::Info, QStringLiteral("from one"));
    other.Log(Logger::Info, QStringLiteral("from the other"));
    ASSERT_EQ(sink->entries.size(), 2U);
    EXPECT_EQ(sink->entries[0].second, QStringLiteral("from one"));
    EXPECT_EQ(sink->entries[1].second, QStringLiteral("from the other"));
}

TEST(LoggerTest, WhatTheSinkThrowsPassesThroughAndTheLoggerStaysUsable)
{
    const auto sink = std::make_shared<ThrowingSink>();
    Logger logger(sink);
    EXPECT_THROW(logger.Log(Logger::Info, QStringLiteral("throw")), std::runtime_error);
    // If the lock were still held, this would hang.
    EXPECT_NO_THROW(logger.Log(Logger::Info, QStringLiteral("pass")));
    EXPECT_EQ(sink->calls, 2);
}

TEST(LoggerTest, EntriesOfSeveralThreadsReachTheSinkOneAtATime)
{
    const auto sink = std::make_shared<GuardedSink>();
    Logger logger(sink);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&logger] {
            for (int entry = 0; entry < 500; ++entry)
                logger.Log(Logger::Info, QStringLiteral("entry"));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(sink->overlaps, 0);
    EXPECT_EQ(sink->entries, 2000);
}

TEST(LoggerTest, ARecordHoldsItsLoggerButWritesNothing)
{
    using namespace testing_support;
    const auto sink = std::make_shared<CollectingSink>();
    PelVtConnectServer server;
    server.SetLogger(std::make_shared<Logger>(sink));
    server.SetValidate(true);
    server.SetPort(1);
    EXPECT_THROW(server.SetAddress(QString()), OutOfRangeException);
    EXPECT_THROW(readFrame(server, bytes("FFFFFFFF")), BinaryParsingException);
    readXml(server,
            QStringLiteral("<PelVtConnectServer><Unknown/><Port>no number</Port></PelVtConnectServer>"));
    server.Check();
    EXPECT_EQ(xmlOf(server), QStringLiteral("<PelVtConnectServer><Port>0</Port></PelVtConnectServer>"));
    EXPECT_TRUE(sink->entries.empty());
    EXPECT_EQ(server.GetLogger().use_count(), 2) << "one is the record's, one is the answer";
}

// A sink that uses objects with the same logger.
class BusySink : public LogSink
{
public:
    void Write(Logger::Level, const QString& text) override
    {
        entries += text;
        OstraInterfacePort record;
        record.SetLogger(logger.lock());
        EXPECT_FALSE(record.SetXmlString(QStringLiteral("none"), false));
    }

    std::weak_ptr<Logger> logger;
    QStringList entries;
};

TEST(LoggerSink, AnEntryThatTheSinkCausesIsDropped)
{
    const auto sink = std::make_shared<BusySink>();
    const auto logger = std::make_shared<Logger>(sink);
    sink->logger = logger;
    logger->Log(Logger::Info, QStringLiteral("one"));
    logger->Log(Logger::Info, QStringLiteral("two"));
    EXPECT_EQ(sink->entries, QStringList({QStringLiteral("one"), QStringLiteral("two")}));
}

} // namespace
