// SPDX-License-Identifier: MIT
// The library's own conversions of numbers agree with those of Qt wherever they give a result.

#include "TestSupport.h"

#include "routerinterface/machinery/Characters.h"
#include "routerinterface/machinery/Numbers.h"

#include <cmath>
#include <cstring>
#include <random>

using namespace testing_support;
namespace machinery = PELLU300ROUTERINTERFACEXML::machinery;

namespace {

QString twoDecimals(double value)
{
    QChar text[machinery::maximalNumberSize];
    return QString(text, machinery::writeTwoDecimals(value, text));
}

void expectQtsText(double value)
{
    const QString text = twoDecimals(value);
    if (!text.isEmpty()) {
        ASSERT_EQ(text, QStringLiteral("%1").arg(value, 0, 'f', 2)) << value;
    }
}

void expectQtsValue(const QString& text)
{
    double value = 0;
    if (!machinery::readDecimal(machinery::Utf16Text(text.constData(), text.size()), value))
        return;
    const double expected = text.toDouble();
    ASSERT_EQ(std::memcmp(&value, &expected, sizeof value), 0) << text.toStdString();
}

bool isInteger(const char* text, int& value)
{
    return machinery::readInteger(machinery::Utf8Text(text, static_cast<int>(std::strlen(text))), value);
}

bool isDecimal(const char* text, double& value)
{
    return machinery::readDecimal(machinery::Utf8Text(text, static_cast<int>(std::strlen(text))), value);
}

} // namespace

TEST(Numbers, WriteTheUsualValuesThemselves)
{
    EXPECT_EQ(twoDecimals(2.5), QStringLiteral("2.50"));
    EXPECT_EQ(twoDecimals(-98500000.25), QStringLiteral("-98500000.25"));
    EXPECT_EQ(twoDecimals(0.999), QStringLiteral("1.00"));
    EXPECT_EQ(twoDecimals(0.125), QStringLiteral("0.13"));
    EXPECT_EQ(twoDecimals(9007199254740991.0), QStringLiteral("9007199254740991.00"));
}

// The results of QString::arg() with Qt 5 and Qt 6: a value that rounds to zero keeps its sign, but negative
// zero is written without one.
TEST(Numbers, AreWrittenAsQtWritesThemInBothForms)
{
    const struct
    {
        double value;
        const char* text;
    } cases[] = {{-0.001, "-0.00"},
                 {-0.0, "0.00"},
                 {0.0, "0.00"},
                 {0.004, "0.00"},
                 {-0.004, "-0.00"},
                 {0.005, "0.01"},
                 {-0.005, "-0.01"},
                 {0.125, "0.13"},
                 {2.675, "2.67"},
                 {1234567.891, "1234567.89"},
                 {9007199254740993.0, "9007199254740992.00"},
                 {1e23, "99999999999999991611392.00"},
                 {5e-324, "0.00"},
                 {HUGE_VAL, "inf"},
                 {-HUGE_VAL, "-inf"},
                 {std::nan(""), "nan"}};
    for (const auto& each : cases) {
        const QString text = QLatin1String(each.text);
        EXPECT_EQ(QStringLiteral("%1").arg(each.value, 0, 'f', 2), text);
        DF_Params record;
        record.SetFrequency(each.value);
        EXPECT_EQ(xmlOf(record),
                  QStringLiteral("<DF_Params><Frequency>%1</Frequency></DF_Params>").arg(text));
        EXPECT_EQ(frameOf(record).mid(16), text.toUtf8());
    }
    DF_Params huge;
    huge.SetFrequency(1e300);
    const QString text = QStringLiteral("%1").arg(1e300, 0, 'f', 2);
    EXPECT_EQ(text.size(), 304);
    EXPECT_TRUE(text.startsWith(QStringLiteral("1000000000000000052504760255204420248704468581108159")));
    EXPECT_EQ(xmlOf(huge), QStringLiteral("<DF_Params><Frequency>%1</Frequency></DF_Params>").arg(text));
    EXPECT_EQ(frameOf(huge).mid(16), text.toUtf8());
}

TEST(Numbers, LeaveUnusualValuesToQt)
{
    for (const double value : {0.0, -0.0, 0.001, 9007199254740992.0, 1e300, HUGE_VAL, std::nan("")})
        EXPECT_TRUE(twoDecimals(value).isEmpty()) << value;
}

TEST(Numbers, WriteWhatQtWrites)
{
    std::mt19937_64 random(20260815);
    for (int i = 0; i < 50000; ++i) {
        const std::uint64_t bits = random();
        double any = 0;
        std::memcpy(&any, &bits, sizeof any);
        expectQtsText(any);
        expectQtsText(static_cast<double>(bits % 100000000) / 1000.0);
        // Many of these are exactly between two hundredths.
        expectQtsText(static_cast<double>(bits % 2000000) / 8.0 - 1000.0);
        expectQtsText(std::ldexp(static_cast<double>(bits >> (bits % 50)), -static_cast<int>(random() % 64)));
    }
}

TEST(Numbers, ReadWhatQtReads)
{
    std::mt19937_64 random(4711);
    for (int i = 0; i < 50000; ++i) {
        const std::uint64_t bits = random();
        const auto decimals = static_cast<int>(bits % 8);
        expectQtsValue(QString::number(static_cast<double>(bits >> 20) / 1024.0, 'f', decimals));
        expectQtsValue(QString::number(-static_cast<double>(bits % 1000000), 'f', decimals));
    }
}

TEST(Numbers, LeaveTextsOfAnotherFormToQt)
{
    double decimal = 0;
    for (const char* text :
         {"", "-", ".", "5.", ".5", "+1", " 1", "1 ", "1e3", "nan", "0x1", "1.2.3", "1234567890123456"})
        EXPECT_FALSE(isDecimal(text, decimal)) << text;
    int integer = 0;
    for (const char* text : {"", "-", "+1", " 1", "1 ", "1.0", "abc", "1234567890", "-1234567890"})
        EXPECT_FALSE(isInteger(text, integer)) << text;
    EXPECT_TRUE(isInteger("-123456789", integer));
    EXPECT_EQ(integer, -123456789);
    EXPECT_TRUE(isDecimal("-0.50", decimal));
    EXPECT_EQ(decimal, -0.5);
}
