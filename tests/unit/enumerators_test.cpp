// SPDX-License-Identifier: MIT
// The enumerators by static functions.

#include "TestSupport.h"

#include "routerinterface/Enumerators.h"

using namespace testing_support;

namespace {

using Types = Enumerators<PelLu300RouterMessage::Type>;
using States = Enumerators<MastershipState::State>;
using Choices = Enumerators<Fragment::ChoiceFragment>;

template <class E>
void expectConsistent(const QStringList& names)
{
    using All = Enumerators<E>;
    EXPECT_EQ(All::GetNames(), names);
    const QVector<E> values = All::GetValues();
    ASSERT_EQ(values.size(), names.size());
    for (int i = 0; i < int(names.size()); ++i) {
        EXPECT_EQ(int(values[i]), i);
        EXPECT_TRUE(All::Contains(values[i]));
        EXPECT_EQ(All::NameOf(values[i]), names[i]);
        EXPECT_EQ(All::ValueOf(names[i]), values[i]);
    }
}

} // namespace

TEST(Enumerators, HaveTheNamesOfTheDialect)
{
    expectConsistent<PelLu300RouterMessage::Type>(PelLu300RouterMessage::GetTypes());
    expectConsistent<MastershipState::State>(MastershipState::GetStates());
    expectConsistent<Fragment::ChoiceFragment>(payloadNames());
}

TEST(Enumerators, OtherNumbersHaveNoName)
{
    for (const int number : {-1, 3, 7, 1 << 30, -(1 << 30)}) {
        const auto type = static_cast<PelLu300RouterMessage::Type>(number);
        EXPECT_FALSE(Types::Contains(type));
        EXPECT_TRUE(Types::NameOf(type).isNull());
    }
    EXPECT_FALSE(States::Contains(static_cast<MastershipState::State>(-1)));
    EXPECT_FALSE(Choices::Contains(static_cast<Fragment::ChoiceFragment>(payloadCount)));
}

TEST(Enumerators, OtherNamesHaveNoValue)
{
    EXPECT_EQ(Types::ValueOf(text("request")), std::nullopt);
    EXPECT_EQ(Types::ValueOf(text("Request ")), std::nullopt);
    EXPECT_EQ(Types::ValueOf(empty()), std::nullopt);
    EXPECT_EQ(Types::ValueOf(QString()), std::nullopt);
    EXPECT_EQ(Choices::ValueOf(text("Fragment")), std::nullopt);
}
