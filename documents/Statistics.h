// SPDX-License-Identifier: MIT
/// \file
/// Statistics of the content of many documents.
#pragma once

#include "documents/Document.h"
#include "documents/Export.h"
#include "documents/ValueStatistics.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Counts how often each number occurs. All results are exact.
///
/// The memory depends only on how many different numbers there are. Sizes of documents are never many: n
/// different sizes take documents of more than n * n / 2 bytes in total.
class ROUTERDOCUMENTS_EXPORT Histogram
{
public:
    /// Counts a number.
    void Add(qint64 number);

    /// Whether no number was added.
    bool IsEmpty() const { return m_count == 0; }
    /// How many numbers were added.
    qint64 GetCount() const { return m_count; }
    /// The sum of all numbers.
    qint64 GetTotal() const { return m_total; }
    /// The smallest number; 0 when there is none.
    qint64 GetSmallest() const { return IsEmpty() ? 0 : m_counts.firstKey(); }
    /// The largest number; 0 when there is none.
    qint64 GetLargest() const { return IsEmpty() ? 0 : m_counts.lastKey(); }
    /// The median, which is the mean of the two middle numbers when their count is even; 0 when there is
    /// none.
    double GetMedian() const;

private:
    // The number at a position in the sorted sequence of all numbers.
    qint64 at(qint64 position) const;

    QMap<qint64, qint64> m_counts;
    qint64 m_count = 0;
    qint64 m_total = 0;
};

/// A table of numbers.
struct StatisticsTable
{
    /// A row of the table.
    struct Row
    {
        QString name;            ///< what the numbers are about
        QVector<double> numbers; ///< one number for each column
        /// The whole text that the row counts, which the name shortens; null for other rows.
        QString text = QString();
    };

    QString title;       ///< what the table is about
    QStringList columns; ///< the titles of the columns
    QVector<Row> rows;   ///< the rows in order
};

/// Counts what the added documents hold. The memory does not depend on the number of documents.
class ROUTERDOCUMENTS_EXPORT Statistics
{
public:
    /// Counts a document and the records in it.
    /// \param document as ReadDocument() returns it
    void Add(const Document& document);
    /// Counts a document that cannot be read.
    void AddUnreadable() { ++m_unreadable; }

    /// The number of documents that were added.
    qint64 GetDocuments() const { return m_documents; }
    /// The number of documents that cannot be read.
    qint64 GetUnreadable() const { return m_unreadable; }

    /// The sizes by form and the classes of the roots. Then, for all records in the documents, the values of
    /// their enumerations and booleans, the members of those that carry one at a time, and the lengths of
    /// their lists, the most frequent texts of their texts, and the ranges of their numbers. What does not
    /// occur has no table.
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
    StatisticsTable textTable(const RecordInfo& info, const MemberInfo& member) const;
    StatisticsTable rangeTable() const;

    qint64 m_documents = 0;
    qint64 m_unreadable = 0;
    QMap<Form, Histogram> m_sizes;
    QHash<const RecordInfo*, qint64> m_roots;
    QHash<const RecordInfo*, qint64> m_records;
    // How many records have the member set.
    QHash<const MemberInfo*, qint64> m_set;
    // How often each value occurred, by its number.
    QHash<const MemberInfo*, QMap<int, qint64>> m_values;
    QHash<const MemberInfo*, Histogram> m_lists;
    QHash<const MemberInfo*, NumberRange> m_ranges;
    QHash<const MemberInfo*, TextCounts> m_texts;
};

} // namespace ROUTERDOCUMENTS
