// SPDX-License-Identifier: MIT
// Numbers in a JSON text. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

namespace ROUTERDOCUMENTS {

// The value of a number whose text is JSON, if it is a whole number from 0 to 4294967295 in any spelling:
// 7, 7.0, 70e-1 and -0 are. It is computed digit by digit, so none is taken for its neighbour.
std::optional<unsigned int> unsignedOf(const QByteArray& number);

// The decimal that is closest to a number whose text is JSON.
struct JsonDecimal
{
    // Infinite when the number is too large.
    double value;
    // Whether the decimal, written with as many digits, is the number again.
    bool isExact;
};
JsonDecimal decimalOf(const QByteArray& number);

// The string that stands for a decimal for which JSON has no number; null for the others.
const char* nameOf(double value);

// A decimal as JSON: the shortest number that gives it back with its sign, or one of the strings "NaN",
// "Infinity" and "-Infinity", for which JSON has no numbers.
QByteArray jsonOf(double value);

// The decimal for which such a string stands.
std::optional<double> decimalNamed(const QString& name);

} // namespace ROUTERDOCUMENTS
