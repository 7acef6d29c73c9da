// SPDX-License-Identifier: MIT
#include "documents/Alignment.h"

#include <QtCore/QSet>

#include <algorithm>
#include <optional>

namespace ROUTERDOCUMENTS {

namespace {

using Sequence = Aligner::Sequence;
using Pairs = Aligner::Pairs;

// A part of a sequence.
struct Range
{
    int begin;
    int end;

    int size() const { return end - begin; }
};

// The search for paths of matches from one corner of two ranges. A diagonal k holds the points (x, y) with
// x - y = k. For each diagonal, the largest x that was reached is kept.
class Front
{
public:
    Front(int firstSize, int secondSize)
        : m_firstSize(firstSize), m_secondSize(secondSize), m_middle((firstSize + secondSize + 1) / 2 + 1),
          m_reached(2 * m_middle + 1, unreached)
    {
        m_reached[m_middle + 1] = 0;
    }

    // The largest x that was reached on the diagonal; negative when the diagonal was not reached.
    int reached(int diagonal) const
    {
        const int index = m_middle + diagonal;
        return index < 0 || index >= m_reached.size() ? unreached : m_reached[index];
    }

    // Goes one difference further on all diagonals. isSame(x, y) compares elements. Returns true as soon as
    // isEnd(diagonal, x) is true.
    template <class IsSame, class IsEnd>
    bool advance(int differences, const IsSame& isSame, const IsEnd& isEnd, qint64& effort)
    {
        for (int k = m_lowest - differences; k <= m_highest + differences; k += 2) {
            const bool goesDown = k == -differences || (k != differences && reached(k - 1) < reached(k + 1));
            int x = goesDown ? reached(k + 1) : reached(k - 1) + 1;
            const int begin = x;
            while (x < m_firstSize && x - k < m_secondSize && isSame(x, x - k))
                ++x;
            m_reached[m_middle + k] = x;
            effort -= 1 + x - begin;
            // Beyond the edges there are no matches.
            if (x > m_firstSize)
                m_highest -= 2;
            else if (x - k > m_secondSize)
                m_lowest += 2;
            else if (isEnd(k, x))
                return true;
        }
        return false;
    }

private:
    static constexpr int unreached = -1;

    int m_firstSize;
    int m_secondSize;
    int m_middle;
    // How far the outermost diagonals are inside those that the number of differences would allow.
    int m_lowest = 0;
    int m_highest = 0;
    QVector<int> m_reached;
};

class Search
{
public:
    Search(const Sequence& first, const Sequence& second, qint64& effort)
        : m_first(first), m_second(second), m_effort(effort)
    {}

    Pairs run()
    {
        run({0, static_cast<int>(m_first.size())}, {0, static_cast<int>(m_second.size())});
        return m_pairs;
    }

private:
    bool isSame(int first, int second) const { return m_first.at(first) == m_second.at(second); }

    // Each split halves the number of differences, so that the recursion is not deep.
    void run(Range first, Range second)
    {
        while (first.size() > 0 && second.size() > 0 && isSame(first.begin, second.begin))
            m_pairs.append({first.begin++, second.begin++});
        int sameAtEnd = 0;
        while (first.size() > 0 && second.size() > 0 && isSame(first.end - 1, second.end - 1)) {
            --first.end;
            --second.end;
            ++sameAtEnd;
        }
        if (first.size() > 0 && second.size() > 0)
            split(first, second);
        for (int i = 0; i < sameAtEnd; ++i)
            m_pairs.append({first.end + i, second.end + i});
    }

    void split(const Range& first, const Range& second)
    {
        if (const auto middle = findMiddle(first, second)) {
            run({first.begin, middle->first}, {second.begin, middle->second});
            run({middle->first, first.end}, {middle->second, second.end});
        }
    }

    // A point on an optimal path through the ranges, with half of the differences on either side; nothing
    // when that takes too much effort. The search goes from both ends until the two fronts meet.
    std::optional<QPair<int, int>> findMiddle(const Range& first, const Range& second)
    {
        const int width = first.size();
        const int height = second.size();
        const int delta = width - height;
        const bool isOdd = delta % 2 != 0;
        Front forward(width, height);
        Front backward(width, height);
        std::optional<QPair<int, int>> middle;
        const auto meetAt = [&](int diagonal, int x) {
            middle = QPair<int, int>(first.begin + x, second.begin + x - diagonal);
            return true;
        };
        const auto isSameForward = [&](int x, int y) { return isSame(first.begin + x, second.begin + y); };
        const auto isSameBackward = [&](int x, int y) {
            return isSame(first.end - 1 - x, second.end - 1 - y);
        };
        const auto meetsBackward = [&](int diagonal, int x) {
            const int other = backward.reached(delta - diagonal);
            return isOdd && other >= 0 && x + other >= width && meetAt(diagonal, x);
        };
        const auto meetsForward = [&](int diagonal, int x) {
            const int other = forward.reached(delta - diagonal);
            return !isOdd && other >= 0 && x + other >= width && meetAt(delta - diagonal, other);
        };
        for (int differences = 0; !middle && m_effort > 0; ++differences)
            if (!forward.advance(differences, isSameForward, meetsBackward, m_effort))
                backward.advance(differences, isSameBackward, meetsForward, m_effort);
        return middle;
    }

    const Sequence& m_first;
    const Sequence& m_second;
    qint64& m_effort;
    Pairs m_pairs;
};

// The positions of the elements that are also in the other sequence. The search leaves out all others.
Sequence positionsOfShared(const Sequence& sequence, const Sequence& other)
{
    const QSet<int> elements(other.begin(), other.end());
    Sequence positions;
    for (int i = 0; i < sequence.size(); ++i)
        if (elements.contains(sequence.at(i)))
            positions.append(i);
    return positions;
}

Sequence elementsAt(const Sequence& positions, const Sequence& sequence)
{
    Sequence elements;
    elements.reserve(positions.size());
    for (const int position : positions)
        elements.append(sequence.at(position));
    return elements;
}

} // namespace

Pairs Aligner::align(const Sequence& first, const Sequence& second)
{
    const Sequence inFirst = positionsOfShared(first, second);
    const Sequence inSecond = positionsOfShared(second, first);
    Pairs pairs = Search(elementsAt(inFirst, first), elementsAt(inSecond, second), m_effort).run();
    for (auto& pair : pairs)
        pair = {inFirst.at(pair.first), inSecond.at(pair.second)};
    return pairs;
}

} // namespace ROUTERDOCUMENTS
