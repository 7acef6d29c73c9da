// SPDX-License-Identifier: MIT
// Paths of members as people write them: which members they lead to, and what is said about wrong ones.
#include "TestSupport.h"

#include "documents/Difference.h"
#include "documents/Document.h"
#include "documents/DocumentError.h"
#include "documents/PathPattern.h"

#include <QtCore/QStringList>

using namespace ROUTERDOCUMENTS;
using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

// The path from the root to a fragment's frequency, with the numbers of the fragment.
MemberPath frequency(int first, int second)
{
    MemberPath path;
    path.Enter({"PelLu300RouterInterfaceXml"});
    path.Enter({"PelLu300RouterMessage"});
    path.Enter({"Fragment", first, second});
    path.Enter({"DF_Params"});
    path.Enter({"Frequency"});
    return path;
}

bool matches(const QString& pattern, int first, int second)
{
    return PathPattern(pattern, PathPattern::OfTwoRecords).Matches(frequency(first, second));
}

QString refusalOf(const QString& path, PathPattern::Brackets brackets = PathPattern::OfOneRecord)
{
    try {
        const PathPattern pattern(path, brackets);
    } catch (const InvalidMemberPath& error) {
        return error.GetText();
    }
    return QString();
}

} // namespace

TEST(MemberPaths, MayBeginAtAnyRecord)
{
    for (const char* path :
         {"Frequency", "DF_Params/Frequency", "Fragment/DF_Params/Frequency",
          "Fragment[*]/DF_Params/Frequency", "PelLu300RouterMessage/Fragment/DF_Params/Frequency",
          "PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment/DF_Params/Frequency",
          "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment/DF_Params/Frequency"})
        EXPECT_TRUE(matches(path, 2, 2)) << path;
    for (const char* path : {"DF_Params", "Bandwidth", "DF_Params/Bandwidth", "/DF_Params/Frequency"})
        EXPECT_FALSE(matches(path, 2, 2)) << path;
}

TEST(MemberPaths, NumberItemsFromOne)
{
    EXPECT_TRUE(matches("Fragment[2]/DF_Params/Frequency", 2, 2));
    EXPECT_FALSE(matches("Fragment[3]/DF_Params/Frequency", 2, 2));
}

TEST(MemberPaths, WithOneNumberFitEitherNumberOfAPair)
{
    EXPECT_TRUE(matches("Fragment[2]/DF_Params/Frequency", 2, 3));
    EXPECT_TRUE(matches("Fragment[3]/DF_Params/Frequency", 2, 3));
    EXPECT_FALSE(matches("Fragment[4]/DF_Params/Frequency", 2, 3));
}

TEST(MemberPaths, WithTwoNumbersFitBoth)
{
    EXPECT_TRUE(matches("Fragment[2->3]/DF_Params/Frequency", 2, 3));
    EXPECT_FALSE(matches("Fragment[2->3]/DF_Params/Frequency", 3, 2));
    EXPECT_FALSE(matches("Fragment[2->3]/DF_Params/Frequency", 2, 2));
    EXPECT_FALSE(matches("Fragment[2->3]/DF_Params/Frequency", 3, 3));
}

TEST(MemberPaths, OfADifferenceIgnoreIt)
{
    const auto first = ReadDocument(R"({"PelLu300RouterMessage": {"Fragment": [
        {"AcquireMastership": {}}, {"DF_Params": {"Frequency": 1}}, {"DF_Params": {"Bandwidth": 1}}]}})");
    const auto second = ReadDocument(R"({"PelLu300RouterMessage": {"Fragment": [
        {"ReleaseMastership": {}}, {"AcquireMastership": {}}, {"DF_Params": {"Frequency": 2}},
        {"DF_Params": {"Bandwidth": 2}}]}})");
    const auto differences = [&](const QStringList& ignored) {
        QStringList paths;
        CompareRecords(*first.record, *second.record, IgnoredMembers(ignored),
                       [&](const Difference& difference) { paths += difference.path.ToText(); });
        return paths;
    };
    const QStringList all = differences({});
    ASSERT_EQ(all, (QStringList{"Fragment[1]", "Fragment[2->3]/DF_Params/Frequency",
                                "Fragment[3->4]/DF_Params/Bandwidth"}));
    EXPECT_EQ(differences({all.at(1)}), (QStringList{all.at(0), all.at(2)}));
    EXPECT_EQ(differences({all.at(1), all.at(2)}), (QStringList{all.at(0)}));
    EXPECT_EQ(differences({"Fragment[2->3]"}), (QStringList{all.at(0), all.at(2)}));
    EXPECT_EQ(differences({"Fragment[3->2]"}), all);
}

TEST(MemberPaths, OfAnItemThatHasMovedIgnoreTheMove)
{
    const auto first = ReadDocument(R"({"PelLu300RouterMessage": {"Fragment": [
        {"AcquireMastership": {}}, {"ReleaseMastership": {}}, {"OstraInterfacePort": {}}]}})");
    const auto second = ReadDocument(R"({"PelLu300RouterMessage": {"Fragment": [
        {"ReleaseMastership": {}}, {"OstraInterfacePort": {}}, {"AcquireMastership": {}}]}})");
    const auto differences = [&](const QStringList& ignored) {
        QStringList paths;
        CompareRecords(*first.record, *second.record, IgnoredMembers(ignored),
                       [&](const Difference& difference) { paths += difference.path.ToText(); });
        return paths;
    };
    EXPECT_EQ(differences({}), QStringList("Fragment[1->3]"));
    EXPECT_EQ(differences({"Fragment[1->3]"}), QStringList());
    EXPECT_EQ(differences({"Fragment[3->1]"}), QStringList("Fragment[1->3]"));
}

TEST(MemberPaths, KnowTheMembersAtTheirEnd)
{
    const PathPattern port("Port");
    EXPECT_EQ(port.GetMembers().size(), 3);
    for (const MemberInfo* member : port.GetMembers())
        EXPECT_EQ(member->GetName(), "Port");
    EXPECT_EQ(PathPattern("OstraInterfacePort/Port").GetMembers().size(), 1);
    EXPECT_TRUE(PathPattern("/PelLu300RouterInterfaceXml").GetMembers().isEmpty());
}

TEST(MemberPaths, RepeatWhenTheyLeaveTheItemOpen)
{
    for (const char* path : {"Frequency", "DF_Params", "Fragment", "Fragment[*]/DF_Params/Frequency", "Port"})
        EXPECT_TRUE(PathPattern(path).CanRepeat()) << path;
    for (const char* path : {"Type", "MessageID", "Fragment[1]", "Fragment[1]/DF_Params/Frequency",
                             "/DF_Params/Frequency", "/PelLu300RouterInterfaceXml"})
        EXPECT_FALSE(PathPattern(path).CanRepeat()) << path;
}

TEST(MemberPaths, SayWhatIsWrongWithThem)
{
    EXPECT_EQ(refusalOf("DF_Params/Frequenzy"),
              "The member \"Frequenzy\" in the path \"DF_Params/Frequenzy\" does not exist. Did you mean "
              "Frequency?");
    EXPECT_EQ(refusalOf("Frequency[1]"),
              "The list \"Frequency\" in the path \"Frequency[1]\" does not exist.");
    EXPECT_EQ(
        refusalOf("/PelLu300RouterInterfaceXml[1]"),
        "The list \"PelLu300RouterInterfaceXml\" in the path \"/PelLu300RouterInterfaceXml[1]\" does not "
        "exist.");
    EXPECT_EQ(refusalOf("Fragment[2->3]"),
              "\"Fragment[2->3]\" in the path \"Fragment[2->3]\" is not understood. It has the numbers of an "
              "item in two records. Write one of them, as in Fragment[2].");
    for (const char* inside :
         {"0", "x", "", "-1", "+1", " 1", "1.5", "99999999999", "1->2->3", "1->", "->", "+"})
        EXPECT_EQ(
            refusalOf(QStringLiteral("Fragment[%1]").arg(inside), PathPattern::OfTwoRecords),
            QStringLiteral("\"Fragment[%1]\" in the path \"Fragment[%1]\" is not understood. Items have "
                           "numbers from 1, as in Fragment[2], or *.")
                .arg(inside));
    EXPECT_EQ(refusalOf("Fragment[2", PathPattern::OfTwoRecords),
              "\"Fragment[2\" in the path \"Fragment[2\" is not understood. Items have numbers from 1, as in "
              "Fragment[2], or *.");
}

TEST(MemberPaths, ForEditingKnowNewAndLastItems)
{
    const auto items = [](const QString& path) {
        return PathPattern(path, PathPattern::ForEditing).GetSteps().constFirst().items;
    };
    EXPECT_EQ(items("Fragment[+]"), PathPattern::New);
    EXPECT_EQ(items("Fragment[last]"), PathPattern::Last);
    EXPECT_EQ(items("Fragment[2]"), PathPattern::Numbered);
    EXPECT_EQ(items("Fragment[*]"), PathPattern::All);
    EXPECT_EQ(
        refusalOf("Fragment[0]", PathPattern::ForEditing),
        "\"Fragment[0]\" in the path \"Fragment[0]\" is not understood. Items have numbers from 1, as in "
        "Fragment[2]; * stands for all items, last for the last one and + for a new one.");
    EXPECT_FALSE(PathPattern("Fragment[last]", PathPattern::ForEditing).Matches(frequency(1, 1)));
}

TEST(MemberPaths, HaveExamplesThatAreRight)
{
    const QStringList examples = PathPattern::Examples();
    for (const char* path :
         {"MessageID", "PelLu300RouterMessage/MessageID", "Port", "OstraInterfacePort/Port"})
        EXPECT_EQ(examples.count(path), 1) << path;
    for (const QString& path : examples)
        EXPECT_EQ(refusalOf(path), QString());
}
