// SPDX-License-Identifier: MIT
/// \file
/// The parts of a binary form, one by one, even when the form is damaged.
#pragma once

#include "documents/Export.h"
#include "documents/FrameFormat.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// Some bytes that belong together.
struct Part
{
    /// The kinds of parts.
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
        Undecoded,    ///< bytes of unknown meaning
        End           ///< no bytes: something ends too early here
    };

    /// What the bytes are.
    Kind kind = Undecoded;
    /// The offset of the first byte in the form.
    qint64 offset = 0;
    /// The bytes themselves. They are not copied: they are valid as long as the form is.
    QByteArray bytes;
    /// The depth of nesting; the form itself has depth 0.
    int depth = 0;
    /// What the bytes mean, safe to display.
    QString meaning;
    /// The decoded value for programs: a number, a name or a value of a member; undefined when there
    /// is none.
    QJsonValue value = QJsonValue(QJsonValue::Undefined);
    /// What is unusual although it can be read, in one sentence; otherwise empty.
    QString note;
    /// Why the form is wrong at the first byte of the part, in one sentence; otherwise empty.
    QString wrong;
    /// The names from the root down, as in the library's own messages.
    QString path;
};

/// The name of a kind of part for programs: "classId", "tag".
ROUTERDOCUMENTS_EXPORT QString NameOf(Part::Kind kind);

/// An object with kind, offset, bytes in hexadecimal digits and path. Value, note and wrong are left out when
/// there is none.
ROUTERDOCUMENTS_EXPORT QJsonObject PartJson(const Part& part);

/// Receives one part after the other.
using PartVisitor = std::function<void(const Part&)>;

/// Calls visit() for all parts of a plain whole-object form in their order. Every byte is in exactly one
/// part.
///
/// The end of a value is found as records find it: a number or a text has its own length, and everything else
/// ends where the length of its entry says, but not after the part around it. Any bytes are accepted.
/// Exceptions of visit() are passed on; nothing else is thrown.
/// \param info the class that the form must have; null for any
ROUTERDOCUMENTS_EXPORT void DissectPlain(const QByteArray& form, const PartVisitor& visit,
                                         const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr);

/// As DissectPlain() with the same \a visit, for bytes that begin like a compressed form; all others are
/// treated as a plain form.
/// \param plain receives the form inside, as far as it can be inflated within the limits; it is empty for a
/// plain form.
ROUTERDOCUMENTS_EXPORT void DissectCompressed(const QByteArray& form, QByteArray& plain,
                                              const PartVisitor& visit);

/// As DissectCompressed(), for a bare frame in any layout. The form inside a compressed one has the usual
/// layout.
/// \param format the layout of the frame
/// \param plain, visit as for DissectCompressed()
/// \param info the class of the record; null for any
/// \throws std::logic_error when the frame has no class id and \a info is null.
ROUTERDOCUMENTS_EXPORT void DissectFrame(const QByteArray& frame, const FrameFormat& format,
                                         const PELLU300ROUTERINTERFACEXML::RecordInfo* info,
                                         QByteArray& plain, const PartVisitor& visit);

} // namespace ROUTERDOCUMENTS
