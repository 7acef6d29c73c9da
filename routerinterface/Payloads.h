// SPDX-License-Identifier: MIT
/// \file
/// The payload of a fragment by its type: visiting what is selected, and putting a payload in.
#pragma once

#include "routerinterface/Fragment.h"
#include "routerinterface/PelLu300RouterMessage.h"
#include "routerinterface/RecordList.h"

#include <QtCore/QString>

#include <type_traits>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {

/// What a visitor gets when a fragment has selected no payload.
struct NoPayload
{
};

/// Several functions as one, which calls the one that fits the argument best.
///
/// \code
/// const auto name = Overloaded{[](const DF_Params&) { return "tuning"; },
///                              [](const auto&) { return "other"; }};
/// \endcode
template <class... Functions>
struct Overloaded : Functions...
{
    using Functions::operator()...;
};
/// \cond
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

namespace machinery {

template <class T>
struct Type
{
    using type = T;
};

// For every record that is a payload of F, which is Fragment: its choice, and access to it. A record that has
// no enumerator of its name in F is no payload.
#define ROUTERINTERFACE_PAYLOAD(Name)                                 \
    template <class F>                                                \
    constexpr auto choiceOf(Type<Name>, Type<F>)                      \
        ->std::integral_constant<typename F::ChoiceFragment, F::Name> \
    {                                                                 \
        return {};                                                    \
    }                                                                 \
    template <class F>                                                \
    auto& payloadOf(Type<Name>, F& fragment)                          \
    {                                                                 \
        return fragment.Get##Name();                                  \
    }                                                                 \
    template <class F>                                                \
    void setPayload(F& fragment, const Name& payload)                 \
    {                                                                 \
        fragment.Set##Name(payload);                                  \
    }
ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_PAYLOAD)
#undef ROUTERINTERFACE_PAYLOAD

template <class Record, class = void>
struct IsPayload : std::false_type
{
};
template <class Record>
struct IsPayload<Record, std::void_t<decltype(choiceOf(Type<Record>(), Type<Fragment>()))>> : std::true_type
{
};

// Whether T is a payload or derived from one.
#define ROUTERINTERFACE_OR_PAYLOAD(Name) , std::conjunction<IsPayload<Name>, std::is_base_of<Name, T>>
template <class T>
constexpr bool isPayload =
    std::disjunction_v<std::false_type ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_OR_PAYLOAD)>;
#undef ROUTERINTERFACE_OR_PAYLOAD

// A payload of F, which is Fragment or const Fragment, with its const.
template <class F, class Record>
using PayloadIn = std::conditional_t<std::is_const_v<F>, const Record, Record>;

// A function for all payloads, made of one for each of them.
template <class F, class Handler>
constexpr void requireFunctions()
{
    static_assert(std::is_invocable_v<Handler&, NoPayload>, "a function for NoPayload is missing");
#define ROUTERINTERFACE_REQUIRE(Name)                                                            \
    static_assert(!IsPayload<Name>::value || std::is_invocable_v<Handler&, PayloadIn<F, Name>&>, \
                  "a function for " #Name                                                        \
                  " is missing: Visit() passes a const reference, VisitToChange() one that is not");
    ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_REQUIRE)
#undef ROUTERINTERFACE_REQUIRE
}

template <class F, class Handler>
decltype(auto) visitPayload(F& fragment, Handler& handler)
{
    requireFunctions<F, Handler>();
    using Result = std::invoke_result_t<Handler&, NoPayload>;
    const Fragment::ChoiceFragment choice = std::as_const(fragment).GetChoiceFragment();
#define ROUTERINTERFACE_VISIT(Name)                                                                  \
    if constexpr (IsPayload<Name>::value) {                                                          \
        static_assert(std::is_same_v<std::invoke_result_t<Handler&, PayloadIn<F, Name>&>, Result>,   \
                      "the function for " #Name " must return the same type as that for NoPayload"); \
        if (choice == decltype(choiceOf(Type<Name>(), Type<std::remove_const_t<F>>()))::value)       \
            return static_cast<Result>(handler(payloadOf(Type<Name>(), fragment)));                  \
    }
    ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_VISIT)
#undef ROUTERINTERFACE_VISIT
    return static_cast<Result>(handler(NoPayload()));
}

} // namespace machinery
/// \endcond

/// Calls the \a function that fits the payload that is selected in \a fragment, whether it is set or not, or
/// else NoPayload, and returns what it returns. A program in which a payload has no function does not
/// compile. A function that takes `const auto&` fits all that have none of their own.
///
/// The functions get const references, also for a fragment that is not const, and nothing is marked as set.
/// Texts of a const record are read with TextOf(). The functions are copied, but a single one is called in
/// its place.
///
/// \code
/// Visit(fragment, [](const AcquireMastership& acquire) { answer(acquire); },
///       [](const auto&) { qInfo() << "nothing to do"; });
/// \endcode
template <class Function>
decltype(auto) Visit(const Fragment& fragment, Function&& function)
{
    return machinery::visitPayload(fragment, function);
}

/// The same for \a fragment with several functions: \a first, \a second and \a others.
template <class First, class Second, class... Others>
decltype(auto) Visit(const Fragment& fragment, First&& first, Second&& second, Others&&... others)
{
    Overloaded functions{std::forward<First>(first), std::forward<Second>(second),
                         std::forward<Others>(others)...};
    return machinery::visitPayload(fragment, functions);
}

/// Does the same with \a fragment, but the \a function gets references for changing the payload in place,
/// which marks it as set.
template <class Function>
decltype(auto) VisitToChange(Fragment& fragment, Function&& function)
{
    return machinery::visitPayload(fragment, function);
}

/// The same for \a fragment with several functions: \a first, \a second and \a others.
template <class First, class Second, class... Others>
decltype(auto) VisitToChange(Fragment& fragment, First&& first, Second&& second, Others&&... others)
{
    Overloaded functions{std::forward<First>(first), std::forward<Second>(second),
                         std::forward<Others>(others)...};
    return machinery::visitPayload(fragment, functions);
}

/// Reads a text of a const \a record with its \a getter. The getters of texts are not const, although they
/// change nothing.
///
/// \code
/// const QString address = TextOf(server, &PelVtConnectServer::GetAddress);
/// \endcode
template <class Record, class Owner>
QString TextOf(const Record& record, QString (Owner::*getter)())
{
    static_assert(machinery::isRecord<Owner>, "this is no getter of a record");
    static_assert(std::is_base_of_v<Owner, Record>, "this is no getter of that record");
    // What a getter changes in a record is mutable.
    return (const_cast<Record&>(record).*getter)();
}

/// Takes over the data of the \a payload, selects it in \a fragment and marks it as set, like the setter for
/// its type.
template <class Payload>
void SetPayload(Fragment& fragment, const Payload& payload)
{
    static_assert(machinery::isPayload<Payload>, "a fragment carries no such record");
    machinery::setPayload(fragment, payload);
}

/// Appends a fragment with the \a payload to \a message, which is unchanged when that throws.
template <class Payload>
void AppendPayload(PelLu300RouterMessage& message, const Payload& payload)
{
    Fragment fragment;
    SetPayload(fragment, payload);
    message.AppendFragment(fragment);
}

/// Appends a fragment with an empty payload of that type, which is selected and marked as set.
/// \returns the payload, valid until the list changes.
///
/// \code
/// AddPayload<DF_Params>(message).SetFrequency(98.5e6);
/// \endcode
template <class Payload>
Payload& AddPayload(PelLu300RouterMessage& message)
{
    static_assert(machinery::IsPayload<Payload>::value, "a fragment carries no such record");
    Fragment& fragment = message.AddFragment();
    try {
        return machinery::payloadOf(machinery::Type<Payload>(), fragment);
    } catch (...) {
        message.GetFragment().removeLast();
        throw;
    }
}

} // namespace PELLU300ROUTERINTERFACEXML
