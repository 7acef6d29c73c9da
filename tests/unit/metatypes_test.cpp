// SPDX-License-Identifier: MIT
// Records, places and failures as types of Qt's meta-object system, with everything for Qt included at once.

#include "LifecycleSupport.h"

#include "modelkit/QtVersion.h"
#include "routerinterface/QtSupport.h"

#include <QtCore/QMetaType>
#include <QtCore/QVariant>

using namespace testing_support;
using MODELKIT::Failure;
using MODELKIT::Place;

namespace {

template <class R>
class EveryRecordMetatype : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordMetatype, AllRecords, RecordName);

} // namespace

TYPED_TEST(EveryRecordMetatype, IsFoundByItsNameOnceItIsRegistered)
{
    RegisterRecordMetatypes();
    RegisterRecordMetatypes();
    const QByteArray name = "PELLU300ROUTERINTERFACEXML::" + TypeParam().GetObjectName().toLatin1();
    EXPECT_EQ(MODELKIT::QtVersion::metatypeId(name.constData()), qMetaTypeId<TypeParam>());
}

TYPED_TEST(EveryRecordMetatype, AVariantHoldsARecord)
{
    const QVariant variant = QVariant::fromValue(TypeParam());
    EXPECT_TRUE(variant.canConvert<TypeParam>());
    EXPECT_TRUE(variant.value<TypeParam>() == TypeParam());
}

TEST(Metatypes, AVariantHasACopyWithAllContent)
{
    PelLu300RouterMessage sent = message(7);
    const QVariant variant = QVariant::fromValue(sent);
    sent.Reset();
    EXPECT_TRUE(variant.value<PelLu300RouterMessage>() == message(7));
}

TEST(Metatypes, PlacesAndFailuresAreTypesToo)
{
    RegisterRecordMetatypes();
    EXPECT_EQ(MODELKIT::QtVersion::metatypeId("MODELKIT::Place"), qMetaTypeId<Place>());
    EXPECT_EQ(MODELKIT::QtVersion::metatypeId("MODELKIT::Failure"), qMetaTypeId<Failure>());
    Failure failure;
    failure.kind = Failure::Refused;
    failure.place.line = 7;
    const QVariant variant = QVariant::fromValue(failure);
    EXPECT_EQ(variant.value<Failure>().kind, Failure::Refused);
    EXPECT_EQ(QVariant::fromValue(failure.place).value<Place>().line, 7);
}
