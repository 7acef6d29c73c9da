// SPDX-License-Identifier: MIT
#include "routerinterface/machinery/Variants.h"

#include "modelkit/ClosestName.h"
#include "modelkit/Exceptions.h"
#include "modelkit/Quoted.h"
#include "routerinterface/machinery/Characters.h"
#include "routerinterface/machinery/TextForms.h"

#include <QtCore/QByteArray>
#include <QtCore/QMetaType>

#include <algorithm>
#include <cmath>
#include <limits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

namespace {

// The whole number in a QVariant, if it holds one.
std::optional<qint64> wholeNumberIn(const QVariant& variant)
{
    // A null QVariant of a number type would convert to 0.
    if (variant.isNull())
        return std::nullopt;
    const int type = variant.userType();
    switch (type) {
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return variant.toLongLong();
    case QMetaType::ULong:
    case QMetaType::ULongLong: {
        const quint64 number = variant.toULongLong();
        if (number > static_cast<quint64>(std::numeric_limits<qint64>::max()))
            return std::nullopt;
        return static_cast<qint64>(number);
    }
    case QMetaType::Float:
    case QMetaType::Double: {
        constexpr double beyond = 9223372036854775808.0;
        const double number = variant.toDouble();
        if (!(std::fabs(number) < beyond) || number != std::trunc(number))
            return std::nullopt;
        return static_cast<qint64>(number);
    }
    default:
        break;
    }
    // Qt does not know whether an enumeration is signed, and treats all as signed.
    bool isConverted = false;
    const qint64 number =
        QMetaType(type).flags() & QMetaType::IsEnumeration ? variant.toLongLong(&isConverted) : 0;
    return isConverted && number >= 0 ? std::make_optional(number) : std::nullopt;
}

template <class T>
std::optional<T> narrowed(const std::optional<qint64>& number)
{
    if (!number || *number < std::numeric_limits<T>::min() || *number > std::numeric_limits<T>::max())
        return std::nullopt;
    return static_cast<T>(*number);
}

bool isDigit(QChar character) { return character >= QLatin1Char('0') && character <= QLatin1Char('9'); }

QString expectationOf(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return QStringLiteral("a whole number from 0 to 4294967295");
    case MemberInfo::Decimal:
        return QStringLiteral("a number");
    case MemberInfo::Boolean:
        return QStringLiteral("true or false");
    case MemberInfo::Text:
        return QStringLiteral("a text");
    case MemberInfo::Enumeration:
        return QStringLiteral("one of ") + member.GetNames().join(QStringLiteral(", "));
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return QString();
}

} // namespace

std::optional<QString> textIn(const QVariant& variant)
{
    if (variant.userType() == QMetaType::QString)
        return variant.toString();
    if (variant.userType() != QMetaType::QByteArray)
        return std::nullopt;
    const QByteArray bytes = variant.toByteArray();
    if (bytes.isNull())
        return QString();
    const QString text = Utf8Text(bytes.constData(), static_cast<int>(bytes.size())).toString();
    // Invalid UTF-8 would be replaced.
    if (text.toUtf8() != bytes)
        return std::nullopt;
    return text;
}

std::optional<unsigned int> unsignedIn(const QVariant& variant)
{
    const auto text = textIn(variant);
    if (!text)
        return narrowed<unsigned int>(wholeNumberIn(variant));
    bool isConverted = false;
    const unsigned int number = text->toUInt(&isConverted);
    if (!isConverted || !std::all_of(text->begin(), text->end(), isDigit))
        return std::nullopt;
    return number;
}

std::optional<double> decimalIn(const QVariant& variant)
{
    if (const auto text = textIn(variant)) {
        bool isConverted = false;
        const double number = text->toDouble(&isConverted);
        // Qt would ignore white space around a number.
        return isConverted && text->trimmed() == *text ? std::make_optional(number) : std::nullopt;
    }
    if (!variant.isNull()
        && (variant.userType() == QMetaType::Double || variant.userType() == QMetaType::Float))
        return variant.toDouble();
    const auto whole = wholeNumberIn(variant);
    constexpr qint64 largest = qint64(1) << std::numeric_limits<double>::digits;
    if (!whole || *whole > largest || *whole < -largest)
        return std::nullopt;
    return static_cast<double>(*whole);
}

std::optional<bool> booleanIn(const QVariant& variant)
{
    if (const auto text = textIn(variant)) {
        if (*text == QLatin1String("true") || *text == QLatin1String("1"))
            return true;
        if (*text == QLatin1String("false") || *text == QLatin1String("0"))
            return false;
        return std::nullopt;
    }
    if (variant.userType() == QMetaType::Bool && !variant.isNull())
        return variant.toBool();
    const auto whole = wholeNumberIn(variant);
    if (!whole || (*whole != 0 && *whole != 1))
        return std::nullopt;
    return *whole == 1;
}

std::optional<int> enumeratorIn(const QVariant& variant, const QStringList& names)
{
    const auto text = textIn(variant);
    if (!text)
        return narrowed<int>(wholeNumberIn(variant));
    const auto number = names.indexOf(*text);
    return number < 0 ? std::nullopt : std::make_optional(static_cast<int>(number));
}

namespace {

// The text of a QVariant of any type; null if it has none.
QString shownText(const QVariant& variant)
{
    if (const auto text = textIn(variant))
        return *text;
    // A null QVariant of a number type would become "0".
    return variant.isNull() ? QString() : variant.toString();
}

} // namespace

void refuseVariant(const QString& recordName, const MemberInfo& member, const QVariant& variant)
{
    const QString text = shownText(variant);
    QString given = MODELKIT::abbreviatedInQuotes(text);
    if (!variant.isValid())
        given = QStringLiteral("An invalid QVariant");
    else if (text.isNull())
        given = QStringLiteral("A QVariant of type %1 without text").arg(QLatin1String(variant.typeName()));
    throw OutOfRangeException(QStringLiteral("%1: %2 is no value of %3, which must be %4.")
                                  .arg(recordName, given, member.GetName(), expectationOf(member)),
                              text, MODELKIT::ClosestName(text, member.GetNames()));
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
