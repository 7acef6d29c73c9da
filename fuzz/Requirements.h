// SPDX-License-Identifier: MIT
// What must hold for every input.
#pragma once

#include <string>
#include <utility>

namespace fuzzing {

// Ends the process and says what is not so. Also in programs without assertions.
void require(bool isSo, const char* what);
// Ends the process and shows where the two begin to differ.
void requireSame(const std::string& one, const std::string& other, const char* what);
inline void requireSame(const std::pair<std::string, std::string>& both, const char* what)
{
    requireSame(both.first, both.second, what);
}

} // namespace fuzzing
