// SPDX-License-Identifier: MIT
// Items of a list that have moved. Not installed.
#pragma once

#include "documents/Alignment.h"

#include <QtCore/QVector>

namespace ROUTERDOCUMENTS {

// Items that are in two lists, but not in the same order.
class Moves
{
public:
    // Equal items have the same number. \a same are the pairs of items that stay.
    Moves(const Aligner::Sequence& first, const Aligner::Sequence& second, const Aligner::Pairs& same);

    // Whether the item of the first list has moved, and its index in the second list if it has.
    bool isMoved(int index) const { return m_targets.at(index) != noTarget; }
    int target(int index) const { return m_targets.at(index); }

    // The indices from begin to end of the items that have not moved.
    QVector<int> othersInFirst(int begin, int end) const;
    QVector<int> othersInSecond(int begin, int end) const;

private:
    static constexpr int noTarget = -1;

    // By the index in the first list.
    QVector<int> m_targets;
    // By the index in the second list.
    QVector<bool> m_isTarget;
};

} // namespace ROUTERDOCUMENTS
