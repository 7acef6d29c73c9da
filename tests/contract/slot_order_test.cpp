// SPDX-License-Identifier: MIT
// The order of the virtual operations, which programs that were built against an earlier library rely
// on. It is read from pointers to members, whose layout the C++ ABI of the platform fixes: for a virtual
// operation they hold its byte offset in the table of the class.

#include "TestSupport.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#if defined(__GXX_ABI_VERSION)

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;

// The parts of a pointer to a member function.
struct MemberPointer
{
    std::uintptr_t function;
    std::ptrdiff_t adjustment;
};

template <class Function>
MemberPointer read(Function function)
{
    static_assert(std::is_member_function_pointer_v<Function>);
    static_assert(sizeof(Function) == sizeof(MemberPointer));
    MemberPointer pointer{};
    std::memcpy(&pointer, &function, sizeof pointer);
    return pointer;
}

template <class Function>
bool isVirtual(Function function)
{
    #if defined(__arm__) || defined(__aarch64__)
    return (read(function).adjustment & 1) != 0;
    #else
    return (read(function).function & 1) != 0;
    #endif
}

// The number of the slot of an operation. The destructor has number 1 and takes the first two entries of the
// table. 0 means that the operation is not virtual, -1 that it belongs to another base.
template <class Function>
int slotOf(Function function)
{
    if (!isVirtual(function))
        return 0;
    #if defined(__arm__) || defined(__aarch64__)
    const std::ptrdiff_t adjustment = read(function).adjustment >> 1;
    const std::uintptr_t offset = read(function).function;
    #else
    const std::ptrdiff_t adjustment = read(function).adjustment;
    const std::uintptr_t offset = read(function).function - 1;
    #endif
    if (adjustment != 0 || offset % sizeof(void*) != 0)
        return -1;
    return static_cast<int>(offset / sizeof(void*));
}

struct Operation
{
    const char* name;
    int slot;
};

// Only a derived class can name the protected operations.
template <class Class>
struct Opened : Class
{
    static std::vector<Operation> operations();
    static bool isGetTextValueVirtual() { return isVirtual(&Opened::GetTextValue); }
};

    #define OPERATION(name)                      \
        {                                        \
            #name, slotOf(&Opened <Class>::name) \
        }
    #define OVERLOAD(name, Result, parameters)                                                    \
        {                                                                                         \
            #name #parameters,                                                                    \
                slotOf(static_cast <Result(Opened <Class>::*) parameters>(&Opened <Class>::name)) \
        }

// The operations in their order, without the destructor, which has no address.
template <class Class>
std::vector<Operation> Opened<Class>::operations()
{
    return {
        OPERATION(HasData),
        OPERATION(Reset),
        OVERLOAD(Check, void, (bool) const),
        OVERLOAD(Check, void, () const),
        OVERLOAD(IsValid, bool, (float) const),
        OVERLOAD(IsValid, bool, (bool) const),
        OVERLOAD(IsValid, bool, (unsigned int) const),
        OVERLOAD(IsValid, bool, (long long) const),
        OVERLOAD(IsValid, bool, (const QDateTime&) const),
        OVERLOAD(IsValid, bool, (const QString&) const),
        OVERLOAD(IsValid, bool, (double) const),
        OVERLOAD(IsValid, bool, (int) const),
        OVERLOAD(SetInvalid, void, (float&) const),
        OVERLOAD(SetInvalid, void, (unsigned int&) const),
        OVERLOAD(SetInvalid, void, (long long&) const),
        OVERLOAD(SetInvalid, void, (QString&) const),
        OVERLOAD(SetInvalid, void, (double&) const),
        OVERLOAD(SetInvalid, void, (int&) const),
        OPERATION(GetXml),
        OPERATION(GetBinary),
        OPERATION(SetBinary),
        OPERATION(SetXmlString),
        OVERLOAD(SetBinaryRepresentation, bool, (QByteArray&)),
        OVERLOAD(SetBinaryRepresentation, bool, (QDataStream&)),
        OPERATION(MergeMKObject),
        OPERATION(GetObjectType),
        OPERATION(GetObjectName),
        OPERATION(ProcessXml),
        OPERATION(GetXmlString),
        OPERATION(GetBinaryRepresentation),
        OPERATION(GetBinaryRepresentationAsQByteArray),
        OPERATION(GetCompressedBinaryRepresentation),
        OPERATION(GetCompressedBinaryRepresentationAsQByteArray),
        OVERLOAD(LoadXml, bool, (const QString&)),
        OVERLOAD(LoadXml, bool, (QFile*)),
        OVERLOAD(LoadBinary, bool, (QFile*)),
        OPERATION(SaveXml),
        OPERATION(SetValidate),
        OPERATION(GetValidate),
        OPERATION(SetLogger),
        OPERATION(ResetLogger),
        OPERATION(GetVersion),
        OPERATION(SetObjectType),
        OPERATION(SetObjectName),
        OPERATION(ProcessXmlStartElement),
    };
}

// The new virtual operation takes the first slot after those of the class.
template <class Class>
struct Extended : Class
{
    virtual void Added() {}
};

template <class Class>
class SlotOrder : public ::testing::Test
{
};

template <class... Records>
::testing::Types<IMKObject, Records...> withTheBase(::testing::Types<Records...>);
using BaseAndRecords = decltype(withTheBase(AllRecords()));
TYPED_TEST_SUITE(SlotOrder, BaseAndRecords, );

TYPED_TEST(SlotOrder, EachOperationHasItsSlot)
{
    int expected = 2;
    for (const Operation& operation : Opened<TypeParam>::operations())
        EXPECT_EQ(operation.slot, expected++) << operation.name;
}

// The destructor takes two entries of the table, and exactly two are in front of the second operation.
TYPED_TEST(SlotOrder, TheDestructorIsTheFirstOfFortySixOperations)
{
    EXPECT_TRUE(std::has_virtual_destructor_v<TypeParam>);
    EXPECT_EQ(Opened<TypeParam>::operations().size(), 45U);
    EXPECT_EQ(Opened<TypeParam>::operations().front().slot, 2);
    EXPECT_EQ(Opened<TypeParam>::operations().back().slot, 46);
}

TYPED_TEST(SlotOrder, NoVirtualOperationFollowsTheFortySixth)
{
    EXPECT_EQ(slotOf(&Extended<TypeParam>::Added), 47);
}

TYPED_TEST(SlotOrder, TheServicesForDerivedClassesAreNotVirtual)
{
    EXPECT_FALSE(isVirtual(&TypeParam::GetLogger));
    EXPECT_FALSE(isVirtual(&TypeParam::skipCurrentElement));
    EXPECT_FALSE(Opened<TypeParam>::isGetTextValueVirtual());
}

} // namespace

#endif
