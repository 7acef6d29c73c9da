// SPDX-License-Identifier: MIT
// What two sequences have in common. Not installed.
#pragma once

#include <QtCore/QPair>
#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

// Finds a longest common subsequence of two sequences by the linear-space algorithm of E. W. Myers ("An O(ND)
// Difference Algorithm and Its Variations", 1986). The memory is proportional to the length of the sequences,
// the time to their length times the number of differences.
//
// An object limits the total time of all its calls. When that is used up, which takes sequences with tens of
// thousands of reordered elements, the result is a common subsequence but perhaps not the longest.
class Aligner
{
public:
    using Sequence = QVector<int>;
    using Pairs = QVector<QPair<int, int>>;

    // The positions of the common elements in both sequences, in order.
    Pairs align(const Sequence& first, const Sequence& second);

private:
    // In elementary steps; all together take about a second.
    qint64 m_effort = 100000000;
};

} // namespace ROUTERDOCUMENTS
