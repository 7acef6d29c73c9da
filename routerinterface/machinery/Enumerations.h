// Enumerated members: between value, name and display text.
#pragma once

#include "routerinterface/NameTables.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

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

// The enumerator of that name, compared exactly; otherwise invalid.
template <class E>
E enumeratorOf(const QString& name, E invalid)
{
    const auto position = NamesOf(E()).indexOf(name);
    return position < 0 ? invalid : static_cast<E>(position);
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
