// SPDX-License-Identifier: MIT
/// \file
/// How much the operations on whole documents read at most.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QtGlobal>

#include <limits>
#include <memory>

namespace MODELKIT {

/// The limits of reading whole documents (`SetXmlString`, `SetXmlBytes`, `LoadXml`,
/// `SetBinaryRepresentation`, `LoadBinary`). A document that exceeds a limit is refused, and each limit has
/// its own Failure::Kind. A document type declaration is always refused. `ProcessXml` and `SetBinary` have no
/// limits when they are called outside of such an operation.
///
/// Every value is safe. A negative value counts as 0, which admits nothing; #anySize and #anyNumber mean no
/// limit. Even without limits a document can be too large for the memory, which throws `std::bad_alloc`, or
/// for Qt's containers, which hold at most 2 GB in Qt 5.
struct MODELKIT_EXPORT Limits
{
    /// A size without a limit.
    static constexpr qint64 anySize = std::numeric_limits<qint64>::max();
    /// A number or time without a limit.
    static constexpr int anyNumber = std::numeric_limits<int>::max();

    /// The size of the input in bytes, or in characters when it is a string.
    qint64 inputSize = qint64(256) << 20;
    /// The size in bytes of a binary form after inflating.
    qint64 inflatedSize = qint64(256) << 20;
    /// The depth of nested elements; the root element has depth 1.
    int nestingDepth = 64;
    /// The number of attributes of one element. The dialect has none, and the time that a reader needs grows
    /// with the square of their number.
    int attributes = 256;
    /// The number of items in one list.
    int listItems = 4000000;
    /// How many milliseconds one operation waits in total for a device whose data arrive later, such as a
    /// socket. With 0 it reads only what has arrived.
    int waitingTime = 30000;

    /// The limits in force in the calling thread: those of its newest LimitsInScope, or else those of the
    /// program, which Set() changes.
    static Limits Get();

    /// Changes the limits of the program for all operations that begin afterwards, in every thread.
    static void Set(const Limits& limits);
};

/// Puts limits in force for the operations that begin in this thread during the object's lifetime, for
/// example for one operation or one connection. When a thread has several such objects, the newest one
/// applies.
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
    /// Not copied: it belongs to its scope.
    LimitsInScope(const LimitsInScope&) = delete;
    /// Not copied: it belongs to its scope.
    LimitsInScope& operator=(const LimitsInScope&) = delete;
    /// The limits before apply again, in any order of destruction.
    ~LimitsInScope();

private:
    class Entry;
    std::unique_ptr<Entry> m_entry;
};

} // namespace MODELKIT
