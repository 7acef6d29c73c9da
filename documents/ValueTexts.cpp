// SPDX-License-Identifier: MIT
#include "documents/ValueTexts.h"

#include "documents/JsonNumber.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

#include <cmath>

namespace ROUTERDOCUMENTS {

using PELLU300ROUTERINTERFACEXML::MemberInfo;

namespace {

QVariant enumeratorOf(const MemberInfo& member, const QString& text)
{
    const auto value = member.GetNames().indexOf(text);
    return value < 0 ? QVariant() : QVariant(static_cast<int>(value));
}

QVariant booleanOf(const QString& text)
{
    if (text == QLatin1String("true"))
        return true;
    return text == QLatin1String("false") ? QVariant(false) : QVariant();
}

} // namespace

QVariant ValueFromText(const MemberInfo& member, const QString& text)
{
    bool isNumber = false;
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger: {
        const uint number = text.toUInt(&isNumber);
        return isNumber ? QVariant(number) : QVariant();
    }
    case MemberInfo::Decimal: {
        const double number = text.toDouble(&isNumber);
        return isNumber && std::isfinite(number) ? QVariant(number) : QVariant();
    }
    case MemberInfo::Boolean:
        return booleanOf(text);
    case MemberInfo::Text:
        return text;
    case MemberInfo::Enumeration:
        return enumeratorOf(member, text);
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return QVariant();
}

QString PossibleValues(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return QStringLiteral("a whole number from 0 to 4294967295");
    case MemberInfo::Decimal:
        return QStringLiteral("a number such as 98.5e6");
    case MemberInfo::Boolean:
        return QStringLiteral("true or false");
    case MemberInfo::Text:
        return QStringLiteral("a text");
    case MemberInfo::Enumeration:
        return QStringLiteral("one of ") + Listed(member.GetNames());
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return QString();
}

QStringList ListedValues(const MemberInfo& member)
{
    return member.GetKind() == MemberInfo::Boolean
               ? QStringList{QStringLiteral("true"), QStringLiteral("false")}
               : member.GetNames();
}

QString WrongValue(const MemberInfo& member, const QString& text)
{
    return QStringLiteral("%1 is no value of %2: it must be %3.%4")
        .arg(Quoted(Abbreviated(text)), member.GetName(), PossibleValues(member),
             DidYouMean(text, member.GetNames()));
}

bool IsKeptExactly(const QString& number)
{
    const QByteArray digits = number.trimmed().toLatin1();
    return decimalOf(digits.startsWith('+') ? digits.mid(1) : digits).isExact;
}

} // namespace ROUTERDOCUMENTS
