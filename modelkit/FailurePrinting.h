// SPDX-License-Identifier: MIT
/// \file
/// Places and failures for `qDebug()`, streams and GoogleTest, which prints values through the streams.
#pragma once

#include "modelkit/Export.h"
#include "modelkit/Failure.h"
#include "modelkit/Place.h"

#include <iosfwd>

class QDebug;

namespace MODELKIT {

/// The place with its path: "request.xml:4:5 (in /PelLu300RouterInterfaceXml)"; "unknown place" when nothing
/// is known.
MODELKIT_EXPORT QDebug operator<<(QDebug debug, const Place& place);
/// The same in UTF-8.
MODELKIT_EXPORT std::ostream& operator<<(std::ostream& stream, const Place& place);

/// Failure::GetSentence(); "no failure" when there is none.
MODELKIT_EXPORT QDebug operator<<(QDebug debug, const Failure& failure);
/// The same in UTF-8.
MODELKIT_EXPORT std::ostream& operator<<(std::ostream& stream, const Failure& failure);

} // namespace MODELKIT
