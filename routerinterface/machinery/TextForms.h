// SPDX-License-Identifier: MIT
// Values as text, as XML and most payloads of the binary form carry them, and what is noticed while reading
// them.
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

// What reading accepts silently is noticed only if somebody asks for a report. Notify is true in that case,
// and is then called with the kind and the text.
using Notice = MODELKIT::ReadingReport::Kind;

using MODELKIT::abbreviatedInQuotes;

// Notices if the written form of the value differs from the text from which it was read.
template <class Notify>
void noticeLostDigits(const QString& text, double value, const Notify& notify)
{
    const QString written = toText(value);
    if (!std::isfinite(value))
        notify(Notice::NotFinite, QStringLiteral("%1 is not a finite number; it was read as %2.")
                                      .arg(abbreviatedInQuotes(text), written));
    else if (written.toDouble() != value)
        notify(Notice::LostDecimals, QStringLiteral("%1 has more than the two decimals that are written.")
                                         .arg(abbreviatedInQuotes(text)));
    else if (numberWithoutSpelling(written) != numberWithoutSpelling(text))
        notify(Notice::LostDecimals, QStringLiteral("%1 cannot be kept exactly; it was read as %2.")
                                         .arg(abbreviatedInQuotes(text), written));
}

// Reading is lenient, as the dialect demands: a text that is no number becomes 0. Numbers are read as signed
// ones, so those above 2147483647 become 0 and -1 becomes 4294967295.
template <class Member, class R, class Characters, class Notify>
unsigned int fromText(const R&, const Value<unsigned int>&, const Characters& text, const Notify& notify)
{
    bool converted = true;
    int value = 0;
    if (!readInteger(text, value))
        value = text.toString().toInt(&converted);
    if (notify && !converted)
        notify(Notice::NotANumber,
               QStringLiteral("%1 is not a whole number up to 2147483647; it was read as 0.")
                   .arg(abbreviatedInQuotes(text.toString())));
    if (notify && value < 0)
        notify(Notice::WrappedNumber,
               QStringLiteral("%1 was read as %2.").arg(value).arg(static_cast<unsigned int>(value)));
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
        notify(Notice::NotANumber, QStringLiteral("%1 is not a number; it was read as %2.")
                                       .arg(abbreviatedInQuotes(text.toString()), toText(value)));
    else if (notify)
        noticeLostDigits(text.toString(), value, notify);
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
               QStringLiteral("%1 was read as %2.").arg(abbreviatedInQuotes(text.toString()), toText(value)));
    return value;
}

template <class Member, class R, class T, class Characters, class Notify>
T fromText(const R&, const Text<T>&, const Characters& text, const Notify& notify)
{
    if (notify && !text.isIntact())
        notify(Notice::ReplacedCharacters,
               QStringLiteral("In %1, bytes that are not valid UTF-8 were replaced.")
                   .arg(abbreviatedInQuotes(text.toString())));
    return text.toString();
}

template <class Member, class R, class E, class Characters, class Notify>
E fromText(const R& record, const Enumerated<E>& slot, const Characters& text, const Notify& notify)
{
    const E value = enumeratorOf(text, slot.invalid);
    // Under validation the setter refuses everything but an enumerator.
    if (notify && !isName(text, nameOf(value)) && (isEnumerator(value) || !record.GetValidate()))
        notify(Notice::UnknownName,
               QStringLiteral("%1 is not a value of %2; it was read as the invalid value.")
                   .arg(abbreviatedInQuotes(text.toString()), Member::nameText()));
    return value;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
