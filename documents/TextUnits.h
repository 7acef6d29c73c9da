// SPDX-License-Identifier: MIT
// The code units of a text, as far as markup is concerned. Not installed.
#pragma once

#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// How a text encodes ASCII characters: a unit has the size of 1, 2 or 4 bytes.
struct TextUnits
{
    int size = 1;
    bool isBigEndian = false;
};

// Stands for every character that is not ASCII.
constexpr unsigned char otherCharacter = 0x80;

// The character of a whole unit: its ASCII code, or otherCharacter.
inline unsigned char characterAt(const char* unit, TextUnits units)
{
    const int lowest = units.isBigEndian ? units.size - 1 : 0;
    for (int i = 0; i < units.size; ++i)
        if (i != lowest && unit[i] != 0)
            return otherCharacter;
    const auto code = static_cast<unsigned char>(unit[lowest]);
    return code < otherCharacter ? code : otherCharacter;
}

inline bool isWhite(int character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// Whether the byte may stand in a text whose encoding extends ASCII.
inline bool isTextByte(char byte) { return static_cast<unsigned char>(byte) >= ' ' || isWhite(byte); }

} // namespace ROUTERDOCUMENTS
