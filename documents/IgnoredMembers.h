// SPDX-License-Identifier: MIT
/// \file
/// Members that a comparison ignores.
#pragma once

#include "documents/Export.h"
#include "documents/MemberPath.h"
#include "documents/PathPattern.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Members that a comparison ignores, with everything below them.
///
/// Each is given as a path, as PathPattern describes it. "Fragment[2]" is the second item of a list, counted
/// in each document separately; "Fragment[2->3]" is the second item of the first document when it is compared
/// with the third one of the second document.
class ROUTERDOCUMENTS_EXPORT IgnoredMembers
{
public:
    /// \throws InvalidMemberPath as PathPattern does.
    explicit IgnoredMembers(const QStringList& paths = QStringList());

    /// Whether nothing is ignored.
    bool IsEmpty() const { return m_patterns.isEmpty(); }
    /// Whether the member at the end of the path is ignored. An item is ignored when either of its numbers
    /// is.
    bool Contains(const MemberPath& path) const;

private:
    QVector<PathPattern> m_patterns;
};

} // namespace ROUTERDOCUMENTS
