// SPDX-License-Identifier: MIT
/// \file
/// The enumerators of the dialect by static functions, as `QMetaEnum` gives those of Qt: no record is needed.
#pragma once

#include "routerinterface/Fragment.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/PelLu300RouterMessage.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <optional>
#include <type_traits>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {

/// \cond
namespace machinery {

template <class E, class = void>
struct HasNames : std::false_type
{
};
template <class E>
struct HasNames<E,
                std::enable_if_t<std::is_enum_v<E> && !std::is_void_v<decltype(NamesOf(std::declval<E>()))>>>
    : std::true_type
{
};

} // namespace machinery
/// \endcond

/// The enumerators of `PelLu300RouterMessage::Type`, `MastershipState::State` or `Fragment::ChoiceFragment`.
///
/// \code
/// const auto type = Enumerators<PelLu300RouterMessage::Type>::ValueOf("Reply");
/// \endcode
template <class E>
class Enumerators
{
    static_assert(machinery::HasNames<E>::value, "this is no enumeration of the dialect");

public:
    /// The names in the order of the values.
    static QStringList GetNames() { return NamesOf(E()); }

    /// The values in their order.
    static QVector<E> GetValues()
    {
        QVector<E> values;
        const int count = Count();
        values.reserve(count);
        for (int value = 0; value < count; ++value)
            values.append(static_cast<E>(value));
        return values;
    }

    /// Whether the value is an enumerator. While validation is off, a member may hold any other number.
    static bool Contains(E value)
    {
        return static_cast<int>(value) >= 0 && static_cast<int>(value) < Count();
    }

    /// The name of the value; a null string when it is no enumerator.
    static QString NameOf(E value)
    {
        return Contains(value) ? NamesOf(E()).at(static_cast<int>(value)) : QString();
    }

    /// The enumerator of that name; none when there is none. Case counts.
    static std::optional<E> ValueOf(const QString& name)
    {
        const auto index = NamesOf(E()).indexOf(name);
        return index < 0 ? std::nullopt : std::make_optional(static_cast<E>(index));
    }

private:
    static int Count() { return static_cast<int>(NamesOf(E()).size()); }
};

} // namespace PELLU300ROUTERINTERFACEXML
