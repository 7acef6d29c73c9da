// SPDX-License-Identifier: MIT
// What the value of a member must fulfil, and the texts of all exceptions about it.
#pragma once

#include "modelkit/ClosestName.h"
#include "modelkit/Exceptions.h"
#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/Enumerations.h"
#include "routerinterface/machinery/MemberTable.h"
#include "routerinterface/machinery/Walks.h"

#include <QtCore/QChar>
#include <QtCore/QString>

#include <algorithm>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

inline QString fill(const QString& text, const QString& value)
{
    return text.arg(value, 0, QLatin1Char(' '));
}

template <class R>
QString setProperlyText(const R& record, const QString& member)
{
    return record.GetObjectName() + fill(QStringLiteral(": Please set %1 properly."), member);
}

inline QString notAnEnumeratorText(const QString& className, const QString& field)
{
    return fill(fill(QStringLiteral("enum is not valid (classname=%1,membername=%2)"), className), field);
}

template <class R>
QString incompleteChoiceText(const R& record, const QString& field)
{
    return record.GetObjectName()
           + fill(QStringLiteral(":Check failed. The mandatory member %1 is not set or mandatory data of the "
                                 "member is not set."),
                  field);
}

template <class R>
QString incompleteItemText(const R& record, const QString& list)
{
    return record.GetObjectName()
           + fill(QStringLiteral(": Tried to append not completely defined or invalid item %1."), list);
}

template <class R>
QString invalidChoiceText(const R& record)
{
    return fill(QStringLiteral("Invalid enum value set in '%1'."), record.GetObjectName());
}

template <class R>
QString emptyBooleanText(const R& record, const QString& member)
{
    return fill(fill(QStringLiteral("Please set a value or a default for the boolean '%1' in '%2'."), member),
                record.GetObjectName());
}

template <class R>
QString lengthErrorText(const R& record)
{
    return record.GetObjectName()
           + QStringLiteral(
               "::SetBinary(...): Length error occurred during processing of binary representation");
}

// Puts a step in front of the exception's path. Offset: where the member or record stands in a binary form
// that is read; it counts if nothing inside is known.
inline void prependStep(ModelKitException& exception, const QString& step, qint64 offset = -1)
{
    MODELKIT::Place place = exception.GetPlace();
    if (place.offset < 0)
        place.offset = offset;
    place.path.prepend(QLatin1Char('/') + step);
    exception.SetPlace(place);
}

// Runs the action for a member or record. If it throws, the exception's place gets the name step().
template <class Step, class Action>
void doAt(const Step& step, const Action& action)
{
    try {
        action();
    } catch (ModelKitException& exception) {
        prependStep(exception, step());
        throw;
    }
}

// Does that for every record in a slot. As in XML, the step is the name of the record.
template <class R, class Action>
void doAtRecords(const Nested<R>& nested, const Action& action)
{
    const R& record = nested.value();
    doAt([&record] { return record.GetObjectName(); }, [&] { action(record); });
}

template <class R, class Action>
void doAtRecords(const List<R>& list, const Action& action)
{
    auto item = list.value.cbegin();
    const auto step = [&] {
        const QString& name = item->GetObjectName();
        const auto isNamesake = [&name](const R& other) { return other.GetObjectName() == name; };
        return MODELKIT::Place::Step(name, std::count_if(list.value.cbegin(), item + 1, isNamesake));
    };
    doAt(step, [&] {
        for (; item != list.value.cend(); ++item)
            action(*item);
    });
}

// Throws for a value that is no enumerator of E. Given: the value as it was read or passed.
template <class E>
[[noreturn]] void refuseEnumerator(const QString& text, const QString& given)
{
    throw OutOfRangeException(text, given, MODELKIT::ClosestName(given, NamesOf(E())));
}

// Whether there are values that the kind of member does not accept while validation is on.
template <class Slot>
constexpr bool hasRule = IsText<Slot>::value || IsEnumerated<Slot>::value;

// Throws for a new value that the kind of member does not accept while validation is on. Given: makes the
// text of the value, for the exception.
template <class Member, class R, class T, class Given>
void requireAcceptable([[maybe_unused]] const R& record, [[maybe_unused]] const T& value,
                       [[maybe_unused]] const Given& given)
{
    using Slot = typename Member::Slot;
    if constexpr (IsText<Slot>::value) {
        if (!Slot::isValid(value))
            throw OutOfRangeException(setProperlyText(record, Member::nameText()));
    } else if constexpr (IsEnumerated<Slot>::value) {
        if (!isEnumerator(value))
            refuseEnumerator<T>(notAnEnumeratorText(DataOf<R>::nameText(), Member::fieldName()), given());
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
