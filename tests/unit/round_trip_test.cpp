// SPDX-License-Identifier: MIT
// Comparing by what the written forms carry. Whatever a record is written with, it equals itself read back;
// and two records that are written differently are different.

#include "LifecycleSupport.h"

#include "routerinterface/RoundTrip.h"

#include <limits>

using namespace testing_support;

namespace {

using Document = PelLu300RouterInterfaceXml;
using Message = PelLu300RouterMessage;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// Whether they are equal within XML and within the binary form: "both", "XML", "binary" or "none".
std::string formsOfEquality(const MODELKIT::IMKObject& a, const MODELKIT::IMKObject& b)
{
    EXPECT_EQ(EqualsWithin(a, b), EqualsWithin(b, a));
    EXPECT_EQ(EqualsWithin(a, b), EqualsWithin(a, b, WrittenForm::Xml));
    const bool xml = EqualsWithin(a, b);
    const bool binary = EqualsWithin(a, b, WrittenForm::Binary);
    return xml ? (binary ? "both" : "XML") : (binary ? "binary" : "none");
}

// Expects that the record equals what its written forms give back.
template <class R>
void expectKept(const R& record)
{
    R fromXml;
    ASSERT_TRUE(fromXml.SetXmlString(const_cast<R&>(record).GetXmlString(), false));
    EXPECT_TRUE(EqualsWithin(record, fromXml)) << xmlOf(record).toStdString();
    R fromBinary;
    const QByteArray form = const_cast<R&>(record).GetBinaryRepresentationAsQByteArray();
    ASSERT_TRUE(fromBinary.SetBinaryRepresentation(form));
    EXPECT_TRUE(EqualsWithin(record, fromBinary, WrittenForm::Binary)) << xmlOf(record).toStdString();
}

PelVtConnectServer withAddress(const QString& address)
{
    PelVtConnectServer record;
    record.SetAddress(address);
    return record;
}

} // namespace

TEST(EqualsWithin, EveryMemberIsKeptAndCounts)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        SCOPED_TRACE(Member::name);
        typename Member::Owner empty;
        typename Member::Owner first;
        typename Member::Owner second;
        Member::set(first, Member::first());
        Member::set(second, Member::second());
        expectKept(empty);
        expectKept(first);
        EXPECT_EQ(formsOfEquality(first, first), "both");
        EXPECT_EQ(formsOfEquality(first, second), "none");
        EXPECT_EQ(formsOfEquality(first, empty), "none");
    });
}

TEST(EqualsWithin, NumbersHaveTwoDecimals)
{
    EXPECT_EQ(formsOfEquality(params(0.125), params(0.13)), "both");
    EXPECT_EQ(formsOfEquality(params(0.125), params(0.12)), "none");
    EXPECT_EQ(formsOfEquality(params(98.5e6), params(98.5e6 + 0.001)), "both");
    EXPECT_EQ(formsOfEquality(params(1e300), params(1.0000000000000002e300)), "none");
    EXPECT_EQ(formsOfEquality(params(-0.001), params(0.0)), "both");
    EXPECT_EQ(formsOfEquality(params(notANumber), params(notANumber)), "both");
    EXPECT_EQ(formsOfEquality(params(notANumber), params(0)), "none");
    EXPECT_EQ(formsOfEquality(params(std::numeric_limits<double>::infinity()), params(notANumber)), "none");
    for (const double number :
         {0.125, -0.001, notANumber, 1e300, 1e-300, 98.5e6, -std::numeric_limits<double>::infinity()})
        expectKept(params(number));
}

TEST(EqualsWithin, OnlyTheBinaryFormTellsNullFromEmpty)
{
    EXPECT_EQ(formsOfEquality(withAddress(QString()), withAddress(empty())), "XML");
    EXPECT_EQ(formsOfEquality(withAddress(QString()), PelVtConnectServer()), "none");
    EXPECT_EQ(formsOfEquality(withAddress(empty()), withAddress(text("a"))), "none");
    expectKept(withAddress(QString()));
    expectKept(withAddress(empty()));
    expectKept(withAddress(text(" a\r\n\tb ")));
}

TEST(EqualsWithin, AnEmptyListIsNone)
{
    Message touched;
    touched.GetFragment();
    EXPECT_FALSE(touched == Message());
    EXPECT_EQ(formsOfEquality(touched, Message()), "both");
    expectKept(touched);
    touched.AddFragment();
    EXPECT_EQ(formsOfEquality(touched, Message()), "none");
    expectKept(touched);
}

TEST(EqualsWithin, ItemsCountInTheirOrder)
{
    Message message;
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    Message reversed;
    reversed.AppendFragment(withPort(2));
    reversed.AppendFragment(withPort(1));
    EXPECT_EQ(formsOfEquality(message, reversed), "none");
    expectKept(message);
}

TEST(EqualsWithin, NumbersThatAreNoEnumeratorsAreTheSame)
{
    Message first;
    first.SetType(static_cast<Message::Type>(9));
    Message second;
    second.SetType(static_cast<Message::Type>(-1));
    EXPECT_FALSE(first == second);
    EXPECT_EQ(formsOfEquality(first, second), "both");
    EXPECT_EQ(formsOfEquality(first, Message()), "both");
    expectKept(first);

    MastershipState wrong;
    wrong.SetState(static_cast<MastershipState::State>(9));
    expectKept(wrong);
}

// It is written, with the default as it was at the last reset.
TEST(EqualsWithin, ATypeThatIsNotSetIsThatOfItsDefault)
{
    Message message;
    message.SetDefaultType(Message::Event);
    message.Reset();
    Message event;
    event.SetType(Message::Event);
    EXPECT_FALSE(message == event);
    EXPECT_EQ(formsOfEquality(message, event), "both");
    expectKept(message);
}

TEST(EqualsWithin, APayloadThatIsNotSetIsNone)
{
    Fragment fragment;
    fragment.GetDF_Params();
    expectKept(fragment);
    EXPECT_EQ(formsOfEquality(fragment, Fragment()), "none");
    fragment.ResetDF_Params();
    EXPECT_FALSE(fragment == Fragment());
    EXPECT_EQ(formsOfEquality(fragment, Fragment()), "both");
    expectKept(fragment);
    Fragment other;
    other.GetAcquireMastership();
    EXPECT_EQ(formsOfEquality(fragment, other), "none");
}

TEST(EqualsWithin, WhatXmlDoesNotGiveBackIsADifference)
{
    const OstraInterfacePort port = ostraPort(4294967295U);
    OstraInterfacePort read;
    ASSERT_TRUE(read.SetXmlString(const_cast<OstraInterfacePort&>(port).GetXmlString(), false));
    EXPECT_FALSE(EqualsWithin(port, read));
    OstraInterfacePort binary;
    const QByteArray form = const_cast<OstraInterfacePort&>(port).GetBinaryRepresentationAsQByteArray();
    ASSERT_TRUE(binary.SetBinaryRepresentation(form));
    EXPECT_TRUE(EqualsWithin(port, binary, WrittenForm::Binary));
}

TEST(EqualsWithin, RecordsOfDifferentClassesDiffer)
{
    EXPECT_EQ(formsOfEquality(OstraInterfacePort(), RouterVtServerPort()), "none");
    EXPECT_EQ(formsOfEquality(Opened<OstraInterfacePort>(), OstraInterfacePort()), "both");
}

TEST(EqualsWithin, NothingIsChanged)
{
    Document document;
    Message other;
    EXPECT_FALSE(EqualsWithin(document, other));
    EXPECT_TRUE(EqualsWithin(document, Document()));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
    document.SetPelLu300RouterMessage(message(7));
    const Document before(document);
    EXPECT_TRUE(EqualsWithin(document, before));
    EXPECT_TRUE(document == before);
}
