// SPDX-License-Identifier: MIT
#include "documents/ValueStatistics.h"

#include <algorithm>
#include <cmath>

namespace ROUTERDOCUMENTS {

void NumberRange::Add(double number)
{
    if (std::isnan(number)) {
        ++m_notNumbers;
        return;
    }
    m_smallest = m_count == 0 ? number : std::min(m_smallest, number);
    m_largest = m_count == 0 ? number : std::max(m_largest, number);
    ++m_count;
}

void TextCounts::Add(const QString& text)
{
    constexpr int mostTexts = 10000;
    constexpr qint64 mostCharacters = qint64(1) << 20;
    if (text.isNull()) {
        ++m_null;
        return;
    }
    const auto found = m_counts.find(text);
    if (found != m_counts.end()) {
        ++*found;
    } else if (GetDifferent() == mostTexts || m_characters + text.size() > mostCharacters) {
        ++m_together;
    } else {
        m_counts.insert(text, 1);
        m_characters += text.size();
    }
}

QVector<TextCounts::Counted> TextCounts::GetMostFrequent(int most) const
{
    QVector<Counted> all;
    for (auto i = m_counts.begin(); i != m_counts.end(); ++i)
        all.append({i.key(), i.value()});
    const auto end = all.begin() + std::min<qint64>(most, all.size());
    std::partial_sort(all.begin(), end, all.end(), [](const Counted& a, const Counted& b) {
        return a.second != b.second ? a.second > b.second : a.first < b.first;
    });
    all.erase(end, all.end());
    return all;
}

} // namespace ROUTERDOCUMENTS
