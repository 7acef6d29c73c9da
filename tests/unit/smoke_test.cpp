#include "TestSupport.h"
using namespace testing_support;
template <class R> class EveryRecord : public ::testing::Test {};
TYPED_TEST_SUITE(EveryRecord, AllRecords);
TYPED_TEST(EveryRecord, NewIsEmpty) { TypeParam r; EXPECT_FALSE(r.IsInitialized()); EXPECT_EQ(frameOf(r).size() >= 4, true); }
