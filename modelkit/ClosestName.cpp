// SPDX-License-Identifier: MIT
#include "modelkit/ClosestName.h"

#include <QtCore/QVector>

#include <algorithm>

namespace MODELKIT {

namespace {

// The edit distance: the number of characters to insert, delete, replace or swap with their neighbours.
int edits(const QString& a, const QString& b)
{
    const int width = static_cast<int>(b.size());
    QVector<int> beforeLast(width + 1);
    QVector<int> last(width + 1);
    QVector<int> row(width + 1);
    for (int j = 0; j <= width; ++j)
        last[j] = j;
    for (int i = 1; i <= a.size(); ++i) {
        row[0] = i;
        for (int j = 1; j <= width; ++j) {
            const int replaced = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({replaced, last[j] + 1, row[j - 1] + 1});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
        std::swap(beforeLast, last);
        std::swap(last, row);
    }
    return last[width];
}

constexpr int unlike = 1000;

// The smaller the distance, the more similar the names.
int distance(const QString& given, const QString& possible)
{
    const QString a = given.toCaseFolded();
    const QString b = possible.toCaseFolded();
    if (a == b)
        return 0;
    const int size = static_cast<int>(std::max(a.size(), b.size()));
    const int count = edits(a, b);
    if (count <= size / 3)
        return count;
    const int enough = 2;
    if (a.size() >= enough && (b.startsWith(a) || b.endsWith(a)))
        return size;
    if (a.size() > enough && b.contains(a))
        return 2 * size;
    return unlike;
}

// Longer words are not compared: the time grows with the square of the length, and no name is that long.
constexpr int longestWord = 100;

} // namespace

QString ClosestName(const QString& word, const QStringList& names)
{
    QString best;
    int leastDistance = unlike;
    if (word.isEmpty() || word.size() > longestWord)
        return best;
    for (const QString& possible : names) {
        const int itsDistance = distance(word, possible);
        if (itsDistance < leastDistance) {
            leastDistance = itsDistance;
            best = possible;
        }
    }
    return best;
}

} // namespace MODELKIT
