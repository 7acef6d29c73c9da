// SPDX-License-Identifier: MIT
// Defines NamesOf() for an enumeration: the names of its enumerators, in value order.
//
// A source names the class around the enumeration, the enumeration and its enumerators, and includes this
// file in the namespace of the class:
//
//     #define SCOPE MastershipState
//     #define ENUMERATION State
//     #define ENUMERATORS(ROW) ROW(NoMasterPresent) ROW(MasterPresent) ROW(RouterIsMaster)
//     #include "routerinterface/machinery/DefineNames.h"
//
// For a choice, DefineRecord.h does this with the rows of the record. At the end, all macros that this file
// makes or was given are undefined, except CHOICE.

#ifdef CHOICE
    #define ROUTERINTERFACE_ENUMERATOR(Kind, Type, Name, field, tag) Name
#else
    #define ROUTERINTERFACE_ENUMERATOR(Name) Name
#endif

#define ROUTERINTERFACE_POSITION(...) ROUTERINTERFACE_POSITION_OF(ROUTERINTERFACE_ENUMERATOR(__VA_ARGS__))
#define ROUTERINTERFACE_POSITION_OF(Name) ROUTERINTERFACE_POSITION_NAMED(Name)
#define ROUTERINTERFACE_POSITION_NAMED(Name) position##Name,

#define ROUTERINTERFACE_CASE(...) ROUTERINTERFACE_CASE_OF(ROUTERINTERFACE_ENUMERATOR(__VA_ARGS__))
#define ROUTERINTERFACE_CASE_OF(Name) ROUTERINTERFACE_CASE_NAMED(Name)
#define ROUTERINTERFACE_CASE_NAMED(Name)                                                 \
    case SCOPE::Name:                                                                    \
        static_assert(static_cast<int>(SCOPE::Name) == static_cast<int>(position##Name), \
                      "the enumerator " #Name " must be the number of its row");         \
        return true;

#define ROUTERINTERFACE_STRING(...) ROUTERINTERFACE_STRING_OF(ROUTERINTERFACE_ENUMERATOR(__VA_ARGS__))
#define ROUTERINTERFACE_STRING_OF(Name) ROUTERINTERFACE_STRING_NAMED(Name)
#define ROUTERINTERFACE_STRING_NAMED(Name) QStringLiteral(#Name),

// Compilers warn of a switch that leaves out an enumerator: that is how one without a row is found.
[[maybe_unused]] static constexpr bool hasName(SCOPE::ENUMERATION value)
{
    enum Position : int
    {
        ENUMERATORS(ROUTERINTERFACE_POSITION)
    };
    switch (value) {
        ENUMERATORS(ROUTERINTERFACE_CASE)
    }
    return false;
}

// A static list inside the function also exists for static objects of a program that are constructed before
// those of this library.
const QStringList& NamesOf(SCOPE::ENUMERATION)
{
    static const QStringList names{ENUMERATORS(ROUTERINTERFACE_STRING)};
    return names;
}

// The same names for debuggers, which find them in a library without debug information:
// NamesOfClassEnumeration. A null byte ends each, and another one ends the list.
#define ROUTERINTERFACE_NAMES ROUTERINTERFACE_NAMES_OF(SCOPE, ENUMERATION)
#define ROUTERINTERFACE_NAMES_OF(Scope, Enumeration) ROUTERINTERFACE_NAMES_IN(Scope, Enumeration)
#define ROUTERINTERFACE_NAMES_IN(Scope, Enumeration) NamesOf##Scope##Enumeration
#define ROUTERINTERFACE_BYTES(...) ROUTERINTERFACE_BYTES_OF(ROUTERINTERFACE_ENUMERATOR(__VA_ARGS__))
#define ROUTERINTERFACE_BYTES_OF(Name) ROUTERINTERFACE_BYTES_NAMED(Name)
#define ROUTERINTERFACE_BYTES_NAMED(Name) #Name "\0"
extern ROUTERINTERFACE_EXPORT const char ROUTERINTERFACE_NAMES[];
const char ROUTERINTERFACE_NAMES[] = ENUMERATORS(ROUTERINTERFACE_BYTES);

#undef ROUTERINTERFACE_NAMES
#undef ROUTERINTERFACE_NAMES_OF
#undef ROUTERINTERFACE_NAMES_IN
#undef ROUTERINTERFACE_BYTES
#undef ROUTERINTERFACE_BYTES_OF
#undef ROUTERINTERFACE_BYTES_NAMED
#undef ROUTERINTERFACE_ENUMERATOR
#undef ROUTERINTERFACE_POSITION
#undef ROUTERINTERFACE_POSITION_OF
#undef ROUTERINTERFACE_POSITION_NAMED
#undef ROUTERINTERFACE_CASE
#undef ROUTERINTERFACE_CASE_OF
#undef ROUTERINTERFACE_CASE_NAMED
#undef ROUTERINTERFACE_STRING
#undef ROUTERINTERFACE_STRING_OF
#undef ROUTERINTERFACE_STRING_NAMED
#undef SCOPE
#undef ENUMERATION
#undef ENUMERATORS
