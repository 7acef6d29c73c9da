// SPDX-License-Identifier: MIT
/// \file
/// Members that do not count in a comparison.
#pragma once

#include "documents/Export.h"
#include "documents/MemberPath.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Members that do not count.
///
/// Each is a path of names with slashes between them. It may begin at any record: "Frequency",
/// "DF_Params/Frequency". With a slash in front it begins with the class of the root. Of a list
/// "Fragment[2]" is the second item, counted in each document by itself, and "Fragment" or "Fragment[*]" are
/// all. What does not count, does not with all that is below.
class ROUTERDOCUMENTS_EXPORT IgnoredMembers
{
public:
    /// \throws InvalidMemberPath for a path that no record has, with the name that is closest, and for one
    /// that is not understood.
    explicit IgnoredMembers(const QStringList& paths = QStringList());

    bool IsEmpty() const { return m_patterns.isEmpty(); }
    /// Whether the member at the end of the path is one of them, or an item with either of its numbers.
    bool Contains(const MemberPath& path) const;

private:
    struct Step
    {
        QString name;
        /// 0 stands for all.
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
