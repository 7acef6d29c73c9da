// SPDX-License-Identifier: MIT
// Numbers as text, for the common cases; callers leave the others to Qt. The results are the same as Qt's.
#pragma once

#include <QtCore/QChar>
#include <QtCore/QLatin1String>
#include <QtCore/QString>

#include <cmath>
#include <cstdint>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Room for what the writing functions write.
constexpr int maximalNumberSize = 24;

// Writes the decimal digits and returns their number.
template <class Char>
int writeDigits(std::uint64_t value, Char* to)
{
    char digits[maximalNumberSize];
    int count = 0;
    do {
        digits[count++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (int i = 0; i < count; ++i)
        to[i] = Char(digits[count - 1 - i]);
    return count;
}

// Writes the value with two decimals, rounded half up as QString::number(value, 'f', 2) rounds, and
// returns the number of characters; 0 for values that are left to Qt.
//
// Between 2^-5 and 2^53 everything is exact: the value has no bit below 2^-57, so the fraction is an
// integer in units of that, and a hundred times the fraction still fits into 64 bits.
template <class Char>
int writeTwoDecimals(double value, Char* to)
{
    const double size = std::fabs(value);
    if (!(size >= 0.03125 && size < 9007199254740992.0))
        return 0;
    auto whole = static_cast<std::uint64_t>(size);
    constexpr std::uint64_t unit = std::uint64_t(1) << 57;
    const auto fraction =
        static_cast<std::uint64_t>((size - static_cast<double>(whole)) * static_cast<double>(unit));
    std::uint64_t hundredths = (fraction * 100 + unit / 2) / unit;
    if (hundredths == 100) {
        hundredths = 0;
        ++whole;
    }
    int count = 0;
    if (value < 0)
        to[count++] = Char('-');
    count += writeDigits(whole, to + count);
    to[count++] = Char('.');
    to[count++] = Char(static_cast<char>('0' + hundredths / 10));
    to[count++] = Char(static_cast<char>('0' + hundredths % 10));
    return count;
}

// Reads up to nine digits with an optional sign; false for every other text.
template <class Characters>
bool readInteger(const Characters& text, int& value)
{
    const int size = text.size();
    int at = 0;
    const bool negative = size > 0 && text[0] == '-';
    if (negative)
        ++at;
    if (at == size || size - at > 9)
        return false;
    int number = 0;
    for (; at < size; ++at) {
        const unsigned int digit = text[at] - unsigned('0');
        if (digit > 9)
            return false;
        number = number * 10 + static_cast<int>(digit);
    }
    value = negative ? -number : number;
    return true;
}

// Reads digits with an optional sign and decimals, up to 15 digits in all; false for every other text.
// Numerator and denominator are exact, so the quotient is the double that is nearest to the text.
template <class Characters>
bool readDecimal(const Characters& text, double& value)
{
    static constexpr double powers[] = {1,   1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const int size = text.size();
    int at = 0;
    const bool negative = size > 0 && text[0] == '-';
    if (negative)
        ++at;
    std::uint64_t digits = 0;
    int wholeDigits = 0;
    int decimals = 0;
    bool point = false;
    for (; at < size; ++at) {
        const unsigned int character = text[at];
        const unsigned int digit = character - unsigned('0');
        if (digit <= 9) {
            digits = digits * 10 + digit;
            ++(point ? decimals : wholeDigits);
            if (wholeDigits + decimals > 15)
                return false;
        } else if (character == '.' && !point) {
            point = true;
        } else {
            return false;
        }
    }
    if (wholeDigits == 0 || (point && decimals == 0))
        return false;
    const double magnitude = static_cast<double>(digits) / powers[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}

// The value of a decimal number as text: the same for "-0012.50", "-12.5" and "-1.25e1". A zero has no
// sign.
inline QString numberWithoutSpelling(const QString& number)
{
    QString digits;
    bool negative = false;
    bool point = false;
    int exponent = 0;
    for (int i = 0; i < static_cast<int>(number.size()); ++i) {
        const QChar character = number.at(i);
        if (character == QLatin1Char('-')) {
            negative = true;
        } else if (character == QLatin1Char('.')) {
            point = true;
        } else if (character == QLatin1Char('e') || character == QLatin1Char('E')) {
            exponent += number.mid(i + 1).toInt();
            break;
        } else if (character >= QLatin1Char('0') && character <= QLatin1Char('9')) {
            if (!digits.isEmpty() || character != QLatin1Char('0'))
                digits += character;
            if (point)
                --exponent;
        }
    }
    if (digits.isEmpty())
        return QStringLiteral("0");
    while (digits.endsWith(QLatin1Char('0'))) {
        digits.chop(1);
        ++exponent;
    }
    return (negative ? QLatin1String("-") : QLatin1String("")) + digits + QLatin1Char('e')
           + QString::number(exponent);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
