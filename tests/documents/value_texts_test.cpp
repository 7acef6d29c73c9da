// SPDX-License-Identifier: MIT
// Values of members as people write them.
#include "TestSupport.h"

#include "documents/PathPattern.h"
#include "documents/ValueTexts.h"
#include "documents/Values.h"

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

const MemberInfo& member(const char* path)
{
    return *PathPattern(QString::fromLatin1(path)).GetMembers().constFirst();
}

QVariant value(const char* path, const QString& text) { return ValueFromText(member(path), text); }

} // namespace

TEST(ValueTexts, StandForValuesOfEveryKind)
{
    EXPECT_EQ(value("MessageID", "4294967295"), QVariant(4294967295U));
    EXPECT_EQ(value("Frequency", "98.5e6"), QVariant(98.5e6));
    EXPECT_EQ(value("Frequency", "-1"), QVariant(-1.0));
    EXPECT_EQ(value("Success", "false"), QVariant(false));
    EXPECT_EQ(value("Success", "true"), QVariant(true));
    EXPECT_EQ(value("Address", ""), QVariant(QStringLiteral("")));
    EXPECT_EQ(value("Type", "Event"), QVariant(2));
}

TEST(ValueTexts, ThatStandForNoValueAreInvalid)
{
    for (const char* text : {"", "-1", "4294967296", "1.5", "x"})
        EXPECT_FALSE(value("MessageID", text).isValid()) << text;
    for (const char* text : {"", "nan", "inf", "-inf", "1e999", "1,5"})
        EXPECT_FALSE(value("Frequency", text).isValid()) << text;
    for (const char* text : {"", "True", "1", "yes"})
        EXPECT_FALSE(value("Success", text).isValid()) << text;
    for (const char* text : {"", "event", "2", "null"})
        EXPECT_FALSE(value("Type", text).isValid()) << text;
    EXPECT_FALSE(value("DF_Params", "x").isValid());
    EXPECT_FALSE(value("Fragment", "x").isValid());
}

TEST(ValueTexts, AreListedWhenThatIsPossible)
{
    EXPECT_EQ(ListedValues(member("Type")), (QStringList{"Request", "Reply", "Event"}));
    EXPECT_EQ(ListedValues(member("Success")), (QStringList{"true", "false"}));
    EXPECT_EQ(ListedValues(member("MessageID")), QStringList());
    EXPECT_EQ(ListedValues(member("DF_Params")), QStringList());
}

TEST(ValueTexts, ArePlainWhenTheyAreWritten)
{
    EXPECT_EQ(PlainText(member("Type"), 1), "Reply");
    EXPECT_EQ(PlainText(member("Type"), 17), "17");
    EXPECT_EQ(PlainText(member("Address"), "a \"b\"\n"), "a \"b\"\\n");
    EXPECT_EQ(PlainText(member("Address"), QString()), "");
    EXPECT_EQ(PlainText(member("Frequency"), 87.5), "87.5");
    EXPECT_EQ(PlainText(member("MessageID"), 4294967295U), "4294967295");
    EXPECT_EQ(PlainText(member("Success"), true), "true");
}

TEST(ValueTexts, NumbersAreKeptExactlyIfNoDigitIsLost)
{
    for (const char* number : {"0", "-0.00", "98437000.125", " +098437000.1250\n", ".5", "5.", "1e300",
                               "1.25E-7", "0.1", "123456789.123456", "1e23"})
        EXPECT_TRUE(IsKeptExactly(QString::fromLatin1(number))) << number;
    for (const char* number : {"0.1234567890123456789", "9007199254740993", "-123456789012345678.25",
                               "1e-400", "1e400", "1.00000000000000000000001"})
        EXPECT_FALSE(IsKeptExactly(QString::fromLatin1(number))) << number;
}
