// SPDX-License-Identifier: MIT
/// \file
/// How much the operations on whole documents take in.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QtGlobal>

#include <limits>
#include <memory>

namespace MODELKIT {

/// The limits of reading whole documents (`SetXmlString`, `SetXmlBytes`, `LoadXml`,
/// `SetBinaryRepresentation`, `LoadBinary`). A document that exceeds one is refused with a Failure of its
/// own kind. A document type declaration is always refused. `ProcessXml` and `SetBinary`, called outside
/// of such an operation, know no limits.
///
/// Every value is safe. A negative one is taken for 0, which admits nothing; #anySize and #anyNumber are no
/// limit. Without limits a document can still be too large for the memory, which is `std::bad_alloc`, or for
/// Qt's containers, which hold 2 GB in Qt 5.
struct MODELKIT_EXPORT Limits
{
    /// No limit of a size.
    static constexpr qint64 anySize = std::numeric_limits<qint64>::max();
    /// No limit of a number or time.
    static constexpr int anyNumber = std::numeric_limits<int>::max();

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
    /// How many milliseconds one operation waits in all for a device that delivers later, such as a socket.
    /// With 0 it takes only what is there.
    int waitingTime = 30000;

    /// The limits in force in the calling thread: those of its newest LimitsInScope, or else those of the
    /// program.
    static Limits Get();

    /// Changes the limits of the program, for all operations that begin afterwards, in every thread.
    static void Set(const Limits& limits);
};

/// Puts limits in force for the operations that begin in this thread as long as the object lives, for example
/// for one operation or for what one connection sends. The newest object of a thread counts.
///
/// \code
/// MODELKIT::Limits limits;
/// limits.inputSize = 1 << 20;
/// const MODELKIT::LimitsInScope inScope(limits);
/// document.LoadXml(path);
/// \endcode
class MODELKIT_EXPORT LimitsInScope
{
public:
    /// Puts the limits in force until the object is destroyed.
    explicit LimitsInScope(const Limits& limits);
    LimitsInScope(const LimitsInScope&) = delete;
    LimitsInScope& operator=(const LimitsInScope&) = delete;
    ~LimitsInScope();

private:
    class Entry;
    std::unique_ptr<Entry> m_entry;
};

} // namespace MODELKIT
