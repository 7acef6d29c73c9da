// SPDX-License-Identifier: MIT
#include "documents/JsonNumber.h"

#include "documents/Text.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ROUTERDOCUMENTS {

namespace {

// A number is its digits, without zeros at both ends, times a power of ten. Zero has no digits.
struct Digits
{
    bool isNegative = false;
    QByteArray digits;
    qint64 exponent = 0;
};

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr char nameOfNan[] = "NaN";
constexpr char nameOfInfinity[] = "Infinity";
constexpr char nameOfNegativeInfinity[] = "-Infinity";

// Longer exponents are as good as this one.
constexpr qint64 hugeExponent = 1'000'000'000'000;

qint64 exponentOf(const QByteArray& text)
{
    bool isKnown = false;
    const qint64 exponent = text.toLongLong(&isKnown);
    const qint64 otherwise = text.startsWith('-') ? -hugeExponent : hugeExponent;
    return isKnown ? std::clamp(exponent, -hugeExponent, hugeExponent) : otherwise;
}

Digits digitsOf(const QByteArray& number)
{
    Digits result;
    result.isNegative = number.startsWith('-');
    const auto mark = std::find_if(number.begin(), number.end(), [](char c) { return c == 'e' || c == 'E'; });
    if (mark != number.end())
        result.exponent = exponentOf(number.mid(static_cast<int>(mark - number.begin()) + 1));
    bool isFraction = false;
    for (auto at = number.begin() + (result.isNegative ? 1 : 0); at != mark; ++at) {
        if (*at == '.') {
            isFraction = true;
            continue;
        }
        if (isFraction)
            --result.exponent;
        if (*at != '0' || !result.digits.isEmpty())
            result.digits += *at;
    }
    while (result.digits.endsWith('0')) {
        result.digits.chop(1);
        ++result.exponent;
    }
    return result;
}

} // namespace

std::optional<unsigned int> unsignedOf(const QByteArray& number)
{
    constexpr int mostDigits = std::numeric_limits<unsigned int>::digits10 + 1;
    const Digits parts = digitsOf(number);
    if (parts.digits.isEmpty())
        return 0U;
    if (parts.isNegative || parts.exponent < 0 || parts.digits.size() + parts.exponent > mostDigits)
        return std::nullopt;
    quint64 value = parts.digits.toULongLong();
    for (qint64 i = 0; i < parts.exponent; ++i)
        value *= 10;
    if (value > std::numeric_limits<unsigned int>::max())
        return std::nullopt;
    return static_cast<unsigned int>(value);
}

JsonDecimal decimalOf(const QByteArray& number)
{
    // Every number with so few digits, and not too small, has a decimal of its own. No exponent is usual.
    constexpr int fewDigits = std::numeric_limits<double>::digits10;
    // More digits than this are not compared: nobody writes the decimals between two doubles.
    constexpr int comparedDigits = 100;
    bool isRead = false;
    double value = number.toDouble(&isRead);
    if (number.size() <= fewDigits && !number.contains('e') && !number.contains('E'))
        return {value, true};
    const Digits parts = digitsOf(number);
    if (!isRead)
        value = parts.exponent + parts.digits.size() > 0 ? infinity : 0.0;
    if (!isRead && parts.isNegative)
        value = -value;
    if (!std::isfinite(value) || parts.digits.size() > comparedDigits)
        return {value, false};
    if (parts.digits.isEmpty())
        return {value, true};
    const Digits kept = digitsOf(QByteArray::number(value, 'e', static_cast<int>(parts.digits.size()) - 1));
    return {value, kept.digits == parts.digits && kept.exponent == parts.exponent};
}

const char* nameOf(double value)
{
    if (std::isnan(value))
        return nameOfNan;
    if (std::isinf(value))
        return value > 0 ? nameOfInfinity : nameOfNegativeInfinity;
    return nullptr;
}

QByteArray jsonOf(double value)
{
    if (const char* name = nameOf(value))
        return QByteArray("\"") + name + '"';
    if (value == 0 && std::signbit(value))
        return "-0.0";
    return Exactly(value).toLatin1();
}

std::optional<double> decimalNamed(const QString& name)
{
    if (name == QLatin1String(nameOfNan))
        return std::numeric_limits<double>::quiet_NaN();
    if (name == QLatin1String(nameOfInfinity))
        return infinity;
    if (name == QLatin1String(nameOfNegativeInfinity))
        return -infinity;
    return std::nullopt;
}

} // namespace ROUTERDOCUMENTS
