// SPDX-License-Identifier: MIT
// Recognising the beginning of a message in a recording. Not installed.
#pragma once

#include "documents/Export.h"
#include "documents/Forms.h"
#include "documents/TextUnits.h"

#include <QtCore/QtGlobal>

#include <optional>

namespace ROUTERDOCUMENTS {

// What stands at a place of a recording.
struct MessageBeginning
{
    enum Kind
    {
        Nothing,
        Unclear, // more bytes are needed
        Mark,    // a byte order mark without a document that directly follows
        Aside,   // a comment or processing instruction
        Message
    };

    Kind kind = Nothing;
    Form form = Form::Xml;
    TextUnits units;
    // The size of the byte order mark that is there.
    int mark = 0;
};

// How to look at a place.
enum class Look
{
    Expecting, // a message begins here
    Searching  // in what is no message: a beginning must look more like one
};

// Where and how to look for a beginning.
struct BeginningRules
{
    // The only form that is expected, if any.
    std::optional<Form> form;
    // The largest message.
    qint64 limit = 0;
    Look look = Look::Expecting;
    // Whether the place is at the beginning of a line.
    bool isAtLineBegin = true;
    // Whether no more bytes follow.
    bool isAll = false;
};

// Looks at no more than the first 128 bytes or so.
ROUTERDOCUMENTS_EXPORT MessageBeginning recogniseBeginning(const char* bytes, qint64 size,
                                                           const BeginningRules& rules);

// A fast test for searches: whether a message may begin with the byte. It may be false for beginnings that a
// search ignores.
bool mayBeginMessage(char byte);

// A fast test for searches in a document with wide units: whether bytes begin there that are none of its
// units. Two bytes are looked at.
bool mayBreakOffWide(const char* bytes, TextUnits units, bool isAligned);

// How many bytes of white space begin a text with these units; 0 if there is none. Behind a text with wide
// units, one narrow character at a time. Negative if more bytes are needed.
ROUTERDOCUMENTS_EXPORT qint64 whiteAt(const char* bytes, qint64 size, TextUnits units, bool isAll);

// Both whole-object forms begin with a word that tells the class or the form, and one that is the length of
// what follows.
constexpr qint64 binaryHeaderSize = 8;
ROUTERDOCUMENTS_EXPORT qint32 binaryLength(const char* header);

} // namespace ROUTERDOCUMENTS
