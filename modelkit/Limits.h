/// \file
/// How much the operations on whole documents take in.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QtGlobal>

namespace MODELKIT {

/// The limits of reading whole documents (`SetXmlString`, `LoadXml`, `SetBinaryRepresentation`,
/// `LoadBinary`). A document that exceeds one is refused with a Failure of its own kind. A document
/// type declaration is always refused. `ProcessXml` and `SetBinary`, called outside
/// of such an operation, know no limits.
struct MODELKIT_EXPORT Limits
{
    /// The size of a document as it comes in: in bytes, or in characters when it is given as a string.
    qint64 inputSize = qint64(256) << 20;
    /// The size in bytes of a binary form after inflating.
    qint64 inflatedSize = qint64(256) << 20;
    /// The depth to which elements may be nested; the root has depth 1.
    int nestingDepth = 64;
    /// The number of attributes on one element. The dialect has none; a reader's work on them grows
    /// with the square of their number.
    int attributes = 256;
    /// The number of items in one list.
    int listItems = 4000000;

    /// The limits in force. Can be called from any thread.
    static Limits Get();

    /// Changes the limits for all operations that begin afterwards, in every thread.
    static void Set(const Limits& limits);
};

} // namespace MODELKIT
