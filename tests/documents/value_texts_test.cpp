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
