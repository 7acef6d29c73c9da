// The text forms of values, which the XML form and most payloads of the binary form share, and what
// is noticed when reading them.
#pragma once

#include "modelkit/DocumentContext.h"
#include "modelkit/Quoted.h"
#include "routerinterface/machinery/Numbers.h"
#include "routerinterface/machinery/Rules.h"

#include <QtCore/QString>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// --- writing --------------------------------------------------------------------------------

inline QString toText(unsigned int value) { return QString::number(value); }
inline QString toText(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

// Two decimals, rounded; part of the dialect.
inline QString toText(double value)
{
    QChar text[maximalNumberSize];
    const int size = writeTwoDecimals(value, text);
    return size > 0 ? QString(text, size) : QString::number(value, 'f', 2);
}

template <class T>
QString textOf(const Value<T>& slot)
{
    return toText(slot.value);
}

template <class T>
QString textOf(const Text<T>& slot)
{
    return slot.value;
}

template <class E>
QString textOf(const Enumerated<E>& slot)
{
    return nameOf(slot.value);
}

// --- reading --------------------------------------------------------------------------------

// What reading accepts in silence is noticed only when somebody asks for a report. The functions below
// get an object that is true in that case and can then be called with the kind and the text.
using Notice = MODELKIT::ReadingReport::Kind;

using MODELKIT::quoted;

inline QString repeatedText(const QString& member)
{
    return QStringLiteral("%1 came before; the last one counts.").arg(member);
}

// Reading is lenient: what is no number becomes 0. Numbers are read as signed ones, so that those
// above 2147483647 become 0 and -1 becomes 4294967295; part of the dialect.
template <class Member, class R, class Characters, class Notify>
unsigned int fromText(const R&, const Value<unsigned int>&, const Characters& text, const Notify& notify)
{
    bool converted = true;
    int value = 0;
    if (!readInteger(text, value))
        value = text.toString().toInt(&converted);
    if (notify && !converted)
        notify(Notice::NotANumber,
               QStringLiteral("%1 is no whole number up to 2147483647 and was taken for 0.")
                   .arg(quoted(text.toString())));
    if (notify && value < 0)
        notify(Notice::WrappedNumber,
               QStringLiteral("%1 was taken for %2.").arg(value).arg(static_cast<unsigned int>(value)));
    return static_cast<unsigned int>(value);
}

template <class Member, class R, class Characters, class Notify>
double fromText(const R&, const Value<double>&, const Characters& text, const Notify& notify)
{
    bool converted = true;
    double value = 0;
    if (!readDecimal(text, value))
        value = text.toString().toDouble(&converted);
    if (notify && !converted)
        notify(Notice::NotANumber, QStringLiteral("%1 is no number and was taken for %2.")
                                       .arg(quoted(text.toString()), toText(value)));
    else if (notify && !std::isnan(value) && toText(value).toDouble() != value)
        notify(Notice::LostDecimals, QStringLiteral("%1 has more than the two decimals that are written.")
                                         .arg(quoted(text.toString())));
    return value;
}

template <class Member, class R, class Characters, class Notify>
bool fromText(const R& record, const Value<bool>&, const Characters& text, const Notify& notify)
{
    if (text.size() == 0 && record.GetValidate())
        throw InvalidXmlException(emptyBooleanText(record, Member::nameText()));
    const bool value = text.size() != 0 && !isWord(text, "false") && !isWord(text, "0");
    if (notify && (text.size() == 0 || (value && !isWord(text, "true") && !isWord(text, "1"))))
        notify(Notice::UnusualBoolean,
               QStringLiteral("%1 was taken for %2.").arg(quoted(text.toString()), toText(value)));
    return value;
}

template <class Member, class R, class T, class Characters, class Notify>
T fromText(const R&, const Text<T>&, const Characters& text, const Notify&)
{
    return text.toString();
}

template <class Member, class R, class E, class Characters, class Notify>
E fromText(const R&, const Enumerated<E>& slot, const Characters& text, const Notify&)
{
    return enumeratorOf(text, slot.invalid);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
