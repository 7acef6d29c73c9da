// SPDX-License-Identifier: MIT
// Finding JSON documents behind an XML document that was cut off. Not installed.
#pragma once

#include "documents/MessageBeginning.h"

#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// Where in the bytes of a cut-off XML document in a narrow encoding JSON documents begin that it does not
// contain; 0 when there are none. They take all bytes up to the end, and only the last one may be cut off.
// The first one begins a line and can be read. Anything else could be the text of an element.
//
// Looks at every byte a few times at most, and adds that number to \a examined.
qint64 jsonBehindXml(const char* bytes, qint64 size, const BeginningRules& rules, qint64& examined);

} // namespace ROUTERDOCUMENTS
