// SPDX-License-Identifier: MIT
// Texts in UTF-8 and UTF-16 that may be malformed. Not installed.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

// The number of bytes before the first malformed one; size when there is none.
MODELKIT_EXPORT qint64 wellFormedUtf8(const char* bytes, qint64 size);

// The decoded text; never null. Unlike QString::fromUtf8() it keeps U+FEFF at the beginning.
MODELKIT_EXPORT QString textOfUtf8(const char* bytes, qint64 size);

// The position of the first surrogate that is not part of a pair; -1 when there is none.
MODELKIT_EXPORT qint64 loneSurrogate(const QString& text);

} // namespace MODELKIT
