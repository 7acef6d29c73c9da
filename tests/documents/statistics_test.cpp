// SPDX-License-Identifier: MIT
// Statistics of the values of members: ranges of numbers and frequent texts.
#include "TestSupport.h"

#include "documents/Document.h"
#include "documents/Statistics.h"

#include <QtCore/QStringList>

#include <cmath>
#include <limits>

using namespace ROUTERDOCUMENTS;

namespace {

Document portAt(const QString& address)
{
    Document document = ReadDocument(R"({"PelVtConnectServer": {}})");
    document.info->FindMember(QStringLiteral("Address"))->SetValue(*document.record, address);
    return document;
}

// The rows of the table with that title, as "name: number number".
QStringList rows(const Statistics& statistics, const QString& title)
{
    QStringList lines;
    for (const StatisticsTable& table : statistics.GetTables())
        for (const StatisticsTable::Row& row : table.rows) {
            if (table.title != title)
                continue;
            QString line = row.name + QLatin1Char(':');
            for (const double number : row.numbers)
                line += QLatin1Char(' ') + QString::number(number, 'g', 17);
            lines += line;
        }
    return lines;
}

} // namespace

TEST(Statistics, HaveTheRangesOfNumbers)
{
    Statistics statistics;
    for (const char* json :
         {R"({"DF_Params": {"Frequency": 98.5, "Bandwidth": -1}})", R"({"DF_Params": {"Frequency": -7}})",
          R"({"OstraInterfacePort": {"Port": 4294967295}})"})
        statistics.Add(ReadDocument(json));
    EXPECT_EQ(rows(statistics, "numbers"),
              (QStringList{"OstraInterfacePort/Port: 1 4294967295 4294967295",
                           "DF_Params/Frequency: 2 -7 98.5", "DF_Params/Bandwidth: 1 -1 -1"}));
}

TEST(Statistics, CountWhatIsNotANumberApart)
{
    NumberRange range;
    range.Add(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(range.GetCount(), 0);
    EXPECT_EQ(range.GetNotNumbers(), 1);
    range.Add(3);
    range.Add(std::numeric_limits<double>::infinity());
    range.Add(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(range.GetCount(), 2);
    EXPECT_EQ(range.GetNotNumbers(), 2);
    EXPECT_EQ(range.GetSmallest(), 3);
    EXPECT_EQ(range.GetLargest(), std::numeric_limits<double>::infinity());

    Statistics statistics;
    Document document = ReadDocument(R"({"DF_Params": {}})");
    document.info->FindMember(QStringLiteral("Frequency"))->SetValue(*document.record, QStringLiteral("nan"));
    statistics.Add(document);
    EXPECT_EQ(rows(statistics, "numbers"), QStringList("DF_Params/Frequency (not a number): 1 nan nan"));
}

TEST(Statistics, HaveTheMostFrequentTexts)
{
    Statistics statistics;
    const auto add = [&](int times, const QString& text) {
        for (int i = 0; i < times; ++i)
            statistics.Add(portAt(text));
    };
    for (int i = 0; i < 12; ++i)
        add(1, QStringLiteral("text %1").arg(i, 2, 10, QLatin1Char('0')));
    add(3, QStringLiteral("b"));
    add(3, QStringLiteral("a"));
    add(2, QStringLiteral(""));
    add(4, QString());
    statistics.Add(ReadDocument(R"({"PelVtConnectServer": {}})"));
    EXPECT_EQ(rows(statistics, "PelVtConnectServer/Address (texts)"),
              (QStringList{"\"a\": 3", "\"b\": 3", "\"\": 2", "\"text 00\": 1", "\"text 01\": 1",
                           "\"text 02\": 1", "\"text 03\": 1", "\"text 04\": 1", "\"text 05\": 1",
                           "\"text 06\": 1", "5 other texts: 5", "null: 4", "not set: 1"}));
}

TEST(Statistics, HaveWholeTextsBesideShortNames)
{
    Statistics statistics;
    const QString longText(100, QLatin1Char('x'));
    statistics.Add(portAt(longText));
    for (const StatisticsTable& table : statistics.GetTables())
        if (table.title.endsWith("(texts)")) {
            EXPECT_LT(table.rows.at(0).name.size(), 50);
            EXPECT_EQ(table.rows.at(0).text, longText);
            return;
        }
    FAIL();
}

TEST(Statistics, TellNoMoreThanTenThousandTextsApart)
{
    TextCounts counts;
    for (int i = 0; i < 10001; ++i)
        counts.Add(QString::number(i));
    counts.Add(QStringLiteral("0"));
    counts.Add(QStringLiteral("10000"));
    EXPECT_EQ(counts.GetDifferent(), 10000);
    EXPECT_EQ(counts.GetTogether(), 2);
    EXPECT_EQ(counts.GetMostFrequent(1), (QVector<TextCounts::Counted>{{QStringLiteral("0"), 2}}));
    EXPECT_EQ(counts.GetMostFrequent(20000).size(), 10000);
}

TEST(Statistics, KeepNoMoreThanAMillionCharacters)
{
    TextCounts counts;
    counts.Add(QString(1 << 19, QLatin1Char('a')));
    counts.Add(QString(1 << 19, QLatin1Char('b')));
    counts.Add(QStringLiteral("c"));
    counts.Add(QString());
    EXPECT_EQ(counts.GetDifferent(), 2);
    EXPECT_EQ(counts.GetTogether(), 1);
    EXPECT_EQ(counts.GetNull(), 1);
}
