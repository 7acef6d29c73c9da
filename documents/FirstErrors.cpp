// SPDX-License-Identifier: MIT
#include "documents/FirstErrors.h"

#include <algorithm>
#include <tuple>

namespace ROUTERDOCUMENTS {

bool isBefore(const DocumentError& error, const DocumentError& other)
{
    const auto position = [](const DocumentError& of) {
        const MODELKIT::Place& place = of.GetPlace();
        const bool isUnknown = place.line == 0 && place.offset < 0;
        return std::make_tuple(isUnknown, place.line, place.column, place.offset);
    };
    return position(error) < position(other);
}

void FirstErrors::add(const DocumentError& error)
{
    ++m_count;
    if (m_errors.size() == m_most && (m_most == 0 || !isBefore(error, m_errors.back())))
        return;
    m_errors.insert(std::upper_bound(m_errors.begin(), m_errors.end(), error, isBefore), error);
    if (m_errors.size() > m_most)
        m_errors.pop_back();
}

} // namespace ROUTERDOCUMENTS
