// SPDX-License-Identifier: MIT
/// \file
/// Paths of members as people write them.
#pragma once

#include "documents/Export.h"
#include "documents/MemberPath.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// A path of names, separated by slashes, that leads to members of records.
///
/// It may begin at any record: "Frequency", "DF_Params/Frequency". A path with a leading slash begins with
/// the class of the root. "Fragment[2]" is the second item of a list; "Fragment" and "Fragment[*]" are all
/// items.
class ROUTERDOCUMENTS_EXPORT PathPattern
{
public:
    /// What the brackets behind a name may hold, besides a number from 1 and "*".
    enum Brackets
    {
        /// Nothing else.
        OfOneRecord,
        /// "2->3": the item has the first number in the first record and the other one in the second. This is
        /// how MemberPath::ToText() writes it.
        OfTwoRecords,
        /// "+": a new item behind the last one; "last": the last item.
        ForEditing
    };

    /// The items that a step of the path stands for.
    enum Items
    {
        All,      ///< all items; also for a member that is no list
        Numbered, ///< the item with the number
        Paired,   ///< the item with a number in each of two records
        New,      ///< a new item
        Last      ///< the last item
    };

    /// A step of the path.
    struct Step
    {
        QString name;      ///< the name of a member or of the root's class
        Items items = All; ///< which items
        int first = 0;     ///< the number for Numbered, the number in the first record for Paired
        int second = 0;    ///< the number in the second record for Paired
    };

    /// Understands a path.
    /// \param text the path
    /// \param brackets what brackets in it may hold
    /// \throws InvalidMemberPath for a path that no record has, with the most similar name, and for one with
    /// wrong syntax.
    explicit PathPattern(const QString& text, Brackets brackets = OfOneRecord);

    /// The path as it was written.
    const QString& GetText() const { return m_text; }
    /// Whether it begins with the class of the root.
    bool IsFromRoot() const { return m_isFromRoot; }
    /// The steps; at least one.
    const QVector<Step>& GetSteps() const { return m_steps; }
    /// The members to which it can lead. There is none if it is the name of a class that no record owns.
    const QVector<const PELLU300ROUTERINTERFACEXML::MemberInfo*>& GetMembers() const { return m_members; }

    /// Whether it leads to the last step of the path. An item of two records also has a number that it has in
    /// only one of them.
    bool Matches(const MemberPath& path) const;
    /// Whether it can lead to something below a record of that class.
    bool LeadsInto(const PELLU300ROUTERINTERFACEXML::RecordInfo& info) const
    {
        return m_around.contains(&info);
    }
    /// Whether it can lead to several members of one record, because it does not number the items of a list.
    bool CanRepeat() const;

    /// Some paths that are right: of every member its name, alone and behind that of its class.
    static QStringList Examples();

private:
    static Step parse(const QString& text, const QString& path, Brackets brackets);
    void resolve();
    void findSurroundings();
    bool repeatsBelow(const PELLU300ROUTERINTERFACEXML::RecordInfo& info, QVector<bool>& lists,
                      MemberPath& path) const;

    QString m_text;
    bool m_isFromRoot = false;
    QVector<Step> m_steps;
    QVector<const PELLU300ROUTERINTERFACEXML::MemberInfo*> m_members;
    // The classes below which the path can lead to something.
    QSet<const PELLU300ROUTERINTERFACEXML::RecordInfo*> m_around;
};

} // namespace ROUTERDOCUMENTS
