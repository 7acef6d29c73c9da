// SPDX-License-Identifier: MIT
/// \file
/// Members that a comparison ignores.
#pragma once

#include "documents/Export.h"
#include "documents/MemberPath.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Members that a comparison ignores, with everything below them.
///
/// Each is given as a path of names, separated by slashes. A path may begin at any record: "Frequency",
/// "DF_Params/Frequency". A path with a leading slash begins with the class of the root. "Fragment[2]" is the
/// second item of a list, counted in each document separately; "Fragment" and "Fragment[*]" are all items.
class ROUTERDOCUMENTS_EXPORT IgnoredMembers
{
public:
    /// \throws InvalidMemberPath for a path that no record has, with the most similar name, and for one with
    /// wrong syntax.
    explicit IgnoredMembers(const QStringList& paths = QStringList());

    /// Whether nothing is ignored.
    bool IsEmpty() const { return m_patterns.isEmpty(); }
    /// Whether the member at the end of the path is ignored. An item is ignored when either of its numbers
    /// is.
    bool Contains(const MemberPath& path) const;

private:
    struct Step
    {
        QString name;
        // 0 means all items.
        int number = 0;
    };
    struct Pattern
    {
        bool isFromRoot = false;
        QVector<Step> steps;
    };

    static Pattern parse(const QString& path);
    static Step parseStep(const QString& text, const QString& path);
    static void requireExisting(const Pattern& pattern, const QString& path);
    static bool matches(const Pattern& pattern, const QVector<MemberPath::Step>& path);

    QVector<Pattern> m_patterns;
};

} // namespace ROUTERDOCUMENTS
