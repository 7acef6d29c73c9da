// SPDX-License-Identifier: MIT
// The first bytes by which the forms are recognised. Not installed.
#pragma once

#include "documents/Forms.h"
#include "documents/TextUnits.h"

#include "modelkit/FormHeader.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QtGlobal>

#include <optional>

namespace ROUTERDOCUMENTS {

// The binary form that begins with this word, if there is one.
inline std::optional<Form> binaryFormOf(quint32 firstWord)
{
    if (firstWord == MODELKIT::FormHeader::compressedMarker)
        return Form::Compressed;
    if (PELLU300ROUTERINTERFACEXML::RecordInfo::FindByFrameId(firstWord))
        return Form::Binary;
    return std::nullopt;
}

struct ByteOrderMark
{
    const char* bytes;
    int size;
    TextUnits units;
};

// The longer ones go first, because they begin as the shorter ones.
constexpr ByteOrderMark byteOrderMarks[] = {{"\0\0\xFE\xFF", 4, {4, true}},
                                            {"\xFF\xFE\0\0", 4, {4, false}},
                                            {"\xFE\xFF", 2, {2, true}},
                                            {"\xFF\xFE", 2, {2, false}},
                                            {"\xEF\xBB\xBF", 3, {1, false}}};

struct MarkupSign
{
    int size;
    char bytes[8];
    TextUnits units;
};

// The character < in all units, with as much of a character behind it as tells the units.
constexpr MarkupSign markupSigns[] = {{7, {0, 0, 0, '<', 0, 0, 0}, {4, true}},
                                      {4, {'<', 0, 0, 0}, {4, false}},
                                      {3, {0, '<', 0}, {2, true}},
                                      {2, {'<', 0}, {2, false}},
                                      {1, {'<'}, {1, false}}};

// Whether a JSON document can begin with the character.
inline bool beginsJson(int character) { return character == '{' || character == '['; }

} // namespace ROUTERDOCUMENTS
