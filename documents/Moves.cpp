// SPDX-License-Identifier: MIT
#include "documents/Moves.h"

#include <QtCore/QHash>

#include <deque>

namespace ROUTERDOCUMENTS {

Moves::Moves(const Aligner::Sequence& first, const Aligner::Sequence& second, const Aligner::Pairs& same)
    : m_targets(first.size(), noTarget), m_isTarget(second.size(), false)
{
    QVector<bool> staysInFirst(first.size(), false);
    QVector<bool> staysInSecond(second.size(), false);
    for (const auto& pair : same) {
        staysInFirst[pair.first] = true;
        staysInSecond[pair.second] = true;
    }
    QHash<int, std::deque<int>> freePlaces;
    for (int j = 0; j < second.size(); ++j)
        if (!staysInSecond.at(j))
            freePlaces[second.at(j)].push_back(j);
    for (int i = 0; i < first.size(); ++i) {
        const auto places = staysInFirst.at(i) ? freePlaces.end() : freePlaces.find(first.at(i));
        if (places == freePlaces.end() || places->empty())
            continue;
        m_targets[i] = places->front();
        m_isTarget[places->front()] = true;
        places->pop_front();
    }
}

QVector<int> Moves::othersInFirst(int begin, int end) const
{
    QVector<int> indices;
    for (int i = begin; i < end; ++i)
        if (!isMoved(i))
            indices += i;
    return indices;
}

QVector<int> Moves::othersInSecond(int begin, int end) const
{
    QVector<int> indices;
    for (int j = begin; j < end; ++j)
        if (!m_isTarget.at(j))
            indices += j;
    return indices;
}

} // namespace ROUTERDOCUMENTS
