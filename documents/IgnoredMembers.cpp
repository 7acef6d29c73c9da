// SPDX-License-Identifier: MIT
#include "documents/IgnoredMembers.h"

#include <algorithm>

namespace ROUTERDOCUMENTS {

IgnoredMembers::IgnoredMembers(const QStringList& paths)
{
    for (const QString& path : paths)
        m_patterns += PathPattern(path, PathPattern::OfTwoRecords);
}

bool IgnoredMembers::Contains(const MemberPath& path) const
{
    return std::any_of(m_patterns.begin(), m_patterns.end(),
                       [&](const PathPattern& pattern) { return pattern.Matches(path); });
}

} // namespace ROUTERDOCUMENTS
