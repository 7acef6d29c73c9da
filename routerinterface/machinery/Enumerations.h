// SPDX-License-Identifier: MIT
// Enumerated members: between value, name and display text. The header of a record declares NamesOf() for
// each of its enumerations; it is found by the type of the argument.
#pragma once

#include "routerinterface/machinery/Characters.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Whether value is one of the enumerators; the values are the positions in the list of names.
template <class E>
bool isEnumerator(E value)
{
    return value >= 0 && value < NamesOf(E()).size();
}

// The enumerator's name; a null string for any other number.
template <class E>
QString nameOf(E value)
{
    return isEnumerator(value) ? NamesOf(E()).at(value) : QString();
}

// The text of an enumerator's number, for an exception about it; null for other types.
template <class T>
QString numberText([[maybe_unused]] const T& value)
{
    if constexpr (std::is_enum_v<T>)
        return QString::number(static_cast<int>(value));
    else
        return QString();
}

// The enumerator of that name, compared exactly; otherwise invalid.
template <class E, class Characters>
E enumeratorOf(const Characters& name, E invalid)
{
    const QStringList& names = NamesOf(E());
    for (int i = 0; i < static_cast<int>(names.size()); ++i)
        if (isName(name, names.at(i)))
            return static_cast<E>(i);
    return invalid;
}

template <class E>
E enumeratorOf(const QString& name, E invalid)
{
    return enumeratorOf(Utf16Text(name.constData(), name.size()), invalid);
}

// The names for display, looked up under the general context of QObject.
template <class E>
QStringList displayNames()
{
    QStringList translated;
    for (const QString& name : NamesOf(E()))
        translated.append(QObject::tr(name.toUtf8().constData()));
    return translated;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
