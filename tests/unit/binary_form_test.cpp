// SPDX-License-Identifier: MIT
// Inspecting a compressed form without an object.

#include "TestSupport.h"

#include "modelkit/BinaryForm.h"

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::InflateForm;
using MODELKIT::IsCompressedForm;
using MODELKIT::Limits;

namespace {

DF_Params sample()
{
    DF_Params params;
    params.SetFrequency(98500000.25);
    return params;
}

TEST(BinaryForm, TellsCompressedFromPlain)
{
    EXPECT_TRUE(IsCompressedForm(sample().GetCompressedBinaryRepresentationAsQByteArray(9)));
    EXPECT_FALSE(IsCompressedForm(sample().GetBinaryRepresentationAsQByteArray()));
    EXPECT_FALSE(IsCompressedForm(QByteArray("MKZ1")));
    EXPECT_FALSE(IsCompressedForm(QByteArray()));
}

TEST(BinaryForm, InflatesToThePlainForm)
{
    QByteArray plain("before");
    Failure failure;
    ASSERT_TRUE(InflateForm(sample().GetCompressedBinaryRepresentationAsQByteArray(-1), plain, failure));
    EXPECT_EQ(plain, sample().GetBinaryRepresentationAsQByteArray());
    EXPECT_EQ(failure.kind, Failure::None);
}

TEST(BinaryForm, RefusesThePlainForm)
{
    QByteArray plain("before");
    Failure failure;
    EXPECT_FALSE(InflateForm(sample().GetBinaryRepresentationAsQByteArray(), plain, failure));
    EXPECT_EQ(failure.kind, Failure::NotABinaryForm);
    EXPECT_EQ(failure.text, QStringLiteral("The bytes do not begin as a compressed form."));
    EXPECT_TRUE(plain.isEmpty());
}

TEST(BinaryForm, KeepsWhatCouldBeInflatedOfAFormThatIsCutOff)
{
    // The form has two pieces, because the text is longer than one.
    PelVtConnectServer server;
    server.SetAddress(QString(100000, QLatin1Char('a')));
    const QByteArray form = server.GetCompressedBinaryRepresentationAsQByteArray(0);
    QByteArray plain;
    Failure failure;
    EXPECT_FALSE(InflateForm(form.left(form.size() - 1), plain, failure));
    EXPECT_EQ(failure.kind, Failure::NotABinaryForm);
    EXPECT_EQ(failure.text, QStringLiteral("The binary form is cut off."));
    EXPECT_EQ(failure.place.offset, form.size() - 1);
    EXPECT_EQ(plain, server.GetBinaryRepresentationAsQByteArray().left(65536));
}

TEST(BinaryForm, RefusesANegativeLength)
{
    QByteArray form = sample().GetCompressedBinaryRepresentationAsQByteArray(-1);
    form[4] = '\xff';
    QByteArray plain;
    Failure failure;
    EXPECT_FALSE(InflateForm(form, plain, failure));
    EXPECT_EQ(failure.text, QStringLiteral("The binary form has a negative length."));
}

TEST(BinaryForm, HoldsTheLimitOfInflating)
{
    const Limits before = Limits::Get();
    Limits limits = before;
    const QByteArray form = sample().GetCompressedBinaryRepresentationAsQByteArray(-1);
    limits.inflatedSize = sample().GetBinaryRepresentationAsQByteArray().size() - 1;
    Limits::Set(limits);
    QByteArray plain;
    Failure failure;
    EXPECT_FALSE(InflateForm(form, plain, failure));
    Limits::Set(before);
    EXPECT_EQ(failure.kind, Failure::InflatedTooLarge);
    EXPECT_TRUE(plain.isEmpty());
}

} // namespace
