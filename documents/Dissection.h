// SPDX-License-Identifier: MIT
/// \file
/// The parts of a binary form, one by one, as far as they can be told apart, whatever is wrong with it.
#pragma once

#include "documents/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// Some bytes that belong together.
struct Part
{
    enum Kind
    {
        ClassId,      ///< the beginning of a form
        Marker,       ///< the beginning of a compressed form
        Tag,          ///< the beginning of an entry
        Length,       ///< the number of bytes of a form, an entry or a piece
        ItemCount,    ///< the number of items of a list
        ItemLength,   ///< the beginning of an item: the number of its bytes
        ByteCount,    ///< the number of bytes of a text
        Value,        ///< the value of a member; an empty text has no bytes
        InflatedSize, ///< the number of bytes that a piece has when it is inflated
        Compressed,   ///< the compressed bytes of a piece
        Undecoded,    ///< bytes of which nothing is known
        End           ///< no bytes: here something ends too early
    };

    Kind kind = Undecoded;
    qint64 offset = 0;
    /// Valid as long as the form.
    QByteArray bytes;
    /// How deep in the form it is; the whole form has depth 0.
    int depth = 0;
    /// What it says, safe to be shown.
    QString meaning;
    /// The decoded value for programs: a number, a name or a value of a member; undefined when there
    /// is none.
    QJsonValue value = QJsonValue(QJsonValue::Undefined);
    /// What is unusual although it can be read, in one sentence; or nothing.
    QString note;
    /// Why its first byte is wrong, in one sentence; or nothing.
    QString wrong;
    /// The names from the root down, as the library's own messages give them.
    QString path;
};

/// The name of a kind of part for programs: "classId", "tag".
ROUTERDOCUMENTS_EXPORT QString NameOf(Part::Kind kind);

/// An object with kind, offset, bytes in hexadecimal digits and path and, where there is one, value, note and
/// wrong.
ROUTERDOCUMENTS_EXPORT QJsonObject PartJson(const Part& part);

/// Takes one part after the other.
using PartVisitor = std::function<void(const Part&)>;

/// Calls visit() for all parts of a plain whole-object form in their order. All bytes are in one of them.
///
/// Values are delimited as records delimit them when they read: a number or a text by itself, everything
/// else by its length, but by no more than what it is part of. Whatever the bytes are, nothing is thrown but
/// what visit() throws, which passes through.
ROUTERDOCUMENTS_EXPORT void DissectPlain(const QByteArray& form, const PartVisitor& visit);

/// As above, for bytes that begin as the compressed form does; all others are taken for a plain form.
/// \param plain gets the form inside, as far as it can be inflated within the limits, or nothing
ROUTERDOCUMENTS_EXPORT void DissectCompressed(const QByteArray& form, QByteArray& plain,
                                              const PartVisitor& visit);

} // namespace ROUTERDOCUMENTS
