/// \file
/// What many documents hold.
#pragma once

#include "documents/Forms.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QHash>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

/// Counts how often each number comes, of which all that is asked for follows exactly.
///
/// It takes room for the different numbers only. Where the numbers are sizes of documents, n different
/// ones stand for more than n * n / 2 bytes of documents, so that there are never many.
class Histogram
{
public:
    void add(qint64 number);

    bool isEmpty() const { return m_count == 0; }
    qint64 count() const { return m_count; }
    qint64 total() const { return m_total; }
    /// Of nothing all these are 0.
    qint64 smallest() const { return isEmpty() ? 0 : m_counts.firstKey(); }
    qint64 largest() const { return isEmpty() ? 0 : m_counts.lastKey(); }
    /// The one in the middle, or the mean of the two there.
    double median() const;

private:
    // The number at a position among all in order.
    qint64 at(qint64 position) const;

    QMap<qint64, qint64> m_counts;
    qint64 m_count = 0;
    qint64 m_total = 0;
};

/// Numbers under names.
struct Table
{
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
class Statistics
{
public:
    void add(const Loaded& document);
    void addUnreadable() { ++m_unreadable; }

    qint64 documents() const { return m_documents; }
    qint64 unreadable() const { return m_unreadable; }

    /// Sizes by form, the classes of the roots, and for all records in the documents what their enumerated
    /// members and truth values are, which members they carry that carry one at a time, and how long their
    /// lists are. Of records that there are none of there is no table.
    QVector<Table> tables() const;

private:
    using RecordInfo = PELLU300ROUTERINTERFACEXML::RecordInfo;
    using MemberInfo = PELLU300ROUTERINTERFACEXML::MemberInfo;

    void addRecord(const MODELKIT::IMKObject& record);
    void addMember(const MODELKIT::IMKObject& record, const MemberInfo& member);

    Table formTable() const;
    Table rootTable() const;
    Table valueTable(const RecordInfo& info, const MemberInfo& member) const;
    Table choiceTable(const RecordInfo& info) const;
    Table listTable(const RecordInfo& info, const MemberInfo& member) const;

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

} // namespace routermsg
