// SPDX-License-Identifier: MIT
/// \file
/// Statistics of the values of a member.
#pragma once

#include "documents/Export.h"

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVector>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

/// The smallest and the largest of many numbers.
class ROUTERDOCUMENTS_EXPORT NumberRange
{
public:
    /// Counts a number. One that is infinite has its place in the range; one that is not a number has none.
    void Add(double number);

    /// How many numbers were added, without those that are not a number.
    qint64 GetCount() const { return m_count; }
    /// How many of those that were added are not a number.
    qint64 GetNotNumbers() const { return m_notNumbers; }
    /// The smallest number; 0 when there is none.
    double GetSmallest() const { return m_smallest; }
    /// The largest number; 0 when there is none.
    double GetLargest() const { return m_largest; }

private:
    qint64 m_count = 0;
    qint64 m_notNumbers = 0;
    double m_smallest = 0;
    double m_largest = 0;
};

/// Counts how often each text occurs, in bounded memory: beyond the first ten thousand different texts, or
/// 2^20 characters of them, new ones are only counted together.
class ROUTERDOCUMENTS_EXPORT TextCounts
{
public:
    /// A text and how often it occurs.
    using Counted = QPair<QString, qint64>;

    /// Counts a text.
    void Add(const QString& text);

    /// How many different texts are counted each for itself.
    int GetDifferent() const { return static_cast<int>(m_counts.size()); }
    /// How many texts are only counted together.
    qint64 GetTogether() const { return m_together; }
    /// How many null texts there were.
    qint64 GetNull() const { return m_null; }
    /// The texts that occur most often, the most frequent first, and equally frequent ones in order.
    QVector<Counted> GetMostFrequent(int most) const;

private:
    QHash<QString, qint64> m_counts;
    qint64 m_characters = 0;
    qint64 m_together = 0;
    qint64 m_null = 0;
};

} // namespace ROUTERDOCUMENTS
