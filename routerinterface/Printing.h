// SPDX-License-Identifier: MIT
/// \file
/// Records and enumerators for `qDebug()`, streams and GoogleTest, which prints values through the streams.
#pragma once

#include "modelkit/FailurePrinting.h"
#include "modelkit/IMKObject.h"
#include "routerinterface/Enumerators.h"
#include "routerinterface/Export.h"
#include "routerinterface/RecordList.h"

#include <QtCore/QDebug>
#include <QtCore/QString>

#include <iosfwd>
#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {

/// The content of a record for people, on several lines. It is no written form: it may change, and nothing
/// reads it. The name of the class comes first, then the members that are set, and indented below them what
/// they hold:
///
///     PelLu300RouterMessage
///       Type: Reply
///       MessageID: 7
///       Fragment[1]
///         PelVtConnectServer
///           Address: "192.0.2.1"
///
/// Items are numbered as in paths, from 1. Numbers have all their digits. Texts are in quotation marks,
/// control characters are escaped, and of a text that is longer than 200 characters and of a list of more
/// than 100 items only the beginning is shown, with the length.
/// \throws std::bad_cast when the object is no record of this library.
ROUTERINTERFACE_EXPORT QString Describe(const MODELKIT::IMKObject& record);

/// \cond
namespace machinery {

ROUTERINTERFACE_EXPORT QDebug print(QDebug debug, const QString& text);
ROUTERINTERFACE_EXPORT std::ostream& print(std::ostream& stream, const QString& text);
ROUTERINTERFACE_EXPORT QString enumeratorText(int value, const QString& name);

} // namespace machinery
/// \endcond

/// Describe() of the record.
template <class R, std::enable_if_t<machinery::isRecord<R>, int> = 0>
QDebug operator<<(QDebug debug, const R& record)
{
    return machinery::print(debug, Describe(record));
}

/// Describe() of the record in UTF-8.
template <class R, std::enable_if_t<machinery::isRecord<R>, int> = 0>
std::ostream& operator<<(std::ostream& stream, const R& record)
{
    return machinery::print(stream, Describe(record));
}

/// The name of the enumerator, or the number when it is none.
template <class E, std::enable_if_t<machinery::HasNames<E>::value, int> = 0>
QDebug operator<<(QDebug debug, E value)
{
    return machinery::print(debug, machinery::enumeratorText(value, Enumerators<E>::NameOf(value)));
}

/// The name of the enumerator, or the number when it is none.
template <class E, std::enable_if_t<machinery::HasNames<E>::value, int> = 0>
std::ostream& operator<<(std::ostream& stream, E value)
{
    return machinery::print(stream, machinery::enumeratorText(value, Enumerators<E>::NameOf(value)));
}

} // namespace PELLU300ROUTERINTERFACEXML
