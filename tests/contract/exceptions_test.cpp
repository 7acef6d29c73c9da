// SPDX-License-Identifier: MIT
// The exceptions: how the classes are derived, as what each can be caught, and what it carries.

#include "modelkit/Exceptions.h"

#include "TestSupport.h"

#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace {

// C++ cannot tell the direct base of a class, but all pairs together determine the tree.
template <class Base, class Derived>
constexpr bool isBelow = std::is_base_of_v<Base, Derived>&& std::is_convertible_v<Derived*, Base*>;
template <class First, class Second>
constexpr bool areSiblings = !std::is_base_of_v<First, Second> && !std::is_base_of_v<Second, First>;

static_assert(isBelow<std::exception, ModelKitException>);
static_assert(isBelow<ModelKitException, MKException>);
static_assert(isBelow<MKException, OutOfRangeException>);
static_assert(isBelow<MKException, IncompleteDefinitionException>);
static_assert(isBelow<MKException, InvalidXmlException>);
static_assert(isBelow<MKException, BinaryParsingException>);
static_assert(areSiblings<OutOfRangeException, IncompleteDefinitionException>);
static_assert(areSiblings<OutOfRangeException, InvalidXmlException>);
static_assert(areSiblings<OutOfRangeException, BinaryParsingException>);
static_assert(areSiblings<IncompleteDefinitionException, InvalidXmlException>);
static_assert(areSiblings<IncompleteDefinitionException, BinaryParsingException>);
static_assert(areSiblings<InvalidXmlException, BinaryParsingException>);
static_assert(areSiblings<ModelKitException, std::runtime_error>);
static_assert(areSiblings<ModelKitException, std::logic_error>);

using AllExceptions =
    ::testing::Types<ModelKitException, MKException, OutOfRangeException, IncompleteDefinitionException,
                     InvalidXmlException, BinaryParsingException>;
using ThrownExceptions = ::testing::Types<OutOfRangeException, IncompleteDefinitionException,
                                          InvalidXmlException, BinaryParsingException>;

template <class Exception>
class ExceptionContract : public ::testing::Test
{
    static_assert(std::is_constructible_v<Exception, const QString&>);
    static_assert(!std::is_convertible_v<QString, Exception>, "a text does not become an exception unasked");
    static_assert(!std::is_default_constructible_v<Exception>);
    static_assert(std::is_nothrow_copy_constructible_v<Exception>, "the thrown object is copied");
    static_assert(std::is_nothrow_copy_assignable_v<Exception>);
    static_assert(std::has_virtual_destructor_v<Exception>);
    static_assert(!std::is_abstract_v<Exception>);
    static_assert(!std::is_final_v<Exception>);
    static_assert(std::is_same_v<decltype(&Exception::GetText),
                                 const QString& (ModelKitException::*)() const noexcept>);
    static_assert(
        std::is_same_v<decltype(&Exception::what), const char* (ModelKitException::*)() const noexcept>);
};
TYPED_TEST_SUITE(ExceptionContract, AllExceptions, );

template <class Exception>
class ThrownExceptionContract : public ::testing::Test
{
};
TYPED_TEST_SUITE(ThrownExceptionContract, ThrownExceptions, );

// Throws an Exception, catches it as Caught and returns its text if both accessors agree.
template <class Exception, class Caught>
QString textCaughtAs()
{
    try {
        throw Exception(QStringLiteral("a text"));
    } catch (const Caught& caught) {
        EXPECT_TRUE(typeid(caught) == typeid(Exception)) << "the object was sliced";
        return QString::fromUtf8(caught.what());
    }
}

TYPED_TEST(ExceptionContract, CarriesTheTextAsItStands)
{
    const TypeParam exception(QStringLiteral(" two blanks, %1 and a\nline "));
    EXPECT_EQ(exception.GetText(), QStringLiteral(" two blanks, %1 and a\nline "));
    EXPECT_STREQ(exception.what(), " two blanks, %1 and a\nline ");
}

TYPED_TEST(ExceptionContract, WhatIsTheTextInUtf8)
{
    const TypeParam exception(QStringLiteral("\u00FC \u20AC \U0001F4E1"));
    EXPECT_EQ(std::string(exception.what()), "\xC3\xBC \xE2\x82\xAC \xF0\x9F\x93\xA1");
    EXPECT_EQ(exception.GetText(), QStringLiteral("\u00FC \u20AC \U0001F4E1"));
}

TYPED_TEST(ExceptionContract, AnEmptyTextIsAnEmptyWhat)
{
    EXPECT_STREQ(TypeParam(QString()).what(), "");
    EXPECT_STREQ(TypeParam(testing_support::empty()).what(), "");
    EXPECT_TRUE(TypeParam(QString()).GetText().isEmpty());
}

TYPED_TEST(ExceptionContract, ACopyCarriesTheTextAndOutlivesItsSource)
{
    auto source = std::make_unique<TypeParam>(QStringLiteral("kept \u00FC"));
    const TypeParam copy(*source);
    source.reset();
    EXPECT_EQ(copy.GetText(), QStringLiteral("kept \u00FC"));
    EXPECT_STREQ(copy.what(), "kept \xC3\xBC");
}

TYPED_TEST(ExceptionContract, AssignmentReplacesTheText)
{
    TypeParam target(QStringLiteral("old"));
    {
        const TypeParam source(QStringLiteral("new \u00FC"));
        target = source;
    }
    EXPECT_EQ(target.GetText(), QStringLiteral("new \u00FC"));
    EXPECT_STREQ(target.what(), "new \xC3\xBC");
}

TYPED_TEST(ExceptionContract, TheTextIsIndependentOfTheStringItWasMadeOf)
{
    QString text = QStringLiteral("before");
    const TypeParam exception(text);
    text = QStringLiteral("after");
    EXPECT_EQ(exception.GetText(), QStringLiteral("before"));
    EXPECT_STREQ(exception.what(), "before");
}

TYPED_TEST(ExceptionContract, IsCaughtAsItsOwnClassTheRootAndTheStandardException)
{
    EXPECT_EQ((textCaughtAs<TypeParam, TypeParam>()), QStringLiteral("a text"));
    EXPECT_EQ((textCaughtAs<TypeParam, ModelKitException>()), QStringLiteral("a text"));
    EXPECT_EQ((textCaughtAs<TypeParam, std::exception>()), QStringLiteral("a text"));
}

TYPED_TEST(ThrownExceptionContract, IsCaughtAsMKException)
{
    EXPECT_EQ((textCaughtAs<TypeParam, MKException>()), QStringLiteral("a text"));
}

// The library is a separate module: its exceptions must have the same types as in the program that catches
// them.
TEST(ExceptionsFromTheLibrary, OutOfRangeIsCaughtByEveryClassAboveIt)
{
    PELLU300ROUTERINTERFACEXML::PelVtConnectServer server;
    server.SetValidate(true);
    const auto fail = [&server] { server.SetAddress(QString()); };
    EXPECT_THROW(fail(), OutOfRangeException);
    EXPECT_THROW(fail(), MKException);
    EXPECT_THROW(fail(), ModelKitException);
    EXPECT_THROW(fail(), std::exception);
}

TEST(ExceptionsFromTheLibrary, IncompleteDefinitionIsCaughtByEveryClassAboveIt)
{
    PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage message;
    message.SetValidate(true);
    const auto fail = [&message] { message.AppendFragment(PELLU300ROUTERINTERFACEXML::Fragment()); };
    EXPECT_THROW(fail(), IncompleteDefinitionException);
    EXPECT_THROW(fail(), MKException);
    EXPECT_THROW(fail(), ModelKitException);
    EXPECT_THROW(fail(), std::exception);
}

TEST(ExceptionsFromTheLibrary, InvalidXmlIsCaughtByEveryClassAboveIt)
{
    PELLU300ROUTERINTERFACEXML::AcquireMastership record;
    record.SetValidate(true);
    const auto fail = [&record] {
        record.SetXmlString(QStringLiteral("<AcquireMastership><Success/></AcquireMastership>"), false);
    };
    EXPECT_THROW(fail(), InvalidXmlException);
    EXPECT_THROW(fail(), MKException);
    EXPECT_THROW(fail(), ModelKitException);
    EXPECT_THROW(fail(), std::exception);
}

TEST(ExceptionsFromTheLibrary, BinaryParsingIsCaughtByEveryClassAboveIt)
{
    PELLU300ROUTERINTERFACEXML::DF_Params record;
    const auto fail = [&record] { testing_support::readFrame(record, testing_support::bytes("FFFFFFFF")); };
    EXPECT_THROW(fail(), BinaryParsingException);
    EXPECT_THROW(fail(), MKException);
    EXPECT_THROW(fail(), ModelKitException);
    EXPECT_THROW(fail(), std::exception);
}

} // namespace
