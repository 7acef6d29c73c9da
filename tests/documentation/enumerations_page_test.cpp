// SPDX-License-Identifier: MIT
// The samples and statements of docs/enumerations.md.

#include "Said.h"
#include "ShownOnPage.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>

#include <cmath>
#include <limits>

using namespace testing_support;

namespace {

const char* const page = "docs/enumerations.md";

QString said() { return Said::texts().join(QLatin1Char('\n')); }

// The row of the page's table that begins with the enumeration.
QString row(const char* enumeration, const QStringList& names)
{
    QStringList quoted;
    for (const QString& name : names)
        quoted.append(QLatin1Char('`') + name + QLatin1Char('`'));
    return QStringLiteral("\n| `%1` | %2 |\n")
        .arg(QLatin1String(enumeration), quoted.join(QStringLiteral(", ")));
}

} // namespace

TEST(EnumerationsPage, TheTableHasAllEnumerators)
{
    const QString text = pageText(page);
    EXPECT_TRUE(text.contains(row("PelLu300RouterMessage::Type", PelLu300RouterMessage::GetTypes())));
    EXPECT_TRUE(text.contains(row("MastershipState::State", MastershipState::GetStates())));
    EXPECT_TRUE(text.contains(row("Fragment::ChoiceFragment", Fragment::GetChoiceFragments())));
    int enumerations = 1; // the choice
    for (const RecordInfo* info : RecordInfo::All())
        for (const MemberInfo* member : info->GetMembers())
            enumerations += member->GetKind() == MemberInfo::Enumeration ? 1 : 0;
    EXPECT_EQ(text.count(QRegularExpression(QStringLiteral("\n\\| `\\w+::\\w+` \\| `"))), enumerations);
}

TEST(EnumerationsPage, EnumeratorsHaveNames)
{
    const Said heard;
    //! [names]
    MastershipState state;
    state.SetState(state.NameToState(QStringLiteral("MasterPresent")));
    qInfo().noquote() << "the state is" << state.GetStateAsString();
    qInfo().noquote() << "all:" << MastershipState::GetStates().join(QStringLiteral(", "));
    //! [names]
    EXPECT_EQ(said(), shownOn(page, QStringLiteral("the state is")));
    EXPECT_TRUE(state.StateToName(static_cast<MastershipState::State>(7)).isNull());
    EXPECT_EQ(state.NameToState(QStringLiteral("masterpresent")), state.GetInvalidState());
    EXPECT_EQ(NamesOf(MastershipState::State()), MastershipState::GetStates());
}

TEST(EnumerationsPage, TheInvalidValueIsNoEnumerator)
{
    const Said heard;
    //! [the invalid value]
    MastershipState state;
    qInfo() << state.GetInvalidState() << "is valid:" << state.IsValidState(state.GetInvalidState());
    qInfo() << "\"Busy\" is read as" << state.NameToState(QStringLiteral("Busy"));
    //! [the invalid value]
    EXPECT_EQ(said(), shownOn(page, QStringLiteral("-1 is valid")));
    EXPECT_EQ(state.GetState(), state.GetInvalidState());
    EXPECT_EQ(Fragment().GetChoiceFragment(), -1);
    const auto other = static_cast<MastershipState::State>(9);
    state.SetState(other);
    EXPECT_EQ(state.GetState(), other);
    EXPECT_THROW(state.Check(), OutOfRangeException);
    state.SetValidate(true);
    EXPECT_THROW(state.SetState(other), OutOfRangeException);
}

TEST(EnumerationsPage, TheBaseClassMarksValuesOfPlainTypes)
{
    const DF_Params record;
    const MODELKIT::IMKObject& object = record;
    double number = 0;
    unsigned int count = 0;
    int small = 0;
    long long large = 0;
    QString text = QStringLiteral("x");
    object.SetInvalid(number);
    object.SetInvalid(count);
    object.SetInvalid(small);
    object.SetInvalid(large);
    object.SetInvalid(text);
    EXPECT_TRUE(std::isnan(number));
    EXPECT_EQ(count, 4294967295U);
    EXPECT_EQ(small, std::numeric_limits<int>::min());
    EXPECT_EQ(large, std::numeric_limits<long long>::min());
    EXPECT_TRUE(text.isNull());
    EXPECT_FALSE(object.IsValid(number) || object.IsValid(count) || object.IsValid(small)
                 || object.IsValid(large) || object.IsValid(text) || object.IsValid(QDateTime()));
    EXPECT_TRUE(object.IsValid(true) && object.IsValid(false) && object.IsValid(QStringLiteral("")));
}
