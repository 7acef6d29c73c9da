// SPDX-License-Identifier: MIT
/// \file
/// What many documents hold.
#pragma once

#include "documents/Document.h"
#include "documents/Export.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Counts how often each number comes, of which all that is asked for follows exactly.
///
/// It takes room for the different numbers only. Where the numbers are sizes of documents, n different
/// ones stand for more than n * n / 2 bytes of documents, so that there are never many.
class ROUTERDOCUMENTS_EXPORT Histogram
{
public:
    void Add(qint64 number);

    bool IsEmpty() const { return m_count == 0; }
    qint64 GetCount() const { return m_count; }
    qint64 GetTotal() const { return m_total; }
    /// Of nothing all these are 0.
    qint64 GetSmallest() const { return IsEmpty() ? 0 : m_counts.firstKey(); }
    qint64 GetLargest() const { return IsEmpty() ? 0 : m_counts.lastKey(); }
    /// The one in the middle, or the mean of the two there.
    double GetMedian() const;

private:
    // The number at a position among all in order.
    qint64 at(qint64 position) const;

    QMap<qint64, qint64> m_counts;
    qint64 m_count = 0;
    qint64 m_total = 0;
};

/// Numbers under names.
struct StatisticsTable
{
    /// As many numbers as there are columns.
    struct Row
    {
        QString name;
        QVector<double> numbers;
    };

    QString title;
    QStringList columns;
    QVector<Row> rows;
};

/// Counts what the documents hold that are added. Its size does not depend on how many they are.
class ROUTERDOCUMENTS_EXPORT Statistics
{
public:
    /// \param document as ReadDocument() returns it
    void Add(const Document& document);
    /// Counts one that cannot be read.
    void AddUnreadable() { ++m_unreadable; }

    qint64 GetDocuments() const { return m_documents; }
    qint64 GetUnreadable() const { return m_unreadable; }

    /// Sizes by form, the classes of the roots, and for all records in the documents what their enumerated
    /// members and truth values are, which members they carry that carry one at a time, and how long their
    /// lists are. Of records that there are none of there is no table.
    QVector<StatisticsTable> GetTables() const;

private:
    using RecordInfo = PELLU300ROUTERINTERFACEXML::RecordInfo;
    using MemberInfo = PELLU300ROUTERINTERFACEXML::MemberInfo;

    void addRecord(const MODELKIT::IMKObject& record);
    void addMember(const MODELKIT::IMKObject& record, const MemberInfo& member);

    StatisticsTable formTable() const;
    StatisticsTable rootTable() const;
    StatisticsTable valueTable(const RecordInfo& info, const MemberInfo& member) const;
    StatisticsTable choiceTable(const RecordInfo& info) const;
    StatisticsTable listTable(const RecordInfo& info, const MemberInfo& member) const;

    qint64 m_documents = 0;
    qint64 m_unreadable = 0;
    QMap<Form, Histogram> m_sizes;
    QHash<const RecordInfo*, qint64> m_roots;
    QHash<const RecordInfo*, qint64> m_records;
    // How many records have the member set.
    QHash<const MemberInfo*, qint64> m_set;
    // How often values came, by their number.
    QHash<const MemberInfo*, QMap<int, qint64>> m_values;
    QHash<const MemberInfo*, Histogram> m_lists;
};

} // namespace ROUTERDOCUMENTS
