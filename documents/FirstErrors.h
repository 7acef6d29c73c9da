// SPDX-License-Identifier: MIT
// The first errors of a document. Not installed.
#pragma once

#include "documents/DocumentError.h"

#include <QtCore/QtGlobal>

#include <vector>

namespace ROUTERDOCUMENTS {

// In the order of their places; those whose place is unknown go last.
bool isBefore(const DocumentError& error, const DocumentError& other);

// Keeps only so many errors of a document as are wanted, whatever the order in which they are found, and
// counts the others. A document may have millions.
class FirstErrors
{
public:
    explicit FirstErrors(int most) : m_most(static_cast<std::size_t>(most)) {}

    void add(const DocumentError& error);

    // Whether an error behind all others would only be counted.
    bool isFull() const { return m_errors.size() == m_most; }
    // Adds such an error.
    void addBehindAll() { ++m_count; }

    // All that were added, also those that are not kept.
    qint64 count() const { return m_count; }
    // In the order of the document.
    const std::vector<DocumentError>& errors() const { return m_errors; }

private:
    std::size_t m_most;
    std::vector<DocumentError> m_errors;
    qint64 m_count = 0;
};

} // namespace ROUTERDOCUMENTS
