// SPDX-License-Identifier: MIT
/// \file
/// What two sequences have in common.
#pragma once

#include <QtCore/QPair>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

/// Finds elements that two sequences have in common, in order: the positions in both of a longest common
/// subsequence, by the linear-space algorithm of E. W. Myers ("An O(ND) Difference Algorithm and Its
/// Variations", 1986). Memory is proportional to the length of the sequences, time to their length times the
/// number of differences.
///
/// One object bounds the time of all its work together. When that is used up, which takes sequences with
/// tens of thousands of elements in another order, what is found is common but perhaps not the longest.
class Aligner
{
public:
    using Sequence = QVector<int>;
    using Pairs = QVector<QPair<int, int>>;

    Pairs align(const Sequence& first, const Sequence& second);

private:
    // In elementary steps; they take about a second.
    qint64 m_effort = 100000000;
};

} // namespace ROUTERDOCUMENTS
